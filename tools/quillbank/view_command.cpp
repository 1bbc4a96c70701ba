// quillbank view FILE -o OUT: one self-contained HTML page that shows the
// lesson: its maps as trees, its storyboards with their properties and a
// preview of their screens, and check's findings beside what they concern.

#include <memory>
#include <string>

#include "check_findings.hpp"
#include "commands.hpp"
#include "lesson_file.hpp"
#include "output_file.hpp"
#include "reading_losses.hpp"
#include "short_ids.hpp"
#include "tool_error.hpp"
#include "view_data.hpp"
#include "view_page.hpp"

namespace quillbank::tool {

namespace {

struct ViewOptions {
    std::string file;
    std::string output;
};

std::string ViewHtml(const InputFile& input) {
    Findings findings;
    const CheckedLesson checked = CheckFileText(input, findings);
    CheckLesson(*checked.lesson, checked.fileSbids, findings);
    const Json data = ViewData(input.displayName, *checked.lesson, ShortIds(input), findings);
    const std::string title = checked.lesson->Title();
    return ViewPage(title.empty() ? input.displayName : title, data);
}

}  // namespace

Command AddViewCommand(CLI::App& program) {
    auto options = std::make_shared<ViewOptions>();
    auto* app = program.add_subcommand(
        "view", "Write one self-contained HTML page that shows the lesson in a browser, with no server and no "
                "network: its maps as trees, its storyboards with a filter, their properties and a preview of "
                "their screens, and check's findings beside what they concern");
    app->add_option("FILE", options->file, "The lesson (- for standard input)")->required();
    app->add_option("-o,--output", options->output, "The HTML file to write (- for standard output)")->required();
    return {app, [options] {
                auto input = ReadInput(options->file, false);
                const std::string page = ViewHtml(input);
                WriteOutput(ChooseOutput(input, options->output, false, true, "view"), page);
                return kExitOk;
            }};
}

}  // namespace quillbank::tool

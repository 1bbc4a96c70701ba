// quillbank clear FILE [-o OUT] [--pretty]: the clear, human-readable form.

#include <quillbank/functions.hpp>
#include <quillbank/lesson.hpp>

#include "commands.hpp"
#include "plain_properties.hpp"
#include "output_file.hpp"
#include "tool_error.hpp"
#include "write_options.hpp"

namespace quillbank::tool {

Command AddClearCommand(CLI::App& program) {
    auto* app = program.add_subcommand(
        "clear", "Write the clear form: every encoded property written plain, for reading by people");
    auto options = AddWriteOptions(*app, false);
    auto pretty = std::make_shared<bool>(false);
    AddKeepDocumentId(*app, *options);
    app->add_flag("--pretty", *pretty,
                  "Indent the result (with an XML declaration; characters outside ASCII become character "
                  "references). Meant for reading: whitespace-only text does not survive it");
    return {app, [options, pretty] {
                return ReadTransformWrite(*options, false, "clear", [&](Lesson& lesson) {
                    WriteEveryPropertyPlain(lesson);
                    std::string text = lesson.ToClearXMLString();
                    return *pretty ? Functions::FormatXMLString(text) : text;
                });
            }};
}

}  // namespace quillbank::tool

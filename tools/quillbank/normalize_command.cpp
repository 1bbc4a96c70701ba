// quillbank normalize FILE [-o OUT]: read and write again in the normal form.

#include <quillbank/lesson.hpp>

#include "commands.hpp"
#include "output_file.hpp"
#include "tool_error.hpp"
#include "write_options.hpp"

namespace quillbank::tool {

Command AddNormalizeCommand(CLI::App& program) {
    auto* app = program.add_subcommand(
        "normalize", "Read the lesson and write it again in the normal form (UTF-8, the library's exact text)");
    auto options = AddWriteOptions(*app, false);
    options->alwaysWarn = true;
    AddKeepDocumentId(*app, *options);
    return {app, [options] {
                return ReadTransformWrite(*options, false, "normalize",
                                          [](const Lesson& lesson) { return lesson.ToXMLString(); });
            }};
}

}  // namespace quillbank::tool

// quillbank duplicate FILE -o OUT: a copy with new identifiers.

#include <quillbank/lesson.hpp>

#include "commands.hpp"
#include "output_file.hpp"
#include "tool_error.hpp"
#include "write_options.hpp"

namespace quillbank::tool {

Command AddDuplicateCommand(CLI::App& program) {
    auto* app = program.add_subcommand(
        "duplicate",
        "Write a duplicate: a new lesson identifier and new storyboard identifiers, every reference to them (map "
        "items, location properties at any depth) rewritten. As the library's Duplicate does, the copy leaves out "
        "the lesson's own properties and stores locations unencoded");
    auto options = AddWriteOptions(*app, true);
    return {app, [options] {
                return ReadTransformWrite(*options, true, "duplicate",
                                          [](const Lesson& lesson) { return lesson.Duplicate()->ToXMLString(); });
            }};
}

}  // namespace quillbank::tool

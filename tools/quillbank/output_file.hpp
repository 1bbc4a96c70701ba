#pragma once

// Writing results: to standard output, or to a file replaced in one step.

#include <string>
#include <string_view>

#include "lesson_file.hpp"

namespace quillbank::tool {

// Where a writing subcommand's result goes: OUT when given ("-" is standard
// output), the input itself with --in-place, else standard output (or a
// ToolError when an output is required). Refuses to replace the input
// without --in-place, and --in-place on standard input.
std::string ChooseOutput(const InputFile& input, const std::string& output, bool inPlace, bool outputRequired,
                         std::string_view command);

// Writes the bytes, unchanged (UTF-8, no byte-order mark):
// - "-" to standard output; /dev/stdout, /dev/stderr, /dev/fd/N and
//   /proc/self/fd/N to that descriptor itself;
// - anything else that is not a regular file (a device, a FIFO, a socket)
//   straight into it: replacing it would destroy it;
// - a regular file, or a new one, through a temporary file beside it that is
//   renamed over it (ReplacingWrite): a killed run leaves the old file or the
//   complete new one, a signal removes the temporary file, and the new file
//   keeps the old one's permission bits, owner and group. A symbolic link is
//   followed (the link stays, the file it names is replaced, or made). A file
//   with several hard links is refused: replacing it would part it from its
//   other names.
// Raises ToolError naming the file when that fails.
void WriteOutput(const std::string& path, std::string_view bytes);

}  // namespace quillbank::tool

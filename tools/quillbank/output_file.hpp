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

// Writes the bytes, unchanged (UTF-8, no byte-order mark). A file is written
// to a temporary file beside it that is then renamed over it, so an
// interrupted run leaves either the old file or the new one, never half a
// file; a replaced file keeps its permissions. Raises ToolError naming the
// file when that fails, and removes the temporary file.
void WriteOutput(const std::string& path, std::string_view bytes);

}  // namespace quillbank::tool

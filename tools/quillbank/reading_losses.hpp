#pragma once

// What the reader drops, merges, makes up or guesses in one file, found by
// reading the file's own elements (see check_findings.hpp), and the warning
// lines of the writing subcommands.

#include <set>
#include <string>

#include "check_findings.hpp"
#include "lesson_file.hpp"

namespace quillbank::tool {

// The decoder's notes and the findings of the file's own elements. Returns
// the storyboard identifiers the file holds, lower-cased.
std::set<std::string> CheckFileText(const InputFile& input, Findings& findings);

// Prints one warning line on standard error for each kind of reading
// finding, with its count ("quillbank: FILE: warning: 3 x P03 the reader
// drops a property: its element is unknown (see quillbank check FILE)"); the
// decoder's notes were printed when the file was read. Returns whether there
// was anything the reader drops or guesses.
bool ReportReadingLosses(const InputFile& input);

}  // namespace quillbank::tool

#pragma once

// What the reader drops, merges, makes up or guesses in one file, found by
// reading the file's own elements (see check_findings.hpp), and the warning
// lines of the writing subcommands.

#include <set>
#include <string>

#include "check_findings.hpp"
#include "lesson_file.hpp"

namespace quillbank::tool {

// The decoder's notes and the findings of the file's own elements, and the
// lesson read from the same parse of the text. Raises ToolError as
// LoadLesson does when the text is not a lesson.
struct CheckedLesson {
    std::shared_ptr<Lesson> lesson;
    std::set<std::string> fileSbids;  // the storyboard identifiers the file holds, lower-cased
};
CheckedLesson CheckFileText(const InputFile& input, Findings& findings);

// Prints one warning line on standard error for each kind of reading
// finding, with its count ("quillbank: FILE: warning: 3 x P03 the reader
// drops a property: its element is unknown (see quillbank check FILE)"); the
// decoder's notes were printed when the file was read. Returns whether there
// was anything the reader drops or guesses, and gives the lesson read.
bool ReportReadingLosses(const InputFile& input, std::shared_ptr<Lesson>& lesson);

}  // namespace quillbank::tool

#pragma once

// The clear form for people: every property written plain, at every depth.

#include <quillbank/lesson.hpp>

namespace quillbank::tool {

// Stores every encoded property of the lesson again as a plain one, in the
// bags of the lesson, its storyboards and their child elements and in every
// bag and list nested in them (the library's clear writer writes a nested
// bag with its normal writer, which keeps the encoding). A location whose
// start is empty but whose end is not stays encoded: storing it again would
// move the end into the start.
void WriteEveryPropertyPlain(Lesson& lesson);

}  // namespace quillbank::tool

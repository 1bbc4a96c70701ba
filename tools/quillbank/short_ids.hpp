#pragma once

// The "shortid" of each storyboard element of a file: the number hosts show,
// which the library keeps to itself and the tool reads from the text.

#include <map>
#include <string>

#include "lesson_file.hpp"

namespace quillbank::tool {

// The "shortid" attribute of every storyboard element that has one, by its
// "sbid" attribute. A text that does not parse gives none.
std::map<std::string, std::string> ShortIds(const InputFile& input);

}  // namespace quillbank::tool

#pragma once

#include <string>

namespace quillbank::support {

// The full path of the file the library was loaded from (the program's own
// file when the library is linked into it); "" when the platform cannot say.
std::string ModuleFileName();
// The folder of that file, without a trailing separator.
std::string ModuleFolder();
// "Major.Minor (Build rrrr)", two spaces and the comments, trimmed.
std::string VersionText(int major, int minor, int revision, const std::string& comments);

}  // namespace quillbank::support

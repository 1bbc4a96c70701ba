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

#if defined(_WIN32)
// The version resource of the module the library was loaded from: its file
// version's major, minor and revision (fourth) numbers and its Comments
// text. False when the module has no version resource.
bool ModuleVersion(int& major, int& minor, int& revision, std::string& comments);
#endif

}  // namespace quillbank::support

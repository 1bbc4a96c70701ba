#pragma once

// The --locale option: the regional setting that numbers, booleans and dates
// in lesson files are read in.

#include <string>

namespace quillbank::tool {

// The setting named by the environment (LC_ALL, else LANG, e.g.
// "de_DE.UTF-8" gives "de-DE"), or "en-US" when it names none the library knows.
std::string RegionalSettingFromEnvironment();

}  // namespace quillbank::tool

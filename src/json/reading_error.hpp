#pragma once

// How the JSON reader of a lesson reports input that is not of the form:
// error 0x800403E9 from "Lesson.FromJSON", naming the place of the bad value
// as a JSON pointer.

#include <string_view>

#include "json/json_path.hpp"

namespace quillbank::json_form {

inline constexpr const char* kReadSource = "Lesson.FromJSON";

// Raises "JSON of the wrong form at <pointer>: <problem>." (the pointer of
// the document itself reads "the top level").
[[noreturn]] void FailAt(const JsonPath& path, std::string_view problem);

}  // namespace quillbank::json_form

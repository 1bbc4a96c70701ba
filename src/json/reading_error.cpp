#include "json/reading_error.hpp"

#include <string>

#include <quillbank/json.hpp>

#include "frame/raise.hpp"

namespace quillbank::json_form {

void FailAt(const JsonPath& path, std::string_view problem) {
    const std::string pointer = path.Pointer();
    frame::Raise(ErrJsonForm, kReadSource,
                 "JSON of the wrong form at " + (pointer.empty() ? std::string("the top level") : pointer) + ": " +
                     std::string(problem) + ".");
}

}  // namespace quillbank::json_form

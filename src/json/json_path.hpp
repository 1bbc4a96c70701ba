#pragma once

// The place of a value in a JSON document while it is being read, kept as a
// chain of stack frames and turned into a JSON pointer ("/storyboards/3/title")
// only when an error names it.

#include <cstddef>
#include <string>
#include <string_view>

namespace quillbank::json_form {

class JsonPath {
public:
    JsonPath() = default;

    JsonPath Field(std::string_view key) const noexcept { return JsonPath(this, key, 0, false); }
    JsonPath At(std::size_t index) const noexcept { return JsonPath(this, {}, index, true); }

    // The JSON pointer of the place (RFC 6901: "~" is written "~0" and "/"
    // "~1"); "" for the document itself.
    std::string Pointer() const;

private:
    JsonPath(const JsonPath* parent, std::string_view key, std::size_t index, bool isIndex) noexcept
        : parent_(parent), key_(key), index_(index), isIndex_(isIndex) {}

    const JsonPath* parent_ = nullptr;
    std::string_view key_;
    std::size_t index_ = 0;
    bool isIndex_ = false;
};

}  // namespace quillbank::json_form

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace quillbank {

// Error numbers raised by the library.
// A required object argument is null ("Document cannot be null", ...); also
// the automation platform's "Invalid use of Null".
inline constexpr std::int32_t ErrNullArgument = 94;
// An argument value is not allowed ("NewSBID cannot be ''.", text that is not UTF-8).
inline constexpr std::int32_t ErrInvalidArgument = 380;
// The call is not valid in the object's state or for this argument.
inline constexpr std::int32_t ErrInvalidCall = 5;
// A counter overflowed (more children than a 16-bit index can visit).
inline constexpr std::int32_t ErrOverflow = 6;
// A value has the wrong type for the request.
inline constexpr std::int32_t ErrTypeMismatch = 13;
// Runaway recursion, e.g. a bag that contains itself.
inline constexpr std::int32_t ErrOutOfStackSpace = 28;
// The component error base 0x80040000 plus 1001: XML of the wrong form.
inline constexpr std::int32_t ErrXmlForm = static_cast<std::int32_t>(0x800403E9u);
// The failure code the XML document model reports (E_FAIL).
inline constexpr std::int32_t ErrXmlDom = static_cast<std::int32_t>(0x80004005u);

// The one error the library raises: a number, the member that raised it
// ("Class.Member", or "Class.Member (Set)") and a description.
class Error : public std::runtime_error {
public:
    Error(std::int32_t number, std::string source, std::string description);

    std::int32_t Number() const noexcept { return number_; }
    const std::string& Source() const noexcept { return source_; }
    const std::string& Description() const noexcept { return description_; }

private:
    std::int32_t number_;
    std::string source_;
    std::string description_;
};

}  // namespace quillbank

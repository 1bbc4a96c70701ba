#pragma once

// Raising the library's one error format, and the descriptions used by many
// members.

#include <cstdint>
#include <string>

#include <quillbank/error.hpp>

namespace quillbank::frame {

inline constexpr const char* kLibraryName = "Quillbank";

inline constexpr const char* kDocumentCannotBeNull = "Document cannot be null";
inline constexpr const char* kElementCannotBeNull = "Element cannot be null";
inline constexpr const char* kXmlCouldNotBeParsed = "XML string could not be parsed.";
inline constexpr const char* kCorruptEncodedProperty =
    "The encoded persisted property is corrupt and cannot be parsed.";

// The automation platform's own descriptions of its standard errors.
inline constexpr const char* kInvalidProcedureCall = "Invalid procedure call or argument";
inline constexpr const char* kOverflow = "Overflow";
inline constexpr const char* kTypeMismatch = "Type mismatch";
inline constexpr const char* kOutOfStackSpace = "Out of stack space";
inline constexpr const char* kInvalidUseOfNull = "Invalid use of Null";

[[noreturn]] void Raise(std::int32_t number, std::string source, std::string description);

// "Element is not a <name> element".
std::string NotAnElementDescription(const char* elementName);

}  // namespace quillbank::frame

#pragma once

// The errors the XML document model raises, with the source MSXML gives them.

#include <cstdint>

#include <quillbank/error.hpp>

namespace quillbank::xml {

inline constexpr const char* kDomErrorSource = "msxml3.dll";

// E_INVALIDARG, what the DOM gives for an argument it refuses.
inline constexpr std::int32_t ErrDomInvalidArgument = static_cast<std::int32_t>(0x80070057u);

inline constexpr const char* kPrefixRebound =
    "The prefix of this element is declared already with another namespace.";

// Raises ErrXmlDom (E_FAIL) with the given sentence.
[[noreturn]] inline void RaiseDomError(const char* description) {
    throw Error(ErrXmlDom, kDomErrorSource, description);
}

}  // namespace quillbank::xml

#pragma once

// The errors the XML document model raises, with the source MSXML gives them.

#include <quillbank/error.hpp>

namespace quillbank::xml {

inline constexpr const char* kDomErrorSource = "msxml3.dll";

// Raises ErrXmlDom (E_FAIL) with the given sentence.
[[noreturn]] inline void RaiseDomError(const char* description) {
    throw Error(ErrXmlDom, kDomErrorSource, description);
}

}  // namespace quillbank::xml

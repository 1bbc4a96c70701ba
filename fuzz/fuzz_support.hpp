#pragma once

// Shared by the fuzz targets: the input as text, and the errors a reader may
// raise for hostile text (anything else escaping a reader is a finding).

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <quillbank/error.hpp>

namespace quillbank::fuzz {

inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The errors the readers document for text they cannot take: XML of the
// wrong form, a wrong <ppc> root (5), too many child nodes (6), text that is
// not UTF-8 (380), a map without a name (94), a failure of the document model.
inline bool IsDocumentedReaderError(const Error& error) {
    switch (error.Number()) {
        case ErrXmlForm:
        case ErrInvalidCall:
        case ErrOverflow:
        case ErrInvalidArgument:
        case ErrNullArgument:
        case ErrXmlDom:
            return true;
        default:
            return false;
    }
}

// Stops the run with a finding that libFuzzer records as a crash.
[[noreturn]] inline void Finding() { std::abort(); }

}  // namespace quillbank::fuzz

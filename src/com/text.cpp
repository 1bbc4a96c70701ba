#include "com/text.hpp"

#include <new>

#include "support/text.hpp"

namespace quillbank::com {

std::wstring Wide(std::string_view utf8) {
    const std::u16string units = support::Utf8ToUtf16(utf8);
    return std::wstring(units.begin(), units.end());
}

std::string Utf8(BSTR text) {
    if (text == nullptr) {
        return {};
    }
    return support::Utf16ToUtf8(std::u16string_view(reinterpret_cast<const char16_t*>(text), SysStringLen(text)));
}

BSTR NewBstr(std::string_view utf8) {
    const std::wstring wide = Wide(utf8);
    BSTR out = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (out == nullptr) {
        throw std::bad_alloc();
    }
    return out;
}

}  // namespace quillbank::com

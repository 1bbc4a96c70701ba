#include "xml/msxml/com_support.hpp"

#include <quillbank/error.hpp>

#include "support/text.hpp"
#include "xml/dom_error.hpp"

namespace quillbank::xml::msxml {

std::wstring ToWide(std::string_view utf8) {
    const std::u16string units = support::Utf8ToUtf16(utf8);
    return std::wstring(units.begin(), units.end());
}

std::string ToUtf8(const wchar_t* text, std::size_t length) {
    if (text == nullptr) {
        return {};
    }
    return support::Utf16ToUtf8(std::u16string_view(reinterpret_cast<const char16_t*>(text), length));
}

std::string ToUtf8(BSTR text) { return ToUtf8(text, text == nullptr ? 0 : SysStringLen(text)); }

namespace {

bool IsAscii(std::string_view text) noexcept {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return false;
        }
    }
    return true;
}

}  // namespace

Bstr::Bstr(std::string_view utf8) {
    // Names and most values are ASCII: widened straight into the string,
    // without the intermediate copies of the conversion.
    if (IsAscii(utf8)) {
        s_ = SysAllocStringLen(nullptr, static_cast<UINT>(utf8.size()));
        if (s_ != nullptr) {
            for (std::size_t i = 0; i < utf8.size(); ++i) {
                s_[i] = static_cast<OLECHAR>(static_cast<unsigned char>(utf8[i]));
            }
        }
    } else {
        const std::u16string units = support::Utf8ToUtf16(utf8);
        static_assert(sizeof(OLECHAR) == sizeof(char16_t));
        s_ = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(units.data()), static_cast<UINT>(units.size()));
    }
    if (s_ == nullptr) {
        throw Error(static_cast<std::int32_t>(E_OUTOFMEMORY), kDomErrorSource, "Out of memory.");
    }
}

std::string Bstr::Utf8() const { return ToUtf8(s_); }

void RaiseComError(HRESULT hr, const char* description) {
    std::string source = kDomErrorSource;
    std::string text = description;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Out()) == S_OK && info) {
        Bstr infoSource;
        Bstr infoDescription;
        if (SUCCEEDED(info->GetSource(infoSource.Out())) && infoSource.Get() != nullptr &&
            SysStringLen(infoSource.Get()) != 0) {
            source = infoSource.Utf8();
        }
        if (SUCCEEDED(info->GetDescription(infoDescription.Out())) && infoDescription.Get() != nullptr &&
            SysStringLen(infoDescription.Get()) != 0) {
            text = infoDescription.Utf8();
            // MSXML ends its descriptions with CR LF.
            while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
                text.pop_back();
            }
        }
    }
    throw Error(static_cast<std::int32_t>(hr), source, text);
}

HRESULT CreateMsxmlObject(REFCLSID clsid, REFIID iid, void** object) {
    HRESULT hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, object);
    if (hr == CO_E_NOTINITIALIZED) {
        const HRESULT entered = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        if (FAILED(entered)) {
            return entered;
        }
        hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, object);
    }
    return hr;
}

}  // namespace quillbank::xml::msxml

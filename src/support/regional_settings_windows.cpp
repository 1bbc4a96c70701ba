// The regional settings of the Windows build: text is read with OLE
// Automation's own conversions, in the user's default locale until another
// setting is selected, so the answers are the platform's by construction.

#ifdef _WIN32

#include <windows.h>
#include <oleauto.h>

#include <mutex>

#include "support/regional_settings.hpp"
#include "support/utf8.hpp"

namespace quillbank::support {

namespace {

std::mutex& SettingMutex() {
    static std::mutex mutex;
    return mutex;
}

LCID& SettingLcid() {
    static LCID lcid = LOCALE_USER_DEFAULT;
    return lcid;
}

LCID CurrentLcid() {
    const std::lock_guard lock(SettingMutex());
    return SettingLcid();
}

std::wstring Wide(std::string_view text) {
    std::u16string out;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto cp = DecodeUtf8(text, i);
        if (!cp) return {};
        AppendUtf16(out, *cp);
    }
    return std::wstring(out.begin(), out.end());
}

// A BSTR of the text for the length of one conversion.
class TextBstr {
public:
    explicit TextBstr(std::string_view text) {
        const std::wstring wide = Wide(text);
        bstr_ = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    }
    ~TextBstr() { SysFreeString(bstr_); }
    TextBstr(const TextBstr&) = delete;
    TextBstr& operator=(const TextBstr&) = delete;
    BSTR Get() const { return bstr_; }

private:
    BSTR bstr_ = nullptr;
};

}  // namespace

bool SelectRegionalSetting(std::string_view name) {
    std::wstring wide = Wide(name);
    for (auto& c : wide) {
        if (c == L'_') c = L'-';
    }
    if (wide.empty()) return false;
    const LCID lcid = LocaleNameToLCID(wide.c_str(), 0);
    if (lcid == 0 || lcid == LOCALE_CUSTOM_UNSPECIFIED) return false;
    const std::lock_guard lock(SettingMutex());
    SettingLcid() = lcid;
    return true;
}

std::string CurrentRegionalSetting() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    const LCID lcid = CurrentLcid();
    const int length = lcid == LOCALE_USER_DEFAULT ? GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH)
                                                   : LCIDToLocaleName(lcid, name, LOCALE_NAME_MAX_LENGTH, 0);
    std::string out;
    for (int i = 0; i + 1 < length; ++i) {
        AppendUtf8(out, static_cast<char32_t>(name[i]));
    }
    return out.empty() ? "en-US" : out;
}

std::optional<double> RegionalTextToDouble(std::string_view text) {
    const TextBstr bstr(text);
    double value = 0;
    if (bstr.Get() == nullptr || FAILED(VarR8FromStr(bstr.Get(), CurrentLcid(), 0, &value))) return std::nullopt;
    return value;
}

std::optional<Date> RegionalTextToDate(std::string_view text) {
    const TextBstr bstr(text);
    DATE value = 0;
    if (bstr.Get() == nullptr || FAILED(VarDateFromStr(bstr.Get(), CurrentLcid(), 0, &value))) return std::nullopt;
    return value;
}

}  // namespace quillbank::support

#endif

#include "support/base64_coders.hpp"

#include <algorithm>

#include "support/ansi.hpp"
#include "support/ascii_folding.hpp"
#include "support/text.hpp"
#include "xml/base64.hpp"

namespace quillbank::support {

std::string EncodeBase64(std::string_view text) {
    if (ascii::IsAscii(text)) {
        // ASCII is its own ANSI form, one byte a code unit: the text and the
        // zero byte that always ends the data.
        std::vector<std::uint8_t> buffer(text.size() + 1, 0);
        std::copy(text.begin(), text.end(), buffer.begin());
        return xml::EncodeBase64Text(buffer);
    }
    // One byte per UTF-16 code unit (the ANSI bytes cut or padded with zero
    // bytes to that length), plus the zero byte that always ends the data.
    std::vector<std::uint8_t> buffer = Utf8ToAnsi(text);
    buffer.resize(Utf16Length(text), 0);
    buffer.push_back(0);
    return xml::EncodeBase64Text(buffer);
}

std::string DecodeBase64(std::string_view b64) {
    const std::vector<std::uint8_t> bytes = xml::DecodeBase64TextOrRaise(b64);
    // The text ends at its first NUL (the data always ends with one).
    std::string text = AnsiToUtf8(bytes);
    text.resize(std::min(text.find('\0'), text.size()));
    return text;
}

std::string EncodeBase64Utf8(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    // The text is UTF-8 already; text that is not is first repaired the way
    // the platform's conversion repairs broken UTF-16.
    std::string repaired;
    std::string_view utf8 = text;
    if (!IsValidUtf8(text)) {
        repaired = Utf16ToUtf8(Utf8ToUtf16(text));
        utf8 = repaired;
    }
    if (utf8.empty()) {
        return EncodeBase64("#error#");
    }
    const auto* data = reinterpret_cast<const std::uint8_t*>(utf8.data());
    return xml::EncodeBase64Text(std::span<const std::uint8_t>(data, utf8.size()));
}

std::string DecodeBase64Utf8(std::string_view b64) {
    if (b64.empty()) {
        return {};
    }
    const std::vector<std::uint8_t> bytes = xml::DecodeBase64TextOrRaise(b64);
    if (SafeUpperBound(bytes) < 0) {
        return {};
    }
    const std::string_view raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string text = IsValidUtf8(raw) ? std::string(raw) : Utf16ToUtf8(Utf8ToUtf16(raw));
    return TrimAtNull(text);
}

std::int32_t SafeUpperBound(const std::vector<std::uint8_t>& buffer) noexcept {
    if (buffer.empty() || buffer.size() > static_cast<std::size_t>(INT32_MAX)) {
        return -1;
    }
    return static_cast<std::int32_t>(buffer.size()) - 1;
}

}  // namespace quillbank::support

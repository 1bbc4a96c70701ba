#include "xml/escape.hpp"

#include <array>
#include <cstdint>

#include "xml/text_checks.hpp"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillbank::xml {

namespace {

enum class Mode { Text, Attribute, AsciiText, AsciiAttribute };

constexpr std::array<bool, 256> MakeTable(Mode mode) {
    std::array<bool, 256> table{};
    table['&'] = true;
    table['<'] = true;
    table['>'] = true;
    table['\r'] = true;
    if (mode == Mode::Text) {
        table['\n'] = true;
    }
    if (mode == Mode::Attribute || mode == Mode::AsciiAttribute) {
        table['"'] = true;
        table['\t'] = true;
        table['\n'] = true;
    }
    if (mode == Mode::AsciiText || mode == Mode::AsciiAttribute) {
        for (std::size_t b = 0x80; b < 256; ++b) {
            table[b] = true;
        }
    }
    return table;
}

constexpr auto kTextTable = MakeTable(Mode::Text);
constexpr auto kAttributeTable = MakeTable(Mode::Attribute);
constexpr auto kAsciiTextTable = MakeTable(Mode::AsciiText);
constexpr auto kAsciiAttributeTable = MakeTable(Mode::AsciiAttribute);

// What an ASCII byte that needs escaping is written as, or null when it is
// written as it stands. In attribute values the quote and the three
// whitespace characters become references (raw ones would read back as
// spaces); in text a LF is written as CR LF and a TAB and a quote stay.
constexpr const char* EscapeOf(unsigned char b, bool attribute) {
    switch (b) {
        case '&': return "&amp;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        case '"': return attribute ? "&quot;" : nullptr;
        case '\t': return attribute ? "&#9;" : nullptr;
        case '\r': return "&#13;";
        case '\n': return attribute ? "&#10;" : "\r\n";
        default: return nullptr;
    }
}

void AppendDecimalReference(std::string& out, std::uint32_t value) {
    char digits[12];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    out += "&#";
    while (count > 0) {
        out.push_back(digits[--count]);
    }
    out.push_back(';');
}

// The position of the first byte at or after `pos` that the table of `mode`
// marks, sixteen bytes at a time where the processor allows.
template <Mode mode>
std::size_t FindSpecial(const char* data, std::size_t pos, std::size_t size, const std::array<bool, 256>& table) {
#if defined(__SSE2__)
    constexpr bool attribute = mode == Mode::Attribute || mode == Mode::AsciiAttribute;
    constexpr bool ascii = mode == Mode::AsciiText || mode == Mode::AsciiAttribute;
    const __m128i amp = _mm_set1_epi8('&');
    const __m128i lt = _mm_set1_epi8('<');
    const __m128i gt = _mm_set1_epi8('>');
    const __m128i cr = _mm_set1_epi8('\r');
    while (pos + 16 <= size) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + pos));
        __m128i marked = _mm_or_si128(_mm_cmpeq_epi8(chunk, amp), _mm_cmpeq_epi8(chunk, lt));
        marked = _mm_or_si128(marked, _mm_or_si128(_mm_cmpeq_epi8(chunk, gt), _mm_cmpeq_epi8(chunk, cr)));
        if constexpr (mode != Mode::AsciiText) {
            marked = _mm_or_si128(marked, _mm_cmpeq_epi8(chunk, _mm_set1_epi8('\n')));
        }
        if constexpr (attribute) {
            marked = _mm_or_si128(marked, _mm_or_si128(_mm_cmpeq_epi8(chunk, _mm_set1_epi8('"')),
                                                        _mm_cmpeq_epi8(chunk, _mm_set1_epi8('\t'))));
        }
        if constexpr (ascii) {
            // As signed bytes, every byte above 0x7F is below zero.
            marked = _mm_or_si128(marked, _mm_cmplt_epi8(chunk, _mm_setzero_si128()));
        }
        const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(marked));
        if (mask != 0) {
            return pos + static_cast<std::size_t>(__builtin_ctz(mask));
        }
        pos += 16;
    }
#endif
    while (pos < size && !table[static_cast<unsigned char>(data[pos])]) {
        ++pos;
    }
    return pos;
}

template <Mode mode>
void Append(std::string& out, std::string_view text, const std::array<bool, 256>& table) {
    std::size_t runStart = 0;
    std::size_t pos = 0;
    while ((pos = FindSpecial<mode>(text.data(), pos, text.size(), table)) < text.size()) {
        const unsigned char b = static_cast<unsigned char>(text[pos]);
        out.append(text.data() + runStart, pos - runStart);
        std::size_t next = pos + 1;
        if (const char* escaped = EscapeOf(b, mode == Mode::Attribute || mode == Mode::AsciiAttribute)) {
            out += escaped;
        } else {
            // A character above U+007F in an ASCII form. Text in the
            // document model is valid UTF-8; should a byte not decode,
            // it is written as the reference of the byte itself.
            char32_t c = 0;
            std::size_t at = pos;
            if (DecodeUtf8(text, at, c)) {
                next = at;
            } else {
                c = b;
            }
            AppendDecimalReference(out, static_cast<std::uint32_t>(c));
        }
        pos = next;
        runStart = pos;
    }
    out.append(text.data() + runStart, text.size() - runStart);
}

constexpr std::array<bool, 256> MakeCheckedTable(bool attribute) {
    std::array<bool, 256> table{};
    for (std::size_t b = 0; b < 256; ++b) {
        table[b] = b < 0x20 || b >= 0x80 || b == '&' || b == '<' || b == '>' || (attribute && b == '"');
    }
    return table;
}

constexpr auto kCheckedTextTable = MakeCheckedTable(false);
constexpr auto kCheckedAttributeTable = MakeCheckedTable(true);

// The position of the first byte at or after `pos` that needs a look when
// text is checked and escaped: every byte below 0x20 or above 0x7F, '&',
// '<', '>', and for an attribute '"'. Sixteen bytes at a time where the
// processor allows.
template <bool attribute>
std::size_t FindCheckedSpecial(const char* data, std::size_t pos, std::size_t size) {
#if defined(__SSE2__)
    // As signed bytes, everything below 0x20 and everything above 0x7F
    // compares less than 0x20: one comparison finds both.
    const __m128i low = _mm_set1_epi8(0x20);
    const __m128i amp = _mm_set1_epi8('&');
    const __m128i lt = _mm_set1_epi8('<');
    const __m128i gt = _mm_set1_epi8('>');
    const __m128i quot = _mm_set1_epi8('"');
    while (pos + 16 <= size) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + pos));
        __m128i marked = _mm_or_si128(_mm_cmplt_epi8(chunk, low), _mm_cmpeq_epi8(chunk, amp));
        marked = _mm_or_si128(marked, _mm_or_si128(_mm_cmpeq_epi8(chunk, lt), _mm_cmpeq_epi8(chunk, gt)));
        if constexpr (attribute) {
            marked = _mm_or_si128(marked, _mm_cmpeq_epi8(chunk, quot));
        }
        const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(marked));
        if (mask != 0) {
            return pos + static_cast<std::size_t>(__builtin_ctz(mask));
        }
        pos += 16;
    }
#endif
    const std::array<bool, 256>& table = attribute ? kCheckedAttributeTable : kCheckedTextTable;
    while (pos < size && !table[static_cast<unsigned char>(data[pos])]) {
        ++pos;
    }
    return pos;
}

template <bool attribute, class Out>
bool AppendChecked(Out& out, std::string_view text) {
    bool keptControl = false;
    const char* data = text.data();
    const std::size_t size = text.size();
    std::size_t runStart = 0;
    std::size_t pos = 0;
    while ((pos = FindCheckedSpecial<attribute>(data, pos, size)) < size) {
        const unsigned char b = static_cast<unsigned char>(data[pos]);
        if (b >= 0x80) {
            // Copied as it is once it decodes; otherwise the model's check
            // raises its error.
            char32_t c = 0;
            std::size_t at = pos;
            if (DecodeUtf8(text, at, c)) {
                pos = at;
            } else {
                DocumentText(text);
                ++pos;
            }
            continue;
        }
        if (b == '\0') {
            // The document model's strings end at a NUL: the rest is cut.
            out.append(data + runStart, pos - runStart);
            return keptControl;
        }
        if (!attribute && b == '\r') {
            // Text set into the document model holds LF for CR LF and for a
            // lone CR; the LF is written as CR LF.
            out.append(data + runStart, pos - runStart);
            ++pos;
            if (pos < size && data[pos] == '\n') {
                runStart = pos;
                continue;
            }
            out += "\r\n";
            runStart = pos;
            continue;
        }
        const char* replacement = EscapeOf(b, attribute);
        if (replacement == nullptr) {
            // Other control characters are kept.
            keptControl = keptControl || (b < 0x20 && b != '\t');
            ++pos;
            continue;
        }
        out.append(data + runStart, pos - runStart);
        out += replacement;
        ++pos;
        runStart = pos;
    }
    out.append(data + runStart, size - runStart);
    return keptControl;
}

}  // namespace

bool AppendCheckedText(TextBuffer& out, std::string_view text) { return AppendChecked<false>(out, text); }

bool AppendCheckedAttribute(TextBuffer& out, std::string_view value) { return AppendChecked<true>(out, value); }

void AppendEscapedText(std::string& out, std::string_view text) { Append<Mode::Text>(out, text, kTextTable); }

void AppendCommentText(std::string& out, std::string_view text) {
    std::size_t runStart = 0;
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
        out.append(text.data() + runStart, at - runStart);
        out += "\r\n";
        runStart = at + 1;
    }
    out.append(text.data() + runStart, text.size() - runStart);
}

void AppendEscapedAttribute(std::string& out, std::string_view value) {
    Append<Mode::Attribute>(out, value, kAttributeTable);
}

void AppendAsciiText(std::string& out, std::string_view text) {
    Append<Mode::AsciiText>(out, text, kAsciiTextTable);
}

void AppendAsciiAttribute(std::string& out, std::string_view value) {
    Append<Mode::AsciiAttribute>(out, value, kAsciiAttributeTable);
}

}  // namespace quillbank::xml

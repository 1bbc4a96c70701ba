#include "xml/prescan.hpp"

#include <array>
#include <cstdint>
#include <unordered_set>
#include <utility>
#include <vector>

#include "xml/text_checks.hpp"

#if defined(__SSE2__)
#include <emmintrin.h>
#define QUILLBANK_PRESCAN_SSE2 1
#endif

namespace quillbank::xml {

namespace {

// The bytes that need a closer look in each place of the text: every byte
// below 0x20 or above 0x7F, and the place's own specials. The others are
// skipped in bulk, sixteen at a time where the processor allows.
struct ByteClass {
    std::array<bool, 256> table{};
    std::array<char, 6> specials{};
    std::size_t count = 0;
};

constexpr ByteClass MakeClass(std::string_view specials) {
    ByteClass result;
    for (std::size_t b = 0; b < 0x20; ++b) {
        result.table[b] = true;
    }
    for (std::size_t b = 0x80; b < 256; ++b) {
        result.table[b] = true;
    }
    for (char c : specials) {
        result.table[static_cast<unsigned char>(c)] = true;
        result.specials[result.count++] = c;
    }
    return result;
}

constexpr ByteClass kContentBytes = MakeClass("<&]");
constexpr ByteClass kTagBytes = MakeClass("<>&/\"'");
constexpr ByteClass kQuotedBytes = MakeClass("<&\"'");
constexpr ByteClass kEndTagBytes = MakeClass("<>&\"'");

// The bytes that end an attribute name when it is read backwards from its '='.
constexpr std::array<bool, 256> MakeNameStops() {
    std::array<bool, 256> stops{};
    for (const char c : {' ', '\t', '\n', '\r', '"', '\''}) {
        stops[static_cast<unsigned char>(c)] = true;
    }
    return stops;
}

constexpr std::array<bool, 256> kNameStops = MakeNameStops();

bool IsNameStop(char c) { return kNameStops[static_cast<unsigned char>(c)]; }

#ifdef QUILLBANK_PRESCAN_SSE2
// The bytes of `chunk` equal to one of the class's specials, added to
// `marked`. The specials are unrolled as constants: a loop over them would
// make each comparison value again for every sixteen bytes.
template <const ByteClass& bytes, std::size_t... K>
inline __m128i MarkSpecials(__m128i chunk, __m128i marked, std::index_sequence<K...>) {
    ((marked = _mm_or_si128(marked, _mm_cmpeq_epi8(chunk, _mm_set1_epi8(bytes.specials[K])))), ...);
    return marked;
}
#endif

// The position of the first byte at or after `p` that the class marks, or
// `size`. The class is a template argument, so that its specials are
// constants of the loop.
template <const ByteClass& bytes>
inline std::size_t FindMarked(const char* data, std::size_t p, std::size_t size) {
#ifdef QUILLBANK_PRESCAN_SSE2
    // As signed bytes, everything below 0x20 and everything above 0x7F
    // compares less than 0x20: one comparison finds both.
    const __m128i low = _mm_set1_epi8(0x20);
    while (p + 16 <= size) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + p));
        const __m128i marked =
            MarkSpecials<bytes>(chunk, _mm_cmplt_epi8(chunk, low), std::make_index_sequence<bytes.count>());
        const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(marked));
        if (mask != 0) {
            return p + static_cast<std::size_t>(__builtin_ctz(mask));
        }
        p += 16;
    }
#endif
    while (p < size && !bytes.table[static_cast<unsigned char>(data[p])]) {
        ++p;
    }
    return p;
}

bool StartsWith(std::string_view text, std::size_t pos, std::string_view prefix) {
    return text.size() - pos >= prefix.size() && text.compare(pos, prefix.size(), prefix) == 0;
}

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

class Prescanner {
public:
    explicit Prescanner(std::string_view text) : t_(text) {}

    // Whether some start tag has an xml:space attribute.
    bool SawXmlSpace() const noexcept { return sawXmlSpace_; }
    // Whether some text inside the root element starts with whitespace.
    bool SawSpaceText() const noexcept { return sawSpaceText_; }
    // Whether some element is written with an end tag right after its start
    // tag ("<a></a>").
    bool SawEmptyEndTag() const noexcept { return sawEmptyEndTag_; }

    bool Run() {
        while (p_ < t_.size()) {
            const char c = t_[p_];
            if (c == '<') {
                if (!Markup()) {
                    return false;
                }
            } else if (depth_ == 0) {
                // Outside the root element only whitespace may stand.
                if (!IsXmlWhitespace(c)) {
                    return false;
                }
                ++p_;
            } else {
                if (IsXmlWhitespace(c)) {
                    sawSpaceText_ = true;
                }
                if (!Content()) {
                    return false;
                }
            }
        }
        return roots_ == 1 && depth_ == 0;
    }

private:
    // Steps over one character, refusing invalid UTF-8 and disallowed characters.
    bool Char() {
        const unsigned char b = static_cast<unsigned char>(t_[p_]);
        if (b < 0x80) {
            if (b < 0x20 && b != 0x9 && b != 0xA && b != 0xD) {
                return false;
            }
            ++p_;
            return true;
        }
        // Text in other scripts comes in runs of multi-byte characters:
        // the whole run is checked here rather than one character a visit.
        do {
            char32_t c = 0;
            if (!DecodeUtf8(t_, p_, c) || !IsXmlChar(c)) {
                return false;
            }
        } while (p_ < t_.size() && static_cast<unsigned char>(t_[p_]) >= 0x80);
        return true;
    }

    template <const ByteClass& bytes>
    void SkipPlain() {
        p_ = FindMarked<bytes>(t_.data(), p_, t_.size());
    }

    // Character data between tags, up to the next '<'.
    bool Content() {
        while (p_ < t_.size()) {
            SkipPlain<kContentBytes>();
            if (p_ >= t_.size()) {
                return true;
            }
            const char c = t_[p_];
            if (c == '<') {
                return true;
            }
            if (c == '&') {
                if (!Reference()) {
                    return false;
                }
            } else if (c == ']' && StartsWith(t_, p_, "]]>")) {
                return false;
            } else if (!Char()) {
                return false;
            }
        }
        return true;
    }

    // "&...;": only the predefined entities and character references of
    // allowed characters.
    bool Reference() {
        std::size_t q = p_ + 1;
        if (q < t_.size() && t_[q] == '#') {
            ++q;
            const bool hex = q < t_.size() && t_[q] == 'x';
            if (hex) {
                ++q;
            }
            std::uint32_t value = 0;
            std::size_t digits = 0;
            for (; q < t_.size() && t_[q] != ';'; ++q, ++digits) {
                const char d = t_[q];
                std::uint32_t digit = 0;
                if (d >= '0' && d <= '9') {
                    digit = static_cast<std::uint32_t>(d - '0');
                } else if (hex && d >= 'a' && d <= 'f') {
                    digit = static_cast<std::uint32_t>(d - 'a' + 10);
                } else if (hex && d >= 'A' && d <= 'F') {
                    digit = static_cast<std::uint32_t>(d - 'A' + 10);
                } else {
                    return false;
                }
                value = value * (hex ? 16u : 10u) + digit;
                if (value > 0x10FFFF) {
                    return false;
                }
            }
            if (q >= t_.size() || digits == 0 || !IsXmlChar(static_cast<char32_t>(value))) {
                return false;
            }
            p_ = q + 1;
            return true;
        }
        std::string_view name;
        switch (q < t_.size() ? t_[q] : '\0') {
            case 'a': name = t_.size() - q > 2 && t_[q + 1] == 'm' ? "amp;" : "apos;"; break;
            case 'l': name = "lt;"; break;
            case 'g': name = "gt;"; break;
            case 'q': name = "quot;"; break;
            default: return false;
        }
        if (!StartsWith(t_, q, name)) {
            return false;
        }
        p_ = q + name.size();
        return true;
    }

    bool Markup() {
        const char second = p_ + 1 < t_.size() ? t_[p_ + 1] : '\0';
        if (second != '!' && second != '?' && second != '/') {
            if (depth_ == 0 && ++roots_ > 1) {
                return false;
            }
            ++p_;
            return StartTag();
        }
        if (second == '/') {
            if (depth_ == 0) {
                return false;
            }
            --depth_;
            if (p_ == startTagEnd_) {
                sawEmptyEndTag_ = true;
            }
            p_ += 2;
            return EndTag();
        }
        if (StartsWith(t_, p_, "<!--")) {
            p_ += 4;
            return Comment();
        }
        if (StartsWith(t_, p_, "<![CDATA[")) {
            if (depth_ == 0) {
                return false;
            }
            p_ += 9;
            return SkipTo("]]>");
        }
        if (StartsWith(t_, p_, "<!DOCTYPE")) {
            if (depth_ != 0 || roots_ != 0 || sawDoctype_) {
                return false;
            }
            sawDoctype_ = true;
            p_ += 9;
            return Doctype();
        }
        if (second == '?') {
            return ProcessingInstruction();
        }
        return false;  // "<!" begins nothing else in a document
    }

    bool Comment() {
        while (p_ < t_.size()) {
            if (t_[p_] == '-' && StartsWith(t_, p_, "--")) {
                if (!StartsWith(t_, p_, "-->")) {
                    return false;
                }
                p_ += 3;
                return true;
            }
            if (!Char()) {
                return false;
            }
        }
        return false;
    }

    // Steps past the next `end`, checking the characters on the way.
    bool SkipTo(std::string_view end) {
        while (p_ < t_.size()) {
            if (t_[p_] == end[0] && StartsWith(t_, p_, end)) {
                p_ += end.size();
                return true;
            }
            if (!Char()) {
                return false;
            }
        }
        return false;
    }

    bool ProcessingInstruction() {
        const std::size_t start = p_;
        p_ += 2;
        std::size_t q = p_;
        while (q < t_.size() && !IsXmlWhitespace(t_[q]) && t_[q] != '?') {
            ++q;
        }
        const std::string_view target = t_.substr(p_, q - p_);
        if (target.size() == 3 && LowerAscii(target[0]) == 'x' && LowerAscii(target[1]) == 'm' &&
            LowerAscii(target[2]) == 'l') {
            // The XML declaration, only at the very start and spelled in lower case.
            if (start != 0 || target != "xml") {
                return false;
            }
        }
        return SkipTo("?>");
    }

    bool Doctype() {
        while (p_ < t_.size()) {
            const char c = t_[p_];
            if (c == '>') {
                ++p_;
                return true;
            }
            if (c == '"' || c == '\'') {
                ++p_;
                if (!SkipTo(std::string_view(&t_[p_ - 1], 1))) {
                    return false;
                }
            } else if (c == '[') {
                ++p_;
                if (!InternalSubset()) {
                    return false;
                }
            } else if (!Char()) {
                return false;
            }
        }
        return false;
    }

    // The declarations between '[' and ']' of a document type declaration:
    // stepped over, never interpreted.
    bool InternalSubset() {
        while (p_ < t_.size()) {
            const char c = t_[p_];
            if (c == ']') {
                ++p_;
                return true;
            }
            if (c == '"' || c == '\'') {
                ++p_;
                if (!SkipTo(std::string_view(&t_[p_ - 1], 1))) {
                    return false;
                }
            } else if (StartsWith(t_, p_, "<!--")) {
                p_ += 4;
                if (!Comment()) {
                    return false;
                }
            } else if (StartsWith(t_, p_, "<?")) {
                p_ += 2;
                if (!SkipTo("?>")) {
                    return false;
                }
            } else if (!Char()) {
                return false;
            }
        }
        return false;
    }

    bool StartTag() {
        const std::size_t tagStart = p_;
        names_.clear();
        while (p_ < t_.size()) {
            SkipPlain<kTagBytes>();
            if (p_ >= t_.size()) {
                return false;
            }
            const char c = t_[p_];
            if (c == '>') {
                ++p_;
                ++depth_;
                startTagEnd_ = p_;
                return true;
            }
            if (c == '/' && StartsWith(t_, p_, "/>")) {
                p_ += 2;
                return true;
            }
            if (c == '"' || c == '\'') {
                if (!NewAttributeName(tagStart)) {
                    return false;
                }
                ++p_;
                if (!AttributeValue(c)) {
                    return false;
                }
            } else if (c == '<' || c == '&') {
                return false;
            } else if (!Char()) {
                return false;
            }
        }
        return false;
    }

    // At the quote opening an attribute value: takes the attribute's name
    // (before the '=') and refuses it when the element already has it.
    bool NewAttributeName(std::size_t tagStart) {
        std::size_t end = p_;
        while (end > tagStart && IsXmlWhitespace(t_[end - 1])) {
            --end;
        }
        if (end == tagStart || t_[end - 1] != '=') {
            return false;
        }
        --end;
        while (end > tagStart && IsXmlWhitespace(t_[end - 1])) {
            --end;
        }
        std::size_t begin = end;
        while (begin > tagStart && !IsNameStop(t_[begin - 1])) {
            --begin;
        }
        const std::string_view name = t_.substr(begin, end - begin);
        if (name == "xml:space") {
            sawXmlSpace_ = true;
        }
        if (names_.size() < kPairwiseNameLimit) {
            for (std::string_view seen : names_) {
                if (seen == name) {
                    return false;
                }
            }
            names_.push_back(name);
            return true;
        }
        // Many attributes: a set keeps the check linear.
        if (nameSet_.empty() || nameSetTag_ != tagStart) {
            nameSet_.clear();
            nameSet_.insert(names_.begin(), names_.end());
            nameSetTag_ = tagStart;
        }
        return nameSet_.insert(name).second;
    }

    bool AttributeValue(char quote) {
        while (p_ < t_.size()) {
            SkipPlain<kQuotedBytes>();
            if (p_ >= t_.size()) {
                return false;
            }
            const char c = t_[p_];
            if (c == quote) {
                ++p_;
                return true;
            }
            if (c == '<') {
                return false;
            }
            if (c == '&') {
                if (!Reference()) {
                    return false;
                }
            } else if (!Char()) {
                return false;
            }
        }
        return false;
    }

    bool EndTag() {
        while (p_ < t_.size()) {
            SkipPlain<kEndTagBytes>();
            if (p_ >= t_.size()) {
                return false;
            }
            const char c = t_[p_];
            if (c == '>') {
                ++p_;
                return true;
            }
            if (c == '<' || c == '"' || c == '\'' || c == '&' || !Char()) {
                return false;
            }
        }
        return false;
    }

    static constexpr std::size_t kPairwiseNameLimit = 16;

    std::string_view t_;
    std::size_t p_ = 0;
    // The attribute names of the start tag being scanned.
    std::vector<std::string_view> names_;
    std::unordered_set<std::string_view> nameSet_;
    std::size_t nameSetTag_ = 0;
    std::size_t depth_ = 0;
    int roots_ = 0;
    bool sawDoctype_ = false;
    bool sawXmlSpace_ = false;
    bool sawSpaceText_ = false;
    bool sawEmptyEndTag_ = false;
    // Where the last start tag that opened an element ended.
    std::size_t startTagEnd_ = std::string_view::npos;
};

}  // namespace

PrescanResult PrescanXml(std::string_view text) {
    PrescanResult result;
    Prescanner scanner(text);
    result.accepted = scanner.Run();
    result.mentionsXmlSpace = result.accepted && scanner.SawXmlSpace();
    result.hasSpaceText = result.accepted && scanner.SawSpaceText();
    result.hasEmptyEndTag = result.accepted && scanner.SawEmptyEndTag();
    return result;
}

}  // namespace quillbank::xml

#include "document_id.hpp"

#include <cctype>

namespace quillbank::tool {

namespace {

// Where the "lesson" start tag begins, skipping the declaration, comments
// and processing instructions before it; npos when there is none.
std::size_t LessonTag(std::string_view text) {
    std::size_t at = 0;
    while ((at = text.find('<', at)) != std::string_view::npos) {
        if (text.substr(at, 4) == "<!--") {
            at = text.find("-->", at);
            continue;
        }
        if (text.substr(at, 7) == "<lesson" && at + 7 < text.size() &&
            (std::isspace(static_cast<unsigned char>(text[at + 7])) || text[at + 7] == '>' || text[at + 7] == '/')) {
            return at;
        }
        ++at;
    }
    return std::string_view::npos;
}

struct Attribute {
    std::size_t valueBegin;
    std::size_t valueEnd;
};

// The "documentid" attribute's value in the start tag at `tag`.
std::optional<Attribute> FindDocumentId(std::string_view text, std::size_t tag) {
    std::size_t at = tag + 7;
    for (;;) {
        while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at]))) {
            ++at;
        }
        if (at >= text.size() || text[at] == '>' || text[at] == '/') {
            return std::nullopt;
        }
        const std::size_t nameBegin = at;
        while (at < text.size() && text[at] != '=' && !std::isspace(static_cast<unsigned char>(text[at]))) {
            ++at;
        }
        const std::string_view name = text.substr(nameBegin, at - nameBegin);
        while (at < text.size() && text[at] != '"' && text[at] != '\'') {
            ++at;
        }
        if (at >= text.size()) {
            return std::nullopt;
        }
        const char quote = text[at];
        const std::size_t valueBegin = at + 1;
        const std::size_t valueEnd = text.find(quote, valueBegin);
        if (valueEnd == std::string_view::npos) {
            return std::nullopt;
        }
        if (name == "documentid") {
            return Attribute{valueBegin, valueEnd};
        }
        at = valueEnd + 1;
    }
}

std::string Unescaped(std::string_view value) {
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '&') {
            for (auto [entity, character] : {std::pair{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'},
                                             {"&apos;", '\''}}) {
                std::string_view e(entity);
                if (value.substr(i, e.size()) == e) {
                    out += character;
                    i += e.size() - 1;
                    goto next;
                }
            }
        }
        out += value[i];
    next:;
    }
    return out;
}

std::string Escaped(std::string_view value) {
    std::string out;
    for (char c : value) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

}  // namespace

std::optional<std::string> DocumentIdOf(std::string_view text) {
    const std::size_t tag = LessonTag(text);
    if (tag == std::string_view::npos) {
        return std::nullopt;
    }
    auto attribute = FindDocumentId(text, tag);
    if (!attribute) {
        return std::nullopt;
    }
    return Unescaped(text.substr(attribute->valueBegin, attribute->valueEnd - attribute->valueBegin));
}

std::string WithDocumentId(std::string text, std::string_view documentId) {
    const std::size_t tag = LessonTag(text);
    if (tag == std::string::npos) {
        return text;
    }
    if (auto attribute = FindDocumentId(text, tag)) {
        text.replace(attribute->valueBegin, attribute->valueEnd - attribute->valueBegin, Escaped(documentId));
    }
    return text;
}

}  // namespace quillbank::tool

#include "view_page.hpp"

#include <array>
#include <utility>

#include "view_assets.hpp"

namespace quillbank::tool {

std::string HtmlEscaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&#39;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string ScriptSafeJson(const Json& data) {
    const std::string text = data.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '<') {
            out += "\\u003c";
        } else if (c == '>') {
            out += "\\u003e";
        } else if (c == '&') {
            out += "\\u0026";
        } else if (c == '\xE2' && i + 2 < text.size() && text[i + 1] == '\x80' &&
                   (text[i + 2] == '\xA8' || text[i + 2] == '\xA9')) {
            // U+2028 and U+2029 end a line in older script parsers.
            out += text[i + 2] == '\xA8' ? "\\u2028" : "\\u2029";
            i += 2;
        } else {
            out += c;
        }
    }
    return out;
}

std::string ViewPage(std::string_view title, const Json& data) {
    const std::array<std::pair<std::string_view, std::string>, 4> parts = {{
        {"{{TITLE}}", HtmlEscaped(title)},
        {"/*{{STYLE}}*/", std::string(kViewStyle)},
        {"/*{{SCRIPT}}*/", std::string(kViewScript)},
        {"{{DATA}}", ScriptSafeJson(data)},
    }};
    std::string page;
    std::size_t at = 0;
    const std::string_view tmpl = kViewPageTemplate;
    while (at < tmpl.size()) {
        std::size_t next = std::string_view::npos;
        const std::pair<std::string_view, std::string>* part = nullptr;
        for (const auto& candidate : parts) {
            auto found = tmpl.find(candidate.first, at);
            if (found < next) {
                next = found;
                part = &candidate;
            }
        }
        if (part == nullptr) {
            page.append(tmpl.substr(at));
            break;
        }
        page.append(tmpl.substr(at, next - at));
        page.append(part->second);
        at = next + part->first.size();
    }
    return page;
}

}  // namespace quillbank::tool

#include "xml/declaration.hpp"

#include "xml/escape.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

namespace {

bool IsUtf16Name(std::string_view name) {
    constexpr std::string_view kUtf16 = "utf-16";
    if (name.size() != kUtf16.size()) {
        return false;
    }
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i] >= 'A' && name[i] <= 'Z' ? static_cast<char>(name[i] - 'A' + 'a') : name[i];
        if (c != kUtf16[i]) {
            return false;
        }
    }
    return true;
}

void AppendPair(std::string& out, std::string_view name, std::string_view value) {
    out.push_back(' ');
    out += name;
    out += "=\"";
    AppendEscapedAttribute(out, value);
    out.push_back('"');
}

}  // namespace

void AppendDeclaration(std::string& out, const std::string* version, const std::string* encoding,
                       const std::string* standalone) {
    out += "<?xml";
    AppendPair(out, "version", version != nullptr ? std::string_view(*version) : std::string_view("1.0"));
    if (encoding != nullptr && IsUtf16Name(*encoding)) {
        AppendPair(out, "encoding", *encoding);
    }
    if (standalone != nullptr) {
        AppendPair(out, "standalone", *standalone);
    }
    out += "?>";
}

std::vector<std::pair<std::string, std::string>> DeclarationAttributes(std::string_view data) {
    std::vector<std::pair<std::string, std::string>> attributes;
    std::size_t pos = 0;
    while (pos < data.size()) {
        while (pos < data.size() && IsXmlWhitespace(data[pos])) {
            ++pos;
        }
        const std::size_t nameStart = pos;
        while (pos < data.size() && data[pos] != '=' && !IsXmlWhitespace(data[pos])) {
            ++pos;
        }
        const std::string_view name = data.substr(nameStart, pos - nameStart);
        while (pos < data.size() && IsXmlWhitespace(data[pos])) {
            ++pos;
        }
        if (pos >= data.size() || data[pos] != '=') {
            break;
        }
        ++pos;
        while (pos < data.size() && IsXmlWhitespace(data[pos])) {
            ++pos;
        }
        if (pos >= data.size() || (data[pos] != '"' && data[pos] != '\'')) {
            break;
        }
        const char quote = data[pos++];
        const std::size_t valueEnd = data.find(quote, pos);
        if (valueEnd == std::string_view::npos) {
            break;
        }
        attributes.emplace_back(std::string(name), std::string(data.substr(pos, valueEnd - pos)));
        pos = valueEnd + 1;
    }
    return attributes;
}

}  // namespace quillbank::xml

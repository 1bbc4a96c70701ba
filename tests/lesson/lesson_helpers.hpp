#pragma once

// Helpers shared by the lesson tests: texts with the per-write document
// identifier blanked out or without the control characters the string forms
// remove, and the identifiers a map refers to.

#include <regex>
#include <string>
#include <vector>

#include <quillbank/lesson.hpp>

namespace quillbank::testing {

// The text with the value of "documentid" replaced by "*".
inline std::string WithoutDocumentId(const std::string& text) {
    static const std::regex documentId("documentid=\"[^\"]*\"");
    return std::regex_replace(text, documentId, "documentid=\"*\"", std::regex_constants::format_first_only);
}

// The text without what the string forms remove: U+0000..U+0019 but TAB,
// LF and CR.
inline std::string WithoutControlChars(const std::string& text) {
    std::string out;
    for (const char c : text) {
        const auto b = static_cast<unsigned char>(c);
        if (b > 25 || b == 9 || b == 10 || b == 13) {
            out.push_back(c);
        }
    }
    return out;
}

// An element's "xml" as a string form gives it.
inline std::string ElementXml(const xml::Element& element) { return WithoutControlChars(element.Xml()); }

inline bool IsGuidText(const std::string& text) {
    static const std::regex guid("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$");
    return std::regex_match(text, guid);
}

// Every item's "sbid" in document order.
inline std::vector<std::string> MapItemIds(const LessonMap& map) {
    std::vector<std::string> ids;
    std::vector<xml::Node> pending;
    xml::Element root = map.ToXMLElement();
    for (xml::Node child = root.LastChild(); child; child = child.PreviousSibling()) {
        pending.push_back(child);
    }
    while (!pending.empty()) {
        xml::Node node = pending.back();
        pending.pop_back();
        if (!node.IsElement() || node.Name() != "item") {
            continue;
        }
        ids.push_back(node.AsElement().GetAttribute("sbid").value_or(""));
        for (xml::Node child = node.LastChild(); child; child = child.PreviousSibling()) {
            pending.push_back(child);
        }
    }
    return ids;
}

inline std::vector<std::string> StoryboardIds(const Lesson& lesson) {
    std::vector<std::string> ids;
    for (auto& sb : *lesson.Storyboards()) {
        ids.push_back(sb->SBID());
    }
    return ids;
}

}  // namespace quillbank::testing

// The part of `check` that reads the file's own elements, for what the
// reader drops or merges and the lesson as read no longer shows.

#include <algorithm>
#include <array>
#include <cctype>
#include <set>
#include <string>

#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "check_findings.hpp"
#include "property_path.hpp"
#include "text_decoding.hpp"

namespace quillbank::tool {

namespace {

constexpr std::array<std::string_view, 12> kPropertyElements = {
    "boolprop", "intprop",   "floatprop", "stringprop",   "dateprop", "colorprop",
    "fontprop", "rectprop",  "assetprop", "locationprop", "ppcprop",  "cecprop",
};

std::string Lower(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

bool IsPropertyElement(std::string_view name) {
    std::string lower = Lower(name);
    return std::find(kPropertyElements.begin(), kPropertyElements.end(), lower) != kPropertyElements.end();
}

std::string Tag(std::string_view name) {
    return "<" + std::string(name) + ">";
}

// The property element inside an "encProp", decoded the way the reader
// decodes it; null when that fails. The returned element keeps its
// document alive.
xml::Element DecodeEncoded(const xml::Element& encoded) {
    std::vector<std::uint8_t> bytes;
    try {
        bytes = encoded.GetBase64Value();
    } catch (const Error&) {
        return {};
    }
    std::string text;
    if (encoded.GetAttribute("enctype").value_or("") == "utf8") {
        text.assign(bytes.begin(), bytes.end());
    } else {
        auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
        text = Windows1252ToUtf8(std::span<const std::uint8_t>(bytes.data(), static_cast<std::size_t>(end - bytes.begin())));
    }
    auto document = xml::Document::Create();
    if (!document.LoadXML(Functions::CleanXMLString(text))) {
        return {};
    }
    return document.DocumentElement();
}

// Whether the reader keeps the property element: it reads a bag holding it alone.
bool ReaderKeeps(const xml::Element& property) {
    auto bag = PersistedPropertyCollection::Create();
    try {
        bag->FromXMLString("<ppc>" + property.Xml() + "</ppc>");
    } catch (const Error&) {
        return false;
    }
    return bag->Count() > 0;
}

template <typename Visit>
void ForEachElement(const xml::Node& parent, Visit visit) {
    for (xml::Node node = parent.FirstChild(); node; node = node.NextSibling()) {
        if (xml::Element element = node.AsElement()) {
            visit(element);
        }
    }
}

class DocumentChecker {
public:
    explicit DocumentChecker(Findings& findings) : findings_(findings) {}

    void Lesson(const xml::Element& lesson);
    const std::set<std::string>& Sbids() const { return sbids_; }

private:
    // The property elements directly inside a "ppc" or "ce" element.
    void Bag(const xml::Element& container, const std::string& bagPath);
    void Property(const xml::Element& property, const std::string& bagPath, PersistedPropertyCollection& seen,
                  bool encoded);
    void Maps(const xml::Element& maps);
    void Storyboards(const xml::Element& storyboards);

    Findings& findings_;
    std::set<std::string> sbids_;
};

void DocumentChecker::Lesson(const xml::Element& lesson) {
    if (lesson.GetAttribute("lessonid").value_or("").empty()) {
        findings_.Add("L02", "lesson", "the lesson element has no \"lessonid\"; every reading gives the lesson a new one");
    }
    std::set<std::string> parts;
    ForEachElement(lesson, [&](const xml::Element& element) {
        const std::string name = element.Name();
        if (name != "ppc" && name != "maps" && name != "storyboards") {
            findings_.Add("L04", "lesson", "the element " + Tag(name) + " is not part of a lesson; the reader ignores it");
            return;
        }
        if (!parts.insert(name).second) {
            findings_.Add("L03", "lesson", "the element " + Tag(name) + " stands more than once; only the last is read");
        }
        if (name == "ppc") {
            Bag(element, LessonBagPath());
        } else if (name == "maps") {
            Maps(element);
        } else {
            Storyboards(element);
        }
    });
}

void DocumentChecker::Bag(const xml::Element& container, const std::string& bagPath) {
    auto seen = PersistedPropertyCollection::Create();
    std::int32_t position = 0;
    ForEachElement(container, [&](const xml::Element& element) {
        const std::int32_t index = position++;
        if (Lower(element.Name()) != "encprop") {
            Property(element, bagPath, *seen, false);
            return;
        }
        xml::Element inner = DecodeEncoded(element);
        const std::string place = JoinPath(bagPath, "(encoded property " + std::to_string(index + 1) + ")");
        if (!ReaderKeeps(element)) {
            if (inner && !IsPropertyElement(inner.Name())) {
                findings_.Add("P03", place,
                              "the encoded property holds " + Tag(inner.Name()) +
                                  ", which is not a property element; the reader drops it");
            } else {
                findings_.Add("P04", place, "the encoded property is corrupt and cannot be parsed; the reader drops it");
            }
            return;
        }
        if (inner) {
            Property(inner, bagPath, *seen, true);
        }
    });
}

void DocumentChecker::Property(const xml::Element& property, const std::string& bagPath,
                               PersistedPropertyCollection& seen, bool encoded) {
    const std::string elementName = property.Name();
    auto nameAttribute = property.GetAttribute("name");
    const std::string name = nameAttribute.value_or("");
    if (!IsPropertyElement(elementName)) {
        std::string place = JoinPath(bagPath, nameAttribute ? PathName(name) : Tag(elementName));
        findings_.Add("P03", place, "the element " + Tag(elementName) + " is not a property element; the reader drops it");
        return;
    }
    const std::string path = JoinPath(bagPath, PathName(name));
    if (!nameAttribute) {
        findings_.Add("P07", path,
                      std::string(encoded ? "the encoded " : "the ") + Tag(elementName) +
                          " element has no name; it is read with the empty name");
    }
    if (seen.Exists(name)) {
        findings_.Add("P05", path, "the name stands twice in this bag (letter case ignored); only the last is read");
    }
    seen.SetBoolean(name, true);
    CheckZeroReading(property, path, findings_);

    const std::string lower = Lower(elementName);
    if (lower == "ppcprop") {
        ForEachElement(property, [&](const xml::Element& nested) {
            if (nested.Name() == "ppc") {
                Bag(nested, path);
            }
        });
    } else if (lower == "cecprop") {
        ForEachElement(property, [&](const xml::Element& list) {
            if (list.Name() != "cec") {
                return;
            }
            std::int32_t index = 0;
            ForEachElement(list, [&](const xml::Element& element) {
                if (element.Name() == "ce") {
                    Bag(element, Indexed(path, index++));
                }
            });
        });
    }
}

void DocumentChecker::Maps(const xml::Element& maps) {
    auto defaultName = maps.GetAttribute("default");
    if (!defaultName) {
        return;
    }
    bool found = false;
    ForEachElement(maps, [&](const xml::Element& map) {
        if (map.Name() == "map" && map.GetAttribute("name") == defaultName) {
            found = true;
        }
    });
    if (!found) {
        findings_.Add("M06", "maps",
                      "the default map " + Quoted(*defaultName) + " is not among the maps; the reader takes the first map");
    }
}

void DocumentChecker::Storyboards(const xml::Element& storyboards) {
    std::set<std::string>& seen = sbids_;
    seen.clear();
    std::int32_t position = 0;
    ForEachElement(storyboards, [&](const xml::Element& storyboard) {
        if (storyboard.Name() != "storyboard") {
            return;
        }
        const std::int32_t index = position++;
        auto sbid = storyboard.GetAttribute("sbid");
        if (!sbid || sbid->empty()) {
            findings_.Add("S04", "storyboards / storyboard " + std::to_string(index + 1),
                          "the storyboard " + Quoted(storyboard.GetAttribute("title").value_or("")) +
                              (sbid ? " has an empty identifier" : " has no identifier; every reading gives it a new one"));
        } else if (!seen.insert(Lower(*sbid)).second) {
            findings_.Add("S02", StoryboardPlace(*sbid),
                          "the identifier stands twice among the storyboards (letter case ignored); only the last is read");
        }
        const std::string id = sbid.value_or("");
        ForEachElement(storyboard, [&](const xml::Element& part) {
            if (part.Name() == "ppc") {
                Bag(part, StoryboardBagPath(id));
            } else if (part.Name() == "cec") {
                std::int32_t elementIndex = 0;
                ForEachElement(part, [&](const xml::Element& element) {
                    if (element.Name() == "ce") {
                        Bag(element, ChildElementPath(id, elementIndex++));
                    }
                });
            }
        });
    });
}

}  // namespace

std::set<std::string> CheckDocument(const xml::Document& document, Findings& findings) {
    DocumentChecker checker(findings);
    if (xml::Element lesson = document.DocumentElement()) {
        checker.Lesson(lesson);
    }
    return checker.Sbids();
}

}  // namespace quillbank::tool

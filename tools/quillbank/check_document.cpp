// The part of `check` that reads the file's own elements, for what the
// reader drops or merges and the lesson as read no longer shows.

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <unordered_set>
#include <memory>
#include <vector>
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

// The property names of one bag met so far, compared as the bag compares
// them (letter case ignored). ASCII names, nearly all of them, go into a
// hash set of their folded form; any other name is put to a property bag,
// which folds as the library does.
class SeenNames {
public:
    // False when the name was met before.
    bool Insert(const std::string& name) {
        if (std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
            return ascii_.insert(Lower(name)).second;
        }
        if (!others_) {
            others_ = PersistedPropertyCollection::Create();
        }
        if (others_->Exists(name)) {
            return false;
        }
        others_->SetBoolean(name, true);
        return true;
    }

private:
    std::unordered_set<std::string> ascii_;
    std::shared_ptr<PersistedPropertyCollection> others_;
};

// The nesting the reader keeps: the bag or list a property holds is one
// level below the bag holding the property; the lesson's, a storyboard's and
// a child element's own bags are level 0, and a property whose content would
// lie below kReaderNestingLimit is dropped with everything in it.
constexpr int kReaderNestingLimit = 200;

class DocumentChecker {
public:
    explicit DocumentChecker(Findings& findings) : findings_(findings) {}

    void Lesson(const xml::Element& lesson);
    const std::set<std::string>& Sbids() const { return sbids_; }

private:
    // A bag being walked: the property elements directly inside a "ppc" or
    // "ce" element. Bags nested in its properties are walked through the
    // same stack of frames, never by calling back into the walk, so that no
    // depth of the file can exhaust the call stack.
    struct Frame {
        xml::Node next;
        std::string path;
        std::shared_ptr<SeenNames> seen;
        int level = 0;
        std::int32_t position = 0;
    };
    struct Nested {
        xml::Element container;
        std::string path;
    };

    void Bag(const xml::Element& container, const std::string& bagPath);
    void Step(Frame& frame);
    void Property(const xml::Element& property, Frame& frame, bool encoded);
    void Skipped(const xml::Element& element, const std::string& place, std::string_view where);
    void SplitText(const xml::Element& property, const std::function<std::string()>& pathOf);
    void Maps(const xml::Element& maps);
    void Storyboards(const xml::Element& storyboards);

    Findings& findings_;
    std::set<std::string> sbids_;
    std::vector<Frame> frames_;
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

void DocumentChecker::Skipped(const xml::Element& element, const std::string& place, std::string_view where) {
    findings_.Add("R01", place,
                  "the element " + Tag(element.Name()) + " is not part of " + std::string(where) +
                      "; the reader skips it and what it holds");
}

void DocumentChecker::Bag(const xml::Element& container, const std::string& bagPath) {
    const std::size_t base = frames_.size();
    frames_.push_back({container.FirstChild(), bagPath, std::make_shared<SeenNames>(), 0, 0});
    while (frames_.size() > base) {
        Frame& frame = frames_.back();
        if (!frame.next) {
            frames_.pop_back();
            continue;
        }
        Step(frame);
    }
}

// Looks at the frame's next node; may push the frames of nested bags.
void DocumentChecker::Step(Frame& frame) {
    xml::Node node = frame.next;
    frame.next = node.NextSibling();
    xml::Element element = node.AsElement();
    if (!element) {
        return;
    }
    const std::int32_t index = frame.position++;
    if (Lower(element.Name()) != "encprop") {
        Property(element, frame, false);
        return;
    }
    xml::Element inner = DecodeEncoded(element);
    const std::string place = JoinPath(frame.path, "(encoded property " + std::to_string(index + 1) + ")");
    // A property element that decodes and parses is kept; only the others
    // are put to the reader itself, which is costlier.
    if (!(inner && IsPropertyElement(inner.Name())) && !ReaderKeeps(element)) {
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
        Property(inner, frame, true);
    }
}

// The reader keeps only the first text node of a string property; text
// after a comment, an element or inside CDATA is lost.
void DocumentChecker::SplitText(const xml::Element& property, const std::function<std::string()>& pathOf) {
    // The usual value: one text node, or none.
    const xml::Node only = property.FirstChild();
    if (!only || (only.Type() == xml::NodeType::Text && !only.NextSibling())) {
        return;
    }
    std::string first;
    bool haveFirst = false;
    std::string whole;
    for (xml::Node node = property.FirstChild(); node; node = node.NextSibling()) {
        const xml::NodeType type = node.Type();
        if (type == xml::NodeType::Text || type == xml::NodeType::CData) {
            whole += node.Value();
            if (type == xml::NodeType::Text && !haveFirst) {
                first = node.Value();
                haveFirst = true;
            }
        } else if (type == xml::NodeType::Element) {
            whole += node.Text();
        }
    }
    if (whole != first) {
        findings_.Add("R02", pathOf(),
                      "the value is split by a comment, CDATA section or element; the reader keeps only " +
                          Quoted(first) + " of " + Quoted(whole));
    }
}

// Frame may move when frames are pushed: that happens last, after every use
// of it. The property's path is made only when it is needed (a finding or a
// nested bag), since most properties need none.
void DocumentChecker::Property(const xml::Element& property, Frame& frame, bool encoded) {
    const std::string& bagPath = frame.path;
    const int level = frame.level;
    SeenNames& seen = *frame.seen;
    const std::string elementName = property.Name();
    const std::string lower = Lower(elementName);
    auto nameAttribute = property.GetAttribute("name");
    const std::string name = nameAttribute.value_or("");
    if (std::find(kPropertyElements.begin(), kPropertyElements.end(), lower) == kPropertyElements.end()) {
        std::string place = JoinPath(bagPath, nameAttribute ? PathName(name) : Tag(elementName));
        findings_.Add("P03", place, "the element " + Tag(elementName) + " is not a property element; the reader drops it");
        return;
    }
    auto pathOf = [&] { return JoinPath(bagPath, PathName(name)); };
    if (!nameAttribute) {
        findings_.Add("P07", pathOf(),
                      std::string(encoded ? "the encoded " : "the ") + Tag(elementName) +
                          " element has no name; it is read with the empty name");
    }
    if (!seen.Insert(name)) {
        findings_.Add("P05", pathOf(), "the name stands twice in this bag (letter case ignored); only the last is read");
    }
    CheckZeroReading(property, pathOf, findings_);

    if (lower == "stringprop") {
        SplitText(property, pathOf);
        return;
    }
    if (lower != "ppcprop" && lower != "cecprop") {
        return;
    }
    const std::string path = pathOf();
    if (level + 1 > kReaderNestingLimit) {
        findings_.Add("R03", path,
                      "the " + std::string(lower == "ppcprop" ? "bag" : "list") + " is nested deeper than the reader's "
                      "limit of " + std::to_string(kReaderNestingLimit) +
                          " levels; the reader drops the property and everything in it");
        return;
    }
    std::vector<Nested> nested;
    if (lower == "ppcprop") {
        ForEachElement(property, [&](const xml::Element& child) {
            if (child.Name() == "ppc") {
                nested.push_back({child, path});
            } else {
                Skipped(child, path, "a bag property");
            }
        });
    } else {
        ForEachElement(property, [&](const xml::Element& list) {
            if (list.Name() != "cec") {
                Skipped(list, path, "a list property");
                return;
            }
            std::int32_t index = 0;
            ForEachElement(list, [&](const xml::Element& element) {
                if (element.Name() == "ce") {
                    nested.push_back({element, Indexed(path, index++)});
                } else {
                    Skipped(element, path, "a list");
                }
            });
        });
    }
    // The first nested bag ends up on top, so findings keep document order.
    for (auto it = nested.rbegin(); it != nested.rend(); ++it) {
        frames_.push_back({it->container.FirstChild(), it->path, std::make_shared<SeenNames>(), level + 1, 0});
    }
}

void DocumentChecker::Maps(const xml::Element& maps) {
    auto defaultName = maps.GetAttribute("default");
    bool found = false;
    ForEachElement(maps, [&](const xml::Element& map) {
        if (map.Name() != "map") {
            Skipped(map, "maps", "the maps");
        } else if (defaultName && map.GetAttribute("name") == defaultName) {
            found = true;
        }
    });
    if (defaultName && !found) {
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
            Skipped(storyboard, "storyboards", "the storyboards");
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
                    } else {
                        Skipped(element, JoinPath(StoryboardPlace(id), "children"), "a storyboard's children");
                    }
                });
            } else {
                Skipped(part, StoryboardPlace(id), "a storyboard");
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

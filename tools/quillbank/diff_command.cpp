// quillbank diff A B: the differences between two lessons, as a person wants them.
//
// Lines start with "+" (only in B), "-" (only in A) or "~" (changed), then
// the place (see property_path.hpp). The order: identity, the lesson's
// properties, maps, storyboards. "documentid" identifies one written copy,
// not the lesson, and is never compared.

#include <algorithm>
#include <cctype>
#include <set>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "bag_walk.hpp"
#include "commands.hpp"
#include "json_report.hpp"
#include "lesson_file.hpp"
#include "map_items.hpp"
#include "output_file.hpp"
#include "property_path.hpp"
#include "property_text.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

constexpr const char* kNoIdentifier = "(none in the file)";

// A lesson and the identifiers its reader made up because the file had
// none: they are new at every reading, so comparing them would make a file
// differ from itself.
struct ReadLessonFile {
    std::shared_ptr<Lesson> lesson;
    bool lessonIdMadeUp = false;
    std::set<std::string> madeUpSbids;
};

// The file is read twice: what differs between the two readings was made up.
ReadLessonFile ReadForComparing(const std::string& path) {
    auto input = ReadInput(path);
    ReadLessonFile file;
    file.lesson = LoadLesson(input);
    auto again = LoadLesson(input);
    file.lessonIdMadeUp = file.lesson->LessonID() != again->LessonID();
    auto first = file.lesson->Storyboards()->begin();
    auto second = again->Storyboards()->begin();
    for (; first != file.lesson->Storyboards()->end() && second != again->Storyboards()->end(); ++first, ++second) {
        if ((*first)->SBID() != (*second)->SBID()) {
            file.madeUpSbids.insert((*first)->SBID());
        }
    }
    return file;
}

class LessonDiff {
public:
    std::string Text() const { return out_.str(); }
    bool Differs() const { return differs_; }

    void Identity(const ReadLessonFile& a, const ReadLessonFile& b);
    void Bags(const PersistedPropertyCollection& a, const PersistedPropertyCollection& b, const std::string& path);
    void Maps(const Lesson& a, const Lesson& b);
    void Storyboards(const ReadLessonFile& a, const ReadLessonFile& b);

private:
    std::ostream& Line(char mark) {
        differs_ = true;
        return out_ << mark << ' ';
    }
    void Field(const std::string& place, const char* field, const std::string& a, const std::string& b) {
        if (a != b) {
            Line('~') << place << ' ' << field << ": " << Quoted(a) << " -> " << Quoted(b) << '\n';
        }
    }
    static std::string Described(const PersistedPropertyCollection& bag, const std::string& name) {
        return std::string(TypeName(bag.GetPropertyType(name))) + ", " +
               std::string(EncodingLabel(bag.GetEncodingType(name))) + ": " + ValueText(bag, name);
    }
    // Two bags, or two lists, compared side by side; a pair holds what it
    // compares alive.
    struct Pair {
        const PersistedPropertyCollection* a = nullptr;
        const PersistedPropertyCollection* b = nullptr;
        const ChildElementCollection* listA = nullptr;
        const ChildElementCollection* listB = nullptr;
        std::shared_ptr<PersistedPropertyCollection> heldA, heldB;
        std::function<std::string(std::int32_t)> pathOf;
        std::string path;
        std::vector<std::string> names;
        std::size_t next = 0;
        std::shared_ptr<ChildElementCollection> heldListA, heldListB;
    };
    void Walk(Pair first);
    void Elements(const ChildElementCollection& a, const ChildElementCollection& b,
                  const std::function<std::string(std::int32_t)>& pathOf);
    void MapItemsOf(const LessonMap& a, const LessonMap& b, const std::string& place);

    std::ostringstream out_;
    bool differs_ = false;
};

void LessonDiff::Identity(const ReadLessonFile& fileA, const ReadLessonFile& fileB) {
    const Lesson& a = *fileA.lesson;
    const Lesson& b = *fileB.lesson;
    Field("lesson", "id", fileA.lessonIdMadeUp ? kNoIdentifier : a.LessonID(),
          fileB.lessonIdMadeUp ? kNoIdentifier : b.LessonID());
    Field("lesson", "title", a.Title(), b.Title());
    Field("lesson", "identifier", a.Identifier(), b.Identifier());
    Field("lesson", "classification", a.Classification(), b.Classification());
}

void LessonDiff::Bags(const PersistedPropertyCollection& a, const PersistedPropertyCollection& b,
                      const std::string& path) {
    Walk(Pair{&a, &b, nullptr, nullptr, nullptr, nullptr, {}, path, SortedNames(a), 0, nullptr, nullptr});
}

void LessonDiff::Elements(const ChildElementCollection& a, const ChildElementCollection& b,
                          const std::function<std::string(std::int32_t)>& pathOf) {
    Pair pair;
    pair.listA = &a;
    pair.listB = &b;
    pair.pathOf = pathOf;
    Walk(std::move(pair));
}

// Compares bags and lists on a stack of our own, never by calling itself:
// a nested bag or list is compared right after the line of the property
// that holds it, as a person reads the difference.
void LessonDiff::Walk(Pair first) {
    std::vector<Pair> stack;
    stack.push_back(std::move(first));
    auto pushBags = [&](std::shared_ptr<PersistedPropertyCollection> a, std::shared_ptr<PersistedPropertyCollection> b,
                        const std::string& path) {
        if (!a) a = PersistedPropertyCollection::Create();
        if (!b) b = PersistedPropertyCollection::Create();
        Pair pair{a.get(), b.get(), nullptr, nullptr, a, b, {}, path, SortedNames(*a), 0, nullptr, nullptr};
        stack.push_back(std::move(pair));
    };
    while (!stack.empty()) {
        Pair& top = stack.back();
        if (top.listA != nullptr) {
            const ChildElementCollection& a = *top.listA;
            const ChildElementCollection& b = *top.listB;
            if (top.next >= static_cast<std::size_t>(std::max(a.Count(), b.Count()))) {
                stack.pop_back();
                continue;
            }
            const auto i = static_cast<std::int32_t>(top.next++);
            auto elementA = a.Item(i);
            auto elementB = b.Item(i);
            const std::string place = top.pathOf(i);
            if (elementA && !elementB) {
                Line('-') << place << " (" << Quoted(elementA->Name()) << ", type " << Quoted(elementA->ElementType())
                          << ")\n";
            } else if (!elementA && elementB) {
                Line('+') << place << " (" << Quoted(elementB->Name()) << ", type " << Quoted(elementB->ElementType())
                          << ")\n";
            } else if (elementA && elementB) {
                Field(place, "name", elementA->Name(), elementB->Name());
                Field(place, "type", elementA->ElementType(), elementB->ElementType());
                pushBags(elementA->PPCObject(), elementB->PPCObject(), place);
            }
            continue;
        }
        const PersistedPropertyCollection& a = *top.a;
        const PersistedPropertyCollection& b = *top.b;
        if (top.next >= top.names.size()) {
            for (const auto& name : SortedNames(b)) {
                if (!a.Exists(name)) {
                    Line('+') << JoinPath(top.path, PathName(name)) << " (" << Described(b, name) << ")\n";
                }
            }
            stack.pop_back();
            continue;
        }
        const std::string name = top.names[top.next++];
        const std::string place = JoinPath(top.path, PathName(name));
        if (!b.Exists(name)) {
            Line('-') << place << " (" << Described(a, name) << ")\n";
            continue;
        }
        const PropertyTypes type = a.GetPropertyType(name);
        const bool sameKind = type == b.GetPropertyType(name);
        const bool nested = sameKind && (type == ptPPC || type == ptCEC);
        if (!sameKind || a.GetEncodingType(name) != b.GetEncodingType(name) ||
            (!nested && ValueText(a, name) != ValueText(b, name))) {
            Line('~') << place << " (" << Described(a, name) << ") -> (" << Described(b, name) << ")\n";
        }
        if (nested && type == ptPPC) {
            pushBags(a.GetPPC(name, nullptr), b.GetPPC(name, nullptr), place);
        } else if (nested) {
            auto listA = a.GetCEC(name, nullptr);
            auto listB = b.GetCEC(name, nullptr);
            if (!listA) listA = ChildElementCollection::Create();
            if (!listB) listB = ChildElementCollection::Create();
            Pair pair;
            pair.listA = listA.get();
            pair.listB = listB.get();
            pair.heldListA = listA;
            pair.heldListB = listB;
            pair.pathOf = [place](std::int32_t i) { return Indexed(place, i); };
            stack.push_back(std::move(pair));
        }
    }
}

// Where each storyboard first stands in a map: its place in the item list.
std::map<std::string, std::size_t> FirstPlaces(const std::vector<MapItem>& items) {
    std::map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (!items[i].sbid.empty()) {
            places.emplace(items[i].sbid, i);
        }
    }
    return places;
}

void LessonDiff::MapItemsOf(const LessonMap& a, const LessonMap& b, const std::string& place) {
    auto itemsA = MapItems(a);
    auto itemsB = MapItems(b);
    auto placesA = FirstPlaces(itemsA);
    auto placesB = FirstPlaces(itemsB);

    // The order of the siblings that stay under the same parent in both maps.
    auto keptOrder = [&](const std::vector<MapItem>& items, const std::map<std::string, std::size_t>& own,
                         const std::vector<MapItem>& otherItems, const std::map<std::string, std::size_t>& other) {
        std::map<std::string, std::int32_t> order;  // sbid -> rank among kept siblings
        std::map<std::string, std::int32_t> next;   // parent -> next rank
        for (std::size_t i = 0; i < items.size(); ++i) {
            const MapItem& item = items[i];
            if (item.sbid.empty() || own.at(item.sbid) != i) {
                continue;
            }
            auto there = other.find(item.sbid);
            if (there == other.end() || otherItems[there->second].parentSbid != item.parentSbid) {
                continue;
            }
            order[item.sbid] = next[item.parentSbid]++;
        }
        return order;
    };
    auto orderA = keptOrder(itemsA, placesA, itemsB, placesB);
    auto orderB = keptOrder(itemsB, placesB, itemsA, placesA);

    for (std::size_t i = 0; i < itemsA.size(); ++i) {
        const MapItem& item = itemsA[i];
        if (item.sbid.empty() || placesA.at(item.sbid) != i) {
            continue;
        }
        auto there = placesB.find(item.sbid);
        if (there == placesB.end()) {
            Line('-') << place << ": " << item.sbid << " (was item " << ItemPosition(itemsA, i) << ")\n";
            continue;
        }
        const MapItem& moved = itemsB[there->second];
        bool parentChanged = moved.parentSbid != item.parentSbid;
        bool orderChanged = !parentChanged && orderA.count(item.sbid) > 0 && orderB.count(item.sbid) > 0 &&
                            orderA[item.sbid] != orderB[item.sbid];
        if (parentChanged || orderChanged) {
            Line('~') << place << ": " << item.sbid << " moved from item " << ItemPosition(itemsA, i) << " to item "
                      << ItemPosition(itemsB, there->second) << '\n';
        }
    }
    for (std::size_t i = 0; i < itemsB.size(); ++i) {
        const MapItem& item = itemsB[i];
        if (!item.sbid.empty() && placesB.at(item.sbid) == i && placesA.count(item.sbid) == 0) {
            Line('+') << place << ": " << item.sbid << " at item " << ItemPosition(itemsB, i) << '\n';
        }
    }
}

void LessonDiff::Maps(const Lesson& a, const Lesson& b) {
    auto defaultA = DefaultOrFirstMap(a);
    auto defaultB = DefaultOrFirstMap(b);
    std::string labelA = defaultA ? MapLabel(*defaultA) : "(none)";
    std::string labelB = defaultB ? MapLabel(*defaultB) : "(none)";
    if (labelA != labelB) {
        Line('~') << "maps default: " << labelA << " -> " << labelB << '\n';
    }
    auto mapsA = a.Maps();
    auto mapsB = b.Maps();
    auto find = [](const LessonMapCollection& maps, const std::string& label) -> std::shared_ptr<LessonMap> {
        for (std::int32_t i = 0; i < maps.Count(); ++i) {
            if (MapLabel(*maps.ItemAt(i)) == label) {
                return maps.ItemAt(i);
            }
        }
        return nullptr;
    };
    for (std::int32_t i = 0; i < mapsA->Count(); ++i) {
        auto map = mapsA->ItemAt(i);
        const std::string label = MapLabel(*map);
        if (find(*mapsA, label) != map) {
            continue;  // a later map of the same name: compared through the first
        }
        auto other = find(*mapsB, label);
        if (!other) {
            Line('-') << "map " << label << '\n';
            continue;
        }
        MapItemsOf(*map, *other, "map " + label);
    }
    for (std::int32_t i = 0; i < mapsB->Count(); ++i) {
        auto map = mapsB->ItemAt(i);
        const std::string label = MapLabel(*map);
        if (find(*mapsB, label) == map && !find(*mapsA, label)) {
            Line('+') << "map " << label << '\n';
        }
    }
}

void LessonDiff::Storyboards(const ReadLessonFile& fileA, const ReadLessonFile& fileB) {
    // Storyboards are matched by identifier (letter case ignored); those
    // whose identifier the reader made up, by their order among such.
    auto keyed = [](const ReadLessonFile& file) {
        std::vector<std::pair<std::string, std::shared_ptr<Storyboard>>> list;
        std::int32_t madeUp = 0;
        for (const auto& storyboard : *file.lesson->Storyboards()) {
            const bool invented = file.madeUpSbids.count(storyboard->SBID()) > 0;
            list.emplace_back(invented ? "(no identifier #" + std::to_string(++madeUp) + ")" : storyboard->SBID(),
                              storyboard);
        }
        return list;
    };
    auto folded = [](std::string key) {
        std::transform(key.begin(), key.end(), key.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return key;
    };
    const auto listA = keyed(fileA);
    const auto listB = keyed(fileB);
    std::map<std::string, std::shared_ptr<Storyboard>> byKeyA;
    std::map<std::string, std::shared_ptr<Storyboard>> byKeyB;
    for (const auto& [key, storyboard] : listA) byKeyA.emplace(folded(key), storyboard);
    for (const auto& [key, storyboard] : listB) byKeyB.emplace(folded(key), storyboard);
    for (const auto& [key, storyboard] : listA) {
        const std::string place = StoryboardPlace(key);
        auto there = byKeyB.find(folded(key));
        if (there == byKeyB.end()) {
            Line('-') << place << " (" << Quoted(storyboard->Title()) << ")\n";
            continue;
        }
        const auto& other = there->second;
        Field(place, "title", storyboard->Title(), other->Title());
        Field(place, "identifier", storyboard->Identifier(), other->Identifier());
        Field(place, "type", storyboard->SBType(), other->SBType());
        Field(place, "classification", storyboard->Classification(), other->Classification());
        Bags(*storyboard->Properties(), *other->Properties(), StoryboardBagPath(key));
        const std::string sbid = key;
        Elements(*storyboard->Children(), *other->Children(),
                 [sbid](std::int32_t i) { return ChildElementPath(sbid, i); });
    }
    for (const auto& [key, storyboard] : listB) {
        if (byKeyA.count(folded(key)) == 0) {
            Line('+') << StoryboardPlace(key) << " (" << Quoted(storyboard->Title()) << ")\n";
        }
    }
}

struct DiffOptions {
    std::string first;
    std::string second;
    bool json = false;
};

// The differences as a JSON document: each line's mark as a kind and the
// rest of the line as its text.
std::string DiffJson(const DiffOptions& options, const LessonDiff& diff) {
    Json document;
    document["quillbank"] = kReportVersion;
    document["command"] = "diff";
    document["a"] = options.first;
    document["b"] = options.second;
    document["differs"] = diff.Differs();
    Json changes = Json::array();
    std::istringstream lines(diff.Text());
    for (std::string line; std::getline(lines, line);) {
        if (line.size() < 2) {
            continue;
        }
        const char* kind = line[0] == '+' ? "added" : line[0] == '-' ? "removed" : "changed";
        changes.push_back(Json{{"kind", kind}, {"text", line.substr(2)}});
    }
    document["changes"] = std::move(changes);
    return JsonLine(document);
}

}  // namespace

Command AddDiffCommand(CLI::App& program) {
    auto options = std::make_shared<DiffOptions>();
    auto* app = program.add_subcommand(
        "diff", "Show the differences between lessons A and B: identity, properties added (+), removed (-) or "
                "changed (~) by path, maps and their items, storyboards. \"documentid\" is ignored. Exit status 1 "
                "when they differ");
    app->add_option("A", options->first, "The first lesson file (- for standard input)")->required();
    app->add_option("B", options->second, "The second lesson file (- for standard input)")->required();
    app->add_flag("--json", options->json,
                  "Write the differences as one JSON document (the shape is quillbank-report.schema.json, installed "
                  "in share/doc/quillbank)");
    return {app, [options] {
                if (options->first == kStandardStream && options->second == kStandardStream) {
                    throw ToolError("diff: only one of A and B can be standard input");
                }
                auto fileA = ReadForComparing(options->first);
                auto fileB = ReadForComparing(options->second);
                const Lesson& a = *fileA.lesson;
                const Lesson& b = *fileB.lesson;
                LessonDiff diff;
                diff.Identity(fileA, fileB);
                diff.Bags(*a.Properties(), *b.Properties(), LessonBagPath());
                diff.Maps(a, b);
                diff.Storyboards(fileA, fileB);
                WriteOutput(kStandardStream, options->json ? DiffJson(*options, diff) : diff.Text());
                return diff.Differs() ? kExitFindings : kExitOk;
            }};
}

}  // namespace quillbank::tool

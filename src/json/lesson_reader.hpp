#pragma once

// The walk that makes a lesson from a parsed JSON document, for any parser
// whose values answer the questions of json/simdjson_value.hpp.
//
// Every value is checked on the way; the first that is not of the form raises
// with its JSON pointer (json/reading_error.hpp). An object's members are
// first gathered by name, refusing an unknown one, and then read in the
// order of the form, whatever their order in the text; of two members of
// the same name the later one counts. Properties go straight into their
// bag's store, made as the lesson's XML reader makes them, rather than
// through the bag's public setters with their checks and lookups.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "json/json_form.hpp"
#include "json/json_path.hpp"
#include "json/reading_error.hpp"
#include "properties/nesting.hpp"
#include "properties/persisted_property.hpp"
#include "properties/property_bag.hpp"
#include "properties/property_store.hpp"
#include "storyboards/storyboard_access.hpp"

namespace quillbank::json_form {

// The members each object of the form may have, in the order they are read.
namespace fields {

inline constexpr std::array<std::string_view, 8> kLesson = {
    "version", "lessonid", "title", "identifier", "classification", "properties", "maps", "storyboards"};
inline constexpr std::array<std::string_view, 2> kBag = {"name", "properties"};
inline constexpr std::array<std::string_view, 2> kList = {"name", "elements"};
inline constexpr std::array<std::string_view, 3> kElement = {"name", "type", "properties"};
inline constexpr std::array<std::string_view, 4> kProperty = {"name", "type", "encoding", "value"};
inline constexpr std::array<std::string_view, 5> kFont = {"name", "size", "bold", "italic", "underline"};
inline constexpr std::array<std::string_view, 4> kRectangle = {"left", "top", "width", "height"};
inline constexpr std::array<std::string_view, 3> kAsset = {"filename", "description", "source"};
inline constexpr std::array<std::string_view, 3> kLocation = {"start_point", "end_point", "map_name"};
inline constexpr std::array<std::string_view, 2> kMaps = {"default", "maps"};
inline constexpr std::array<std::string_view, 3> kMap = {"name", "items", "xml"};
inline constexpr std::array<std::string_view, 2> kItem = {"sbid", "items"};
inline constexpr std::array<std::string_view, 8> kStoryboard = {
    "sbid", "title", "identifier", "type", "classification", "shortid", "properties", "children"};

}  // namespace fields

template <class Value>
class LessonReader {
public:
    std::shared_ptr<Lesson> Read(const Value& document) {
        const JsonPath top;
        const auto members = MembersOf(document, top, fields::kLesson);
        const JsonPath versionPath = top.Field("version");
        if (AsInteger(Require(members, 0, top, fields::kLesson), versionPath, 0,
                      std::numeric_limits<std::int32_t>::max()) != kJsonFormVersion) {
            FailAt(versionPath, "version " + std::to_string(kJsonFormVersion) + " is the one read");
        }
        auto lesson = Lesson::Create();
        if (const auto& value = members[1]) {
            lesson->SetLessonID(AsString(*value, top.Field("lessonid")));
        }
        if (const auto& value = members[2]) {
            lesson->SetTitle(AsString(*value, top.Field("title")));
        }
        if (const auto& value = members[3]) {
            lesson->SetIdentifier(AsString(*value, top.Field("identifier")));
        }
        if (const auto& value = members[4]) {
            lesson->SetClassification(AsString(*value, top.Field("classification")));
        }
        if (const auto& value = members[5]) {
            const JsonPath path = top.Field("properties");
            const auto bag = MembersOf(*value, path, fields::kBag);
            ReadBag(bag[0], bag[1], path, *lesson->Properties(), 0);
        }
        if (const auto& value = members[6]) {
            ReadMaps(*value, top.Field("maps"), *lesson->Maps());
        }
        if (const auto& value = members[7]) {
            ReadStoryboards(*value, top.Field("storyboards"), *lesson->Storyboards());
        }
        return lesson;
    }

private:
    using Member = std::optional<Value>;
    template <std::size_t N>
    using Members = std::array<Member, N>;
    template <std::size_t N>
    using Names = std::array<std::string_view, N>;

    // The members of the object at `path` by the position of their names in
    // `names`; a member of any other name fails.
    template <std::size_t N>
    static Members<N> MembersOf(const Value& value, const JsonPath& path, const Names<N>& names) {
        if (!value.IsObject()) {
            FailAt(path, "expected an object");
        }
        Members<N> members;
        value.ForEachMember([&](std::string_view key, const Value& member) {
            for (std::size_t i = 0; i < N; ++i) {
                if (names[i] == key) {
                    members[i] = member;
                    return;
                }
            }
            FailAt(path.Field(key), "unknown field");
        });
        return members;
    }

    // Member `i` of an object, which must be there.
    template <std::size_t N>
    static const Value& Require(const Members<N>& members, std::size_t i, const JsonPath& path,
                                const Names<N>& names) {
        if (!members[i]) {
            FailAt(path.Field(names[i]), "missing");
        }
        return *members[i];
    }

    // Member `i` of a record, which must be there, and its path.
    template <std::size_t N>
    struct Record {
        const Members<N>& members;
        const JsonPath& path;
        const Names<N>& names;

        std::string Text(std::size_t i) const {
            return std::string(AsString(Require(members, i, path, names), path.Field(names[i])));
        }
        double Number(std::size_t i) const { return AsDouble(Require(members, i, path, names), path.Field(names[i])); }
        bool Flag(std::size_t i) const { return AsBoolean(Require(members, i, path, names), path.Field(names[i])); }
        std::int32_t Long(std::size_t i) const { return AsLong(Require(members, i, path, names), path.Field(names[i])); }
    };

    static void RequireArray(const Value& value, const JsonPath& path) {
        if (!value.IsArray()) {
            FailAt(path, "expected an array");
        }
    }

    static std::string_view AsString(const Value& value, const JsonPath& path) {
        if (!value.IsString()) {
            FailAt(path, "expected a string");
        }
        return value.Text();
    }

    static bool AsBoolean(const Value& value, const JsonPath& path) {
        if (!value.IsBoolean()) {
            FailAt(path, "expected true or false");
        }
        return value.Boolean();
    }

    // A JSON integer from `low` to `high`.
    static std::int64_t AsInteger(const Value& value, const JsonPath& path, std::int64_t low, std::int64_t high) {
        bool inRange = false;
        std::int64_t number = 0;
        if (value.IsUnsigned()) {
            const std::uint64_t unsignedNumber = value.Unsigned();
            inRange = unsignedNumber <= static_cast<std::uint64_t>(high);
            number = inRange ? static_cast<std::int64_t>(unsignedNumber) : 0;
            inRange = inRange && number >= low;
        } else if (value.IsInteger()) {
            number = value.Signed();
            inRange = number >= low && number <= high;
        }
        if (!inRange) {
            FailAt(path, "expected an integer from " + std::to_string(low) + " to " + std::to_string(high));
        }
        return number;
    }

    static std::int32_t AsLong(const Value& value, const JsonPath& path) {
        return static_cast<std::int32_t>(AsInteger(value, path, std::numeric_limits<std::int32_t>::min(),
                                                   std::numeric_limits<std::int32_t>::max()));
    }

    // A JSON number, or one of the texts that stand for the doubles JSON cannot hold.
    static double AsDouble(const Value& value, const JsonPath& path) {
        if (value.IsNumber()) {
            return value.Number();
        }
        if (value.IsString()) {
            const std::string_view text = value.Text();
            if (text == kNotANumber) {
                return std::numeric_limits<double>::quiet_NaN();
            }
            if (text == kInfinity) {
                return std::numeric_limits<double>::infinity();
            }
            if (text == kMinusInfinity) {
                return -std::numeric_limits<double>::infinity();
            }
        }
        FailAt(path, "expected a number, \"NaN\", \"Infinity\" or \"-Infinity\"");
    }

    // The index of the text in `names`, from `first` on, or fails naming it.
    template <std::size_t N>
    static std::size_t OneOf(const Value& value, const JsonPath& path, const Names<N>& names, std::size_t first,
                             const char* what) {
        const std::string_view text = AsString(value, path);
        for (std::size_t i = first; i < N; ++i) {
            if (names[i] == text) {
                return i;
            }
        }
        FailAt(path, std::string("unknown ") + what + " \"" + std::string(text) + "\"");
    }

    static void CheckLevel(int level, const JsonPath& path) {
        if (level > properties::kMaxNesting) {
            FailAt(path, "bags and lists nest deeper than " + std::to_string(properties::kMaxNesting) + " levels");
        }
    }

    // The members "name" and "properties" of a bag's object (or of a child
    // element's, which has a "type" too).
    void ReadBag(const Member& name, const Member& list, const JsonPath& path, PersistedPropertyCollection& bag,
                 int level) {
        CheckLevel(level, path);
        if (name) {
            bag.SetName(AsString(*name, path.Field("name")));
        }
        if (!list) {
            return;
        }
        const JsonPath listPath = path.Field("properties");
        RequireArray(*list, listPath);
        detail::PropertyStore& store = detail::PropertyBagAccess::Store(bag);
        store.Reserve(store.Size() + list->Size());
        list->ForEachItem(
            [&](std::size_t i, const Value& property) { ReadProperty(property, listPath.At(i), store, level); });
    }

    void ReadList(const Value& value, const JsonPath& path, ChildElementCollection& list, int level) {
        CheckLevel(level, path);
        const auto members = MembersOf(value, path, fields::kList);
        if (members[0]) {
            list.SetName(AsString(*members[0], path.Field("name")));
        }
        if (!members[1]) {
            return;
        }
        const JsonPath elementsPath = path.Field("elements");
        RequireArray(*members[1], elementsPath);
        members[1]->ForEachItem([&](std::size_t i, const Value& item) {
            const JsonPath elementPath = elementsPath.At(i);
            const auto element = MembersOf(item, elementPath, fields::kElement);
            auto made = ChildElement::Create();
            if (element[1]) {
                made->SetElementType(AsString(*element[1], elementPath.Field("type")));
            }
            ReadBag(element[0], element[2], elementPath, *made->PPCObject(), level);
            list.Append(made);
        });
    }

    void ReadProperty(const Value& value, const JsonPath& path, detail::PropertyStore& store, int level) {
        const auto& names = fields::kProperty;
        const auto members = MembersOf(value, path, names);
        const JsonPath namePath = path.Field("name");
        const std::string_view name = AsString(Require(members, 0, path, names), namePath);
        const auto type =
            static_cast<PropertyTypes>(OneOf(Require(members, 1, path, names), path.Field("type"), kTypeNames, 1,
                                             "property type"));
        EncodingTypes encoding = etNotEncoded;
        if (members[2]) {
            encoding = static_cast<EncodingTypes>(
                OneOf(*members[2], path.Field("encoding"), kEncodingNames, 0, "encoding"));
        }
        if (store.Find(name) != nullptr) {
            FailAt(namePath, "the bag has a property of this name already (names are matched without regard to case)");
        }
        const JsonPath valuePath = path.Field("value");
        const Value& given = Require(members, 3, path, names);
        auto property = PersistedProperty::Create();
        switch (type) {
            case ptBoolean:
                property->SetBoolean(name, AsBoolean(given, valuePath), encoding);
                break;
            case ptLong:
                property->SetLong(name, AsLong(given, valuePath), encoding);
                break;
            case ptDouble:
                property->SetDouble(name, AsDouble(given, valuePath), encoding);
                break;
            case ptString:
                property->SetString(name, AsString(given, valuePath), encoding);
                break;
            case ptDate:
                property->SetDate(name, AsDouble(given, valuePath), encoding);
                break;
            case ptColor:
                property->SetColor(name, static_cast<OleColor>(AsInteger(given, valuePath, 0, 0xFFFFFFFFll)),
                                   encoding);
                break;
            case ptFont: {
                const auto record = MembersOf(given, valuePath, fields::kFont);
                const Record<5> font{record, valuePath, fields::kFont};
                FontData data;
                data.Name = font.Text(0);
                data.Size = font.Number(1);
                data.Bold = font.Flag(2);
                data.Italic = font.Flag(3);
                data.Underline = font.Flag(4);
                property->SetFontData(name, data, encoding);
                break;
            }
            case ptRectangle: {
                const auto record = MembersOf(given, valuePath, fields::kRectangle);
                const Record<4> rectangle{record, valuePath, fields::kRectangle};
                Rectangle data;
                data.Left = rectangle.Long(0);
                data.Top = rectangle.Long(1);
                data.Width = rectangle.Long(2);
                data.Height = rectangle.Long(3);
                property->SetRectangleData(name, data, encoding);
                break;
            }
            case ptAsset: {
                const auto record = MembersOf(given, valuePath, fields::kAsset);
                const Record<3> asset{record, valuePath, fields::kAsset};
                AssetData data;
                data.Filename = asset.Text(0);
                data.Description = asset.Text(1);
                data.Source = asset.Text(2);
                property->SetAssetData(name, data, encoding);
                break;
            }
            case ptLocation: {
                const auto record = MembersOf(given, valuePath, fields::kLocation);
                const Record<3> location{record, valuePath, fields::kLocation};
                LocationData data;
                data.StartPoint = location.Text(0);
                data.EndPoint = location.Text(1);
                data.MapName = location.Text(2);
                property->SetLocationData(name, data, encoding);
                break;
            }
            case ptPPC:
                if (given.IsNull()) {
                    property->SetPPCData(name, nullptr, encoding);
                } else {
                    const auto inner = MembersOf(given, valuePath, fields::kBag);
                    CheckLevel(level + 1, valuePath);
                    // The bag is filled where the property holds it.
                    property->SetPPCData(name, PersistedPropertyCollection::Create(), encoding);
                    ReadBag(inner[0], inner[1], valuePath, *property->PPCValue(), level + 1);
                }
                break;
            case ptCEC:
                if (given.IsNull()) {
                    property->SetCECData(name, nullptr, encoding);
                } else {
                    CheckLevel(level + 1, valuePath);
                    property->SetCECData(name, ChildElementCollection::Create(), encoding);
                    ReadList(given, valuePath, *property->CECValue(), level + 1);
                }
                break;
            case ptNone:
                return;
        }
        store.Add(std::move(property));
    }

    void ReadMaps(const Value& value, const JsonPath& path, LessonMapCollection& maps) {
        const auto members = MembersOf(value, path, fields::kMaps);
        if (members[1]) {
            const JsonPath listPath = path.Field("maps");
            RequireArray(*members[1], listPath);
            members[1]->ForEachItem(
                [&](std::size_t i, const Value& map) { maps.Append(ReadMap(map, listPath.At(i))); });
        }
        if (members[0] && !members[0]->IsNull()) {
            const JsonPath defaultPath = path.Field("default");
            if (maps.Count() == 0) {
                FailAt(defaultPath, "expected null, since there are no maps");
            }
            maps.SetDefaultMap(
                maps.ItemAt(static_cast<std::int32_t>(AsInteger(*members[0], defaultPath, 0, maps.Length()))));
        }
    }

    std::shared_ptr<LessonMap> ReadMap(const Value& value, const JsonPath& path) {
        const auto members = MembersOf(value, path, fields::kMap);
        xml::Element element;
        if (members[2]) {
            if (members[0] || members[1]) {
                FailAt(path, "a map given as \"xml\" has no other field");
            }
            const JsonPath xmlPath = path.Field("xml");
            element = document_.ParseRootElement(AsString(*members[2], xmlPath));
            if (!element) {
                FailAt(xmlPath, "the XML text could not be parsed");
            }
            if (element.Name() != "map") {
                FailAt(xmlPath, "expected a <map> element");
            }
        } else {
            element = document_.CreateElement("map");
            if (members[0] && !members[0]->IsNull()) {
                element.SetAttribute("name", AsString(*members[0], path.Field("name")));
            }
            if (members[1]) {
                ReadItems(*members[1], path.Field("items"), element);
            }
        }
        auto map = LessonMap::Create();
        map->FromXMLElement(element);
        return map;
    }

    // Nested items; the parsers' depth limit bounds this recursion.
    void ReadItems(const Value& value, const JsonPath& path, xml::Element& parent) {
        RequireArray(value, path);
        value.ForEachItem([&](std::size_t i, const Value& item) {
            const JsonPath itemPath = path.At(i);
            const auto members = MembersOf(item, itemPath, fields::kItem);
            xml::Element made = document_.CreateElement("item");
            made.SetAttribute("sbid", AsString(Require(members, 0, itemPath, fields::kItem), itemPath.Field("sbid")));
            if (members[1]) {
                ReadItems(*members[1], itemPath.Field("items"), made);
            }
            parent.AppendChild(made);
        });
    }

    void ReadStoryboards(const Value& value, const JsonPath& path, StoryboardCollection& storyboards) {
        RequireArray(value, path);
        value.ForEachItem([&](std::size_t i, const Value& item) {
            const JsonPath sbPath = path.At(i);
            const auto members = MembersOf(item, sbPath, fields::kStoryboard);
            // The identity goes through the storyboard's element reader, the
            // one way to give a storyboard its identifier.
            xml::Element element = document_.CreateElement("storyboard");
            for (std::size_t field = 0; field < 5; ++field) {
                if (members[field]) {
                    element.SetAttribute(fields::kStoryboard[field],
                                         AsString(*members[field], sbPath.Field(fields::kStoryboard[field])));
                }
            }
            if (members[5]) {
                element.SetAttribute("shortid", std::to_string(AsLong(*members[5], sbPath.Field("shortid"))));
            }
            auto sb = detail::StoryboardAccess::CreateFromElement(element);
            if (storyboards.Contains(sb->SBID())) {
                FailAt(sbPath.Field("sbid"),
                       "a storyboard with this identifier comes before (identifiers are matched without regard to "
                       "case)");
            }
            if (members[6]) {
                const JsonPath bagPath = sbPath.Field("properties");
                const auto bag = MembersOf(*members[6], bagPath, fields::kBag);
                ReadBag(bag[0], bag[1], bagPath, *sb->Properties(), 0);
            }
            if (members[7]) {
                ReadList(*members[7], sbPath.Field("children"), *sb->Children(), 0);
            }
            storyboards.Add(sb);
        });
    }

    xml::Document document_ = xml::Document::Create();
};

}  // namespace quillbank::json_form

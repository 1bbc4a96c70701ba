// Reading a lesson from JSON: nlohmann-json parses the text (after a pass
// that bounds its depth), then a new lesson is filled through the public API
// of the model. Every value is checked on the way; the first that is not of
// the form raises with its JSON pointer, and the half-made lesson is dropped.

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "frame/raise.hpp"
#include "json/json_depth.hpp"
#include "json/json_form.hpp"
#include "json/json_path.hpp"
#include "properties/nesting.hpp"
#include "storyboards/storyboard_access.hpp"

namespace quillbank {

namespace {

// Objects keep their keys in the order written, so that the text reads in the
// order of the form.
using json = nlohmann::ordered_json;
using json_form::JsonPath;

constexpr const char* kSource = "Lesson.FromJSON";

[[noreturn]] void Fail(const JsonPath& path, std::string_view problem) {
    const std::string pointer = path.Pointer();
    frame::Raise(ErrJsonForm, kSource,
                 "JSON of the wrong form at " + (pointer.empty() ? std::string("the top level") : pointer) + ": " +
                     std::string(problem) + ".");
}

using Fields = std::initializer_list<std::string_view>;

// The object at `path`, whose keys must all be among `fields`.
const json::object_t& AsObject(const json& value, const JsonPath& path, Fields fields) {
    if (!value.is_object()) {
        Fail(path, "expected an object");
    }
    const auto& object = value.get_ref<const json::object_t&>();
    for (const auto& [key, member] : object) {
        if (std::find(fields.begin(), fields.end(), key) == fields.end()) {
            Fail(path.Field(key), "unknown field");
        }
    }
    return object;
}

const json* Find(const json::object_t& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &found->second;
}

const json& Require(const json::object_t& object, const char* key, const JsonPath& path) {
    const json* value = Find(object, key);
    if (value == nullptr) {
        Fail(path.Field(key), "missing");
    }
    return *value;
}

const std::string& AsString(const json& value, const JsonPath& path) {
    if (!value.is_string()) {
        Fail(path, "expected a string");
    }
    return value.get_ref<const std::string&>();
}

bool AsBoolean(const json& value, const JsonPath& path) {
    if (!value.is_boolean()) {
        Fail(path, "expected true or false");
    }
    return value.get<bool>();
}

// A JSON integer from `low` to `high`.
std::int64_t AsInteger(const json& value, const JsonPath& path, std::int64_t low, std::int64_t high) {
    bool inRange = false;
    std::int64_t number = 0;
    if (value.is_number_unsigned()) {
        const auto unsignedNumber = value.get<std::uint64_t>();
        inRange = unsignedNumber <= static_cast<std::uint64_t>(high);
        number = inRange ? static_cast<std::int64_t>(unsignedNumber) : 0;
        inRange = inRange && number >= low;
    } else if (value.is_number_integer()) {
        number = value.get<std::int64_t>();
        inRange = number >= low && number <= high;
    }
    if (!inRange) {
        Fail(path, "expected an integer from " + std::to_string(low) + " to " + std::to_string(high));
    }
    return number;
}

std::int32_t AsLong(const json& value, const JsonPath& path) {
    return static_cast<std::int32_t>(AsInteger(value, path, std::numeric_limits<std::int32_t>::min(),
                                               std::numeric_limits<std::int32_t>::max()));
}

// A JSON number, or one of the texts that stand for the doubles JSON cannot hold.
double AsDouble(const json& value, const JsonPath& path) {
    if (value.is_number()) {
        return value.get<double>();
    }
    if (value.is_string()) {
        const auto& text = value.get_ref<const std::string&>();
        if (text == json_form::kNotANumber) {
            return std::numeric_limits<double>::quiet_NaN();
        }
        if (text == json_form::kInfinity) {
            return std::numeric_limits<double>::infinity();
        }
        if (text == json_form::kMinusInfinity) {
            return -std::numeric_limits<double>::infinity();
        }
    }
    Fail(path, "expected a number, \"NaN\", \"Infinity\" or \"-Infinity\"");
}

// The index of `name` in `names`, or fails naming the accepted values.
template <std::size_t N>
std::size_t OneOf(const json& value, const JsonPath& path, const std::array<std::string_view, N>& names,
                  std::size_t first, const char* what) {
    const std::string& text = AsString(value, path);
    for (std::size_t i = first; i < N; ++i) {
        if (names[i] == text) {
            return i;
        }
    }
    Fail(path, std::string("unknown ") + what + " \"" + text + "\"");
}

class LessonReader {
public:
    std::shared_ptr<Lesson> Read(const json& document) {
        const JsonPath top;
        const auto& object = AsObject(document, top,
                                      {"version", "lessonid", "title", "identifier", "classification", "properties",
                                       "maps", "storyboards"});
        const JsonPath versionPath = top.Field("version");
        if (AsInteger(Require(object, "version", top), versionPath, 0, std::numeric_limits<std::int32_t>::max()) !=
            kJsonFormVersion) {
            Fail(versionPath, "version " + std::to_string(kJsonFormVersion) + " is the one read");
        }
        auto lesson = Lesson::Create();
        if (const json* value = Find(object, "lessonid")) {
            lesson->SetLessonID(AsString(*value, top.Field("lessonid")));
        }
        if (const json* value = Find(object, "title")) {
            lesson->SetTitle(AsString(*value, top.Field("title")));
        }
        if (const json* value = Find(object, "identifier")) {
            lesson->SetIdentifier(AsString(*value, top.Field("identifier")));
        }
        if (const json* value = Find(object, "classification")) {
            lesson->SetClassification(AsString(*value, top.Field("classification")));
        }
        if (const json* value = Find(object, "properties")) {
            const JsonPath path = top.Field("properties");
            ReadBag(AsObject(*value, path, {"name", "properties"}), path, *lesson->Properties(), 0);
        }
        if (const json* value = Find(object, "maps")) {
            ReadMaps(*value, top.Field("maps"), *lesson->Maps());
        }
        if (const json* value = Find(object, "storyboards")) {
            ReadStoryboards(*value, top.Field("storyboards"), *lesson->Storyboards());
        }
        return lesson;
    }

private:
    static const json::array_t& AsArray(const json& value, const JsonPath& path) {
        if (!value.is_array()) {
            Fail(path, "expected an array");
        }
        return value.get_ref<const json::array_t&>();
    }

    static void CheckLevel(int level, const JsonPath& path) {
        if (level > properties::kMaxNesting) {
            Fail(path, "bags and lists nest deeper than " + std::to_string(properties::kMaxNesting) + " levels");
        }
    }

    // The fields "name" and "properties" of a bag's object (or of a child
    // element's, which has a "type" too).
    void ReadBag(const json::object_t& object, const JsonPath& path, PersistedPropertyCollection& bag, int level) {
        CheckLevel(level, path);
        if (const json* name = Find(object, "name")) {
            bag.SetName(AsString(*name, path.Field("name")));
        }
        if (const json* properties = Find(object, "properties")) {
            const JsonPath listPath = path.Field("properties");
            const auto& list = AsArray(*properties, listPath);
            for (std::size_t i = 0; i < list.size(); ++i) {
                ReadProperty(list[i], listPath.At(i), bag, level);
            }
        }
    }

    void ReadList(const json& value, const JsonPath& path, ChildElementCollection& list, int level) {
        CheckLevel(level, path);
        const auto& object = AsObject(value, path, {"name", "elements"});
        if (const json* name = Find(object, "name")) {
            list.SetName(AsString(*name, path.Field("name")));
        }
        const json* elements = Find(object, "elements");
        if (elements == nullptr) {
            return;
        }
        const JsonPath elementsPath = path.Field("elements");
        const auto& array = AsArray(*elements, elementsPath);
        for (std::size_t i = 0; i < array.size(); ++i) {
            const JsonPath elementPath = elementsPath.At(i);
            const auto& elementObject = AsObject(array[i], elementPath, {"name", "type", "properties"});
            auto element = ChildElement::Create();
            if (const json* type = Find(elementObject, "type")) {
                element->SetElementType(AsString(*type, elementPath.Field("type")));
            }
            ReadBag(elementObject, elementPath, *element->PPCObject(), level);
            list.Append(element);
        }
    }

    void ReadProperty(const json& value, const JsonPath& path, PersistedPropertyCollection& bag, int level) {
        const auto& object = AsObject(value, path, {"name", "type", "encoding", "value"});
        const JsonPath namePath = path.Field("name");
        const std::string& name = AsString(Require(object, "name", path), namePath);
        const auto type = static_cast<PropertyTypes>(
            OneOf(Require(object, "type", path), path.Field("type"), json_form::kTypeNames, 1, "property type"));
        EncodingTypes encoding = etNotEncoded;
        if (const json* given = Find(object, "encoding")) {
            encoding = static_cast<EncodingTypes>(
                OneOf(*given, path.Field("encoding"), json_form::kEncodingNames, 0, "encoding"));
        }
        if (bag.Exists(name)) {
            Fail(namePath, "the bag has a property of this name already (names are matched without regard to case)");
        }
        const JsonPath valuePath = path.Field("value");
        const json& given = Require(object, "value", path);
        switch (type) {
            case ptBoolean:
                bag.SetBoolean(name, AsBoolean(given, valuePath), encoding);
                break;
            case ptLong:
                bag.SetLong(name, AsLong(given, valuePath), encoding);
                break;
            case ptDouble:
                bag.SetDouble(name, AsDouble(given, valuePath), encoding);
                break;
            case ptString:
                bag.SetString(name, AsString(given, valuePath), encoding);
                break;
            case ptDate:
                bag.SetDate(name, AsDouble(given, valuePath), encoding);
                break;
            case ptColor:
                bag.SetColor(name, static_cast<OleColor>(AsInteger(given, valuePath, 0, 0xFFFFFFFFll)), encoding);
                break;
            case ptFont: {
                const auto& record =
                    AsObject(given, valuePath, {"name", "size", "bold", "italic", "underline"});
                FontData font;
                font.Name = AsString(Require(record, "name", valuePath), valuePath.Field("name"));
                font.Size = AsDouble(Require(record, "size", valuePath), valuePath.Field("size"));
                font.Bold = AsBoolean(Require(record, "bold", valuePath), valuePath.Field("bold"));
                font.Italic = AsBoolean(Require(record, "italic", valuePath), valuePath.Field("italic"));
                font.Underline = AsBoolean(Require(record, "underline", valuePath), valuePath.Field("underline"));
                bag.SetFont(name, font, encoding);
                break;
            }
            case ptRectangle: {
                const auto& record = AsObject(given, valuePath, {"left", "top", "width", "height"});
                Rectangle rectangle;
                rectangle.Left = AsLong(Require(record, "left", valuePath), valuePath.Field("left"));
                rectangle.Top = AsLong(Require(record, "top", valuePath), valuePath.Field("top"));
                rectangle.Width = AsLong(Require(record, "width", valuePath), valuePath.Field("width"));
                rectangle.Height = AsLong(Require(record, "height", valuePath), valuePath.Field("height"));
                bag.SetRectangle(name, rectangle, encoding);
                break;
            }
            case ptAsset: {
                const auto& record = AsObject(given, valuePath, {"filename", "description", "source"});
                AssetData asset;
                asset.Filename = AsString(Require(record, "filename", valuePath), valuePath.Field("filename"));
                asset.Description =
                    AsString(Require(record, "description", valuePath), valuePath.Field("description"));
                asset.Source = AsString(Require(record, "source", valuePath), valuePath.Field("source"));
                bag.SetAsset(name, asset, encoding);
                break;
            }
            case ptLocation: {
                const auto& record = AsObject(given, valuePath, {"start_point", "end_point", "map_name"});
                LocationData location;
                location.StartPoint =
                    AsString(Require(record, "start_point", valuePath), valuePath.Field("start_point"));
                location.EndPoint = AsString(Require(record, "end_point", valuePath), valuePath.Field("end_point"));
                location.MapName = AsString(Require(record, "map_name", valuePath), valuePath.Field("map_name"));
                bag.SetLocation(name, location, encoding);
                break;
            }
            case ptPPC:
                if (given.is_null()) {
                    bag.SetPPC(name, nullptr, encoding);
                } else {
                    const auto& inner = AsObject(given, valuePath, {"name", "properties"});
                    CheckLevel(level + 1, valuePath);
                    // The bag is filled in place, where it is held, rather
                    // than copied in when full.
                    bag.SetPPC(name, PersistedPropertyCollection::Create(), encoding);
                    ReadBag(inner, valuePath, *bag.GetPPC(name, nullptr), level + 1);
                }
                break;
            case ptCEC:
                if (given.is_null()) {
                    bag.SetCEC(name, nullptr, encoding);
                } else {
                    CheckLevel(level + 1, valuePath);
                    bag.SetCEC(name, ChildElementCollection::Create(), encoding);
                    ReadList(given, valuePath, *bag.GetCEC(name, nullptr), level + 1);
                }
                break;
            case ptNone:
                break;
        }
    }

    void ReadMaps(const json& value, const JsonPath& path, LessonMapCollection& maps) {
        const auto& object = AsObject(value, path, {"default", "maps"});
        if (const json* list = Find(object, "maps")) {
            const JsonPath listPath = path.Field("maps");
            const auto& array = AsArray(*list, listPath);
            for (std::size_t i = 0; i < array.size(); ++i) {
                maps.Append(ReadMap(array[i], listPath.At(i)));
            }
        }
        if (const json* given = Find(object, "default"); given != nullptr && !given->is_null()) {
            const JsonPath defaultPath = path.Field("default");
            if (maps.Count() == 0) {
                Fail(defaultPath, "expected null, since there are no maps");
            }
            maps.SetDefaultMap(maps.ItemAt(static_cast<std::int32_t>(AsInteger(*given, defaultPath, 0, maps.Length()))));
        }
    }

    std::shared_ptr<LessonMap> ReadMap(const json& value, const JsonPath& path) {
        const auto& object = AsObject(value, path, {"name", "items", "xml"});
        xml::Element element;
        if (const json* text = Find(object, "xml")) {
            if (object.size() != 1) {
                Fail(path, "a map given as \"xml\" has no other field");
            }
            const JsonPath xmlPath = path.Field("xml");
            element = document_.ParseRootElement(AsString(*text, xmlPath));
            if (!element) {
                Fail(xmlPath, "the XML text could not be parsed");
            }
            if (element.Name() != "map") {
                Fail(xmlPath, "expected a <map> element");
            }
        } else {
            element = document_.CreateElement("map");
            if (const json* name = Find(object, "name"); name != nullptr && !name->is_null()) {
                element.SetAttribute("name", AsString(*name, path.Field("name")));
            }
            if (const json* items = Find(object, "items")) {
                ReadItems(*items, path.Field("items"), element);
            }
        }
        auto map = LessonMap::Create();
        map->FromXMLElement(element);
        return map;
    }

    // Nested items; the depth pass has bounded how deep this recursion goes.
    void ReadItems(const json& value, const JsonPath& path, xml::Element& parent) {
        const auto& array = AsArray(value, path);
        for (std::size_t i = 0; i < array.size(); ++i) {
            const JsonPath itemPath = path.At(i);
            const auto& object = AsObject(array[i], itemPath, {"sbid", "items"});
            xml::Element item = document_.CreateElement("item");
            item.SetAttribute("sbid", AsString(Require(object, "sbid", itemPath), itemPath.Field("sbid")));
            if (const json* items = Find(object, "items")) {
                ReadItems(*items, itemPath.Field("items"), item);
            }
            parent.AppendChild(item);
        }
    }

    void ReadStoryboards(const json& value, const JsonPath& path, StoryboardCollection& storyboards) {
        const auto& array = AsArray(value, path);
        xml::Element element;
        for (std::size_t i = 0; i < array.size(); ++i) {
            const JsonPath sbPath = path.At(i);
            const auto& object = AsObject(array[i], sbPath,
                                          {"sbid", "title", "identifier", "type", "classification", "shortid",
                                           "properties", "children"});
            // The identity goes through the storyboard's element reader, the
            // one way to give a storyboard its identifier.
            element = document_.CreateElement("storyboard");
            for (const char* field : {"sbid", "title", "identifier", "type", "classification"}) {
                if (const json* text = Find(object, field)) {
                    element.SetAttribute(field, AsString(*text, sbPath.Field(field)));
                }
            }
            if (const json* shortID = Find(object, "shortid")) {
                element.SetAttribute("shortid", std::to_string(AsLong(*shortID, sbPath.Field("shortid"))));
            }
            auto sb = detail::StoryboardAccess::CreateFromElement(element);
            if (storyboards.Contains(sb->SBID())) {
                Fail(sbPath.Field("sbid"),
                     "a storyboard with this identifier comes before (identifiers are matched without regard to case)");
            }
            if (const json* bag = Find(object, "properties")) {
                const JsonPath bagPath = sbPath.Field("properties");
                ReadBag(AsObject(*bag, bagPath, {"name", "properties"}), bagPath, *sb->Properties(), 0);
            }
            if (const json* list = Find(object, "children")) {
                ReadList(*list, sbPath.Field("children"), *sb->Children(), 0);
            }
            storyboards.Add(sb);
        }
    }

    xml::Document document_ = xml::Document::Create();
};

}  // namespace

std::shared_ptr<Lesson> LessonFromJSON(std::string_view JsonText, const JsonLimits& Limits) {
    if (JsonText.size() > Limits.MaxBytes) {
        frame::Raise(ErrJsonForm, kSource,
                     "JSON text is longer than the limit of " + std::to_string(Limits.MaxBytes) + " bytes.");
    }
    if (const std::size_t at = json_form::FindTooDeep(JsonText, Limits.MaxDepth); at != std::string_view::npos) {
        frame::Raise(ErrJsonForm, kSource,
                     "JSON text nests deeper than the limit of " + std::to_string(Limits.MaxDepth) +
                         " levels at byte " + std::to_string(at) + ".");
    }
    json document;
    try {
        document = json::parse(JsonText.data(), JsonText.data() + JsonText.size());
    } catch (const json::parse_error& error) {
        frame::Raise(ErrJsonForm, kSource,
                     "JSON text could not be parsed at byte " + std::to_string(error.byte) + ".");
    }
    try {
        return LessonReader().Read(document);
    } catch (const Error& error) {
        if (error.Source() == kSource) {
            throw;
        }
        // A value the model refuses (text that is not UTF-8, say), named by
        // the model's own words.
        frame::Raise(ErrJsonForm, kSource, "A value was refused: " + error.Description());
    }
}

}  // namespace quillbank

// Writing a lesson as JSON, streamed value by value into the text: the
// lesson's parts through the public API, the properties of each bag straight
// from its store, in order, each with its type and encoding.

#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "frame/raise.hpp"
#include "json/json_form.hpp"
#include "json/json_text.hpp"
#include "properties/nesting.hpp"
#include "properties/property_bag.hpp"

namespace quillbank {

namespace {

using json_form::JsonText;

constexpr const char* kSource = "Lesson.ToJSON";

class LessonWriter {
public:
    explicit LessonWriter(int indent) : out_(indent) {}

    std::string Write(const Lesson& lesson) {
        out_.BeginObject();
        out_.Key("version");
        out_.Integer(kJsonFormVersion);
        Text("lessonid", lesson.LessonID());
        Text("title", lesson.Title());
        Text("identifier", lesson.Identifier());
        Text("classification", lesson.Classification());
        out_.Key("properties");
        WriteBag(*lesson.Properties(), 0);
        out_.Key("maps");
        WriteMaps(*lesson.Maps());
        out_.Key("storyboards");
        WriteStoryboards(*lesson.Storyboards());
        out_.EndObject();
        return out_.Take();
    }

private:
    void Text(const char* key, std::string_view value) {
        out_.Key(key);
        out_.String(value);
    }

    void Number(double value) {
        if (std::isnan(value)) {
            out_.String(json_form::kNotANumber);
        } else if (std::isinf(value)) {
            out_.String(value > 0 ? json_form::kInfinity : json_form::kMinusInfinity);
        } else {
            out_.Double(value);
        }
    }

    static void CheckLevel(int level) {
        // A bag or list that holds itself would nest without end; the writers
        // of XML refuse the same depth with the same error.
        if (level > properties::kMaxNesting) {
            frame::Raise(ErrOutOfStackSpace, kSource, frame::kOutOfStackSpace);
        }
    }

    void WriteValue(const PersistedProperty& property, int level) {
        switch (property.PropertyType()) {
            case ptBoolean:
                out_.Boolean(property.BooleanValue());
                break;
            case ptLong:
                out_.Integer(property.LongValue());
                break;
            case ptDouble:
                Number(property.DoubleValue());
                break;
            case ptString:
                out_.String(property.StringValue());
                break;
            case ptDate:
                Number(property.DateValue());
                break;
            case ptColor:
                out_.Integer(property.ColorValue());
                break;
            case ptFont: {
                const FontData font = property.FontValue();
                out_.BeginObject();
                Text("name", font.Name);
                out_.Key("size");
                Number(font.Size);
                out_.Key("bold");
                out_.Boolean(font.Bold);
                out_.Key("italic");
                out_.Boolean(font.Italic);
                out_.Key("underline");
                out_.Boolean(font.Underline);
                out_.EndObject();
                break;
            }
            case ptRectangle: {
                const Rectangle rectangle = property.RectangleValue();
                out_.BeginObject();
                out_.Key("left");
                out_.Integer(rectangle.Left);
                out_.Key("top");
                out_.Integer(rectangle.Top);
                out_.Key("width");
                out_.Integer(rectangle.Width);
                out_.Key("height");
                out_.Integer(rectangle.Height);
                out_.EndObject();
                break;
            }
            case ptAsset: {
                const AssetData asset = property.AssetValue();
                out_.BeginObject();
                Text("filename", asset.Filename);
                Text("description", asset.Description);
                Text("source", asset.Source);
                out_.EndObject();
                break;
            }
            case ptLocation: {
                const LocationData location = property.LocationValue();
                out_.BeginObject();
                Text("start_point", location.StartPoint);
                Text("end_point", location.EndPoint);
                Text("map_name", location.MapName);
                out_.EndObject();
                break;
            }
            case ptPPC:
                if (const auto inner = property.PPCValue()) {
                    WriteBag(*inner, level + 1);
                } else {
                    out_.Null();
                }
                break;
            case ptCEC:
                if (const auto inner = property.CECValue()) {
                    WriteList(*inner, level + 1);
                } else {
                    out_.Null();
                }
                break;
            case ptNone:
                out_.Null();
                break;
        }
    }

    // The properties of a bag, in order. A property that the XML form leaves
    // out (untyped, or of an encoding other than the two) is left out here too.
    void WriteProperties(const PersistedPropertyCollection& bag, int level) {
        CheckLevel(level);
        out_.BeginArray();
        for (const auto& property : detail::PropertyBagAccess::Store(bag).Items()) {
            const EncodingTypes encoding = property->EncodingType();
            if (property->PropertyType() == ptNone || (encoding != etNotEncoded && encoding != etBase64Encoded)) {
                continue;
            }
            out_.BeginObject();
            Text("name", property->NameRef());
            Text("type", json_form::kTypeNames[static_cast<std::size_t>(property->PropertyType())]);
            Text("encoding", json_form::kEncodingNames[static_cast<std::size_t>(encoding)]);
            out_.Key("value");
            WriteValue(*property, level);
            out_.EndObject();
        }
        out_.EndArray();
    }

    void WriteBag(const PersistedPropertyCollection& bag, int level) {
        out_.BeginObject();
        Text("name", detail::PropertyBagAccess::NameOf(bag));
        out_.Key("properties");
        WriteProperties(bag, level);
        out_.EndObject();
    }

    void WriteList(const ChildElementCollection& list, int level) {
        CheckLevel(level);
        out_.BeginObject();
        Text("name", list.Name());
        out_.Key("elements");
        out_.BeginArray();
        const std::int32_t count = list.Count();
        for (std::int32_t i = 0; i < count; ++i) {
            const auto element = list.Item(i);
            const auto bag = element->PPCObject();
            out_.BeginObject();
            Text("name", detail::PropertyBagAccess::NameOf(*bag));
            Text("type", element->ElementType());
            out_.Key("properties");
            WriteProperties(*bag, level);
            out_.EndObject();
        }
        out_.EndArray();
        out_.EndObject();
    }

    // Whether the map element holds nothing but "item" elements with only
    // an "sbid", no deeper than kMaxItemDepth; walked without recursion,
    // since trees may be of any depth.
    static bool IsPlainTree(const xml::Element& map) {
        const std::int32_t own = map.HasAttribute("name") ? 1 : 0;
        if (map.AttributeCount() != own) {
            return false;
        }
        int depth = 0;
        xml::Node node = map.FirstChild();
        while (node) {
            if (node.Type() != xml::NodeType::Element || node.Name() != "item") {
                return false;
            }
            const xml::Element item = node.AsElement();
            if (item.AttributeCount() != 1 || !item.HasAttribute("sbid")) {
                return false;
            }
            if (xml::Node child = node.FirstChild()) {
                if (++depth > json_form::kMaxItemDepth) {
                    return false;
                }
                node = child;
                continue;
            }
            while (!node.NextSibling()) {
                node = node.Parent();
                if (node == map) {
                    return true;
                }
                --depth;
            }
            node = node.NextSibling();
        }
        return true;
    }

    // The items below `parent`, whose depth IsPlainTree has bounded.
    void WriteItems(const xml::Node& parent) {
        out_.BeginArray();
        for (xml::Node node = parent.FirstChild(); node; node = node.NextSibling()) {
            out_.BeginObject();
            Text("sbid", *node.AsElement().GetAttribute("sbid"));
            if (node.HasChildNodes()) {
                out_.Key("items");
                WriteItems(node);
            }
            out_.EndObject();
        }
        out_.EndArray();
    }

    void WriteMap(const LessonMap& map) {
        const xml::Element element = map.ToXMLElement();
        out_.BeginObject();
        if (!IsPlainTree(element)) {
            Text("xml", element.Xml());
        } else {
            out_.Key("name");
            if (const std::optional<std::string> name = element.GetAttribute("name")) {
                out_.String(*name);
            } else {
                out_.Null();
            }
            out_.Key("items");
            WriteItems(element);
        }
        out_.EndObject();
    }

    void WriteMaps(const LessonMapCollection& maps) {
        out_.BeginObject();
        out_.Key("default");
        if (const auto defaultMap = maps.DefaultMap()) {
            out_.Integer(maps.IndexOf(defaultMap));
        } else {
            out_.Null();
        }
        out_.Key("maps");
        out_.BeginArray();
        const std::int32_t count = maps.Count();
        for (std::int32_t i = 0; i < count; ++i) {
            WriteMap(*maps.ItemAt(i));
        }
        out_.EndArray();
        out_.EndObject();
    }

    void WriteStoryboards(const StoryboardCollection& storyboards) {
        out_.BeginArray();
        std::int32_t position = 0;
        for (const std::shared_ptr<Storyboard>& sb : storyboards) {
            out_.BeginObject();
            Text("sbid", sb->SBID());
            Text("title", sb->Title());
            Text("identifier", sb->Identifier());
            Text("type", sb->SBType());
            Text("classification", sb->Classification());
            // The number the storyboard carries in the written XML: its position.
            out_.Key("shortid");
            out_.Integer(position++);
            out_.Key("properties");
            WriteBag(*sb->Properties(), 0);
            out_.Key("children");
            WriteList(*sb->Children(), 0);
            out_.EndObject();
        }
        out_.EndArray();
    }

    JsonText out_;
};

}  // namespace

std::string LessonToJSON(const Lesson& Lesson, std::int32_t Indent) {
    try {
        return LessonWriter(Indent).Write(Lesson);
    } catch (const json_form::NotUtf8&) {
        frame::Raise(ErrJsonForm, kSource, "The lesson holds text that is not UTF-8.");
    }
}

}  // namespace quillbank

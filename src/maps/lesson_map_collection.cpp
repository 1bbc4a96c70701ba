// LessonMapCollection: the ordered maps, the default map and the "maps" element.

#include <quillbank/lesson_map_collection.hpp>

#include <string>
#include <utility>

#include "frame/raise.hpp"
#include "maps/lesson_map_access.hpp"

namespace quillbank {

namespace {

constexpr const char* kMapsElement = "maps";
constexpr const char* kMapElement = "map";
constexpr const char* kDefaultAttribute = "default";

}  // namespace

LessonMapCollection::LessonMapCollection() = default;

std::shared_ptr<LessonMapCollection> LessonMapCollection::Create() {
    return std::shared_ptr<LessonMapCollection>(new LessonMapCollection());
}

std::shared_ptr<LessonMap> LessonMapCollection::DefaultMap() const {
    if (default_) {
        return default_;
    }
    // The fallback needs two maps at least: a single map is no default, and
    // so a collection of one map writes no "default" attribute.
    if (Length() > 0) {
        return maps_.front();
    }
    return nullptr;
}

void LessonMapCollection::SetDefaultMap(std::shared_ptr<LessonMap> NewValue) {
    if (NewValue && IndexOf(NewValue) == -1) {
        frame::Raise(ErrInvalidCall, "LessonMapCollection.DefaultMap (Set)",
                     "Default map must be a member of the collection");
    }
    default_ = std::move(NewValue);
}

std::int32_t LessonMapCollection::Length() const { return Count() - 1; }

std::int32_t LessonMapCollection::Count() const { return static_cast<std::int32_t>(maps_.size()); }

std::shared_ptr<LessonMap> LessonMapCollection::Item(std::string_view Name) const {
    const std::int32_t index = IndexOfName(Name);
    return index == -1 ? nullptr : maps_[static_cast<std::size_t>(index)];
}

std::shared_ptr<LessonMap> LessonMapCollection::ItemAt(std::int32_t Index) const {
    if (Index < 0 || Index > Length()) {
        return nullptr;
    }
    return maps_[static_cast<std::size_t>(Index)];
}

std::int32_t LessonMapCollection::IndexOf(const std::shared_ptr<LessonMap>& Map) const {
    if (!Map) {
        return -1;
    }
    for (std::size_t i = 0; i < maps_.size(); ++i) {
        if (maps_[i] == Map) {
            return static_cast<std::int32_t>(i);
        }
    }
    return -1;
}

std::int32_t LessonMapCollection::IndexOfName(std::string_view Name) const {
    // A map without a name raises when it is reached (LessonMap.Name).
    for (std::size_t i = 0; i < maps_.size(); ++i) {
        if (maps_[i]->Name() == Name) {
            return static_cast<std::int32_t>(i);
        }
    }
    return -1;
}

void LessonMapCollection::Append(const std::shared_ptr<LessonMap>& Map) {
    if (Map) {
        maps_.push_back(Map);
    }
}

void LessonMapCollection::Insert(const std::shared_ptr<LessonMap>& Map, std::int32_t Index) {
    if (!Map) {
        return;
    }
    if (Index < 0 || Index > Length()) {
        maps_.push_back(Map);
        return;
    }
    maps_.insert(maps_.begin() + Index, Map);
}

void LessonMapCollection::Remove(const std::shared_ptr<LessonMap>& Map) {
    const std::int32_t index = IndexOf(Map);
    if (index != -1) {
        RemoveAt(index);
    }
}

void LessonMapCollection::RemoveAt(std::int32_t Index) {
    if (Index < 0 || Index > Length()) {
        return;
    }
    const auto position = maps_.begin() + Index;
    if (*position == default_) {
        default_.reset();
    }
    maps_.erase(position);
}

void LessonMapCollection::Clear() {
    maps_.clear();
    default_.reset();
}

std::shared_ptr<LessonMapCollection> LessonMapCollection::Clone() const {
    // The result of writing this collection into a new document and reading
    // the element back, made without the round trip: the written "default"
    // is the name of DefaultMap() (reading it raises for a map without a
    // name, as writing does), the read maps are copies of the written map
    // elements, and reading chooses the first map of that name, else the
    // first map.
    std::shared_ptr<LessonMapCollection> copy = Create();
    std::string defaultName;
    if (const std::shared_ptr<LessonMap> defaultMap = DefaultMap()) {
        defaultName = defaultMap->Name();
    }
    copy->maps_.reserve(maps_.size());
    for (const std::shared_ptr<LessonMap>& map : maps_) {
        copy->maps_.push_back(map->Clone());
    }
    if (!defaultName.empty()) {
        const std::int32_t index = copy->IndexOfName(defaultName);
        if (index != -1) {
            copy->default_ = copy->maps_[static_cast<std::size_t>(index)];
        }
    }
    if (!copy->default_ && !copy->maps_.empty()) {
        copy->default_ = copy->maps_.front();
    }
    return copy;
}

void maps::WriteMaps(const LessonMapCollection& maps, xml::Writer& writer) {
    writer.StartElement(kMapsElement);
    if (const std::shared_ptr<LessonMap> defaultMap = maps.DefaultMap()) {
        writer.Attribute(kDefaultAttribute, defaultMap->Name());
    }
    const std::int32_t count = maps.Count();
    for (std::int32_t i = 0; i < count; ++i) {
        detail::LessonMapAccess::Write(*maps.ItemAt(i), writer);
    }
    writer.EndElement();
}

xml::Element LessonMapCollection::ToXMLElement(const xml::Document& Document) const {
    if (!Document) {
        frame::Raise(ErrNullArgument, "LessonMapCollection.ToXMLElement", frame::kDocumentCannotBeNull);
    }
    // Unlike the other writers, this one leaves the document's whitespace
    // switch as it is.
    xml::DomWriter writer(Document);
    maps::WriteMaps(*this, writer);
    return writer.Result();
}

void LessonMapCollection::FromXMLElement(const xml::Element& Element) {
    constexpr const char* source = "LessonMapCollection.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    if (Element.Name() != kMapsElement) {
        frame::Raise(ErrXmlForm, source, frame::NotAnElementDescription(kMapsElement));
    }
    Clear();
    for (xml::Node child = Element.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsElement() && child.Name() == kMapElement) {
            std::shared_ptr<LessonMap> map = LessonMap::Create();
            map->FromXMLElement(child.AsElement());
            Append(map);
        }
    }
    const std::string defaultName = Element.GetAttribute(kDefaultAttribute).value_or(std::string());
    if (!defaultName.empty()) {
        const std::int32_t index = IndexOfName(defaultName);
        if (index != -1) {
            default_ = maps_[static_cast<std::size_t>(index)];
        }
    }
    if (!default_ && !maps_.empty()) {
        default_ = maps_.front();
    }
}

}  // namespace quillbank

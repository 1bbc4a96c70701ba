#pragma once

// What a property bag offers the library's other classes only: direct access
// to its properties, and writing and reading its property elements under any
// parent element (a child element keeps its properties directly inside "ce").

#include <cstdint>
#include <memory>
#include <string_view>

#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/xml.hpp>

#include "properties/persisted_property.hpp"
#include "properties/property_store.hpp"
#include "xml/writer.hpp"

namespace quillbank::detail {

struct PropertyBagAccess {
    static PropertyStore& Store(PersistedPropertyCollection& bag) { return *bag.store_; }
    static const PropertyStore& Store(const PersistedPropertyCollection& bag) { return *bag.store_; }
    static const std::string& NameOf(const PersistedPropertyCollection& bag) { return bag.name_; }
    // Replaces the properties by a new, empty set (the name is kept).
    static void ResetStore(PersistedPropertyCollection& bag);
};

}  // namespace quillbank::detail

namespace quillbank::properties {

// The property stored under the name (ignoring case), or null. Never raises.
std::shared_ptr<PersistedProperty> FindProperty(const PersistedPropertyCollection& bag,
                                                std::string_view PropertyName);
// Removes any property of the same name, then appends Property under its own name.
void AddProperty(PersistedPropertyCollection& bag, std::shared_ptr<PersistedProperty> Property);
// How many properties have exactly this encoding.
std::int32_t CountByEncoding(const PersistedPropertyCollection& bag, std::int32_t EncodingType);

// Writes the bag's property elements as children of the element being
// written: the clear form is one run sorted by name; the normal form is the
// plain properties sorted, then the encoded ones sorted. A property that
// gives no element is skipped, and so is a whole run whose first name (in
// sorted order) is empty.
void WritePropertyElements(const PersistedPropertyCollection& bag, xml::Writer& writer, bool clear);
// The bag's "ppc" element with its name and property elements.
void WriteBag(const PersistedPropertyCollection& bag, xml::Writer& writer, bool clear);
// Replaces the bag's properties by those read from the element children of
// Element; children that do not read as a property are dropped, and of two
// children with the same name the later one wins.
void ReadPropertyElements(PersistedPropertyCollection& bag, const xml::Element& Element);

}  // namespace quillbank::properties

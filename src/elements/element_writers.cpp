#include "elements/element_writers.hpp"

#include "properties/property_bag.hpp"

namespace quillbank::elements {

void WriteChildElement(const ChildElement& element, xml::Writer& writer, bool clear) {
    const std::shared_ptr<PersistedPropertyCollection> bag = element.PPCObject();
    writer.StartElement("ce");
    writer.Attribute("name", detail::PropertyBagAccess::NameOf(*bag));
    writer.Attribute("type", element.ElementType());
    properties::WritePropertyElements(*bag, writer, clear);
    writer.EndElement();
}

void WriteChildList(const ChildElementCollection& list, xml::Writer& writer, bool clear) {
    writer.StartElement("cec");
    writer.Attribute("name", list.Name());
    const std::int32_t count = list.Count();
    for (std::int32_t i = 0; i < count; ++i) {
        WriteChildElement(*list.Item(i), writer, clear);
    }
    writer.EndElement();
}

}  // namespace quillbank::elements

#pragma once

// How child elements and their lists write themselves, for the library's
// other classes (a storyboard writes its list, a property holds one).

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>

#include "xml/writer.hpp"

namespace quillbank::elements {

// The "ce" element: "name" (the bag's name), "type", then the bag's property
// elements directly, without a "ppc".
void WriteChildElement(const ChildElement& element, xml::Writer& writer, bool clear);
// The "cec" element: "name", then one "ce" per child element in order.
void WriteChildList(const ChildElementCollection& list, xml::Writer& writer, bool clear);

}  // namespace quillbank::elements

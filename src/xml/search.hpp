#pragma once

// Searches of a subtree that the model runs often enough for the cost of a
// handle per visited node to matter.

#include <string_view>

#include <quillbank/xml.hpp>

namespace quillbank::xml {

// The first element below `parent` (at any depth, `parent` itself excluded),
// in document order, whose attribute `name` is exactly `value`; null when
// none is or `parent` is null. Text, comments and other nodes are passed over
// (their children too, which only elements have). The same answer as a walk
// along FirstChild, NextSibling and Parent testing GetAttribute(name) on each
// element, without making a handle or a string per visited node.
Element FindElementWithAttribute(const Node& parent, std::string_view name, std::string_view value);

}  // namespace quillbank::xml

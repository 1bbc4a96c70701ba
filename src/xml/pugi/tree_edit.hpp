#pragma once

// Tree edits shared by the node, element and document handles.

#include <string_view>

#include <pugixml.hpp>

#include "xml/pugi/document_impl.hpp"

namespace quillbank::xml::detail {

// Places `child` (of `childDoc`) under `parent` (of `parentDoc`) before
// `reference`, or last when `reference` is null, after the checks the
// document model makes. A node of another pugixml document (another document
// or an earlier content of this one) is copied and the original is moved out
// of its parent. Returns the node now in place.
pugi::xml_node InsertChild(DocumentImpl& parentDoc, pugi::xml_node parent, DocumentImpl& childDoc,
                           pugi::xml_node child, pugi::xml_node reference);

// Makes the unattached-looking `node` leave its parent (into the limbo).
void Detach(DocumentImpl& doc, pugi::xml_node node);

// Replaces all children of `element` by one text node holding `text` (no
// child at all for empty text). The old children stay usable, unattached.
void ReplaceChildrenWithText(DocumentImpl& doc, pugi::xml_node element, std::string_view text);

}  // namespace quillbank::xml::detail

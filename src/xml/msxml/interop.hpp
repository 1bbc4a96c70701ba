#pragma once

// Handles around a host's own MSXML objects, and the MSXML objects behind
// handles, for the COM server (Windows build only).

#include <quillbank/xml.hpp>

#include "xml/msxml/com_support.hpp"

namespace quillbank::xml::msxml {

// A document handle sharing the host's document (null for null).
Document WrapDocument(IXMLDOMDocument* document);
// An element handle for the host's element, within a handle of its owner
// document (null for null).
Element WrapElement(IXMLDOMElement* element);

// The MSXML objects behind handles, with a reference for the caller (null
// for a null handle).
ComPtr<IXMLDOMDocument> DomOf(const Document& document);
ComPtr<IXMLDOMElement> DomOf(const Element& element);

}  // namespace quillbank::xml::msxml

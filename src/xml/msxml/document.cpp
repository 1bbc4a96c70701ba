// Document: creation of nodes, loading, the root element, whitespace mode on
// MSXML 3.0.

#include <quillbank/xml.hpp>

#include "xml/dom_error.hpp"
#include "xml/msxml/com_support.hpp"
#include "xml/msxml/document_impl.hpp"
#include "xml/msxml/serialize.hpp"
#include "xml/prescan.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

using detail::DocumentImpl;
using msxml::Bstr;
using msxml::Check;
using msxml::ComPtr;

namespace {

IXMLDOMDocument* Require(const std::shared_ptr<DocumentImpl>& impl) {
    if (!impl) {
        RaiseDomError("The document is null.");
    }
    return impl->Dom();
}

}  // namespace

Document Document::Create() { return Document(DocumentImpl::New()); }

Element Document::CreateElement(std::string_view name) {
    IXMLDOMDocument* dom = Require(impl_);
    name = DocumentText(name);
    if (!IsXmlName(name)) {
        RaiseDomError("This name is not a valid XML name.");
    }
    const Bstr tag(name);
    ComPtr<IXMLDOMElement> element;
    Check(dom->createElement(tag.Get(), element.Out()), "The element could not be created.");
    return DocumentImpl::MakeElement(impl_, element.Get());
}

Node Document::CreateTextNode(std::string_view given) {
    IXMLDOMDocument* dom = Require(impl_);
    // The DOM keeps LF for CR LF and a lone CR in text it is given.
    const std::string text = NormalizeLineEnds(DocumentText(given));
    const Bstr value(text);
    ComPtr<IXMLDOMText> node;
    Check(dom->createTextNode(value.Get(), node.Out()), "The text could not be created.");
    return DocumentImpl::MakeNode(impl_, node.Get());
}

Node Document::CreateComment(std::string_view given) {
    IXMLDOMDocument* dom = Require(impl_);
    const std::string text = NormalizeLineEnds(DocumentText(given));
    // Refused here, before MSXML sees it, so that every MSXML refuses it
    // alike (Wine's accepts it).
    if (!IsCommentText(text)) {
        RaiseDomError(kCommentEndInComment);
    }
    const Bstr value(text);
    ComPtr<IXMLDOMComment> node;
    Check(dom->createComment(value.Get(), node.Out()), "The comment could not be created.");
    return DocumentImpl::MakeNode(impl_, node.Get());
}

Node Document::CreateCDataSection(std::string_view given) {
    IXMLDOMDocument* dom = Require(impl_);
    const std::string_view text = DocumentText(given);
    const Bstr value(text);
    ComPtr<IXMLDOMCDATASection> node;
    Check(dom->createCDATASection(value.Get(), node.Out()), "The section could not be created.");
    return DocumentImpl::MakeNode(impl_, node.Get());
}

bool Document::LoadXML(std::string_view text) {
    IXMLDOMDocument* dom = Require(impl_);
    if (!PrescanXml(text).accepted) {
        // Refused before MSXML sees it (text that is not UTF-8, references
        // to entities a document type declaration defines, and what else a
        // conforming reader refuses): fails like any text that does not parse.
        const Bstr empty("");
        VARIANT_BOOL ignored = VARIANT_FALSE;
        dom->loadXML(empty.Get(), &ignored);
        return false;
    }
    const Bstr value(text);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const HRESULT hr = dom->loadXML(value.Get(), &loaded);
    return SUCCEEDED(hr) && loaded != VARIANT_FALSE;
}

Element Document::ParseRootElement(std::string_view text) {
    Require(impl_);
    // MSXML parses into documents only: the element has a private one.
    Document scratch = DocumentImpl::MakeDocument(impl_->ParseDocument());
    if (!scratch.LoadXML(text)) {
        return Element();
    }
    const Element root = scratch.DocumentElement();
    scratch.AsNode().RemoveChild(root);
    return root;
}

Element Document::DocumentElement() const {
    IXMLDOMDocument* dom = Require(impl_);
    ComPtr<IXMLDOMElement> root;
    Check(dom->get_documentElement(root.Out()), "The root element could not be read.");
    if (!root) {
        return Element();
    }
    return DocumentImpl::MakeRoot(impl_, root.Get());
}

void Document::SetDocumentElement(const Element& element) {
    IXMLDOMDocument* dom = Require(impl_);
    if (!element) {
        RaiseDomError("The element is null.");
    }
    Check(dom->putref_documentElement(detail::RequireElement(DocumentImpl::NodeOf(element))),
          "The root element could not be set.");
    if (DocumentImpl::ImplOf(element) == impl_) {
        impl_->RememberRoot(DocumentImpl::NodeOf(element));
    }
}

bool Document::PreserveWhiteSpace() const {
    VARIANT_BOOL preserve = VARIANT_FALSE;
    Check(Require(impl_)->get_preserveWhiteSpace(&preserve), "The whitespace mode could not be read.");
    return preserve != VARIANT_FALSE;
}

void Document::SetPreserveWhiteSpace(bool preserve) {
    Check(Require(impl_)->put_preserveWhiteSpace(preserve ? VARIANT_TRUE : VARIANT_FALSE),
          "The whitespace mode could not be set.");
}

std::string Document::Xml() const { return msxml::NodeXml(Require(impl_)); }

Node Document::AsNode() const {
    Require(impl_);
    return DocumentImpl::MakeNodeOf(impl_, impl_->DocumentNode());
}

}  // namespace quillbank::xml

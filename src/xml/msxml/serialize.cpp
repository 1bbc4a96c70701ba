#include "xml/msxml/serialize.hpp"

#include <string_view>
#include <vector>

#include "xml/declaration.hpp"
#include "xml/escape.hpp"

namespace quillbank::xml::msxml {

namespace {

DOMNodeType TypeOf(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    Check(node->get_nodeType(&type), "The node type could not be read.");
    return type;
}

std::string NameOf(IXMLDOMNode* node) {
    Bstr name;
    Check(node->get_nodeName(name.Out()), "The node name could not be read.");
    return name.Utf8();
}

std::string ValueOf(IXMLDOMNode* node) {
    Variant value;
    Check(node->get_nodeValue(value.Out()), "The node value could not be read.");
    return V_VT(&value.Get()) == VT_BSTR ? ToUtf8(V_BSTR(&value.Get())) : std::string();
}

ComPtr<IXMLDOMNode> FirstChildOf(IXMLDOMNode* node) {
    ComPtr<IXMLDOMNode> child;
    Check(node->get_firstChild(child.Out()), "The first child could not be read.");
    return child;
}

ComPtr<IXMLDOMNode> NextSiblingOf(IXMLDOMNode* node) {
    ComPtr<IXMLDOMNode> sibling;
    Check(node->get_nextSibling(sibling.Out()), "The next sibling could not be read.");
    return sibling;
}

void AppendCData(std::string& out, std::string_view value) {
    // "]]>" cannot stand inside one section: it is split over two, so the
    // text reads back unchanged.
    out += "<![CDATA[";
    std::size_t start = 0;
    for (std::size_t at = value.find("]]>"); at != std::string_view::npos; at = value.find("]]>", at + 1)) {
        out.append(value.substr(start, at + 2 - start));
        out += "]]><![CDATA[";
        start = at + 2;
    }
    out.append(value.substr(start));
    out += "]]>";
}

void AppendAttributes(std::string& out, IXMLDOMNode* node) {
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    Check(node->get_attributes(attributes.Out()), "The attributes could not be read.");
    if (!attributes) {
        return;
    }
    long count = 0;
    Check(attributes->get_length(&count), "The attributes could not be counted.");
    for (long i = 0; i < count; ++i) {
        ComPtr<IXMLDOMNode> attribute;
        Check(attributes->get_item(i, attribute.Out()), "The attribute could not be read.");
        out.push_back(' ');
        out += NameOf(attribute.Get());
        out += "=\"";
        AppendEscapedAttribute(out, ValueOf(attribute.Get()));
        out.push_back('"');
    }
}

// The XML declaration as the DOM writes it, from the text MSXML gives as its
// value (declaration.hpp).
void AppendDeclarationOf(std::string& out, std::string_view data) {
    const std::vector<std::pair<std::string, std::string>> attributes = DeclarationAttributes(data);
    const std::string* present[3] = {nullptr, nullptr, nullptr};
    const char* names[3] = {"version", "encoding", "standalone"};
    for (const auto& [name, value] : attributes) {
        for (int i = 0; i < 3; ++i) {
            if (name == names[i] && present[i] == nullptr) {
                present[i] = &value;
            }
        }
    }
    AppendDeclaration(out, present[0], present[1], present[2]);
}

// Writes the part of `node` before its children; returns its first child
// when children follow.
ComPtr<IXMLDOMNode> Enter(std::string& out, IXMLDOMNode* node) {
    switch (TypeOf(node)) {
        case NODE_ELEMENT: {
            out.push_back('<');
            out += NameOf(node);
            AppendAttributes(out, node);
            ComPtr<IXMLDOMNode> child = FirstChildOf(node);
            out += child ? ">" : "/>";
            return child;
        }
        case NODE_TEXT:
            AppendEscapedText(out, ValueOf(node));
            return {};
        case NODE_CDATA_SECTION:
            AppendCData(out, ValueOf(node));
            return {};
        case NODE_COMMENT:
            out += "<!--";
            AppendCommentText(out, ValueOf(node));
            out += "-->";
            return {};
        case NODE_PROCESSING_INSTRUCTION: {
            const std::string name = NameOf(node);
            if (name == "xml") {
                AppendDeclarationOf(out, ValueOf(node));
                return {};
            }
            out += "<?";
            out += name;
            const std::string value = ValueOf(node);
            if (!value.empty()) {
                out.push_back(' ');
                out += value;
            }
            out += "?>";
            return {};
        }
        default:
            return {};
    }
}

void Leave(std::string& out, IXMLDOMNode* node) {
    out += "</";
    out += NameOf(node);
    out.push_back('>');
}

// Depth first without recursion, so that deep trees cannot exhaust the stack.
void AppendSubtree(std::string& out, IXMLDOMNode* root) {
    // The open elements, innermost last.
    std::vector<ComPtr<IXMLDOMNode>> open;
    ComPtr<IXMLDOMNode> current = ComPtr<IXMLDOMNode>::Share(root);
    while (current) {
        ComPtr<IXMLDOMNode> child = Enter(out, current.Get());
        if (child) {
            open.push_back(std::move(current));
            current = std::move(child);
            continue;
        }
        // Done with `current`: on to its next sibling, closing finished parents.
        while (true) {
            if (open.empty()) {
                return;  // the root itself is done
            }
            ComPtr<IXMLDOMNode> next = NextSiblingOf(current.Get());
            if (next) {
                current = std::move(next);
                break;
            }
            current = std::move(open.back());
            open.pop_back();
            Leave(out, current.Get());
        }
    }
}

}  // namespace

std::string NodeXml(IXMLDOMNode* node) {
    std::string out;
    if (TypeOf(node) == NODE_DOCUMENT) {
        // By index: Wine's MSXML gives no next sibling of a document type node.
        ComPtr<IXMLDOMNodeList> children;
        Check(node->get_childNodes(children.Out()), "The children could not be read.");
        long count = 0;
        Check(children->get_length(&count), "The children could not be counted.");
        for (long i = 0; i < count; ++i) {
            ComPtr<IXMLDOMNode> child;
            Check(children->get_item(i, child.Out()), "The child could not be read.");
            if (TypeOf(child.Get()) == NODE_DOCUMENT_TYPE) {
                continue;  // a document type declaration is not written
            }
            AppendSubtree(out, child.Get());
            out += "\r\n";
        }
        return out;
    }
    AppendSubtree(out, node);
    return out;
}

}  // namespace quillbank::xml::msxml

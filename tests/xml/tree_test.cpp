#include <string>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::CaughtError;
using testing::Loaded;

void ExpectDomError(const std::function<void()>& action) {
    const Error error = CaughtError(action);
    EXPECT_EQ(error.Number(), ErrXmlDom);
    EXPECT_EQ(error.Source(), "msxml3.dll");
    EXPECT_FALSE(error.Description().empty());
}

TEST(XmlTree, CreatedElementIsUnattachedAndNotInTheDocument) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    Element b = doc.CreateElement("b");
    EXPECT_FALSE(a.Parent());
    EXPECT_FALSE(a.NextSibling());
    EXPECT_FALSE(b.PreviousSibling());
    EXPECT_EQ(a.OwnerDocument(), doc);
    EXPECT_FALSE(doc.DocumentElement());
    EXPECT_EQ(doc.Xml(), "");
    EXPECT_FALSE(doc.AsNode().FirstChild());
    EXPECT_EQ(doc.AsNode().ChildCount(), 0);
}

TEST(XmlTree, UnattachedElementCanBeAppendedLater) {
    Document doc = Document::Create();
    Element root = doc.CreateElement("root");
    Element child = doc.CreateElement("child");
    child.SetAttribute("k", "v");
    EXPECT_EQ(root.AppendChild(child), child);
    EXPECT_EQ(child.Parent(), root);
    doc.SetDocumentElement(root);
    EXPECT_EQ(doc.DocumentElement(), root);
    EXPECT_EQ(root.Parent(), doc.AsNode());
    EXPECT_EQ(doc.Xml(), "<root><child k=\"v\"/></root>\r\n");
}

TEST(XmlTree, RemovedChildStaysUsable) {
    Document doc = Loaded("<r><a x=\"1\"><b/></a><c/></r>");
    Element r = doc.DocumentElement();
    Node a = r.FirstChild();
    Node removed = r.RemoveChild(a);
    EXPECT_EQ(removed, a);
    EXPECT_FALSE(a.Parent());
    EXPECT_FALSE(a.NextSibling());
    EXPECT_EQ(r.Xml(), "<r><c/></r>");
    EXPECT_EQ(a.Xml(), "<a x=\"1\"><b/></a>");
    a.AsElement().SetAttribute("y", "2");
    r.AppendChild(a);
    EXPECT_EQ(r.Xml(), "<r><c/><a x=\"1\" y=\"2\"><b/></a></r>");
}

TEST(XmlTree, RemovingANodeThatIsNotAChildIsRefused) {
    Document doc = Loaded("<r><a/><b><c/></b></r>");
    Element r = doc.DocumentElement();
    Node c = r.LastChild().FirstChild();
    ExpectDomError([&] { r.RemoveChild(c); });
    ExpectDomError([&] { r.RemoveChild(doc.CreateElement("x")); });
}

TEST(XmlTree, AppendMovesANodeFromItsParent) {
    Document doc = Loaded("<r><a/><b/></r>");
    Element r = doc.DocumentElement();
    Node a = r.FirstChild();
    Node b = r.LastChild();
    b.AppendChild(a);
    EXPECT_EQ(r.Xml(), "<r><b><a/></b></r>");
    r.InsertBefore(a, b);
    EXPECT_EQ(r.Xml(), "<r><a/><b/></r>");
    r.InsertBefore(a, a);
    EXPECT_EQ(r.Xml(), "<r><a/><b/></r>");
    r.AppendChild(a);
    EXPECT_EQ(r.Xml(), "<r><b/><a/></r>");
}

TEST(XmlTree, InsertingANodeIntoItselfOrItsDescendantIsRefused) {
    Document doc = Loaded("<r><a><b/></a></r>");
    Node a = doc.DocumentElement().FirstChild();
    Node b = a.FirstChild();
    ExpectDomError([&] { a.AppendChild(a); });
    ExpectDomError([&] { b.AppendChild(a); });
    EXPECT_EQ(doc.DocumentElement().Xml(), "<r><a><b/></a></r>");
}

TEST(XmlTree, ReferenceThatIsNotAChildIsRefused) {
    Document doc = Loaded("<r><a><b/></a></r>");
    Node r = doc.DocumentElement();
    Node b = r.FirstChild().FirstChild();
    ExpectDomError([&] { r.InsertBefore(doc.CreateElement("x"), b); });
}

TEST(XmlTree, InsertingADocumentOrIntoALeafIsRefused) {
    Document doc = Loaded("<r>text</r>");
    ExpectDomError([&] { doc.DocumentElement().AppendChild(Document::Create().AsNode()); });
    ExpectDomError([&] { doc.DocumentElement().FirstChild().AppendChild(doc.CreateElement("x")); });
    ExpectDomError([&] { doc.AsNode().AppendChild(doc.CreateElement("second")); });
    ExpectDomError([&] { doc.AsNode().AppendChild(doc.CreateTextNode("top")); });
    ExpectDomError([&] { doc.DocumentElement().AppendChild(Node()); });
}

TEST(XmlTree, DocumentNodeTakesARootAndComments) {
    Document doc = Document::Create();
    Node top = doc.AsNode();
    EXPECT_EQ(top.Type(), NodeType::Document);
    EXPECT_EQ(top.Name(), "#document");
    EXPECT_FALSE(top.OwnerDocument());
    top.AppendChild(doc.CreateComment("c"));
    top.AppendChild(doc.CreateElement("r"));
    EXPECT_EQ(doc.DocumentElement().Name(), "r");
    EXPECT_EQ(doc.Xml(), "<!--c-->\r\n<r/>\r\n");
    EXPECT_FALSE(top.FirstChild().PreviousSibling());
    EXPECT_EQ(top.LastChild(), doc.DocumentElement());
}

TEST(XmlTree, SetDocumentElementReplacesTheRootInPlace) {
    Document doc = Loaded("<!--a--><old/><!--b-->");
    Element old = doc.DocumentElement();
    Element fresh = doc.CreateElement("new");
    doc.SetDocumentElement(fresh);
    EXPECT_EQ(doc.Xml(), "<!--a-->\r\n<new/>\r\n<!--b-->\r\n");
    EXPECT_FALSE(old.Parent());
    EXPECT_EQ(old.Xml(), "<old/>");
}

TEST(XmlTree, ChildAtWalksInOrderAndOutOfRangeIsNull) {
    Document doc = Document::Create();
    Element r = doc.CreateElement("r");
    for (int i = 0; i < 1000; ++i) {
        r.AppendChild(doc.CreateElement("c" + std::to_string(i)));
    }
    ASSERT_EQ(r.ChildCount(), 1000);
    for (std::int32_t i = 0; i < r.ChildCount(); ++i) {
        ASSERT_EQ(r.ChildAt(i).Name(), "c" + std::to_string(i));
    }
    EXPECT_EQ(r.ChildAt(500).Name(), "c500");
    EXPECT_EQ(r.ChildAt(3).Name(), "c3");
    EXPECT_FALSE(r.ChildAt(1000));
    EXPECT_FALSE(r.ChildAt(-1));
    // Edits are seen by the next call.
    r.RemoveChild(r.ChildAt(0));
    EXPECT_EQ(r.ChildAt(0).Name(), "c1");
    EXPECT_EQ(r.ChildCount(), 999);
    r.InsertBefore(doc.CreateElement("first"), r.FirstChild());
    EXPECT_EQ(r.ChildAt(0).Name(), "first");
    EXPECT_EQ(r.ChildAt(1).Name(), "c1");
    EXPECT_EQ(r.ChildCount(), 1000);
}

TEST(XmlTree, ChildAtOfTheDocumentHidesUnattachedNodes) {
    Document doc = Loaded("<!--c--><r/>");
    doc.CreateElement("loose");
    EXPECT_EQ(doc.AsNode().ChildCount(), 2);
    EXPECT_EQ(doc.AsNode().ChildAt(0).Type(), NodeType::Comment);
    EXPECT_EQ(doc.AsNode().ChildAt(1).Name(), "r");
    EXPECT_FALSE(doc.AsNode().ChildAt(2));
}

TEST(XmlTree, CrossDocumentAppendCopiesIntoTheTarget) {
    Document source = Loaded("<s><a x=\"1\"><b>t</b></a><z/></s>");
    Document target = Loaded("<t/>");
    Node a = source.DocumentElement().FirstChild();
    Node placed = target.DocumentElement().AppendChild(a);
    EXPECT_NE(placed, a);
    EXPECT_EQ(placed.OwnerDocument(), target);
    EXPECT_EQ(placed.Parent(), target.DocumentElement());
    EXPECT_EQ(target.Xml(), "<t><a x=\"1\"><b>t</b></a></t>\r\n");
    // The original left its parent and is still usable.
    EXPECT_EQ(source.Xml(), "<s><z/></s>\r\n");
    EXPECT_FALSE(a.Parent());
    EXPECT_EQ(a.Xml(), "<a x=\"1\"><b>t</b></a>");
    EXPECT_EQ(a.OwnerDocument(), source);
}

TEST(XmlTree, CrossDocumentInsertBeforeAndRoot) {
    Document source = Document::Create();
    Element e = source.CreateElement("e");
    Document target = Loaded("<t><last/></t>");
    Node placed = target.DocumentElement().InsertBefore(e, target.DocumentElement().FirstChild());
    EXPECT_EQ(target.DocumentElement().Xml(), "<t><e/><last/></t>");
    EXPECT_EQ(placed.OwnerDocument(), target);
    Document other = Document::Create();
    other.SetDocumentElement(target.DocumentElement());
    EXPECT_EQ(other.Xml(), "<t><e/><last/></t>\r\n");
}

TEST(XmlTree, NodeOutlivesItsDocumentHandle) {
    Node kept;
    {
        Document doc = Loaded("<r><a>text</a></r>");
        kept = doc.DocumentElement().FirstChild();
    }
    EXPECT_EQ(kept.Xml(), "<a>text</a>");
    EXPECT_EQ(kept.Parent().Name(), "r");
    EXPECT_EQ(kept.OwnerDocument().DocumentElement().Name(), "r");
}

TEST(XmlTree, CloneIsUnattachedInTheSameDocument) {
    Document doc = Loaded("<r><a x=\"1\"><b>t</b></a></r>");
    Node a = doc.DocumentElement().FirstChild();
    Node deep = a.CloneNode(true);
    Node shallow = a.CloneNode(false);
    EXPECT_FALSE(deep.Parent());
    EXPECT_EQ(deep.OwnerDocument(), doc);
    EXPECT_EQ(deep.Xml(), "<a x=\"1\"><b>t</b></a>");
    EXPECT_EQ(shallow.Xml(), "<a x=\"1\"/>");
    deep.AsElement().SetAttribute("x", "2");
    EXPECT_EQ(a.AsElement().GetAttribute("x"), "1");
    Node copyOfDocument = doc.AsNode().CloneNode(true);
    EXPECT_EQ(copyOfDocument.Type(), NodeType::Document);
    EXPECT_EQ(copyOfDocument.Xml(), doc.Xml());
}

TEST(XmlTree, NamesTypesAndValues) {
    Document doc = Loaded("<p:r><![CDATA[c]]>t<!--m--><?pi d?></p:r>");
    Node r = doc.DocumentElement();
    EXPECT_EQ(r.Name(), "p:r");
    EXPECT_EQ(r.Type(), NodeType::Element);
    EXPECT_EQ(r.Value(), "");
    EXPECT_TRUE(r.IsElement());
    const char* names[] = {"#cdata-section", "#text", "#comment", "pi"};
    const NodeType types[] = {NodeType::CData, NodeType::Text, NodeType::Comment, NodeType::ProcessingInstruction};
    const char* values[] = {"c", "t", "m", "d"};
    for (std::int32_t i = 0; i < 4; ++i) {
        Node n = r.ChildAt(i);
        EXPECT_EQ(n.Name(), names[i]);
        EXPECT_EQ(n.Type(), types[i]);
        EXPECT_EQ(n.Value(), values[i]);
        EXPECT_FALSE(n.IsElement());
        EXPECT_FALSE(n.AsElement());
    }
}

TEST(XmlTree, AttributesDistinguishAbsentFromEmpty) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    EXPECT_EQ(e.GetAttribute("a"), std::nullopt);
    EXPECT_FALSE(e.HasAttribute("a"));
    e.SetAttribute("a", "");
    EXPECT_EQ(e.GetAttribute("a"), std::string());
    EXPECT_TRUE(e.HasAttribute("a"));
    EXPECT_EQ(e.AttributeCount(), 1);
    EXPECT_EQ(e.Xml(), "<e a=\"\"/>");
    e.RemoveAttribute("a");
    e.RemoveAttribute("never");
    EXPECT_EQ(e.AttributeCount(), 0);
}

TEST(XmlTree, AttributesAreFoundByTheirWholeNameWhateverItsLength) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    const std::string longName(200, 'n');
    e.SetAttribute("name", "short");
    e.SetAttribute(longName, "long");
    e.SetAttribute(longName + "x", "longer");
    EXPECT_EQ(e.GetAttribute("name"), "short");
    EXPECT_EQ(e.GetAttribute(longName), "long");
    EXPECT_EQ(e.GetAttribute(longName + "x"), "longer");
    EXPECT_EQ(e.GetAttribute(longName.substr(1)), std::nullopt);
    EXPECT_EQ(e.GetAttribute("nam"), std::nullopt);
    EXPECT_EQ(e.GetAttribute("names"), std::nullopt);
}

TEST(XmlTree, InvalidNamesAreRefused) {
    Document doc = Document::Create();
    ExpectDomError([&] { doc.CreateElement(""); });
    ExpectDomError([&] { doc.CreateElement("1a"); });
    ExpectDomError([&] { doc.CreateElement("a b"); });
    ExpectDomError([&] { doc.CreateElement("a<"); });
    ExpectDomError([&] { doc.CreateElement("a").SetAttribute("", "v"); });
    EXPECT_EQ(doc.CreateElement("\xC3\xA9t\xC3\xA9-1.x_y:z").Name(), "\xC3\xA9t\xC3\xA9-1.x_y:z");
}

TEST(XmlTree, InvalidUtf8IsRefusedWhereItEnters) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    for (const std::function<void()>& action : std::initializer_list<std::function<void()>>{
             [&] { doc.CreateElement("a\xFF"); },
             [&] { e.SetAttribute("a", "\xC3"); },
             [&] { e.SetAttribute("a\x80", "v"); },
             [&] { e.SetText("\xED\xA0\x80"); },
             [&] { doc.CreateTextNode("\xE2\x82"); },
             [&] { doc.CreateComment("\xFE"); },
         }) {
        const Error error = CaughtError(action);
        EXPECT_EQ(error.Number(), ErrInvalidArgument);
        EXPECT_EQ(error.Source(), "msxml3.dll");
        EXPECT_EQ(error.Description(), "The text is not valid UTF-8.");
    }
    EXPECT_EQ(e.Xml(), "<e/>");
}

TEST(XmlTree, NullHandlesRaiseInsteadOfCrashing) {
    ExpectDomError([] { (void)Node().Name(); });
    ExpectDomError([] { (void)Element().GetAttribute("a"); });
    ExpectDomError([] { (void)Document().CreateElement("a"); });
    EXPECT_FALSE(Node().AsElement());
}

}  // namespace
}  // namespace quillbank::xml

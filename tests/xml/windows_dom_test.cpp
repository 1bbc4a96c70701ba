// What the Windows DOM (MSXML 3.0) gives, case by case, as its own
// conformance tests (Wine's msxml3 tests, whose checks pass on Windows) pin
// it. Each expected value is Windows'. The same suite runs against the MSXML
// backend under Wine; tests/com/wine_differences.txt names where Wine's DOM
// differs.

#include <string>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::CaughtError;
using testing::Loaded;

// A small catalogue: text with a trailing line end, text between line ends,
// an empty element written with an end tag, nested text, all indented by
// line ends only.
constexpr const char* kCatalogue =
    "<?xml version='1.0'?>\n"
    "<lc dl='str1'>\n"
    "<bs vr='str2' sz='1234'>fn1.txt\n</bs>\n"
    "<pr id='str3' vr='1.2.3' pn='wine 20050804'>\nfn2.txt\n</pr>\n"
    "<empty></empty>\n"
    "<fo>\n<ba>\nf1\n</ba>\n</fo>\n"
    "</lc>\n";

// ---- Serialisation of one node ------------------------------------------

TEST(WindowsDom, TextEscapesAmpersandAndAnglesOnly) {
    Document doc = Document::Create();
    const Node text = doc.CreateTextNode("This &is a ; test <>\\");
    EXPECT_EQ(text.Xml(), "This &amp;is a ; test &lt;&gt;\\");
    EXPECT_EQ(text.Text(), "This &is a ; test <>\\");
}

TEST(WindowsDom, CommentIsWrittenUnescaped) {
    Document doc = Document::Create();
    Node comment = doc.CreateComment("A Comment");
    EXPECT_EQ(comment.Name(), "#comment");
    EXPECT_EQ(comment.Xml(), "<!--A Comment-->");
    comment.SetText("This &is a ; test <>\\");
    EXPECT_EQ(comment.Xml(), "<!--This &is a ; test <>\\-->");
    EXPECT_EQ(comment.Text(), "This &is a ; test <>\\");
}

TEST(WindowsDom, CommentTextIsNotTrimmed) {
    Document doc = Document::Create();
    ASSERT_FALSE(doc.PreserveWhiteSpace());
    const Node comment = doc.CreateComment(" This &is a Middle; test <>\\Append ");
    EXPECT_EQ(comment.Text(), " This &is a Middle; test <>\\Append ");
    EXPECT_EQ(doc.CreateComment("  ").Text(), "  ");
}

TEST(WindowsDom, CDataIsWrittenAsOneSectionAndItsTextIsNotTrimmed) {
    Document doc = Document::Create();
    const Node cdata = doc.CreateCDataSection("[1]*2=3; &gee that is not right!");
    EXPECT_EQ(cdata.Name(), "#cdata-section");
    EXPECT_EQ(cdata.Xml(), "<![CDATA[[1]*2=3; &gee that is not right!]]>");
    EXPECT_EQ(doc.CreateCDataSection(" This &is a Middle; test <>\\Append ").Text(),
              " This &is a Middle; test <>\\Append ");
    EXPECT_EQ(doc.CreateCDataSection("  ").Text(), "  ");
}

TEST(WindowsDom, ElementXmlFollowsItsAttributesAndText) {
    Document doc = Document::Create();
    Element root = doc.CreateElement("Testing");
    doc.SetDocumentElement(root);
    Element element = doc.CreateElement("EleTest");
    root.AppendChild(element);
    EXPECT_EQ(element.Xml(), "<EleTest/>");
    element.SetAttribute("Attr", "");
    EXPECT_EQ(element.Xml(), "<EleTest Attr=\"\"/>");
    element.SetText("TestingNode");
    EXPECT_EQ(element.Xml(), "<EleTest Attr=\"\">TestingNode</EleTest>");
    // "&x " and the degree Celsius sign: the ampersand is escaped, the
    // character above ASCII written as it is, and the text reads back.
    element.SetText("&x \xE2\x84\x83");
    EXPECT_EQ(element.Xml(), "<EleTest Attr=\"\">&amp;x \xE2\x84\x83</EleTest>");
    EXPECT_EQ(element.Text(), "&x \xE2\x84\x83");
}

TEST(WindowsDom, AttributeValuesEscapeQuotesAndAmpersands) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    e.SetAttribute("attr", "\"a & b\"");
    EXPECT_EQ(e.Xml(), "<e attr=\"&quot;a &amp; b&quot;\"/>");
    EXPECT_EQ(e.GetAttribute("attr"), "\"a & b\"");
    e.SetAttribute("attr", "&quot;a");
    EXPECT_EQ(e.Xml(), "<e attr=\"&amp;quot;a\"/>");
    EXPECT_EQ(e.GetAttribute("attr"), "&quot;a");
}

TEST(WindowsDom, DocumentXmlEndsEveryTopLevelNodeWithCrLf) {
    EXPECT_EQ(Loaded("<a>test</a>").Xml(), "<a>test</a>\r\n");
    Document doc = Document::Create();
    doc.SetDocumentElement(doc.CreateElement("foo"));
    EXPECT_EQ(doc.Xml(), "<foo/>\r\n");
}

// ---- The XML declaration ------------------------------------------------

TEST(WindowsDom, DeclarationIsANodeNamedXmlWhoseTextIsItsAttributes) {
    const Document doc = Loaded(kCatalogue);
    const Node declaration = doc.AsNode().FirstChild();
    EXPECT_EQ(declaration.Type(), NodeType::ProcessingInstruction);
    EXPECT_EQ(declaration.Name(), "xml");
    EXPECT_EQ(declaration.Xml(), "<?xml version=\"1.0\"?>");
    EXPECT_EQ(declaration.Text(), "version=\"1.0\"");
    EXPECT_EQ(declaration.ChildCount(), 0);
    EXPECT_EQ(doc.AsNode().LastChild().Name(), "lc");
}

TEST(WindowsDom, DocumentXmlLeavesOutAnEncodingOtherThanUtf16) {
    EXPECT_EQ(Loaded("<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n<test/>\r\n").Xml(),
              "<?xml version=\"1.0\"?>\r\n<test/>\r\n");
    EXPECT_EQ(Loaded("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>test</a>").Xml(),
              "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<a>test</a>\r\n");
}

// ---- Loading --------------------------------------------------------------

TEST(WindowsDom, LoadingIgnoresTheEncodingTheDeclarationNames) {
    Document doc = Document::Create();
    EXPECT_TRUE(doc.LoadXML("<?xml version='1.0' encoding='Windows-1252'?>\n<open></open>\n"));
    EXPECT_EQ(doc.DocumentElement().Name(), "open");
}

TEST(WindowsDom, EmptyTextOrADeclarationAloneDoesNotLoad) {
    Document doc = Loaded("<a/>");
    EXPECT_FALSE(doc.LoadXML(""));
    EXPECT_FALSE(doc.DocumentElement());
    EXPECT_FALSE(doc.LoadXML("<?xml version='1.0'?>\n"));
    EXPECT_FALSE(doc.DocumentElement());
    EXPECT_EQ(doc.Xml(), "");
}

TEST(WindowsDom, WhitespaceBeforeTheDeclarationFailsTheLoad) {
    for (const char* text : {"\n<?xml version=\"1.0\" encoding=\"UTF-16\" ?><root/>", " <?xml version=\"1.0\"?><root/>",
                             "\n<?xml version=\"1.0\"?><root/>", "\t<?xml version=\"1.0\"?><root/>",
                             "\r\n<?xml version=\"1.0\"?><root/>", "\r<?xml version=\"1.0\"?><root/>",
                             "\r\r\r\r\t\t \n\n <?xml version=\"1.0\"?><root/>"}) {
        Document doc = Document::Create();
        EXPECT_FALSE(doc.LoadXML(text)) << text;
        EXPECT_FALSE(doc.DocumentElement()) << text;
    }
}

TEST(WindowsDom, ANewDocumentDoesNotPreserveWhitespace) {
    EXPECT_FALSE(Document::Create().PreserveWhiteSpace());
}

TEST(WindowsDom, WhitespaceOnlyTextBetweenElementsIsDropped) {
    const Document doc = Loaded("<?xml version=\"1.0\"?>\n\t<root>\n\t<a/>\n\t<b/>\n\t<c/>\n</root>");
    EXPECT_EQ(doc.DocumentElement().ChildCount(), 3);
    const Document catalogue = Loaded(kCatalogue);
    EXPECT_EQ(catalogue.DocumentElement().ChildCount(), 4);
    EXPECT_EQ(catalogue.DocumentElement().ChildAt(2).ChildCount(), 0);
}

TEST(WindowsDom, TextAroundCharacterReferencesIsTrimmedOnlyWhenNotPreserving) {
    const std::string text = "<?xml version='1.0'?><a><b1> Text &#65; end </b1><b2>&#65;&#66; &#67; </b2></a>";
    const Document kept = Loaded(text, true);
    EXPECT_EQ(kept.DocumentElement().ChildAt(0).Text(), " Text A end ");
    EXPECT_EQ(kept.DocumentElement().ChildAt(1).Text(), "AB C ");
    const Document trimmed = Loaded(text, false);
    EXPECT_EQ(trimmed.DocumentElement().ChildAt(0).Text(), "Text A end");
    EXPECT_EQ(trimmed.DocumentElement().ChildAt(1).Text(), "AB C");
}

TEST(WindowsDom, ElementTextIsTrimmedWhenNotPreserving) {
    const Document doc = Loaded(kCatalogue);
    EXPECT_EQ(doc.DocumentElement().FirstChild().Text(), "fn1.txt");
    EXPECT_EQ(doc.DocumentElement().FirstChild().AsElement().GetAttribute("vr"), "str2");
}

TEST(WindowsDom, ValuesOfTextCDataAndCommentsReadBackAsSet) {
    Document doc = Document::Create();
    EXPECT_EQ(doc.CreateTextNode("textdata").Value(), "textdata");
    EXPECT_EQ(doc.CreateCDataSection("cdata data").Value(), "cdata data");
    EXPECT_EQ(doc.CreateComment("comment data").Value(), "comment data");
    EXPECT_EQ(doc.CreateElement("element").Value(), "");
    Node text = doc.CreateTextNode("");
    text.SetText("Jeeves & Wooster");
    EXPECT_EQ(text.Value(), "Jeeves & Wooster");
}

TEST(WindowsDom, TextNodesAppendedOrInsertedStaySeparate) {
    Document doc = Document::Create();
    Element root = doc.CreateElement("Testing");
    doc.SetDocumentElement(root);
    for (int i = 0; i < 10; ++i) {
        const Node text = doc.CreateTextNode("str1");
        EXPECT_EQ(root.AppendChild(text), text);
    }
    const Node first = root.FirstChild();
    for (int i = 0; i < 10; ++i) {
        const Node text = doc.CreateTextNode("str2");
        EXPECT_EQ(root.InsertBefore(text, first), text);
    }
    EXPECT_EQ(root.ChildCount(), 20);
}

TEST(WindowsDom, AttributesAreFoundByTheirQualifiedName) {
    const Document doc = Loaded(
        "<?xml version='1.0' encoding='utf-8'?>\n"
        "<root xmlns:foo='urn:uuid:86B2F87F-ACB6-45cd-8B77-9BDB92A01A29' a=\"attr a\" foo:b=\"attr b\" >\n</root>");
    const Element root = doc.DocumentElement();
    EXPECT_EQ(root.GetAttribute("xmlns:foo"), "urn:uuid:86B2F87F-ACB6-45cd-8B77-9BDB92A01A29");
    EXPECT_EQ(root.GetAttribute("a"), "attr a");
    EXPECT_EQ(root.GetAttribute("foo:b"), "attr b");
    EXPECT_EQ(root.GetAttribute("b"), std::nullopt);
    EXPECT_EQ(root.GetAttribute("non-existent"), std::nullopt);
}

// ---- Namespaces -------------------------------------------------------------

TEST(WindowsDom, RebindingTheElementsOwnPrefixIsRefused) {
    Document doc = Document::Create();
    Element element = doc.CreateElement("ns:elem");
    element.SetAttribute("xmlns:ns", "ns/uri");
    doc.SetDocumentElement(element);
    const Error error = CaughtError([&] { element.SetAttribute("xmlns:ns", "ns/uri2"); });
    EXPECT_EQ(error.Number(), static_cast<std::int32_t>(0x80070057u));
    EXPECT_EQ(error.Source(), "msxml3.dll");
    EXPECT_EQ(error.Description(), "The prefix of this element is declared already with another namespace.");
    // The same namespace again is accepted.
    element.SetAttribute("xmlns:ns", "ns/uri");
    EXPECT_EQ(element.Xml(), "<ns:elem xmlns:ns=\"ns/uri\"/>");
}

}  // namespace
}  // namespace quillbank::xml

#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

TEST(XmlSerialise, ElementWithoutChildrenIsSelfClosedWithoutSpace) {
    Document doc = Document::Create();
    EXPECT_EQ(doc.CreateElement("a").Xml(), "<a/>");
}

TEST(XmlSerialise, ElementWithAttributesAndNoChildren) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.SetAttribute("x", "1");
    EXPECT_EQ(a.Xml(), "<a x=\"1\"/>");
}

TEST(XmlSerialise, AttributesInTheOrderSetAndReplacedInPlace) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.SetAttribute("zeta", "1");
    a.SetAttribute("alpha", "2");
    a.SetAttribute("mid", "3");
    a.SetAttribute("zeta", "4");
    EXPECT_EQ(a.Xml(), "<a zeta=\"4\" alpha=\"2\" mid=\"3\"/>");
    a.RemoveAttribute("alpha");
    a.SetAttribute("alpha", "5");
    EXPECT_EQ(a.Xml(), "<a zeta=\"4\" mid=\"3\" alpha=\"5\"/>");
}

TEST(XmlSerialise, ElementWithChildrenHasEndTagAndNoAddedWhitespace) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    Element b = doc.CreateElement("b");
    a.AppendChild(b);
    a.AppendChild(doc.CreateTextNode("t"));
    b.SetAttribute("k", "v");
    EXPECT_EQ(a.Xml(), "<a><b k=\"v\"/>t</a>");
}

TEST(XmlSerialise, AttributeValueEscapes) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.SetAttribute("v", "& < > \" ' \t \n \r");
    EXPECT_EQ(a.Xml(), "<a v=\"&amp; &lt; &gt; &quot; ' &#9; &#10; &#13;\"/>");
}

TEST(XmlSerialise, TextEscapesAmpersandAndAnglesButNotQuotes) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.SetText("x & y < z > w \"q\" 'p'\tt");
    EXPECT_EQ(a.Xml(), "<a>x &amp; y &lt; z &gt; w \"q\" 'p'\tt</a>");
}

TEST(XmlSerialise, LineFeedInTextIsWrittenAsCrLf) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.SetText("one\ntwo\n");
    EXPECT_EQ(a.Xml(), "<a>one\r\ntwo\r\n</a>");
}

// Text that is set holds LF for a lone CR and for CR LF, and LF is written
// CR LF.
TEST(XmlSerialise, LineEndsInSetTextAreWrittenAsCrLf) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.SetText("a\rb\r\nc\nd");
    EXPECT_EQ(a.Text(), "a\nb\nc\nd");
    EXPECT_EQ(a.Xml(), "<a>a\r\nb\r\nc\r\nd</a>");
}

// A CR can only come into text through a character reference; it is written
// as one, since a raw CR would read back as LF.
TEST(XmlSerialise, CarriageReturnFromAReferenceIsWrittenAsAReference) {
    Document doc = testing::Loaded("<a>x&#13;y</a>");
    EXPECT_EQ(doc.DocumentElement().Text(), "x\ry");
    EXPECT_EQ(doc.DocumentElement().Xml(), "<a>x&#13;y</a>");
}

TEST(XmlSerialise, NonAsciiIsWrittenAsUtf8) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.SetAttribute("v", "caf\xC3\xA9 \xE2\x82\xAC");
    a.SetText("\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(a.Xml(), "<a v=\"caf\xC3\xA9 \xE2\x82\xAC\">\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80</a>");
}

TEST(XmlSerialise, CommentCDataAndProcessingInstruction) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.AppendChild(doc.CreateComment(" c & <d> "));
    a.AppendChild(doc.CreateCDataSection("x < & y"));
    EXPECT_EQ(a.Xml(), "<a><!-- c & <d> --><![CDATA[x < & y]]></a>");
    Document loaded = testing::Loaded("<r><?target some data?><?bare?></r>");
    EXPECT_EQ(loaded.DocumentElement().Xml(), "<r><?target some data?><?bare?></r>");
}

TEST(XmlSerialise, CDataHoldingItsOwnEndIsSplitAndReadsBack) {
    Document doc = Document::Create();
    Element a = doc.CreateElement("a");
    a.AppendChild(doc.CreateCDataSection("x]]>y"));
    EXPECT_EQ(a.Xml(), "<a><![CDATA[x]]]]><![CDATA[>y]]></a>");
    Document back = testing::Loaded(a.Xml());
    EXPECT_EQ(back.DocumentElement().Text(), "x]]>y");
}

TEST(XmlSerialise, DocumentXmlEndsEveryTopLevelNodeWithCrLf) {
    Document doc = testing::Loaded("<?xml version=\"1.0\"?><!--head--><root><a/></root><!--tail-->");
    EXPECT_EQ(doc.Xml(), "<?xml version=\"1.0\"?>\r\n<!--head-->\r\n<root><a/></root>\r\n<!--tail-->\r\n");
}

TEST(XmlSerialise, EmptyDocumentXmlIsEmpty) {
    EXPECT_EQ(Document::Create().Xml(), "");
    EXPECT_EQ(Document::Create().AsNode().Xml(), "");
}

TEST(XmlSerialise, ElementXmlOfALoadedElementIsItsSubtreeOnly) {
    Document doc = testing::Loaded("<r><a x='1'>t<b/></a><c/></r>");
    Node a = doc.DocumentElement().FirstChild();
    EXPECT_EQ(a.Xml(), "<a x=\"1\">t<b/></a>");
}

}  // namespace
}  // namespace quillbank::xml

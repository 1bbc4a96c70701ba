#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::Loaded;

TEST(XmlText, JoinsDescendantTextAndCDataButNotComments) {
    Document doc = Loaded("<r>a<b>b<![CDATA[c]]></b><!--x-->d<?p q?></r>");
    EXPECT_EQ(doc.DocumentElement().Text(), "abcd");
}

TEST(XmlText, TrimmedAtBothEndsWhenTheDocumentDoesNotPreserveWhitespace) {
    Document doc = Loaded("<r> \t\n a <b> b </b> c \r\n</r>");
    EXPECT_EQ(doc.DocumentElement().Text(), "a  b  c");
    EXPECT_EQ(doc.DocumentElement().FirstChild().Text(), "a");
}

TEST(XmlText, KeptWholeWhenTheDocumentPreservesWhitespace) {
    Document doc = Loaded("<r> a <b> b </b> c </r>", true);
    EXPECT_EQ(doc.DocumentElement().Text(), " a  b  c ");
}

TEST(XmlText, FollowsTheSwitchAtTheTimeOfAsking) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    e.SetText("  x  ");
    EXPECT_EQ(e.Text(), "x");
    doc.SetPreserveWhiteSpace(true);
    EXPECT_EQ(e.Text(), "  x  ");
    EXPECT_EQ(e.Xml(), "<e>  x  </e>");
}

TEST(XmlText, NonAsciiSpacesAreNotTrimmed) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    e.SetText("\xC2\xA0x\xC2\xA0");
    EXPECT_EQ(e.Text(), "\xC2\xA0x\xC2\xA0");
}

TEST(XmlText, SetTextReplacesAllChildrenAndEmptyLeavesNone) {
    Document doc = Loaded("<r><a/>t<b><c/></b></r>");
    Element r = doc.DocumentElement();
    Node b = r.LastChild();
    r.SetText("new");
    EXPECT_EQ(r.Xml(), "<r>new</r>");
    EXPECT_EQ(r.ChildCount(), 1);
    EXPECT_FALSE(b.Parent());
    EXPECT_EQ(b.Xml(), "<b><c/></b>");
    r.SetText("");
    EXPECT_FALSE(r.HasChildNodes());
    EXPECT_EQ(r.Xml(), "<r/>");
}

TEST(XmlText, SetTextOfLeafNodesSetsTheirValue) {
    Document doc = Document::Create();
    Node t = doc.CreateTextNode("a");
    Node c = doc.CreateComment("b");
    t.SetText("x<y");
    c.SetText("z");
    EXPECT_EQ(t.Value(), "x<y");
    EXPECT_EQ(t.Xml(), "x&lt;y");
    EXPECT_EQ(c.Xml(), "<!--z-->");
}

TEST(XmlText, TextOfTheDocumentNode) {
    Document doc = Loaded("<!--c--><r> a <b>b</b></r>");
    EXPECT_EQ(doc.AsNode().Text(), "a b");
}

}  // namespace
}  // namespace quillbank::xml

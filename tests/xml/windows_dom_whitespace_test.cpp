// What the Windows DOM does with whitespace a load does not preserve: it
// drops the whitespace-only text, but remembers where it was. "text" counts
// it as one space between the texts it separated, and "xml" writes it back as
// a line end and one tab a level. Expected values are Windows'; where Windows
// is not pinned (what a copy keeps) the choice is the one docs/msxml-
// behaviour.md gives.

#include <string>

#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::Loaded;

// A description in two forms: one whose whitespace is not preserved, and one
// under xml:space="preserve". The first starts with an empty CDATA section.
constexpr const char* kDescriptions =
    "<?xml version='1.0'?>\n"
    "<root>\n"
    "    <desc>\n"
    "        <html>\n"
    "            <![CDATA[]]> This is<strong> a</strong>  <i>description</i><dot>. </dot><x/>\n"
    "        </html>\n"
    "        <html xml:space='preserve'>\n"
    "            This is <strong>a</strong> <i>description</i> with preserved whitespace. <x/>\n"
    "        </html>\n"
    "    </desc>\n"
    "</root>\n";

// The element child of `parent` at `index` among its element children.
Node ElementChild(const Node& parent, int index) {
    for (Node child = parent.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsElement() && index-- == 0) {
            return child;
        }
    }
    return Node();
}

Node FirstHtml(const Document& doc) { return ElementChild(ElementChild(doc.DocumentElement(), 0), 0); }

Node SecondHtml(const Document& doc) { return ElementChild(ElementChild(doc.DocumentElement(), 0), 1); }

TEST(WindowsDomWhitespace, DroppedWhitespaceJoinsTextsWithOneSpace) {
    const Document doc = Loaded(
        "<?xml version='1.0'?>\n<lc dl='str1'>\n<bs vr='str2' sz='1234'>fn1.txt\n</bs>\n"
        "<pr id='str3' vr='1.2.3' pn='wine 20050804'>\nfn2.txt\n</pr>\n<empty></empty>\n"
        "<fo>\n<ba>\nf1\n</ba>\n</fo>\n</lc>\n");
    EXPECT_EQ(doc.AsNode().Text(), "fn1.txt\n \nfn2.txt\n \nf1");
    EXPECT_EQ(doc.DocumentElement().Text(), "fn1.txt\n \nfn2.txt\n \nf1");
}

TEST(WindowsDomWhitespace, MixedContentIsNotTrimmedIntoALeadingCData) {
    const Document doc = Loaded(kDescriptions);
    const Node first = FirstHtml(doc);
    EXPECT_EQ(first.ChildCount(), 6);
    EXPECT_EQ(first.FirstChild().Type(), NodeType::CData);
    EXPECT_EQ(first.Text(), " This is a description.");
    const Node second = SecondHtml(doc);
    EXPECT_EQ(second.ChildCount(), 7);
    EXPECT_EQ(second.Text(), "\n            This is a description with preserved whitespace. \n        ");
}

TEST(WindowsDomWhitespace, APreservingDocumentJoinsTextsAsTheyStand) {
    const Document doc = Loaded(kDescriptions, true);
    const Node first = FirstHtml(doc);
    EXPECT_EQ(first.ChildCount(), 9);
    EXPECT_EQ(first.Text(), "\n             This is a  description. \n        ");
}

TEST(WindowsDomWhitespace, TheSettingAfterTheLoadDecidesOnlyTheTrimming) {
    Document dropped = Loaded(kDescriptions, false);
    dropped.SetPreserveWhiteSpace(true);
    // The text after the last element was whitespace only: it is gone.
    EXPECT_EQ(FirstHtml(dropped).Text(), " This is a description. ");

    Document kept = Loaded(kDescriptions, true);
    kept.SetPreserveWhiteSpace(false);
    EXPECT_EQ(FirstHtml(kept).Text(), " This is a description.");
    EXPECT_EQ(SecondHtml(kept).Text(), "\n            This is a description with preserved whitespace. \n        ");
}

TEST(WindowsDomWhitespace, DroppedIndentationComesBackAsCrLfAndTabs) {
    const Document doc = Loaded("<?xml version=\"1.0\"?>\n<root>\n    <a/>\n    <b>x</b>\n    <c>\n  <d/>\n</c>\n</root>\n");
    EXPECT_EQ(doc.Xml(),
              "<?xml version=\"1.0\"?>\r\n<root>\r\n\t<a/>\r\n\t<b>x</b>\r\n\t<c>\r\n\t\t<d/>\r\n\t</c>\r\n</root>\r\n");
    // Relative to the node written.
    EXPECT_EQ(doc.DocumentElement().LastChild().Xml(), "<c>\r\n\t<d/>\r\n</c>");
}

TEST(WindowsDomWhitespace, ALoadedTabIndentedElementKeepsItsLayout) {
    const Document doc = Loaded("<?xml version=\"1.0\"?>\n<Root>\n\t<Sub val=\"A\" />\n</Root>");
    EXPECT_EQ(doc.DocumentElement().Xml(), "<Root>\r\n\t<Sub val=\"A\"/>\r\n</Root>");
}

TEST(WindowsDomWhitespace, WhitespaceOnlyContentComesBackAsALineEnd) {
    EXPECT_EQ(Loaded("<a>  </a>").Xml(), "<a>\r\n</a>\r\n");
    EXPECT_EQ(Loaded("<r><a>\n</a></r>").Xml(), "<r><a>\r\n\t</a></r>\r\n");
}

TEST(WindowsDomWhitespace, AnEmptyElementWrittenWithAnEndTagKeepsIt) {
    EXPECT_EQ(Loaded("<a></a>").Xml(), "<a></a>\r\n");
    EXPECT_EQ(Loaded("<r><a x=\"/\"></a><b/><c x='>'/></r>").Xml(), "<r><a x=\"/\"></a><b/><c x=\"&gt;\"/></r>\r\n");
    EXPECT_EQ(Loaded("<r><a></a></r>", true).Xml(), "<r><a></a></r>\r\n");
}

TEST(WindowsDomWhitespace, APreservingDocumentWritesWhitespaceAsItStands) {
    EXPECT_EQ(Loaded("<root>\n    <a/>\n</root>", true).Xml(), "<root>\r\n    <a/>\r\n</root>\r\n");
}

// Not pinned by Windows' tests; the choice: what is remembered belongs to the
// nodes that were loaded. A copy is new, so a loaded lesson map (which the
// model keeps as a copy) is written without the file's indentation.
TEST(WindowsDomWhitespace, ACopyDoesNotKeepWhatTheLoadRemembered) {
    const Document doc = Loaded("<root>\n  <a>  </a>\n  <b></b>\n</root>");
    const Node root = doc.DocumentElement();
    EXPECT_EQ(root.CloneNode(true).Xml(), "<root><a/><b/></root>");
    Document other = Document::Create();
    Element holder = other.CreateElement("holder");
    holder.AppendChild(root);
    EXPECT_EQ(holder.Xml(), "<holder><root><a/><b/></root></holder>");
}

// Setting an element's text replaces the content the memory was about.
TEST(WindowsDomWhitespace, SettingTheTextForgetsTheContentItReplaces) {
    Document doc = Loaded("<r><a>  </a><b></b></r>");
    Node a = doc.DocumentElement().FirstChild();
    a.SetText("x");
    Node b = doc.DocumentElement().LastChild();
    b.SetText("");
    EXPECT_EQ(doc.DocumentElement().Xml(), "<r><a>x</a><b/></r>");
}

}  // namespace
}  // namespace quillbank::xml

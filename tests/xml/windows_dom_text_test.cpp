// What the Windows DOM does to the text it is given and writes: line ends,
// comments that would end early, raw whitespace in attribute values and NUL
// characters. Each expected value is Windows'; where Windows' behaviour is not
// pinned (the cut at a NUL), the DOM's own is taken.

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using namespace std::string_view_literals;
using testing::CaughtError;
using testing::Loaded;

TEST(WindowsDomText, CrLfAndALoneCrInNewTextBecomeLfWrittenAsCrLf) {
    Document doc = Document::Create();
    const Node text = doc.CreateTextNode("a\r\nb\rc\nd");
    EXPECT_EQ(text.Value(), "a\nb\nc\nd");
    EXPECT_EQ(text.Xml(), "a\r\nb\r\nc\r\nd");
    Node set = doc.CreateTextNode("");
    set.SetText("x\ry");
    EXPECT_EQ(set.Value(), "x\ny");
}

TEST(WindowsDomText, CrCrLfInSetTextIsTwoLineEnds) {
    Document doc = Document::Create();
    Node text = doc.CreateTextNode("");
    text.SetText("\r\n");
    EXPECT_EQ(text.Value(), "\n");
    EXPECT_EQ(text.Xml(), "\r\n");
    text.SetText("\r\r\n");
    EXPECT_EQ(text.Value(), "\n\n");
    EXPECT_EQ(text.Xml(), "\r\n\r\n");
}

// Loading normalises line ends alike whatever the whitespace rules.
TEST(WindowsDomText, LoadedLineEndsAreNormalisedWhateverTheWhitespaceRules) {
    for (const bool preserve : {false, true}) {
        for (const char* root : {"<root>", "<root xml:space=\"preserve\">"}) {
            const std::string text = std::string("<?xml version=\"1.0\"?>") + root + "foo\n\r\n\r\r\nbar</root>";
            const Document doc = Loaded(text, preserve);
            EXPECT_EQ(doc.AsNode().Text(), "foo\n\n\n\nbar") << text;
            EXPECT_EQ(doc.Xml(), std::string("<?xml version=\"1.0\"?>\r\n") + root + "foo\r\n\r\n\r\n\r\nbar</root>\r\n")
                << text;
        }
    }
}

TEST(WindowsDomText, LoadedLineEndsAreLfWrittenAsCrLf) {
    const Document doc = Loaded("<a>1\r\n2\r3\n4</a>");
    EXPECT_EQ(doc.DocumentElement().Text(), "1\n2\n3\n4");
    EXPECT_EQ(doc.DocumentElement().Xml(), "<a>1\r\n2\r\n3\r\n4</a>");
}

TEST(WindowsDomText, CommentLineEndsAreWrittenAsCrLf) {
    Document doc = Document::Create();
    const Node comment = doc.CreateComment("one\ntwo\r\nthree\rfour");
    EXPECT_EQ(comment.Value(), "one\ntwo\nthree\nfour");
    EXPECT_EQ(comment.Xml(), "<!--one\r\ntwo\r\nthree\r\nfour-->");
    const Document loaded = Loaded("<a><!--x\r\ny--></a>");
    EXPECT_EQ(loaded.DocumentElement().Xml(), "<a><!--x\r\ny--></a>");
}

TEST(WindowsDomText, ACommentHoldingItsOwnEndIsRefused) {
    Document doc = Document::Create();
    const Error created = CaughtError([&] { doc.CreateComment(" a --> b "); });
    EXPECT_EQ(created.Number(), ErrXmlDom);
    EXPECT_EQ(created.Source(), "msxml3.dll");
    EXPECT_EQ(created.Description(), "A comment cannot contain \"-->\".");
    Node comment = doc.CreateComment("fine");
    const Error set = CaughtError([&] { comment.SetText("-->"); });
    EXPECT_EQ(set.Number(), ErrXmlDom);
    EXPECT_EQ(set.Source(), "msxml3.dll");
    EXPECT_EQ(set.Description(), "A comment cannot contain \"-->\".");
    EXPECT_EQ(comment.Value(), "fine");
    // Two hyphens alone or a closing "->" do not end a comment here.
    EXPECT_EQ(doc.CreateComment("a -- b ->").Xml(), "<!--a -- b ->-->");
}

TEST(WindowsDomText, RawTabAndLineEndsInLoadedAttributeValuesAreKept) {
    const Document doc = Loaded("<r a=\"x\ty\" b=\"1\r\n2\" c=\"3\r4\" d=\"5\n6\"/>");
    const Element r = doc.DocumentElement();
    EXPECT_EQ(r.GetAttribute("a"), "x\ty");
    EXPECT_EQ(r.GetAttribute("b"), "1\n2");
    EXPECT_EQ(r.GetAttribute("c"), "3\n4");
    EXPECT_EQ(r.GetAttribute("d"), "5\n6");
}

TEST(WindowsDomText, TextEndsAtANulCharacter) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    e.SetText("ab\0cd"sv);
    EXPECT_EQ(e.Text(), "ab");
    EXPECT_EQ(e.Xml(), "<e>ab</e>");
    e.SetAttribute("v", "12\0" "34"sv);
    EXPECT_EQ(e.GetAttribute("v"), "12");
    EXPECT_EQ(doc.CreateTextNode("\0x"sv).Value(), "");
    EXPECT_EQ(doc.CreateComment("c\0d"sv).Xml(), "<!--c-->");
    EXPECT_EQ(doc.CreateCDataSection("e\0f"sv).Xml(), "<![CDATA[e]]>");
}

}  // namespace
}  // namespace quillbank::xml

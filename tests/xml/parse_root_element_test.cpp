#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::Loaded;

// Texts that load, with the parts a short-lived parse must treat exactly as
// a document load does.
const std::vector<std::string>& LoadableTexts() {
    static const std::vector<std::string> texts = {
        "<a/>",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><stringProp name=\"x\">t</stringProp>",
        "<!-- before --><?pi data?>\n<r a=\"1\"><!-- c --><b/></r>\n<!-- after -->",
        "<r>\n  <a> x </a>\n  <b>  </b>\n</r>",
        "<r> <p xml:space=\"preserve\"> <q> </q> </p> <s> </s></r>",
        "<r>line\r\nbreak\rhere</r>",
        "<r v=\"tab\there&#9;kept\" w=\"&lt;&amp;&gt;&quot;&apos;\">&#x263A;&#65;</r>",
        "<r><![CDATA[a ]] b <c>]]></r>",
        "<!DOCTYPE r [<!ELEMENT r ANY>]><r>declared</r>",
        "<stringProp name=\"\xC3\xA9t\xC3\xA9\">\xE6\x97\xA5\xE6\x9C\xAC</stringProp>",
    };
    return texts;
}

TEST(XmlParseRootElement, GivesTheRootElementALoadGives) {
    for (const std::string& text : LoadableTexts()) {
        // The host document preserves whitespace; the parse must not.
        Document host = Document::Create();
        host.SetPreserveWhiteSpace(true);
        const Element parsed = host.ParseRootElement(text);
        ASSERT_TRUE(parsed) << text;
        EXPECT_EQ(parsed.Xml(), Loaded(text).DocumentElement().Xml()) << text;
        EXPECT_FALSE(parsed.Parent()) << text;
    }
}

TEST(XmlParseRootElement, RefusesWhatALoadRefuses) {
    const std::vector<std::string> texts = {
        "", "   ", "<a>", "<a></b>", "<a/><b/>", "text<a/>", "<a>&unknown;</a>", "<a x=\"1\" x=\"2\"/>",
        "<a>\xFF</a>", "<a>]]></a>", "<!-- a -- b --><a/>", "<a/><?xml version=\"1.0\"?>",
        "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
    };
    for (const std::string& text : texts) {
        ASSERT_FALSE(Document::Create().LoadXML(text)) << text;
        EXPECT_FALSE(Document::Create().ParseRootElement(text)) << text;
    }
}

TEST(XmlParseRootElement, LeavesTheDocumentsContentAsItWas) {
    Document host = Loaded("<lesson><ppc/></lesson>");
    const Element root = host.DocumentElement();
    const Element first = host.ParseRootElement("<intProp name=\"a\" value=\"1\"/>");
    const Element refused = host.ParseRootElement("<broken>");
    const Element second = host.ParseRootElement("<!-- c --><boolProp name=\"b\" value=\"true\"/>");
    EXPECT_FALSE(refused);
    EXPECT_EQ(host.Xml(), "<lesson><ppc/></lesson>\r\n");
    EXPECT_TRUE(host.DocumentElement() == root);
    EXPECT_EQ(root.ChildCount(), 1);
    // Every result stays readable while later parses come and go.
    EXPECT_EQ(first.Xml(), "<intProp name=\"a\" value=\"1\"/>");
    EXPECT_EQ(second.Xml(), "<boolProp name=\"b\" value=\"true\"/>");
    EXPECT_EQ(first.GetAttribute("value").value_or(""), "1");
}

TEST(XmlParseRootElement, TheResultOutlivesEveryOtherHandle) {
    Element kept;
    {
        Document host = Document::Create();
        kept = host.ParseRootElement("<a><b>text</b></a>");
    }
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept.Text(), "text");
    EXPECT_EQ(kept.FirstChild().Name(), "b");
}

TEST(XmlParseRootElement, TheResultBelongsToAPrivateDocument) {
    Document host = Loaded("<lesson/>");
    const Element parsed = host.ParseRootElement("<a><b/></a>");
    ASSERT_TRUE(parsed);
    const Document own = parsed.OwnerDocument();
    ASSERT_TRUE(own);
    EXPECT_FALSE(own == host);
    EXPECT_TRUE(parsed.FirstChild().OwnerDocument() == own);
    // Unattached there too: the private document has no root element.
    EXPECT_FALSE(parsed.Parent());
    EXPECT_FALSE(own.DocumentElement());
    // A later parse has a document of its own again.
    EXPECT_FALSE(host.ParseRootElement("<c/>").OwnerDocument() == own);
}

// Parses one after another, each result let go before the next (as a reader
// of encoded properties does): every parse reads as into a new document,
// whatever was done to the document of the one before.
TEST(XmlParseRootElement, EachParseReadsAsIntoANewDocument) {
    Document host = Document::Create();
    {
        const Element first = host.ParseRootElement("<!-- c --><a/>");
        ASSERT_TRUE(first);
        Document own = first.OwnerDocument();
        EXPECT_EQ(own.Xml(), "<!-- c -->\r\n");
        own.SetPreserveWhiteSpace(true);
        own.SetDocumentElement(own.CreateElement("kept"));
    }
    const std::string text = "<r>\n  <a> x </a>\n</r>";
    const std::string fresh = Loaded(text).DocumentElement().Xml();
    for (int i = 0; i < 3; ++i) {
        const Element parsed = host.ParseRootElement(text);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(parsed.Xml(), fresh);
        EXPECT_EQ(parsed.ChildCount(), 1);
        Document own = parsed.OwnerDocument();
        EXPECT_FALSE(own.PreserveWhiteSpace());
        EXPECT_FALSE(own.DocumentElement());
        EXPECT_EQ(own.Xml(), "");
        own.SetPreserveWhiteSpace(true);
    }
}

TEST(XmlParseRootElement, ANullDocumentRaises) {
    const Error error = testing::CaughtError([] { (void)Document().ParseRootElement("<a/>"); });
    EXPECT_EQ(error.Number(), ErrXmlDom);
    EXPECT_EQ(error.Source(), "msxml3.dll");
}

}  // namespace
}  // namespace quillbank::xml

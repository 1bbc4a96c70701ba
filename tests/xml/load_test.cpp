#include <string>

#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::Loaded;

bool Loads(const std::string& text) { return Document::Create().LoadXML(text); }

// The dropped whitespace is no node, but the document remembers where it was
// and "xml" writes it back as a line end and one tab a level.
TEST(XmlLoad, NewDocumentDropsWhitespaceOnlyText) {
    Document doc = Loaded("<r>\n  <a> x </a>\n  <b>  </b> <i>1</i> <i>2</i>\n</r>");
    EXPECT_EQ(doc.DocumentElement().Xml(),
              "<r>\r\n\t<a> x </a>\r\n\t<b>\r\n\t</b>\r\n\t<i>1</i>\r\n\t<i>2</i>\r\n</r>");
    EXPECT_EQ(doc.DocumentElement().ChildCount(), 4);
    EXPECT_EQ(doc.DocumentElement().ChildAt(1).ChildCount(), 0);
}

TEST(XmlLoad, PreservingDocumentKeepsEveryTextNode) {
    Document doc = Loaded("<r>\n <a> </a> <b/></r>", true);
    const Element r = doc.DocumentElement();
    EXPECT_EQ(r.ChildCount(), 4);
    EXPECT_EQ(r.Xml(), "<r>\r\n <a> </a> <b/></r>");
}

TEST(XmlLoad, XmlSpacePreserveKeepsWhitespaceInsideThatElementOnly) {
    Document doc = Loaded(
        "<r> <p xml:space=\"preserve\"> <q> </q> <d xml:space=\"default\"> <e> </e> </d></p> <s> </s></r>");
    EXPECT_EQ(doc.DocumentElement().Xml(),
              "<r>\r\n\t<p xml:space=\"preserve\"> <q> </q> <d xml:space=\"default\">\r\n\t\t\t<e>\r\n\t\t\t</e>"
              "\r\n\t\t</d></p>\r\n\t<s>\r\n\t</s></r>");
    const Node p = doc.DocumentElement().FirstChild();
    EXPECT_EQ(p.ChildCount(), 4);
    EXPECT_EQ(p.ChildAt(3).ChildCount(), 1);
}

TEST(XmlLoad, TextWithOtherCharactersIsKeptWhole) {
    Document doc = Loaded("<r>  a  <b/>\n\tc\n</r>");
    const Node r = doc.DocumentElement();
    ASSERT_EQ(r.ChildCount(), 3);
    EXPECT_EQ(r.ChildAt(0).Value(), "  a  ");
    EXPECT_EQ(r.ChildAt(2).Value(), "\n\tc\n");
}

TEST(XmlLoad, LineEndsInTextBecomeLineFeeds) {
    Document doc = Loaded("<r>a\r\nb\rc\nd</r>");
    EXPECT_EQ(doc.DocumentElement().FirstChild().Value(), "a\nb\nc\nd");
}

// MSXML keeps raw TAB and line ends in attribute values (CR LF and a lone CR
// becoming LF, as everywhere in loaded text); references keep their
// characters.
TEST(XmlLoad, RawWhitespaceInAttributesIsKeptWithLineEndsAsLf) {
    Document doc = Loaded("<r v=\"a\tb\nc\r\nd\re\" w=\"&#9;&#10;&#13;\"/>");
    EXPECT_EQ(doc.DocumentElement().GetAttribute("v"), "a\tb\nc\nd\ne");
    EXPECT_EQ(doc.DocumentElement().GetAttribute("w"), "\t\n\r");
}

TEST(XmlLoad, CharacterReferencesAndPredefinedEntitiesAreExpanded) {
    Document doc = Loaded("<r a=\"&lt;&gt;&amp;&quot;&apos;&#x41;&#66;\">&#233;&#x1F600;&amp;</r>");
    EXPECT_EQ(doc.DocumentElement().GetAttribute("a"), "<>&\"'AB");
    EXPECT_EQ(doc.DocumentElement().Text(), "\xC3\xA9\xF0\x9F\x98\x80&");
}

TEST(XmlLoad, FailedLoadReturnsFalseAndEmptiesTheDocument) {
    Document doc = Loaded("<r><a/></r>");
    ASSERT_TRUE(doc.DocumentElement());
    EXPECT_FALSE(doc.LoadXML("<r><a></r>"));
    EXPECT_FALSE(doc.DocumentElement());
    EXPECT_FALSE(doc.AsNode().HasChildNodes());
    EXPECT_EQ(doc.AsNode().ChildCount(), 0);
    EXPECT_EQ(doc.Xml(), "");
}

TEST(XmlLoad, HandlesToEarlierContentStayUsableAfterALoad) {
    Document doc = Loaded("<r><a x=\"1\"/></r>");
    Element a = doc.DocumentElement().FirstChild().AsElement();
    ASSERT_TRUE(doc.LoadXML("<s/>"));
    EXPECT_EQ(a.Xml(), "<a x=\"1\"/>");
    EXPECT_EQ(doc.DocumentElement().Name(), "s");
    // Placing it in the new content copies it there.
    Node placed = doc.DocumentElement().AppendChild(a);
    EXPECT_EQ(doc.Xml(), "<s><a x=\"1\"/></s>\r\n");
    EXPECT_EQ(placed.Parent(), doc.DocumentElement());
}

TEST(XmlLoad, InvalidUtf8Fails) {
    EXPECT_FALSE(Loads("<r>\xC3</r>"));
    EXPECT_FALSE(Loads("<r>\xC0\xAF</r>"));          // overlong
    EXPECT_FALSE(Loads("<r>\xED\xA0\x80</r>"));      // surrogate
    EXPECT_FALSE(Loads("<r a=\"\xFF\"/>"));
    EXPECT_FALSE(Loads("<r><!--\xF5\x80\x80\x80--></r>"));
}

TEST(XmlLoad, AControlCharacterOtherThanTabAndLineBreaksFailsWhereverItStands) {
    // Lessons are loaded as given first and stripped of such characters only
    // when that fails, so no place in a text may let one through.
    const char* const places[] = {
        "@<r/>",         "<r/>@",          "<r>@</r>",           "<r a=\"@\"/>",      "<r a='@'/>",
        "<r@/>",         "<r a@=\"v\"/>",  "<r></r@>",           "<r><!--@--></r>",   "<r><![CDATA[@]]></r>",
        "<r><?p @?></r>", "<?xml@?><r/>",   "<!DOCTYPE r@><r/>", "<!DOCTYPE r [@]><r/>", "<r>&@;</r>",
        "<r>&#@;</r>",   "<r a=\"&@\"/>",
    };
    for (int code = 0; code < 26; ++code) {
        if (code == 9 || code == 10 || code == 13) {
            continue;
        }
        for (const std::string place : places) {
            std::string text = place;
            text[text.find('@')] = static_cast<char>(code);
            EXPECT_FALSE(Loads(text)) << "character " << code << " in " << place;
        }
    }
}

TEST(XmlLoad, NulAndControlCharactersFail) {
    EXPECT_FALSE(Loads(std::string("<r>a\0b</r>", 10)));
    EXPECT_FALSE(Loads("<r>\x01</r>"));
    EXPECT_FALSE(Loads("<r a=\"\x1F\"/>"));
    EXPECT_FALSE(Loads("<r>\xEF\xBF\xBE</r>"));  // U+FFFE
    EXPECT_FALSE(Loads("<r>\xEF\xBF\xBF</r>"));  // U+FFFF
    EXPECT_FALSE(Loads("<r>&#0;</r>"));
    EXPECT_FALSE(Loads("<r>&#x1;</r>"));
    EXPECT_FALSE(Loads("<r>&#xFFFE;</r>"));
    EXPECT_FALSE(Loads("<r>&#x110000;</r>"));
    EXPECT_FALSE(Loads("<r>&#xD800;</r>"));
    EXPECT_TRUE(Loads("<r>\t\r\n&#9;&#xA;&#13;</r>"));
}

TEST(XmlLoad, UndefinedEntityFails) {
    EXPECT_FALSE(Loads("<r>&nbsp;</r>"));
    EXPECT_FALSE(Loads("<r a=\"&copy;\"/>"));
    EXPECT_FALSE(Loads("<r>&amp</r>"));
    EXPECT_FALSE(Loads("<r>a & b</r>"));
    EXPECT_FALSE(Loads("<r>&#;</r>"));
    EXPECT_FALSE(Loads("<r>&#x;</r>"));
}

TEST(XmlLoad, MalformedTextFails) {
    EXPECT_FALSE(Loads(""));
    EXPECT_FALSE(Loads("   "));
    EXPECT_FALSE(Loads("not xml"));
    EXPECT_FALSE(Loads("<a/><b/>"));
    EXPECT_FALSE(Loads("text<a/>"));
    EXPECT_FALSE(Loads("<a/>text"));
    EXPECT_FALSE(Loads("<a b=\"<\"/>"));
    EXPECT_FALSE(Loads("<a>]]></a>"));
    EXPECT_FALSE(Loads("<a><!-- x -- y --></a>"));
    EXPECT_FALSE(Loads("<a b=\"1\" b=\"2\"/>"));
    EXPECT_FALSE(Loads(" <?xml version=\"1.0\"?><a/>"));
    EXPECT_FALSE(Loads("<a/><?xml version=\"1.0\"?>"));
    EXPECT_FALSE(Loads("<a>x</b>"));
    EXPECT_FALSE(Loads("<a>"));
    EXPECT_FALSE(Loads("<a b=1/>"));
}

TEST(XmlLoad, DeclarationCommentsAndProcessingInstructionsAroundTheRootLoad) {
    Document doc = Loaded("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!--c--><?pi x?>\n<r/>\n<!--d-->");
    const Node top = doc.AsNode();
    ASSERT_EQ(top.ChildCount(), 5);
    EXPECT_EQ(top.ChildAt(0).Type(), NodeType::ProcessingInstruction);
    EXPECT_EQ(top.ChildAt(0).Name(), "xml");
    EXPECT_EQ(top.ChildAt(1).Type(), NodeType::Comment);
    EXPECT_EQ(top.ChildAt(2).Name(), "pi");
    EXPECT_EQ(top.ChildAt(3), doc.DocumentElement());
    EXPECT_EQ(top.ChildAt(4).Value(), "d");
}

TEST(XmlLoad, BillionLaughsDoctypeIsSkippedWithoutExpansion) {
    const std::string doctype =
        "<!DOCTYPE lolz [\n"
        " <!ENTITY lol \"lol\">\n"
        " <!ENTITY lol1 \"&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;\">\n"
        " <!ENTITY lol2 \"&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;\">\n"
        " <!ENTITY lol3 \"&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;\">\n"
        " <!ENTITY lol9 \"&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;\">\n"
        " <!-- a comment with ] and > in it -->\n"
        " <?pi with ] inside?>\n"
        "]>\n";
    Document uses = Document::Create();
    EXPECT_FALSE(uses.LoadXML(doctype + "<lolz>&lol9;</lolz>"));
    EXPECT_FALSE(uses.DocumentElement());
    Document plain = Loaded(doctype + "<lolz>no entities</lolz>");
    EXPECT_EQ(plain.DocumentElement().Text(), "no entities");
    EXPECT_EQ(plain.Xml(), "<lolz>no entities</lolz>\r\n");
}

TEST(XmlLoad, ExternalEntityIsNeverRead) {
    const std::string doctype = "<!DOCTYPE r [<!ENTITY xxe SYSTEM \"file:///etc/passwd\">]>";
    EXPECT_FALSE(Loads(doctype + "<r>&xxe;</r>"));
    EXPECT_FALSE(Loads(doctype + "<r a=\"&xxe;\"/>"));
    Document doc = Loaded(doctype + "<r>safe</r>");
    EXPECT_EQ(doc.DocumentElement().Text(), "safe");
    Document external = Loaded("<!DOCTYPE r SYSTEM \"file:///etc/passwd\"><r/>");
    EXPECT_EQ(external.Xml(), "<r/>\r\n");
}

TEST(XmlLoad, ParameterEntitiesInTheSubsetAreNotInterpreted) {
    Document doc = Loaded(
        "<!DOCTYPE r [<!ENTITY % p SYSTEM \"http://example.invalid/x.dtd\"> %p; <!ATTLIST r a CDATA \"d\">]><r/>");
    EXPECT_FALSE(doc.DocumentElement().HasAttribute("a"));
}

TEST(XmlLoad, CDataIsKeptEvenWhenWhitespaceOnly) {
    Document doc = Loaded("<r><![CDATA[  ]]></r>");
    ASSERT_EQ(doc.DocumentElement().ChildCount(), 1);
    EXPECT_EQ(doc.DocumentElement().FirstChild().Type(), NodeType::CData);
}

TEST(XmlLoad, ManyAttributesWithADuplicateFail) {
    std::string text = "<r";
    for (int i = 0; i < 20; ++i) {
        text += " a" + std::to_string(i) + "=\"v\"";
    }
    EXPECT_TRUE(Loads(text + "/>"));
    EXPECT_FALSE(Loads(text + " a7=\"w\"/>"));
}

}  // namespace
}  // namespace quillbank::xml

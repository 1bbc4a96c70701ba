#include <string>

#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

namespace quillbank::xml {
namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"US-ASCII\" standalone=\"yes\"?>\r\n";

TEST(XmlFormat, TextThatIsNotXmlGivesNothing) {
    EXPECT_EQ(FormatXml("not xml"), std::nullopt);
    EXPECT_EQ(FormatXml(""), std::nullopt);
    EXPECT_EQ(FormatXml("<a>"), std::nullopt);
    EXPECT_EQ(FormatXml("<a>&undefined;</a>"), std::nullopt);
}

TEST(XmlFormat, OneElementGivesTheDeclarationAndTheElement) {
    EXPECT_EQ(FormatXml("<a/>"), std::string(kDeclaration) + "<a/>");
    EXPECT_EQ(FormatXml("<a></a>"), std::string(kDeclaration) + "<a/>");
}

TEST(XmlFormat, OneElementWithNonAsciiUsesCharacterReferences) {
    EXPECT_EQ(FormatXml("<a t=\"caf\xC3\xA9 \xF0\x9F\x98\x80\">\xE2\x82\xAC &amp; &lt;</a>"),
              std::string(kDeclaration) + "<a t=\"caf&#233; &#128512;\">&#8364; &amp; &lt;</a>");
}

TEST(XmlFormat, TreeIsIndentedWithTabsAndCrLf) {
    const auto formatted = FormatXml(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root a=\"1\">\n  <child>text</child>\n  <empty/>\n"
        "  <!--note-->\n  <group><leaf x=\"&quot;&gt;\"/></group>\n</root>");
    ASSERT_TRUE(formatted);
    EXPECT_EQ(*formatted, std::string(kDeclaration) +
                              "<root a=\"1\">\r\n"
                              "\t<child>text</child>\r\n"
                              "\t<empty/>\r\n"
                              "\t<!--note-->\r\n"
                              "\t<group>\r\n"
                              "\t\t<leaf x=\"&quot;&gt;\"/>\r\n"
                              "\t</group>\r\n"
                              "</root>");
}

TEST(XmlFormat, CommentsAroundTheRootEachEndTheirLine) {
    EXPECT_EQ(FormatXml("<!--a--><r><b/></r><!--z-->"),
              std::string(kDeclaration) + "<!--a-->\r\n<r>\r\n\t<b/>\r\n</r>\r\n<!--z-->\r\n");
}

TEST(XmlFormat, CDataPassesThroughWithNonAsciiAsReferences) {
    const auto formatted = FormatXml("<r><![CDATA[a<&\xC3\xA9]]></r>");
    ASSERT_TRUE(formatted);
    EXPECT_EQ(*formatted, std::string(kDeclaration) + "<r><![CDATA[a<&]]>&#233;<![CDATA[]]></r>");
}

TEST(XmlFormat, OutputLoadsBackToTheSameValues) {
    const std::string source =
        "<r k=\"\xE6\x97\xA5&#9;&#10;\"><p>\xC3\xA9t\xC3\xA9 &amp; \xF0\x9F\x98\x80</p><q a=\"&lt;&amp;\"/></r>";
    const auto formatted = FormatXml(source);
    ASSERT_TRUE(formatted);
    for (unsigned char c : *formatted) {
        ASSERT_LT(c, 0x80);
    }
    Document back = Document::Create();
    ASSERT_TRUE(back.LoadXML(*formatted));
    const Element r = back.DocumentElement();
    EXPECT_EQ(r.GetAttribute("k"), "\xE6\x97\xA5\t\n");
    EXPECT_EQ(r.FirstChild().Text(), "\xC3\xA9t\xC3\xA9 & \xF0\x9F\x98\x80");
    EXPECT_EQ(r.LastChild().AsElement().GetAttribute("a"), "<&");
}

TEST(XmlFormat, MixedContentKeepsTextInPlace) {
    EXPECT_EQ(FormatXml("<r>one<b/>two</r>"), std::string(kDeclaration) + "<r>one\r\n\t<b/>two\r\n</r>");
}

}  // namespace
}  // namespace quillbank::xml

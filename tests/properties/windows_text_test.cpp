// Reading text in the forms that files written on Windows with English
// regional settings hold: US dates, "True" and "-1" booleans, base64 broken
// over lines, element names in capitals, indentation between elements.

#include <gtest/gtest.h>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "support/base64_coders.hpp"

namespace quillbank {
namespace {

std::shared_ptr<PersistedPropertyCollection> ReadBag(const std::string& text) {
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(text);
    return bag;
}

TEST(WindowsText, UsDatesAreRead) {
    auto bag = ReadBag(R"(<ppc name="p"><dateProp name="a" value="3/15/2023 12:00:00 PM"/>)"
                       R"(<dateProp name="b" value="3/15/2023"/><dateProp name="c" value="6:00:00 AM"/>)"
                       R"(<dateProp name="d" value="12/30/1899 12:00:00 AM"/></ppc>)");
    EXPECT_EQ(bag->GetDate("a", -1), 45000.5);
    EXPECT_EQ(bag->GetDate("b", -1), 45000.0);
    EXPECT_EQ(bag->GetDate("c", -1), 0.25);
    EXPECT_EQ(bag->GetDate("d", -1), 0.0);
}

TEST(WindowsText, BooleansInEveryPlatformFormAreRead) {
    auto bag = ReadBag(R"(<ppc><boolProp name="a" value="True"/><boolProp name="b" value="-1"/>)"
                       R"(<boolProp name="c" value="False"/><boolProp name="d" value="0"/>)"
                       R"(<boolProp name="e" value="TRUE"/></ppc>)");
    EXPECT_TRUE(bag->GetBoolean("a", false));
    EXPECT_TRUE(bag->GetBoolean("b", false));
    EXPECT_FALSE(bag->GetBoolean("c", true));
    EXPECT_FALSE(bag->GetBoolean("d", true));
    EXPECT_TRUE(bag->GetBoolean("e", false));
}

TEST(WindowsText, FontWithTypedBooleansAndNumbersIsRead) {
    auto bag = ReadBag(R"(<ppc><fontProp name="f" familyName="Times New Roman" emSize="10" bold="-1" italic="True")"
                       R"( underline="0"/><floatProp name="g" value="1.5"/><intProp name="h" value=" 42 "/></ppc>)");
    EXPECT_EQ(bag->GetFont("f", FontData{}), (FontData{"Times New Roman", 10, true, true, false}));
    EXPECT_EQ(bag->GetDouble("g", 0), 1.5);
    EXPECT_EQ(bag->GetLong("h", 0), 42);
}

TEST(WindowsText, Base64BrokenOverLinesIsRead) {
    const std::string plain = R"(<stringProp name="story">)" + std::string(120, 'z') + "</stringProp>";
    std::string encoded = support::EncodeBase64(plain);
    // Break the text with CR LF every 76 characters and indent it, as other writers do.
    std::string broken;
    for (char c : encoded) {
        if (c != '\n') {
            broken += c;
        }
    }
    std::string wrapped = "\r\n\t";
    for (std::size_t i = 0; i < broken.size(); i += 76) {
        wrapped += broken.substr(i, 76) + "\r\n\t";
    }
    auto bag = ReadBag("<ppc><encProp>" + wrapped + "</encProp></ppc>");
    EXPECT_EQ(bag->GetString("story", ""), std::string(120, 'z'));
    EXPECT_EQ(bag->GetEncodingType("story"), etBase64Encoded);
}

TEST(WindowsText, ElementNamesInCapitalsAreRead) {
    auto bag = ReadBag(R"(<ppc><BOOLPROP name="a" value="True"/><STRINGPROP name="s">text</STRINGPROP>)"
                       R"(<ColorProp name="c" value="#ff8000"/><ENCPROP>)" +
                       support::EncodeBase64(R"(<INTPROP name="n" value="5"/>)") + "</ENCPROP></ppc>");
    EXPECT_TRUE(bag->GetBoolean("a", false));
    EXPECT_EQ(bag->GetString("s", ""), "text");
    EXPECT_EQ(bag->GetColor("c", 0), 0x0080FFu);
    EXPECT_EQ(bag->GetLong("n", 0), 5);
    EXPECT_EQ(bag->GetEncodingType("n"), etBase64Encoded);
}

TEST(WindowsText, IndentedTextWithCrLfIsRead) {
    auto bag = ReadBag("<ppc name=\"p\">\r\n\t<intProp name=\"n\" value=\"1\"/>\r\n\t<stringProp name=\"s\">"
                       "one\r\ntwo</stringProp>\r\n\t<ppcProp name=\"inner\">\r\n\t\t<ppc name=\"i\">\r\n\t\t\t"
                       "<intProp name=\"m\" value=\"2\"/>\r\n\t\t</ppc>\r\n\t</ppcProp>\r\n\t<cecProp name=\"c\">"
                       "\r\n\t\t<cec name=\"l\">\r\n\t\t\t<ce name=\"x\" type=\"t\">\r\n\t\t\t\t"
                       "<boolProp name=\"b\" value=\"True\"/>\r\n\t\t\t</ce>\r\n\t\t</cec>\r\n\t</cecProp>\r\n</ppc>");
    EXPECT_EQ(bag->GetPropertyNameArray(), (std::vector<std::string>{"n", "s", "inner", "c"}));
    EXPECT_EQ(bag->GetString("s", ""), "one\r\ntwo");
    EXPECT_EQ(bag->GetPPC("inner", nullptr)->GetLong("m", 0), 2);
    auto list = bag->GetCEC("c", nullptr);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->Count(), 1);
    EXPECT_TRUE(list->Item(0)->GetBoolean("b", false));
}

TEST(WindowsText, XmlDeclarationAndDocumentTypeAreAccepted) {
    auto bag = ReadBag("<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n<!DOCTYPE ppc>\r\n"
                       "<ppc name=\"d\"><intProp name=\"n\" value=\"3\"/></ppc>");
    EXPECT_EQ(bag->Name(), "d");
    EXPECT_EQ(bag->GetLong("n", 0), 3);
}

}  // namespace
}  // namespace quillbank

// The element forms of one property: the twelve plain elements, the
// "encProp" wrapping, and the reader's tolerance.

#include "properties/persisted_property.hpp"

#include <gtest/gtest.h>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "properties/test_support.hpp"
#include "support/base64_coders.hpp"

namespace quillbank {
namespace {

using testing::LoadRoot;

std::string Written(PersistedProperty& p) {
    xml::Element element = p.ToXMLElement(xml::Document::Create());
    return element ? element.Xml() : std::string("(null)");
}

std::string WrittenClear(PersistedProperty& p) {
    xml::Element element = p.ToClearXMLElement(xml::Document::Create());
    return element ? element.Xml() : std::string("(null)");
}

std::shared_ptr<PersistedProperty> Read(std::string_view text) {
    auto p = PersistedProperty::Create();
    p->FromXMLElement(LoadRoot(text));
    return p;
}

// ---- Writing each type ----------------------------------------------------

TEST(PropertyElement, BooleanIsWrittenAsBoolPropAndReadsBack) {
    auto p = PersistedProperty::Create();
    p->SetBoolean("a", true, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<boolProp name="a" value="true"/>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptBoolean);
    EXPECT_TRUE(back->BooleanValue());
    EXPECT_EQ(back->EncodingType(), etNotEncoded);
    EXPECT_EQ(back->Name(), "a");
    p->SetBoolean("a", false, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<boolProp name="a" value="false"/>)");
}

TEST(PropertyElement, LongIsWrittenInDecimal) {
    auto p = PersistedProperty::Create();
    p->SetLong("n", -2147483647 - 1, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<intProp name="n" value="-2147483648"/>)");
    EXPECT_EQ(Read(Written(*p))->LongValue(), -2147483647 - 1);
}

TEST(PropertyElement, DoubleIsWrittenWithAPointInItsShortestForm) {
    auto p = PersistedProperty::Create();
    p->SetDouble("d", 2.5, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<floatProp name="d" value="2.5"/>)");
    p->SetDouble("d", 0.1, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<floatProp name="d" value="0.1"/>)");
    EXPECT_EQ(Read(Written(*p))->DoubleValue(), 0.1);
}

TEST(PropertyElement, DateIsWrittenAsYearMonthDayAndTime) {
    auto p = PersistedProperty::Create();
    p->SetDate("due", 45000.5, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<dateProp name="due" value="2023-03-15 12:00:00"/>)");
    EXPECT_EQ(Read(Written(*p))->DateValue(), 45000.5);
    p->SetDate("due", 45000.0, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<dateProp name="due" value="2023-03-15"/>)");
}

TEST(PropertyElement, ColorIsWrittenAsHtmlColourRedFirst) {
    auto p = PersistedProperty::Create();
    p->SetColor("tint", 0x0A0B0Cu, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<colorProp name="tint" value="#0C0B0A"/>)");
    EXPECT_EQ(Read(Written(*p))->ColorValue(), 0x0A0B0Cu);
}

TEST(PropertyElement, FontBooleansAreWrittenAsTypedBooleans) {
    auto p = PersistedProperty::Create();
    p->SetFontData("font", FontData{"Arial", 10.5, true, false, true}, etNotEncoded);
    EXPECT_EQ(Written(*p),
              R"(<fontProp name="font" familyName="Arial" emSize="10.5" bold="-1" italic="0" underline="-1"/>)");
    EXPECT_EQ(Read(Written(*p))->FontValue(), (FontData{"Arial", 10.5, true, false, true}));
}

TEST(PropertyElement, RectangleIsWrittenAsFourIntegers) {
    auto p = PersistedProperty::Create();
    p->SetRectangleData("frame", Rectangle{1, 2, 300, -4}, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<rectProp name="frame" left="1" top="2" width="300" height="-4"/>)");
    EXPECT_EQ(Read(Written(*p))->RectangleValue(), (Rectangle{1, 2, 300, -4}));
}

TEST(PropertyElement, AssetWritesDescriptionThenSourceAsChildren) {
    auto p = PersistedProperty::Create();
    p->SetAssetData("pic", AssetData{"a&b.png", "One\r\nTwo", "Me"}, etNotEncoded);
    EXPECT_EQ(Written(*p),
              "<assetProp name=\"pic\" filename=\"a&amp;b.png\"><description>One\r\nTwo</description>"
              "<source>Me</source></assetProp>");
    EXPECT_EQ(Read(Written(*p))->AssetValue(), (AssetData{"a&b.png", "One\r\nTwo", "Me"}));
}

TEST(PropertyElement, AssetWithBlankDescriptionWritesNoDescriptionChild) {
    auto p = PersistedProperty::Create();
    p->SetAssetData("pic", AssetData{"f.png", "   ", " \t\r\n"}, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<assetProp name="pic" filename="f.png"/>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptAsset);
    EXPECT_EQ(back->AssetValue(), (AssetData{"f.png", "", ""}));
}

TEST(PropertyElement, LocationWithoutEndPointAndMapWritesOnlyNameAndFrom) {
    auto p = PersistedProperty::Create();
    p->SetLocationData("link", LocationData{"", "", ""}, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<locationProp name="link" from=""/>)");
    p->SetLocationData("link", LocationData{"S1", "", ""}, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<locationProp name="link" from="S1"/>)");
    p->SetLocationData("link", LocationData{"S1", "S2", "main"}, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<locationProp name="link" from="S1" to="S2" map="main"/>)");
    EXPECT_EQ(Read(Written(*p))->LocationValue(), (LocationData{"S1", "S2", "main"}));
}

TEST(PropertyElement, LocationReaderDoesNotFillTheStart) {
    auto back = Read(R"(<locationProp name="l" to="S2"/>)");
    EXPECT_EQ(back->PropertyType(), ptLocation);
    EXPECT_EQ(back->LocationValue(), (LocationData{"", "S2", ""}));
}

TEST(PropertyElement, NestedBagIsWrittenInsidePpcProp) {
    auto inner = PersistedPropertyCollection::Create();
    inner->SetName("inner");
    inner->SetLong("n", 7);
    auto p = PersistedProperty::Create();
    p->SetPPCData("nested", inner, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<ppcProp name="nested"><ppc name="inner"><intProp name="n" value="7"/></ppc></ppcProp>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptPPC);
    ASSERT_NE(back->PPCValue(), nullptr);
    EXPECT_EQ(back->PPCValue()->Name(), "inner");
    EXPECT_EQ(back->PPCValue()->GetLong("n", 0), 7);
}

TEST(PropertyElement, EmptyOrNullNestedBagWritesEmptyPpcPropAndReadsAnEmptyBag) {
    auto p = PersistedProperty::Create();
    p->SetPPCData("nested", nullptr, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<ppcProp name="nested"/>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptPPC);
    ASSERT_NE(back->PPCValue(), nullptr);
    EXPECT_EQ(back->PPCValue()->Count(), 0);

    auto named = PersistedPropertyCollection::Create();
    named->SetName("lost");
    p->SetPPCData("nested", named, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<ppcProp name="nested"/>)");
    back = Read(Written(*p));
    ASSERT_NE(back->PPCValue(), nullptr);
    EXPECT_EQ(back->PPCValue()->Count(), 0);
    EXPECT_EQ(back->PPCValue()->Name(), "properties");
}

TEST(PropertyElement, NestedListIsWrittenInsideCecProp) {
    auto child = ChildElement::Create();
    child->SetName("first");
    child->SetElementType("button");
    child->SetBoolean("on", true);
    auto list = ChildElementCollection::Create();
    list->Append(child);
    auto p = PersistedProperty::Create();
    p->SetCECData("items", list, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<cecProp name="items"><cec name="children"><ce name="first" type="button">)"
                           R"(<boolProp name="on" value="true"/></ce></cec></cecProp>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptCEC);
    ASSERT_NE(back->CECValue(), nullptr);
    ASSERT_EQ(back->CECValue()->Count(), 1);
    EXPECT_EQ(back->CECValue()->Item(0)->ElementType(), "button");
    EXPECT_TRUE(back->CECValue()->Item(0)->GetBoolean("on", false));
}

TEST(PropertyElement, EmptyOrNullNestedListWritesEmptyCecPropAndReadsAnEmptyList) {
    auto p = PersistedProperty::Create();
    p->SetCECData("items", nullptr, etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<cecProp name="items"/>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptCEC);
    ASSERT_NE(back->CECValue(), nullptr);
    EXPECT_EQ(back->CECValue()->Count(), 0);
    p->SetCECData("items", ChildElementCollection::Create(), etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<cecProp name="items"/>)");
}

// ---- Strings and line breaks -----------------------------------------------

TEST(PropertyElement, StringWithCrLfIsStoredWithBareLfAndReadsBackWithCrLf) {
    auto p = PersistedProperty::Create();
    p->SetString("s", "one\r\ntwo", etNotEncoded);
    xml::Element element = p->ToXMLElement(xml::Document::Create());
    ASSERT_TRUE(element);
    EXPECT_EQ(FirstTextValue(element), "one\ntwo");
    // The serialisation writes the stored LF as CR LF, like the Windows DOM.
    EXPECT_EQ(element.Xml(), "<stringProp name=\"s\">one\r\ntwo</stringProp>");
    auto back = Read(element.Xml());
    EXPECT_EQ(back->PropertyType(), ptString);
    EXPECT_EQ(back->StringValue(), "one\r\ntwo");
}

TEST(PropertyElement, StringTextIsEscapedAndReadBackExactly) {
    auto p = PersistedProperty::Create();
    p->SetString("s", "Halves & <quarters> \"quoted\"", etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<stringProp name="s">Halves &amp; &lt;quarters&gt; "quoted"</stringProp>)");
    EXPECT_EQ(Read(Written(*p))->StringValue(), "Halves & <quarters> \"quoted\"");
}

TEST(PropertyElement, EmptyStringWritesAnElementWithoutChildren) {
    auto p = PersistedProperty::Create();
    p->SetString("s", "", etNotEncoded);
    EXPECT_EQ(Written(*p), R"(<stringProp name="s"/>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptString);
    EXPECT_EQ(back->StringValue(), "");
}

TEST(PropertyElement, StoredCrLfIsNotDoubledWhenRead) {
    xml::Document document = xml::Document::Create();
    xml::Element element = document.CreateElement("stringProp");
    element.SetAttribute("name", "s");
    element.AppendChild(document.CreateTextNode("a\r\nb\nc"));
    auto p = PersistedProperty::Create();
    p->FromXMLElement(element);
    EXPECT_EQ(p->StringValue(), "a\r\nb\r\nc");
}

TEST(PropertyElement, StringReadsOnlyTheFirstTextNode) {
    auto p = Read(R"(<stringProp name="s"><![CDATA[skipped]]>before<!--c-->after</stringProp>)");
    EXPECT_EQ(p->PropertyType(), ptString);
    EXPECT_EQ(p->StringValue(), "before");
    p = Read(R"(<stringProp name="s"><b>bold</b></stringProp>)");
    EXPECT_EQ(p->PropertyType(), ptString);
    EXPECT_EQ(p->StringValue(), "");
}

TEST(FirstTextValue, NullOrNonElementGivesEmptyText) {
    EXPECT_EQ(FirstTextValue(xml::Node()), "");
    xml::Document document = xml::Document::Create();
    EXPECT_EQ(FirstTextValue(document.CreateTextNode("text")), "");
    xml::Element element = document.CreateElement("e");
    element.AppendChild(document.CreateComment("c"));
    element.AppendChild(document.CreateTextNode("t"));
    EXPECT_EQ(FirstTextValue(element), "t");
}

TEST(PropertyElement, AssetTextsReadCrLfWithoutDoubling) {
    auto p = Read("<assetProp name=\"a\" filename=\"f\"><description>x\ny</description>"
                  "<source>s1&#13;&#10;s2</source></assetProp>");
    EXPECT_EQ(p->AssetValue(), (AssetData{"f", "x\r\ny", "s1\r\ns2"}));
}

TEST(PropertyElement, AssetChildAbsentKeepsThePreviousText) {
    auto p = PersistedProperty::Create();
    p->SetAssetData("a", AssetData{"old.png", "old description", "old source"}, etNotEncoded);
    p->FromXMLElement(LoadRoot(R"(<assetProp name="a" filename="new.png"><source>new source</source></assetProp>)"));
    EXPECT_EQ(p->AssetValue(), (AssetData{"new.png", "old description", "new source"}));
    p->FromXMLElement(LoadRoot(R"(<assetProp name="a"/>)"));
    EXPECT_EQ(p->AssetValue(), (AssetData{"", "old description", "new source"}));
}

// ---- The encoded form --------------------------------------------------------

TEST(PropertyElement, EncodedBooleanIsTheBase64OfThePlainElementWithATrailingZero) {
    auto p = PersistedProperty::Create();
    p->SetBoolean("e", true, etBase64Encoded);
    EXPECT_EQ(Written(*p), "<encProp>PGJvb2xQcm9wIG5hbWU9ImUiIHZhbHVlPSJ0cnVlIi8+AA==</encProp>");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptBoolean);
    EXPECT_EQ(back->EncodingType(), etBase64Encoded);
    EXPECT_EQ(back->Name(), "e");
    EXPECT_TRUE(back->BooleanValue());
}

TEST(PropertyElement, EncodedWesternStringHasNoEnctypeAndReadsBack) {
    auto p = PersistedProperty::Create();
    p->SetString("price", "5 \xE2\x82\xAC", etBase64Encoded);
    // The euro sign is a single byte of the ANSI code page.
    EXPECT_EQ(Written(*p), "<encProp>PHN0cmluZ1Byb3AgbmFtZT0icHJpY2UiPjUggDwvc3RyaW5nUHJvcD4A</encProp>");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptString);
    EXPECT_EQ(back->EncodingType(), etBase64Encoded);
    EXPECT_EQ(back->StringValue(), "5 \xE2\x82\xAC");
}

TEST(PropertyElement, EncodedChineseStringHasUtf8EnctypeAndReadsBack) {
    auto p = PersistedProperty::Create();
    p->SetString("wide", "\xE4\xB8\xAD\xE6\x96\x87", etBase64Encoded);
    EXPECT_EQ(Written(*p),
              R"(<encProp enctype="utf8">PHN0cmluZ1Byb3AgbmFtZT0id2lkZSI+5Lit5paHPC9zdHJpbmdQcm9wPg==</encProp>)");
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptString);
    EXPECT_EQ(back->EncodingType(), etBase64Encoded);
    EXPECT_EQ(back->StringValue(), "\xE4\xB8\xAD\xE6\x96\x87");
}

TEST(PropertyElement, EncodedStringIsJudgedOnTheWholeElementIncludingItsName) {
    auto p = PersistedProperty::Create();
    p->SetString("\xE5\x90\x8D", "abc", etBase64Encoded);
    xml::Element element = p->ToXMLElement(xml::Document::Create());
    ASSERT_TRUE(element);
    EXPECT_EQ(element.GetAttribute("enctype"), std::optional<std::string>("utf8"));
    auto back = Read(element.Xml());
    EXPECT_EQ(back->Name(), "\xE5\x90\x8D");
    EXPECT_EQ(back->StringValue(), "abc");
}

TEST(PropertyElement, EncodedFontLosesAChineseCharacterOfItsFaceName) {
    auto p = PersistedProperty::Create();
    p->SetFontData("f", FontData{"Song\xE4\xB8\xAD", 12, false, true, false}, etBase64Encoded);
    xml::Element element = p->ToXMLElement(xml::Document::Create());
    ASSERT_TRUE(element);
    EXPECT_FALSE(element.HasAttribute("enctype"));
    auto back = Read(element.Xml());
    EXPECT_EQ(back->PropertyType(), ptFont);
    EXPECT_EQ(back->FontValue(), (FontData{"Song?", 12, false, true, false}));
}

TEST(PropertyElement, EncodedNestedBagGoesThroughTheAnsiCodePage) {
    auto inner = PersistedPropertyCollection::Create();
    inner->SetString("s", "\xE4\xB8\xAD");
    auto p = PersistedProperty::Create();
    p->SetPPCData("nested", inner, etBase64Encoded);
    auto back = Read(Written(*p));
    EXPECT_EQ(back->PropertyType(), ptPPC);
    ASSERT_NE(back->PPCValue(), nullptr);
    EXPECT_EQ(back->PPCValue()->GetString("s", ""), "?");
}

TEST(PropertyElement, LongEncodedTextIsBrokenIntoLinesOf72) {
    auto p = PersistedProperty::Create();
    p->SetString("s", std::string(200, 'x'), etBase64Encoded);
    xml::Element element = p->ToXMLElement(xml::Document::Create());
    ASSERT_TRUE(element);
    const std::string text = element.Text();
    ASSERT_GT(text.size(), 73u);
    EXPECT_EQ(text[72], '\n');
    EXPECT_EQ(Read(element.Xml())->StringValue(), std::string(200, 'x'));
}

TEST(PropertyElement, ClearFormWritesEncodedPropertyPlainAndKeepsItsEncoding) {
    auto p = PersistedProperty::Create();
    p->SetLong("n", 3, etBase64Encoded);
    EXPECT_EQ(WrittenClear(*p), R"(<intProp name="n" value="3"/>)");
    EXPECT_EQ(p->EncodingType(), etBase64Encoded);
    EXPECT_EQ(Written(*p).substr(0, 9), "<encProp>");
}

TEST(PropertyElement, ClearFormKeepsEncodedPropertiesOfANestedBagEncoded) {
    auto inner = PersistedPropertyCollection::Create();
    inner->SetBoolean("e", true, etBase64Encoded);
    auto p = PersistedProperty::Create();
    p->SetPPCData("nested", inner, etBase64Encoded);
    EXPECT_EQ(WrittenClear(*p), R"(<ppcProp name="nested"><ppc name="properties">)"
                                R"(<encProp>PGJvb2xQcm9wIG5hbWU9ImUiIHZhbHVlPSJ0cnVlIi8+AA==</encProp></ppc></ppcProp>)");
}

// ---- Writer results without an element ---------------------------------------

TEST(PropertyElement, UntypedPropertyWritesNoElement) {
    auto p = PersistedProperty::Create();
    EXPECT_TRUE(p->ToXMLElement(xml::Document::Create()).IsNull());
    EXPECT_TRUE(p->ToClearXMLElement(xml::Document::Create()).IsNull());
}

TEST(PropertyElement, UnknownEncodingWritesNoElementButTheClearFormDoes) {
    auto p = PersistedProperty::Create();
    p->SetLong("n", 1, static_cast<EncodingTypes>(2));
    EXPECT_TRUE(p->ToXMLElement(xml::Document::Create()).IsNull());
    EXPECT_EQ(WrittenClear(*p), R"(<intProp name="n" value="1"/>)");
    EXPECT_EQ(p->EncodingType(), 2);
}

TEST(PropertyElement, NullDocumentIsReplacedByANewOne) {
    auto p = PersistedProperty::Create();
    p->SetLong("n", 4, etNotEncoded);
    xml::Element element = p->ToXMLElement(xml::Document());
    ASSERT_TRUE(element);
    EXPECT_EQ(element.Xml(), R"(<intProp name="n" value="4"/>)");
}

TEST(PropertyElement, WriterSwitchesWhitespacePreservationOnAndLeavesTheElementUnattached) {
    xml::Document document = xml::Document::Create();
    ASSERT_FALSE(document.PreserveWhiteSpace());
    auto p = PersistedProperty::Create();
    p->SetLong("n", 4, etNotEncoded);
    xml::Element element = p->ToXMLElement(document);
    EXPECT_TRUE(document.PreserveWhiteSpace());
    EXPECT_TRUE(element.Parent().IsNull());
    EXPECT_EQ(element.OwnerDocument(), document);
}

TEST(PropertyElement, InvalidColourWritesNoElement) {
    auto p = PersistedProperty::Create();
    // A system colour index far beyond the table is rejected by the colour translation.
    p->SetColor("c", 0x80FFFFFFu, etNotEncoded);
    EXPECT_TRUE(p->ToXMLElement(xml::Document::Create()).IsNull());
}

// ---- Reading -----------------------------------------------------------------

TEST(PropertyElement, ElementNamesAreMatchedWithoutRegardToCase) {
    auto p = Read(R"(<BOOLPROP name="b" value="true"/>)");
    EXPECT_EQ(p->PropertyType(), ptBoolean);
    EXPECT_TRUE(p->BooleanValue());
    EXPECT_EQ(Read(R"(<IntProp name="n" value="5"/>)")->LongValue(), 5);
    const std::string encoded = support::EncodeBase64(R"(<STRINGPROP name="s">v</STRINGPROP>)");
    p = Read("<ENCPROP>" + encoded + "</ENCPROP>");
    EXPECT_EQ(p->PropertyType(), ptString);
    EXPECT_EQ(p->EncodingType(), etBase64Encoded);
    EXPECT_EQ(p->StringValue(), "v");
}

TEST(PropertyElement, NestedPpcAndCecChildrenAreMatchedOnlyInExactCase) {
    auto p = Read(R"(<PPCPROP name="x"><PPC name="inner"><intProp name="n" value="1"/></PPC></PPCPROP>)");
    EXPECT_EQ(p->PropertyType(), ptPPC);
    ASSERT_NE(p->PPCValue(), nullptr);
    EXPECT_EQ(p->PPCValue()->Count(), 0);
    EXPECT_EQ(p->PPCValue()->Name(), "properties");

    p = Read(R"(<cecProp name="y"><Cec name="list"><ce name="c" type="t"/></Cec></cecProp>)");
    EXPECT_EQ(p->PropertyType(), ptCEC);
    ASSERT_NE(p->CECValue(), nullptr);
    EXPECT_EQ(p->CECValue()->Count(), 0);
    EXPECT_EQ(p->CECValue()->Name(), "children");
}

TEST(PropertyElement, AssetSourceAndDescriptionChildrenAreMatchedOnlyInExactCase) {
    auto p = Read(R"(<assetProp name="a" filename="f"><Description>d</Description><SOURCE>s</SOURCE></assetProp>)");
    EXPECT_EQ(p->PropertyType(), ptAsset);
    EXPECT_EQ(p->AssetValue(), (AssetData{"f", "", ""}));
}

TEST(PropertyElement, LaterPpcChildReplacesAnEarlierOne) {
    auto p = Read(R"(<ppcProp name="x"><ppc name="one"><intProp name="a" value="1"/></ppc>)"
                  R"(<ppc name="two"><intProp name="b" value="2"/></ppc></ppcProp>)");
    ASSERT_NE(p->PPCValue(), nullptr);
    EXPECT_EQ(p->PPCValue()->Name(), "two");
    EXPECT_FALSE(p->PPCValue()->Exists("a"));
    EXPECT_EQ(p->PPCValue()->GetLong("b", 0), 2);
}

TEST(PropertyElement, EncPropThatDecodesToTextThatIsNotXmlLeavesThePropertyUntyped) {
    auto p = PersistedProperty::Create();
    p->SetLong("kept", 9, etNotEncoded);
    p->FromXMLElement(LoadRoot("<encProp>" + support::EncodeBase64("this is <not xml") + "</encProp>"));
    EXPECT_EQ(p->PropertyType(), ptNone);
    EXPECT_EQ(p->EncodingType(), etBase64Encoded);
    EXPECT_EQ(p->Name(), "kept");
    EXPECT_EQ(p->LongValue(), 9);
}

TEST(PropertyElement, EncPropWithBrokenBase64LeavesThePropertyUntyped) {
    EXPECT_EQ(Read("<encProp>@@not base64@@</encProp>")->PropertyType(), ptNone);
    EXPECT_EQ(Read(R"(<encProp enctype="utf8">*</encProp>)")->PropertyType(), ptNone);
    EXPECT_EQ(Read("<encProp/>")->PropertyType(), ptNone);
}

TEST(PropertyElement, EncPropEnctypeIsMatchedInExactCase) {
    const std::string utf8 = support::EncodeBase64Utf8("<stringProp name=\"s\">\xE4\xB8\xAD</stringProp>");
    EXPECT_EQ(Read(R"(<encProp enctype="utf8">)" + utf8 + "</encProp>")->StringValue(), "\xE4\xB8\xAD");
    // Read through the ANSI code page instead, the UTF-8 bytes become three characters.
    auto p = Read(R"(<encProp enctype="UTF8">)" + utf8 + "</encProp>");
    EXPECT_EQ(p->PropertyType(), ptString);
    EXPECT_NE(p->StringValue(), "\xE4\xB8\xAD");
}

TEST(PropertyElement, EncPropInsideEncPropIsNotUnwrappedTwice) {
    const std::string inner = "<encProp>" + support::EncodeBase64(R"(<intProp name="n" value="1"/>)") + "</encProp>";
    auto p = Read("<encProp>" + support::EncodeBase64(inner) + "</encProp>");
    EXPECT_EQ(p->PropertyType(), ptNone);
}

TEST(PropertyElement, UnknownElementLeavesThePropertyUntypedButKeepsTheName) {
    auto p = PersistedProperty::Create();
    p->SetLong("old", 1, etBase64Encoded);
    p->FromXMLElement(LoadRoot(R"(<blobProp name="new" value="1"/>)"));
    EXPECT_EQ(p->PropertyType(), ptNone);
    EXPECT_EQ(p->Name(), "new");
    EXPECT_EQ(p->EncodingType(), etNotEncoded);
}

TEST(PropertyElement, NullElementLeavesThePropertyUntyped) {
    auto p = PersistedProperty::Create();
    p->SetLong("n", 1, etNotEncoded);
    p->FromXMLElement(xml::Element());
    EXPECT_EQ(p->PropertyType(), ptNone);
    EXPECT_EQ(p->Name(), "n");
}

TEST(PropertyElement, MissingAttributesFallBackToTheirDefaults) {
    EXPECT_EQ(Read("<boolProp/>")->Name(), "");
    EXPECT_FALSE(Read("<boolProp/>")->BooleanValue());
    EXPECT_EQ(Read("<intProp/>")->LongValue(), 0);
    EXPECT_EQ(Read("<floatProp/>")->DoubleValue(), 0.0);
    EXPECT_EQ(Read("<dateProp/>")->DateValue(), 0.0);
    EXPECT_EQ(Read("<colorProp/>")->ColorValue(), 0u);
    EXPECT_EQ(Read("<fontProp/>")->FontValue(), (FontData{"Courier New", 0, false, false, false}));
    EXPECT_EQ(Read("<rectProp/>")->RectangleValue(), (Rectangle{}));
    EXPECT_EQ(Read("<locationProp/>")->LocationValue(), (LocationData{}));
    EXPECT_EQ(Read("<assetProp/>")->AssetValue(), (AssetData{}));
    EXPECT_EQ(Read("<fontProp/>")->PropertyType(), ptFont);
}

TEST(PropertyElement, AbsurdValuesFallBackToTheirDefaults) {
    EXPECT_EQ(Read(R"(<intProp name="n" value="99999999999"/>)")->LongValue(), 0);
    EXPECT_EQ(Read(R"(<intProp name="n" value="twelve"/>)")->LongValue(), 0);
    EXPECT_EQ(Read(R"(<floatProp name="d" value="1.2.3"/>)")->DoubleValue(), 0.0);
    EXPECT_FALSE(Read(R"(<boolProp name="b" value="maybe"/>)")->BooleanValue());
    EXPECT_EQ(Read(R"(<dateProp name="t" value="the 45th of Smarch"/>)")->DateValue(), 0.0);
    EXPECT_EQ(Read(R"(<dateProp name="t" value="2023-13-45"/>)")->DateValue(), 0.0);
    EXPECT_EQ(Read(R"(<colorProp name="c" value="#F00"/>)")->ColorValue(), 0u);
    EXPECT_EQ(Read(R"(<colorProp name="c" value="#GG0000"/>)")->ColorValue(), 0u);
    EXPECT_EQ(Read(R"(<rectProp name="r" left="x" top="1e99" width="-3" height=""/>)")->RectangleValue(),
              (Rectangle{0, 0, -3, 0}));
    auto p = Read(R"(<dateProp name="t" value="nonsense"/>)");
    EXPECT_EQ(p->PropertyType(), ptDate);
}

TEST(PropertyElement, NestedBagThatFailsToReadLeavesThePropertyUntyped) {
    // A nested child list with too many child nodes fails, and so does the property.
    std::string text = R"(<cecProp name="x"><cec name="c">)";
    for (int i = 0; i < 32769; ++i) {
        text += "<x/>";
    }
    text += "</cec></cecProp>";
    auto p = Read(text);
    EXPECT_EQ(p->PropertyType(), ptNone);
    EXPECT_EQ(p->Name(), "x");
}

}  // namespace
}  // namespace quillbank

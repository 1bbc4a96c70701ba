// The child element: a type label around an owned property bag.

#include <quillbank/child_element.hpp>

#include <gtest/gtest.h>

#include <quillbank/child_element_collection.hpp>

#include "properties/test_support.hpp"

namespace quillbank {
namespace {

using testing::ExpectError;
using testing::LoadRoot;
using testing::ReadGolden;

using Names = std::vector<std::string>;

TEST(ChildElement, NewElementHasEmptyNameTypeAndNoProperties) {
    auto element = ChildElement::Create();
    EXPECT_EQ(element->Name(), "");
    EXPECT_EQ(element->ElementType(), "");
    EXPECT_EQ(element->Count(), 0);
    ASSERT_NE(element->PPCObject(), nullptr);
    EXPECT_EQ(element->PPCObject()->Name(), "");
}

TEST(ChildElement, NameIsTheNameOfTheOwnedBagBothWays) {
    auto element = ChildElement::Create();
    element->SetName("box");
    EXPECT_EQ(element->PPCObject()->Name(), "box");
    element->PPCObject()->SetName("renamed");
    EXPECT_EQ(element->Name(), "renamed");
}

TEST(ChildElement, PPCObjectIsTheOwnedBagItself) {
    auto element = ChildElement::Create();
    EXPECT_EQ(element->PPCObject(), element->PPCObject());
    element->PPCObject()->SetDate("when", 2.5);
    EXPECT_EQ(element->Count(), 1);
    EXPECT_TRUE(element->Exists("WHEN"));
}

TEST(ChildElement, MembersForwardToTheBag) {
    auto element = ChildElement::Create();
    element->SetBoolean("b", true);
    element->SetLong("l", 3, etBase64Encoded);
    element->SetDouble("d", 1.25);
    element->SetString("s", "text");
    element->SetColor("c", 0x112233u);
    element->SetFont("f", FontData{"Verdana", 7, false, false, true});
    element->SetRectangle("r", Rectangle{5, 6, 7, 8});
    element->SetAsset("a", AssetData{"f", "d", "s"});
    LocationData location{"", "end", ""};
    element->SetLocation("loc", location);
    EXPECT_EQ(location, (LocationData{"end", "", ""}));
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("inner", 1);
    element->SetPPC("p", bag);
    auto list = ChildElementCollection::Create();
    element->SetCEC("k", list);

    EXPECT_EQ(element->Count(), 11);
    EXPECT_TRUE(element->GetBoolean("b", false));
    EXPECT_EQ(element->GetLong("l", 0), 3);
    EXPECT_EQ(element->PPCObject()->GetEncodingType("l"), etBase64Encoded);
    EXPECT_EQ(element->GetDouble("d", 0), 1.25);
    EXPECT_EQ(element->GetString("s", ""), "text");
    EXPECT_EQ(element->GetColor("c", 0), 0x112233u);
    EXPECT_EQ(element->GetFont("f", FontData{}), (FontData{"Verdana", 7, false, false, true}));
    EXPECT_EQ(element->GetRectangle("r", Rectangle{}), (Rectangle{5, 6, 7, 8}));
    EXPECT_EQ(element->GetAsset("a", AssetData{}), (AssetData{"f", "d", "s"}));
    EXPECT_EQ(element->GetLocation("loc", LocationData{}), (LocationData{"end", "", ""}));
    auto storedBag = element->GetPPC("p", nullptr);
    ASSERT_NE(storedBag, nullptr);
    EXPECT_NE(storedBag, bag);
    EXPECT_EQ(storedBag, element->GetPPC("p", nullptr));
    auto storedList = element->GetCEC("k", nullptr);
    ASSERT_NE(storedList, nullptr);
    EXPECT_NE(storedList, list);
    EXPECT_EQ(element->GetLong("s", 99), 99);

    element->Remove("B");
    EXPECT_FALSE(element->Exists("b"));
    element->Remove("absent");
    EXPECT_EQ(element->Count(), 10);
}

TEST(ChildElement, ClearKeepsNameAndType) {
    auto element = ChildElement::Create();
    element->SetName("n");
    element->SetElementType("t");
    element->SetLong("a", 1);
    element->Clear();
    EXPECT_EQ(element->Count(), 0);
    EXPECT_EQ(element->Name(), "n");
    EXPECT_EQ(element->ElementType(), "t");
}

TEST(ChildElement, FromPPCWithNullGivesABagNamedProperties) {
    auto element = ChildElement::Create();
    element->SetElementType("kept");
    element->SetLong("a", 1);
    const Variant result = element->FromPPC(nullptr);
    EXPECT_TRUE(result.IsEmpty());
    EXPECT_EQ(element->Name(), "properties");
    EXPECT_EQ(element->Count(), 0);
    EXPECT_EQ(element->ElementType(), "kept");
}

TEST(ChildElement, FromPPCTakesACopyOfTheBag) {
    auto element = ChildElement::Create();
    auto old = element->PPCObject();
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("x");
    bag->SetString("s", "v");
    EXPECT_TRUE(element->FromPPC(bag).IsEmpty());
    EXPECT_EQ(element->Name(), "x");
    EXPECT_EQ(element->GetString("s", ""), "v");
    bag->SetString("s", "changed");
    bag->SetLong("later", 1);
    EXPECT_EQ(element->GetString("s", ""), "v");
    EXPECT_FALSE(element->Exists("later"));
    EXPECT_NE(element->PPCObject(), bag);
    EXPECT_NE(element->PPCObject(), old);
}

TEST(ChildElement, CloneWithNestedListGivesADifferentListOfEqualContent) {
    auto inner = ChildElement::Create();
    inner->SetName("inner");
    inner->SetString("s", "v");
    auto list = ChildElementCollection::Create();
    list->Append(inner);
    auto element = ChildElement::Create();
    element->SetName("outer");
    element->SetElementType("group");
    element->SetCEC("kids", list);

    auto copy = element->Clone();
    EXPECT_NE(copy, element);
    EXPECT_EQ(copy->Name(), "outer");
    EXPECT_EQ(copy->ElementType(), "group");
    EXPECT_NE(copy->PPCObject(), element->PPCObject());
    auto original = element->GetCEC("kids", nullptr);
    auto copied = copy->GetCEC("kids", nullptr);
    ASSERT_NE(copied, nullptr);
    EXPECT_NE(copied, original);
    ASSERT_EQ(copied->Count(), 1);
    EXPECT_NE(copied->Item(0), original->Item(0));
    EXPECT_EQ(copied->Item(0)->GetString("s", ""), "v");
    EXPECT_EQ(copy->ToXMLString(), element->ToXMLString());
}

TEST(ChildElement, ElementWithoutPropertiesWritesNameAndTypeOnly) {
    auto element = ChildElement::Create();
    EXPECT_EQ(element->ToXMLElement(xml::Document::Create()).Xml(), R"(<ce name="" type=""/>)");
    element->SetName("n");
    element->SetElementType("t");
    EXPECT_EQ(element->ToClearXMLElement(xml::Document::Create()).Xml(), R"(<ce name="n" type="t"/>)");
}

TEST(ChildElement, PropertiesAreWrittenDirectlyInsideCe) {
    auto element = ChildElement::Create();
    element->SetName("n");
    element->SetLong("b", 2, etBase64Encoded);
    element->SetLong("a", 1);
    EXPECT_EQ(element->ToClearXMLString(),
              R"(<ce name="n" type=""><intProp name="a" value="1"/><intProp name="b" value="2"/></ce>)");
    EXPECT_EQ(element->ToXMLString(), R"(<ce name="n" type=""><intProp name="a" value="1"/>)"
                                      R"(<encProp>PGludFByb3AgbmFtZT0iYiIgdmFsdWU9IjIiLz4A</encProp></ce>)");
}

TEST(ChildElement, WritersSwitchPreservationOnAndLeaveTheElementUnattached) {
    auto element = ChildElement::Create();
    xml::Document document = xml::Document::Create();
    xml::Element written = element->ToXMLElement(document);
    EXPECT_TRUE(document.PreserveWhiteSpace());
    EXPECT_TRUE(written.Parent().IsNull());
    xml::Document other = xml::Document::Create();
    element->ToClearXMLElement(other);
    EXPECT_TRUE(other.PreserveWhiteSpace());
}

TEST(ChildElement, ReadingCeWithoutAttributesGivesEmptyNameAndType) {
    auto element = ChildElement::Create();
    element->SetName("old");
    element->SetElementType("old");
    element->SetLong("old", 1);
    auto oldBag = element->PPCObject();
    element->FromXMLElement(LoadRoot("<ce/>"));
    EXPECT_EQ(element->Name(), "");
    EXPECT_EQ(element->ElementType(), "");
    EXPECT_EQ(element->Count(), 0);
    EXPECT_NE(element->PPCObject(), oldBag);
    EXPECT_EQ(oldBag->Count(), 1);
}

TEST(ChildElement, ReadingKeepsPropertiesAndSkipsOtherChildren) {
    auto element = ChildElement::Create();
    element->FromXMLElement(LoadRoot(R"(<ce name="n" type="t">text<!--c--><ppc name="x"/>)"
                                     R"(<intProp name="A" value="1"/><stringProp name="a">two</stringProp></ce>)"));
    EXPECT_EQ(element->Name(), "n");
    EXPECT_EQ(element->ElementType(), "t");
    EXPECT_EQ(element->PPCObject()->GetPropertyNameArray(), Names{"a"});
    EXPECT_EQ(element->GetString("a", ""), "two");
}

TEST(ChildElement, ReadingPpcElementRaisesTheXmlFormError) {
    auto element = ChildElement::Create();
    element->SetName("kept");
    ExpectError([&] { element->FromXMLElement(LoadRoot(R"(<ppc name="x"/>)")); },
                static_cast<std::int32_t>(0x800403E9u), "ChildElement.FromXMLElement",
                "Element is not a <ce> element");
    EXPECT_EQ(element->Name(), "kept");
}

TEST(ChildElement, EmptyStringKeepsTypeEmptiesPropertiesAndNamesItEmpty) {
    auto element = ChildElement::Create();
    element->SetName("n");
    element->SetElementType("t");
    element->SetLong("a", 1);
    element->FromXMLString("");
    EXPECT_EQ(element->ElementType(), "t");
    EXPECT_EQ(element->Count(), 0);
    EXPECT_EQ(element->Name(), "");
}

TEST(ChildElement, ClearWriterWithNullDocumentReportsThePlainWritersName) {
    auto element = ChildElement::Create();
    ExpectError([&] { element->ToClearXMLElement(xml::Document()); }, 94, "ChildElement.ToXMLElement",
                "Document cannot be null");
}

TEST(ChildElement, StringFormsRoundTrip) {
    auto element = ChildElement::Create();
    element->SetName("caption \xE4\xB8\xAD");
    element->SetElementType("text box");
    element->SetString("text", "Hello\r\nworld", etBase64Encoded);
    auto back = ChildElement::Create();
    back->FromXMLString(element->ToXMLString());
    EXPECT_EQ(back->Name(), "caption \xE4\xB8\xAD");
    EXPECT_EQ(back->ElementType(), "text box");
    EXPECT_EQ(back->GetString("text", ""), "Hello\r\nworld");
    EXPECT_EQ(back->PPCObject()->GetEncodingType("text"), etBase64Encoded);
}

TEST(ChildElement, SettersRefuseTextThatIsNotUtf8) {
    auto element = ChildElement::Create();
    const std::string bad = "\xC3";
    const auto check = [](const std::function<void()>& call, const char* source) {
        try {
            call();
            ADD_FAILURE() << source;
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), ErrInvalidArgument);
            EXPECT_EQ(error.Source(), source);
            EXPECT_NE(error.Description().find("UTF-8"), std::string::npos) << error.Description();
        }
    };
    check([&] { element->SetName(bad); }, "ChildElement.Name (Set)");
    check([&] { element->SetElementType(bad); }, "ChildElement.ElementType (Set)");
    check([&] { element->SetString("s", bad); }, "ChildElement.SetString");
    check([&] { element->SetBoolean(bad, true); }, "ChildElement.SetBoolean");
    LocationData location{bad, "", ""};
    check([&] { element->SetLocation("l", location); }, "ChildElement.SetLocation");
    EXPECT_EQ(element->Count(), 0);
}

// ---- Golden forms ----------------------------------------------------------------

std::shared_ptr<ChildElement> CaptionBox() {
    auto element = ChildElement::Create();
    element->SetName("caption box");
    element->SetElementType("textbox");
    element->SetString("hint", "Stra\xC3\x9F" "e", etBase64Encoded);
    element->SetString("Text", "Hello,\r\nworld");
    element->SetLong("align", 2);
    return element;
}

TEST(ChildElementGolden, NormalFormIsPinned) {
    EXPECT_EQ(CaptionBox()->ToXMLString(), ReadGolden("elements/ce.xml"));
}

TEST(ChildElementGolden, ClearFormIsPinned) {
    EXPECT_EQ(CaptionBox()->ToClearXMLString(), ReadGolden("elements/ce_clear.xml"));
}

TEST(ChildElementGolden, NormalFormReadsBack) {
    auto element = ChildElement::Create();
    element->FromXMLString(ReadGolden("elements/ce.xml"));
    EXPECT_EQ(element->Name(), "caption box");
    EXPECT_EQ(element->ElementType(), "textbox");
    EXPECT_EQ(element->GetString("hint", ""), "Stra\xC3\x9F" "e");
    EXPECT_EQ(element->GetString("text", ""), "Hello,\r\nworld");
    EXPECT_EQ(element->GetLong("align", 0), 2);
    EXPECT_EQ(element->ToXMLString(), ReadGolden("elements/ce.xml"));
}

// ---- Failure table -----------------------------------------------------------------

TEST(ChildElementErrors, ToClearXMLElementWithNullDocument) {
    auto element = ChildElement::Create();
    ExpectError([&] { element->ToClearXMLElement(xml::Document()); }, 94, "ChildElement.ToXMLElement",
                "Document cannot be null");
}

TEST(ChildElementErrors, ToXMLElementWithNullDocument) {
    auto element = ChildElement::Create();
    ExpectError([&] { element->ToXMLElement(xml::Document()); }, 94, "ChildElement.ToXMLElement",
                "Document cannot be null");
}

TEST(ChildElementErrors, FromXMLElementWithNullElement) {
    auto element = ChildElement::Create();
    element->SetName("kept");
    element->SetLong("a", 1);
    ExpectError([&] { element->FromXMLElement(xml::Element()); }, 94, "ChildElement.FromXMLElement",
                "Element cannot be null");
    EXPECT_EQ(element->Name(), "kept");
    EXPECT_EQ(element->Count(), 1);
}

TEST(ChildElementErrors, FromXMLElementOfAnotherElement) {
    auto element = ChildElement::Create();
    element->SetElementType("kept");
    ExpectError([&] { element->FromXMLElement(LoadRoot(R"(<CE name="x"/>)")); }, -2147220503,
                "ChildElement.FromXMLElement", "Element is not a <ce> element");
    EXPECT_EQ(element->ElementType(), "kept");
}

TEST(ChildElementErrors, FromXMLStringThatFailsToLoad) {
    auto element = ChildElement::Create();
    element->SetName("kept");
    ExpectError([&] { element->FromXMLString("<ce name='x'>"); }, -2147220503, "ChildElement.FromXMLString",
                "XML string could not be parsed.");
    EXPECT_EQ(element->Name(), "kept");
}

}  // namespace
}  // namespace quillbank

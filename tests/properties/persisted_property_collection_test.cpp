// The property bag: keys without regard to case, insertion order, typed
// getters with defaults, copies, and the "ppc" element in both forms.

#include <quillbank/persisted_property_collection.hpp>

#include <gtest/gtest.h>

#include <quillbank/child_element_collection.hpp>

#include "properties/persisted_property.hpp"
#include "properties/property_bag.hpp"
#include "properties/test_support.hpp"

namespace quillbank {
namespace {

using testing::ExpectError;
using testing::LoadRoot;

using Names = std::vector<std::string>;

std::string Written(PersistedPropertyCollection& bag) { return bag.ToXMLElement(xml::Document::Create()).Xml(); }

std::string WrittenClear(PersistedPropertyCollection& bag) {
    return bag.ToClearXMLElement(xml::Document::Create()).Xml();
}

// ---- Creation, keys and order ------------------------------------------------

TEST(PersistedPropertyCollection, NewBagIsNamedPropertiesAndEmpty) {
    auto bag = PersistedPropertyCollection::Create();
    EXPECT_EQ(bag->Name(), "properties");
    EXPECT_EQ(bag->Count(), 0);
    EXPECT_EQ(bag->GetPropertyNameArray(), Names{""});
}

TEST(PersistedPropertyCollection, NameAcceptsAnyTextIncludingEmpty) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("");
    EXPECT_EQ(bag->Name(), "");
    bag->SetName("\xE5\xB1\x9E\xE6\x80\xA7");
    EXPECT_EQ(bag->Name(), "\xE5\xB1\x9E\xE6\x80\xA7");
}

TEST(PersistedPropertyCollection, SettersReplaceSameNameOfAnyCaseAndType) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("Size", 3);
    bag->SetString("size", "big");
    EXPECT_EQ(bag->Count(), 1);
    EXPECT_EQ(bag->GetPropertyNameArray(), Names{"size"});
    EXPECT_EQ(bag->GetPropertyType("SIZE"), ptString);
    EXPECT_EQ(bag->GetLong("Size", 7), 7);
    EXPECT_EQ(bag->GetString("Size", ""), "big");
}

TEST(PersistedPropertyCollection, ReplacingAPropertyMovesItToTheEnd) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetBoolean("a", true);
    bag->SetBoolean("b", true);
    bag->SetBoolean("a", false);
    EXPECT_EQ(bag->GetPropertyNameArray(), (Names{"b", "a"}));
}

TEST(PersistedPropertyCollection, ExistsIgnoresCase) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("Width", 1);
    EXPECT_TRUE(bag->Exists("width"));
    EXPECT_TRUE(bag->Exists("WIDTH"));
    EXPECT_FALSE(bag->Exists("height"));
}

TEST(PersistedPropertyCollection, NonAsciiNamesMatchWithoutRegardToCase) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("\xC3\x84pfel", 1);  // Äpfel
    EXPECT_TRUE(bag->Exists("\xC3\xA4PFEL"));  // äPFEL
    bag->SetLong("\xC3\xA4pfel", 2);
    EXPECT_EQ(bag->Count(), 1);
    EXPECT_EQ(bag->GetPropertyNameArray(), Names{"\xC3\xA4pfel"});
}

TEST(PersistedPropertyCollection, AbsentNameGivesMinusOneNoneAndEmpty) {
    auto bag = PersistedPropertyCollection::Create();
    EXPECT_EQ(bag->GetEncodingType("x"), -1);
    EXPECT_EQ(bag->GetPropertyType("x"), ptNone);
    EXPECT_TRUE(bag->GetValue("x").IsEmpty());
}

TEST(PersistedPropertyCollection, GetValueAndEncodingOfPresentNames) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("n", 5, etBase64Encoded);
    EXPECT_EQ(bag->GetValue("N"), Variant(std::int32_t{5}));
    EXPECT_EQ(bag->GetEncodingType("n"), etBase64Encoded);
    EXPECT_EQ(bag->GetPropertyType("n"), ptLong);
    bag->SetPPC("p", nullptr);
    EXPECT_TRUE(bag->GetValue("p").IsNothing());
    bag->SetPPC("p", PersistedPropertyCollection::Create());
    EXPECT_EQ(bag->GetValue("p").AsPPC(), bag->GetPPC("p", nullptr));
}

TEST(PersistedPropertyCollection, NameArrayOfMissingEncodingIsOneEmptyString) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("a", 1);
    bag->SetLong("b", 2);
    EXPECT_EQ(bag->GetPropertyNameArray(etBase64Encoded), Names{""});
    EXPECT_EQ(bag->GetPropertyNameArray(etNotEncoded), (Names{"a", "b"}));
}

TEST(PersistedPropertyCollection, NameArrayWithOtherEncodingValueGivesAllNames) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("a", 1);
    bag->SetLong("b", 2, etBase64Encoded);
    EXPECT_EQ(bag->GetPropertyNameArray(5), (Names{"a", "b"}));
    EXPECT_EQ(bag->GetPropertyNameArray(-1), (Names{"a", "b"}));
    EXPECT_EQ(bag->GetPropertyNameArray(etBase64Encoded), Names{"b"});
}

TEST(PersistedPropertyCollection, RemoveOfAbsentNameChangesNothing) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("a", 1);
    bag->Remove("zzz");
    EXPECT_EQ(bag->Count(), 1);
    EXPECT_EQ(bag->GetPropertyNameArray(), Names{"a"});
    bag->Remove("A");
    EXPECT_EQ(bag->Count(), 0);
}

TEST(PersistedPropertyCollection, ClearKeepsTheName) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("mine");
    bag->SetLong("a", 1);
    bag->Clear();
    EXPECT_EQ(bag->Count(), 0);
    EXPECT_EQ(bag->Name(), "mine");
    EXPECT_FALSE(bag->Exists("a"));
}

// ---- Typed getters and setters --------------------------------------------

TEST(PersistedPropertyCollection, TypedGettersReturnTheValueOfTheirOwnType) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetBoolean("b", true);
    bag->SetLong("l", -9);
    bag->SetDouble("d", 0.5);
    bag->SetString("s", "text");
    bag->SetDate("t", 40000.25);
    bag->SetColor("c", 0xABCDEFu);
    bag->SetFont("f", FontData{"Tahoma", 11, false, true, false});
    bag->SetRectangle("r", Rectangle{4, 3, 2, 1});
    bag->SetAsset("a", AssetData{"x.png", "desc", "src"});
    LocationData location{"A", "B", "M"};
    bag->SetLocation("loc", location);
    EXPECT_TRUE(bag->GetBoolean("b", false));
    EXPECT_EQ(bag->GetLong("l", 0), -9);
    EXPECT_EQ(bag->GetDouble("d", 0), 0.5);
    EXPECT_EQ(bag->GetString("s", ""), "text");
    EXPECT_EQ(bag->GetDate("t", 0), 40000.25);
    EXPECT_EQ(bag->GetColor("c", 0), 0xABCDEFu);
    EXPECT_EQ(bag->GetFont("f", FontData{}), (FontData{"Tahoma", 11, false, true, false}));
    EXPECT_EQ(bag->GetRectangle("r", Rectangle{}), (Rectangle{4, 3, 2, 1}));
    EXPECT_EQ(bag->GetAsset("a", AssetData{}), (AssetData{"x.png", "desc", "src"}));
    EXPECT_EQ(bag->GetLocation("loc", LocationData{}), (LocationData{"A", "B", "M"}));
    EXPECT_EQ(bag->Count(), 10);
}

TEST(PersistedPropertyCollection, TypedGettersReturnTheDefaultForAnotherType) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetString("x", "1");
    const FontData font{"Default", 1, true, true, true};
    const Rectangle rect{9, 9, 9, 9};
    const AssetData asset{"d", "d", "d"};
    const LocationData location{"d", "", ""};
    auto defaultBag = PersistedPropertyCollection::Create();
    auto defaultList = ChildElementCollection::Create();
    EXPECT_TRUE(bag->GetBoolean("x", true));
    EXPECT_EQ(bag->GetLong("x", 7), 7);
    EXPECT_EQ(bag->GetDouble("x", 1.25), 1.25);
    EXPECT_EQ(bag->GetDate("x", 3.0), 3.0);
    EXPECT_EQ(bag->GetColor("x", 42u), 42u);
    EXPECT_EQ(bag->GetFont("x", font), font);
    EXPECT_EQ(bag->GetRectangle("x", rect), rect);
    EXPECT_EQ(bag->GetAsset("x", asset), asset);
    EXPECT_EQ(bag->GetLocation("x", location), location);
    EXPECT_EQ(bag->GetPPC("x", defaultBag), defaultBag);
    EXPECT_EQ(bag->GetCEC("x", defaultList), defaultList);
    bag->SetLong("y", 1);
    EXPECT_EQ(bag->GetString("y", "fallback"), "fallback");
}

TEST(PersistedPropertyCollection, TypedGettersReturnTheDefaultForAnAbsentName) {
    auto bag = PersistedPropertyCollection::Create();
    EXPECT_FALSE(bag->GetBoolean("x", false));
    EXPECT_EQ(bag->GetString("x", "fallback"), "fallback");
    EXPECT_EQ(bag->GetPPC("x", nullptr), nullptr);
}

TEST(PersistedPropertyCollection, SetLocationFillsTheStartInTheCallersRecordToo) {
    auto bag = PersistedPropertyCollection::Create();
    LocationData location{"", "p2", "map"};
    bag->SetLocation("loc", location);
    EXPECT_EQ(bag->GetLocation("loc", LocationData{}), (LocationData{"p2", "", "map"}));
    EXPECT_EQ(location, (LocationData{"p2", "", "map"}));
}

TEST(PersistedPropertyCollection, SetLocationLeavesOtherRecordsUnchanged) {
    auto bag = PersistedPropertyCollection::Create();
    LocationData both{"p1", "p2", ""};
    bag->SetLocation("a", both);
    EXPECT_EQ(both, (LocationData{"p1", "p2", ""}));
    LocationData none{"", "", "m"};
    bag->SetLocation("b", none);
    EXPECT_EQ(none, (LocationData{"", "", "m"}));
    EXPECT_EQ(bag->GetLocation("b", LocationData{"x", "y", "z"}), (LocationData{"", "", "m"}));
}

TEST(PersistedPropertyCollection, NestedBagChangedThroughGetPPCChangesWhatIsWritten) {
    auto bag = PersistedPropertyCollection::Create();
    auto given = PersistedPropertyCollection::Create();
    given->SetLong("n", 1);
    bag->SetPPC("nested", given);
    given->SetLong("n", 2);
    EXPECT_EQ(Written(*bag),
              R"(<ppc name="properties"><ppcProp name="nested"><ppc name="properties"><intProp name="n" value="1"/>)"
              R"(</ppc></ppcProp></ppc>)");
    auto live = bag->GetPPC("nested", nullptr);
    ASSERT_NE(live, nullptr);
    EXPECT_NE(live, given);
    live->SetLong("n", 3);
    EXPECT_EQ(Written(*bag),
              R"(<ppc name="properties"><ppcProp name="nested"><ppc name="properties"><intProp name="n" value="3"/>)"
              R"(</ppc></ppcProp></ppc>)");
}

TEST(PersistedPropertyCollection, NestedListIsCopiedWhenSetAndLiveWhenRead) {
    auto bag = PersistedPropertyCollection::Create();
    auto given = ChildElementCollection::Create();
    bag->SetCEC("items", given);
    given->Append(ChildElement::Create());
    auto live = bag->GetCEC("items", nullptr);
    ASSERT_NE(live, nullptr);
    EXPECT_NE(live, given);
    EXPECT_EQ(live->Count(), 0);
    live->Append(ChildElement::Create());
    EXPECT_EQ(bag->GetCEC("items", nullptr)->Count(), 1);
}

TEST(PersistedPropertyCollection, NullNestedValuesAreStoredAsTypedPropertiesWithoutObject) {
    auto bag = PersistedPropertyCollection::Create();
    auto fallback = PersistedPropertyCollection::Create();
    bag->SetPPC("p", nullptr);
    EXPECT_EQ(bag->GetPropertyType("p"), ptPPC);
    EXPECT_EQ(bag->GetPPC("p", fallback), nullptr);
    bag->SetCEC("c", nullptr, etBase64Encoded);
    EXPECT_EQ(bag->GetPropertyType("c"), ptCEC);
    EXPECT_EQ(bag->GetEncodingType("c"), etBase64Encoded);
    EXPECT_EQ(bag->GetCEC("c", ChildElementCollection::Create()), nullptr);
}

TEST(PersistedPropertyCollection, SettingABagIntoItselfStoresACopyOfItsFormerSelf) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("n", 1);
    bag->SetPPC("self", bag);
    auto inner = bag->GetPPC("self", nullptr);
    ASSERT_NE(inner, nullptr);
    EXPECT_NE(inner, bag);
    EXPECT_EQ(inner->GetPropertyNameArray(), Names{"n"});
}

TEST(PersistedPropertyCollection, SettersRefuseTextThatIsNotUtf8) {
    auto bag = PersistedPropertyCollection::Create();
    const std::string bad = "bad\xFF";
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
    check([&] { bag->SetName(bad); }, "PersistedPropertyCollection.Name (Set)");
    check([&] { bag->SetString("s", bad); }, "PersistedPropertyCollection.SetString");
    check([&] { bag->SetLong(bad, 1); }, "PersistedPropertyCollection.SetLong");
    check([&] { bag->SetFont("f", FontData{bad, 1, false, false, false}); }, "PersistedPropertyCollection.SetFont");
    check([&] { bag->SetAsset("a", AssetData{"", "", bad}); }, "PersistedPropertyCollection.SetAsset");
    LocationData location{"", bad, ""};
    check([&] { bag->SetLocation("l", location); }, "PersistedPropertyCollection.SetLocation");
    EXPECT_EQ(location.EndPoint, bad);
    EXPECT_EQ(bag->Count(), 0);
    EXPECT_EQ(bag->Name(), "properties");
}

// ---- Clone -------------------------------------------------------------------

TEST(PersistedPropertyCollection, CloneIsDeepAndKeepsNameAndOrder) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("orig");
    bag->SetString("z", "last", etBase64Encoded);
    auto inner = PersistedPropertyCollection::Create();
    inner->SetLong("n", 1);
    bag->SetPPC("a", inner);
    bag->SetLong("m", 5);
    auto copy = bag->Clone();
    EXPECT_NE(copy, bag);
    EXPECT_EQ(copy->Name(), "orig");
    EXPECT_EQ(copy->GetPropertyNameArray(), (Names{"z", "a", "m"}));
    EXPECT_EQ(copy->GetEncodingType("z"), etBase64Encoded);
    EXPECT_NE(copy->GetPPC("a", nullptr), bag->GetPPC("a", nullptr));
    bag->GetPPC("a", nullptr)->SetLong("n", 2);
    EXPECT_EQ(copy->GetPPC("a", nullptr)->GetLong("n", 0), 1);
    EXPECT_NE(properties::FindProperty(*copy, "m"), properties::FindProperty(*bag, "m"));
}

TEST(PersistedPropertyCollection, CloneTurnsANullNestedBagIntoANamelessUntypedProperty) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("a", 1);
    bag->SetPPC("b", nullptr);
    auto copy = bag->Clone();
    EXPECT_EQ(copy->GetPropertyNameArray(), (Names{"a", ""}));
    EXPECT_EQ(copy->GetPropertyType(""), ptNone);
    EXPECT_FALSE(copy->Exists("b"));
}

// ---- Internal operations -------------------------------------------------------

TEST(PersistedPropertyCollection, FindPropertyAndAddPropertyWorkByName) {
    auto bag = PersistedPropertyCollection::Create();
    EXPECT_EQ(properties::FindProperty(*bag, "x"), nullptr);
    auto p = PersistedProperty::Create();
    p->SetLong("X", 4, etNotEncoded);
    properties::AddProperty(*bag, p);
    EXPECT_EQ(properties::FindProperty(*bag, "x"), p);
    auto q = PersistedProperty::Create();
    q->SetBoolean("x", true, etBase64Encoded);
    properties::AddProperty(*bag, q);
    EXPECT_EQ(bag->Count(), 1);
    EXPECT_EQ(properties::FindProperty(*bag, "X"), q);
    EXPECT_EQ(properties::CountByEncoding(*bag, etBase64Encoded), 1);
    EXPECT_EQ(properties::CountByEncoding(*bag, etNotEncoded), 0);
}

TEST(PersistedPropertyCollection, PropertyElementsCanBeWrittenUnderAnyParent) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("b", 2, etBase64Encoded);
    bag->SetLong("a", 1);
    xml::Document document = xml::Document::Create();
    xml::DomWriter writer(document);
    writer.StartElement("holder");
    properties::WritePropertyElements(*bag, writer, true);
    writer.EndElement();
    const xml::Element parent = writer.Result();
    EXPECT_EQ(parent.Xml(), R"(<holder><intProp name="a" value="1"/><intProp name="b" value="2"/></holder>)");
    xml::TextWriter text;
    text.StartElement("holder");
    properties::WritePropertyElements(*bag, text, true);
    text.EndElement();
    EXPECT_EQ(text.Out(), parent.Xml());
    auto other = PersistedPropertyCollection::Create();
    other->SetLong("old", 0);
    properties::ReadPropertyElements(*other, parent);
    EXPECT_EQ(other->GetPropertyNameArray(), (Names{"a", "b"}));
    EXPECT_EQ(other->Name(), "properties");
}

// ---- The ppc element -----------------------------------------------------------

TEST(PersistedPropertyCollection, NormalFormWritesPlainSortedThenEncodedSorted) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetBoolean("b", true, etBase64Encoded);
    bag->SetLong("A", 1);
    bag->SetLong("c", 3);
    EXPECT_EQ(Written(*bag), R"(<ppc name="properties"><intProp name="A" value="1"/><intProp name="c" value="3"/>)"
                             R"(<encProp>PGJvb2xQcm9wIG5hbWU9ImIiIHZhbHVlPSJ0cnVlIi8+AA==</encProp></ppc>)");
}

TEST(PersistedPropertyCollection, ClearFormWritesOneSortedRun) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetBoolean("b", true, etBase64Encoded);
    bag->SetLong("A", 1);
    bag->SetLong("c", 3);
    EXPECT_EQ(WrittenClear(*bag), R"(<ppc name="properties"><intProp name="A" value="1"/>)"
                                  R"(<boolProp name="b" value="true"/><intProp name="c" value="3"/></ppc>)");
}

TEST(PersistedPropertyCollection, EmptyBagWritesPpcWithItsNameOnly) {
    auto bag = PersistedPropertyCollection::Create();
    EXPECT_EQ(Written(*bag), R"(<ppc name="properties"/>)");
    bag->SetName("");
    EXPECT_EQ(WrittenClear(*bag), R"(<ppc name=""/>)");
}

TEST(PersistedPropertyCollection, AGroupWhoseFirstSortedNameIsEmptyIsNotWritten) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("a", 1);
    bag->SetLong("", 2);
    bag->SetLong("e", 3, etBase64Encoded);
    const std::string normal = Written(*bag);
    EXPECT_EQ(normal.find("intProp"), std::string::npos) << normal;
    EXPECT_NE(normal.find("<encProp>"), std::string::npos) << normal;
    EXPECT_EQ(WrittenClear(*bag), R"(<ppc name="properties"/>)");
}

TEST(PersistedPropertyCollection, PropertyWithoutElementIsSkipped) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetColor("bad", 0x80FFFFFFu);
    bag->SetLong("good", 1);
    EXPECT_EQ(Written(*bag), R"(<ppc name="properties"><intProp name="good" value="1"/></ppc>)");
}

TEST(PersistedPropertyCollection, WritersSwitchPreservationOnAndReturnAnUnattachedElement) {
    auto bag = PersistedPropertyCollection::Create();
    xml::Document document = xml::Document::Create();
    xml::Element element = bag->ToXMLElement(document);
    EXPECT_TRUE(document.PreserveWhiteSpace());
    EXPECT_TRUE(element.Parent().IsNull());
    EXPECT_TRUE(document.DocumentElement().IsNull());
    xml::Document other = xml::Document::Create();
    bag->ToClearXMLElement(other);
    EXPECT_TRUE(other.PreserveWhiteSpace());
}

TEST(PersistedPropertyCollection, ReaderWithoutNameAttributeUsesProperties) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("before");
    bag->FromXMLElement(LoadRoot("<ppc/>"));
    EXPECT_EQ(bag->Name(), "properties");
    bag->FromXMLElement(LoadRoot(R"(<ppc name=""/>)"));
    EXPECT_EQ(bag->Name(), "");
}

TEST(PersistedPropertyCollection, ReaderSkipsTextCommentsAndUnknownElementsAndEmptiesTheBag) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("old", 1);
    bag->FromXMLElement(LoadRoot(R"(<ppc name="p">text<!--note--><unknownProp name="u"/>)"
                                 R"(<intProp name="n" value="2"/><![CDATA[x]]></ppc>)"));
    EXPECT_EQ(bag->GetPropertyNameArray(), Names{"n"});
    bag->FromXMLElement(LoadRoot(R"(<ppc name="p"/>)"));
    EXPECT_EQ(bag->Count(), 0);
}

TEST(PersistedPropertyCollection, ReaderKeepsTheLaterOfTwoSameNamedProperties) {
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLElement(LoadRoot(R"(<ppc><intProp name="A" value="1"/><boolProp name="b" value="true"/>)"
                                 R"(<stringProp name="a">two</stringProp></ppc>)"));
    EXPECT_EQ(bag->GetPropertyNameArray(), (Names{"b", "a"}));
    EXPECT_EQ(bag->GetString("A", ""), "two");
}

TEST(PersistedPropertyCollection, ReaderDropsCorruptEncodedProperties) {
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLElement(LoadRoot(R"(<ppc><encProp>!!!</encProp><intProp name="n" value="1"/></ppc>)"));
    EXPECT_EQ(bag->GetPropertyNameArray(), Names{"n"});
}

TEST(PersistedPropertyCollection, EmptyStringResetsAFilledBag) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("mine");
    bag->SetLong("a", 1);
    bag->FromXMLString("");
    EXPECT_EQ(bag->Name(), "properties");
    EXPECT_EQ(bag->Count(), 0);
}

TEST(PersistedPropertyCollection, TextThatIsNotWellFormedRaisesAndLeavesTheBagAsItWas) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("mine");
    bag->SetLong("a", 1);
    ExpectError([&] { bag->FromXMLString("<ppc name=\"x\"><intProp"); }, ErrXmlForm,
                "PersistedPropertyCollection.FromXMLString", "XML string could not be parsed.");
    EXPECT_EQ(bag->Name(), "mine");
    EXPECT_EQ(bag->GetPropertyNameArray(), Names{"a"});
}

TEST(PersistedPropertyCollection, TextThatIsNotUtf8CannotBeParsed) {
    auto bag = PersistedPropertyCollection::Create();
    ExpectError([&] { bag->FromXMLString("<ppc name=\"\xFF\"/>"); }, ErrXmlForm,
                "PersistedPropertyCollection.FromXMLString", "XML string could not be parsed.");
}

TEST(PersistedPropertyCollection, StringFormsRoundTrip) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("round");
    bag->SetString("text", "line one\r\nline two", etBase64Encoded);
    bag->SetLong("n", 12);
    const std::string text = bag->ToXMLString();
    auto back = PersistedPropertyCollection::Create();
    back->FromXMLString(text);
    EXPECT_EQ(back->Name(), "round");
    EXPECT_EQ(back->GetPropertyNameArray(), (Names{"n", "text"}));
    EXPECT_EQ(back->GetString("text", ""), "line one\r\nline two");
    EXPECT_EQ(back->GetEncodingType("text"), etBase64Encoded);
    EXPECT_EQ(back->ToXMLString(), text);
    back->FromXMLString(bag->ToClearXMLString());
    EXPECT_EQ(back->GetEncodingType("text"), etNotEncoded);
    EXPECT_EQ(back->GetString("text", ""), "line one\r\nline two");
}

TEST(PersistedPropertyCollection, StringFormsRemoveControlCharacters) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetString("s", std::string("a\x01"
                                    "b\x0B"
                                    "c\t\x1F",
                                    7));
    EXPECT_EQ(bag->ToXMLString(),
              "<ppc name=\"properties\"><stringProp "
              "name=\"s\">abc\t\x1F</stringProp></ppc>");
    EXPECT_EQ(bag->ToClearXMLString(), bag->ToXMLString());
    auto back = PersistedPropertyCollection::Create();
    back->FromXMLString(std::string("<ppc name=\"p\x02q\"/>"));
    EXPECT_EQ(back->Name(), "pq");
}

TEST(PersistedPropertyCollection, StringReaderChecksTheRootElement) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("a", 1);
    ExpectError([&] { bag->FromXMLString("<cec name=\"x\"/>"); }, ErrInvalidCall,
                "PersistedPropertyCollection.FromXMLElement", "Element is not a <ppc> element");
    EXPECT_EQ(bag->Count(), 1);
}

// ---- Failure table -------------------------------------------------------------

TEST(PersistedPropertyCollectionErrors, ToClearXMLElementWithNullDocument) {
    auto bag = PersistedPropertyCollection::Create();
    ExpectError([&] { bag->ToClearXMLElement(xml::Document()); }, 94,
                "PersistedPropertyCollection.ToClearXMLElement", "Document cannot be null");
}

TEST(PersistedPropertyCollectionErrors, ToXMLElementWithNullDocument) {
    auto bag = PersistedPropertyCollection::Create();
    ExpectError([&] { bag->ToXMLElement(xml::Document()); }, 94, "PersistedPropertyCollection.ToXMLElement",
                "Document cannot be null");
}

TEST(PersistedPropertyCollectionErrors, FromXMLElementWithNullElement) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("kept");
    bag->SetLong("a", 1);
    ExpectError([&] { bag->FromXMLElement(xml::Element()); }, 94, "PersistedPropertyCollection.FromXMLElement",
                "Element cannot be null");
    EXPECT_EQ(bag->Name(), "kept");
    EXPECT_EQ(bag->Count(), 1);
}

TEST(PersistedPropertyCollectionErrors, FromXMLElementOfAnotherElementRaisesInvalidCall) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("kept");
    bag->SetLong("a", 1);
    ExpectError([&] { bag->FromXMLElement(LoadRoot(R"(<PPC name="x"/>)")); }, 5,
                "PersistedPropertyCollection.FromXMLElement", "Element is not a <ppc> element");
    EXPECT_EQ(bag->Name(), "kept");
    EXPECT_EQ(bag->Count(), 1);
}

TEST(PersistedPropertyCollectionErrors, FromXMLStringThatFailsToLoad) {
    auto bag = PersistedPropertyCollection::Create();
    ExpectError([&] { bag->FromXMLString("not xml at all"); }, static_cast<std::int32_t>(0x800403E9u),
                "PersistedPropertyCollection.FromXMLString", "XML string could not be parsed.");
    EXPECT_EQ(-2147220503, static_cast<std::int32_t>(0x800403E9u));
}

// ---- Size --------------------------------------------------------------------

TEST(PersistedPropertyCollection, LargeBagKeepsOrderThroughReplacementsAndRemovals) {
    auto bag = PersistedPropertyCollection::Create();
    constexpr int kCount = 10000;
    for (int i = 0; i < kCount; ++i) {
        bag->SetLong("name" + std::to_string(i), i);
    }
    for (int i = 0; i < kCount; i += 2) {
        bag->SetLong("NAME" + std::to_string(i), -i);
    }
    for (int i = 1; i < kCount; i += 4) {
        bag->Remove("Name" + std::to_string(i));
    }
    EXPECT_EQ(bag->Count(), kCount - kCount / 4);
    const Names names = bag->GetPropertyNameArray();
    EXPECT_EQ(names.front(), "name3");
    EXPECT_EQ(names.back(), "NAME9998");
    EXPECT_EQ(bag->GetLong("name9998", 0), -9998);
    auto back = PersistedPropertyCollection::Create();
    back->FromXMLString(bag->ToXMLString());
    EXPECT_EQ(back->Count(), bag->Count());
    EXPECT_EQ(back->GetLong("name7", 0), 7);
}

}  // namespace
}  // namespace quillbank

#include <quillbank/lesson_map_collection.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <quillbank/error.hpp>

#include "common/raises.hpp"
#include "maps/map_helpers.hpp"

namespace quillbank {
namespace {

using testing::MapFrom;
using testing::Parse;
using testing::Shape;

std::shared_ptr<LessonMap> Named(const std::string& name) {
    auto map = LessonMap::Create();
    map->SetName(name);
    return map;
}

std::vector<std::string> Names(const LessonMapCollection& maps) {
    std::vector<std::string> names;
    for (std::int32_t i = 0; i <= maps.Length(); ++i) {
        names.push_back(maps.ItemAt(i)->Name());
    }
    return names;
}

using NameList = std::vector<std::string>;

// ---- Creation and the default map ----

TEST(LessonMapCollection, NewCollectionIsEmptyWithoutDefault) {
    auto maps = LessonMapCollection::Create();
    EXPECT_EQ(maps->Length(), -1);
    EXPECT_EQ(maps->Count(), 0);
    EXPECT_EQ(maps->DefaultMap(), nullptr);
    EXPECT_EQ(maps->ItemAt(0), nullptr);
    EXPECT_EQ(maps->IndexOfName("x"), -1);
    EXPECT_EQ(maps->Item("x"), nullptr);
    EXPECT_EQ(maps->IndexOf(Named("x")), -1);
    const xml::Element element = maps->ToXMLElement(xml::Document::Create());
    EXPECT_EQ(element.Xml(), "<maps/>");
    EXPECT_EQ(element.AttributeCount(), 0);
}

TEST(LessonMapCollection, OneMapIsNoDefaultButTheFirstOfTwoIs) {
    auto maps = LessonMapCollection::Create();
    auto first = Named("First");
    maps->Append(first);
    EXPECT_EQ(maps->DefaultMap(), nullptr);
    maps->Append(Named("Second"));
    EXPECT_EQ(maps->DefaultMap(), first);
}

TEST(LessonMapCollection, PuttingANonMemberAsDefaultRaises5AndKeepsTheOldDefault) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    auto b = Named("B");
    maps->Append(a);
    maps->Append(b);
    maps->SetDefaultMap(b);
    EXPECT_RAISES(maps->SetDefaultMap(Named("B")), ErrInvalidCall, "LessonMapCollection.DefaultMap (Set)",
                  "Default map must be a member of the collection");
    EXPECT_EQ(maps->DefaultMap(), b);
    maps->SetDefaultMap(nullptr);
    EXPECT_EQ(maps->DefaultMap(), a);
}

TEST(LessonMapCollection, FailureDefaultMapPutOfANonMember) {
    auto maps = LessonMapCollection::Create();
    EXPECT_RAISES(maps->SetDefaultMap(LessonMap::Create()), 5, "LessonMapCollection.DefaultMap (Set)",
                  "Default map must be a member of the collection");
    EXPECT_EQ(maps->DefaultMap(), nullptr);
}

TEST(LessonMapCollection, PuttingNullClearsTheStoredDefault) {
    auto maps = LessonMapCollection::Create();
    auto only = Named("Only");
    maps->Append(only);
    maps->SetDefaultMap(only);
    EXPECT_EQ(maps->DefaultMap(), only);
    maps->SetDefaultMap(nullptr);
    EXPECT_EQ(maps->DefaultMap(), nullptr);
}

TEST(LessonMapCollection, RemovingTheDefaultMapClearsTheStoredDefault) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    auto b = Named("B");
    auto c = Named("C");
    maps->Append(a);
    maps->Append(b);
    maps->Append(c);
    maps->SetDefaultMap(a);
    maps->Remove(a);
    // Two maps left: the getter falls back to the map now at index 0.
    EXPECT_EQ(maps->DefaultMap(), b);
    maps->SetDefaultMap(c);
    maps->RemoveAt(1);
    // One map left and no stored default: no default.
    EXPECT_EQ(maps->DefaultMap(), nullptr);
    EXPECT_EQ(maps->Count(), 1);
}

TEST(LessonMapCollection, RemovingAnotherMapKeepsTheDefault) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    auto b = Named("B");
    maps->Append(a);
    maps->Append(b);
    maps->SetDefaultMap(b);
    maps->RemoveAt(0);
    EXPECT_EQ(maps->DefaultMap(), b);
}

// ---- Lookups ----

TEST(LessonMapCollection, ItemAndIndexOfNameFindTheFirstExactName) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("Route");
    auto b = Named("route");
    auto c = Named("Route");
    maps->Append(a);
    maps->Append(b);
    maps->Append(c);
    EXPECT_EQ(maps->Item("Route"), a);
    EXPECT_EQ(maps->Item("route"), b);
    EXPECT_EQ(maps->Item("ROUTE"), nullptr);
    EXPECT_EQ(maps->IndexOfName("Route"), 0);
    EXPECT_EQ(maps->IndexOfName("route"), 1);
    EXPECT_EQ(maps->IndexOfName("Rout"), -1);
}

TEST(LessonMapCollection, IndexOfComparesIdentity) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    auto b = Named("B");
    maps->Append(a);
    maps->Append(b);
    maps->Append(a);
    EXPECT_EQ(maps->IndexOf(a), 0);
    EXPECT_EQ(maps->IndexOf(b), 1);
    EXPECT_EQ(maps->IndexOf(Named("A")), -1);
    EXPECT_EQ(maps->IndexOf(nullptr), -1);
}

TEST(LessonMapCollection, ItemAtOutOfRangeIsNull) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    maps->Append(a);
    EXPECT_EQ(maps->ItemAt(0), a);
    EXPECT_EQ(maps->ItemAt(1), nullptr);
    EXPECT_EQ(maps->ItemAt(-1), nullptr);
}

TEST(LessonMapCollection, NamelessMapRaisesWhenANameLookupReachesIt) {
    auto maps = LessonMapCollection::Create();
    maps->Append(Named("A"));
    maps->Append(MapFrom("<map/>"));
    EXPECT_EQ(maps->IndexOfName("A"), 0);
    EXPECT_RAISES(maps->IndexOfName("B"), ErrNullArgument, "LessonMap.Name", "Invalid use of Null");
    EXPECT_RAISES(maps->Item("B"), ErrNullArgument, "LessonMap.Name", "Invalid use of Null");
}

// ---- Append, Insert, Remove ----

TEST(LessonMapCollection, AppendIgnoresNullAndAllowsTheSameMapTwice) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    maps->Append(nullptr);
    EXPECT_EQ(maps->Count(), 0);
    maps->Append(a);
    maps->Append(a);
    EXPECT_EQ(maps->Count(), 2);
    EXPECT_EQ(maps->Length(), 1);
    EXPECT_EQ(maps->ItemAt(1), a);
}

TEST(LessonMapCollection, InsertOutOfRangeAppendsAndInRangeMovesLaterMapsUp) {
    auto maps = LessonMapCollection::Create();
    maps->Insert(Named("A"), 0);
    maps->Insert(Named("B"), -5);
    maps->Insert(Named("C"), maps->Count());
    EXPECT_EQ(Names(*maps), (NameList{"A", "B", "C"}));
    maps->Insert(Named("M"), 1);
    EXPECT_EQ(Names(*maps), (NameList{"A", "M", "B", "C"}));
    maps->Insert(Named("F"), 0);
    EXPECT_EQ(Names(*maps), (NameList{"F", "A", "M", "B", "C"}));
    maps->Insert(nullptr, 0);
    EXPECT_EQ(maps->Count(), 5);
}

TEST(LessonMapCollection, RemoveAtOutOfRangeDoesNothingAndOfTheOnlyMapEmpties) {
    auto maps = LessonMapCollection::Create();
    maps->Append(Named("A"));
    maps->RemoveAt(maps->Count());
    maps->RemoveAt(-1);
    EXPECT_EQ(maps->Count(), 1);
    maps->RemoveAt(0);
    EXPECT_EQ(maps->Length(), -1);
    EXPECT_EQ(maps->Count(), 0);
    maps->RemoveAt(0);
    EXPECT_EQ(maps->Count(), 0);
}

TEST(LessonMapCollection, RemoveAtMovesLaterMapsDown) {
    auto maps = LessonMapCollection::Create();
    for (const char* name : {"A", "B", "C", "D"}) {
        maps->Append(Named(name));
    }
    maps->RemoveAt(1);
    EXPECT_EQ(Names(*maps), (NameList{"A", "C", "D"}));
    maps->RemoveAt(2);
    EXPECT_EQ(Names(*maps), (NameList{"A", "C"}));
}

TEST(LessonMapCollection, RemoveTakesTheFirstOccurrenceAndIgnoresAbsentMaps) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    auto b = Named("B");
    maps->Append(a);
    maps->Append(b);
    maps->Append(a);
    maps->Remove(Named("A"));
    maps->Remove(nullptr);
    EXPECT_EQ(maps->Count(), 3);
    maps->Remove(a);
    EXPECT_EQ(maps->ItemAt(0), b);
    EXPECT_EQ(maps->ItemAt(1), a);
}

TEST(LessonMapCollection, ClearRemovesEveryMapAndTheDefault) {
    auto maps = LessonMapCollection::Create();
    auto a = Named("A");
    maps->Append(a);
    maps->Append(Named("B"));
    maps->SetDefaultMap(a);
    maps->Clear();
    EXPECT_EQ(maps->Count(), 0);
    EXPECT_EQ(maps->DefaultMap(), nullptr);
    maps->Append(Named("C"));
    EXPECT_EQ(maps->DefaultMap(), nullptr);
}

// ---- The maps element ----

TEST(LessonMapCollection, WritingHoldsACopyOfEveryMapInOrder) {
    auto maps = LessonMapCollection::Create();
    auto a = MapFrom(R"(<map name="A"><item sbid="1"><item sbid="2"/></item></map>)");
    auto b = MapFrom(R"(<map name="B" x="y"><!--c--><item sbid="3"/></map>)");
    maps->Append(a);
    maps->Append(b);
    maps->SetDefaultMap(b);
    xml::Document document = xml::Document::Create();
    const xml::Element element = maps->ToXMLElement(document);
    EXPECT_EQ(element.Xml(), R"(<maps default="B"><map name="A"><item sbid="1"><item sbid="2"/></item></map>)"
                             R"(<map name="B" x="y"><!--c--><item sbid="3"/></map></maps>)");
    EXPECT_TRUE(element.Parent().IsNull());
    EXPECT_TRUE(element.OwnerDocument() == document);
    EXPECT_TRUE(document.DocumentElement().IsNull());
    // The written elements are copies.
    element.FirstChild().AsElement().SetAttribute("name", "Changed");
    EXPECT_EQ(a->Name(), "A");
    a->InsertStoryboard("", sbitInsertAfter, "4");
    EXPECT_EQ(Shape(element.FirstChild()), "1(2)");
}

TEST(LessonMapCollection, WritingLeavesTheWhitespaceSwitchAlone) {
    auto maps = LessonMapCollection::Create();
    maps->Append(Named("A"));
    xml::Document document = xml::Document::Create();
    maps->ToXMLElement(document);
    EXPECT_FALSE(document.PreserveWhiteSpace());
    document.SetPreserveWhiteSpace(true);
    maps->ToXMLElement(document);
    EXPECT_TRUE(document.PreserveWhiteSpace());
}

TEST(LessonMapCollection, OneMapWithoutChosenDefaultWritesNoDefaultAndReadsBackAsDefault) {
    auto maps = LessonMapCollection::Create();
    maps->Append(Named("Only"));
    const xml::Element element = maps->ToXMLElement(xml::Document::Create());
    EXPECT_EQ(element.Xml(), R"(<maps><map name="Only"/></maps>)");
    auto read = LessonMapCollection::Create();
    read->FromXMLElement(element);
    ASSERT_EQ(read->Count(), 1);
    EXPECT_EQ(read->DefaultMap(), read->ItemAt(0));
    // It is the stored default now: the attribute is written.
    EXPECT_EQ(read->ToXMLElement(xml::Document::Create()).Xml(), R"(<maps default="Only"><map name="Only"/></maps>)");
}

TEST(LessonMapCollection, SeveralMapsWithoutChosenDefaultWriteTheFirstName) {
    auto maps = LessonMapCollection::Create();
    maps->Append(Named("One"));
    maps->Append(Named("Two"));
    const xml::Element element = maps->ToXMLElement(xml::Document::Create());
    EXPECT_EQ(element.GetAttribute("default"), "One");
    auto read = LessonMapCollection::Create();
    read->FromXMLElement(element);
    EXPECT_EQ(read->DefaultMap(), read->ItemAt(0));
    EXPECT_EQ(Names(*read), (NameList{"One", "Two"}));
}

TEST(LessonMapCollection, ReadingChoosesTheFirstMapOfTheDefaultName) {
    auto read = LessonMapCollection::Create();
    read->FromXMLElement(
        Parse(R"(<maps default="Twin"><map name="A"/><map name="Twin"/><map name="Twin"/></maps>)"));
    EXPECT_EQ(read->DefaultMap(), read->ItemAt(1));
}

TEST(LessonMapCollection, ADefaultNamingNoMapReadsBackWithTheFirstMapAsDefault) {
    auto read = LessonMapCollection::Create();
    read->FromXMLElement(Parse(R"(<maps default="Missing"><map name="A"/><map name="B"/></maps>)"));
    EXPECT_EQ(read->DefaultMap(), read->ItemAt(0));
    read->FromXMLElement(Parse(R"(<maps default=""><map name="A"/><map name="B"/></maps>)"));
    EXPECT_EQ(read->DefaultMap(), read->ItemAt(0));
}

TEST(LessonMapCollection, ReadingTakesMapElementsOnlyInDocumentOrder) {
    auto read = LessonMapCollection::Create();
    read->FromXMLElement(Parse(R"(<maps>text<!--note--><map name="A"><item sbid="1"/></map><Map name="X"/>)"
                               R"(<other/><map name="B"/>more</maps>)"));
    EXPECT_EQ(Names(*read), (NameList{"A", "B"}));
    EXPECT_EQ(Shape(*read->ItemAt(0)), "1");
    EXPECT_EQ(read->DefaultMap(), read->ItemAt(0));
}

TEST(LessonMapCollection, ReadingReplacesWhatWasThere) {
    auto maps = LessonMapCollection::Create();
    auto old = Named("Old");
    maps->Append(old);
    maps->Append(Named("Old2"));
    maps->SetDefaultMap(old);
    maps->FromXMLElement(Parse("<maps/>"));
    EXPECT_EQ(maps->Count(), 0);
    EXPECT_EQ(maps->DefaultMap(), nullptr);
}

TEST(LessonMapCollection, ReadingKeepsMapsWithoutNameUntilANameIsLookedUp) {
    auto read = LessonMapCollection::Create();
    read->FromXMLElement(Parse(R"(<maps><map/><map name="B"/></maps>)"));
    EXPECT_EQ(read->Count(), 2);
    EXPECT_EQ(read->DefaultMap(), read->ItemAt(0));
    EXPECT_RAISES(read->ToXMLElement(xml::Document::Create()), ErrNullArgument, "LessonMap.Name",
                  "Invalid use of Null");
    EXPECT_RAISES(read->FromXMLElement(Parse(R"(<maps default="B"><map/><map name="B"/></maps>)")),
                  ErrNullArgument, "LessonMap.Name", "Invalid use of Null");
}

TEST(LessonMapCollection, FailureToXMLElementWithNullDocument) {
    auto maps = LessonMapCollection::Create();
    EXPECT_RAISES(maps->ToXMLElement(xml::Document()), 94, "LessonMapCollection.ToXMLElement",
                  "Document cannot be null");
}

TEST(LessonMapCollection, FailureFromXMLElementWithNullElement) {
    auto maps = LessonMapCollection::Create();
    maps->Append(Named("Kept"));
    EXPECT_RAISES(maps->FromXMLElement(xml::Element()), 94, "LessonMapCollection.FromXMLElement",
                  "Element cannot be null");
    EXPECT_EQ(maps->Count(), 1);
}

TEST(LessonMapCollection, FailureFromXMLElementWithWrongElementName) {
    auto maps = LessonMapCollection::Create();
    auto kept = Named("Kept");
    maps->Append(kept);
    maps->Append(Named("Other"));
    maps->SetDefaultMap(kept);
    EXPECT_RAISES(maps->FromXMLElement(Parse(R"(<Maps><map name="A"/></Maps>)")), -2147220503,
                  "LessonMapCollection.FromXMLElement", "Element is not a <maps> element");
    EXPECT_RAISES(maps->FromXMLElement(Parse(R"(<map name="A"/>)")), static_cast<std::int32_t>(0x800403E9),
                  "LessonMapCollection.FromXMLElement", "Element is not a <maps> element");
    EXPECT_EQ(Names(*maps), (NameList{"Kept", "Other"}));
    EXPECT_EQ(maps->DefaultMap(), kept);
}

// ---- Clone ----

TEST(LessonMapCollection, CloneGivesNewMapObjectsWithTheSameNamesAndOrder) {
    auto maps = LessonMapCollection::Create();
    auto a = MapFrom(R"(<map name="A"><item sbid="1"/></map>)");
    auto b = MapFrom(R"(<map name="B" extra="e"><item sbid="2"><item sbid="3"/></item></map>)");
    maps->Append(a);
    maps->Append(b);
    auto copy = maps->Clone();
    ASSERT_EQ(copy->Count(), 2);
    EXPECT_NE(copy->ItemAt(0), a);
    EXPECT_NE(copy->ItemAt(1), b);
    EXPECT_EQ(Names(*copy), (NameList{"A", "B"}));
    EXPECT_EQ(copy->ItemAt(1)->ToXMLElement().Xml(), b->ToXMLElement().Xml());
    // The clone's maps are independent copies.
    copy->ItemAt(0)->InsertStoryboard("", sbitInsertAfter, "9");
    EXPECT_EQ(Shape(*a), "1");
    // No default was chosen: reading the written form chooses the first map.
    EXPECT_EQ(copy->DefaultMap(), copy->ItemAt(0));
    EXPECT_EQ(copy->ToXMLElement(xml::Document::Create()).Xml(),
              R"(<maps default="A"><map name="A"><item sbid="1"/><item sbid="9"/></map>)"
              R"(<map name="B" extra="e"><item sbid="2"><item sbid="3"/></item></map></maps>)");
}

TEST(LessonMapCollection, CloneChoosesTheDefaultByName) {
    auto maps = LessonMapCollection::Create();
    auto twin1 = Named("Twin");
    auto twin2 = Named("Twin");
    maps->Append(Named("A"));
    maps->Append(twin1);
    maps->Append(twin2);
    maps->SetDefaultMap(twin2);
    auto copy = maps->Clone();
    // Written as the name "Twin", read back as the first map of that name.
    EXPECT_EQ(copy->DefaultMap(), copy->ItemAt(1));
}

TEST(LessonMapCollection, CloneOfOneMapMakesItTheStoredDefault) {
    auto maps = LessonMapCollection::Create();
    maps->Append(Named("Only"));
    auto copy = maps->Clone();
    EXPECT_EQ(maps->DefaultMap(), nullptr);
    EXPECT_EQ(copy->DefaultMap(), copy->ItemAt(0));
}

TEST(LessonMapCollection, CloneOfAnEmptyCollection) {
    auto copy = LessonMapCollection::Create()->Clone();
    EXPECT_EQ(copy->Count(), 0);
    EXPECT_EQ(copy->DefaultMap(), nullptr);
}

TEST(LessonMapCollection, CloneWithANamelessDefaultRaisesAsWritingDoes) {
    auto maps = LessonMapCollection::Create();
    maps->Append(MapFrom("<map/>"));
    maps->Append(Named("B"));
    EXPECT_RAISES(maps->Clone(), ErrNullArgument, "LessonMap.Name", "Invalid use of Null");
}

TEST(LessonMapCollection, CloneMatchesTheWriteAndReadRoundTrip) {
    auto maps = LessonMapCollection::Create();
    maps->Append(MapFrom(R"(<map name="X"><item sbid="1"/></map>)"));
    maps->Append(MapFrom(R"(<map name=""><item sbid="2"/></map>)"));
    maps->Append(MapFrom(R"(<map name="Y" z="1"><!--c--><item sbid="3">t</item></map>)"));
    maps->SetDefaultMap(maps->ItemAt(1));
    auto viaXml = LessonMapCollection::Create();
    viaXml->FromXMLElement(maps->ToXMLElement(xml::Document::Create()));
    auto copy = maps->Clone();
    EXPECT_EQ(copy->ToXMLElement(xml::Document::Create()).Xml(),
              viaXml->ToXMLElement(xml::Document::Create()).Xml());
    EXPECT_EQ(copy->IndexOf(copy->DefaultMap()), viaXml->IndexOf(viaXml->DefaultMap()));
    // An empty default name is ignored on reading: the first map is the default.
    EXPECT_EQ(copy->DefaultMap(), copy->ItemAt(0));
}

}  // namespace
}  // namespace quillbank

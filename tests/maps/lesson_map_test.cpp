#include <quillbank/lesson_map.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <quillbank/error.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "common/raises.hpp"
#include "maps/lesson_map_access.hpp"
#include "maps/map_helpers.hpp"

namespace quillbank {
namespace {

using testing::MapFrom;
using testing::MapOf;
using testing::Parse;
using testing::Shape;
using testing::StoryboardsOf;

// A(B, C(D)), E
std::shared_ptr<LessonMap> SampleMap() {
    return MapFrom(
        R"(<map name="Sample"><item sbid="A"><item sbid="B"/><item sbid="C"><item sbid="D"/></item></item>)"
        R"(<item sbid="E"/></map>)");
}

// ---- Creation, name, Clear ----

TEST(LessonMap, NewMapWritesAnEmptyMapElementNamedNewMap) {
    auto map = LessonMap::Create();
    const xml::Element element = map->ToXMLElement();
    EXPECT_EQ(element.Name(), "map");
    EXPECT_EQ(element.GetAttribute("name"), "New Map");
    EXPECT_EQ(element.AttributeCount(), 1);
    EXPECT_FALSE(element.HasChildNodes());
    EXPECT_EQ(element.Xml(), R"(<map name="New Map"/>)");
    EXPECT_EQ(map->Name(), "New Map");
}

TEST(LessonMap, NameIsTheNameAttribute) {
    auto map = LessonMap::Create();
    map->SetName("Main route");
    EXPECT_EQ(map->Name(), "Main route");
    map->SetName("");
    EXPECT_EQ(map->Name(), "");
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name=""/>)");
    map->SetName("Fractions \xC2\xBD & <quarters>");
    EXPECT_EQ(map->Name(), "Fractions \xC2\xBD & <quarters>");
    EXPECT_EQ(map->ToXMLElement().GetAttribute("name"), "Fractions \xC2\xBD & <quarters>");
}

TEST(LessonMap, NameSetRefusesTextThatIsNotUtf8) {
    auto map = LessonMap::Create();
    EXPECT_RAISES(map->SetName("bad \xFF text"), ErrInvalidArgument, "LessonMap.Name (Set)",
                  "Invalid property value: the text is not valid UTF-8.");
    EXPECT_EQ(map->Name(), "New Map");
}

TEST(LessonMap, NameSetKeepsItemsAndAttributeOrder) {
    auto map = MapFrom(R"(<map extra="1" name="Old"><item sbid="A"/></map>)");
    map->SetName("New");
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map extra="1" name="New"><item sbid="A"/></map>)");
}

TEST(LessonMap, ClearDropsEveryItemAndKeepsTheName) {
    auto map = SampleMap();
    map->Clear();
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="Sample"/>)");
    EXPECT_FALSE(map->Contains("A"));
}

TEST(LessonMap, ClearDropsForeignAttributes) {
    auto map = MapFrom(R"(<map name="M" extra="x"><item sbid="A"/></map>)");
    map->Clear();
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="M"/>)");
}

// ---- Contains and the search order ----

TEST(LessonMap, ContainsFindsItemsAtAnyDepth) {
    auto map = SampleMap();
    for (const char* sbid : {"A", "B", "C", "D", "E"}) {
        EXPECT_TRUE(map->Contains(sbid)) << sbid;
    }
    EXPECT_FALSE(map->Contains("F"));
    EXPECT_FALSE(map->Contains(""));
    EXPECT_FALSE(LessonMap::Create()->Contains("A"));
}

TEST(LessonMap, ContainsComparesIdentifiersExactly) {
    auto map = MapOf({"abc-DEF"});
    EXPECT_TRUE(map->Contains("abc-DEF"));
    EXPECT_FALSE(map->Contains("ABC-DEF"));
    EXPECT_FALSE(map->Contains("abc-def"));
    EXPECT_FALSE(map->Contains("abc"));
    EXPECT_FALSE(map->Contains("abc-DEF "));
}

TEST(LessonMap, ContainsFindsAnEmptyIdentifierOnlyWhenAnItemHasOne) {
    auto map = MapFrom(R"(<map name="M"><item/></map>)");
    EXPECT_FALSE(map->Contains(""));
    auto withEmpty = MapFrom(R"(<map name="M"><item sbid=""/></map>)");
    EXPECT_TRUE(withEmpty->Contains(""));
}

TEST(LessonMap, ContainsLooksIntoElementsOfAnyNameAndPassesOverTextAndComments) {
    auto map = MapFrom(R"(<map name="M">text<!--note--><group><item sbid="A">inner</item></group></map>)");
    EXPECT_TRUE(map->Contains("A"));
    EXPECT_FALSE(map->Contains("text"));
    EXPECT_FALSE(map->Contains("note"));
}

TEST(LessonMap, SearchFindsAnItemBeforeItsDescendants) {
    auto map = MapFrom(R"(<map name="M"><item sbid="X"><item sbid="X"/></item></map>)");
    map->InsertStoryboard("X", sbitInsertAfter, "N");
    EXPECT_EQ(Shape(*map), "X(X),N");
}

TEST(LessonMap, SearchFindsASubtreeBeforeTheFollowingSibling) {
    auto map = MapFrom(R"(<map name="M"><item sbid="A"><item sbid="B"><item sbid="X"/></item></item>)"
                       R"(<item sbid="X"/></map>)");
    map->InsertStoryboard("X", sbitInsertAsChild, "N");
    EXPECT_EQ(Shape(*map), "A(B(X(N))),X");
}

// ---- InsertStoryboard ----

TEST(LessonMap, InsertWithoutRootAfterAppendsBeforeAndAsChildPrepend) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "A");
    map->InsertStoryboard("", sbitInsertBefore, "B");
    EXPECT_EQ(Shape(*map), "B,A");
    map->InsertStoryboard("", sbitInsertAsChild, "C");
    EXPECT_EQ(Shape(*map), "C,B,A");
}

TEST(LessonMap, InsertWithoutRootAndAnyOtherRelationGoesFirst) {
    auto map = MapOf({"A"});
    map->InsertStoryboard("", static_cast<StoryboardInsertTypes>(0), "B");
    map->InsertStoryboard("", static_cast<StoryboardInsertTypes>(4), "C");
    map->InsertStoryboard("", static_cast<StoryboardInsertTypes>(-7), "D");
    EXPECT_EQ(Shape(*map), "D,C,B,A");
}

TEST(LessonMap, InsertIntoAnEmptyMapAppendsWhateverTheRelation) {
    for (int relation : {0, 1, 2, 3, 4, 99}) {
        auto map = LessonMap::Create();
        map->InsertStoryboard("", static_cast<StoryboardInsertTypes>(relation), "A");
        EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="New Map"><item sbid="A"/></map>)") << relation;
    }
}

TEST(LessonMap, InsertAsChildOfAnItemWithChildrenBecomesFirstChildAndRelationFourLastChild) {
    auto map = MapFrom(R"(<map name="M"><item sbid="A"><item sbid="B"/><item sbid="C"/></item></map>)");
    map->InsertStoryboard("A", sbitInsertAsChild, "X");
    EXPECT_EQ(Shape(*map), "A(X,B,C)");
    map->InsertStoryboard("A", static_cast<StoryboardInsertTypes>(4), "Y");
    EXPECT_EQ(Shape(*map), "A(X,B,C,Y)");
}

TEST(LessonMap, InsertAsChildOfAnItemWithoutChildren) {
    auto map = MapOf({"A", "B"});
    map->InsertStoryboard("A", sbitInsertAsChild, "X");
    EXPECT_EQ(Shape(*map), "A(X),B");
    map->InsertStoryboard("B", static_cast<StoryboardInsertTypes>(4), "Y");
    EXPECT_EQ(Shape(*map), "A(X),B(Y)");
}

TEST(LessonMap, InsertWithAnyOtherRelationAppendsAsLastChildOfTheRoot) {
    for (int relation : {0, 5, -1, 1000}) {
        auto map = MapFrom(R"(<map name="M"><item sbid="A"><item sbid="B"/></item><item sbid="C"/></map>)");
        map->InsertStoryboard("A", static_cast<StoryboardInsertTypes>(relation), "X");
        EXPECT_EQ(Shape(*map), "A(B,X),C") << relation;
    }
}

TEST(LessonMap, InsertAfterAnItemWithANextSiblingGoesRightAfterIt) {
    auto map = SampleMap();
    map->InsertStoryboard("B", sbitInsertAfter, "X");
    EXPECT_EQ(Shape(*map), "A(B,X,C(D)),E");
    map->InsertStoryboard("A", sbitInsertAfter, "Y");
    EXPECT_EQ(Shape(*map), "A(B,X,C(D)),Y,E");
}

TEST(LessonMap, InsertAfterTheLastSiblingAppendsToItsParent) {
    auto map = SampleMap();
    map->InsertStoryboard("D", sbitInsertAfter, "X");
    EXPECT_EQ(Shape(*map), "A(B,C(D,X)),E");
    map->InsertStoryboard("E", sbitInsertAfter, "Y");
    EXPECT_EQ(Shape(*map), "A(B,C(D,X)),E,Y");
}

TEST(LessonMap, InsertBeforeAnItemGoesRightBeforeIt) {
    auto map = SampleMap();
    map->InsertStoryboard("C", sbitInsertBefore, "X");
    EXPECT_EQ(Shape(*map), "A(B,X,C(D)),E");
    map->InsertStoryboard("A", sbitInsertBefore, "Y");
    EXPECT_EQ(Shape(*map), "Y,A(B,X,C(D)),E");
    map->InsertStoryboard("D", sbitInsertBefore, "Z");
    EXPECT_EQ(Shape(*map), "Y,A(B,X,C(Z,D)),E");
}

TEST(LessonMap, InsertAfterAnIdentifierNotInTheMapAppendsAtTheEndOfTheTopLevel) {
    auto map = SampleMap();
    map->InsertStoryboard("NOPE", sbitInsertAfter, "X");
    EXPECT_EQ(Shape(*map), "A(B,C(D)),E,X");
}

TEST(LessonMap, InsertRelativeToAnUnknownRootIsTreatedAsNoRoot) {
    auto map = SampleMap();
    map->InsertStoryboard("nope", sbitInsertBefore, "X");
    map->InsertStoryboard("nope", sbitInsertAsChild, "Y");
    map->InsertStoryboard("a", static_cast<StoryboardInsertTypes>(9), "Z");
    EXPECT_EQ(Shape(*map), "Z,Y,X,A(B,C(D)),E");
}

TEST(LessonMap, InsertAnEmptyIdentifierBeforeAnExistingItemRaises380) {
    auto map = SampleMap();
    const std::string before = map->ToXMLElement().Xml();
    EXPECT_RAISES(map->InsertStoryboard("A", sbitInsertBefore, ""), ErrInvalidArgument, "LessonMap.InsertStoryboard",
                  "NewSBID cannot be ''.");
    EXPECT_EQ(map->ToXMLElement().Xml(), before);
}

TEST(LessonMap, FailureInsertStoryboardWithEmptyNewSBID) {
    auto map = LessonMap::Create();
    EXPECT_RAISES(map->InsertStoryboard("", sbitInsertAfter, ""), 380, "LessonMap.InsertStoryboard",
                  "NewSBID cannot be ''.");
    EXPECT_RAISES(map->InsertStoryboard("unknown", sbitInsertAsChild, ""), 380, "LessonMap.InsertStoryboard",
                  "NewSBID cannot be ''.");
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="New Map"/>)");
}

TEST(LessonMap, InsertRefusesAnIdentifierThatIsNotUtf8) {
    auto map = LessonMap::Create();
    EXPECT_RAISES(map->InsertStoryboard("", sbitInsertAfter, "\xC3("), ErrInvalidArgument,
                  "LessonMap.InsertStoryboard", "Invalid property value: the text is not valid UTF-8.");
    EXPECT_EQ(Shape(*map), "");
}

TEST(LessonMap, InsertingTheSameIdentifierTwiceYieldsTwoItemsAndLaterInsertionsUseTheFirst) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "A");
    map->InsertStoryboard("", sbitInsertAfter, "B");
    map->InsertStoryboard("", sbitInsertAfter, "A");
    EXPECT_EQ(Shape(*map), "A,B,A");
    EXPECT_TRUE(map->Contains("A"));
    map->InsertStoryboard("A", sbitInsertAsChild, "X");
    map->InsertStoryboard("A", sbitInsertAfter, "Y");
    map->InsertStoryboard("A", sbitInsertBefore, "Z");
    EXPECT_EQ(Shape(*map), "Z,A(X),Y,B,A");
}

TEST(LessonMap, InsertedItemsCarryOnlyTheirIdentifier) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "1F0E7B4A-0000-4000-8000-00000000000A");
    map->InsertStoryboard("1F0E7B4A-0000-4000-8000-00000000000A", sbitInsertAsChild, "x & \"y\"");
    EXPECT_EQ(map->ToXMLElement().Xml(),
              R"(<map name="New Map"><item sbid="1F0E7B4A-0000-4000-8000-00000000000A">)"
              R"(<item sbid="x &amp; &quot;y&quot;"/></item></map>)");
}

TEST(LessonMap, InsertWorksAmongForeignNodes) {
    auto map = MapFrom(R"(<map name="M"><!--c--><item sbid="A">t<item sbid="B"/></item></map>)");
    map->InsertStoryboard("", sbitInsertBefore, "X");
    map->InsertStoryboard("A", sbitInsertAsChild, "Y");
    EXPECT_EQ(map->ToXMLElement().Xml(),
              R"(<map name="M"><item sbid="X"/><!--c--><item sbid="A"><item sbid="Y"/>t<item sbid="B"/></item></map>)");
}

// ---- InsertMap ----

// P, Q(R)
std::shared_ptr<LessonMap> OtherMap() {
    return MapFrom(R"(<map name="Other"><item sbid="P"/><item sbid="Q"><item sbid="R"/></item></map>)");
}

TEST(LessonMap, InsertMapAsChildGoesAheadOfTheExistingChildren) {
    auto map = MapFrom(R"(<map name="M"><item sbid="A"><item sbid="Z"/></item></map>)");
    map->InsertMap("A", sbitInsertAsChild, OtherMap());
    EXPECT_EQ(Shape(*map), "A(P,Q(R),Z)");
}

TEST(LessonMap, InsertMapAsChildOfAnItemWithoutChildren) {
    auto map = MapOf({"A", "B"});
    map->InsertMap("A", sbitInsertAsChild, OtherMap());
    EXPECT_EQ(Shape(*map), "A(P,Q(R)),B");
}

TEST(LessonMap, InsertMapAfterAnItemWithANextSibling) {
    auto map = MapOf({"A", "B"});
    map->InsertMap("A", sbitInsertAfter, OtherMap());
    EXPECT_EQ(Shape(*map), "A,P,Q(R),B");
}

TEST(LessonMap, InsertMapAfterTheLastSiblingAppendsToItsParent) {
    auto map = SampleMap();
    map->InsertMap("D", sbitInsertAfter, OtherMap());
    EXPECT_EQ(Shape(*map), "A(B,C(D,P,Q(R))),E");
}

TEST(LessonMap, InsertMapBeforeAnItem) {
    auto map = SampleMap();
    map->InsertMap("C", sbitInsertBefore, OtherMap());
    EXPECT_EQ(Shape(*map), "A(B,P,Q(R),C(D)),E");
}

TEST(LessonMap, InsertMapWithAnyOtherRelationGoesBeforeTheRoot) {
    for (int relation : {0, 4, -3, 77}) {
        auto map = SampleMap();
        map->InsertMap("C", static_cast<StoryboardInsertTypes>(relation), OtherMap());
        EXPECT_EQ(Shape(*map), "A(B,P,Q(R),C(D)),E") << relation;
    }
}

TEST(LessonMap, InsertMapWithoutRootAfterAppendsAndOtherwisePrepends) {
    auto map = MapOf({"A", "B"});
    map->InsertMap("", sbitInsertAfter, OtherMap());
    EXPECT_EQ(Shape(*map), "A,B,P,Q(R)");
    for (int relation : {1, 3, 0, 4}) {
        auto other = MapOf({"A", "B"});
        other->InsertMap("", static_cast<StoryboardInsertTypes>(relation), OtherMap());
        EXPECT_EQ(Shape(*other), "P,Q(R),A,B") << relation;
    }
}

TEST(LessonMap, InsertMapRelativeToAnUnknownRootIsTreatedAsNoRoot) {
    auto map = MapOf({"A"});
    map->InsertMap("Nope", sbitInsertAsChild, MapOf({"X"}));
    map->InsertMap("Nope", sbitInsertAfter, MapOf({"Y"}));
    EXPECT_EQ(Shape(*map), "X,A,Y");
}

TEST(LessonMap, InsertMapIntoAnEmptyMap) {
    auto map = LessonMap::Create();
    map->InsertMap("", sbitInsertBefore, OtherMap());
    EXPECT_EQ(map->ToXMLElement().Xml(),
              R"(<map name="New Map"><item sbid="P"/><item sbid="Q"><item sbid="R"/></item></map>)");
}

TEST(LessonMap, InsertMapLeavesTheOtherMapUnchangedAndIgnoresItsName) {
    auto other = OtherMap();
    const std::string before = other->ToXMLElement().Xml();
    auto map = MapOf({"A"});
    map->InsertMap("A", sbitInsertAfter, other);
    EXPECT_EQ(other->ToXMLElement().Xml(), before);
    EXPECT_EQ(map->Name(), "New Map");
    // The copies are the map's own: changing them leaves the other map alone.
    map->InsertStoryboard("R", sbitInsertAsChild, "S");
    EXPECT_EQ(Shape(*map), "A,P,Q(R(S))");
    EXPECT_EQ(other->ToXMLElement().Xml(), before);
}

TEST(LessonMap, InsertMapTakesElementChildrenOnlyKeepingTheirContent) {
    auto other = MapFrom(R"(<map name="O">lead<!--c--><item sbid="P" note="n"><!--k--><item sbid="R"/></item>)"
                         R"(<group/>tail</map>)");
    auto map = MapOf({"A"});
    map->InsertMap("", sbitInsertAfter, other);
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="New Map"><item sbid="A"/><item sbid="P" note="n">)"
                                         R"(<!--k--><item sbid="R"/></item><group/></map>)");
}

TEST(LessonMap, InsertMapOfAnEmptyMapChangesNothing) {
    auto map = SampleMap();
    const std::string before = map->ToXMLElement().Xml();
    map->InsertMap("A", sbitInsertAsChild, LessonMap::Create());
    EXPECT_EQ(map->ToXMLElement().Xml(), before);
}

TEST(LessonMap, InsertMapOfTheMapItself) {
    auto map = MapOf({"A", "B"});
    map->InsertMap("B", sbitInsertAsChild, map);
    EXPECT_EQ(Shape(*map), "A,B(A,B)");
    map->InsertMap("", sbitInsertAfter, map);
    EXPECT_EQ(Shape(*map), "A,B(A,B),A,B(A,B)");
}

TEST(LessonMap, InsertMapUsesTheFirstOccurrenceOfTheRoot) {
    auto map = MapFrom(R"(<map name="M"><item sbid="A"><item sbid="X"/></item><item sbid="X"/></map>)");
    map->InsertMap("X", sbitInsertAsChild, MapOf({"N"}));
    EXPECT_EQ(Shape(*map), "A(X(N)),X");
}

TEST(LessonMap, FailureInsertMapWithNullNewMap) {
    auto map = SampleMap();
    const std::string before = map->ToXMLElement().Xml();
    EXPECT_RAISES(map->InsertMap("A", sbitInsertAfter, nullptr), 380, "LessonMap.InsertMap",
                  "NewMap cannot be null.");
    EXPECT_RAISES(map->InsertMap("", sbitInsertBefore, nullptr), 380, "LessonMap.InsertMap",
                  "NewMap cannot be null.");
    EXPECT_EQ(map->ToXMLElement().Xml(), before);
}

// ---- RemoveStoryboards, KeepStoryboards ----

TEST(LessonMap, RemoveStoryboardsLetsTheDescendantsOfARemovedItemTakeItsPlace) {
    auto map = SampleMap();
    map->RemoveStoryboards(StoryboardsOf({"A"}));
    EXPECT_EQ(Shape(*map), "B,C(D),E");
    EXPECT_EQ(map->Name(), "Sample");
}

TEST(LessonMap, RemoveStoryboardsDropsEveryOccurrenceAtEveryDepth) {
    auto map = MapFrom(R"(<map name="M"><item sbid="X"><item sbid="A"><item sbid="X"/></item></item>)"
                       R"(<item sbid="B"/><item sbid="X"/></map>)");
    map->RemoveStoryboards(StoryboardsOf({"X", "B"}));
    EXPECT_EQ(Shape(*map), "A");
}

TEST(LessonMap, RemoveStoryboardsMatchesIdentifiersAsTheSetDoesWithoutRegardToCase) {
    auto map = MapOf({"abc", "DEF"});
    map->RemoveStoryboards(StoryboardsOf({"ABC"}));
    EXPECT_EQ(Shape(*map), "DEF");
}

TEST(LessonMap, RemoveStoryboardsWithNullOrAnEmptySetChangesNothing) {
    auto map = MapFrom(R"(<map name="M" extra="1"><item sbid="A" note="n"/></map>)");
    const std::string before = map->ToXMLElement().Xml();
    map->RemoveStoryboards(nullptr);
    map->RemoveStoryboards(StoryboardCollection::Create());
    EXPECT_EQ(map->ToXMLElement().Xml(), before);
}

TEST(LessonMap, RemoveStoryboardsRebuildsItemsWithTheirIdentifierOnly) {
    auto map = MapFrom(R"(<map name="M" extra="1"><item sbid="A" note="n">t<!--c--><item sbid="B"/></item>)"
                       R"(<group sbid="G"/><item/></map>)");
    map->RemoveStoryboards(StoryboardsOf({"B"}));
    EXPECT_EQ(map->ToXMLElement().Xml(),
              R"(<map name="M"><item sbid="A"/><item sbid="G"/><item sbid=""/></map>)");
}

TEST(LessonMap, KeepStoryboardsKeepsTheQualifyingDescendantsOfDroppedItems) {
    auto map = MapFrom(
        R"(<map name="M"><item sbid="A"><item sbid="B"/><item sbid="C"><item sbid="D"/></item></item></map>)");
    map->KeepStoryboards(StoryboardsOf({"B", "D"}));
    EXPECT_EQ(Shape(*map), "B,D");
}

TEST(LessonMap, KeepStoryboardsKeepsNestingBetweenKeptItems) {
    auto map = SampleMap();
    map->KeepStoryboards(StoryboardsOf({"A", "D", "E"}));
    EXPECT_EQ(Shape(*map), "A(D),E");
    EXPECT_EQ(map->ToXMLElement().Xml(),
              R"(<map name="Sample"><item sbid="A"><item sbid="D"/></item><item sbid="E"/></map>)");
}

TEST(LessonMap, KeepStoryboardsWithAnEmptyCollectionLeavesTheMapUnchanged) {
    auto map = SampleMap();
    const std::string before = map->ToXMLElement().Xml();
    map->KeepStoryboards(StoryboardCollection::Create());
    EXPECT_EQ(map->ToXMLElement().Xml(), before);
    map->KeepStoryboards(nullptr);
    EXPECT_EQ(map->ToXMLElement().Xml(), before);
}

TEST(LessonMap, KeepStoryboardsOfNoItemOfTheMapEmptiesIt) {
    auto map = SampleMap();
    map->KeepStoryboards(StoryboardsOf({"Z"}));
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="Sample"/>)");
}

TEST(LessonMap, KeepStoryboardsDropsItemsWithoutIdentifierButVisitsTheirChildren) {
    auto map = MapFrom(R"(<map name="M"><item><item sbid="A"/></item></map>)");
    map->KeepStoryboards(StoryboardsOf({"A"}));
    EXPECT_EQ(Shape(*map), "A");
}

// ---- RemapStoryboardIDs ----

TEST(LessonMap, RemapStoryboardIDsRewritesMappedIdentifiersAndKeepsOthers) {
    auto map = SampleMap();
    auto mapping = PersistedPropertyCollection::Create();
    mapping->SetString("A", "A2");
    mapping->SetString("d", "D2");
    mapping->SetString("E", "E2", etBase64Encoded);
    detail::LessonMapAccess::RemapStoryboardIDs(*map, *mapping);
    EXPECT_EQ(Shape(*map), "A2(B,C(D2)),E2");
    EXPECT_EQ(map->Name(), "Sample");
}

TEST(LessonMap, RemapStoryboardIDsDropsItemsWithoutIdentifierWithTheirSubtree) {
    auto map = MapFrom(R"(<map name="M" extra="1"><item sbid="A" note="n"><item><item sbid="B"/></item>)"
                       R"(<item sbid=""><item sbid="C"/></item>t<!--c--><item sbid="D"/></item></map>)");
    detail::LessonMapAccess::RemapStoryboardIDs(*map, *PersistedPropertyCollection::Create());
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="M"><item sbid="A"><item sbid="D"/></item></map>)");
}

TEST(LessonMap, RemapStoryboardIDsMapsEveryOccurrence) {
    auto map = MapFrom(R"(<map name="M"><item sbid="X"><item sbid="X"/></item><item sbid="X"/></map>)");
    auto mapping = PersistedPropertyCollection::Create();
    mapping->SetString("X", "Y");
    detail::LessonMapAccess::RemapStoryboardIDs(*map, *mapping);
    EXPECT_EQ(Shape(*map), "Y(Y),Y");
}

// ---- ToXMLElement, FromXMLElement, Clone ----

TEST(LessonMap, ToXMLElementGivesAnUnattachedCopy) {
    auto map = SampleMap();
    xml::Element copy = map->ToXMLElement();
    EXPECT_TRUE(copy.Parent().IsNull());
    EXPECT_FALSE(copy.OwnerDocument().IsNull());
    // Changes to the copy do not reach the map, nor later changes to the map the copy.
    copy.SetAttribute("name", "Changed");
    copy.FirstChild().AsElement().SetAttribute("sbid", "Z");
    EXPECT_EQ(map->Name(), "Sample");
    EXPECT_EQ(Shape(*map), "A(B,C(D)),E");
    map->InsertStoryboard("", sbitInsertAfter, "F");
    EXPECT_EQ(Shape(copy), "Z(B,C(D)),E");
}

TEST(LessonMap, ToXMLElementWithADocumentMakesTheCopyInThatDocument) {
    auto map = SampleMap();
    xml::Document document = xml::Document::Create();
    xml::Element copy = map->ToXMLElement(document);
    EXPECT_TRUE(copy.OwnerDocument() == document);
    EXPECT_TRUE(copy.Parent().IsNull());
    EXPECT_TRUE(document.DocumentElement().IsNull());
    EXPECT_FALSE(document.PreserveWhiteSpace());
    document.SetDocumentElement(copy);
    EXPECT_EQ(document.DocumentElement().Xml(),
              R"(<map name="Sample"><item sbid="A"><item sbid="B"/><item sbid="C"><item sbid="D"/></item></item>)"
              R"(<item sbid="E"/></map>)");
    // A second copy into a document that already has a root element.
    xml::Element again = map->ToXMLElement(document);
    EXPECT_TRUE(again.OwnerDocument() == document);
    EXPECT_TRUE(again.Parent().IsNull());
    EXPECT_EQ(again.Xml(), copy.Xml());
    EXPECT_TRUE(document.DocumentElement() == copy);
}

TEST(LessonMap, ToXMLElementCopiesAreIndependentOfEachOther) {
    auto map = SampleMap();
    xml::Element first = map->ToXMLElement();
    xml::Element second = map->ToXMLElement();
    EXPECT_FALSE(first == second);
    first.SetAttribute("name", "one");
    EXPECT_EQ(second.GetAttribute("name"), "Sample");
}

TEST(LessonMap, FromXMLElementTakesTheElementWholeWithForeignContent) {
    const std::string text = R"(<map version="2" name="M"><!--made by hand--><item sbid="A" color="red">)"
                             R"(<item sbid="B"/>note</item><other x="1"/></map>)";
    auto map = MapFrom(text);
    EXPECT_EQ(map->ToXMLElement().Xml(), text);
    EXPECT_EQ(map->Name(), "M");
    EXPECT_TRUE(map->Contains("B"));
}

TEST(LessonMap, FromXMLElementLeavesTheSourceElementInPlaceAndIndependent) {
    xml::Document document = xml::Document::Create();
    ASSERT_TRUE(document.LoadXML(R"(<lesson><maps><map name="M"><item sbid="A"/></map></maps></lesson>)"));
    xml::Element source = document.DocumentElement().FirstChild().FirstChild().AsElement();
    auto map = LessonMap::Create();
    map->FromXMLElement(source);
    EXPECT_EQ(document.DocumentElement().Xml(),
              R"(<lesson><maps><map name="M"><item sbid="A"/></map></maps></lesson>)");
    source.SetAttribute("name", "Changed");
    map->InsertStoryboard("", sbitInsertAfter, "B");
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="M"><item sbid="A"/><item sbid="B"/></map>)");
    EXPECT_EQ(source.Xml(), R"(<map name="Changed"><item sbid="A"/></map>)");
}

TEST(LessonMap, FromXMLElementTakesAnUnattachedElementAndLeavesItUsable) {
    xml::Document document = xml::Document::Create();
    xml::Element source = document.CreateElement("map");
    source.SetAttribute("name", "Loose");
    auto map = LessonMap::Create();
    map->FromXMLElement(source);
    EXPECT_EQ(map->Name(), "Loose");
    EXPECT_TRUE(source.OwnerDocument() == document);
    EXPECT_EQ(source.Xml(), R"(<map name="Loose"/>)");
}

TEST(LessonMap, FromXMLElementOfItsOwnCopy) {
    auto map = SampleMap();
    map->FromXMLElement(map->ToXMLElement());
    EXPECT_EQ(Shape(*map), "A(B,C(D)),E");
    EXPECT_EQ(map->Name(), "Sample");
}

TEST(LessonMap, FailureFromXMLElementWithNullElement) {
    auto map = SampleMap();
    EXPECT_RAISES(map->FromXMLElement(xml::Element()), ErrNullArgument, "LessonMap.FromXMLElement",
                  "Element cannot be null");
    EXPECT_EQ(Shape(*map), "A(B,C(D)),E");
}

TEST(LessonMap, FailureFromXMLElementWithWrongElementName) {
    auto map = SampleMap();
    EXPECT_RAISES(map->FromXMLElement(Parse(R"(<Map name="x"/>)")), static_cast<std::int32_t>(0x800403E9),
                  "LessonMap.FromXMLElement", "Element is not a <map> element");
    EXPECT_RAISES(map->FromXMLElement(Parse(R"(<maps/>)")), -2147220503, "LessonMap.FromXMLElement",
                  "Element is not a <map> element");
    EXPECT_EQ(Shape(*map), "A(B,C(D)),E");
    EXPECT_EQ(map->Name(), "Sample");
}

TEST(LessonMap, ChangesToACloneLeaveTheOriginalUnchanged) {
    auto map = SampleMap();
    auto clone = map->Clone();
    ASSERT_NE(clone, map);
    EXPECT_EQ(clone->Name(), "Sample");
    EXPECT_EQ(clone->ToXMLElement().Xml(), map->ToXMLElement().Xml());
    clone->SetName("Copy");
    clone->InsertStoryboard("C", sbitInsertAsChild, "X");
    clone->RemoveStoryboards(StoryboardsOf({"E"}));
    EXPECT_EQ(map->Name(), "Sample");
    EXPECT_EQ(Shape(*map), "A(B,C(D)),E");
    map->InsertStoryboard("", sbitInsertAfter, "Y");
    EXPECT_EQ(Shape(*clone), "A(B,C(X,D))");
}

TEST(LessonMap, CloneKeepsForeignContentAndAMissingName) {
    const std::string text = R"(<map x="1"><!--c--><item sbid="A" y="2">t</item></map>)";
    auto clone = MapFrom(text)->Clone();
    EXPECT_EQ(clone->ToXMLElement().Xml(), text);
}

// ---- A map without a name ----

TEST(LessonMap, NamelessMapRaisesOnName) {
    auto map = MapFrom(R"(<map><item sbid="A"/></map>)");
    EXPECT_RAISES(map->Name(), ErrNullArgument, "LessonMap.Name", "Invalid use of Null");
}

TEST(LessonMap, NamelessMapRaisesOnEveryOperationCarryingTheNameOver) {
    const std::string text = R"(<map><item sbid="A"/></map>)";
    auto map = MapFrom(text);
    EXPECT_RAISES(map->Clear(), 94, "LessonMap.Clear", "Invalid use of Null");
    EXPECT_RAISES(map->RemoveStoryboards(StoryboardsOf({"A"})), 94, "LessonMap.RemoveStoryboards",
                  "Invalid use of Null");
    EXPECT_RAISES(map->KeepStoryboards(StoryboardsOf({"A"})), 94, "LessonMap.KeepStoryboards",
                  "Invalid use of Null");
    EXPECT_RAISES(detail::LessonMapAccess::RemapStoryboardIDs(*map, *PersistedPropertyCollection::Create()), 94,
                  "LessonMap.RemapStoryboardIDs", "Invalid use of Null");
    EXPECT_EQ(map->ToXMLElement().Xml(), text);
}

TEST(LessonMap, NamelessMapWorksWhereTheNameIsNotCarriedOver) {
    auto map = MapFrom(R"(<map><item sbid="A"/></map>)");
    map->RemoveStoryboards(nullptr);
    map->KeepStoryboards(StoryboardCollection::Create());
    map->InsertStoryboard("A", sbitInsertAsChild, "B");
    map->InsertMap("", sbitInsertAfter, MapOf({"C"}));
    EXPECT_TRUE(map->Contains("B"));
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map><item sbid="A"><item sbid="B"/></item><item sbid="C"/></map>)");
    map->SetName("Named");
    EXPECT_EQ(map->Name(), "Named");
}

}  // namespace
}  // namespace quillbank

#include <quillbank/storyboard_collection.hpp>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>

#include <string>
#include <vector>

#include "common/raises.hpp"
#include "storyboards/storyboard_access.hpp"

namespace quillbank {
namespace {

using detail::StoryboardAccess;

std::shared_ptr<Storyboard> WithSBID(const std::string& sbid, const std::string& title = "") {
    auto sb = Storyboard::Create();
    StoryboardAccess::SetSBID(*sb, sbid);
    if (!title.empty()) {
        sb->SetTitle(title);
    }
    return sb;
}

std::vector<std::string> Ids(const StoryboardCollection& collection) {
    std::vector<std::string> ids;
    for (auto& sb : collection) {
        ids.push_back(sb->SBID());
    }
    return ids;
}

std::vector<std::string> Titles(const StoryboardCollection& collection) {
    std::vector<std::string> titles;
    for (auto& sb : collection) {
        titles.push_back(sb->Title());
    }
    return titles;
}

using Names = std::vector<std::string>;

xml::Element Parse(const std::string& text, xml::Document document = xml::Document::Create()) {
    EXPECT_TRUE(document.LoadXML(text));
    return document.DocumentElement();
}

TEST(StoryboardCollection, CreationState) {
    auto coll = StoryboardCollection::Create();
    EXPECT_EQ(coll->Count(), 0);
    EXPECT_EQ(coll->CurrentSB(), nullptr);
    EXPECT_EQ(coll->CurrentSBID(), "");
    EXPECT_TRUE(coll->begin() == coll->end());
}

TEST(StoryboardCollection, AddAppendsInOrderAndReturnsTheStoryboard) {
    auto coll = StoryboardCollection::Create();
    auto a = WithSBID("A");
    EXPECT_EQ(coll->Add(a), a);
    coll->Add(WithSBID("B"));
    coll->Add(WithSBID("C"));
    EXPECT_EQ(coll->Count(), 3);
    EXPECT_EQ(Ids(*coll), (Names{"A", "B", "C"}));
    EXPECT_EQ(coll->Item("A"), a);
}

TEST(StoryboardCollection, AddOfNullDoesNothing) {
    auto coll = StoryboardCollection::Create();
    EXPECT_EQ(coll->Add(nullptr), nullptr);
    EXPECT_EQ(coll->Count(), 0);
}

TEST(StoryboardCollection, KeysAreMatchedWithoutRegardToCase) {
    auto coll = StoryboardCollection::Create();
    auto sb = coll->Add(WithSBID("abc-Def"));
    EXPECT_TRUE(coll->Contains("ABC-DEF"));
    EXPECT_TRUE(coll->Contains("abc-def"));
    EXPECT_EQ(coll->Item("ABC-def"), sb);
    EXPECT_FALSE(coll->Contains("abc-de"));
    coll->Add(WithSBID("ABC-DEF", "second"));
    EXPECT_EQ(coll->Count(), 1);
    EXPECT_EQ(coll->Item("abc-def")->Title(), "second");
}

TEST(StoryboardCollection, NonAsciiKeysAreFoldedToo) {
    auto coll = StoryboardCollection::Create();
    auto sb = coll->Add(WithSBID("\xC3\x84pfel"));  // "Äpfel"
    EXPECT_EQ(coll->Item("\xC3\xA4PFEL"), sb);      // "äPFEL"
}

// Edge case: Add with an existing SBID replaces and moves to the end.
TEST(StoryboardCollection, AddOfAnExistingSbidReplacesTheEntryAndMovesItToTheEnd) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("A", "first A"));
    coll->Add(WithSBID("B"));
    auto replacement = coll->Add(WithSBID("A", "second A"));
    EXPECT_EQ(coll->Count(), 2);
    EXPECT_EQ(Ids(*coll), (Names{"B", "A"}));
    EXPECT_EQ(coll->Item("A"), replacement);
}

// Edge case: ... and when the replaced identifier was current, CurrentSB becomes none.
TEST(StoryboardCollection, AddThatReplacesTheCurrentStoryboardClearsCurrentSB) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->Add(WithSBID("B"));
    coll->SetCurrentSB(a);
    coll->Add(WithSBID("A"));
    EXPECT_EQ(coll->CurrentSB(), nullptr);
    EXPECT_EQ(coll->CurrentSBID(), "");
}

TEST(StoryboardCollection, AddThatReplacesInOtherCaseLeavesCurrentSB) {
    // The current storyboard is compared exactly, so "a" does not clear "A".
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->SetCurrentSB(a);
    coll->Add(WithSBID("a"));
    EXPECT_EQ(coll->CurrentSB(), a);
    EXPECT_EQ(Ids(*coll), (Names{"a"}));
}

TEST(StoryboardCollection, AddOfANewIdentifierLeavesCurrentSB) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->SetCurrentSB(a);
    coll->Add(WithSBID("B"));
    EXPECT_EQ(coll->CurrentSB(), a);
}

// Edge case: Item and CurrentSBID put with an unknown identifier give none.
TEST(StoryboardCollection, ItemAndCurrentSbidPutWithAnUnknownIdentifierYieldNone) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    EXPECT_EQ(coll->Item("nope"), nullptr);
    coll->SetCurrentSB(a);
    coll->SetCurrentSBID("nope");
    EXPECT_EQ(coll->CurrentSB(), nullptr);
    EXPECT_EQ(coll->CurrentSBID(), "");
}

TEST(StoryboardCollection, CurrentSbidPutFindsTheEntryAndEmptyClears) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->SetCurrentSBID("a");
    EXPECT_EQ(coll->CurrentSB(), a);
    EXPECT_EQ(coll->CurrentSBID(), "A");
    coll->SetCurrentSBID("");
    EXPECT_EQ(coll->CurrentSB(), nullptr);
}

TEST(StoryboardCollection, CurrentSbNeedNotBeAMember) {
    auto coll = StoryboardCollection::Create();
    auto outsider = WithSBID("X");
    coll->SetCurrentSB(outsider);
    EXPECT_EQ(coll->CurrentSB(), outsider);
    EXPECT_EQ(coll->CurrentSBID(), "X");
    EXPECT_EQ(coll->Count(), 0);
}

TEST(StoryboardCollection, RemoveClearsCurrentOnlyOnAnExactMatch) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->Add(WithSBID("B"));
    coll->SetCurrentSB(a);
    coll->Remove("a");  // removes the entry, but "a" is not exactly "A"
    EXPECT_FALSE(coll->Contains("A"));
    EXPECT_EQ(coll->CurrentSB(), a);
    coll->Add(a);
    coll->Remove("A");
    EXPECT_EQ(coll->CurrentSB(), nullptr);
    EXPECT_EQ(Ids(*coll), (Names{"B"}));
}

TEST(StoryboardCollection, RemoveOfAnUnknownKeyIsIgnored) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("A"));
    coll->Remove("Z");
    coll->Remove("");
    EXPECT_EQ(coll->Count(), 1);
}

TEST(StoryboardCollection, RemoveOfAnOutsideCurrentSbidClearsCurrent) {
    auto coll = StoryboardCollection::Create();
    coll->SetCurrentSB(WithSBID("X"));
    coll->Remove("X");
    EXPECT_EQ(coll->CurrentSB(), nullptr);
}

TEST(StoryboardCollection, RemoveKeepsTheOrderOfTheRest) {
    auto coll = StoryboardCollection::Create();
    for (const char* id : {"A", "B", "C", "D"}) {
        coll->Add(WithSBID(id));
    }
    coll->Remove("B");
    coll->Remove("D");
    EXPECT_EQ(Ids(*coll), (Names{"A", "C"}));
}

TEST(StoryboardCollection, TheKeyIsTheIdentifierAtTheTimeOfAdding) {
    auto coll = StoryboardCollection::Create();
    auto sb = coll->Add(WithSBID("OLD"));
    sb->FromXMLElement(Parse("<storyboard sbid=\"NEW\"/>"));
    EXPECT_EQ(coll->Item("OLD"), sb);
    EXPECT_EQ(coll->Item("NEW"), nullptr);
}

TEST(StoryboardCollection, ClearEmptiesTheSetAndTheCurrentStoryboardAndReturnsEmpty) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->SetCurrentSB(a);
    EXPECT_TRUE(coll->Clear().IsEmpty());
    EXPECT_EQ(coll->Count(), 0);
    EXPECT_EQ(coll->CurrentSB(), nullptr);
    EXPECT_FALSE(coll->Contains("A"));
}

TEST(StoryboardCollection, OneStoryboardMaySitInSeveralCollections) {
    auto one = StoryboardCollection::Create();
    auto two = StoryboardCollection::Create();
    auto sb = one->Add(WithSBID("A"));
    two->Add(sb);
    EXPECT_EQ(one->Item("A"), two->Item("A"));
    one->Remove("A");
    EXPECT_EQ(two->Item("A"), sb);
}

TEST(StoryboardCollection, RemoveCollectionRemovesTheGivenIdentifiers) {
    auto coll = StoryboardCollection::Create();
    for (const char* id : {"A", "B", "C"}) {
        coll->Add(WithSBID(id));
    }
    auto other = StoryboardCollection::Create();
    other->Add(WithSBID("c"));
    other->Add(WithSBID("A"));
    other->Add(WithSBID("Q"));
    coll->RemoveCollection(other);
    EXPECT_EQ(Ids(*coll), (Names{"B"}));
    coll->RemoveCollection(nullptr);
    EXPECT_EQ(coll->Count(), 1);
}

// Edge case: RemoveCollection leaves CurrentSB pointing at a removed storyboard.
TEST(StoryboardCollection, RemoveCollectionOfTheCurrentStoryboardLeavesCurrentSbPointingAtIt) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->Add(WithSBID("B"));
    coll->SetCurrentSB(a);
    auto other = StoryboardCollection::Create();
    other->Add(a);
    coll->RemoveCollection(other);
    EXPECT_FALSE(coll->Contains("A"));
    EXPECT_EQ(coll->CurrentSB(), a);
    EXPECT_EQ(coll->CurrentSBID(), "A");
}

TEST(StoryboardCollection, RemoveCollectionOfItselfEmptiesIt) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("A"));
    coll->Add(WithSBID("B"));
    coll->RemoveCollection(coll);
    EXPECT_EQ(coll->Count(), 0);
}

// Edge case: AddCollection without overwriting keeps existing entries.
TEST(StoryboardCollection, AddCollectionWithoutOverwriteKeepsExistingEntriesAndAppendsNewOnes) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A", "mine A"));
    coll->Add(WithSBID("B", "mine B"));
    auto other = StoryboardCollection::Create();
    other->Add(WithSBID("C", "their C"));
    other->Add(WithSBID("a", "their A"));
    other->Add(WithSBID("D", "their D"));
    coll->AddCollection(other, false);
    EXPECT_EQ(Titles(*coll), (Names{"mine A", "mine B", "their C", "their D"}));
    EXPECT_EQ(coll->Item("A"), a);
    EXPECT_EQ(coll->Item("C"), other->Item("C"));  // shared, not copied
}

// Edge case: AddCollection with overwriting replaces and moves to the end.
TEST(StoryboardCollection, AddCollectionWithOverwriteReplacesEntriesAndMovesThemToTheEnd) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A", "mine A"));
    coll->Add(WithSBID("B", "mine B"));
    coll->SetCurrentSB(a);
    auto other = StoryboardCollection::Create();
    other->Add(WithSBID("a", "their A"));
    other->Add(WithSBID("C", "their C"));
    coll->AddCollection(other);
    EXPECT_EQ(Titles(*coll), (Names{"mine B", "their A", "their C"}));
    EXPECT_EQ(coll->Item("A"), other->Item("A"));
    // Overwriting does not go through Remove: the current storyboard stays.
    EXPECT_EQ(coll->CurrentSB(), a);
}

TEST(StoryboardCollection, AddCollectionOfNullOrItselfChangesNothing) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("A"));
    coll->Add(WithSBID("B"));
    coll->AddCollection(nullptr);
    coll->AddCollection(coll, false);
    EXPECT_EQ(Ids(*coll), (Names{"A", "B"}));
    coll->AddCollection(coll, true);
    EXPECT_EQ(Ids(*coll), (Names{"A", "B"}));
}

TEST(StoryboardCollection, CloneMakesDeepCopiesWithTheSameIdentifiersAndCurrent) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A", "a"));
    coll->Add(WithSBID("B", "b"));
    a->Properties()->SetString("k", "v");
    coll->SetCurrentSBID("B");
    auto clone = coll->Clone();
    EXPECT_EQ(Ids(*clone), (Names{"A", "B"}));
    EXPECT_NE(clone->Item("A"), a);
    EXPECT_EQ(clone->Item("A")->Properties()->GetString("k", ""), "v");
    EXPECT_EQ(clone->CurrentSB(), clone->Item("B"));
    EXPECT_NE(clone->CurrentSB(), coll->CurrentSB());
    clone->Item("A")->SetTitle("changed");
    EXPECT_EQ(a->Title(), "a");
}

TEST(StoryboardCollection, CloneOfAnOutsideCurrentStoryboardHasNone) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("A"));
    coll->SetCurrentSB(WithSBID("X"));
    EXPECT_EQ(coll->Clone()->CurrentSB(), nullptr);
    EXPECT_EQ(coll->Clone(false)->CurrentSB(), nullptr);
}

// Edge case: Clone(false) shares the storyboard objects.
TEST(StoryboardCollection, CloneWithoutCloningStoryboardsSharesThem) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("A", "before"));
    coll->SetCurrentSBID("A");
    auto clone = coll->Clone(false);
    EXPECT_EQ(clone->Item("A"), coll->Item("A"));
    EXPECT_EQ(clone->CurrentSB(), coll->Item("A"));
    clone->Item("A")->SetTitle("after");
    EXPECT_EQ(coll->Item("A")->Title(), "after");
}

TEST(StoryboardCollection, RangeForVisitsTheStoryboardsInOrder) {
    auto coll = StoryboardCollection::Create();
    std::vector<std::shared_ptr<Storyboard>> added;
    for (int i = 0; i < 5; ++i) {
        added.push_back(coll->Add(Storyboard::Create()));
    }
    std::size_t k = 0;
    for (auto& sb : *coll) {
        ASSERT_LT(k, added.size());
        EXPECT_EQ(sb, added[k]);
        ++k;
    }
    EXPECT_EQ(k, added.size());
}

TEST(StoryboardCollection, WritingANewCollectionGivesAnEmptyElement) {
    auto coll = StoryboardCollection::Create();
    xml::Document document = xml::Document::Create();
    xml::Element element = coll->ToXMLElement(document);
    EXPECT_EQ(element.Xml(), "<storyboards/>");
    EXPECT_TRUE(document.PreserveWhiteSpace());
    EXPECT_TRUE(element.Parent().IsNull());
}

// Edge case: written storyboards are numbered 0, 1, 2 and keep the numbers.
TEST(StoryboardCollection, WritingNumbersTheStoryboardsByPositionAndTheyKeepTheNumbers) {
    auto coll = StoryboardCollection::Create();
    std::vector<std::shared_ptr<Storyboard>> sbs;
    for (const char* id : {"A", "B", "C"}) {
        sbs.push_back(coll->Add(WithSBID(id)));
    }
    for (bool clear : {false, true}) {
        xml::Document document = xml::Document::Create();
        xml::Element element = clear ? coll->ToClearXMLElement(document) : coll->ToXMLElement(document);
        ASSERT_EQ(element.ChildCount(), 3);
        for (int i = 0; i < 3; ++i) {
            xml::Element child = element.ChildAt(i).AsElement();
            EXPECT_EQ(child.Name(), "storyboard");
            EXPECT_EQ(child.GetAttribute("sbid"), sbs[static_cast<std::size_t>(i)]->SBID());
            EXPECT_EQ(child.GetAttribute("shortid"), std::to_string(i));
            EXPECT_EQ(StoryboardAccess::ShortID(*sbs[static_cast<std::size_t>(i)]), i);
        }
    }
    coll->Remove("A");
    xml::Document document = xml::Document::Create();
    coll->ToXMLElement(document);
    EXPECT_EQ(StoryboardAccess::ShortID(*sbs[1]), 0);
    EXPECT_EQ(StoryboardAccess::ShortID(*sbs[2]), 1);
    EXPECT_EQ(StoryboardAccess::ShortID(*sbs[0]), 0);
}

TEST(StoryboardCollection, TheTwoFormsDifferOnlyInTheirProperties) {
    auto coll = StoryboardCollection::Create();
    auto sb = coll->Add(WithSBID("A"));
    sb->Properties()->SetString("plain", "p");
    sb->Properties()->SetString("hidden", "h", etBase64Encoded);
    xml::Document document = xml::Document::Create();
    const std::string normal = coll->ToXMLElement(document).Xml();
    const std::string clear = coll->ToClearXMLElement(document).Xml();
    EXPECT_NE(normal.find("<encProp>"), std::string::npos);
    EXPECT_EQ(clear.find("<encProp"), std::string::npos);
    EXPECT_NE(clear.find("<stringProp name=\"hidden\">h</stringProp>"), std::string::npos);
}

TEST(StoryboardCollection, ReadingRebuildsTheSetInDocumentOrderWithoutACurrentStoryboard) {
    auto coll = StoryboardCollection::Create();
    auto old = coll->Add(WithSBID("OLD"));
    coll->SetCurrentSB(old);
    coll->FromXMLElement(Parse("<storyboards><storyboard sbid=\"B\" title=\"b\"/><!-- c -->text<other/>"
                               "<Storyboard sbid=\"Z\"/><storyboard sbid=\"A\" title=\"a\"><ppc>"
                               "<stringProp name=\"k\">v</stringProp></ppc></storyboard></storyboards>"));
    EXPECT_EQ(Ids(*coll), (Names{"B", "A"}));
    EXPECT_EQ(coll->CurrentSB(), nullptr);
    EXPECT_EQ(coll->Item("A")->Properties()->GetString("k", ""), "v");
    EXPECT_FALSE(coll->Contains("OLD"));
}

TEST(StoryboardCollection, WriteThenReadGivesTheSameText) {
    auto coll = StoryboardCollection::Create();
    for (int i = 0; i < 4; ++i) {
        auto sb = coll->Add(Storyboard::Create());
        sb->SetTitle("Page " + std::to_string(i));
        sb->Properties()->SetLong("n", i, i % 2 ? etBase64Encoded : etNotEncoded);
    }
    xml::Document document = xml::Document::Create();
    const std::string text = coll->ToXMLElement(document).Xml();
    auto copy = StoryboardCollection::Create();
    copy->FromXMLElement(Parse(text));
    xml::Document again = xml::Document::Create();
    EXPECT_EQ(copy->ToXMLElement(again).Xml(), text);
}

// Edge case: two storyboards with the same "sbid": the later one stays, at the later position.
TEST(StoryboardCollection, ReadingTwoStoryboardsWithTheSameSbidKeepsTheLaterAtTheLaterPosition) {
    auto coll = StoryboardCollection::Create();
    coll->FromXMLElement(Parse("<storyboards><storyboard sbid=\"S\" title=\"first\"/><storyboard sbid=\"T\"/>"
                               "<storyboard sbid=\"s\" title=\"second\"/></storyboards>"));
    EXPECT_EQ(coll->Count(), 2);
    EXPECT_EQ(Ids(*coll), (Names{"T", "s"}));
    EXPECT_EQ(coll->Item("S")->Title(), "second");
}

std::string ManyChildren(int nodes) {
    std::string text = "<storyboards>";
    text.reserve(static_cast<std::size_t>(nodes) * 40);
    for (int i = 0; i < nodes; ++i) {
        if (i < 3) {
            text += "<storyboard sbid=\"S" + std::to_string(i) + "\"/>";
        } else {
            text += "<!---->";
        }
    }
    text += "</storyboards>";
    return text;
}

TEST(StoryboardCollection, ReadingAnElementOf32767ChildNodesWorks) {
    auto coll = StoryboardCollection::Create();
    coll->FromXMLElement(Parse(ManyChildren(32767)));
    EXPECT_EQ(coll->Count(), 3);
}

TEST(StoryboardCollection, ReadingAnElementOf32768ChildNodesReadsEveryEntryThenOverflows) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("OLD"));
    EXPECT_RAISES(coll->FromXMLElement(Parse(ManyChildren(32768))), ErrOverflow,
                  "StoryboardCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(Ids(*coll), (Names{"S0", "S1", "S2"}));
}

TEST(StoryboardCollection, ReadingAnElementOf32769ChildNodesOverflowsBeforeReadingAnyEntry) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("OLD"));
    EXPECT_RAISES(coll->FromXMLElement(Parse(ManyChildren(32769))), ErrOverflow,
                  "StoryboardCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(coll->Count(), 0);
}

TEST(StoryboardCollection, AFailingEntryEndsReadingWithTheEntriesReadSoFar) {
    std::string text = "<storyboards><storyboard sbid=\"A\"/><storyboard sbid=\"B\"><cec>";
    for (int i = 0; i < 32769; ++i) {
        text += "<x/>";
    }
    text += "</cec></storyboard><storyboard sbid=\"C\"/></storyboards>";
    auto coll = StoryboardCollection::Create();
    EXPECT_RAISES(coll->FromXMLElement(Parse(text)), ErrOverflow, "ChildElementCollection.FromXMLElement",
                  "Overflow");
    EXPECT_EQ(Ids(*coll), (Names{"A"}));
}

TEST(StoryboardCollection, ManyStoryboardsAreKeptInOrderAndFoundByIdentifier) {
    auto coll = StoryboardCollection::Create();
    std::vector<std::shared_ptr<Storyboard>> sbs;
    for (int i = 0; i < 20000; ++i) {
        sbs.push_back(coll->Add(Storyboard::Create()));
    }
    for (int i = 0; i < 20000; i += 2) {
        coll->Remove(sbs[static_cast<std::size_t>(i)]->SBID());
    }
    EXPECT_EQ(coll->Count(), 10000);
    std::size_t k = 1;
    for (auto& sb : *coll) {
        ASSERT_EQ(sb, sbs[k]);
        k += 2;
    }
    EXPECT_EQ(coll->Item(sbs[19999]->SBID()), sbs[19999]);
}

TEST(StoryboardCollection, EntriesLeftAfterManyRemovalsAreFoundInAnyLetterCase) {
    auto coll = StoryboardCollection::Create();
    for (int i = 0; i < 300; ++i) {
        coll->Add(WithSBID("Board-" + std::to_string(i)));
    }
    for (int i = 0; i < 300; ++i) {
        if (i % 10 != 0) {
            coll->Remove("BOARD-" + std::to_string(i));
        }
    }
    ASSERT_EQ(coll->Count(), 30);
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(coll->Contains("board-" + std::to_string(i)), i % 10 == 0) << i;
    }
    // Added again, a removed identifier goes to the end.
    coll->Add(WithSBID("board-7"));
    EXPECT_EQ(Ids(*coll).back(), "board-7");
    EXPECT_EQ(coll->Item("BOARD-7")->SBID(), "board-7");
    EXPECT_EQ(Ids(*coll).front(), "Board-0");
    EXPECT_EQ(coll->Count(), 31);
}

// Failure table.
TEST(StoryboardCollectionFailures, ToClearXMLElementNullDocument) {
    EXPECT_RAISES(StoryboardCollection::Create()->ToClearXMLElement(xml::Document()), 94,
                  "StoryboardtCollection.ToXMLElement", "Document cannot be null");
}

TEST(StoryboardCollectionFailures, ToXMLElementNullDocument) {
    EXPECT_RAISES(StoryboardCollection::Create()->ToXMLElement(xml::Document()), 94,
                  "StoryboardtCollection.ToXMLElement", "Document cannot be null");
}

TEST(StoryboardCollectionFailures, FromXMLElementNullElement) {
    auto coll = StoryboardCollection::Create();
    coll->Add(WithSBID("A"));
    EXPECT_RAISES(coll->FromXMLElement(xml::Element()), 94, "StoryboardCollection.FromXMLElement",
                  "Element cannot be null");
    EXPECT_EQ(coll->Count(), 1);
}

TEST(StoryboardCollectionFailures, FromXMLElementWrongName) {
    auto coll = StoryboardCollection::Create();
    auto a = coll->Add(WithSBID("A"));
    coll->SetCurrentSB(a);
    EXPECT_RAISES(coll->FromXMLElement(Parse("<Storyboards/>")), ErrXmlForm, "StoryboardCollection.FromXMLElement",
                  "Element is not a <storyboards> element");
    EXPECT_EQ(coll->Count(), 1);
    EXPECT_EQ(coll->CurrentSB(), a);
}

}  // namespace
}  // namespace quillbank

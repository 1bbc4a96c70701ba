#include <quillbank/storyboard.hpp>

#include <gtest/gtest.h>

#include <quillbank/child_element.hpp>
#include <quillbank/error.hpp>

#include <regex>
#include <string>

#include "common/raises.hpp"
#include "storyboards/storyboard_access.hpp"

namespace quillbank {
namespace {

using detail::StoryboardAccess;

xml::Element Parse(const std::string& text) {
    xml::Document document = xml::Document::Create();
    EXPECT_TRUE(document.LoadXML(text)) << text;
    return document.DocumentElement();
}

bool IsGuidText(const std::string& text) {
    static const std::regex guid("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$");
    return std::regex_match(text, guid);
}

std::string Written(const std::shared_ptr<Storyboard>& sb, bool clear = false) {
    xml::Document document = xml::Document::Create();
    return (clear ? sb->ToClearXMLElement(document) : sb->ToXMLElement(document)).Xml();
}

// A storyboard with every field set, a property of each encoding and a child.
std::shared_ptr<Storyboard> FilledStoryboard() {
    auto sb = Storyboard::Create();
    sb->SetTitle("Halves");
    sb->SetIdentifier("ID-7");
    sb->SetSBType("quiz");
    sb->SetClassification("Internal");
    sb->Properties()->SetString("caption", "One half");
    sb->Properties()->SetLong("secret", 42, etBase64Encoded);
    auto child = ChildElement::Create();
    child->SetName("button");
    child->SetElementType("push");
    child->SetString("label", "Next");
    sb->Children()->Append(child);
    StoryboardAccess::SetShortID(*sb, 5);
    return sb;
}

TEST(Storyboard, CreationState) {
    auto sb = Storyboard::Create();
    EXPECT_TRUE(IsGuidText(sb->SBID())) << sb->SBID();
    EXPECT_EQ(sb->Title(), "New Storyboard");
    EXPECT_EQ(sb->Identifier(), "");
    EXPECT_EQ(sb->SBType(), "");
    EXPECT_EQ(sb->Classification(), "");
    EXPECT_EQ(StoryboardAccess::ShortID(*sb), -1);
    ASSERT_NE(sb->Properties(), nullptr);
    ASSERT_NE(sb->Children(), nullptr);
    EXPECT_EQ(sb->Properties()->Count(), 0);
    EXPECT_EQ(sb->Children()->Count(), 0);
    EXPECT_NE(Storyboard::Create()->SBID(), sb->SBID());
}

TEST(Storyboard, PartsAreTheSameObjectsEachTime) {
    auto sb = Storyboard::Create();
    EXPECT_EQ(sb->Properties(), sb->Properties());
    EXPECT_EQ(sb->Children(), sb->Children());
}

TEST(Storyboard, TextsAreStoredUnchanged) {
    auto sb = Storyboard::Create();
    sb->SetTitle("  Ein Bild \xE2\x80\x94 \xE5\x9B\xBE ");
    sb->SetIdentifier("");
    sb->SetSBType("a\tb");
    sb->SetClassification("x<y>&\"");
    EXPECT_EQ(sb->Title(), "  Ein Bild \xE2\x80\x94 \xE5\x9B\xBE ");
    EXPECT_EQ(sb->Identifier(), "");
    EXPECT_EQ(sb->SBType(), "a\tb");
    EXPECT_EQ(sb->Classification(), "x<y>&\"");
}

TEST(Storyboard, SettersRefuseTextThatIsNotUtf8) {
    auto sb = Storyboard::Create();
    const std::string bad = "a\xFF";
    EXPECT_THROW(sb->SetTitle(bad), Error);
    try {
        sb->SetTitle(bad);
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrInvalidArgument);
        EXPECT_EQ(error.Source(), "Storyboard.Title (Set)");
    }
    try {
        sb->SetClassification(bad);
        ADD_FAILURE() << "nothing raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrInvalidArgument);
        EXPECT_EQ(error.Source(), "Storyboard.Classification (Set)");
    }
    EXPECT_EQ(sb->Title(), "New Storyboard");
    EXPECT_EQ(sb->Classification(), "");
}

// Edge case: a new storyboard written at once.
TEST(Storyboard, NewStoryboardWrittenAtOnceHasSbidTitleAndEmptyTypeOnly) {
    auto sb = Storyboard::Create();
    EXPECT_EQ(Written(sb), "<storyboard sbid=\"" + sb->SBID() +
                               "\" title=\"New Storyboard\" type=\"\">"
                               "<ppc name=\"properties\"/><cec name=\"children\"/></storyboard>");
    xml::Document document = xml::Document::Create();
    xml::Element element = sb->ToXMLElement(document);
    EXPECT_FALSE(element.HasAttribute("identifier"));
    EXPECT_FALSE(element.HasAttribute("classification"));
    EXPECT_FALSE(element.HasAttribute("shortid"));
    EXPECT_EQ(element.AttributeCount(), 3);
    ASSERT_EQ(element.ChildCount(), 2);
    EXPECT_EQ(element.ChildAt(0).Name(), "ppc");
    EXPECT_EQ(element.ChildAt(1).Name(), "cec");
}

TEST(Storyboard, AttributesAreWrittenInOrder) {
    auto sb = FilledStoryboard();
    xml::Document document = xml::Document::Create();
    const std::string text = sb->ToXMLElement(document).Xml();
    const std::string head = "<storyboard sbid=\"" + sb->SBID() +
                             "\" title=\"Halves\" identifier=\"ID-7\" type=\"quiz\" classification=\"Internal\" "
                             "shortid=\"5\">";
    EXPECT_EQ(text.substr(0, head.size()), head);
}

// Edge case: ShortID 0 is written; only -1 suppresses it.
TEST(Storyboard, ShortIdZeroIsWrittenAndOnlyMinusOneIsSuppressed) {
    auto sb = Storyboard::Create();
    xml::Document document = xml::Document::Create();
    StoryboardAccess::SetShortID(*sb, 0);
    EXPECT_EQ(sb->ToXMLElement(document).GetAttribute("shortid"), "0");
    StoryboardAccess::SetShortID(*sb, -2);
    EXPECT_EQ(sb->ToXMLElement(document).GetAttribute("shortid"), "-2");
    StoryboardAccess::SetShortID(*sb, -1);
    EXPECT_FALSE(sb->ToXMLElement(document).HasAttribute("shortid"));
}

TEST(Storyboard, WritingSwitchesOnWhitespacePreservationAndLeavesTheElementUnattached) {
    auto sb = Storyboard::Create();
    xml::Document document = xml::Document::Create();
    ASSERT_FALSE(document.PreserveWhiteSpace());
    xml::Element element = sb->ToClearXMLElement(document);
    EXPECT_TRUE(document.PreserveWhiteSpace());
    EXPECT_TRUE(element.Parent().IsNull());
    EXPECT_TRUE(document.DocumentElement().IsNull());
}

TEST(Storyboard, WritingRenamesTheBagAndTheListForGood) {
    auto sb = Storyboard::Create();
    sb->Properties()->SetName("mine");
    sb->Children()->SetName("kids");
    const std::string text = Written(sb, true);
    EXPECT_NE(text.find("<ppc name=\"properties\"/>"), std::string::npos);
    EXPECT_NE(text.find("<cec name=\"children\"/>"), std::string::npos);
    EXPECT_EQ(sb->Properties()->Name(), "properties");
    EXPECT_EQ(sb->Children()->Name(), "children");
}

TEST(Storyboard, ClearFormDiffersOnlyInTheEncodedProperties) {
    auto sb = FilledStoryboard();
    const std::string normal = Written(sb);
    const std::string clear = Written(sb, true);
    EXPECT_NE(normal.find("<encProp"), std::string::npos);
    EXPECT_EQ(clear.find("<encProp"), std::string::npos);
    EXPECT_NE(clear.find("<intProp name=\"secret\" value=\"42\"/>"), std::string::npos) << clear;
    const std::string headEnd = "shortid=\"5\">";
    EXPECT_EQ(normal.substr(0, normal.find(headEnd)), clear.substr(0, clear.find(headEnd)));
}

TEST(Storyboard, WriteThenReadGivesTheSameStoryboard) {
    auto sb = FilledStoryboard();
    for (bool clear : {false, true}) {
        auto copy = Storyboard::Create();
        xml::Document document = xml::Document::Create();
        copy->FromXMLElement(clear ? sb->ToClearXMLElement(document) : sb->ToXMLElement(document));
        EXPECT_EQ(copy->SBID(), sb->SBID());
        EXPECT_EQ(copy->Title(), "Halves");
        EXPECT_EQ(copy->Identifier(), "ID-7");
        EXPECT_EQ(copy->SBType(), "quiz");
        EXPECT_EQ(copy->Classification(), "Internal");
        EXPECT_EQ(StoryboardAccess::ShortID(*copy), 5);
        EXPECT_EQ(copy->Properties()->GetString("caption", ""), "One half");
        EXPECT_EQ(copy->Properties()->GetLong("secret", 0), 42);
        EXPECT_EQ(copy->Properties()->GetEncodingType("secret"), clear ? etNotEncoded : etBase64Encoded);
        ASSERT_EQ(copy->Children()->Count(), 1);
        EXPECT_EQ(copy->Children()->Item(0)->Name(), "button");
        EXPECT_EQ(copy->Children()->Item(0)->GetString("label", ""), "Next");
        EXPECT_EQ(Written(copy, clear), Written(sb, clear));
    }
}

// Edge case: no "sbid" gives a new identifier, no "title" gives the default.
TEST(Storyboard, ElementWithoutSbidOrTitleGetsNewSbidAndDefaultTitle) {
    auto sb = Storyboard::Create();
    const std::string before = sb->SBID();
    sb->SetTitle("Old");
    sb->FromXMLElement(Parse("<storyboard/>"));
    EXPECT_TRUE(IsGuidText(sb->SBID()));
    EXPECT_NE(sb->SBID(), before);
    EXPECT_EQ(sb->Title(), "New Storyboard");
    EXPECT_EQ(sb->SBType(), "");
    EXPECT_EQ(StoryboardAccess::ShortID(*sb), -1);
}

// Edge case: empty and absent "identifier" both give an empty Identifier.
TEST(Storyboard, EmptyAndAbsentIdentifierBothYieldEmpty) {
    auto sb = Storyboard::Create();
    sb->SetIdentifier("kept?");
    sb->FromXMLElement(Parse("<storyboard sbid=\"A\" identifier=\"\"/>"));
    EXPECT_EQ(sb->Identifier(), "");
    sb->SetIdentifier("kept?");
    sb->FromXMLElement(Parse("<storyboard sbid=\"A\"/>"));
    EXPECT_EQ(sb->Identifier(), "");
}

TEST(Storyboard, ReadingTakesTheAttributesAsWritten) {
    auto sb = Storyboard::Create();
    sb->FromXMLElement(Parse("<storyboard sbid=\"abc\" title=\"\" type=\"t\" classification=\"c\" shortid=\"12\"/>"));
    EXPECT_EQ(sb->SBID(), "abc");
    EXPECT_EQ(sb->Title(), "");
    EXPECT_EQ(sb->SBType(), "t");
    EXPECT_EQ(sb->Classification(), "c");
    EXPECT_EQ(StoryboardAccess::ShortID(*sb), 12);
}

TEST(Storyboard, UnreadableShortIdBecomesMinusOne) {
    auto sb = Storyboard::Create();
    sb->FromXMLElement(Parse("<storyboard sbid=\"a\" shortid=\"seven\"/>"));
    EXPECT_EQ(StoryboardAccess::ShortID(*sb), -1);
    sb->FromXMLElement(Parse("<storyboard sbid=\"a\" shortid=\"99999999999\"/>"));
    EXPECT_EQ(StoryboardAccess::ShortID(*sb), -1);
}

TEST(Storyboard, ReadingResetsAndReplacesTheOwnedParts) {
    auto sb = FilledStoryboard();
    auto oldBag = sb->Properties();
    auto oldList = sb->Children();
    sb->FromXMLElement(Parse("<storyboard sbid=\"S\"/>"));
    EXPECT_NE(sb->Properties(), oldBag);
    EXPECT_NE(sb->Children(), oldList);
    EXPECT_EQ(sb->Properties()->Count(), 0);
    EXPECT_EQ(sb->Children()->Count(), 0);
    EXPECT_EQ(sb->Identifier(), "");
    EXPECT_EQ(sb->Classification(), "");
    EXPECT_EQ(sb->SBType(), "");
    EXPECT_EQ(StoryboardAccess::ShortID(*sb), -1);
    // The old parts are detached but intact.
    EXPECT_EQ(oldBag->GetString("caption", ""), "One half");
}

TEST(Storyboard, PartsAreReadInAnyOrderAmongOtherNodes) {
    auto sb = Storyboard::Create();
    sb->FromXMLElement(Parse("<storyboard sbid=\"S\"><!-- note -->text<cec name=\"children\"><ce name=\"a\" "
                             "type=\"b\"/></cec><other><ppc name=\"x\"/></other><ppc name=\"properties\">"
                             "<stringProp name=\"k\">v</stringProp></ppc></storyboard>"));
    EXPECT_EQ(sb->Properties()->GetString("k", ""), "v");
    ASSERT_EQ(sb->Children()->Count(), 1);
    EXPECT_EQ(sb->Children()->Item(0)->ElementType(), "b");
}

TEST(Storyboard, PartNamesAreMatchedExactly) {
    auto sb = Storyboard::Create();
    sb->FromXMLElement(Parse("<storyboard sbid=\"S\"><PPC><stringProp name=\"k\">v</stringProp></PPC>"
                             "<Cec><ce name=\"a\"/></Cec></storyboard>"));
    EXPECT_EQ(sb->Properties()->Count(), 0);
    EXPECT_EQ(sb->Children()->Count(), 0);
}

TEST(Storyboard, APartThatOccursTwiceIsReadTwiceIntoTheSameObject) {
    auto sb = Storyboard::Create();
    sb->FromXMLElement(Parse("<storyboard sbid=\"S\"><ppc name=\"one\"><stringProp name=\"a\">1</stringProp></ppc>"
                             "<cec><ce name=\"x\"/></cec>"
                             "<ppc name=\"two\"><stringProp name=\"b\">2</stringProp></ppc>"
                             "<cec><ce name=\"y\"/><ce name=\"z\"/></cec></storyboard>"));
    EXPECT_EQ(sb->Properties()->Name(), "two");
    EXPECT_FALSE(sb->Properties()->Exists("a"));
    EXPECT_EQ(sb->Properties()->GetString("b", ""), "2");
    ASSERT_EQ(sb->Children()->Count(), 2);
    EXPECT_EQ(sb->Children()->Item(0)->Name(), "y");
}

// Edge case: Clone keeps SBID, ShortID and deep copies of both parts.
TEST(Storyboard, CloneKeepsSbidShortIdAndDeepCopiesBothParts) {
    auto sb = FilledStoryboard();
    auto clone = sb->Clone();
    EXPECT_NE(clone, sb);
    EXPECT_EQ(clone->SBID(), sb->SBID());
    EXPECT_EQ(StoryboardAccess::ShortID(*clone), 5);
    EXPECT_EQ(clone->Title(), "Halves");
    EXPECT_EQ(clone->Identifier(), "ID-7");
    EXPECT_EQ(clone->SBType(), "quiz");
    EXPECT_EQ(clone->Classification(), "Internal");
    EXPECT_NE(clone->Properties(), sb->Properties());
    EXPECT_NE(clone->Children(), sb->Children());
    EXPECT_NE(clone->Children()->Item(0), sb->Children()->Item(0));
    EXPECT_EQ(Written(clone), Written(sb));
    clone->Properties()->SetString("caption", "changed");
    clone->Children()->Item(0)->SetString("label", "changed");
    EXPECT_EQ(sb->Properties()->GetString("caption", ""), "One half");
    EXPECT_EQ(sb->Children()->Item(0)->GetString("label", ""), "Next");
}

// Edge case: Duplicate gives a different SBID.
TEST(Storyboard, DuplicateGivesADifferentSbidAndKeepsTheRest) {
    auto sb = FilledStoryboard();
    auto dup = sb->Duplicate();
    EXPECT_NE(dup->SBID(), sb->SBID());
    EXPECT_TRUE(IsGuidText(dup->SBID()));
    EXPECT_EQ(dup->Title(), "Halves");
    EXPECT_EQ(dup->Identifier(), "ID-7");
    EXPECT_EQ(StoryboardAccess::ShortID(*dup), 5);
    EXPECT_NE(dup->Properties(), sb->Properties());
    EXPECT_EQ(dup->Properties()->GetLong("secret", 0), 42);
    EXPECT_EQ(dup->Properties()->GetEncodingType("secret"), etBase64Encoded);
    EXPECT_EQ(dup->Children()->Count(), 1);
}

// Edge case: Duplicate with prefix P on title T gives P immediately followed by T.
TEST(Storyboard, DuplicatePrefixStandsImmediatelyBeforeTheTitle) {
    auto sb = Storyboard::Create();
    sb->SetTitle("Quarters");
    EXPECT_EQ(sb->Duplicate("Copy of")->Title(), "Copy ofQuarters");
    EXPECT_EQ(sb->Duplicate("")->Title(), "Quarters");
    EXPECT_EQ(sb->Title(), "Quarters");
}

// Edge case: CopyFrom leaves the target's SBID and returns Empty.
TEST(Storyboard, CopyFromKeepsTheTargetSbidAndReturnsEmpty) {
    auto source = FilledStoryboard();
    auto target = Storyboard::Create();
    const std::string sbid = target->SBID();
    const Variant result = target->CopyFrom(source);
    EXPECT_TRUE(result.IsEmpty());
    EXPECT_EQ(target->SBID(), sbid);
    EXPECT_EQ(target->Title(), "Halves");
    EXPECT_EQ(target->SBType(), "quiz");
    EXPECT_EQ(StoryboardAccess::ShortID(*target), 5);
    EXPECT_EQ(target->Properties()->GetString("caption", ""), "One half");
}

TEST(Storyboard, CopyFromReplacesTheOwnedPartsWithNewCopies) {
    auto source = FilledStoryboard();
    auto target = Storyboard::Create();
    auto heldBag = target->Properties();
    auto heldList = target->Children();
    target->CopyFrom(source);
    EXPECT_NE(target->Properties(), heldBag);
    EXPECT_NE(target->Children(), heldList);
    EXPECT_NE(target->Properties(), source->Properties());
    heldBag->SetString("stray", "x");
    EXPECT_FALSE(target->Properties()->Exists("stray"));
}

TEST(Storyboard, CopyFromItselfKeepsEverything) {
    auto sb = FilledStoryboard();
    const std::string before = Written(sb);
    sb->CopyFrom(sb);
    EXPECT_EQ(Written(sb), before);
}

// Edge case: an element named "Storyboard" is refused.
TEST(Storyboard, ReadingAnElementNamedWithCapitalSFails) {
    auto sb = FilledStoryboard();
    const std::string before = Written(sb);
    EXPECT_RAISES(sb->FromXMLElement(Parse("<Storyboard sbid=\"X\"/>")), ErrXmlForm, "Storyboard.FromXMLElement",
                  "Element is not a <storyboard> element");
    EXPECT_EQ(ErrXmlForm, -2147220503);
    // The name check comes before the reset: nothing changed.
    EXPECT_EQ(Written(sb), before);
}

// Failure table.
TEST(StoryboardFailures, CopyFromNullSb) {
    auto sb = FilledStoryboard();
    EXPECT_RAISES(sb->CopyFrom(nullptr), 94, "Storyboard.CopyFrom", "SB cannot be null");
    EXPECT_EQ(sb->Title(), "Halves");
}

TEST(StoryboardFailures, ToClearXMLElementNullDocument) {
    EXPECT_RAISES(Storyboard::Create()->ToClearXMLElement(xml::Document()), 94, "Storyboard.ToClearXMLElement",
                  "Document cannot be null");
}

TEST(StoryboardFailures, ToXMLElementNullDocument) {
    EXPECT_RAISES(Storyboard::Create()->ToXMLElement(xml::Document()), 94, "Storyboard.ToXMLElement",
                  "Document cannot be null");
}

TEST(StoryboardFailures, FromXMLElementNullElement) {
    auto sb = Storyboard::Create();
    const std::string sbid = sb->SBID();
    EXPECT_RAISES(sb->FromXMLElement(xml::Element()), 94, "Storyboard.FromXMLElement", "Element cannot be null");
    EXPECT_EQ(sb->SBID(), sbid);
}

TEST(StoryboardFailures, FromXMLElementWrongName) {
    EXPECT_RAISES(Storyboard::Create()->FromXMLElement(Parse("<ce/>")), ErrXmlForm, "Storyboard.FromXMLElement",
                  "Element is not a <storyboard> element");
}

TEST(StoryboardFailures, ErrorOfAPartPassesThroughAndLeavesThePartlyReadStoryboard) {
    std::string text = "<storyboard sbid=\"P\" title=\"T\"><ppc><stringProp name=\"k\">v</stringProp></ppc><cec>";
    for (int i = 0; i < 32769; ++i) {
        text += "<x/>";
    }
    text += "</cec></storyboard>";
    auto sb = Storyboard::Create();
    EXPECT_RAISES(sb->FromXMLElement(Parse(text)), ErrOverflow, "ChildElementCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(sb->SBID(), "P");
    EXPECT_EQ(sb->Title(), "T");
    EXPECT_EQ(sb->Properties()->GetString("k", ""), "v");
}

}  // namespace
}  // namespace quillbank

// The ordered list of child elements: positions, exchanges, copies, the
// "cec" element and its 16-bit child counter.

#include <quillbank/child_element_collection.hpp>

#include <gtest/gtest.h>

#include "properties/test_support.hpp"

namespace quillbank {
namespace {

using testing::ExpectError;
using testing::LoadRoot;
using testing::ReadGolden;

using Ref = std::shared_ptr<ChildElement>;

Ref Named(const std::string& name) {
    auto element = ChildElement::Create();
    element->SetName(name);
    return element;
}

class ThreeElements : public ::testing::Test {
protected:
    void SetUp() override {
        list = ChildElementCollection::Create();
        list->Append(a);
        list->Append(b);
        list->Append(c);
    }

    std::vector<Ref> Entries() const {
        std::vector<Ref> entries;
        for (std::int32_t i = 0; i < list->Count(); ++i) {
            entries.push_back(list->Item(i));
        }
        return entries;
    }

    Ref a = Named("a");
    Ref b = Named("b");
    Ref c = Named("c");
    Ref x = Named("x");
    std::shared_ptr<ChildElementCollection> list;
};

TEST(ChildElementCollection, NewListIsEmptyAndNamedChildren) {
    auto list = ChildElementCollection::Create();
    EXPECT_EQ(list->Name(), "children");
    EXPECT_EQ(list->Length(), -1);
    EXPECT_EQ(list->Count(), 0);
    EXPECT_EQ(list->Item(0), nullptr);
    EXPECT_EQ(list->IndexOf(ChildElement::Create()), -1);
}

TEST(ChildElementCollection, NameAcceptsAnyText) {
    auto list = ChildElementCollection::Create();
    list->SetName("");
    EXPECT_EQ(list->Name(), "");
    list->SetName("page \xE4\xB8\xAD");
    EXPECT_EQ(list->Name(), "page \xE4\xB8\xAD");
    ExpectError([&] { list->SetName("\xFF"); }, ErrInvalidArgument, "ChildElementCollection.Name (Set)",
                "Invalid property value: the text is not valid UTF-8.");
}

TEST(ChildElementCollection, NullElementIsNotAppendedOrInserted) {
    auto list = ChildElementCollection::Create();
    list->Append(nullptr);
    list->Insert(nullptr, 0);
    EXPECT_EQ(list->Count(), 0);
    list->Append(Named("a"));
    list->Insert(nullptr, 0);
    list->Append(nullptr);
    EXPECT_EQ(list->Count(), 1);
    EXPECT_EQ(list->IndexOf(nullptr), -1);
}

TEST(ChildElementCollection, ListHoldsTheCallersObjects) {
    auto list = ChildElementCollection::Create();
    auto element = Named("a");
    list->Append(element);
    EXPECT_EQ(list->Item(0), element);
    element->SetElementType("changed");
    EXPECT_EQ(list->Item(0)->ElementType(), "changed");
}

TEST_F(ThreeElements, ItemOutOfRangeIsNull) {
    EXPECT_EQ(list->Item(-1), nullptr);
    EXPECT_EQ(list->Item(3), nullptr);
    EXPECT_EQ(list->Item(2), c);
    EXPECT_EQ(list->Length(), 2);
    EXPECT_EQ(list->Count(), 3);
}

TEST_F(ThreeElements, InsertInTheMiddleShiftsTheRest) {
    list->Insert(x, 1);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, x, b, c}));
}

TEST_F(ThreeElements, InsertAtCountAppends) {
    list->Insert(x, 3);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, b, c, x}));
}

TEST_F(ThreeElements, InsertAtNegativeIndexAppends) {
    list->Insert(x, -5);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, b, c, x}));
}

TEST_F(ThreeElements, InsertAtZeroPutsFirst) {
    list->Insert(x, 0);
    EXPECT_EQ(Entries(), (std::vector<Ref>{x, a, b, c}));
}

TEST(ChildElementCollection, InsertIntoAnEmptyListAppends) {
    auto list = ChildElementCollection::Create();
    auto element = Named("a");
    list->Insert(element, 0);
    EXPECT_EQ(list->Count(), 1);
    EXPECT_EQ(list->Item(0), element);
}

TEST_F(ThreeElements, RemoveAtOutOfRangeChangesNothing) {
    list->RemoveAt(3);
    list->RemoveAt(-1);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, b, c}));
}

TEST_F(ThreeElements, RemoveAtInTheMiddleClosesTheGap) {
    list->RemoveAt(1);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, c}));
    list->RemoveAt(1);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a}));
}

TEST(ChildElementCollection, RemoveAtOfTheOnlyElementEmptiesTheList) {
    auto list = ChildElementCollection::Create();
    list->Append(Named("a"));
    list->RemoveAt(0);
    EXPECT_EQ(list->Count(), 0);
    EXPECT_EQ(list->Length(), -1);
}

TEST_F(ThreeElements, AbsentElementIsReportedAtPositionZero) {
    EXPECT_EQ(list->IndexOf(x), 0);
    EXPECT_EQ(list->IndexOf(c), 2);
}

TEST_F(ThreeElements, RemoveOfAnAbsentElementRemovesTheFirst) {
    list->Remove(x);
    EXPECT_EQ(Entries(), (std::vector<Ref>{b, c}));
    list->Remove(c);
    EXPECT_EQ(Entries(), (std::vector<Ref>{b}));
}

TEST(ChildElementCollection, RemoveFromAnEmptyListDoesNothing) {
    auto list = ChildElementCollection::Create();
    list->Remove(Named("x"));
    list->Remove(nullptr);
    EXPECT_EQ(list->Count(), 0);
}

TEST_F(ThreeElements, ClearKeepsTheName) {
    list->SetName("mine");
    list->Clear();
    EXPECT_EQ(list->Count(), 0);
    EXPECT_EQ(list->Length(), -1);
    EXPECT_EQ(list->Name(), "mine");
}

TEST_F(ThreeElements, SwapExchangesTwoEntries) {
    list->Swap(0, 2);
    EXPECT_EQ(Entries(), (std::vector<Ref>{c, b, a}));
}

TEST_F(ThreeElements, SwapOfTheSameOrOutOfRangeIndexesChangesNothing) {
    list->Swap(0, 0);
    list->Swap(-1, 0);
    list->Swap(0, 3);
    list->Swap(3, 0);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, b, c}));
}

TEST_F(ThreeElements, MoveFirstExchangesWithTheFirst) {
    list->MoveFirst(c);
    EXPECT_EQ(Entries(), (std::vector<Ref>{c, b, a}));
}

TEST_F(ThreeElements, MoveLastExchangesWithTheLast) {
    list->MoveLast(a);
    EXPECT_EQ(Entries(), (std::vector<Ref>{c, b, a}));
}

TEST_F(ThreeElements, MovePreviousOfTheFirstAndMoveNextOfTheLastChangeNothing) {
    list->MovePrevious(a);
    list->MoveNext(c);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, b, c}));
}

TEST_F(ThreeElements, MovePreviousAndMoveNextExchangeWithTheNeighbour) {
    list->MovePrevious(b);
    EXPECT_EQ(Entries(), (std::vector<Ref>{b, a, c}));
    list->MoveNext(a);
    EXPECT_EQ(Entries(), (std::vector<Ref>{b, c, a}));
}

TEST_F(ThreeElements, MoveToOutOfRangeChangesNothing) {
    list->MoveTo(a, 7);
    list->MoveTo(a, -1);
    EXPECT_EQ(Entries(), (std::vector<Ref>{a, b, c}));
    list->MoveTo(a, 1);
    EXPECT_EQ(Entries(), (std::vector<Ref>{b, a, c}));
}

TEST_F(ThreeElements, MovingAnAbsentElementActsOnTheFirst) {
    list->MoveLast(x);
    EXPECT_EQ(Entries(), (std::vector<Ref>{c, b, a}));
    list->MoveNext(x);
    EXPECT_EQ(Entries(), (std::vector<Ref>{b, c, a}));
}

TEST(ChildElementCollection, MovesOfNullDoNothing) {
    auto list = ChildElementCollection::Create();
    auto a = Named("a");
    auto b = Named("b");
    list->Append(a);
    list->Append(b);
    list->MoveLast(nullptr);
    list->MoveTo(nullptr, 1);
    list->MoveNext(nullptr);
    EXPECT_EQ(list->Item(0), a);
    EXPECT_EQ(list->Item(1), b);
}

TEST(ChildElementCollection, SameElementTwiceIsCountedTwiceAndClonedIntoTwoCopies) {
    auto list = ChildElementCollection::Create();
    auto element = Named("twice");
    element->SetLong("n", 1);
    list->Append(element);
    list->Append(element);
    EXPECT_EQ(list->Count(), 2);
    EXPECT_EQ(list->IndexOf(element), 0);
    auto copy = list->Clone();
    ASSERT_EQ(copy->Count(), 2);
    EXPECT_NE(copy->Item(0), copy->Item(1));
    EXPECT_NE(copy->Item(0), element);
    EXPECT_EQ(copy->Item(1)->GetLong("n", 0), 1);
}

TEST_F(ThreeElements, CloneIsDeepAndKeepsNameAndOrder) {
    list->SetName("orig");
    b->SetString("s", "v");
    auto copy = list->Clone();
    EXPECT_EQ(copy->Name(), "orig");
    ASSERT_EQ(copy->Count(), 3);
    EXPECT_EQ(copy->Item(0)->Name(), "a");
    EXPECT_EQ(copy->Item(1)->Name(), "b");
    EXPECT_EQ(copy->Item(2)->Name(), "c");
    EXPECT_NE(copy->Item(1), b);
    b->SetString("s", "changed");
    EXPECT_EQ(copy->Item(1)->GetString("s", ""), "v");
}

TEST(ChildElementCollection, LargeListAppendsAndRemoves) {
    auto list = ChildElementCollection::Create();
    std::vector<Ref> elements;
    for (int i = 0; i < 20000; ++i) {
        elements.push_back(ChildElement::Create());
        list->Append(elements.back());
    }
    EXPECT_EQ(list->Count(), 20000);
    EXPECT_EQ(list->IndexOf(elements[19999]), 19999);
    for (int i = 0; i < 10000; ++i) {
        list->RemoveAt(list->Length());
    }
    EXPECT_EQ(list->Count(), 10000);
    EXPECT_EQ(list->Item(9999), elements[9999]);
}

// ---- The cec element ----------------------------------------------------------------

TEST(ChildElementCollection, EmptyListWritesCecWithItsNameOnly) {
    auto list = ChildElementCollection::Create();
    EXPECT_EQ(list->ToXMLElement(xml::Document::Create()).Xml(), R"(<cec name="children"/>)");
    list->SetName("");
    EXPECT_EQ(list->ToClearXMLElement(xml::Document::Create()).Xml(), R"(<cec name=""/>)");
}

TEST(ChildElementCollection, WritersSwitchPreservationOnAndLeaveTheElementUnattached) {
    auto list = ChildElementCollection::Create();
    list->Append(ChildElement::Create());
    xml::Document document = xml::Document::Create();
    xml::Element written = list->ToXMLElement(document);
    EXPECT_TRUE(document.PreserveWhiteSpace());
    EXPECT_TRUE(written.Parent().IsNull());
    EXPECT_EQ(written.ChildCount(), 1);
    xml::Document other = xml::Document::Create();
    list->ToClearXMLElement(other);
    EXPECT_TRUE(other.PreserveWhiteSpace());
}

TEST(ChildElementCollection, ReadingCecWithoutNameGivesChildren) {
    auto list = ChildElementCollection::Create();
    list->SetName("old");
    list->FromXMLElement(LoadRoot("<cec/>"));
    EXPECT_EQ(list->Name(), "children");
    list->FromXMLElement(LoadRoot(R"(<cec name=""/>)"));
    EXPECT_EQ(list->Name(), "");
}

TEST(ChildElementCollection, ReadingSkipsPpcAndTextAndReadsCeInDocumentOrder) {
    auto list = ChildElementCollection::Create();
    list->Append(Named("old"));
    list->FromXMLElement(LoadRoot(R"(<cec name="l">text<ce name="one" type="t1"/><ppc name="p"/><!--c-->)"
                                  R"(<CE name="upper"/><ce name="two" type="t2"><intProp name="n" value="2"/></ce></cec>)"));
    ASSERT_EQ(list->Count(), 2);
    EXPECT_EQ(list->Item(0)->Name(), "one");
    EXPECT_EQ(list->Item(0)->ElementType(), "t1");
    EXPECT_EQ(list->Item(1)->Name(), "two");
    EXPECT_EQ(list->Item(1)->GetLong("n", 0), 2);
}

TEST(ChildElementCollection, ReadingCeElementRaisesTheXmlFormError) {
    auto list = ChildElementCollection::Create();
    ExpectError([&] { list->FromXMLElement(LoadRoot(R"(<ce name="x"/>)")); }, -2147220503,
                "ChildElementCollection.FromXMLElement", "Element is not a <cec> element");
}

TEST(ChildElementCollection, WrittenListReadsBack) {
    auto list = ChildElementCollection::Create();
    list->SetName("page");
    auto first = Named("first");
    first->SetElementType("button");
    first->SetString("label", "OK", etBase64Encoded);
    list->Append(first);
    list->Append(Named("second"));
    auto back = ChildElementCollection::Create();
    back->FromXMLElement(list->ToXMLElement(xml::Document::Create()));
    EXPECT_EQ(back->Name(), "page");
    ASSERT_EQ(back->Count(), 2);
    EXPECT_EQ(back->Item(0)->GetString("label", ""), "OK");
    EXPECT_EQ(back->Item(0)->PPCObject()->GetEncodingType("label"), etBase64Encoded);
    EXPECT_EQ(back->Item(1)->Name(), "second");
}

// ---- The 16-bit child counter -------------------------------------------------------

xml::Element CecWithChildNodes(int ceCount, int textCount) {
    xml::Document document = xml::Document::Create();
    document.SetPreserveWhiteSpace(true);
    xml::Element cec = document.CreateElement("cec");
    cec.SetAttribute("name", "big");
    for (int i = 0; i < ceCount; ++i) {
        cec.AppendChild(document.CreateElement("ce"));
    }
    for (int i = 0; i < textCount; ++i) {
        cec.AppendChild(document.CreateTextNode(" "));
    }
    return cec;
}

TEST(ChildElementCollectionCounter, ThirtyTwoThousandSevenHundredSixtySevenChildNodesAreRead) {
    auto list = ChildElementCollection::Create();
    list->FromXMLElement(CecWithChildNodes(32767, 0));
    EXPECT_EQ(list->Count(), 32767);
}

TEST(ChildElementCollectionCounter, ExactlyThirtyTwoThousandSevenHundredSixtyEightChildNodesAreReadThenOverflow) {
    auto list = ChildElementCollection::Create();
    list->SetName("old");
    list->Append(Named("old"));
    ExpectError([&] { list->FromXMLElement(CecWithChildNodes(32768, 0)); }, 6,
                "ChildElementCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(list->Name(), "big");
    EXPECT_EQ(list->Count(), 32768);
}

TEST(ChildElementCollectionCounter, MoreChildNodesOverflowBeforeAnyIsRead) {
    auto list = ChildElementCollection::Create();
    list->SetName("old");
    list->Append(Named("old"));
    ExpectError([&] { list->FromXMLElement(CecWithChildNodes(10, 32759)); }, 6,
                "ChildElementCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(list->Name(), "big");
    EXPECT_EQ(list->Count(), 0);
}

TEST(ChildElementCollectionCounter, TextNodesCountAsChildNodes) {
    auto list = ChildElementCollection::Create();
    ExpectError([&] { list->FromXMLElement(CecWithChildNodes(2, 32766)); }, 6,
                "ChildElementCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(list->Count(), 2);
}

// ---- Golden forms ---------------------------------------------------------------------

std::shared_ptr<ChildElementCollection> PageChildren() {
    auto caption = ChildElement::Create();
    caption->SetName("caption box");
    caption->SetElementType("textbox");
    caption->SetString("hint", "Stra\xC3\x9F" "e", etBase64Encoded);
    caption->SetString("Text", "Hello,\r\nworld");
    caption->SetLong("align", 2);
    auto image = ChildElement::Create();
    image->SetElementType("image");
    image->SetAsset("img", AssetData{"a.png", "", "museum"});
    auto list = ChildElementCollection::Create();
    list->SetName("page children");
    list->Append(caption);
    list->Append(image);
    return list;
}

TEST(ChildElementCollectionGolden, NormalFormIsPinned) {
    EXPECT_EQ(PageChildren()->ToXMLElement(xml::Document::Create()).Xml(), ReadGolden("elements/cec.xml"));
}

TEST(ChildElementCollectionGolden, ClearFormIsPinned) {
    EXPECT_EQ(PageChildren()->ToClearXMLElement(xml::Document::Create()).Xml(),
              ReadGolden("elements/cec_clear.xml"));
}

TEST(ChildElementCollectionGolden, NormalFormReadsBack) {
    auto list = ChildElementCollection::Create();
    list->FromXMLElement(LoadRoot(ReadGolden("elements/cec.xml")));
    EXPECT_EQ(list->Name(), "page children");
    ASSERT_EQ(list->Count(), 2);
    EXPECT_EQ(list->Item(0)->GetString("hint", ""), "Stra\xC3\x9F" "e");
    EXPECT_EQ(list->Item(1)->GetAsset("img", AssetData{}), (AssetData{"a.png", "", "museum"}));
    EXPECT_EQ(list->ToXMLElement(xml::Document::Create()).Xml(), ReadGolden("elements/cec.xml"));
}

// ---- Failure table ----------------------------------------------------------------------

TEST(ChildElementCollectionErrors, ToClearXMLElementWithNullDocument) {
    auto list = ChildElementCollection::Create();
    ExpectError([&] { list->ToClearXMLElement(xml::Document()); }, 94, "ChildElementCollection.ToClearXMLElement",
                "Document cannot be null");
}

TEST(ChildElementCollectionErrors, ToXMLElementWithNullDocument) {
    auto list = ChildElementCollection::Create();
    ExpectError([&] { list->ToXMLElement(xml::Document()); }, 94, "ChildElementCollection.ToXMLElement",
                "Document cannot be null");
}

TEST(ChildElementCollectionErrors, FromXMLElementWithNullElement) {
    auto list = ChildElementCollection::Create();
    list->SetName("kept");
    list->Append(Named("a"));
    ExpectError([&] { list->FromXMLElement(xml::Element()); }, 94, "ChildElementCollection.FromXMLElement",
                "Element cannot be null");
    EXPECT_EQ(list->Name(), "kept");
    EXPECT_EQ(list->Count(), 1);
}

TEST(ChildElementCollectionErrors, FromXMLElementOfAnotherElement) {
    auto list = ChildElementCollection::Create();
    list->SetName("kept");
    list->Append(Named("a"));
    ExpectError([&] { list->FromXMLElement(LoadRoot(R"(<CEC name="x"/>)")); },
                static_cast<std::int32_t>(0x800403E9u), "ChildElementCollection.FromXMLElement",
                "Element is not a <cec> element");
    EXPECT_EQ(list->Name(), "kept");
    EXPECT_EQ(list->Count(), 1);
}

TEST(ChildElementCollectionErrors, FromXMLElementWithTooManyChildNodes) {
    auto list = ChildElementCollection::Create();
    ExpectError([&] { list->FromXMLElement(CecWithChildNodes(0, 40000)); }, 6,
                "ChildElementCollection.FromXMLElement", "Overflow");
}

}  // namespace
}  // namespace quillbank

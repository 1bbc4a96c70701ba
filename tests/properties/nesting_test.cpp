// Bags and lists nested inside properties: up to the nesting limit they read,
// write, clone and drop as usual; past it the reader leaves the property
// untyped, and the writers and Clone raise error 28 "Out of stack space".
// A bag or list that contains itself gives the same error and never crashes.

#include <gtest/gtest.h>

#include <pthread.h>

#include <cstdint>
#include <functional>
#include <string>

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "properties/nesting.hpp"
#include "properties/test_support.hpp"

namespace quillbank {
namespace {

using properties::kMaxNesting;
using testing::ExpectError;

constexpr const char* kOutOfStack = "Out of stack space";

// Text of a bag holding `levels` bags nested in "ppcProp" properties named
// "p"; the innermost bag holds a long named "leaf".
std::string NestedBagText(int levels) {
    std::string text;
    for (int i = 0; i < levels; ++i) {
        text += "<ppc name=\"properties\"><ppcProp name=\"p\">";
    }
    text += "<ppc name=\"properties\"><intProp name=\"leaf\" value=\"7\"/></ppc>";
    for (int i = 0; i < levels; ++i) {
        text += "</ppcProp></ppc>";
    }
    return text;
}

// Builds the same nest through the live references of GetPPC (no copying).
// With `someEncoded`, every 25th level is stored base64-encoded (each encoded
// level makes the text of everything inside it a third longer).
std::shared_ptr<PersistedPropertyCollection> NestedBag(int levels, bool someEncoded = false) {
    auto top = PersistedPropertyCollection::Create();
    auto bag = top;
    for (int i = 0; i < levels; ++i) {
        bag->SetPPC("p", PersistedPropertyCollection::Create(),
                    someEncoded && i % 25 == 0 ? etBase64Encoded : etNotEncoded);
        bag = bag->GetPPC("p", nullptr);
    }
    bag->SetLong("leaf", 7);
    return top;
}

// How many bags deep the leaf is, or -1 when the chain ends without it.
int DepthOfLeaf(std::shared_ptr<PersistedPropertyCollection> bag) {
    for (int depth = 0; bag; ++depth) {
        if (bag->GetLong("leaf", -1) == 7) {
            return depth;
        }
        bag = bag->GetPPC("p", nullptr);
    }
    return -1;
}

// Runs `work` on a thread with a stack of `bytes`.
void OnSmallStack(std::size_t bytes, const std::function<void()>& work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
    auto* call = new std::function<void()>(work);
    pthread_t thread;
    ASSERT_EQ(pthread_create(
                  &thread, &attributes,
                  [](void* argument) -> void* {
                      auto* f = static_cast<std::function<void()>*>(argument);
                      (*f)();
                      delete f;
                      return nullptr;
                  },
                  call),
              0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(Nesting, TheDeepestAllowedNestReadsWritesAndClonesUnchanged) {
    const std::string text = NestedBagText(kMaxNesting);
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(text);
    EXPECT_EQ(DepthOfLeaf(bag), kMaxNesting);
    EXPECT_EQ(bag->ToXMLString(), text);
    EXPECT_EQ(bag->ToClearXMLString(), text);
    EXPECT_EQ(bag->Clone()->ToXMLString(), text);
    EXPECT_EQ(NestedBag(kMaxNesting)->ToXMLString(), text);
}

TEST(Nesting, ABagOneLevelTooDeepIsDroppedByTheReader) {
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(NestedBagText(kMaxNesting + 1));
    // The property holding the bag past the limit reads as untyped and is
    // dropped; everything above it is read.
    auto deepest = bag;
    for (int i = 0; i < kMaxNesting; ++i) {
        deepest = deepest->GetPPC("p", nullptr);
        ASSERT_TRUE(deepest) << i;
    }
    EXPECT_EQ(deepest->Count(), 0);
    EXPECT_EQ(DepthOfLeaf(bag), -1);
}

TEST(Nesting, EncodedLevelsCountToo) {
    // A level wrapped as base64 inside "encProp" is still one level.
    auto bag = NestedBag(kMaxNesting, true);
    const std::string text = bag->ToXMLString();
    auto again = PersistedPropertyCollection::Create();
    again->FromXMLString(text);
    EXPECT_EQ(DepthOfLeaf(again), kMaxNesting);
    EXPECT_EQ(again->ToXMLString(), text);

    ExpectError([&] { NestedBag(kMaxNesting + 1, true)->ToXMLString(); }, ErrOutOfStackSpace,
                "PersistedPropertyCollection.ToXMLElement", kOutOfStack);
}

TEST(Nesting, WritingAndCloningPastTheLimitRaiseOutOfStackSpace) {
    auto bag = NestedBag(kMaxNesting + 1);
    ExpectError([&] { bag->ToXMLString(); }, ErrOutOfStackSpace, "PersistedPropertyCollection.ToXMLElement",
                kOutOfStack);
    ExpectError([&] { bag->ToClearXMLString(); }, ErrOutOfStackSpace, "PersistedPropertyCollection.ToXMLElement",
                kOutOfStack);
    ExpectError([&] { bag->Clone(); }, ErrOutOfStackSpace, "PersistedPropertyCollection.Clone", kOutOfStack);
    // A raise leaves the bag as it was: the encoding of the property whose
    // clear form failed is back, and the counters are back at zero.
    EXPECT_EQ(bag->GetEncodingType("p"), etNotEncoded);
    EXPECT_NO_THROW(NestedBag(kMaxNesting)->ToXMLString());
}

TEST(Nesting, ListsCountAsLevelsLikeBags) {
    // A list in a property, an element in the list, a list in the element's
    // property, and so on.
    auto top = ChildElementCollection::Create();
    auto list = top;
    for (int i = 0; i < kMaxNesting + 1; ++i) {
        auto element = ChildElement::Create();
        element->SetCEC("c", ChildElementCollection::Create());
        list->Append(element);
        list = element->GetCEC("c", nullptr);
    }
    ExpectError([&] { top->ToXMLElement(xml::Document::Create()); }, ErrOutOfStackSpace,
                "ChildElementCollection.ToXMLElement", kOutOfStack);
    ExpectError([&] { top->Clone(); }, ErrOutOfStackSpace, "ChildElementCollection.Clone", kOutOfStack);

    // One level less writes and reads back whole.
    top->Item(0)->Remove("c");
    const xml::Element written = top->ToXMLElement(xml::Document::Create());
    auto again = ChildElementCollection::Create();
    again->FromXMLElement(written);
    EXPECT_EQ(again->ToXMLElement(xml::Document::Create()).Xml(), written.Xml());
}

TEST(Nesting, AHundredThousandLevelsReadAndDropWithoutExhaustingTheStack) {
    constexpr int kLevels = 100000;
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(NestedBagText(kLevels));
    EXPECT_EQ(DepthOfLeaf(bag), -1);
    // Built through live references, a nest this deep is refused by the
    // writers and by Clone, and is dropped without recursion.
    auto deep = NestedBag(kLevels);
    ExpectError([&] { deep->ToXMLString(); }, ErrOutOfStackSpace, "PersistedPropertyCollection.ToXMLElement",
                kOutOfStack);
    ExpectError([&] { deep->Clone(); }, ErrOutOfStackSpace, "PersistedPropertyCollection.Clone", kOutOfStack);
    deep.reset();
}

TEST(Nesting, TheDeepestAllowedNestFitsInHalfTheUsualStack) {
    // Half the usual 8 MiB main-thread stack, in every build (the debug
    // build with AddressSanitizer needs the most).
    const std::string text = NestedBagText(kMaxNesting);
    bool done = false;
    OnSmallStack(4 << 20, [&] {
        auto bag = PersistedPropertyCollection::Create();
        bag->FromXMLString(text);
        const bool same = bag->ToXMLString() == text && bag->Clone()->ToClearXMLString() == text;
        auto deep = NestedBag(kMaxNesting * 10);
        try {
            deep->ToXMLString();
        } catch (const Error&) {
        }
        done = same;
    });
    EXPECT_TRUE(done);
}

TEST(Cycles, AnElementWhoseListHoldsItselfRaisesOutOfStackSpaceOnWriting) {
    auto element = ChildElement::Create();
    element->SetCEC("children", ChildElementCollection::Create());
    auto list = element->GetCEC("children", nullptr);
    list->Append(element);  // the element now contains itself

    ExpectError([&] { element->ToXMLString(); }, ErrOutOfStackSpace, "ChildElementCollection.ToXMLElement",
                kOutOfStack);
    ExpectError([&] { element->ToClearXMLString(); }, ErrOutOfStackSpace, "ChildElementCollection.ToXMLElement",
                kOutOfStack);
    ExpectError([&] { list->ToXMLElement(xml::Document::Create()); }, ErrOutOfStackSpace,
                "ChildElementCollection.ToXMLElement", kOutOfStack);
    ExpectError([&] { element->Clone(); }, ErrOutOfStackSpace, "ChildElementCollection.Clone", kOutOfStack);

    // The element is unharmed and can still be used once the cycle is broken
    // (reference counting cannot free a cycle: the host breaks it).
    EXPECT_EQ(element->PPCObject()->GetEncodingType("children"), etNotEncoded);
    list->Clear();
    EXPECT_EQ(element->ToXMLString(), "<ce name=\"\" type=\"\"><cecProp name=\"children\"/></ce>");
}

TEST(Cycles, ABagThatContainsItselfThroughAnElementRaisesOnEveryWriter) {
    // bag -> list property -> element -> the element's bag holds the list again.
    auto bag = PersistedPropertyCollection::Create();
    bag->SetCEC("list", ChildElementCollection::Create(), etBase64Encoded);
    auto list = bag->GetCEC("list", nullptr);
    auto element = ChildElement::Create();
    list->Append(element);
    element->SetCEC("again", ChildElementCollection::Create());
    element->GetCEC("again", nullptr)->Append(element);

    ExpectError([&] { bag->ToXMLString(); }, ErrOutOfStackSpace, "ChildElementCollection.ToXMLElement",
                kOutOfStack);
    ExpectError([&] { bag->ToClearXMLString(); }, ErrOutOfStackSpace, "ChildElementCollection.ToXMLElement",
                kOutOfStack);
    ExpectError([&] { bag->Clone(); }, ErrOutOfStackSpace, "ChildElementCollection.Clone", kOutOfStack);
    EXPECT_EQ(bag->GetEncodingType("list"), etBase64Encoded);

    element->GetCEC("again", nullptr)->Clear();
    EXPECT_NO_THROW(bag->ToXMLString());
}

TEST(Cycles, AnElementStandingTwiceIsNoCycle) {
    auto element = ChildElement::Create();
    element->SetLong("n", 1);
    auto list = ChildElementCollection::Create();
    list->Append(element);
    list->Append(element);
    auto bag = PersistedPropertyCollection::Create();
    bag->SetCEC("twice", list);
    EXPECT_NO_THROW(bag->ToXMLString());
    EXPECT_EQ(bag->GetCEC("twice", nullptr)->Count(), 2);
}

}  // namespace
}  // namespace quillbank

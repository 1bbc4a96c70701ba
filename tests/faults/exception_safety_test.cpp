// Failures injected into allocation and into the XML document model: a
// reader whose behaviour is to leave its object unchanged (text that does not
// parse, a wrong root element) does so whatever fails inside it; no failure
// crashes or leaks (the sanitizer run checks leaks on every path); writers
// leave their objects as they were.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <new>
#include <string>

#include <quillbank/quillbank.hpp>

#include "faults/allocation_hooks.hpp"

namespace quillbank {
namespace {

using faults::Disarm;
using faults::FailAllocation;
using faults::FailXmlAllocations;

// The text without the value of "documentid", which every write makes new.
std::string WithoutDocumentId(std::string text) {
    const std::string attribute = "documentid=\"";
    if (const std::size_t at = text.find(attribute); at != std::string::npos) {
        const std::size_t from = at + attribute.size();
        text.erase(from, text.find('"', from) - from);
    }
    return text;
}

// A lesson with something in every part, including nested and encoded values.
std::string SampleLessonText() {
    auto lesson = Lesson::Create();
    lesson->SetTitle("Fractions");
    lesson->Properties()->SetString("caption", "Halves", etBase64Encoded);
    lesson->Properties()->SetString("wide", "\xE4\xB8\xAD", etBase64Encoded);
    auto nested = PersistedPropertyCollection::Create();
    nested->SetLong("n", 3, etBase64Encoded);
    lesson->Properties()->SetPPC("nested", nested);
    auto sb = lesson->Storyboards()->Add(Storyboard::Create());
    sb->Properties()->SetDouble("d", 1.5);
    auto child = ChildElement::Create();
    child->SetName("c");
    child->SetFont("f", Functions::NewFontData());
    auto list = ChildElementCollection::Create();
    list->Append(ChildElement::Create());
    child->SetCEC("list", list, etBase64Encoded);
    sb->Children()->Append(child);
    auto map = LessonMap::Create();
    map->SetName("main");
    map->InsertStoryboard("", sbitInsertAfter, sb->SBID());
    lesson->Maps()->Append(map);
    return lesson->ToXMLString();
}

// Runs `call` with the n-th allocation failing, for n = 0, 1, ... until a run
// completes without meeting the failure. `check(failed)` runs after each.
// Returns how many runs met a failure.
int WithEveryAllocationFailing(const std::function<void()>& call, const std::function<void(bool)>& check) {
    int failures = 0;
    for (std::int64_t n = 0;; ++n) {
        bool failed = false;
        {
            Disarm disarm;
            FailAllocation(n);
            try {
                call();
            } catch (const std::bad_alloc&) {
                failed = true;
            } catch (const Error&) {
                failed = true;
            }
            // The run is complete when the armed allocation was never reached.
            if (faults::FailureArmed()) {
                FailAllocation(-1);
                check(false);
                return failures;
            }
        }
        failures += failed ? 1 : 0;
        check(failed);
        if (n > 100000) {
            ADD_FAILURE() << "no end to the allocations";
            return failures;
        }
    }
}

TEST(ExceptionSafety, ALessonIsUnchangedWhenTheTextCannotBeLoadedForLackOfMemory) {
    const std::string text = SampleLessonText();
    auto lesson = Lesson::Create();
    lesson->FromXMLString(text);
    const std::string before = WithoutDocumentId(lesson->ToXMLString());
    {
        Disarm disarm;
        FailXmlAllocations(true);
        EXPECT_THROW(lesson->FromXMLString(SampleLessonText() + " "), Error);
    }
    EXPECT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);

    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("kept", 1);
    auto element = ChildElement::Create();
    element->SetLong("kept", 1);
    {
        Disarm disarm;
        FailXmlAllocations(true);
        EXPECT_THROW(bag->FromXMLString("<ppc name=\"x\"/>"), Error);
        EXPECT_THROW(element->FromXMLString("<ce name=\"x\"/>"), Error);
    }
    EXPECT_EQ(bag->Name(), "properties");
    EXPECT_EQ(bag->GetLong("kept", 0), 1);
    EXPECT_EQ(element->GetLong("kept", 0), 1);
}

TEST(ExceptionSafety, TextThatDoesNotParseLeavesTheObjectsUnchangedWhateverFails) {
    const std::string broken = SampleLessonText() + "<";
    auto lesson = Lesson::Create();
    lesson->FromXMLString(SampleLessonText());
    const std::string before = WithoutDocumentId(lesson->ToXMLString());
    const int failures = WithEveryAllocationFailing([&] { lesson->FromXMLString(broken); },
                                                    [&](bool) {
                                                        Disarm disarm;
                                                        ASSERT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);
                                                    });
    EXPECT_GT(failures, 3);
}

TEST(ExceptionSafety, AWrongRootElementLeavesTheObjectsUnchangedWhateverFails) {
    const std::string text = SampleLessonText();
    const std::string wrongRoot = "<lessons" + text.substr(7, text.size() - 7 - 9) + "</lessons>";
    auto lesson = Lesson::Create();
    lesson->FromXMLString(text);
    const std::string before = WithoutDocumentId(lesson->ToXMLString());
    WithEveryAllocationFailing([&] { lesson->FromXMLString(wrongRoot); },
                               [&](bool) {
                                   Disarm disarm;
                                   ASSERT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);
                               });

    auto bag = PersistedPropertyCollection::Create();
    bag->SetString("kept", "yes", etBase64Encoded);
    const std::string bagBefore = bag->ToXMLString();
    WithEveryAllocationFailing([&] { bag->FromXMLString("<ce name=\"n\"><intProp name=\"i\" value=\"1\"/></ce>"); },
                               [&](bool) {
                                   Disarm disarm;
                                   ASSERT_EQ(bag->ToXMLString(), bagBefore);
                               });

    auto element = ChildElement::Create();
    element->SetString("kept", "yes");
    const std::string elementBefore = element->ToXMLString();
    WithEveryAllocationFailing([&] { element->FromXMLString("<ppc name=\"n\"><intProp name=\"i\" value=\"1\"/></ppc>"); },
                               [&](bool) {
                                   Disarm disarm;
                                   ASSERT_EQ(element->ToXMLString(), elementBefore);
                               });
}

TEST(ExceptionSafety, ReadingAValidLessonSurvivesEveryFailureAndThenReadsWhole) {
    // A failure part way through a read may leave the lesson partly read (as
    // a failing part does); it stays usable, and reading again gives the
    // whole lesson.
    const std::string text = SampleLessonText();
    auto lesson = Lesson::Create();
    WithEveryAllocationFailing([&] { lesson->FromXMLString(text); },
                               [&](bool) {
                                   Disarm disarm;
                                   (void)lesson->ToXMLString();
                                   (void)lesson->Clone();
                               });
    lesson->FromXMLString(text);
    auto fresh = Lesson::Create();
    fresh->FromXMLString(text);
    EXPECT_EQ(WithoutDocumentId(lesson->ToXMLString()), WithoutDocumentId(fresh->ToXMLString()));
}

TEST(ExceptionSafety, WritersAndCopiesLeaveTheirObjectsAsTheyWere) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(SampleLessonText());
    const std::string before = WithoutDocumentId(lesson->ToXMLString());
    const std::string clearBefore = WithoutDocumentId(lesson->ToClearXMLString());
    auto check = [&](bool) {
        Disarm disarm;
        ASSERT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);
        ASSERT_EQ(WithoutDocumentId(lesson->ToClearXMLString()), clearBefore);
        ASSERT_EQ(lesson->Properties()->GetEncodingType("caption"), etBase64Encoded);
    };
    WithEveryAllocationFailing([&] { (void)lesson->ToXMLString(); }, check);
    WithEveryAllocationFailing([&] { (void)lesson->ToClearXMLString(); }, check);
    WithEveryAllocationFailing([&] { (void)lesson->Clone(); }, check);
    WithEveryAllocationFailing([&] { (void)lesson->Duplicate(); }, check);
    WithEveryAllocationFailing([&] { (void)lesson->Properties()->Clone(); }, check);
}

TEST(ExceptionSafety, FormattingSurvivesEveryFailure) {
    const std::string text = SampleLessonText();
    const std::string formatted = Functions::FormatXMLString(text);
    WithEveryAllocationFailing([&] { (void)Functions::FormatXMLString(text); }, [](bool) {});
    EXPECT_EQ(Functions::FormatXMLString(text), formatted);
}

}  // namespace
}  // namespace quillbank

// A bag's and a child element's string forms read exactly as their element
// forms do: the text, stripped of control characters and loaded into a
// document whose whitespace is not kept, read through FromXMLElement of its
// root. The two are compared for the bags and elements of generated lessons,
// for mangled copies of them, and for awkward texts: the same written forms
// afterwards, and the same error (number, source and description) where one
// is raised.

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/quillbank.hpp>

#include "lesson_generator.hpp"
#include "support/text.hpp"
#include "common/mangle.hpp"

namespace quillbank {
namespace {

// What reading left: the error raised, if any, and the part's written forms.
struct Outcome {
    std::optional<std::int32_t> number;
    std::string source;
    std::string description;
    std::string written;
    std::string clear;
    std::string extra;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    if (outcome.number) {
        out << "error " << *outcome.number << " [" << outcome.source << "] [" << outcome.description << "] ";
    }
    return out << "[" << outcome.extra << "] " << outcome.written;
}

template <class Read>
void Capture(Outcome& outcome, Read read) {
    try {
        read();
    } catch (const Error& error) {
        outcome.number = error.Number();
        outcome.source = error.Source();
        outcome.description = error.Description();
    }
}

// The part's reading the element way: the element of the loaded text, or the
// string form's own error when the text does not load.
template <class Part>
void ReadThroughElement(Part& part, std::string_view text, const char* stringSource) {
    if (text.empty()) {
        part.FromXMLString(text);
        return;
    }
    xml::Document document = xml::Document::Create();
    if (!document.LoadXML(support::StripControlChars(text))) {
        throw Error(ErrXmlForm, stringSource, "XML string could not be parsed.");
    }
    part.FromXMLElement(document.DocumentElement());
}

Outcome Describe(Outcome outcome, PersistedPropertyCollection& bag) {
    outcome.written = bag.ToXMLString();
    outcome.clear = bag.ToClearXMLString();
    outcome.extra = bag.Name() + " " + std::to_string(bag.Count());
    return outcome;
}

Outcome Describe(Outcome outcome, ChildElement& element) {
    outcome.written = element.ToXMLString();
    outcome.clear = element.ToClearXMLString();
    outcome.extra = element.Name() + " " + element.ElementType();
    return outcome;
}

// A bag that already holds something, so that what a failed read leaves is
// seen too.
std::shared_ptr<PersistedPropertyCollection> StartingBag() {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("before");
    bag->SetString("kept", "value", etNotEncoded);
    return bag;
}

std::shared_ptr<ChildElement> StartingElement() {
    auto element = ChildElement::Create();
    element->SetElementType("before");
    element->PPCObject()->SetString("kept", "value", etNotEncoded);
    return element;
}

void ExpectBagReadsAsElement(std::string_view text) {
    auto fromString = StartingBag();
    Outcome viaString;
    Capture(viaString, [&] { fromString->FromXMLString(text); });
    auto fromElement = StartingBag();
    Outcome viaElement;
    Capture(viaElement, [&] {
        ReadThroughElement(*fromElement, text, "PersistedPropertyCollection.FromXMLString");
    });
    EXPECT_EQ(Describe(viaString, *fromString), Describe(viaElement, *fromElement)) << "text: " << text;
}

void ExpectElementReadsAsElement(std::string_view text) {
    auto fromString = StartingElement();
    Outcome viaString;
    Capture(viaString, [&] { fromString->FromXMLString(text); });
    auto fromElement = StartingElement();
    Outcome viaElement;
    Capture(viaElement, [&] { ReadThroughElement(*fromElement, text, "ChildElement.FromXMLString"); });
    EXPECT_EQ(Describe(viaString, *fromString), Describe(viaElement, *fromElement)) << "text: " << text;
}

// The written texts of the bags and child elements of a generated lesson,
// both forms, nested ones included through their parents.
struct GeneratedTexts {
    std::vector<std::string> bags;
    std::vector<std::string> elements;
};

GeneratedTexts TextsOfGeneratedLesson(std::uint64_t seed) {
    GeneratedTexts texts;
    const auto lesson = bench::GenerateLesson(6, seed);
    texts.bags.push_back(lesson->Properties()->ToXMLString());
    for (const auto& storyboard : *lesson->Storyboards()) {
        texts.bags.push_back(storyboard->Properties()->ToXMLString());
        texts.bags.push_back(storyboard->Properties()->ToClearXMLString());
        const auto children = storyboard->Children();
        for (std::int32_t i = 0; i < children->Count(); ++i) {
            texts.elements.push_back(children->Item(i)->ToXMLString());
            texts.elements.push_back(children->Item(i)->ToClearXMLString());
        }
    }
    return texts;
}

// Deletes, duplicates or replaces a few bytes of the text.
std::string Mangle(const std::string& text, std::mt19937& rng) {
    return testing::Mangle(text, rng, "<>/\"'=&;#\r\n\t x\x01\x80\xFF", 5);
}

TEST(StringFormReading, GeneratedBagsReadAsTheirElements) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        const GeneratedTexts texts = TextsOfGeneratedLesson(seed);
        ASSERT_FALSE(texts.bags.empty());
        for (const std::string& text : texts.bags) {
            ExpectBagReadsAsElement(text);
        }
    }
}

TEST(StringFormReading, GeneratedChildElementsReadAsTheirElements) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        const GeneratedTexts texts = TextsOfGeneratedLesson(seed);
        ASSERT_FALSE(texts.elements.empty());
        for (const std::string& text : texts.elements) {
            ExpectElementReadsAsElement(text);
        }
    }
}

TEST(StringFormReading, MangledTextsReadAsTheirElements) {
    std::mt19937 rng(20261123);
    const GeneratedTexts texts = TextsOfGeneratedLesson(9);
    for (int round = 0; round < 300; ++round) {
        ExpectBagReadsAsElement(Mangle(texts.bags[static_cast<std::size_t>(round) % texts.bags.size()], rng));
        ExpectElementReadsAsElement(
            Mangle(texts.elements[static_cast<std::size_t>(round) % texts.elements.size()], rng));
    }
}

// Texts whose reading depends on the whitespace rules, the control
// characters, the root, and text that is not a document.
const std::vector<std::string>& AwkwardTexts() {
    static const std::vector<std::string> texts = {
        "",
        " ",
        "not xml at all",
        "<?xml version=\"1.0\"?>",
        "<!-- only a comment -->",
        "<ppc name=\"x\"><intProp",
        "<ppc name=\"\xFF\"/>",
        "<ppc name=\"p\x02q\"/>",
        "<ppc name=\"a\"/>",
        "<ppc></ppc>",
        "<ce name=\"a\" type=\"t\"/>",
        "<ce name=\"a\" type=\"t\"></ce>",
        "<cec name=\"x\"/>",
        "<other/>",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!-- c --><ppc name=\"n\">\r\n  <strProp name=\"s\" value=\"a\r\nb\tc\"/>\r\n</ppc>",
        "<ppc name=\"n\"><strProp name=\"s\">  spaced  </strProp><strProp name=\"t\">   </strProp></ppc>",
        "<ppc name=\"n\" xml:space=\"preserve\"> <strProp name=\"s\">   </strProp> </ppc>",
        "<ppc name=\"n\"><x xml:space=\"preserve\"> </x><strProp name=\"s\" xml:space=\"default\">  </strProp></ppc>",
        "<ppc name=\"n\"><strProp name=\"s\"><![CDATA[ <raw> ]]></strProp><!-- c --><?pi x?></ppc>",
        "<ppc name=\"n\"><strProp name=\"a\" value=\"1\"/><strProp name=\"a\" value=\"2\"/><bogus/></ppc>",
        "<ppc name=\"n\"><intProp name=\"i\" value=\"1e400\"/><floatProp name=\"f\" value=\"--1\"/></ppc>",
        "<ppc name=\"n\"><encProp name=\"e\" enctype=\"utf8\">!!notbase64</encProp></ppc>",
        "<ppc name=\"n\"><ppcProp name=\"inner\"><ppc name=\"in\"><strProp name=\"s\" value=\"v\"/></ppc></ppcProp>"
        "<cecProp name=\"l\"><cec name=\"l\"><ce name=\"c\" type=\"t\"><strProp name=\"q\" value=\"w\"/></ce>"
        " </cec></cecProp></ppc>",
        "<ce name=\"n\" type=\"t\">\n <strProp name=\"s\" value=\"v\"/>\n <ppc/>\n</ce>",
        "<ce><strProp name=\"s\" value=\"&amp;&lt;&#x9;&#13;\"/></ce>",
        "<ppc name=\"a\"/><ppc name=\"b\"/>",
        "\xEF\xBB\xBF<ppc name=\"bom\"/>",
    };
    return texts;
}

TEST(StringFormReading, AwkwardBagTextsReadAsTheirElements) {
    for (const std::string& text : AwkwardTexts()) {
        ExpectBagReadsAsElement(text);
    }
}

TEST(StringFormReading, AwkwardChildElementTextsReadAsTheirElements) {
    for (const std::string& text : AwkwardTexts()) {
        ExpectElementReadsAsElement(text);
    }
}

// The errors themselves, as the string forms raise them.
TEST(StringFormReading, ErrorsOfTheStringForms) {
    auto bag = PersistedPropertyCollection::Create();
    try {
        bag->FromXMLString("<ppc name=\"x\"><intProp");
        ADD_FAILURE() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrXmlForm);
        EXPECT_EQ(error.Source(), "PersistedPropertyCollection.FromXMLString");
        EXPECT_EQ(error.Description(), "XML string could not be parsed.");
    }
    try {
        bag->FromXMLString("<ce/>");
        ADD_FAILURE() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrInvalidCall);
        EXPECT_EQ(error.Source(), "PersistedPropertyCollection.FromXMLElement");
        EXPECT_EQ(error.Description(), "Element is not a <ppc> element");
    }
    auto element = ChildElement::Create();
    try {
        element->FromXMLString("<ppc/>");
        ADD_FAILURE() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrXmlForm);
        EXPECT_EQ(error.Source(), "ChildElement.FromXMLElement");
        EXPECT_EQ(error.Description(), "Element is not a <ce> element");
    }
    try {
        element->FromXMLString("<ce");
        ADD_FAILURE() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrXmlForm);
        EXPECT_EQ(error.Source(), "ChildElement.FromXMLString");
        EXPECT_EQ(error.Description(), "XML string could not be parsed.");
    }
}

}  // namespace
}  // namespace quillbank

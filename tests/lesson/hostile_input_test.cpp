// Lesson text from other people's machines is hostile until read: entity
// bombs, external references, huge values, huge counts, deep nesting, broken
// encodings, truncation and damaged payloads each give the documented error
// or fallback, never a crash, and read nothing outside the given text.

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <quillbank/quillbank.hpp>

#include "common/raises.hpp"
#include "lesson/lesson_helpers.hpp"
#include "properties/nesting.hpp"

namespace quillbank {
namespace {

using testing::WithoutDocumentId;

constexpr const char* kNotParsed = "XML string could not be parsed.";

std::string Golden(const std::string& relativePath) {
    std::ifstream in(std::string(QUILLBANK_TEST_DATA_DIR) + "/" + relativePath, std::ios::binary);
    EXPECT_TRUE(in.good()) << relativePath;
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string Repeat(const std::string& piece, std::size_t times) {
    std::string text;
    text.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

// A lesson that has something in every part, to see that a refused text
// leaves it alone.
std::shared_ptr<Lesson> FilledLesson() {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(Golden("lesson_normal.xml"));
    return lesson;
}

// Every reader that takes a whole text refuses it as not parsed, and the
// objects keep what they held.
void ExpectEveryReaderRefuses(const std::string& text) {
    auto lesson = FilledLesson();
    const std::string before = WithoutDocumentId(lesson->ToXMLString());
    EXPECT_RAISES(lesson->FromXMLString(text), ErrXmlForm, "Lesson.FromXMLString", kNotParsed);
    EXPECT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);

    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("kept", 1);
    EXPECT_RAISES(bag->FromXMLString(text), ErrXmlForm, "PersistedPropertyCollection.FromXMLString", kNotParsed);
    EXPECT_EQ(bag->GetLong("kept", 0), 1);

    auto element = ChildElement::Create();
    element->SetLong("kept", 1);
    EXPECT_RAISES(element->FromXMLString(text), ErrXmlForm, "ChildElement.FromXMLString", kNotParsed);
    EXPECT_EQ(element->GetLong("kept", 0), 1);
}

// `inner` as the payload of an "encProp" in a bag, next to a plain property.
std::string EncodedInBag(const std::string& inner) {
    auto carrier = xml::Document::Create();
    xml::Element encoded = carrier.CreateElement("encProp");
    encoded.SetBase64Value(std::span<const std::uint8_t>(reinterpret_cast<const std::uint8_t*>(inner.data()),
                                                         inner.size()));
    return "<ppc name=\"p\"><intProp name=\"kept\" value=\"1\"/>" + encoded.Xml() + "</ppc>";
}

TEST(HostileInput, EntityBombsAreNeverExpanded) {
    std::string declarations = "<!ENTITY l0 \"lol\">";
    for (int i = 1; i < 10; ++i) {
        declarations += "<!ENTITY l" + std::to_string(i) + " \"" +
                        Repeat("&l" + std::to_string(i - 1) + ";", 10) + "\">";
    }
    // Used: the entity is undefined for us, so the text does not load.
    ExpectEveryReaderRefuses("<!DOCTYPE lesson [" + declarations + "]><lesson title=\"&l9;\"/>");
    ExpectEveryReaderRefuses("<!DOCTYPE ppc [" + declarations + "]><ppc>&l9;</ppc>");
    // Declared but not used: the declaration is stepped over unread.
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<!DOCTYPE lesson [" + declarations + "]><lesson title=\"t\"/>");
    EXPECT_EQ(lesson->Title(), "t");
    // Inside an encoded property the bomb leaves that property unread.
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(EncodedInBag("<!DOCTYPE s [" + declarations + "]><stringProp name=\"s\">&l9;</stringProp>"));
    EXPECT_EQ(bag->Count(), 1);
    EXPECT_EQ(bag->GetLong("kept", 0), 1);
}

TEST(HostileInput, ExternalEntitiesAndDocumentTypesReadNothingOutsideTheText) {
    ExpectEveryReaderRefuses(
        "<!DOCTYPE lesson [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><lesson title=\"&x;\"/>");
    ExpectEveryReaderRefuses(
        "<!DOCTYPE lesson [<!ENTITY x SYSTEM \"http://127.0.0.1:9/x\">]><lesson>&x;</lesson>");
    ExpectEveryReaderRefuses("<!DOCTYPE lesson [<!ENTITY % p SYSTEM \"file:///etc/passwd\"> %p;]><lesson>&e;</lesson>");
    // An external document type is not fetched; the text itself reads.
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<!DOCTYPE lesson SYSTEM \"file:///etc/passwd\"><lesson title=\"t\"/>");
    EXPECT_EQ(lesson->Title(), "t");
    lesson->FromXMLString("<!DOCTYPE lesson PUBLIC \"-//x//y\" \"http://127.0.0.1:9/x.dtd\"><lesson title=\"u\"/>");
    EXPECT_EQ(lesson->Title(), "u");
    // Inclusion elements are unknown elements like any other.
    lesson->FromXMLString("<lesson xmlns:xi=\"http://www.w3.org/2001/XInclude\" title=\"v\">"
                          "<xi:include href=\"file:///etc/passwd\" parse=\"text\"/></lesson>");
    EXPECT_EQ(lesson->Title(), "v");
    EXPECT_EQ(lesson->ToXMLString().find("root:"), std::string::npos);
}

TEST(HostileInput, AHundredMegabyteAttributeReadsWhole) {
    constexpr std::size_t kSize = 100u << 20;
    std::string text = "<lesson title=\"";
    text.append(kSize, 'x');
    text += "\"/>";
    auto lesson = Lesson::Create();
    lesson->FromXMLString(text);
    EXPECT_EQ(lesson->Title().size(), kSize);
}

TEST(HostileInput, AMillionEmptyElementsAreSkipped) {
    // Half in the lesson's bag, where each is looked at as a property, half
    // among the lesson's parts.
    const std::string half = Repeat("<x/>", 500000);
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson title=\"t\"><ppc name=\"p\">" + half +
                          "<intProp name=\"n\" value=\"5\"/></ppc>" + half +
                          "<storyboards><storyboard sbid=\"A\"/></storyboards></lesson>");
    EXPECT_EQ(lesson->Properties()->Count(), 1);
    EXPECT_EQ(lesson->Properties()->GetLong("n", 0), 5);
    EXPECT_EQ(lesson->Storyboards()->Count(), 1);
}

TEST(HostileInput, AMillionEmptyChildNodesOverflowTheChildListCounter) {
    auto list = ChildElementCollection::Create();
    xml::Document document = xml::Document::Create();
    ASSERT_TRUE(document.LoadXML("<cec>" + Repeat("<ce/>", 1000000) + "</cec>"));
    EXPECT_RAISES(list->FromXMLElement(document.DocumentElement()), ErrOverflow,
                  "ChildElementCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(list->Count(), 0);
}

TEST(HostileInput, AHundredThousandLevelsOfNestingNeverExhaustTheStack) {
    constexpr int kLevels = 100000;
    // Bags in properties: read up to the nesting limit, the rest dropped.
    const std::string bags = "<ppc name=\"top\">" + Repeat("<ppcProp name=\"p\"><ppc>", kLevels) +
                             Repeat("</ppc></ppcProp>", kLevels) + "</ppc>";
    // Lists in properties, elements in lists.
    const std::string lists = "<ppc name=\"top\">" +
                              Repeat("<cecProp name=\"c\"><cec><ce name=\"e\" type=\"t\">", kLevels) +
                              Repeat("</ce></cec></cecProp>", kLevels) + "</ppc>";
    for (const std::string* text : {&bags, &lists}) {
        auto bag = PersistedPropertyCollection::Create();
        bag->FromXMLString(*text);
        EXPECT_EQ(bag->Name(), "top");
        EXPECT_EQ(bag->Count(), 1);
        // What was read writes again: it is within the limit.
        EXPECT_NO_THROW(bag->ToXMLString());
    }
    // The same nest inside one encoded property.
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(EncodedInBag("<ppcProp name=\"deep\">" + bags + "</ppcProp>"));
    EXPECT_EQ(bag->Count(), 2);
    // Elements in general, in a lesson and a storyboard.
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson title=\"deep\"><storyboards><storyboard sbid=\"A\">" + bags +
                          Repeat("<x>", kLevels) + Repeat("</x>", kLevels) + "</storyboard></storyboards></lesson>");
    EXPECT_EQ(lesson->Title(), "deep");
    auto copy = lesson->Duplicate();
    EXPECT_EQ(copy->Storyboards()->Count(), 1);
    EXPECT_NO_THROW(lesson->Clone());
}

TEST(HostileInput, TextThatIsNotUtf8DoesNotParse) {
    const std::vector<std::string> broken = {
        "\x80",             // a lone continuation byte
        "\xC3",             // a sequence cut short
        "\xC0\xAF",         // an overlong form of "/"
        "\xE0\x80\xAF",     // another overlong form
        "\xED\xA0\x80",     // a surrogate
        "\xF4\x90\x80\x80",  // above U+10FFFF
        "\xFF",
        "\xFE\xFF",
    };
    for (const std::string& bytes : broken) {
        SCOPED_TRACE(::testing::PrintToString(bytes));
        ExpectEveryReaderRefuses("<lesson title=\"a" + bytes + "b\"/>");
        ExpectEveryReaderRefuses("<ppc name=\"p\"><stringProp name=\"s\">a" + bytes + "</stringProp></ppc>");
        ExpectEveryReaderRefuses("<ce" + bytes + "/>");
    }
    // Inside an encoded string the bytes are the payload's: the UTF-8 coder
    // turns what is not UTF-8 into U+FFFD, and the property still reads.
    auto bag = PersistedPropertyCollection::Create();
    const std::string inner = "<stringProp name=\"s\">a\xFF" "b</stringProp>";
    std::string text = EncodedInBag(inner);
    text.insert(text.find("<encProp") + 8, " enctype=\"utf8\"");
    bag->FromXMLString(text);
    EXPECT_EQ(bag->GetString("s", "?"), "a\xEF\xBF\xBD" "b");
}

TEST(HostileInput, NulBytesAreRemovedBeforeParsing) {
    // The string readers strip control characters first, so a NUL anywhere
    // reads as if it were not there.
    const std::string text = "<lesson title=\"ab\"><ppc name=\"p\"><stringProp name=\"s\">cd</stringProp></ppc></lesson>";
    for (std::size_t at = 0; at <= text.size(); ++at) {
        std::string withNul = text;
        withNul.insert(at, 1, '\0');
        auto lesson = Lesson::Create();
        lesson->FromXMLString(withNul);
        EXPECT_EQ(lesson->Title(), "ab") << at;
        EXPECT_EQ(lesson->Properties()->GetString("s", "?"), "cd") << at;
    }
    // In an encoded property the ANSI coder cuts the payload at its first NUL.
    auto bag = PersistedPropertyCollection::Create();
    const std::string nul(1, '\0');
    bag->FromXMLString(EncodedInBag("<intProp name=\"n\" value=\"2\"/>" + nul + "<junk"));
    EXPECT_EQ(bag->GetLong("n", 0), 2);
    bag->FromXMLString(EncodedInBag("<intProp" + nul + " name=\"n\" value=\"2\"/>"));
    EXPECT_EQ(bag->Count(), 1);
}

TEST(HostileInput, EveryTruncationOfALessonIsRefusedAndChangesNothing) {
    const std::string text = Golden("lesson_normal.xml");
    std::size_t complete = text.size();
    while (complete > 0 && (text[complete - 1] == '\n' || text[complete - 1] == '\r' || text[complete - 1] == ' ')) {
        --complete;
    }
    auto lesson = FilledLesson();
    const std::string before = WithoutDocumentId(lesson->ToXMLString());
    // Cut anywhere before the end, the text is not well-formed (the empty
    // text is the documented reset, so it is not among them).
    for (std::size_t length = 1; length < complete; ++length) {
        try {
            lesson->FromXMLString(std::string_view(text).substr(0, length));
            ADD_FAILURE() << "a prefix of " << length << " bytes was read";
        } catch (const Error& error) {
            ASSERT_EQ(error.Number(), ErrXmlForm) << length;
            ASSERT_EQ(error.Description(), kNotParsed) << length;
        }
    }
    EXPECT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);
    lesson->FromXMLString(std::string_view(text).substr(0, complete));
    EXPECT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);
}

TEST(HostileInput, BitFlipsInEncodedPayloadsLoseAtMostThatProperty) {
    // Every bit of every base64 character of every encoded property of the
    // golden bag, one at a time.
    const std::string text = Golden("properties/ppc_every_type.xml");
    auto original = PersistedPropertyCollection::Create();
    original->FromXMLString(text);
    const std::vector<std::string> names = original->GetPropertyNameArray();

    std::size_t flips = 0;
    for (std::size_t start = text.find("<encProp"); start != std::string::npos;
         start = text.find("<encProp", start + 1)) {
        const std::size_t first = text.find('>', start) + 1;
        const std::size_t last = text.find("</encProp>", first);
        for (std::size_t at = first; at < last; ++at) {
            for (int bit = 0; bit < 8; ++bit) {
                std::string damaged = text;
                damaged[at] = static_cast<char>(damaged[at] ^ (1 << bit));
                ++flips;
                auto bag = PersistedPropertyCollection::Create();
                try {
                    bag->FromXMLString(damaged);
                } catch (const Error& error) {
                    // A flip may make the outer text itself malformed
                    // ('<', '&', a byte that is not UTF-8).
                    ASSERT_EQ(error.Number(), ErrXmlForm);
                    continue;
                }
                // Every other property is read as it was.
                std::size_t missing = 0;
                for (const std::string& name : names) {
                    if (!bag->Exists(name)) {
                        ++missing;
                    }
                }
                ASSERT_LE(missing, 1u) << at << " " << bit;
                ASSERT_LE(bag->Count(), original->Count() + 1);
                EXPECT_NO_THROW(bag->ToXMLString());
            }
        }
    }
    EXPECT_GT(flips, 1000u);
}

}  // namespace
}  // namespace quillbank

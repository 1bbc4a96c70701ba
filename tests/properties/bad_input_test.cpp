// Malformed text handed to the readers gives a documented error or a
// documented fallback value, never a crash (the sanitizer run checks leaks
// and undefined behaviour).

#include <gtest/gtest.h>

#include <random>
#include <string>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "properties/test_support.hpp"
#include "support/base64_coders.hpp"
#include "common/mangle.hpp"

namespace quillbank {
namespace {

using testing::ReadGolden;

// Deletes, duplicates or replaces a few bytes of the text.
std::string Mangle(const std::string& text, std::mt19937& rng) {
    return testing::Mangle(text, rng, "<>/\"'=&;#\r\n\t x\x80\xFF", 6);
}

// Damages base64 text without making the surrounding XML malformed.
std::string DamageBase64(std::string text, std::mt19937& rng) {
    const std::string replacements = "=+/A!*~ \t\n";
    const int edits = std::uniform_int_distribution<int>(1, 4)(rng);
    for (int i = 0; i < edits && !text.empty(); ++i) {
        const std::size_t at = std::uniform_int_distribution<std::size_t>(0, text.size() - 1)(rng);
        if (rng() % 2) {
            text.erase(at, 1 + rng() % 3);
        } else {
            text[at] = replacements[rng() % replacements.size()];
        }
    }
    return text;
}

bool IsDocumentedReaderError(std::int32_t number) {
    return number == ErrXmlForm || number == ErrInvalidCall || number == ErrOverflow;
}

TEST(BadInput, MangledBagTextGivesAnErrorOrABag) {
    const std::string golden = ReadGolden("properties/ppc_every_type.xml");
    std::mt19937 rng(7);
    int parsed = 0;
    for (int i = 0; i < 400; ++i) {
        auto bag = PersistedPropertyCollection::Create();
        try {
            bag->FromXMLString(Mangle(golden, rng));
            ++parsed;
            // Whatever was read can be written again.
            EXPECT_FALSE(bag->ToXMLString().empty());
        } catch (const Error& error) {
            EXPECT_TRUE(IsDocumentedReaderError(error.Number())) << error.what();
        }
    }
    EXPECT_GT(parsed, 0);
}

TEST(BadInput, MangledChildElementTextGivesAnErrorOrAnElement) {
    const std::string golden = ReadGolden("elements/ce.xml");
    std::mt19937 rng(11);
    for (int i = 0; i < 400; ++i) {
        auto element = ChildElement::Create();
        try {
            element->FromXMLString(Mangle(golden, rng));
            EXPECT_FALSE(element->ToClearXMLString().empty());
        } catch (const Error& error) {
            EXPECT_TRUE(IsDocumentedReaderError(error.Number())) << error.what();
        }
    }
}

TEST(BadInput, MangledEncodedPropertiesAreDroppedOrRead) {
    std::mt19937 rng(13);
    const std::string plain = R"(<fontProp name="f" familyName="Arial" emSize="9" bold="-1" italic="0" underline="0"/>)";
    for (int i = 0; i < 300; ++i) {
        const std::string inner = Mangle(plain, rng);
        const std::string encoded = rng() % 2 ? support::EncodeBase64(inner) : support::EncodeBase64Utf8(inner);
        auto bag = PersistedPropertyCollection::Create();
        bag->FromXMLString("<ppc><encProp enctype=\"utf8\">" + encoded + "</encProp><encProp>" + DamageBase64(encoded, rng) +
                           "</encProp><intProp name=\"n\" value=\"1\"/></ppc>");
        EXPECT_EQ(bag->GetLong("n", 0), 1);
        EXPECT_LE(bag->Count(), 3);
    }
}

TEST(BadInput, AbsurdValuesInEveryAttributeReadAsDefaults) {
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(R"(<ppc name="p"><intProp name="i" value="1e400"/><floatProp name="f" value="--1"/>)"
                       R"(<dateProp name="d" value="99999-99-99 99:99:99"/><boolProp name="b" value=""/>)"
                       R"(<colorProp name="c" value="########"/><fontProp name="font" emSize="huge" bold="2x"/>)"
                       R"(<rectProp name="r" left="-2147483649" top="2147483648" width="NaN" height="&amp;HFFFFFFFFF"/>)"
                       R"(</ppc>)");
    EXPECT_EQ(bag->Count(), 7);
    EXPECT_EQ(bag->GetLong("i", -1), 0);
    EXPECT_EQ(bag->GetDouble("f", -1), 0.0);
    EXPECT_EQ(bag->GetDate("d", -1), 0.0);
    EXPECT_FALSE(bag->GetBoolean("b", true));
    EXPECT_EQ(bag->GetColor("c", 5), 0u);
    EXPECT_EQ(bag->GetFont("font", FontData{}), (FontData{"Courier New", 0, false, false, false}));
    EXPECT_EQ(bag->GetRectangle("r", Rectangle{1, 1, 1, 1}), (Rectangle{0, 0, 0, 0}));
}

}  // namespace
}  // namespace quillbank

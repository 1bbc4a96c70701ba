// The regional setting of the reading conversions: choosing it, its errors,
// and that what the library writes reads back the same in every setting.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "support/conversions.hpp"

namespace quillbank::support {
namespace {

class RegionalSettingsTest : public ::testing::Test {
protected:
    void TearDown() override { Functions::SetRegionalSettings("en-US"); }
};

#ifndef _WIN32
// (The Windows build starts from the user's own setting.)
TEST_F(RegionalSettingsTest, DefaultIsEnUs) { EXPECT_EQ(Functions::RegionalSettings(), "en-US"); }
#endif

TEST_F(RegionalSettingsTest, NamesAreLanguageTagsInAnyCaseWithDashOrUnderscore) {
    Functions::SetRegionalSettings("de_de");
    EXPECT_EQ(Functions::RegionalSettings(), "de-DE");
    Functions::SetRegionalSettings("JA-jp");
    EXPECT_EQ(Functions::RegionalSettings(), "ja-JP");
}

TEST_F(RegionalSettingsTest, UnknownNameRaises380AndKeepsTheSetting) {
    Functions::SetRegionalSettings("fr-FR");
    for (const char* name : {"xx-YY", "", "not a locale"}) {
        try {
            Functions::SetRegionalSettings(name);
            ADD_FAILURE() << name;
        } catch (const Error& e) {
            EXPECT_EQ(e.Number(), 380);
            EXPECT_EQ(e.Source(), "Functions.SetRegionalSettings");
            EXPECT_EQ(e.Description(), "'" + std::string(name) +
                                           "' is not a known regional setting; give a language tag such as 'en-US'.");
        }
    }
    EXPECT_EQ(Functions::RegionalSettings(), "fr-FR");
}

TEST_F(RegionalSettingsTest, HostFormsReadInTheirSetting) {
    EXPECT_EQ(VariantToDouble(std::string("1,000"), 0), 1000);
    EXPECT_EQ(VariantToDouble(std::string("$5"), 0), 5);
    EXPECT_EQ(VariantToDouble(std::string("(5)"), 0), -5);
    EXPECT_EQ(VariantToLong(std::string("5-"), 0), -5);
    EXPECT_EQ(DateToText(*TextToDate("January 15, 2024")), "2024-01-15");
    EXPECT_EQ(DateToText(*TextToDate("31/12/1999 23:59")), "1999-12-31 23:59:00");
    Functions::SetRegionalSettings("de-DE");
    EXPECT_EQ(VariantToDouble(std::string("1.000,5"), 0), 1000.5);
    EXPECT_EQ(VariantToDouble(std::string("5 \xE2\x82\xAC"), 0), 5);  // 5 €
    EXPECT_TRUE(VariantToBool(std::string("0,5"), false));
    EXPECT_EQ(DateToText(*TextToDate("15.01.2024")), "2024-01-15");
    EXPECT_EQ(DateToText(*TextToDate("1. M\xC3\xA4rz 2024")), "2024-03-01");  // März
    Functions::SetRegionalSettings("en-GB");
    EXPECT_EQ(DateToText(*TextToDate("01/02/2024")), "2024-02-01");
    EXPECT_EQ(VariantToDouble(std::string("\xC2\xA3" "5"), 0), 5);  // £5
    EXPECT_EQ(VariantToDouble(std::string("$5"), 7), 7);
}

// Integers are read as the nearest integer to the number the text reads as,
// whether or not the text is in the form the library writes.
TEST_F(RegionalSettingsTest, IntegersReadAsTheNearestIntegerOfTheNumber) {
    const char* inputs[] = {"0",    "7",          "-7",         "007",       "-0",   "+5",   "123456789",
                            "-123456789", "1234567890", "2147483647", "2147483648", " 12 ", "1,000", "1.000",
                            "12.5", "13.5",       "-2.5",       "1e3",       "",     "-",    "12a"};
    for (const char* locale : {"en-US", "en-GB", "de-DE", "fr-FR", "ja-JP"}) {
        Functions::SetRegionalSettings(locale);
        for (const char* input : inputs) {
            const std::optional<double> number = TextToDouble(input);
            std::optional<std::int32_t> expected;
            if (number && !std::isnan(*number)) {
                const double rounded = std::nearbyint(*number);
                if (rounded >= -2147483648.0 && rounded <= 2147483647.0) {
                    expected = static_cast<std::int32_t>(rounded);
                }
            }
            EXPECT_EQ(TextToLong(input), expected) << locale << " '" << input << "'";
        }
    }
}

// What the library writes reads back the same in every setting.
TEST_F(RegionalSettingsTest, WrittenFormsReadBackInEverySetting) {
    const double doubles[] = {0.0, 1.5, -0.25, 1234567.875, 1e20, 1e-5, 2.5, 1000.0,
                              std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    const double dates[] = {45306.0, 45306.4375, 36525.999988425926, 0.75, -700.5, 1.0};
    for (const char* locale : {"en-US", "en-GB", "de-DE", "fr-FR", "ja-JP"}) {
        Functions::SetRegionalSettings(locale);
        for (double d : doubles) {
            EXPECT_EQ(*TextToDouble(DoubleToText(d)), d) << locale << " " << DoubleToText(d);
        }
        EXPECT_TRUE(std::isnan(*TextToDouble(DoubleToText(std::nan("")))));
        for (std::int32_t l : {0, 1, -1, 1000, 2147483647, -2147483647 - 1}) {
            EXPECT_EQ(*TextToLong(LongToText(l)), l) << locale;
        }
        for (bool b : {true, false}) {
            EXPECT_EQ(*TextToBool(BoolToText(b)), b) << locale;
            EXPECT_EQ(*TextToBool(TypedBoolToText(b)), b) << locale;
        }
        for (double d : dates) {
            EXPECT_NEAR(*TextToDate(DateToText(d)), d, 1e-9) << locale << " " << DateToText(d);
        }

        // A whole bag written in this setting and read back in it.
        auto bag = PersistedPropertyCollection::Create();
        bag->SetDouble("d", 1234.5);
        bag->SetDate("t", 45306.4375);
        bag->SetBoolean("b", true);
        bag->SetLong("l", -42);
        bag->SetFont("f", Functions::NewFontData("Arial", 10.5, true));
        const std::string xml = bag->ToXMLString();
        auto back = PersistedPropertyCollection::Create();
        back->FromXMLString(xml);
        EXPECT_EQ(back->GetDouble("d", 0), 1234.5) << locale;
        EXPECT_EQ(back->GetDate("t", 0), 45306.4375) << locale;
        EXPECT_TRUE(back->GetBoolean("b", false)) << locale;
        EXPECT_EQ(back->GetLong("l", 0), -42) << locale;
        EXPECT_EQ(back->GetFont("f", FontData{}).Size, 10.5) << locale;
        EXPECT_TRUE(back->GetFont("f", FontData{}).Bold) << locale;
    }
}

}  // namespace
}  // namespace quillbank::support

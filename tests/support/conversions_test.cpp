#include <quillbank/functions.hpp>

#include "support/conversions.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quillbank::support {
namespace {

TEST(VariantToText, AbsentGivesDefault) {
    EXPECT_EQ(VariantToText(std::nullopt, "properties"), "properties");
    EXPECT_EQ(VariantToText(std::string(""), "properties"), "");
    EXPECT_EQ(VariantToText(std::string("x"), "d"), "x");
}

TEST(VariantToLong, ConvertsOrFallsBack) {
    EXPECT_EQ(VariantToLong(std::string("42"), 7), 42);
    EXPECT_EQ(VariantToLong(std::string(" -17 "), 7), -17);
    EXPECT_EQ(VariantToLong(std::string("&H10"), 7), 16);
    EXPECT_EQ(VariantToLong(std::string("&HFFFFFFFF"), 7), -1);
    EXPECT_EQ(VariantToLong(std::string("&O17"), 7), 15);
    EXPECT_EQ(VariantToLong(std::string("2147483647"), 7), 2147483647);
    EXPECT_EQ(VariantToLong(std::string("-2147483648"), 7), -2147483647 - 1);
    EXPECT_EQ(VariantToLong(std::string("2147483648"), 7), 7);  // overflow
    EXPECT_EQ(VariantToLong(std::string("abc"), 7), 7);
    EXPECT_EQ(VariantToLong(std::string(""), 7), 7);
    EXPECT_EQ(VariantToLong(std::nullopt, 7), 7);
}

TEST(VariantToLong, RoundsHalfToEven) {
    EXPECT_EQ(VariantToLong(std::string("2.5"), 0), 2);
    EXPECT_EQ(VariantToLong(std::string("3.5"), 0), 4);
    EXPECT_EQ(VariantToLong(std::string("-2.5"), 0), -2);
    EXPECT_EQ(VariantToLong(std::string("1.2"), 0), 1);
}

TEST(VariantToDouble, ConvertsOrFallsBack) {
    EXPECT_EQ(VariantToDouble(std::string("1.5"), 0), 1.5);
    EXPECT_EQ(VariantToDouble(std::string("-0.25"), 0), -0.25);
    EXPECT_EQ(VariantToDouble(std::string("+3"), 0), 3);
    EXPECT_EQ(VariantToDouble(std::string("1E+20"), 0), 1e20);
    EXPECT_EQ(VariantToDouble(std::string("1e-05"), 0), 1e-5);
    EXPECT_EQ(VariantToDouble(std::string(".5"), 0), 0.5);
    EXPECT_EQ(VariantToDouble(std::string("inf"), 9), 9);
    // In "en-US" the comma groups digits, as the platform reads it.
    Functions::SetRegionalSettings("en-US");
    EXPECT_EQ(VariantToDouble(std::string("1,5"), 9), 15);
    EXPECT_EQ(VariantToDouble(std::string("1,5x"), 9), 9);
    EXPECT_EQ(VariantToDouble(std::string("1.5x"), 9), 9);
    EXPECT_EQ(VariantToDouble(std::nullopt, 9), 9);
}

TEST(VariantToBool, AcceptsWordsAndNumbers) {
    EXPECT_TRUE(VariantToBool(std::string("true"), false));
    EXPECT_TRUE(VariantToBool(std::string("True"), false));
    EXPECT_TRUE(VariantToBool(std::string("TRUE"), false));
    EXPECT_FALSE(VariantToBool(std::string("False"), true));
    EXPECT_TRUE(VariantToBool(std::string("-1"), false));
    EXPECT_FALSE(VariantToBool(std::string("0"), true));
    EXPECT_TRUE(VariantToBool(std::string("2"), false));
    EXPECT_TRUE(VariantToBool(std::string("yes"), true));
    EXPECT_FALSE(VariantToBool(std::string("yes"), false));
    EXPECT_TRUE(VariantToBool(std::nullopt, true));
}

TEST(DoubleToText, ShortestFormThatReadsBack) {
    for (double v : {0.0, 1.5, -2.0, 0.1, 1.0 / 3.0, 1e300, 5e-324, 123456789.125, -0.0}) {
        const std::string text = DoubleToText(v);
        const auto back = TextToDouble(text);
        ASSERT_TRUE(back.has_value()) << text;
        EXPECT_EQ(*back, v) << text;
        EXPECT_EQ(std::signbit(*back), std::signbit(v)) << text;
    }
    EXPECT_EQ(DoubleToText(1.5), "1.5");
    EXPECT_EQ(DoubleToText(0.1), "0.1");
    EXPECT_EQ(DoubleToText(8), "8");
}

TEST(DoubleToText, NonFiniteValuesReadBack) {
    EXPECT_TRUE(std::isnan(*TextToDouble(DoubleToText(std::numeric_limits<double>::quiet_NaN()))));
    EXPECT_EQ(*TextToDouble(DoubleToText(std::numeric_limits<double>::infinity())),
              std::numeric_limits<double>::infinity());
    EXPECT_EQ(*TextToDouble(DoubleToText(-std::numeric_limits<double>::infinity())),
              -std::numeric_limits<double>::infinity());
}

TEST(LongToText, Decimal) {
    EXPECT_EQ(LongToText(-42), "-42");
    EXPECT_EQ(LongToText(-2147483647 - 1), "-2147483648");
}

TEST(BoolToText, Forms) {
    EXPECT_EQ(BoolToText(true), "true");
    EXPECT_EQ(BoolToText(false), "false");
    EXPECT_EQ(TypedBoolToText(true), "-1");
    EXPECT_EQ(TypedBoolToText(false), "0");
}

TEST(DateToText, WrittenForms) {
    EXPECT_EQ(DateToText(0), "00:00:00");
    EXPECT_EQ(DateToText(0.75), "18:00:00");
    EXPECT_EQ(DateToText(1), "1899-12-31");
    EXPECT_EQ(DateToText(45000), "2023-03-15");
    EXPECT_EQ(DateToText(45000.5), "2023-03-15 12:00:00");
    EXPECT_EQ(DateToText(-1.25), "1899-12-29 06:00:00");
    EXPECT_EQ(DateToText(2958465), "9999-12-31");
    EXPECT_EQ(DateToText(-657434), "0100-01-01");
}

TEST(TextToDate, ReadsWrittenAndPlatformForms) {
    EXPECT_EQ(*TextToDate("2023-03-15"), 45000);
    EXPECT_EQ(*TextToDate("2023-03-15 12:00:00"), 45000.5);
    EXPECT_EQ(*TextToDate("2023-03-15T12:00"), 45000.5);
    EXPECT_EQ(*TextToDate("3/15/2023"), 45000);
    EXPECT_EQ(*TextToDate("3/15/2023 12:00:00 PM"), 45000.5);
    EXPECT_EQ(*TextToDate("3/15/2023 12:00:00 AM"), 45000);
    EXPECT_EQ(*TextToDate("3/15/2023 6:00:00 pm"), 45000.75);
    EXPECT_EQ(*TextToDate("6:00:00 PM"), 0.75);
    EXPECT_EQ(*TextToDate("18:00:00"), 0.75);
    EXPECT_EQ(*TextToDate("1899-12-29 06:00:00"), -1.25);
}

TEST(TextToDate, RejectsWhatIsNotADate) {
    for (const char* bad : {"", "x", "2023-02-30", "25:00", "12:60", "2023-03-15 x", "45000", "1/2/", "-1/2/2023",
                            "Feb 29 2023"}) {
        EXPECT_FALSE(TextToDate(bad).has_value()) << bad;
    }
}

TEST(TextToDate, FallsBackAsThePlatformDoes) {
    Functions::SetRegionalSettings("en-US");
    // Impossible month first: day first, then year first with the fields swapped.
    EXPECT_EQ(DateToText(*TextToDate("13/1/2023")), "2023-01-13");
    EXPECT_EQ(DateToText(*TextToDate("2023-13-01")), "2023-01-13");
    EXPECT_EQ(DateToText(*TextToDate("1/2/345")), "0345-01-02");
}

TEST(DateToText, RoundTripsToTheSecond) {
    for (double v : {1.0, 36526.5, 45000.999988425926, -700.5, 2958465.5, 0.000011574074}) {
        const auto back = TextToDate(DateToText(v));
        ASSERT_TRUE(back.has_value()) << DateToText(v);
        EXPECT_NEAR(*back, v, 1.0 / 86400) << DateToText(v);
        EXPECT_EQ(DateToText(*back), DateToText(v));
    }
}

}  // namespace
}  // namespace quillbank::support

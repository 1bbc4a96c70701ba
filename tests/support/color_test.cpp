#include "support/color.hpp"

#include <gtest/gtest.h>

#include <quillbank/error.hpp>

namespace quillbank::support {
namespace {

TEST(HTMLToOLEColor, RedWithAndWithoutHash) {
    EXPECT_EQ(HTMLToOLEColor("#FF0000"), 255u);
    EXPECT_EQ(HTMLToOLEColor("FF0000"), 255u);
}

TEST(HTMLToOLEColor, ThreeDigitsGiveBlack) { EXPECT_EQ(HTMLToOLEColor("#F00"), 0u); }

TEST(HTMLToOLEColor, NonHexDigitsGiveBlack) { EXPECT_EQ(HTMLToOLEColor("#GG0000"), 0u); }

TEST(HTMLToOLEColor, BytesSwapIntoBgrOrder) {
    EXPECT_EQ(HTMLToOLEColor("#0A0B0C"), 0x0C0B0Au);
    EXPECT_EQ(HTMLToOLEColor("#abcdef"), 0xEFCDABu);
    EXPECT_EQ(HTMLToOLEColor("##00FF00"), 0x00FF00u);  // every hash is removed
    EXPECT_EQ(HTMLToOLEColor(""), 0u);
    EXPECT_EQ(HTMLToOLEColor("#FF00000"), 0u);
}

TEST(OLEColorToHTML, RedAndPadding) {
    EXPECT_EQ(OLEColorToHTML(255), "#FF0000");
    EXPECT_EQ(OLEColorToHTML(0x0A0B0C), "#0C0B0A");
    EXPECT_EQ(OLEColorToHTML(0), "#000000");
    EXPECT_EQ(OLEColorToHTML(0xFFFFFF), "#FFFFFF");
}

TEST(OLEColorToHTML, SystemColoursResolveToDefaults) {
    EXPECT_EQ(OLEColorToHTML(0x80000005), "#FFFFFF");  // window
    EXPECT_EQ(OLEColorToHTML(0x80000008), "#000000");  // window text
    EXPECT_EQ(OLEColorToHTML(0x8000000F), "#D4D0C8");  // button face
}

TEST(OLEColorToHTML, InvalidColourRaisesError5) {
    for (OleColor bad : {0x8000001Fu, 0x03000000u, 0x40000000u, 0xFFFFFFFFu}) {
        try {
            OLEColorToHTML(bad);
            FAIL() << "no error for " << bad;
        } catch (const Error& e) {
            EXPECT_EQ(e.Number(), 5);
            EXPECT_EQ(e.Description(), "Invalid procedure call or argument");
        }
    }
}

TEST(OLEColorToHTML, PaletteFormsKeepTheirLowBytes) {
    EXPECT_EQ(OLEColorToHTML(0x02000102), "#020100");
    EXPECT_EQ(OLEColorToHTML(0x01000005), "#050000");
}

TEST(IsLongText, AcceptsDecimalAndHexadecimal) {
    EXPECT_TRUE(IsLongText("42"));
    EXPECT_TRUE(IsLongText("&HFF0000"));
    EXPECT_TRUE(IsLongText("&hff"));
    EXPECT_FALSE(IsLongText("&HGG0000"));
    EXPECT_FALSE(IsLongText("abc"));
    EXPECT_FALSE(IsLongText(""));
    EXPECT_FALSE(IsLongText("99999999999"));
}

}  // namespace
}  // namespace quillbank::support

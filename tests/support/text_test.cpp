#include "support/text.hpp"

#include <gtest/gtest.h>

#include <quillbank/error.hpp>

namespace quillbank::support {
namespace {

TEST(StripControlChars, RemovesU0001AndU000B) {
    EXPECT_EQ(StripControlChars(std::string("a\x01" "b\x0B" "c")), "abc");
}

TEST(StripControlChars, KeepsTabLineFeedCarriageReturnAndU001F) {
    const std::string kept = "a\tb\nc\rd\x1F" "e";
    EXPECT_EQ(StripControlChars(kept), kept);
}

TEST(StripControlChars, StopsAtU0019) {
    std::string all;
    for (int c = 0; c < 0x20; ++c) {
        all.push_back(static_cast<char>(c));
    }
    EXPECT_EQ(StripControlChars(all), std::string("\t\n\r\x1A\x1B\x1C\x1D\x1E\x1F"));
}

TEST(StripControlChars, RemovesNulCharacters) {
    EXPECT_EQ(StripControlChars(std::string("x\0y", 3)), "xy");
}

TEST(StripControlChars, LeavesNonAsciiText) {
    EXPECT_EQ(StripControlChars("Gr\xC3\xBC\xC3\x9F" "e \xE4\xB8\xAD"), "Gr\xC3\xBC\xC3\x9F" "e \xE4\xB8\xAD");
}

TEST(TrimAtNull, CutsAtFirstNul) {
    EXPECT_EQ(TrimAtNull(std::string("abc\0def\0", 8)), "abc");
    EXPECT_EQ(TrimAtNull("abc"), "abc");
    EXPECT_EQ(TrimAtNull(std::string("\0x", 2)), "");
}

TEST(IsBlankText, OnlySpacesTabsAndLineBreaksAreBlank) {
    EXPECT_TRUE(IsBlankText(""));
    EXPECT_TRUE(IsBlankText("   "));
    EXPECT_TRUE(IsBlankText(" \r\n\t "));
    EXPECT_FALSE(IsBlankText(" x "));
    EXPECT_FALSE(IsBlankText("\xC2\xA0"));  // a no-break space is text
}

TEST(ReplaceAll, ReplacesEveryOccurrence) {
    EXPECT_EQ(ReplaceAll("a\r\nb\r\nc", "\r\n", "\n"), "a\nb\nc");
    EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
}

TEST(Utf8, ValidityCheck) {
    EXPECT_TRUE(IsValidUtf8(""));
    EXPECT_TRUE(IsValidUtf8("plain"));
    EXPECT_TRUE(IsValidUtf8("\xE2\x82\xAC \xF0\x9F\x98\x80"));
    EXPECT_FALSE(IsValidUtf8("\xFF"));
    EXPECT_FALSE(IsValidUtf8("\xC3"));              // truncated
    EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));          // overlong
    EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));      // surrogate
    EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));  // beyond U+10FFFF
}

TEST(Utf8, RequireUtf8RaisesInvalidArgument) {
    EXPECT_NO_THROW(RequireUtf8("fine", "Test.Member"));
    try {
        RequireUtf8("\xFF", "Test.Member");
        FAIL() << "no error";
    } catch (const Error& e) {
        EXPECT_EQ(e.Number(), 380);
        EXPECT_EQ(e.Source(), "Test.Member");
        EXPECT_NE(e.Description().find("UTF-8"), std::string::npos);
    }
}

TEST(Utf8, Utf16RoundTripAndLength) {
    const std::string text = "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80";
    const std::u16string wide = Utf8ToUtf16(text);
    EXPECT_EQ(wide, (std::u16string{u'a', 0xE9, 0x4E2D, 0xD83D, 0xDE00}));
    EXPECT_EQ(Utf16ToUtf8(wide), text);
    EXPECT_EQ(Utf16Length(text), 5u);
    EXPECT_EQ(Utf8ToUtf16("\xFF"), std::u16string(1, u'\xFFFD'));
}

}  // namespace
}  // namespace quillbank::support

#include "support/ansi.hpp"

#include <gtest/gtest.h>

namespace quillbank::support {
namespace {

TEST(IsUnicodeString, FalseForTextUpToU00FF) {
    EXPECT_FALSE(IsUnicodeString(""));
    EXPECT_FALSE(IsUnicodeString("plain ASCII"));
    EXPECT_FALSE(IsUnicodeString("caf\xC3\xA9 \xC3\xBF"));  // é ÿ
}

TEST(IsUnicodeString, TrueForCjkIdeographOnWesternCodePage) {
    EXPECT_TRUE(IsUnicodeString("abc \xE4\xB8\xAD"));  // 中
}

TEST(IsUnicodeString, EuroSignDoesNotCount) {
    // Above U+00FF, but the code page holds it as the high byte 0x80.
    EXPECT_FALSE(IsUnicodeString("\xE2\x82\xAC 5"));
}

TEST(IsUnicodeString, CharacterOutsideCodePageCounts) {
    EXPECT_TRUE(IsUnicodeString("\xC4\x80"));          // Ā
    EXPECT_TRUE(IsUnicodeString("\xF0\x9F\x98\x80"));  // beyond the BMP
}

TEST(IsLowAnsiValue, TestsTheConvertedCode) {
    EXPECT_FALSE(IsLowAnsiValue(""));
    EXPECT_TRUE(IsLowAnsiValue("A"));
    EXPECT_TRUE(IsLowAnsiValue("\xE4\xB8\xAD"));   // becomes '?', 63
    EXPECT_FALSE(IsLowAnsiValue("\xE2\x82\xAC"));  // euro: 0x80
    EXPECT_FALSE(IsLowAnsiValue("\xC3\xA9"));      // é: 0xE9
    EXPECT_TRUE(IsLowAnsiValue("\x7F"));
}

TEST(AnsiCodePage, IsWindows1252) {
    EXPECT_EQ(Utf8ToAnsi("\xE2\x82\xAC"), std::vector<std::uint8_t>{0x80});
    EXPECT_EQ(Utf8ToAnsi("\xC5\x92"), std::vector<std::uint8_t>{0x8C});  // Œ
    EXPECT_EQ(Utf8ToAnsi("\xC3\xA9"), std::vector<std::uint8_t>{0xE9});
    EXPECT_EQ(Utf8ToAnsi("\xE4\xB8\xAD"), std::vector<std::uint8_t>{'?'});
    EXPECT_EQ(Utf8ToAnsi("\xF0\x9F\x98\x80"), std::vector<std::uint8_t>{'?'});
}

TEST(AnsiCodePage, EveryByteRoundTrips) {
    std::vector<std::uint8_t> all;
    for (int b = 0; b < 256; ++b) {
        all.push_back(static_cast<std::uint8_t>(b));
    }
    EXPECT_EQ(Utf8ToAnsi(AnsiToUtf8(all)), all);
}

TEST(AnsiCodePage, UndefinedBytesBecomeControlCharacters) {
    const std::uint8_t b[] = {0x81, 0x8D, 0x8F, 0x90, 0x9D};
    EXPECT_EQ(AnsiToUtf8(b), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

}  // namespace
}  // namespace quillbank::support

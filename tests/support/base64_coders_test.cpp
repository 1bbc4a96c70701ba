#include "support/base64_coders.hpp"

#include <gtest/gtest.h>

#include <quillbank/error.hpp>

#include "xml/base64.hpp"

namespace quillbank::support {
namespace {

std::vector<std::uint8_t> Bytes(const std::string& b64) { return *xml::DecodeBase64Text(b64); }

TEST(EncodeBase64, EmptyTextIsOneZeroByte) { EXPECT_EQ(EncodeBase64(""), "AA=="); }

TEST(EncodeBase64Utf8, EmptyTextIsEmpty) { EXPECT_EQ(EncodeBase64Utf8(""), ""); }

TEST(DecodeBase64, RoundTripCutsTrailingZero) {
    EXPECT_EQ(EncodeBase64("abc"), "YWJjAA==");
    EXPECT_EQ(DecodeBase64(EncodeBase64("abc")), "abc");
}

TEST(EncodeBase64, BufferHasOneByteMoreThanCodeUnits) {
    EXPECT_EQ(Bytes(EncodeBase64("ab")), (std::vector<std::uint8_t>{'a', 'b', 0}));
    // The euro sign is one code unit and the single ANSI byte 0x80.
    EXPECT_EQ(Bytes(EncodeBase64("\xE2\x82\xAC")), (std::vector<std::uint8_t>{0x80, 0}));
    // A character beyond the BMP is two code units and one '?'.
    EXPECT_EQ(Bytes(EncodeBase64("\xF0\x9F\x98\x80")), (std::vector<std::uint8_t>{'?', 0, 0}));
}

TEST(EncodeBase64, CharactersOutsideCodePageBecomeQuestionMarks) {
    EXPECT_EQ(DecodeBase64(EncodeBase64("x\xE4\xB8\xADy")), "x?y");
    EXPECT_EQ(DecodeBase64(EncodeBase64("caf\xC3\xA9 \xE2\x82\xAC")), "caf\xC3\xA9 \xE2\x82\xAC");
}

TEST(DecodeBase64, CutsAtInnerNul) {
    const std::uint8_t raw[] = {'a', 'b', 0, 'c', 'd'};
    EXPECT_EQ(DecodeBase64(xml::EncodeBase64Text(raw)), "ab");
}

TEST(DecodeBase64, AcceptsLineBreaksAndSurroundingWhitespace) {
    EXPECT_EQ(DecodeBase64("  YWJj\r\nAA==\n "), "abc");
}

TEST(DecodeBase64, MalformedInputRaisesTheDocumentModelError) {
    try {
        DecodeBase64("not base64!");
        FAIL() << "no error";
    } catch (const Error& e) {
        EXPECT_EQ(e.Number(), ErrXmlDom);
        EXPECT_EQ(e.Source(), "msxml3.dll");
        EXPECT_EQ(e.Description(), "Error parsing 'not base64!' as bin.base64 datatype.");
    }
    EXPECT_THROW(DecodeBase64Utf8("@@@@"), Error);
}

TEST(EncodeBase64Utf8, NoTrailingZeroByte) {
    EXPECT_EQ(EncodeBase64Utf8("abc"), "YWJj");
    EXPECT_EQ(Bytes(EncodeBase64Utf8("\xE4\xB8\xAD")), (std::vector<std::uint8_t>{0xE4, 0xB8, 0xAD}));
}

TEST(DecodeBase64Utf8, RoundTripsEveryCharacter) {
    const std::string text = "\xE4\xB8\xAD\xE6\x96\x87 caf\xC3\xA9 \xF0\x9F\x98\x80 \xE2\x82\xAC";
    EXPECT_EQ(DecodeBase64Utf8(EncodeBase64Utf8(text)), text);
    EXPECT_EQ(DecodeBase64Utf8(""), "");
}

TEST(DecodeBase64Utf8, InvalidBytesBecomeReplacementCharacters) {
    const std::uint8_t raw[] = {'a', 0xFF, 'b'};
    EXPECT_EQ(DecodeBase64Utf8(xml::EncodeBase64Text(raw)), "a\xEF\xBF\xBD" "b");
}

TEST(DecodeBase64Utf8, CutsAtNul) {
    const std::uint8_t raw[] = {'a', 0, 'b'};
    EXPECT_EQ(DecodeBase64Utf8(xml::EncodeBase64Text(raw)), "a");
}

TEST(DecodeBase64, ErrorMarkersDecodeToTheirText) {
    EXPECT_EQ(DecodeBase64(EncodeBase64("#error#")), "#error#");
    EXPECT_EQ(DecodeBase64(EncodeBase64("#error (2)#")), "#error (2)#");
}

TEST(EncodeBase64, LongTextIsBrokenIntoLinesOf72) {
    const std::string text(200, 'x');
    const std::string b64 = EncodeBase64(text);
    EXPECT_EQ(b64.find('\n'), 72u);
    EXPECT_NE(b64.back(), '\n');
    EXPECT_EQ(DecodeBase64(b64), text);
}

TEST(SafeUpperBound, EmptyIsMinusOne) {
    EXPECT_EQ(SafeUpperBound({}), -1);
    EXPECT_EQ(SafeUpperBound({1, 2, 3}), 2);
}

}  // namespace
}  // namespace quillbank::support

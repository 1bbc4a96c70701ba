// The tool's small routines, called directly: the nearest name of a
// mistyped word, the documentid of a lesson text, the positions of deep map
// items, and the escapes of text that comes from a file.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "document_id.hpp"
#include "map_items.hpp"
#include "property_path.hpp"
#include "suggestion.hpp"
#include "text_decoding.hpp"

using namespace quillbank::tool;

TEST(Suggestion, CountsInsertionsDeletionsSubstitutionsAndSwaps) {
    EXPECT_EQ(EditDistance("normalize", "normalize"), 0u);
    EXPECT_EQ(EditDistance("normalise", "normalize"), 1u);
    EXPECT_EQ(EditDistance("chek", "check"), 1u);
    EXPECT_EQ(EditDistance("tere", "tree"), 1u);  // a swap of neighbours
    EXPECT_EQ(EditDistance("INFO", "info"), 0u);
    EXPECT_EQ(EditDistance("", "abc"), 3u);
}

TEST(Suggestion, OffersOnlyANearName) {
    const std::vector<std::string> names = {"info", "tree", "props", "clear", "normalize", "check", "diff"};
    EXPECT_EQ(Nearest("normalise", names), "normalize");
    EXPECT_EQ(Nearest("chek", names), "check");
    EXPECT_EQ(Nearest("norm", names), "normalize");  // the start of a name
    EXPECT_FALSE(Nearest("frobnicate", names).has_value());
    EXPECT_FALSE(Nearest("x", names).has_value());
}

TEST(DocumentId, IsReadFromTheLessonStartTagOnly) {
    EXPECT_EQ(DocumentIdOf(R"(<?xml version="1.0"?><!-- <lesson documentid="no"> --><lesson title='a "b"' )"
                           R"(documentid='D&amp;1'><ppc documentid="no"/></lesson>)"),
              "D&1");
    EXPECT_FALSE(DocumentIdOf(R"(<lesson title="t"><ppc/></lesson>)").has_value());
    EXPECT_FALSE(DocumentIdOf(R"(<lessons documentid="x"/>)").has_value());
}

TEST(DocumentId, ReplacesTheWrittenOneOnly) {
    EXPECT_EQ(WithDocumentId(R"(<lesson lessonid="L" documentid="NEW"><ppc name="documentid"/></lesson>)", "O<\"1"),
              R"(<lesson lessonid="L" documentid="O&lt;&quot;1"><ppc name="documentid"/></lesson>)");
    EXPECT_EQ(WithDocumentId(R"(<lesson lessonid="L"/>)", "X"), R"(<lesson lessonid="L"/>)");
}

TEST(ItemPositions, ShowTheFirstAndLastNumbersOfDeepItems) {
    // A chain 12 levels deep, each the first child, the last one the third.
    std::vector<MapItem> items;
    for (std::int64_t depth = 0; depth < 12; ++depth) {
        MapItem item;
        item.depth = depth;
        item.index = depth == 11 ? 2 : 0;
        item.parent = depth - 1;
        item.head = depth < kPositionHead ? depth : kPositionHead - 1;
        items.push_back(item);
    }
    EXPECT_EQ(ItemPosition(items, 0), "1");
    EXPECT_EQ(ItemPosition(items, 7), "1.1.1.1.1.1.1.1");
    EXPECT_EQ(ItemPosition(items, 11), "1.1.1.1.\u2026.1.1.1.3 (level 12)");
}

TEST(Escapes, KeepEveryLineAndTheOrderOfTheOutput) {
    EXPECT_EQ(Quoted("a\nb\r\t\"\\"), R"("a\nb\r\t\"\\")");
    EXPECT_EQ(Quoted("\x01"), R"("\x01")");
    EXPECT_EQ(Quoted("x\u202Ey\u2066z\u200F"), R"("x\u202Ey\u2066z\u200F")");
    EXPECT_EQ(Escaped("say \"hi\"\n"), "say \"hi\"\\n");
    EXPECT_EQ(Quoted("caf\u00E9 \u2014 \u20AC"), "\"caf\u00E9 \u2014 \u20AC\"");
}

TEST(Decoding, UnmarkedUtf16IsRecognisedByItsZeroBytes) {
    const std::vector<std::uint8_t> little = {'<', 0, 'a', 0, '/', 0, '>', 0};
    auto decoded = DecodeFileBytes(little);
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->text, "<a/>");
    EXPECT_EQ(decoded->encoding, SourceEncoding::Utf16LittleEndian);
    ASSERT_EQ(decoded->notes.size(), 1u);
    EXPECT_EQ(decoded->notes[0].code, "E02");
}

TEST(Decoding, AStrayByteInUtf8IsReadAsWindows1252AndNamed) {
    // Three valid multi-byte sequences outnumber the two stray bytes.
    const std::string bytes = "<a t=\"\xC3\xA9t\xC3\xA9\xC3\xA9 \x93quoted\x94\"/>";
    auto decoded = DecodeFileBytes({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->encoding, SourceEncoding::Utf8);
    EXPECT_EQ(decoded->text, "<a t=\"\u00E9t\u00E9\u00E9 \u201Cquoted\u201D\"/>");
    ASSERT_EQ(decoded->notes.size(), 1u);
    EXPECT_EQ(decoded->notes[0].code, "E01");
    EXPECT_EQ(decoded->notes[0].sentence,
              "the file is UTF-8 but 2 bytes are not (at byte offsets 14, 21); each was read as its Windows-1252 "
              "character");
}

TEST(Decoding, MostlyInvalidUtf8IsWindows1252) {
    const std::string bytes = "<a t=\"caf\xE9 cr\xE8me\"/>";
    auto decoded = DecodeFileBytes({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->encoding, SourceEncoding::Windows1252);
    EXPECT_EQ(decoded->text, "<a t=\"caf\u00E9 cr\u00E8me\"/>");
    ASSERT_EQ(decoded->notes.size(), 1u);
    EXPECT_EQ(decoded->notes[0].code, "E03");
}

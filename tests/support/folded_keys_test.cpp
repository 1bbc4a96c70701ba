#include "support/folded_keys.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/sort.hpp"

namespace quillbank::support {
namespace {

std::size_t HashOfKey(std::string_view name) { return std::hash<std::string_view>{}(LowerCase(name)); }

TEST(FoldedKeys, TheHashOfANameIsTheHashOfItsLowerCasedForm) {
    for (const std::string name : {"", "abc", "ABC", "Sb-7AD13E99-11AE", "Ünïcödé", "ΣΊΣΥΦΟΣ", "Straße"}) {
        EXPECT_EQ(FoldedHash(name), HashOfKey(name)) << name;
    }
}

TEST(FoldedKeys, NamesLongerThanTheStackBufferHashAlike) {
    const std::string longName(1000, 'Q');
    EXPECT_EQ(FoldedHash(longName), HashOfKey(longName));
    EXPECT_EQ(FoldedHash(longName), FoldedHash(std::string(1000, 'q')));
}

TEST(FoldedKeys, ANameFoldsToItsKeyAndToNothingElse) {
    EXPECT_TRUE(FoldsTo("AbC", "abc"));
    EXPECT_FALSE(FoldsTo("AbC", "AbC"));
    EXPECT_FALSE(FoldsTo("AbC", "abcd"));
    EXPECT_TRUE(FoldsTo("ÄÖÜ", "äöü"));
    EXPECT_FALSE(FoldsTo("ÄÖÜ", "aou"));
}

TEST(FoldedKeys, NamesAreTheSameWhenTheirKeysAre) {
    EXPECT_TRUE(SameFolded("Title", "tITLE"));
    EXPECT_FALSE(SameFolded("Title", "Titles"));
    EXPECT_TRUE(SameFolded("Ärger", "äRGER"));
    EXPECT_FALSE(SameFolded("Ärger", "Arger"));
    // '@' and '`' sit next to 'A' and 'a' but are not letters.
    EXPECT_FALSE(SameFolded("@", "`"));
}

TEST(FoldedKeys, EveryAsciiCharacterFoldsAsLowerCaseDoesAtEveryPosition) {
    std::string all;
    for (int c = 0; c < 128; ++c) {
        all.push_back(static_cast<char>(c));
    }
    for (std::size_t start = 0; start < 9; ++start) {
        const std::string name = all.substr(start) + all.substr(0, start);
        const std::string key = LowerCase(name);
        EXPECT_TRUE(FoldsTo(name, key));
        EXPECT_TRUE(SameFolded(name, key));
        EXPECT_EQ(FoldedHash(name), HashOfKey(name));
        std::string other = key;
        other[start * 7] = other[start * 7] == 'x' ? 'y' : 'x';
        EXPECT_FALSE(FoldsTo(name, other));
        EXPECT_FALSE(SameFolded(name, other));
    }
}

}  // namespace
}  // namespace quillbank::support

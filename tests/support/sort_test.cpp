#include "support/sort.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace quillbank::support {
namespace {

using Names = std::vector<std::string>;

// SortByLowerCaseName gives the order SortStrings gives, from twenty
// shuffles of the names.
void ExpectSortedAsSortStrings(Names names, unsigned seed) {
    std::mt19937 random(seed);
    for (int round = 0; round < 20; ++round) {
        std::shuffle(names.begin(), names.end(), random);
        std::vector<const std::string*> items;
        for (const std::string& name : names) {
            items.push_back(&name);
        }
        SortByLowerCaseName(items, [](const std::string& name) -> const std::string& { return name; });
        Names sorted;
        for (const std::string* item : items) {
            sorted.push_back(*item);
        }
        Names expected = names;
        SortStrings(expected);
        EXPECT_EQ(sorted, expected);
    }
}

TEST(SortStrings, IgnoresLetterCase) {
    Names names{"c", "B", "a", "D"};
    SortStrings(names);
    EXPECT_EQ(names, (Names{"a", "B", "c", "D"}));
}

TEST(SortStrings, ComparesLowerCasedCodeUnits) {
    // '_' (0x5F) sorts before 'a' (0x61) once letters are lower-cased, though
    // it sorts after 'A' (0x41) as it stands.
    Names names{"Apple", "_x", "b"};
    SortStrings(names);
    EXPECT_EQ(names, (Names{"_x", "Apple", "b"}));
}

TEST(SortStrings, OrdersByUtf16CodeUnitsNotCodePoints) {
    // U+FF5E (one code unit) sorts after U+1F600 (a surrogate pair starting 0xD83D).
    Names names{"\xEF\xBD\x9E", "\xF0\x9F\x98\x80", "z"};
    SortStrings(names);
    EXPECT_EQ(names, (Names{"z", "\xF0\x9F\x98\x80", "\xEF\xBD\x9E"}));
}

TEST(SortStrings, LowerCasesBeyondAscii) {
    Names names{"\xC3\x84rger", "\xC3\xA4pfel", "zebra"};  // Ärger, äpfel
    SortStrings(names);
    EXPECT_EQ(names, (Names{"zebra", "\xC3\xA4pfel", "\xC3\x84rger"}));
}

TEST(SortByLowerCaseName, GivesTheOrderOfSortStringsForNamesDistinctWithoutCase) {
    // Mixed case, non-ASCII letters, surrogate pairs and an empty name.
    Names names{"delta", "\xC3\x84rger", "Alpha", "", "\xEF\xBD\x9E", "\xF0\x9F\x98\x80", "_x", "beta", "\xC3\xA4pfeL"};
    ExpectSortedAsSortStrings(names, 7);
}

TEST(SortByLowerCaseName, AsciiNamesTakeTheOrderOfSortStrings) {
    // Names distinct without case (as in a bag) that mix letter case,
    // lengths and the characters between 'Z' and 'a'.
    Names names{"", "a", "B", "ab", "AB_", "a_", "_", "`tick", "[x", "Zz", "z", "{", "~end", "0", "9lives", " space",
                "aBc", "abC1", "@home"};
    ExpectSortedAsSortStrings(names, 11);
}

TEST(SortStrings, MinusOneMeansTheBounds) {
    Names names{"d", "c", "b", "a"};
    SortStrings(names, -1, -1);
    EXPECT_EQ(names, (Names{"a", "b", "c", "d"}));
}

TEST(SortStrings, SortsOnlyTheGivenRange) {
    Names names{"d", "c", "b", "a"};
    SortStrings(names, 1, 2);
    EXPECT_EQ(names, (Names{"d", "b", "c", "a"}));
}

TEST(SortStrings, EmptyAndSingleArrays) {
    Names none;
    SortStrings(none);
    EXPECT_TRUE(none.empty());
    Names one{""};
    SortStrings(one);
    EXPECT_EQ(one, Names{""});
}

TEST(SortStrings, AgreesWithAnOrderedSortOnUniqueNames) {
    std::mt19937 random(7);
    Names names;
    for (int i = 0; i < 5000; ++i) {
        names.push_back("Name" + std::to_string(random()) + (i % 3 ? "x" : "X"));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    Names expected = names;
    std::sort(expected.begin(), expected.end(),
              [](const std::string& a, const std::string& b) { return LowerCaseKey(a) < LowerCaseKey(b); });
    std::shuffle(names.begin(), names.end(), random);
    SortStrings(names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(LowerCaseKey(names[i]), LowerCaseKey(expected[i]));
    }
}

TEST(SortStrings, SortedAndReversedInputs) {
    Names names;
    for (int i = 0; i < 1000; ++i) {
        names.push_back(std::to_string(100000 + i));
    }
    Names expected = names;
    std::reverse(names.begin(), names.end());
    SortStrings(names);
    EXPECT_EQ(names, expected);
    SortStrings(names);
    EXPECT_EQ(names, expected);
}

TEST(SwapStrings, ExchangesTwoEntries) {
    Names names{"a", "b", "c"};
    SwapStrings(names, 0, 2);
    EXPECT_EQ(names, (Names{"c", "b", "a"}));
}

TEST(LowerCaseKey, FoldsLetterCase) {
    EXPECT_EQ(LowerCaseKey("Width"), LowerCaseKey("wIDTH"));
    EXPECT_EQ(LowerCase("\xC3\x84" "B"), "\xC3\xA4" "b");
    EXPECT_EQ(LowerCase("\xCE\xA3"), "\xCF\x83");  // Σ -> σ
    EXPECT_EQ(LowerCase("ABC"), "abc");
}

}  // namespace
}  // namespace quillbank::support

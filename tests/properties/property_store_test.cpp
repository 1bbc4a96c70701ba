// The storage behind every bag: insertion order, names that ignore case, and
// replacement and removal at any size, also across the point where a bag
// starts to keep a table beside its array and where gaps are squeezed out.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "properties/persisted_property.hpp"
#include "properties/property_store.hpp"

namespace quillbank::detail {
namespace {

std::shared_ptr<PersistedProperty> Long(const std::string& name, std::int32_t value) {
    auto property = PersistedProperty::Create();
    property->SetLong(name, value, etNotEncoded);
    return property;
}

std::vector<std::string> Names(const PropertyStore& store) {
    std::vector<std::string> names;
    for (const auto& property : store.Items()) {
        names.push_back(property->Name());
    }
    return names;
}

TEST(PropertyStore, KeepsInsertionOrderAndFindsNamesIgnoringCase) {
    for (const int count : {1, 8, 9, 100, 5000}) {
        PropertyStore store;
        std::vector<std::string> expected;
        for (int i = 0; i < count; ++i) {
            expected.push_back("Name" + std::to_string(i));
            store.Add(Long(expected.back(), i));
        }
        EXPECT_EQ(store.Size(), static_cast<std::size_t>(count));
        EXPECT_EQ(Names(store), expected);
        for (int i = 0; i < count; ++i) {
            const auto found = store.Find("NAME" + std::to_string(i));
            ASSERT_TRUE(found) << count << " " << i;
            EXPECT_EQ(found->LongValue(), i);
        }
        EXPECT_FALSE(store.Find("Name" + std::to_string(count)));
    }
}

TEST(PropertyStore, ReplacingMovesTheNameToTheEnd) {
    for (const int count : {4, 50}) {
        PropertyStore store;
        for (int i = 0; i < count; ++i) {
            store.Add(Long("p" + std::to_string(i), i));
        }
        store.Add(Long("P0", -1));
        const std::vector<std::string> names = Names(store);
        ASSERT_EQ(names.size(), static_cast<std::size_t>(count));
        EXPECT_EQ(names.front(), "p1");
        EXPECT_EQ(names.back(), "P0");
        EXPECT_EQ(store.Find("p0")->LongValue(), -1);
    }
}

TEST(PropertyStore, RemovalKeepsTheOthersInOrderThroughEverySqueeze) {
    PropertyStore store;
    const int count = 3000;
    for (int i = 0; i < count; ++i) {
        store.Add(Long("k" + std::to_string(i), i));
    }
    // Remove all but every tenth, in an order that leaves gaps everywhere.
    for (int i = count - 1; i >= 0; --i) {
        if (i % 10 != 0) {
            store.Remove("K" + std::to_string(i));
        }
    }
    store.Remove("absent");
    std::vector<std::string> expected;
    for (int i = 0; i < count; i += 10) {
        expected.push_back("k" + std::to_string(i));
    }
    EXPECT_EQ(store.Size(), expected.size());
    EXPECT_EQ(Names(store), expected);
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(static_cast<bool>(store.Find("k" + std::to_string(i))), i % 10 == 0) << i;
    }
    // Names removed come back at the end.
    store.Add(Long("k1", 1));
    EXPECT_EQ(Names(store).back(), "k1");
    EXPECT_EQ(store.Size(), expected.size() + 1);
}

TEST(PropertyStore, RemovingEverythingLeavesAnEmptyStoreThatFillsAgain) {
    PropertyStore store;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 40; ++i) {
            store.Add(Long("n" + std::to_string(i), i));
        }
        for (int i = 0; i < 40; ++i) {
            store.Remove("n" + std::to_string(i));
        }
        EXPECT_EQ(store.Size(), 0u);
        EXPECT_TRUE(Names(store).empty());
    }
}

TEST(PropertyStore, NonAsciiNamesFoldTheirCase) {
    PropertyStore store;
    store.Add(Long("\xC3\x89t\xC3\xA9", 1));         // Été
    store.Add(Long("\xD0\x9C\xD0\xB8\xD1\x80", 2));  // Мир
    EXPECT_EQ(store.Find("\xC3\xA9T\xC3\x89")->LongValue(), 1);
    EXPECT_EQ(store.Find("\xD0\xBC\xD0\x98\xD0\xA0")->LongValue(), 2);
}

TEST(PropertyStore, ReserveChangesNothingVisible) {
    PropertyStore store;
    store.Add(Long("a", 1));
    store.Reserve(1000);
    store.Add(Long("b", 2));
    EXPECT_EQ(Names(store), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(store.Find("A")->LongValue(), 1);
}

}  // namespace
}  // namespace quillbank::detail

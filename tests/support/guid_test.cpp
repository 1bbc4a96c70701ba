#include "support/guid.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace quillbank::support {
namespace {

TEST(NewGUIDString, HasNoBracesAndIs36Characters) {
    const std::string guid = NewGUIDString();
    EXPECT_EQ(guid.size(), 36u);
    EXPECT_EQ(guid.find('{'), std::string::npos);
    EXPECT_EQ(guid.find('}'), std::string::npos);
}

TEST(NewGUIDString, UpperCaseHexGroupsOfVersion4) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(std::regex_match(NewGUIDString(), form));
    }
}

TEST(NewGUIDString, EveryCallGivesANewValue) {
    std::set<std::string> seen;
    for (int i = 0; i < 1000; ++i) {
        seen.insert(NewGUIDString());
    }
    EXPECT_EQ(seen.size(), 1000u);
}

TEST(EmptyGUIDString, IsAllZeros) { EXPECT_EQ(EmptyGUIDString(), "00000000-0000-0000-0000-000000000000"); }

}  // namespace
}  // namespace quillbank::support

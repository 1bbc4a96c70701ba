#pragma once

// Checks that a statement raises the library's error with exactly the given
// number, source and description.

#include <cstdint>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>

namespace quillbank::testing {

inline ::testing::AssertionResult Raises(const std::function<void()>& statement, std::int32_t number,
                                         const std::string& source, const std::string& description) {
    try {
        statement();
    } catch (const Error& error) {
        if (error.Number() == number && error.Source() == source && error.Description() == description) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure() << "raised (" << error.Number() << ", \"" << error.Source() << "\", \""
                                             << error.Description() << "\"), expected (" << number << ", \""
                                             << source << "\", \"" << description << "\")";
    }
    return ::testing::AssertionFailure() << "nothing was raised";
}

}  // namespace quillbank::testing

#define EXPECT_RAISES(statement, number, source, description) \
    EXPECT_TRUE(::quillbank::testing::Raises([&] { statement; }, (number), (source), (description)))

#pragma once

// Helpers shared by the tests of property bags and child elements.

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::testing {

// Runs `call` and checks that it raises exactly this error.
inline void ExpectError(const std::function<void()>& call, std::int32_t number, std::string_view source,
                        std::string_view description) {
    try {
        call();
        ADD_FAILURE() << "no error raised; expected " << number << " " << source << ": " << description;
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), number);
        EXPECT_EQ(error.Source(), source);
        EXPECT_EQ(error.Description(), description);
    }
}

// The root element of a new document loaded from `text` (whitespace not
// preserved, as in a fresh document). The element keeps its document alive.
inline xml::Element LoadRoot(std::string_view text) {
    xml::Document document = xml::Document::Create();
    EXPECT_TRUE(document.LoadXML(text)) << text;
    return document.DocumentElement();
}

// The exact bytes of a file under tests/data.
inline std::string ReadGolden(const std::string& relativePath) {
    std::ifstream in(std::string(QUILLBANK_TEST_DATA_DIR) + "/" + relativePath, std::ios::binary);
    EXPECT_TRUE(in.good()) << relativePath;
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace quillbank::testing

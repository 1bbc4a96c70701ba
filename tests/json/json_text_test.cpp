// The streamed JSON text and the depth pass that guards the parser.

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "json/json_depth.hpp"
#include "json/json_text.hpp"

namespace quillbank::json_form {
namespace {

TEST(JsonText, EscapesWhatJsonRequiresAndKeepsTheRest) {
    JsonText out(0);
    out.BeginArray();
    out.String(std::string("q\" b\\ n\n r\r t\t b\b f\f nul") + '\0' + "\x01\x1F\x7F caf\xC3\xA9 \xF0\x9F\x98\x80");
    out.EndArray();
    const std::string text = out.Take();
    EXPECT_EQ(text, std::string("[\"q\\\" b\\\\ n\\n r\\r t\\t b\\b f\\f nul\\u0000\\u0001\\u001f\x7F caf\xC3\xA9 "
                                "\xF0\x9F\x98\x80\"]"));
    EXPECT_EQ(nlohmann::json::parse(text)[0].get<std::string>(),
              std::string("q\" b\\ n\n r\r t\t b\b f\f nul") + '\0' + "\x01\x1F\x7F caf\xC3\xA9 \xF0\x9F\x98\x80");
}

TEST(JsonText, RefusesTextThatIsNotUtf8) {
    for (const char* bad : {"\xFF", "a\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"}) {
        JsonText out(0);
        EXPECT_THROW(out.String(bad), NotUtf8) << bad;
    }
}

TEST(JsonText, DoublesReadBackExactlyAndAsDoubles) {
    for (const double value : {0.1, 2.0, -0.0, 1e300, -1.5e-7, 5e-324, std::numeric_limits<double>::max()}) {
        JsonText out(0);
        out.Double(value);
        const nlohmann::json read = nlohmann::json::parse(out.Take());
        ASSERT_TRUE(read.is_number_float());
        EXPECT_EQ(read.get<double>(), value);
        EXPECT_EQ(std::signbit(read.get<double>()), std::signbit(value));
    }
}

TEST(JsonText, IndentsLikeTheUsualPrettyForm) {
    JsonText out(2);
    out.BeginObject();
    out.Key("a");
    out.BeginArray();
    out.Integer(1);
    out.Boolean(false);
    out.Null();
    out.EndArray();
    out.Key("b");
    out.BeginObject();
    out.EndObject();
    out.Key("c");
    out.BeginArray();
    out.EndArray();
    out.EndObject();
    EXPECT_EQ(out.Take(), "{\n  \"a\": [\n    1,\n    false,\n    null\n  ],\n  \"b\": {},\n  \"c\": []\n}");
}

TEST(JsonDepth, CountsBracketsOutsideStrings) {
    EXPECT_EQ(FindTooDeep("[[[]]]", 3), std::string_view::npos);
    EXPECT_EQ(FindTooDeep("[[[[]]]]", 3), 3u);
    EXPECT_EQ(FindTooDeep(R"(["[[[[", {"k\"[[[": [1]}])", 3), std::string_view::npos);
    EXPECT_EQ(FindTooDeep(R"(["[[[[", {"k\"[[[": [1]}])", 2), 20u);
    EXPECT_EQ(FindTooDeep(R"([{"a": [[1]]}])", 3), 8u);
}

}  // namespace
}  // namespace quillbank::json_form

#pragma once

// The JSON form of a lesson: everything the lesson's normal XML form holds,
// in JSON that any tool can read, and back. Part of the separate library
// `quillbank_json` (CMake target Quillbank::json), so that the core library
// keeps no JSON dependency.
//
// The form (docs/lesson.schema.json describes it exactly):
//   - the lesson's identity and texts, its property bag, its maps with the
//     default, and its storyboards in their order with their short numbers;
//   - every property with its name, its type ("boolean", "long", "double",
//     "string", "date", "color", "font", "rectangle", "asset", "location",
//     "ppc", "cec"), its encoding ("none" or "base64") and its value written
//     decoded, in the bag's order; nested bags and child-element lists as
//     JSON objects;
//   - a map as its tree of items, or, when its element holds anything but
//     items with identifiers, as the exact XML text of the element.
// Writing the lesson read back from its JSON gives the same normal XML form
// (the "documentid", which each writing makes new, apart).

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/error.hpp>
#include <quillbank/lesson.hpp>

namespace quillbank {

// JSON of the wrong form raises the component's form error, the number that
// XML of the wrong form raises: 0x800403E9. The description names the place
// of the bad value as a JSON pointer ("/storyboards/3/title"), or the byte
// where the text stops being JSON.
inline constexpr std::int32_t ErrJsonForm = ErrXmlForm;

// What a reading of JSON accepts at most. Past either limit the text is
// refused before any lesson is made.
struct JsonLimits {
    // The length of the text in bytes.
    std::size_t MaxBytes = std::size_t{1} << 30;
    // How deep arrays and objects nest. The deepest lesson the library can
    // hold (bags nested 200 levels deep in child-element lists) needs about
    // 1,010 levels.
    std::int32_t MaxDepth = 1100;
};

// The version of the form written into "version"; reading accepts this one.
inline constexpr std::int32_t kJsonFormVersion = 1;

// The lesson as JSON text: compact when Indent is negative, otherwise
// indented by that many spaces a level. Raises 28 ("Out of stack space",
// source "Lesson.ToJSON") for a bag or list that contains itself, as
// writing XML does, and 0x800403E9 for text in the lesson that is not UTF-8.
std::string LessonToJSON(const Lesson& Lesson, std::int32_t Indent = -1);

// A new lesson read from its JSON form. Malformed JSON, JSON that is not of
// the form (a missing or unknown field, a value of the wrong type or out of
// range, bags nested past the library's limit) and text past the limits
// raise 0x800403E9 with source "Lesson.FromJSON"; then no lesson is made.
std::shared_ptr<Lesson> LessonFromJSON(std::string_view JsonText, const JsonLimits& Limits = {});

}  // namespace quillbank

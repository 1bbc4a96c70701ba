#pragma once

// The places that `props`, `check` and `diff` name, in one written form:
//
//   lesson / properties / caption
//   storyboard 5F0C...E1 / properties / quiz / answer      (inside the bag held by "quiz")
//   storyboard 5F0C...E1 / children[2] / caption           (the third child element)
//   storyboard 5F0C...E1 / properties / answers[0] / text  (the first element of the list held by "answers")
//   map "Main"
//
// Parts are joined with " / "; indexes are zero-based, as in the API. A
// property name that is empty or holds "/", "[", "]", a quote or a space at
// either end is written in double quotes, with \" and \\ inside.

#include <cstdint>
#include <string>
#include <string_view>

namespace quillbank::tool {

std::string PathName(std::string_view name);
std::string JoinPath(std::string_view base, std::string_view part);
std::string Indexed(std::string_view base, std::int32_t index);

std::string LessonBagPath();                             // "lesson / properties"
std::string StoryboardPlace(std::string_view sbid);      // "storyboard SBID"
std::string StoryboardBagPath(std::string_view sbid);    // "storyboard SBID / properties"
std::string ChildElementPath(std::string_view sbid, std::int32_t index);  // "storyboard SBID / children[i]"
std::string MapPlace(std::string_view name);             // map "NAME"

// Text in double quotes, with \" \\ \r \n \t, \xNN for other control
// characters and \uNNNN for the bidirectional controls (U+200E, U+200F,
// U+202A to U+202E, U+2066 to U+2069), so that no line break or reordering
// of the output comes from the file.
std::string Quoted(std::string_view text);
// The same without the quotes (a quote stays as it is).
std::string Escaped(std::string_view text);

}  // namespace quillbank::tool

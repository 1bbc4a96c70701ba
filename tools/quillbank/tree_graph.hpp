#pragma once

// A map as a Graphviz graph: `quillbank tree --format dot|svg`.

#include <memory>
#include <string>
#include <string_view>

#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map.hpp>

namespace quillbank::tool {

// The map as a DOT digraph: one box a map item (the storyboard's title,
// [identifier] and identifier), an edge from each item to each of its
// children in order; an item whose storyboard the lesson lacks is a dashed
// red box. Every text is a quoted DOT string with \\ and \" escaped, line
// breaks as \n, other control characters dropped and bytes that are not
// UTF-8 as U+FFFD.
std::string DotGraph(const Lesson& lesson, const std::shared_ptr<LessonMap>& map);

// A DOT string's content for the text (without the quotes).
std::string DotEscaped(std::string_view text);

// The graph drawn as SVG by Graphviz's `dot` program, found on PATH. Raises
// ToolError when the program is not there ("... needs Graphviz's dot
// program ...") or fails.
std::string SvgFromDot(const std::string& dot);

}  // namespace quillbank::tool

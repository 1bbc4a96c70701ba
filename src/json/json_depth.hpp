#pragma once

// How deep the arrays and objects of a JSON text nest, found by one pass over
// the bytes of a text that simdjson refused, before nlohmann-json parses it,
// so that no parse or walk ever meets a deeper nest than the reader allows
// and the error names the byte that opens the level past the limit.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillbank::json_form {

// The offset of the first bracket that opens a level past maxDepth, or
// std::string_view::npos when the text nests no deeper. Brackets inside
// strings are not counted; the text need not be well-formed.
std::size_t FindTooDeep(std::string_view text, std::int32_t maxDepth) noexcept;

}  // namespace quillbank::json_form

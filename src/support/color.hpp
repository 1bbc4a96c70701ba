#pragma once

#include <string>
#include <string_view>

#include <quillbank/records.hpp>

namespace quillbank::support {

// Resolves a colour to RGB (0x00BBGGRR) as the platform's colour translation
// does: plain RGB and palette forms keep their low three bytes, a system
// colour index becomes the classic Windows default colour. Anything else
// raises error 5.
std::uint32_t TranslateOleColor(OleColor color);

// "#RRGGBB", upper-case digits, red first.
std::string OLEColorToHTML(OleColor color);
// Removes every "#"; exactly six hexadecimal digits RRGGBB give 0x00BBGGRR,
// anything else gives 0.
OleColor HTMLToOLEColor(std::string_view text);
// Whether the text converts to a 32-bit integer ("&H" hexadecimal accepted).
bool IsLongText(std::string_view text);

}  // namespace quillbank::support

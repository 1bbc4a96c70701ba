#include "support/color.hpp"

#include <array>

#include "frame/raise.hpp"
#include "support/conversions.hpp"

namespace quillbank::support {

namespace {

constexpr std::uint32_t Rgb(std::uint32_t r, std::uint32_t g, std::uint32_t b) { return r | (g << 8) | (b << 16); }

// The classic Windows default colours of the system colour indexes 0..30
// (scroll bar ... menu bar).
constexpr std::array<std::uint32_t, 31> kSystemColors = {
    Rgb(212, 208, 200),  // scroll bar
    Rgb(58, 110, 165),   // desktop background
    Rgb(10, 36, 106),    // active caption
    Rgb(128, 128, 128),  // inactive caption
    Rgb(212, 208, 200),  // menu
    Rgb(255, 255, 255),  // window
    Rgb(0, 0, 0),        // window frame
    Rgb(0, 0, 0),        // menu text
    Rgb(0, 0, 0),        // window text
    Rgb(255, 255, 255),  // caption text
    Rgb(212, 208, 200),  // active border
    Rgb(212, 208, 200),  // inactive border
    Rgb(128, 128, 128),  // application workspace
    Rgb(10, 36, 106),    // highlight
    Rgb(255, 255, 255),  // highlight text
    Rgb(212, 208, 200),  // button face
    Rgb(128, 128, 128),  // button shadow
    Rgb(128, 128, 128),  // grey text
    Rgb(0, 0, 0),        // button text
    Rgb(212, 208, 200),  // inactive caption text
    Rgb(255, 255, 255),  // button highlight
    Rgb(64, 64, 64),     // 3-D dark shadow
    Rgb(212, 208, 200),  // 3-D light
    Rgb(0, 0, 0),        // tooltip text
    Rgb(255, 255, 225),  // tooltip background
    Rgb(181, 181, 181),  // alternate button face
    Rgb(0, 0, 128),      // hot-tracked item
    Rgb(166, 202, 240),  // active caption gradient
    Rgb(192, 192, 192),  // inactive caption gradient
    Rgb(10, 36, 106),    // menu highlight
    Rgb(212, 208, 200),  // menu bar
};

}  // namespace

std::uint32_t TranslateOleColor(OleColor color) {
    switch (color >> 24) {
        case 0x00:  // RGB
        case 0x01:  // palette index: without a palette it is taken as it is
        case 0x02:  // palette-relative RGB
            return color;
        case 0x80: {  // system colour: the low byte is the index
            const std::uint32_t index = color & 0xFF;
            if (index < kSystemColors.size()) {
                return kSystemColors[index];
            }
            break;
        }
        default:
            break;
    }
    frame::Raise(ErrInvalidCall, frame::kLibraryName, frame::kInvalidProcedureCall);
}

std::string OLEColorToHTML(OleColor color) {
    const std::uint32_t v = TranslateOleColor(color);
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out = "#";
    for (std::uint32_t channel : {v & 255, (v / 256) & 255, (v / 65536) & 255}) {
        out.push_back(kHex[channel >> 4]);
        out.push_back(kHex[channel & 15]);
    }
    return out;
}

OleColor HTMLToOLEColor(std::string_view text) {
    std::string hex = "&H";
    for (char c : text) {
        if (c != '#') {
            hex.push_back(c);
        }
    }
    if (hex.size() != 8 || !IsLongText(hex)) {
        return 0;
    }
    const auto n = static_cast<std::uint32_t>(*TextToLong(hex));
    return (n & 255) * 65536 + ((n / 256) & 255) * 256 + ((n / 65536) & 255);
}

bool IsLongText(std::string_view text) { return TextToLong(text).has_value(); }

}  // namespace quillbank::support

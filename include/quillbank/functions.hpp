#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillbank/records.hpp>

namespace quillbank {

// The library's global utility object: where and in which version the
// library is installed, GUID texts, colour conversion, records with defaults,
// and XML text clean-up and pretty-printing. It holds no state.
class Functions {
public:
    Functions() = delete;

    // The folder of the loaded library file (of the program when linked statically).
    static std::string OCXPath();
    // "Major.Minor (Build rrrr)", followed by two spaces and the version comments when there are any.
    static std::string OCXVersion();
    // The full path of the loaded library file (of the program when linked statically).
    static std::string OCXFilename();

    // A new GUID: 36 upper-case characters, no braces; the zero GUID on failure.
    static std::string NewGUID();
    // "00000000-0000-0000-0000-000000000000".
    static std::string EmptyGUID();

    // "#RRGGBB" (the hash is optional) to 0x00BBGGRR; anything else gives 0.
    static OleColor HTMLColorToOLEColor(std::string_view Color);
    // "#RRGGBB" in upper case; system colours are resolved first. An invalid
    // colour raises error 5.
    static std::string OLEColorToHTMLColor(OleColor Color);

    static AssetData NewAssetData(std::string_view Filename = "", std::string_view Description = "",
                                  std::string_view Source = "");
    static FontData NewFontData(std::string_view Name = "Arial", double Size = 8.0, bool Bold = false,
                                bool Italic = false, bool Underline = false);
    static LocationData NewLocationData(std::string_view StartPoint = "", std::string_view EndPoint = "",
                                        std::string_view MapName = "");
    static Rectangle NewRectangle(std::int32_t Left = 0, std::int32_t Top = 0, std::int32_t Width = 0,
                                  std::int32_t Height = 0);

    // Removes the control characters U+0000..U+0019 other than TAB, LF and CR.
    static std::string CleanXMLString(std::string_view XMLString);
    // Indented, with a US-ASCII declaration; the input unchanged when it does not parse.
    static std::string FormatXMLString(std::string_view XMLString);
};

}  // namespace quillbank

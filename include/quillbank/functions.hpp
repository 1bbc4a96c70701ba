#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillbank/records.hpp>

namespace quillbank {

// The library's global utility object: where and in which version the
// library is installed, GUID texts, colour conversion, records with defaults,
// XML text clean-up and pretty-printing, and the regional setting that
// reading follows (its only state).
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

    // The regional setting that every reading of text as a number, a boolean
    // or a date follows, as a language tag: "de-DE" reads "1.000,5" as 1000.5
    // and "15.01.2024" as a date. The forms the library writes read the same
    // in every setting. The default is "en-US"; the Windows build starts from
    // the user's own setting and reads with the platform's conversions.
    // A name that is not a known setting raises error 380.
    static void SetRegionalSettings(std::string_view Name);
    static std::string RegionalSettings();

    // Removes the control characters U+0000..U+0019 other than TAB, LF and CR.
    static std::string CleanXMLString(std::string_view XMLString);
    // Indented, with a US-ASCII declaration; the input unchanged when it does not parse.
    static std::string FormatXMLString(std::string_view XMLString);
};

}  // namespace quillbank

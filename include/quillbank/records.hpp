#pragma once

#include <cstdint>
#include <string>

namespace quillbank {

// A colour: 0x00BBGGRR, or a system colour index with the high bit set.
using OleColor = std::uint32_t;

// An automation date: days since 1899-12-30, the fraction being the time of day.
using Date = double;

struct AssetData {
    std::string Filename;
    std::string Description;
    std::string Source;

    bool operator==(const AssetData&) const = default;
};

struct FontData {
    std::string Name;
    double Size = 0.0;  // points
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;

    bool operator==(const FontData&) const = default;
};

struct LocationData {
    std::string StartPoint;  // an SBID
    std::string EndPoint;    // an SBID
    std::string MapName;

    bool operator==(const LocationData&) const = default;
};

struct Rectangle {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Width = 0;
    std::int32_t Height = 0;

    bool operator==(const Rectangle&) const = default;
};

}  // namespace quillbank

#pragma once

#include <cstdint>
#include <string_view>

#include <quillbank/records.hpp>

namespace quillbank::support {

// Records holding the arguments in field order, unchanged.
AssetData MakeAssetData(std::string_view Filename, std::string_view Description, std::string_view Source);
FontData MakeFontData(std::string_view Name, double Size, bool Bold, bool Italic, bool Underline);
LocationData MakeLocationData(std::string_view StartPoint, std::string_view EndPoint, std::string_view MapName);
Rectangle MakeRectangle(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height);

}  // namespace quillbank::support

#include "support/make_records.hpp"

namespace quillbank::support {

AssetData MakeAssetData(std::string_view Filename, std::string_view Description, std::string_view Source) {
    return AssetData{std::string(Filename), std::string(Description), std::string(Source)};
}

FontData MakeFontData(std::string_view Name, double Size, bool Bold, bool Italic, bool Underline) {
    return FontData{std::string(Name), Size, Bold, Italic, Underline};
}

LocationData MakeLocationData(std::string_view StartPoint, std::string_view EndPoint, std::string_view MapName) {
    return LocationData{std::string(StartPoint), std::string(EndPoint), std::string(MapName)};
}

Rectangle MakeRectangle(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height) {
    return Rectangle{Left, Top, Width, Height};
}

}  // namespace quillbank::support

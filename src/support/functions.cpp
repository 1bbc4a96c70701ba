#include <quillbank/functions.hpp>
#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

#include "support/color.hpp"
#include "support/guid.hpp"
#include "support/make_records.hpp"
#include "support/module_info.hpp"
#include "support/regional_settings.hpp"
#include "support/text.hpp"

#ifndef QUILLBANK_VERSION_MAJOR
#define QUILLBANK_VERSION_MAJOR 0
#define QUILLBANK_VERSION_MINOR 0
#define QUILLBANK_VERSION_REVISION 0
#endif
#ifndef QUILLBANK_VERSION_COMMENTS
#define QUILLBANK_VERSION_COMMENTS ""
#endif

namespace quillbank {

std::string Functions::OCXPath() { return support::ModuleFolder(); }

std::string Functions::OCXVersion() {
#if defined(_WIN32)
    // The server's own version resource; a program linked with the library
    // and carrying none gets the numbers the library was built with.
    int major = 0;
    int minor = 0;
    int revision = 0;
    std::string comments;
    if (support::ModuleVersion(major, minor, revision, comments)) {
        return support::VersionText(major, minor, revision, comments);
    }
#endif
    return support::VersionText(QUILLBANK_VERSION_MAJOR, QUILLBANK_VERSION_MINOR, QUILLBANK_VERSION_REVISION,
                                QUILLBANK_VERSION_COMMENTS);
}

std::string Functions::OCXFilename() { return support::ModuleFileName(); }

std::string Functions::NewGUID() { return support::NewGUIDString(); }

std::string Functions::EmptyGUID() { return support::EmptyGUIDString(); }

OleColor Functions::HTMLColorToOLEColor(std::string_view Color) { return support::HTMLToOLEColor(Color); }

std::string Functions::OLEColorToHTMLColor(OleColor Color) { return support::OLEColorToHTML(Color); }

void Functions::SetRegionalSettings(std::string_view Name) {
    if (!support::SelectRegionalSetting(Name)) {
        throw Error(ErrInvalidArgument, "Functions.SetRegionalSettings",
                    "'" + std::string(Name) + "' is not a known regional setting; give a language tag such as 'en-US'.");
    }
}

std::string Functions::RegionalSettings() { return support::CurrentRegionalSetting(); }

AssetData Functions::NewAssetData(std::string_view Filename, std::string_view Description, std::string_view Source) {
    return support::MakeAssetData(Filename, Description, Source);
}

FontData Functions::NewFontData(std::string_view Name, double Size, bool Bold, bool Italic, bool Underline) {
    return support::MakeFontData(Name, Size, Bold, Italic, Underline);
}

LocationData Functions::NewLocationData(std::string_view StartPoint, std::string_view EndPoint,
                                        std::string_view MapName) {
    return support::MakeLocationData(StartPoint, EndPoint, MapName);
}

Rectangle Functions::NewRectangle(std::int32_t Left, std::int32_t Top, std::int32_t Width, std::int32_t Height) {
    return support::MakeRectangle(Left, Top, Width, Height);
}

std::string Functions::CleanXMLString(std::string_view XMLString) { return support::StripControlChars(XMLString); }

std::string Functions::FormatXMLString(std::string_view XMLString) {
    // Any failure gives the text back unchanged.
    try {
        if (auto formatted = xml::FormatXml(XMLString)) {
            return std::move(*formatted);
        }
    } catch (...) {
    }
    return std::string(XMLString);
}

}  // namespace quillbank

#include <quillbank/functions.hpp>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>

#include <filesystem>

#include "support/module_info.hpp"

namespace quillbank {
namespace {

TEST(Functions, NewFontDataDefaultsToArial8) {
    const FontData font = Functions::NewFontData();
    EXPECT_EQ(font.Name, "Arial");
    EXPECT_EQ(font.Size, 8.0);
    EXPECT_FALSE(font.Bold);
    EXPECT_FALSE(font.Italic);
    EXPECT_FALSE(font.Underline);
}

TEST(Functions, NewRecordsTakeTheirArgumentsInOrder) {
    EXPECT_EQ(Functions::NewAssetData(), (AssetData{"", "", ""}));
    EXPECT_EQ(Functions::NewAssetData("a.png", "A picture", "camera"), (AssetData{"a.png", "A picture", "camera"}));
    EXPECT_EQ(Functions::NewRectangle(), (Rectangle{0, 0, 0, 0}));
    EXPECT_EQ(Functions::NewRectangle(1, 2, 3, 4), (Rectangle{1, 2, 3, 4}));
    EXPECT_EQ(Functions::NewFontData("Tahoma", 12, true, true, true), (FontData{"Tahoma", 12, true, true, true}));
}

TEST(Functions, NewLocationDataKeepsEmptyStartPoint) {
    // No start-filling here, unlike a property's location setter.
    const LocationData location = Functions::NewLocationData("", "S2", "Main");
    EXPECT_EQ(location.StartPoint, "");
    EXPECT_EQ(location.EndPoint, "S2");
    EXPECT_EQ(location.MapName, "Main");
}

TEST(Functions, CleanXMLStringKeepsU001FButRemovesU0008) {
    EXPECT_EQ(Functions::CleanXMLString("<a>\x08x\x1F</a>"), "<a>x\x1F</a>");
}

TEST(Functions, GuidTexts) {
    EXPECT_EQ(Functions::EmptyGUID(), "00000000-0000-0000-0000-000000000000");
    const std::string guid = Functions::NewGUID();
    EXPECT_EQ(guid.size(), 36u);
    EXPECT_NE(guid, Functions::NewGUID());
}

TEST(Functions, ColourConversions) {
    EXPECT_EQ(Functions::HTMLColorToOLEColor("#FF0000"), 255u);
    EXPECT_EQ(Functions::HTMLColorToOLEColor("red"), 0u);
    EXPECT_EQ(Functions::OLEColorToHTMLColor(0x0A0B0C), "#0C0B0A");
    EXPECT_EQ(Functions::OLEColorToHTMLColor(0x80000012), "#000000");
    EXPECT_THROW(Functions::OLEColorToHTMLColor(0x7F000000), Error);
}

TEST(Functions, OCXVersionForm) {
    EXPECT_EQ(support::VersionText(3, 9, 200, ""), "3.9 (Build 0200)");
    EXPECT_EQ(support::VersionText(3, 9, 200, "Beta"), "3.9 (Build 0200)  Beta");
    EXPECT_EQ(support::VersionText(2, 0, 12345, ""), "2.0 (Build 12345)");
    const std::string version = Functions::OCXVersion();
    EXPECT_EQ(version.rfind("2.0 (Build ", 0), 0u) << version;
    EXPECT_EQ(version.back(), ')');
}

TEST(Functions, OCXFilenameAndPathNameTheLoadedFile) {
    const std::string file = Functions::OCXFilename();
    const std::string folder = Functions::OCXPath();
    ASSERT_FALSE(file.empty());
    EXPECT_TRUE(std::filesystem::exists(file)) << file;
    EXPECT_EQ(std::filesystem::path(file).parent_path().string(), folder);
    EXPECT_NE(folder.back(), '/');
}

TEST(Functions, FormatXMLStringOfTextThatIsNotXmlGivesItBack) {
    EXPECT_EQ(Functions::FormatXMLString("not xml at all"), "not xml at all");
    EXPECT_EQ(Functions::FormatXMLString("<a><b></a>"), "<a><b></a>");
    EXPECT_EQ(Functions::FormatXMLString(""), "");
    EXPECT_EQ(Functions::FormatXMLString("\xFF<a/>"), "\xFF<a/>");
}

TEST(Functions, FormatXMLStringOfOneElementDocument) {
    const std::string formatted = Functions::FormatXMLString("<lesson title=\"Caf\xC3\xA9\"/>");
    EXPECT_EQ(formatted.rfind("<?xml version=\"1.0\" encoding=\"US-ASCII\" standalone=\"yes\"?>\r\n", 0), 0u)
        << formatted;
    EXPECT_NE(formatted.find("<lesson title=\"Caf&#233;\"/>"), std::string::npos) << formatted;
}

TEST(Functions, FormatXMLStringIndentsWithTabsAndEscapesNonAscii) {
    const std::string formatted =
        Functions::FormatXMLString("<a><b x=\"1\"><c>\xE4\xB8\xAD &amp; more</c></b><!--note--></a>");
    EXPECT_NE(formatted.find("<a>\r\n\t<b x=\"1\">\r\n\t\t<c>&#20013; &amp; more</c>\r\n\t</b>"), std::string::npos)
        << formatted;
    EXPECT_NE(formatted.find("<!--note-->"), std::string::npos) << formatted;
    for (char c : formatted) {
        EXPECT_LT(static_cast<unsigned char>(c), 0x80);
    }
}

}  // namespace
}  // namespace quillbank

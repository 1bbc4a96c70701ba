#include <quillbank/enums.hpp>
#include <quillbank/records.hpp>

#include <gtest/gtest.h>

#include <type_traits>

namespace quillbank {
namespace {

TEST(Enumerations, EncodingTypesValues) {
    EXPECT_EQ(etNotEncoded, 0);
    EXPECT_EQ(etBase64Encoded, 1);
    static_assert(std::is_same_v<std::underlying_type_t<EncodingTypes>, std::int32_t>);
}

TEST(Enumerations, PropertyTypesValues) {
    const PropertyTypes all[] = {ptNone, ptBoolean, ptLong,      ptDouble, ptString,   ptDate, ptColor,
                                 ptFont, ptRectangle, ptAsset, ptLocation, ptPPC,    ptCEC};
    for (int i = 0; i <= 12; ++i) {
        EXPECT_EQ(all[i], i);
    }
    static_assert(std::is_same_v<std::underlying_type_t<PropertyTypes>, std::int32_t>);
}

TEST(Enumerations, StoryboardInsertTypesHaveNoZeroMember) {
    EXPECT_EQ(sbitInsertBefore, 1);
    EXPECT_EQ(sbitInsertAfter, 2);
    EXPECT_EQ(sbitInsertAsChild, 3);
    // Any other value can still be passed.
    const auto other = static_cast<StoryboardInsertTypes>(4);
    EXPECT_EQ(other, 4);
}

TEST(Records, FieldsInOrder) {
    const AssetData asset{"file.png", "description", "source"};
    EXPECT_EQ(asset.Filename, "file.png");
    EXPECT_EQ(asset.Description, "description");
    EXPECT_EQ(asset.Source, "source");

    const FontData font{"Arial", 8.0, true, false, true};
    EXPECT_EQ(font.Name, "Arial");
    EXPECT_EQ(font.Size, 8.0);
    EXPECT_TRUE(font.Bold);
    EXPECT_FALSE(font.Italic);
    EXPECT_TRUE(font.Underline);

    const LocationData location{"S1", "S2", "Main"};
    EXPECT_EQ(location.StartPoint, "S1");
    EXPECT_EQ(location.EndPoint, "S2");
    EXPECT_EQ(location.MapName, "Main");

    const Rectangle rect{1, 2, 3, 4};
    EXPECT_EQ(rect.Left, 1);
    EXPECT_EQ(rect.Top, 2);
    EXPECT_EQ(rect.Width, 3);
    EXPECT_EQ(rect.Height, 4);
    static_assert(std::is_same_v<decltype(rect.Left), std::int32_t>);
    static_assert(std::is_same_v<OleColor, std::uint32_t>);
    static_assert(std::is_same_v<Date, double>);
}

}  // namespace
}  // namespace quillbank

#include "support/make_records.hpp"

#include <gtest/gtest.h>

namespace quillbank::support {
namespace {

TEST(MakeRecords, FieldsInOrderUnchanged) {
    EXPECT_EQ(MakeAssetData("f", "d", "s"), (AssetData{"f", "d", "s"}));
    EXPECT_EQ(MakeFontData("Tahoma", 9.5, true, false, true), (FontData{"Tahoma", 9.5, true, false, true}));
    EXPECT_EQ(MakeLocationData("", "S2", "M"), (LocationData{"", "S2", "M"}));
    EXPECT_EQ(MakeRectangle(1, -2, 3, 4), (Rectangle{1, -2, 3, 4}));
}

}  // namespace
}  // namespace quillbank::support

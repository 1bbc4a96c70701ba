#include <quillbank/variant.hpp>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>

namespace quillbank {
namespace {

TEST(Variant, DefaultIsEmpty) {
    const Variant v;
    EXPECT_TRUE(v.IsEmpty());
    EXPECT_FALSE(v.IsNothing());
    EXPECT_EQ(v.GetKind(), Variant::Kind::Empty);
}

TEST(Variant, NothingIsANullObjectReference) {
    const Variant v = Variant::Nothing();
    EXPECT_TRUE(v.IsNothing());
    EXPECT_FALSE(v.IsEmpty());
    EXPECT_EQ(v.AsPPC(), nullptr);
    EXPECT_EQ(v.AsCEC(), nullptr);
    EXPECT_TRUE(Variant(std::shared_ptr<PersistedPropertyCollection>()).IsNothing());
}

TEST(Variant, TellsScalarKindsApart) {
    EXPECT_EQ(Variant(true).GetKind(), Variant::Kind::Boolean);
    EXPECT_EQ(Variant(std::int32_t{5}).GetKind(), Variant::Kind::Long);
    EXPECT_EQ(Variant(1.5).GetKind(), Variant::Kind::Double);
    EXPECT_EQ(Variant::FromDate(1.5).GetKind(), Variant::Kind::Date);
    EXPECT_EQ(Variant("x").GetKind(), Variant::Kind::String);
    EXPECT_TRUE(Variant(true).AsBoolean());
    EXPECT_EQ(Variant(std::int32_t{5}).AsLong(), 5);
    EXPECT_EQ(Variant(1.5).AsDouble(), 1.5);
    EXPECT_EQ(Variant::FromDate(2.5).AsDate(), 2.5);
    EXPECT_EQ(Variant(std::string("text")).AsString(), "text");
    EXPECT_NE(Variant(1.5), Variant::FromDate(1.5));
}

TEST(Variant, HoldsRecordCopies) {
    const FontData font{"Arial", 8, false, true, false};
    EXPECT_EQ(Variant(font).AsFont(), font);
    EXPECT_EQ(Variant(Rectangle{1, 2, 3, 4}).AsRectangle(), (Rectangle{1, 2, 3, 4}));
    EXPECT_EQ(Variant(AssetData{"a", "b", "c"}).AsAsset(), (AssetData{"a", "b", "c"}));
    EXPECT_EQ(Variant(LocationData{"s", "e", "m"}).AsLocation(), (LocationData{"s", "e", "m"}));
}

TEST(Variant, WrongKindRaisesTypeMismatch) {
    try {
        Variant(std::int32_t{1}).AsString();
        FAIL() << "no error";
    } catch (const Error& e) {
        EXPECT_EQ(e.Number(), ErrTypeMismatch);
        EXPECT_EQ(e.Description(), "Type mismatch");
    }
    EXPECT_THROW(Variant().AsBoolean(), Error);
    EXPECT_THROW(Variant(true).AsPPC(), Error);
}

}  // namespace
}  // namespace quillbank

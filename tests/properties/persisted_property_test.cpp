// The value model of one property: one slot per type, identity, Value, Clone.

#include "properties/persisted_property.hpp"

#include <gtest/gtest.h>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

namespace quillbank {
namespace {

TEST(PersistedProperty, NewPropertyIsUntypedNamelessAndNotEncoded) {
    auto p = PersistedProperty::Create();
    EXPECT_EQ(p->Name(), "");
    EXPECT_EQ(p->PropertyType(), ptNone);
    EXPECT_EQ(p->EncodingType(), etNotEncoded);
    EXPECT_FALSE(p->BooleanValue());
    EXPECT_EQ(p->LongValue(), 0);
    EXPECT_EQ(p->DoubleValue(), 0.0);
    EXPECT_EQ(p->StringValue(), "");
    EXPECT_EQ(p->DateValue(), 0.0);
    EXPECT_EQ(p->ColorValue(), 0u);
    EXPECT_EQ(p->FontValue(), FontData{});
    EXPECT_EQ(p->RectangleValue(), Rectangle{});
    EXPECT_EQ(p->AssetValue(), AssetData{});
    EXPECT_EQ(p->LocationValue(), LocationData{});
    EXPECT_EQ(p->PPCValue(), nullptr);
    EXPECT_EQ(p->CECValue(), nullptr);
}

TEST(PersistedProperty, LaterSetterOfAnotherTypeKeepsTheOtherSlot) {
    auto p = PersistedProperty::Create();
    p->SetString("a", "x", etNotEncoded);
    p->SetLong("a", 5, etBase64Encoded);
    EXPECT_EQ(p->PropertyType(), ptLong);
    EXPECT_EQ(p->EncodingType(), etBase64Encoded);
    EXPECT_EQ(p->LongValue(), 5);
    EXPECT_EQ(p->StringValue(), "x");
}

TEST(PersistedProperty, SettersStoreNameTypeAndEncoding) {
    auto p = PersistedProperty::Create();
    p->SetDouble("Ratio", 2.5, etBase64Encoded);
    EXPECT_EQ(p->Name(), "Ratio");
    EXPECT_EQ(p->PropertyType(), ptDouble);
    EXPECT_EQ(p->EncodingType(), etBase64Encoded);
    p->SetDate("When", 45000.5, etNotEncoded);
    EXPECT_EQ(p->Name(), "When");
    EXPECT_EQ(p->PropertyType(), ptDate);
    EXPECT_EQ(p->DateValue(), 45000.5);
    EXPECT_EQ(p->DoubleValue(), 2.5);
}

TEST(PersistedProperty, EncodingTypeIsStoredWithoutRangeCheck) {
    auto p = PersistedProperty::Create();
    p->SetBoolean("b", true, static_cast<EncodingTypes>(7));
    EXPECT_EQ(p->EncodingType(), 7);
}

TEST(PersistedProperty, LocationWithOnlyEndPointHasItsStartFilledFirst) {
    auto p = PersistedProperty::Create();
    p->SetLocationData("loc", LocationData{"", "S2", "M"}, etNotEncoded);
    EXPECT_EQ(p->LocationValue(), (LocationData{"S2", "", "M"}));
}

TEST(PersistedProperty, LocationWithStartPointIsStoredUnchanged) {
    auto p = PersistedProperty::Create();
    p->SetLocationData("loc", LocationData{"S1", "S2", "M"}, etNotEncoded);
    EXPECT_EQ(p->LocationValue(), (LocationData{"S1", "S2", "M"}));
    p->SetLocationData("loc", LocationData{"", "", "M"}, etNotEncoded);
    EXPECT_EQ(p->LocationValue(), (LocationData{"", "", "M"}));
}

TEST(PersistedProperty, SetPPCDataStoresACopyWhilePPCValueIsLive) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetLong("n", 1);
    auto p = PersistedProperty::Create();
    p->SetPPCData("nested", bag, etNotEncoded);
    ASSERT_NE(p->PPCValue(), nullptr);
    EXPECT_NE(p->PPCValue(), bag);

    bag->SetLong("n", 2);
    bag->SetLong("m", 3);
    EXPECT_EQ(p->PPCValue()->GetLong("n", 0), 1);
    EXPECT_FALSE(p->PPCValue()->Exists("m"));

    p->PPCValue()->SetLong("n", 9);
    EXPECT_EQ(p->PPCValue()->GetLong("n", 0), 9);
}

TEST(PersistedProperty, SetCECDataStoresACopy) {
    auto list = ChildElementCollection::Create();
    list->Append(ChildElement::Create());
    auto p = PersistedProperty::Create();
    p->SetCECData("items", list, etNotEncoded);
    ASSERT_NE(p->CECValue(), nullptr);
    EXPECT_NE(p->CECValue(), list);
    list->Append(ChildElement::Create());
    EXPECT_EQ(p->CECValue()->Count(), 1);
    EXPECT_NE(p->CECValue()->Item(0), list->Item(0));
}

TEST(PersistedProperty, NullCollectionsAreStoredAsNull) {
    auto p = PersistedProperty::Create();
    p->SetPPCData("a", nullptr, etNotEncoded);
    EXPECT_EQ(p->PropertyType(), ptPPC);
    EXPECT_EQ(p->PPCValue(), nullptr);
    p->SetCECData("b", nullptr, etBase64Encoded);
    EXPECT_EQ(p->PropertyType(), ptCEC);
    EXPECT_EQ(p->CECValue(), nullptr);
}

TEST(PersistedProperty, CloneOfPPCPropertyWithNullCollectionIsNamelessAndUntyped) {
    auto p = PersistedProperty::Create();
    p->SetPPCData("nested", nullptr, etBase64Encoded);
    auto copy = p->Clone();
    EXPECT_EQ(copy->Name(), "");
    EXPECT_EQ(copy->PropertyType(), ptNone);
    EXPECT_EQ(copy->EncodingType(), etNotEncoded);
}

TEST(PersistedProperty, CloneOfCECPropertyWithNullCollectionIsNamelessAndUntyped) {
    auto p = PersistedProperty::Create();
    p->SetCECData("items", nullptr, etBase64Encoded);
    auto copy = p->Clone();
    EXPECT_EQ(copy->Name(), "");
    EXPECT_EQ(copy->PropertyType(), ptNone);
    EXPECT_EQ(copy->EncodingType(), etNotEncoded);
}

TEST(PersistedProperty, CloneCarriesOnlyTheCurrentSlot) {
    auto p = PersistedProperty::Create();
    p->SetString("a", "x", etNotEncoded);
    p->SetLong("a", 5, etBase64Encoded);
    auto copy = p->Clone();
    EXPECT_EQ(copy->Name(), "a");
    EXPECT_EQ(copy->PropertyType(), ptLong);
    EXPECT_EQ(copy->EncodingType(), etBase64Encoded);
    EXPECT_EQ(copy->LongValue(), 5);
    EXPECT_EQ(copy->StringValue(), "");
}

TEST(PersistedProperty, CloneCopiesEveryScalarAndRecordType) {
    auto p = PersistedProperty::Create();
    p->SetBoolean("b", true, etNotEncoded);
    EXPECT_TRUE(p->Clone()->BooleanValue());
    p->SetDouble("d", -0.25, etNotEncoded);
    EXPECT_EQ(p->Clone()->DoubleValue(), -0.25);
    p->SetDate("t", 1234.75, etNotEncoded);
    EXPECT_EQ(p->Clone()->DateValue(), 1234.75);
    p->SetColor("c", 0x123456u, etNotEncoded);
    EXPECT_EQ(p->Clone()->ColorValue(), 0x123456u);
    p->SetFontData("f", FontData{"Arial", 9.5, true, false, true}, etNotEncoded);
    EXPECT_EQ(p->Clone()->FontValue(), (FontData{"Arial", 9.5, true, false, true}));
    p->SetRectangleData("r", Rectangle{1, 2, 3, 4}, etNotEncoded);
    EXPECT_EQ(p->Clone()->RectangleValue(), (Rectangle{1, 2, 3, 4}));
    p->SetAssetData("a", AssetData{"f.png", "d", "s"}, etNotEncoded);
    EXPECT_EQ(p->Clone()->AssetValue(), (AssetData{"f.png", "d", "s"}));
    p->SetLocationData("l", LocationData{"A", "B", "M"}, etBase64Encoded);
    auto copy = p->Clone();
    EXPECT_EQ(copy->LocationValue(), (LocationData{"A", "B", "M"}));
    EXPECT_EQ(copy->Name(), "l");
    EXPECT_EQ(copy->EncodingType(), etBase64Encoded);
}

TEST(PersistedProperty, CloneOfNestedBagIsDeep) {
    auto inner = PersistedPropertyCollection::Create();
    inner->SetName("inner");
    inner->SetString("s", "v");
    auto p = PersistedProperty::Create();
    p->SetPPCData("nested", inner, etBase64Encoded);
    auto copy = p->Clone();
    ASSERT_NE(copy->PPCValue(), nullptr);
    EXPECT_NE(copy->PPCValue(), p->PPCValue());
    EXPECT_EQ(copy->PPCValue()->Name(), "inner");
    EXPECT_EQ(copy->PPCValue()->GetString("s", ""), "v");
    EXPECT_EQ(copy->PropertyType(), ptPPC);
    EXPECT_EQ(copy->EncodingType(), etBase64Encoded);
    EXPECT_EQ(copy->Name(), "nested");
    p->PPCValue()->SetString("s", "changed");
    EXPECT_EQ(copy->PPCValue()->GetString("s", ""), "v");
}

TEST(PersistedProperty, CloneOfNestedListIsDeep) {
    auto list = ChildElementCollection::Create();
    auto child = ChildElement::Create();
    child->SetName("c");
    list->Append(child);
    auto p = PersistedProperty::Create();
    p->SetCECData("items", list, etNotEncoded);
    auto copy = p->Clone();
    ASSERT_NE(copy->CECValue(), nullptr);
    EXPECT_NE(copy->CECValue(), p->CECValue());
    ASSERT_EQ(copy->CECValue()->Count(), 1);
    EXPECT_NE(copy->CECValue()->Item(0), p->CECValue()->Item(0));
    EXPECT_EQ(copy->CECValue()->Item(0)->Name(), "c");
}

TEST(PersistedProperty, ValueOfUntypedPropertyIsNothingNotEmpty) {
    auto p = PersistedProperty::Create();
    const Variant value = p->Value();
    EXPECT_TRUE(value.IsNothing());
    EXPECT_FALSE(value.IsEmpty());
}

TEST(PersistedProperty, ValueFollowsTheCurrentType) {
    auto p = PersistedProperty::Create();
    p->SetBoolean("x", true, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant(true));
    p->SetLong("x", -3, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant(std::int32_t{-3}));
    p->SetDouble("x", 1.5, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant(1.5));
    p->SetString("x", "text", etNotEncoded);
    EXPECT_EQ(p->Value(), Variant("text"));
    p->SetDate("x", 2.5, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant::FromDate(2.5));
    EXPECT_EQ(p->Value().GetKind(), Variant::Kind::Date);
    p->SetFontData("x", FontData{"Arial", 8, false, true, false}, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant(FontData{"Arial", 8, false, true, false}));
    p->SetRectangleData("x", Rectangle{1, 2, 3, 4}, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant(Rectangle{1, 2, 3, 4}));
    p->SetAssetData("x", AssetData{"f", "d", "s"}, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant(AssetData{"f", "d", "s"}));
    p->SetLocationData("x", LocationData{"a", "b", "m"}, etNotEncoded);
    EXPECT_EQ(p->Value(), Variant(LocationData{"a", "b", "m"}));
}

TEST(PersistedProperty, ColorValueIsA32BitInteger) {
    auto p = PersistedProperty::Create();
    p->SetColor("c", 0x80000005u, etNotEncoded);
    const Variant value = p->Value();
    EXPECT_EQ(value.GetKind(), Variant::Kind::Long);
    EXPECT_EQ(value.AsLong(), static_cast<std::int32_t>(0x80000005u));
}

TEST(PersistedProperty, ValueOfNestedBagIsTheHeldObject) {
    auto p = PersistedProperty::Create();
    p->SetPPCData("x", PersistedPropertyCollection::Create(), etNotEncoded);
    EXPECT_EQ(p->Value().AsPPC(), p->PPCValue());
    p->SetPPCData("x", nullptr, etNotEncoded);
    EXPECT_TRUE(p->Value().IsNothing());
    p->SetCECData("x", ChildElementCollection::Create(), etNotEncoded);
    EXPECT_EQ(p->Value().AsCEC(), p->CECValue());
}

}  // namespace
}  // namespace quillbank

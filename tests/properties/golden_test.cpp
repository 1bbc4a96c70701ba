// The exact bytes of a bag holding every property type, in both forms.

#include <gtest/gtest.h>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "properties/test_support.hpp"

namespace quillbank {
namespace {

using testing::ReadGolden;

std::shared_ptr<PersistedPropertyCollection> EveryTypeBag() {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("lesson properties");
    // Set in an order unlike the written one: the writers sort.
    bag->SetString("wide", "\xE4\xB8\xAD\xE6\x96\x87", etBase64Encoded);
    bag->SetDouble("ratio", 2.5);
    bag->SetColor("tint", 0x0A0B0Cu);
    bag->SetString("caption", "Halves & <quarters>\r\nline two");
    bag->SetLong("count", -42);
    bag->SetBoolean("zflag", false, etBase64Encoded);
    bag->SetDate("due", 45000.5);
    bag->SetBoolean("flag", true);
    bag->SetFont("font", FontData{"Arial", 10.5, true, false, true});
    bag->SetRectangle("frame", Rectangle{1, 2, 300, -4});
    bag->SetString("story", "Once upon a time there was a lesson about fractions and halves.", etBase64Encoded);

    auto child = ChildElement::Create();
    child->SetName("first");
    child->SetElementType("button");
    child->SetBoolean("on", true);
    auto list = ChildElementCollection::Create();
    list->Append(child);
    bag->SetCEC("items", list);

    LocationData link{"", "SB2", "main"};
    bag->SetLocation("link", link);

    auto inner = PersistedPropertyCollection::Create();
    inner->SetName("inner");
    inner->SetLong("n", 7);
    bag->SetPPC("nested", inner);

    bag->SetAsset("picture", AssetData{"pic.png", "A \"picture\"", "   "});
    bag->SetString("secret", "plain text", etBase64Encoded);
    return bag;
}

TEST(BagGolden, NormalFormOfEveryTypeIsPinned) {
    EXPECT_EQ(EveryTypeBag()->ToXMLString(), ReadGolden("properties/ppc_every_type.xml"));
}

TEST(BagGolden, ClearFormOfEveryTypeIsPinned) {
    EXPECT_EQ(EveryTypeBag()->ToClearXMLString(), ReadGolden("properties/ppc_every_type_clear.xml"));
}

TEST(BagGolden, ElementFormsMatchTheStringForms) {
    auto bag = EveryTypeBag();
    EXPECT_EQ(bag->ToXMLElement(xml::Document::Create()).Xml(), ReadGolden("properties/ppc_every_type.xml"));
    EXPECT_EQ(bag->ToClearXMLElement(xml::Document::Create()).Xml(),
              ReadGolden("properties/ppc_every_type_clear.xml"));
}

void ExpectEveryTypeValues(const PersistedPropertyCollection& bag, bool encodingsKept) {
    EXPECT_EQ(bag.Name(), "lesson properties");
    EXPECT_EQ(bag.Count(), 16);
    EXPECT_EQ(bag.GetString("caption", ""), "Halves & <quarters>\r\nline two");
    EXPECT_EQ(bag.GetLong("count", 0), -42);
    EXPECT_EQ(bag.GetDate("due", 0), 45000.5);
    EXPECT_TRUE(bag.GetBoolean("flag", false));
    EXPECT_EQ(bag.GetFont("font", FontData{}), (FontData{"Arial", 10.5, true, false, true}));
    EXPECT_EQ(bag.GetRectangle("frame", Rectangle{}), (Rectangle{1, 2, 300, -4}));
    auto items = bag.GetCEC("items", nullptr);
    ASSERT_NE(items, nullptr);
    ASSERT_EQ(items->Count(), 1);
    EXPECT_EQ(items->Item(0)->Name(), "first");
    EXPECT_EQ(items->Item(0)->ElementType(), "button");
    EXPECT_TRUE(items->Item(0)->GetBoolean("on", false));
    EXPECT_EQ(bag.GetLocation("link", LocationData{}), (LocationData{"SB2", "", "main"}));
    auto nested = bag.GetPPC("nested", nullptr);
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(nested->Name(), "inner");
    EXPECT_EQ(nested->GetLong("n", 0), 7);
    EXPECT_EQ(bag.GetAsset("picture", AssetData{}), (AssetData{"pic.png", "A \"picture\"", ""}));
    EXPECT_EQ(bag.GetDouble("ratio", 0), 2.5);
    EXPECT_EQ(bag.GetColor("tint", 0), 0x0A0B0Cu);
    EXPECT_EQ(bag.GetString("secret", ""), "plain text");
    EXPECT_EQ(bag.GetString("story", ""), "Once upon a time there was a lesson about fractions and halves.");
    EXPECT_EQ(bag.GetString("wide", ""), "\xE4\xB8\xAD\xE6\x96\x87");
    EXPECT_FALSE(bag.GetBoolean("zflag", true));
    EXPECT_EQ(bag.GetEncodingType("wide"), encodingsKept ? etBase64Encoded : etNotEncoded);
    EXPECT_EQ(bag.GetEncodingType("caption"), etNotEncoded);
}

TEST(BagGolden, NormalFormReadsBackEveryValue) {
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(ReadGolden("properties/ppc_every_type.xml"));
    ExpectEveryTypeValues(*bag, true);
    EXPECT_EQ(bag->ToXMLString(), ReadGolden("properties/ppc_every_type.xml"));
}

TEST(BagGolden, ClearFormReadsBackEveryValueUnencoded) {
    auto bag = PersistedPropertyCollection::Create();
    bag->FromXMLString(ReadGolden("properties/ppc_every_type_clear.xml"));
    ExpectEveryTypeValues(*bag, false);
}

}  // namespace
}  // namespace quillbank

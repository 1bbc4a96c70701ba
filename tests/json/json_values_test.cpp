// The JSON form keeps every value with its type, its encoding and its order,
// the maps with their trees and default, and the storyboards in order.

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "common/raises.hpp"
#include "json/json_helpers.hpp"

namespace quillbank {
namespace {

using nlohmann::json;
using testing::NormalFormWithoutDocumentID;

std::shared_ptr<Lesson> ThroughJson(const Lesson& lesson) { return LessonFromJSON(LessonToJSON(lesson)); }

TEST(JsonValues, EveryTypeKeepsItsValueEncodingAndPlace) {
    auto lesson = Lesson::Create();
    auto& bag = *lesson->Properties();
    bag.SetName("lesson bag");
    bag.SetString("z text", "caf\xC3\xA9 \xE4\xB8\xAD\n\"quoted\"", etBase64Encoded);
    bag.SetBoolean("flag", true);
    bag.SetLong("lowest", std::numeric_limits<std::int32_t>::min());
    bag.SetLong("highest", std::numeric_limits<std::int32_t>::max(), etBase64Encoded);
    bag.SetDouble("tenth", 0.1);
    bag.SetDouble("minus zero", -0.0);
    bag.SetDouble("nan", std::numeric_limits<double>::quiet_NaN());
    bag.SetDouble("inf", std::numeric_limits<double>::infinity());
    bag.SetDouble("-inf", -std::numeric_limits<double>::infinity(), etBase64Encoded);
    bag.SetDate("moment", 45000.123456789);
    bag.SetColor("system", 0x80000005u);
    bag.SetColor("white", 0x00FFFFFFu, etBase64Encoded);
    bag.SetFont("font", FontData{"Arial", 10.5, true, false, true});
    bag.SetRectangle("frame", Rectangle{-1, 2, 300, std::numeric_limits<std::int32_t>::min()});
    bag.SetAsset("asset", AssetData{"a.png", "an \"image\"", "lib"});
    LocationData location{"SB1", "SB2", "Main"};
    bag.SetLocation("link", location, etBase64Encoded);
    auto inner = PersistedPropertyCollection::Create();
    inner->SetName("inner bag");
    inner->SetLong("n", 7);
    bag.SetPPC("nested", inner, etBase64Encoded);
    bag.SetPPC("no bag", nullptr);
    auto list = ChildElementCollection::Create();
    list->SetName("list");
    auto element = ChildElement::Create();
    element->SetName("button");
    element->SetElementType("push");
    element->SetBoolean("on", true);
    list->Append(element);
    list->Append(element);
    bag.SetCEC("elements", list);

    const auto copy = ThroughJson(*lesson);
    const auto& read = *copy->Properties();
    EXPECT_EQ(read.Name(), "lesson bag");
    EXPECT_EQ(read.GetPropertyNameArray(), bag.GetPropertyNameArray());
    for (const std::string& name : bag.GetPropertyNameArray()) {
        EXPECT_EQ(read.GetPropertyType(name), bag.GetPropertyType(name)) << name;
        EXPECT_EQ(read.GetEncodingType(name), bag.GetEncodingType(name)) << name;
    }
    EXPECT_EQ(read.GetString("z text", ""), "caf\xC3\xA9 \xE4\xB8\xAD\n\"quoted\"");
    EXPECT_TRUE(read.GetBoolean("flag", false));
    EXPECT_EQ(read.GetLong("lowest", 0), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(read.GetLong("highest", 0), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(read.GetDouble("tenth", 0), 0.1);
    EXPECT_TRUE(std::signbit(read.GetDouble("minus zero", 1)));
    EXPECT_TRUE(std::isnan(read.GetDouble("nan", 0)));
    EXPECT_EQ(read.GetDouble("inf", 0), std::numeric_limits<double>::infinity());
    EXPECT_EQ(read.GetDouble("-inf", 0), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(read.GetDate("moment", 0), 45000.123456789);
    EXPECT_EQ(read.GetColor("system", 0), 0x80000005u);
    EXPECT_EQ(read.GetColor("white", 0), 0x00FFFFFFu);
    EXPECT_EQ(read.GetFont("font", {}), (FontData{"Arial", 10.5, true, false, true}));
    EXPECT_EQ(read.GetRectangle("frame", {}), (Rectangle{-1, 2, 300, std::numeric_limits<std::int32_t>::min()}));
    EXPECT_EQ(read.GetAsset("asset", {}), (AssetData{"a.png", "an \"image\"", "lib"}));
    EXPECT_EQ(read.GetLocation("link", {}), (LocationData{"SB1", "SB2", "Main"}));
    const auto readInner = read.GetPPC("nested", nullptr);
    ASSERT_TRUE(readInner);
    EXPECT_EQ(readInner->Name(), "inner bag");
    EXPECT_EQ(readInner->GetLong("n", 0), 7);
    EXPECT_TRUE(read.GetValue("no bag").IsNothing());
    const auto readList = read.GetCEC("elements", nullptr);
    ASSERT_TRUE(readList);
    EXPECT_EQ(readList->Name(), "list");
    ASSERT_EQ(readList->Count(), 2);
    EXPECT_EQ(readList->Item(1)->Name(), "button");
    EXPECT_EQ(readList->Item(1)->ElementType(), "push");
    EXPECT_TRUE(readList->Item(1)->GetBoolean("on", false));
    EXPECT_EQ(NormalFormWithoutDocumentID(*copy), NormalFormWithoutDocumentID(*lesson));
}

TEST(JsonValues, EncodedPropertiesAreWrittenDecodedWithTheirEncoding) {
    auto lesson = Lesson::Create();
    lesson->Properties()->SetString("secret", "plain words", etBase64Encoded);
    lesson->Properties()->SetLong("count", 3);
    const json written = json::parse(LessonToJSON(*lesson));
    EXPECT_EQ(written["properties"]["properties"][0],
              (json{{"name", "secret"}, {"type", "string"}, {"encoding", "base64"}, {"value", "plain words"}}));
    EXPECT_EQ(written["properties"]["properties"][1],
              (json{{"name", "count"}, {"type", "long"}, {"encoding", "none"}, {"value", 3}}));
}

TEST(JsonValues, LessonIdentityStoryboardOrderAndShortNumbers) {
    auto lesson = Lesson::Create();
    lesson->SetTitle("T");
    lesson->SetIdentifier("ID");
    lesson->SetClassification("Secret");
    std::vector<std::string> ids;
    for (const char* title : {"c", "a", "b"}) {
        auto sb = Storyboard::Create();
        sb->SetTitle(title);
        sb->SetSBType("page");
        sb->SetIdentifier(std::string("id-") + title);
        lesson->Storyboards()->Add(sb);
        ids.push_back(sb->SBID());
    }
    const json written = json::parse(LessonToJSON(*lesson));
    ASSERT_EQ(written["storyboards"].size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(written["storyboards"][i]["sbid"], ids[i]);
        EXPECT_EQ(written["storyboards"][i]["shortid"], i);
    }
    const auto copy = ThroughJson(*lesson);
    EXPECT_EQ(copy->LessonID(), lesson->LessonID());
    EXPECT_EQ(copy->Title(), "T");
    EXPECT_EQ(copy->Identifier(), "ID");
    EXPECT_EQ(copy->Classification(), "Secret");
    std::vector<std::string> readIds;
    for (const auto& sb : *copy->Storyboards()) {
        readIds.push_back(sb->SBID());
    }
    EXPECT_EQ(readIds, ids);
    EXPECT_EQ(copy->Storyboards()->Item(ids[1])->Identifier(), "id-a");
    EXPECT_EQ(NormalFormWithoutDocumentID(*copy), NormalFormWithoutDocumentID(*lesson));
}

TEST(JsonValues, MapsKeepTheirTreesNamesAndDefault) {
    auto lesson = Lesson::Create();
    auto main = LessonMap::Create();
    main->SetName("Main");
    main->InsertStoryboard("", sbitInsertAfter, "A");
    main->InsertStoryboard("A", sbitInsertAsChild, "B");
    main->InsertStoryboard("B", sbitInsertAsChild, "C");
    main->InsertStoryboard("", sbitInsertAfter, "D");
    auto review = LessonMap::Create();
    review->SetName("Review");
    lesson->Maps()->Append(main);
    lesson->Maps()->Append(review);
    lesson->Maps()->SetDefaultMap(review);
    const json written = json::parse(LessonToJSON(*lesson));
    EXPECT_EQ(written["maps"]["default"], 1);
    EXPECT_EQ(written["maps"]["maps"][0],
              json::parse(R"({"name":"Main","items":[{"sbid":"A","items":[{"sbid":"B","items":[{"sbid":"C"}]}]},)"
                          R"({"sbid":"D"}]})"));
    const auto copy = ThroughJson(*lesson);
    EXPECT_EQ(copy->Maps()->DefaultMap()->Name(), "Review");
    EXPECT_EQ(NormalFormWithoutDocumentID(*copy), NormalFormWithoutDocumentID(*lesson));
}

TEST(JsonValues, AMapWithMoreThanItemsTravelsAsItsXml) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(
        R"(<lesson lessonid="L" title="t"><maps><map name="M" extra="1"><item sbid="A" note="n"/><!--c--></map>)"
        R"(<map><item sbid="B"/></map></maps></lesson>)");
    const json written = json::parse(LessonToJSON(*lesson));
    EXPECT_EQ(written["maps"]["maps"][0], (json{{"xml", R"(<map name="M" extra="1"><item sbid="A" note="n"/><!--c--></map>)"}}));
    EXPECT_EQ(written["maps"]["maps"][1], json::parse(R"({"name":null,"items":[{"sbid":"B"}]})"));
    const auto copy = ThroughJson(*lesson);
    EXPECT_EQ(NormalFormWithoutDocumentID(*copy), NormalFormWithoutDocumentID(*lesson));
}

TEST(JsonValues, AMapDeeperThanTheItemLimitTravelsAsItsXml) {
    auto lesson = Lesson::Create();
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "S0");
    for (int i = 1; i <= 150; ++i) {
        map->InsertStoryboard("S" + std::to_string(i - 1), sbitInsertAsChild, "S" + std::to_string(i));
    }
    lesson->Maps()->Append(map);
    const json written = json::parse(LessonToJSON(*lesson));
    EXPECT_TRUE(written["maps"]["maps"][0].contains("xml"));
    const auto copy = ThroughJson(*lesson);
    EXPECT_EQ(NormalFormWithoutDocumentID(*copy), NormalFormWithoutDocumentID(*lesson));
}

TEST(JsonValues, IndentedTextReadsTheSame) {
    auto lesson = Lesson::Create();
    lesson->Properties()->SetLong("n", 1);
    const std::string indented = LessonToJSON(*lesson, 2);
    EXPECT_NE(indented.find("\n  \"classification\""), std::string::npos);
    EXPECT_EQ(LessonToJSON(*LessonFromJSON(indented)), LessonToJSON(*lesson));
}

TEST(JsonValues, ALessonWithABagThatHoldsItselfRaisesOutOfStackSpace) {
    auto lesson = Lesson::Create();
    auto sb = lesson->Storyboards()->Add(Storyboard::Create());
    auto element = ChildElement::Create();
    element->SetCEC("loop", ChildElementCollection::Create());
    const auto loop = element->GetCEC("loop", nullptr);
    loop->Append(element);
    sb->Children()->Append(element);
    EXPECT_RAISES(LessonToJSON(*lesson), ErrOutOfStackSpace, "Lesson.ToJSON", "Out of stack space");
    loop->Clear();  // breaks the cycle, so that the objects are released
}

}  // namespace
}  // namespace quillbank

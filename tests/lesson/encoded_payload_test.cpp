// An encoded property carries the text of its plain element, base64-encoded:
// that text must be byte for byte the "xml" of the plain element the element
// writers build into a document (the clear form's element), for every type
// and both coders, and read back to the same bag.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include <quillbank/quillbank.hpp>

#include "lesson_generator.hpp"
#include "support/base64_coders.hpp"

namespace quillbank {
namespace {

// A bag of every type, each property encoded, with the texts that need
// escaping, line ends and characters outside ASCII (those of the ANSI coder
// kept to its code page).
std::shared_ptr<PersistedPropertyCollection> EncodedBag() {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetBoolean("flag", true, etBase64Encoded);
    bag->SetLong("count", -42, etBase64Encoded);
    bag->SetDouble("ratio", 0.1, etBase64Encoded);
    bag->SetString("ascii", "Tom & Jerry <share> \"a pie\"", etBase64Encoded);
    bag->SetString("wide", "Gr\xC3\xBC\xC3\x9F" "e, \xE4\xB8\x96\xE7\x95\x8C \"quoted\" <b>", etBase64Encoded);
    bag->SetString("lines", "line one\r\nline two\nthree\rend", etBase64Encoded);
    bag->SetString("tabs", "\ta\tb\t", etBase64Encoded);
    bag->SetString("empty", "", etBase64Encoded);
    bag->SetDate("date", 45000.5, etBase64Encoded);
    bag->SetColor("color", 0x00FF8000, etBase64Encoded);
    bag->SetFont("font", Functions::NewFontData("Times \"New\" Roman", 10.5, true, false, true), etBase64Encoded);
    bag->SetRectangle("rect", Functions::NewRectangle(1, -2, 3, 4), etBase64Encoded);
    bag->SetAsset("asset", Functions::NewAssetData("a&b.png", "Caf\xC3\xA9 <cr\xC3\xA8me>", "source\r\nsecond"),
                  etBase64Encoded);
    LocationData location = Functions::NewLocationData("A", "B", "Main & <only>");
    bag->SetLocation("loc", location, etBase64Encoded);
    auto nested = PersistedPropertyCollection::Create();
    nested->SetString("inner", "x > y", etNotEncoded);
    nested->SetLong("n", 7, etNotEncoded);
    bag->SetPPC("nested", nested, etBase64Encoded);
    auto children = ChildElementCollection::Create();
    auto child = ChildElement::Create();
    child->SetName("caption");
    child->SetElementType("text");
    child->SetString("text", "In the child", etNotEncoded);
    children->Append(child);
    bag->SetCEC("children", children, etBase64Encoded);
    return bag;
}

std::string Decoded(const xml::Element& encoded) {
    const std::string text = encoded.Text();
    return encoded.GetAttribute("enctype").value_or("") == "utf8" ? support::DecodeBase64Utf8(text)
                                                                   : support::DecodeBase64(text);
}

// Each encoded child of `written` against the plain child of `clear` of the
// same property name (the two forms may order the properties differently).
void ExpectPayloadsAreThePlainElements(const xml::Element& written, const xml::Element& clear, int expected) {
    ASSERT_EQ(written.ChildCount(), clear.ChildCount());
    std::map<std::string, std::string> plainByName;
    for (xml::Node plain = clear.FirstChild(); plain; plain = plain.NextSibling()) {
        ASSERT_TRUE(plain.IsElement());
        plainByName[plain.AsElement().GetAttribute("name").value_or("")] = plain.Xml();
    }
    ASSERT_EQ(plainByName.size(), static_cast<std::size_t>(clear.ChildCount()));
    int compared = 0;
    for (xml::Node node = written.FirstChild(); node; node = node.NextSibling()) {
        if (node.Name() != "encProp") {
            continue;
        }
        const std::string payload = Decoded(node.AsElement());
        const xml::Element parsed = xml::Document::Create().ParseRootElement(payload);
        ASSERT_TRUE(parsed) << payload;
        const auto plain = plainByName.find(parsed.GetAttribute("name").value_or(""));
        ASSERT_NE(plain, plainByName.end()) << payload;
        EXPECT_EQ(payload, plain->second);
        ++compared;
    }
    EXPECT_EQ(compared, expected);
}

TEST(EncodedPayload, IsTheXmlOfThePlainElementForEveryType) {
    const auto bag = EncodedBag();
    const xml::Element written = bag->ToXMLElement(xml::Document::Create());
    const xml::Element clear = bag->ToClearXMLElement(xml::Document::Create());
    ExpectPayloadsAreThePlainElements(written, clear, bag->Count());

    auto back = PersistedPropertyCollection::Create();
    back->FromXMLString(bag->ToXMLString());
    EXPECT_EQ(back->ToXMLString(), bag->ToXMLString());
    EXPECT_EQ(back->ToClearXMLString(), bag->ToClearXMLString());
}

TEST(EncodedPayload, IsTheXmlOfThePlainElementInGeneratedLessons) {
    const auto lesson = bench::GenerateLesson(20, 5);
    int storyboards = 0;
    for (const auto& storyboard : *lesson->Storyboards()) {
        const auto bag = storyboard->Properties();
        int encoded = 0;
        const xml::Element written = bag->ToXMLElement(xml::Document::Create());
        for (xml::Node node = written.FirstChild(); node; node = node.NextSibling()) {
            encoded += node.Name() == "encProp" ? 1 : 0;
        }
        ExpectPayloadsAreThePlainElements(written, bag->ToClearXMLElement(xml::Document::Create()), encoded);
        ++storyboards;
    }
    EXPECT_EQ(storyboards, 20);
}

}  // namespace
}  // namespace quillbank

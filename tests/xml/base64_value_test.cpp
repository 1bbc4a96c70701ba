#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::CaughtError;
using testing::Loaded;

std::vector<std::uint8_t> Bytes(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 37 + 11);
    }
    return bytes;
}

TEST(XmlBase64, LinesOf72CharactersSeparatedByLineFeedNoneAfterTheLast) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    e.SetBase64Value(Bytes(200));  // 268 characters: 72 + 72 + 72 + 52
    const std::string text = e.Text();
    ASSERT_EQ(text.size(), 268u + 3u);
    EXPECT_EQ(text[72], '\n');
    EXPECT_EQ(text[145], '\n');
    EXPECT_EQ(text[218], '\n');
    EXPECT_NE(text.back(), '\n');
    EXPECT_EQ(text.find('\n', 219), std::string::npos);
    EXPECT_EQ(e.ChildCount(), 1);
    // Written, each LF is CR LF.
    EXPECT_EQ(e.Xml().find("\r\n"), 3u + 72u);
}

TEST(XmlBase64, ExactlyOneLineHasNoLineFeed) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    e.SetBase64Value(Bytes(54));  // exactly 72 characters
    EXPECT_EQ(e.Text().size(), 72u);
    EXPECT_EQ(e.Text().find('\n'), std::string::npos);
}

TEST(XmlBase64, KnownValue) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    const std::string word = "Quillbank";
    e.SetBase64Value(std::vector<std::uint8_t>(word.begin(), word.end()));
    EXPECT_EQ(e.Xml(), "<e>UXVpbGxiYW5r</e>");
    e.SetBase64Value({});
    EXPECT_EQ(e.Xml(), "<e/>");
    EXPECT_TRUE(e.GetBase64Value().empty());
}

TEST(XmlBase64, RoundTripsThroughWriteAndLoad) {
    for (std::size_t size : {0u, 1u, 2u, 3u, 53u, 54u, 55u, 1000u}) {
        Document doc = Document::Create();
        Element e = doc.CreateElement("e");
        e.SetBase64Value(Bytes(size));
        Document back = Loaded(e.Xml());
        EXPECT_EQ(back.DocumentElement().GetBase64Value(), Bytes(size)) << size;
    }
}

TEST(XmlBase64, DecodingIgnoresWhitespaceAnywhere) {
    Document doc = Loaded("<e>\r\n  UXVp\tbGxi\n YW5r  \r\n</e>", true);
    const std::vector<std::uint8_t> bytes = doc.DocumentElement().GetBase64Value();
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "Quillbank");
}

TEST(XmlBase64, ReplacesExistingChildren) {
    Document doc = Loaded("<e><a/>old</e>");
    doc.DocumentElement().SetBase64Value(std::vector<std::uint8_t>{0xFF});
    EXPECT_EQ(doc.DocumentElement().Xml(), "<e>/w==</e>");
}

TEST(XmlBase64, MalformedTextRaisesTheParsingError) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    e.SetText("not*base64");
    const Error error = CaughtError([&] { (void)e.GetBase64Value(); });
    EXPECT_EQ(error.Number(), ErrXmlDom);
    EXPECT_EQ(error.Source(), "msxml3.dll");
    EXPECT_EQ(error.Description(), "Error parsing 'not*base64' as bin.base64 datatype.");
}

TEST(XmlBase64, ErrorQuotesTheFirst64Characters) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    std::string text = "\xC3\xA9";
    text += std::string(100, 'A');
    e.SetText(text);
    const Error error = CaughtError([&] { (void)e.GetBase64Value(); });
    EXPECT_EQ(error.Description(), "Error parsing '\xC3\xA9" + std::string(63, 'A') + "' as bin.base64 datatype.");
}

TEST(XmlBase64, BadPaddingAndLengthRaise) {
    Document doc = Document::Create();
    Element e = doc.CreateElement("e");
    for (const char* text : {"QQ=A", "QUJD=", "Q", "=QUJ"}) {
        e.SetText(text);
        EXPECT_EQ(CaughtError([&] { (void)e.GetBase64Value(); }).Number(), ErrXmlDom) << text;
    }
}

}  // namespace
}  // namespace quillbank::xml

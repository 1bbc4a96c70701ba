// Every attribute value and text the model can hold reads back unchanged
// after being written: checked over many generated strings.

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

// Pieces chosen to hit every escape and the characters next to them.
const std::vector<std::string>& Pieces() {
    static const std::vector<std::string> pieces = {
        "a", "Z", "0", " ", "  ", "\t", "\n", "\r", "\r\n", "\n\r", "&", "<", ">", "\"", "'", "]", "]]>",
        "&amp;", "&lt;", "&#9;", "&#13;", "&#x41;", ";", "#", "=", "/", "?>", "<!--", "-->", "--",
        "\xC3\xA9", "\xE2\x82\xAC", "\xE6\x97\xA5\xE6\x9C\xAC", "\xF0\x9F\x98\x80", "\xC2\xA0", "\xEF\xBF\xBD",
        "\xE2\x80\xA8", "\x7F",
    };
    return pieces;
}

std::string RandomString(std::mt19937& random) {
    std::uniform_int_distribution<int> length(0, 12);
    std::uniform_int_distribution<std::size_t> pick(0, Pieces().size() - 1);
    std::string text;
    for (int n = length(random); n > 0; --n) {
        text += Pieces()[pick(random)];
    }
    return text;
}

TEST(XmlRoundTrip, AttributeValuesReadBackExactly) {
    std::mt19937 random(20240611);
    for (int i = 0; i < 2000; ++i) {
        const std::string value = RandomString(random);
        Document doc = Document::Create();
        Element e = doc.CreateElement("e");
        e.SetAttribute("v", value);
        Document back = Document::Create();
        ASSERT_TRUE(back.LoadXML(e.Xml())) << e.Xml();
        ASSERT_EQ(back.DocumentElement().GetAttribute("v"), value) << e.Xml();
    }
}

// Text as the document model stores it once set: CR LF and a lone CR are
// LF.
std::string WithLfLineEnds(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            out.push_back('\n');
            if (i + 1 < text.size() && text[i + 1] == '\n') {
                ++i;
            }
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

TEST(XmlRoundTrip, TextReadsBackExactlyInAPreservingDocument) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        const std::string text = RandomString(random);
        Document doc = Document::Create();
        Element e = doc.CreateElement("e");
        e.SetText(text);
        Document back = Document::Create();
        back.SetPreserveWhiteSpace(true);
        ASSERT_TRUE(back.LoadXML(e.Xml())) << e.Xml();
        ASSERT_EQ(back.DocumentElement().Text(), WithLfLineEnds(text)) << e.Xml();
    }
}

TEST(XmlRoundTrip, TextWithOtherCharactersReadsBackWholeByDefault) {
    std::mt19937 random(99);
    for (int i = 0; i < 1000; ++i) {
        const std::string text = RandomString(random) + "x" + RandomString(random);
        Document doc = Document::Create();
        Element e = doc.CreateElement("e");
        e.AppendChild(doc.CreateElement("before"));
        e.AppendChild(doc.CreateTextNode(text));
        Document back = Document::Create();
        ASSERT_TRUE(back.LoadXML(e.Xml())) << e.Xml();
        ASSERT_EQ(back.DocumentElement().LastChild().Value(), WithLfLineEnds(text)) << e.Xml();
    }
}

TEST(XmlRoundTrip, CommentsAndCDataReadBackExactly) {
    std::mt19937 random(5);
    for (int i = 0; i < 1000; ++i) {
        std::string text = RandomString(random);
        Document doc = Document::Create();
        Element e = doc.CreateElement("e");
        e.AppendChild(doc.CreateCDataSection(text));
        Document back = Document::Create();
        back.SetPreserveWhiteSpace(true);
        ASSERT_TRUE(back.LoadXML(e.Xml())) << e.Xml();
        // Line ends in CDATA are normalised like any text.
        std::string expected;
        for (std::size_t k = 0; k < text.size(); ++k) {
            if (text[k] == '\r') {
                expected.push_back('\n');
                if (k + 1 < text.size() && text[k + 1] == '\n') {
                    ++k;
                }
            } else {
                expected.push_back(text[k]);
            }
        }
        ASSERT_EQ(back.DocumentElement().Text(), expected) << e.Xml();
    }
}

TEST(XmlRoundTrip, WrittenDocumentLoadsToTheSameText) {
    std::mt19937 random(11);
    Document doc = Document::Create();
    Element root = doc.CreateElement("root");
    doc.SetDocumentElement(root);
    for (int i = 0; i < 200; ++i) {
        Element child = doc.CreateElement("c");
        child.SetAttribute("a", RandomString(random));
        child.SetAttribute("b", RandomString(random));
        child.SetText("t" + RandomString(random));
        root.AppendChild(child);
    }
    const std::string first = doc.Xml();
    Document back = testing::Loaded(first, true);
    EXPECT_EQ(back.Xml(), first);
}

}  // namespace
}  // namespace quillbank::xml

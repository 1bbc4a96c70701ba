// Depth costs no stack: loading, writing, copying, text and the whitespace
// filter walk the tree without recursion.

#include <string>

#include <gtest/gtest.h>

#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

constexpr int kDepth = 100000;

std::string Nested(int depth, const std::string& inner, const std::string& open = "<a>") {
    std::string text;
    text.reserve(static_cast<std::size_t>(depth) * 7 + inner.size());
    for (int i = 0; i < depth; ++i) {
        text += open;
    }
    text += inner;
    for (int i = 0; i < depth; ++i) {
        text += "</a>";
    }
    return text;
}

TEST(XmlDeepTree, HundredThousandLevelsLoadWriteAndClone) {
    const std::string text = Nested(kDepth, "x");
    Document doc = testing::Loaded(text);
    const Element root = doc.DocumentElement();
    EXPECT_EQ(root.Xml(), text);
    EXPECT_EQ(doc.Xml(), text + "\r\n");
    EXPECT_EQ(root.Text(), "x");
    const Node copy = root.CloneNode(true);
    EXPECT_EQ(copy.Xml(), text);
    const Node copyOfDocument = doc.AsNode().CloneNode(true);
    EXPECT_EQ(copyOfDocument.Xml(), text + "\r\n");
    // Across documents too.
    Document other = Document::Create();
    other.SetDocumentElement(root);
    EXPECT_EQ(other.DocumentElement().Xml(), text);
}

TEST(XmlDeepTree, WhitespaceFilterWalksDeepTrees) {
    const std::string text = Nested(kDepth, " ", "<a xml:space=\"default\"> ");
    Document doc = testing::Loaded(text);
    Node deepest = doc.DocumentElement();
    int depth = 1;
    while (Node child = deepest.FirstChild()) {
        deepest = child;
        ++depth;
    }
    EXPECT_EQ(depth, kDepth);
    EXPECT_FALSE(deepest.HasChildNodes());
}

TEST(XmlDeepTree, BuiltBottomUpThroughTheFacade) {
    Document doc = Document::Create();
    Element top = doc.CreateElement("a");
    for (int i = 1; i < kDepth; ++i) {
        Element parent = doc.CreateElement("a");
        parent.AppendChild(top);
        top = parent;
    }
    doc.SetDocumentElement(top);
    EXPECT_EQ(doc.DocumentElement().Xml().size(), static_cast<std::size_t>(kDepth - 1) * 7 + 4);
}

TEST(XmlDeepTree, DeepTextFailsCleanlyWhenUnclosed) {
    std::string text;
    for (int i = 0; i < kDepth; ++i) {
        text += "<a>";
    }
    EXPECT_FALSE(Document::Create().LoadXML(text));
}

}  // namespace
}  // namespace quillbank::xml

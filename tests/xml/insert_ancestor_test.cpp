// Placing an element under one of its own descendants is refused, also where
// the parent's ancestors have the element's name; elements that only share
// that name are placed.

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

#include "xml/test_support.hpp"

namespace quillbank::xml {
namespace {

using testing::CaughtError;
using testing::Loaded;

void ExpectRefused(const std::function<void()>& action) {
    const Error error = CaughtError(action);
    EXPECT_EQ(error.Number(), ErrXmlDom);
    EXPECT_EQ(error.Source(), "msxml3.dll");
    EXPECT_EQ(error.Description(), "Inserting a node or its ancestor under itself is not allowed.");
}

TEST(XmlInsertAncestor, AnAncestorOfTheSameNameIsRefusedAndAnotherElementOfThatNamePlaced) {
    Document doc = Loaded("<r><a><a><b/></a></a></r>");
    Node outer = doc.DocumentElement().FirstChild();
    Node inner = outer.FirstChild();
    Node b = inner.FirstChild();
    ExpectRefused([&] { b.AppendChild(outer); });
    ExpectRefused([&] { b.AppendChild(inner); });
    ExpectRefused([&] { inner.AppendChild(inner); });
    // The same elements reached by another walk.
    ExpectRefused([&] { b.AppendChild(doc.DocumentElement().ChildAt(0)); });
    ExpectRefused([&] { b.InsertBefore(doc.DocumentElement().ChildAt(0).ChildAt(0), Node()); });
    EXPECT_EQ(doc.DocumentElement().Xml(), "<r><a><a><b/></a></a></r>");

    b.AppendChild(doc.CreateElement("a"));
    inner.AppendChild(doc.CreateElement("a"));
    EXPECT_EQ(doc.DocumentElement().Xml(), "<r><a><a><b><a/></b><a/></a></a></r>");
}

TEST(XmlInsertAncestor, AnUnattachedTreeRefusesItsOwnRootBelowItself) {
    Document doc = Document::Create();
    Element top = doc.CreateElement("p");
    Element middle = doc.CreateElement("p");
    Element leaf = doc.CreateElement("q");
    middle.AppendChild(leaf);
    top.AppendChild(middle);
    ExpectRefused([&] { leaf.AppendChild(top); });
    ExpectRefused([&] { middle.AppendChild(top); });
    middle.AppendChild(doc.CreateElement("p"));
    EXPECT_EQ(top.Xml(), "<p><p><q/><p/></p></p>");
}

}  // namespace
}  // namespace quillbank::xml

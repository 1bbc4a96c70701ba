#pragma once

// Helpers shared by the XML facade tests.

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <quillbank/error.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::xml::testing {

// A document loaded from `text`; the test fails when the text does not load.
inline Document Loaded(const std::string& text, bool preserve = false) {
    Document doc = Document::Create();
    doc.SetPreserveWhiteSpace(preserve);
    EXPECT_TRUE(doc.LoadXML(text)) << text;
    return doc;
}

// Runs `action` and returns the Error it raises (a test failure if none).
inline Error CaughtError(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& error) {
        return error;
    }
    ADD_FAILURE() << "no quillbank::Error was raised";
    return Error(0, "", "");
}

}  // namespace quillbank::xml::testing

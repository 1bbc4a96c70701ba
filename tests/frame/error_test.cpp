#include <quillbank/error.hpp>

#include <gtest/gtest.h>

#include <filesystem>

#include "frame/raise.hpp"

namespace quillbank {
namespace {

TEST(Error, CarriesNumberSourceAndDescription) {
    const Error e(94, "Lesson.ToXMLElement", "Document cannot be null");
    EXPECT_EQ(e.Number(), 94);
    EXPECT_EQ(e.Source(), "Lesson.ToXMLElement");
    EXPECT_EQ(e.Description(), "Document cannot be null");
    EXPECT_STREQ(e.what(), "Lesson.ToXMLElement: Document cannot be null");
}

TEST(Error, IsARuntimeError) {
    try {
        frame::Raise(ErrInvalidArgument, "LessonMap.InsertStoryboard", "NewSBID cannot be ''.");
    } catch (const std::runtime_error& e) {
        const auto* error = dynamic_cast<const Error*>(&e);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->Number(), 380);
        return;
    }
    FAIL() << "nothing raised";
}

TEST(Error, NamedNumbers) {
    EXPECT_EQ(ErrNullArgument, 94);
    EXPECT_EQ(ErrInvalidArgument, 380);
    EXPECT_EQ(ErrInvalidCall, 5);
    EXPECT_EQ(ErrOverflow, 6);
    EXPECT_EQ(ErrOutOfStackSpace, 28);
    // The component error base 0x80040000 plus 1001.
    EXPECT_EQ(ErrXmlForm, -2147220503);
    EXPECT_EQ(static_cast<std::uint32_t>(ErrXmlForm), 0x80040000u + 1001u);
}

TEST(Error, WrongElementDescriptionNamesTheExpectedElement) {
    EXPECT_EQ(frame::NotAnElementDescription("lesson"), "Element is not a <lesson> element");
}

TEST(PublicHeaders, PersistedPropertyIsInNoInstalledHeader) {
    // Hosts reach property values only through the bags: the single-property
    // class has no public header to create it from.
    const std::filesystem::path include = std::filesystem::path(QUILLBANK_TEST_DATA_DIR) / ".." / ".." / "include";
    ASSERT_TRUE(std::filesystem::exists(include / "quillbank" / "quillbank.hpp"));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(include)) {
        EXPECT_EQ(entry.path().filename().string().find("persisted_property."), std::string::npos) << entry.path();
    }
}

}  // namespace
}  // namespace quillbank

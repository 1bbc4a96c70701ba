// XML -> JSON -> XML gives the same normal form, "documentid" apart, for the
// sample lessons, the generated lessons and every lesson of the fuzz corpus.

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "json/json_helpers.hpp"
#include "lesson/sample_lessons.hpp"
#include "lesson_generator.hpp"

namespace quillbank {
namespace {

using testing::DumpJson;
using testing::NormalFormWithoutDocumentID;

// Reads `xml`, writes it as JSON, reads that and compares the normal forms;
// the JSON written again from the copy is the same JSON. False when the XML
// does not read.
bool ExpectRoundTrip(const std::string& xml, const std::string& name) {
    auto lesson = Lesson::Create();
    try {
        lesson->FromXMLString(xml);
    } catch (const Error&) {
        return false;
    }
    const std::string json = LessonToJSON(*lesson);
    DumpJson(name, json);
    const auto copy = LessonFromJSON(json);
    EXPECT_EQ(NormalFormWithoutDocumentID(*copy), NormalFormWithoutDocumentID(*lesson)) << name;
    EXPECT_EQ(LessonToJSON(*copy), json) << name;
    return true;
}

TEST(JsonRoundTrip, SampleLessons) {
    const std::filesystem::path examples = QUILLBANK_SOURCE_DIR "/examples";
    int read = 0;
    for (const auto& file : testing::FilesBelow(examples)) {
        if (file.extension() == ".xml") {
            EXPECT_TRUE(ExpectRoundTrip(testing::ReadFile(file), "example-" + file.filename().string()));
            ++read;
        }
    }
    EXPECT_GE(read, 2);
}

TEST(JsonRoundTrip, GoldenLessonsAndTheFixedLesson) {
    for (const char* name : {"lesson_normal.xml", "lesson_clear.xml"}) {
        EXPECT_TRUE(ExpectRoundTrip(testing::ReadFile(std::filesystem::path(QUILLBANK_TEST_DATA_DIR) / name),
                                    std::string("golden-") + name));
    }
    EXPECT_TRUE(ExpectRoundTrip(testing::MakeFixedLesson()->ToXMLString(), "fixed"));
}

TEST(JsonRoundTrip, GeneratedLessonsSmallAndMedium) {
    for (const int size : {bench::kSmallLesson, bench::kMediumLesson}) {
        EXPECT_TRUE(ExpectRoundTrip(bench::GenerateLesson(size)->ToXMLString(), "generated-" + std::to_string(size)));
    }
}

// The fuzz corpus: its seeds (fuzz/seeds and the golden files of tests/data
// that scripts/fuzz.sh starts from) and whatever a fuzz run has grown in
// build/fuzz/corpus. Every file that reads as a lesson must round-trip.
TEST(JsonRoundTrip, EveryFuzzCorpusFileThatReads) {
    const std::filesystem::path source = QUILLBANK_SOURCE_DIR;
    std::vector<std::filesystem::path> files;
    for (const auto& folder : {source / "fuzz" / "seeds", source / "tests" / "data", source / "build" / "fuzz" / "corpus"}) {
        const auto below = testing::FilesBelow(folder);
        files.insert(files.end(), below.begin(), below.end());
    }
    int read = 0;
    for (const auto& file : files) {
        if (ExpectRoundTrip(testing::ReadFile(file), "corpus-" + std::to_string(read) + "-" + file.filename().string())) {
            ++read;
        }
    }
    EXPECT_GE(read, 5) << "of " << files.size() << " files";
}

}  // namespace
}  // namespace quillbank

// Clone gives exactly what reading the lesson's written element gives:
// the same object model and the same written text, for the sample lessons,
// generated lessons, every lesson file the tests hold, a fuzz corpus when
// one is there, and lessons holding the values that writing and reading
// change (line ends, control characters, NULs, surrounding whitespace,
// comments, repeated names).

#include <gtest/gtest.h>

#include <quillbank/quillbank.hpp>

#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "lesson/lesson_helpers.hpp"
#include "lesson/sample_lessons.hpp"
#include "storyboards/storyboard_access.hpp"

namespace quillbank {
namespace {

using testing::LessonGenerator;
using testing::WithoutDocumentId;

// The copy made the document's way: the written element read back.
std::shared_ptr<Lesson> CloneThroughElement(const Lesson& lesson) {
    auto copy = Lesson::Create();
    copy->FromXMLElement(lesson.ToXMLElement(xml::Document::Create()));
    return copy;
}

std::string Exact(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%a", value);
    return buffer;
}

void DumpBag(const std::shared_ptr<PersistedPropertyCollection>& bag, int depth, std::string& out);

void DumpList(const std::shared_ptr<ChildElementCollection>& list, int depth, std::string& out) {
    if (!list) {
        out += "null list\n";
        return;
    }
    out += "list [" + list->Name() + "] " + std::to_string(list->Count()) + "\n";
    for (std::int32_t i = 0; i < list->Count(); ++i) {
        const auto element = list->Item(i);
        out += "element [" + element->Name() + "] [" + element->ElementType() + "]\n";
        DumpBag(element->PPCObject(), depth + 1, out);
    }
}

// Every property of the bag in the bag's own order: name, type, encoding
// and value, nested bags and lists included.
void DumpBag(const std::shared_ptr<PersistedPropertyCollection>& bag, int depth, std::string& out) {
    if (!bag) {
        out += "null bag\n";
        return;
    }
    if (depth > 40) {
        out += "...\n";
        return;
    }
    out += "bag [" + bag->Name() + "] " + std::to_string(bag->Count()) + "\n";
    const std::vector<std::string> encoded = bag->GetPropertyNameArray(etBase64Encoded);
    for (const std::string& name : bag->GetPropertyNameArray()) {
        if (name.empty() && bag->Count() == 0) {
            continue;
        }
        const bool isEncoded = std::find(encoded.begin(), encoded.end(), name) != encoded.end();
        out += "[" + name + "] type " + std::to_string(bag->GetPropertyType(name)) + (isEncoded ? " enc " : " plain ");
        switch (bag->GetPropertyType(name)) {
            case ptBoolean: out += bag->GetBoolean(name, false) ? "true" : "false"; break;
            case ptLong: out += std::to_string(bag->GetLong(name, 0)); break;
            case ptDouble: out += Exact(bag->GetDouble(name, 0)); break;
            case ptString: out += "[" + bag->GetString(name, "") + "]"; break;
            case ptDate: out += Exact(bag->GetDate(name, 0)); break;
            case ptColor: out += std::to_string(bag->GetColor(name, 0)); break;
            case ptFont: {
                const FontData font = bag->GetFont(name, FontData{});
                out += "[" + font.Name + "] " + Exact(font.Size) + " " + std::to_string(font.Bold) +
                       std::to_string(font.Italic) + std::to_string(font.Underline);
                break;
            }
            case ptRectangle: {
                const Rectangle r = bag->GetRectangle(name, Rectangle{});
                out += std::to_string(r.Left) + "," + std::to_string(r.Top) + "," + std::to_string(r.Width) + "," +
                       std::to_string(r.Height);
                break;
            }
            case ptAsset: {
                const AssetData asset = bag->GetAsset(name, AssetData{});
                out += "[" + asset.Filename + "][" + asset.Description + "][" + asset.Source + "]";
                break;
            }
            case ptLocation: {
                const LocationData location = bag->GetLocation(name, LocationData{});
                out += "[" + location.StartPoint + "][" + location.EndPoint + "][" + location.MapName + "]";
                break;
            }
            case ptPPC:
                out += "\n";
                DumpBag(bag->GetPPC(name, nullptr), depth + 1, out);
                break;
            case ptCEC:
                out += "\n";
                DumpList(bag->GetCEC(name, nullptr), depth + 1, out);
                break;
            default: break;
        }
        out += "\n";
    }
}

// The whole object model as text, so that two models compare at once and a
// difference shows where it is.
std::string DumpLesson(const Lesson& lesson) {
    std::string out = "lesson [" + lesson.LessonID() + "] [" + lesson.Title() + "] [" + lesson.Identifier() + "] [" +
                      lesson.Classification() + "]\n";
    DumpBag(lesson.Properties(), 0, out);
    const auto maps = lesson.Maps();
    out += "maps " + std::to_string(maps->Count()) + " default " +
           std::to_string(maps->DefaultMap() ? maps->IndexOf(maps->DefaultMap()) : -1) + "\n";
    for (std::int32_t i = 0; i < maps->Count(); ++i) {
        std::string name;
        try {
            name = maps->ItemAt(i)->Name();
        } catch (const Error& error) {
            name = "(raises " + std::to_string(error.Number()) + ")";
        }
        out += "map [" + name + "] " + maps->ItemAt(i)->ToXMLElement().Xml() + "\n";
    }
    out += "current [" + lesson.Storyboards()->CurrentSBID() + "]\n";
    for (const auto& sb : *lesson.Storyboards()) {
        out += "storyboard [" + sb->SBID() + "] [" + sb->Title() + "] [" + sb->Identifier() + "] [" + sb->SBType() +
               "] [" + sb->Classification() + "] " + std::to_string(detail::StoryboardAccess::ShortID(*sb)) + "\n";
        DumpBag(sb->Properties(), 0, out);
        DumpList(sb->Children(), 0, out);
    }
    return out;
}

// Clone and the element's way agree on the model and on both written forms;
// when the element's way raises, Clone raises the same error.
void ExpectCloneIsTheElementRead(const Lesson& lesson) {
    std::shared_ptr<Lesson> expected;
    try {
        expected = CloneThroughElement(lesson);
    } catch (const Error& error) {
        try {
            lesson.Clone();
            ADD_FAILURE() << "Clone did not raise " << error.Number() << " " << error.Description();
        } catch (const Error& cloneError) {
            EXPECT_EQ(cloneError.Number(), error.Number());
            EXPECT_EQ(cloneError.Source(), error.Source());
            EXPECT_EQ(cloneError.Description(), error.Description());
        }
        return;
    }
    const auto clone = lesson.Clone();
    EXPECT_EQ(DumpLesson(*clone), DumpLesson(*expected));
    EXPECT_EQ(WithoutDocumentId(clone->ToXMLString()), WithoutDocumentId(expected->ToXMLString()));
    EXPECT_EQ(WithoutDocumentId(clone->ToClearXMLString()), WithoutDocumentId(expected->ToClearXMLString()));
}

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Clone of the lesson read from each file that reads as a lesson; how many did.
int CheckFilesUnder(const std::filesystem::path& folder, bool recursive) {
    int checked = 0;
    if (!std::filesystem::is_directory(folder)) {
        return 0;
    }
    std::vector<std::filesystem::path> files;
    if (recursive) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file()) files.push_back(entry.path());
        }
    } else {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.is_regular_file()) files.push_back(entry.path());
        }
    }
    for (const auto& file : files) {
        auto lesson = Lesson::Create();
        try {
            lesson->FromXMLString(ReadFile(file));
        } catch (const Error&) {
            continue;
        }
        SCOPED_TRACE(file.string());
        ExpectCloneIsTheElementRead(*lesson);
        ++checked;
    }
    return checked;
}

TEST(LessonCloneIdentity, TheFixedLesson) { ExpectCloneIsTheElementRead(*testing::MakeFixedLesson()); }

TEST(LessonCloneIdentity, GeneratedLessons) {
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        ExpectCloneIsTheElementRead(*LessonGenerator(seed).Make());
    }
}

TEST(LessonCloneIdentity, EveryLessonFileOfTheTestsAndExamples) {
    const std::filesystem::path data(QUILLBANK_TEST_DATA_DIR);
    int checked = CheckFilesUnder(data, true);
    checked += CheckFilesUnder(data.parent_path().parent_path() / "examples", false);
    // The two golden lessons, the tool's lesson files and the examples.
    std::printf("lesson files checked: %d\n", checked);
    EXPECT_GE(checked, 20);
}

// A fuzz corpus (the folders scripts/fuzz.sh fills, or QUILLBANK_CLONE_CORPUS)
// is checked whole when it is there.
TEST(LessonCloneIdentity, TheFuzzCorpusWhenPresent) {
    std::vector<std::filesystem::path> folders;
    if (const char* given = std::getenv("QUILLBANK_CLONE_CORPUS")) {
        folders.emplace_back(given);
    }
    const std::filesystem::path build = std::filesystem::path(QUILLBANK_TEST_DATA_DIR).parent_path().parent_path() /
                                        "build" / "fuzz" / "corpus";
    for (const char* target : {"lesson_fuzz", "round_trip_fuzz"}) {
        folders.push_back(build / target);
    }
    int checked = 0;
    for (const auto& folder : folders) {
        checked += CheckFilesUnder(folder, false);
    }
    std::printf("fuzz corpus lessons checked: %d\n", checked);
}

// One storyboard whose bag holds `value` as a string, plain and encoded,
// as an asset's texts and as attribute values.
std::shared_ptr<Lesson> LessonHolding(const std::string& value) {
    auto lesson = Lesson::Create();
    lesson->SetTitle("t" + value);
    auto sb = Storyboard::Create();
    lesson->Storyboards()->Add(sb);
    sb->SetTitle(value);
    auto bag = sb->Properties();
    bag->SetString("plain", value);
    bag->SetString("encoded", value, etBase64Encoded);
    bag->SetAsset("asset", AssetData{value, value, value});
    bag->SetAsset("encodedAsset", AssetData{"f", value, value}, etBase64Encoded);
    bag->SetFont("font", FontData{value, 9.5, true, false, true});
    LocationData location{"a", value, value};
    bag->SetLocation("location", location);
    lesson->Properties()->SetString("lessonText", value);
    return lesson;
}

TEST(LessonCloneIdentity, ValuesThatWritingAndReadingChange) {
    const std::vector<std::string> values = {
        "",
        " ",
        "   ",
        "\t",
        "\r\n",
        "\n",
        "\r",
        "\r\r\n",
        " lead",
        "trail ",
        "\n two \r\n lines \r",
        std::string("before\0after", 12),
        std::string("\0", 1),
        "bell\x07here",
        "\x1A\x1B\x1F",
        "escape & <this> \"and\" 'that' ]]>",
        "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",
        "-- dashes --",
        "&#13;&amp;",
    };
    for (const std::string& value : values) {
        SCOPED_TRACE("value [" + value + "]");
        ExpectCloneIsTheElementRead(*LessonHolding(value));
    }
}

TEST(LessonCloneIdentity, ClassificationsAndTheirComments) {
    for (const std::string classification : {"SECRET", "a -- b", "end -", "x-->y", " spaced ", "\x01"}) {
        SCOPED_TRACE(classification);
        auto lesson = LessonHolding("v");
        lesson->SetClassification(classification);
        (*lesson->Storyboards()->begin())->SetClassification(classification);
        ExpectCloneIsTheElementRead(*lesson);
    }
}

TEST(LessonCloneIdentity, BagsWithNamesTheWriterDropsOrRepeats) {
    auto lesson = LessonHolding("v");
    auto bag = lesson->Properties();
    bag->SetString("", "nameless");
    bag->SetString("Same", "one");
    bag->SetLong(std::string("cut\0name", 8), 4);
    bag->SetLong("cut", 5);
    bag->SetDouble("tiny", 4.9406564584124654e-324);
    bag->SetDouble("nan", std::nan(""));
    bag->SetDate("date", 45000.123456789);
    bag->SetDate("encodedDate", -657434.5, etBase64Encoded);
    ExpectCloneIsTheElementRead(*lesson);
}

TEST(LessonCloneIdentity, NestedBagsAndLists) {
    auto lesson = LessonHolding("v");
    auto inner = PersistedPropertyCollection::Create();
    inner->SetString("innerText", "  spaced  ", etBase64Encoded);
    inner->SetString("innerPlain", "\r\nlines\n");
    auto list = ChildElementCollection::Create();
    auto child = ChildElement::Create();
    child->SetElementType(" type ");
    child->PPCObject()->SetPPC("again", inner, etBase64Encoded);
    list->Append(child);
    inner->SetCEC("list", list);
    lesson->Properties()->SetPPC("inner", inner);
    lesson->Properties()->SetPPC("innerEncoded", inner, etBase64Encoded);
    ExpectCloneIsTheElementRead(*lesson);
}

}  // namespace
}  // namespace quillbank

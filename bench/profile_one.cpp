// One operation on one generated lesson, for counting its instructions:
//
//   valgrind --tool=callgrind --toggle-collect='*RunMeasured*'
//            build/release/bench/quillbank_profile_one OPERATION [STORYBOARDS]
//
// OPERATION is one of from-xml, to-xml, to-clear, format, clone, duplicate,
// part-strings (FromXMLString of every storyboard's bag and of every child
// element, from their written texts), pugi-serialize and pugi-parse (the
// floors, with the parse options of the benchmark suite); STORYBOARDS
// defaults to 100. The lesson and its text are
// made before the measured call, which is the only code inside
// RunMeasured.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include <quillbank/quillbank.hpp>

#include "lesson_generator.hpp"

namespace {

using namespace quillbank;

constexpr unsigned kFloorParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute |
                                      pugi::parse_eol | pugi::parse_comments | pugi::parse_pi |
                                      pugi::parse_declaration;

struct StringWriter final : pugi::xml_writer {
    std::string text;
    void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
};

struct Input {
    std::shared_ptr<Lesson> lesson;
    std::string text;
    pugi::xml_document document;
    // The written texts of the storyboards' bags and child elements.
    std::vector<std::string> bagTexts;
    std::vector<std::string> elementTexts;
};

void CollectPartTexts(Input& input) {
    for (const auto& storyboard : *input.lesson->Storyboards()) {
        input.bagTexts.push_back(storyboard->Properties()->ToXMLString());
        const auto children = storyboard->Children();
        for (std::int32_t i = 0; i < children->Count(); ++i) {
            input.elementTexts.push_back(children->Item(i)->ToXMLString());
        }
    }
}

// The measured call; its result's size is returned so that nothing is
// optimised away.
[[gnu::noinline]] std::size_t RunMeasured(const char* operation, Input& input) {
    if (std::strcmp(operation, "from-xml") == 0) {
        auto lesson = Lesson::Create();
        lesson->FromXMLString(input.text);
        return static_cast<std::size_t>(lesson->Storyboards()->Count());
    }
    if (std::strcmp(operation, "to-xml") == 0) {
        return input.lesson->ToXMLString().size();
    }
    if (std::strcmp(operation, "to-clear") == 0) {
        return input.lesson->ToClearXMLString().size();
    }
    if (std::strcmp(operation, "format") == 0) {
        return Functions::FormatXMLString(input.text).size();
    }
    if (std::strcmp(operation, "clone") == 0) {
        return static_cast<std::size_t>(input.lesson->Clone()->Storyboards()->Count());
    }
    if (std::strcmp(operation, "duplicate") == 0) {
        return static_cast<std::size_t>(input.lesson->Duplicate()->Storyboards()->Count());
    }
    if (std::strcmp(operation, "part-strings") == 0) {
        std::size_t count = 0;
        for (const std::string& text : input.bagTexts) {
            auto bag = PersistedPropertyCollection::Create();
            bag->FromXMLString(text);
            count += static_cast<std::size_t>(bag->Count());
        }
        for (const std::string& text : input.elementTexts) {
            auto element = ChildElement::Create();
            element->FromXMLString(text);
            count += static_cast<std::size_t>(element->PPCObject()->Count());
        }
        return count;
    }
    if (std::strcmp(operation, "pugi-serialize") == 0) {
        StringWriter writer;
        input.document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
        return writer.text.size();
    }
    if (std::strcmp(operation, "pugi-parse") == 0) {
        pugi::xml_document document;
        document.load_buffer(input.text.data(), input.text.size(), kFloorParseFlags, pugi::encoding_utf8);
        return document.first_child() ? 1 : 0;
    }
    std::fprintf(stderr, "unknown operation: %s\n", operation);
    std::exit(2);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s OPERATION [STORYBOARDS]\n", argv[0]);
        return 2;
    }
    const int storyboards = argc > 2 ? std::atoi(argv[2]) : 100;
    Input input;
    input.lesson = bench::GenerateLesson(storyboards, 1);
    input.text = input.lesson->ToXMLString();
    input.document.load_buffer(input.text.data(), input.text.size(), kFloorParseFlags, pugi::encoding_utf8);
    if (std::strcmp(argv[1], "part-strings") == 0) {
        CollectPartTexts(input);
    }
    std::printf("%zu\n", RunMeasured(argv[1], input));
    return 0;
}

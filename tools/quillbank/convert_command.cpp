// quillbank convert FILE -o OUT [--to json|xml]: a lesson from XML to its
// JSON form and back.

#include <cctype>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/error.hpp>
#include <quillbank/json.hpp>
#include <quillbank/lesson.hpp>

#include "commands.hpp"
#include "lesson_file.hpp"
#include "output_file.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

struct ConvertOptions {
    std::string file;
    std::string output;
    std::string to;
};

bool EndsWith(std::string_view text, std::string_view end) {
    if (text.size() < end.size()) {
        return false;
    }
    for (std::size_t i = 0; i < end.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(text[text.size() - end.size() + i])) != end[i]) {
            return false;
        }
    }
    return true;
}

// JSON when the file is named *.json, or (standard input) when its text
// starts with "{".
bool IsJsonInput(const InputFile& input) {
    if (input.path != kStandardStream) {
        return EndsWith(input.path, ".json");
    }
    for (const char c : input.decoded.text) {
        if (!std::isspace(static_cast<unsigned char>(c))) {
            return c == '{';
        }
    }
    return false;
}

std::shared_ptr<Lesson> ReadJsonLesson(const InputFile& input) {
    try {
        return LessonFromJSON(input.decoded.text);
    } catch (const Error& error) {
        throw ToolError(input.displayName + ": " + error.Description());
    }
}

}  // namespace

Command AddConvertCommand(CLI::App& program) {
    auto* app = program.add_subcommand(
        "convert", "Convert a lesson between its XML form and its JSON form (docs/lesson.schema.json)");
    auto options = std::make_shared<ConvertOptions>();
    app->add_option("FILE", options->file, "The lesson: XML, or JSON when named *.json (- for standard input)")
        ->required();
    app->add_option("-o,--output", options->output, "Where the result goes (- for standard output)")->required();
    app->add_option("--to", options->to,
                    "json or xml; by default the form OUT's extension names (.json, .xml), else the other form")
        ->check(CLI::IsMember({"json", "xml"}));
    return {app, [options] {
                auto input = ReadInput(options->file);
                const bool fromJson = IsJsonInput(input);
                bool toJson = !fromJson;
                if (!options->to.empty()) {
                    toJson = options->to == "json";
                } else if (EndsWith(options->output, ".json")) {
                    toJson = true;
                } else if (EndsWith(options->output, ".xml")) {
                    toJson = false;
                }
                const std::string target = ChooseOutput(input, options->output, false, true, "convert");
                auto lesson = fromJson ? ReadJsonLesson(input) : LoadLesson(input);
                const std::string text = toJson ? LessonToJSON(*lesson, 2) + "\n" : lesson->ToXMLString();
                WriteOutput(target, text);
                return kExitOk;
            }};
}

}  // namespace quillbank::tool

// quillbank info FILE: the lesson's identity, its counts and its maps.

#include <memory>
#include <sstream>
#include <string>

#include <quillbank/functions.hpp>
#include <quillbank/lesson.hpp>

#include "bag_walk.hpp"
#include "commands.hpp"
#include "lesson_file.hpp"
#include "map_items.hpp"
#include "output_file.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

std::string OrNone(const std::string& text) {
    return text.empty() ? "(none)" : text;
}

std::string Info(const InputFile& input, const Lesson& lesson) {
    std::int32_t allProperties = 0;
    for (const auto& placed : LessonBags(lesson)) {
        WalkBag(*placed.bag, placed.path, 0, {[&](const PropertyVisit&) { ++allProperties; }, {}});
    }
    std::int32_t childElements = 0;
    for (const auto& storyboard : *lesson.Storyboards()) {
        childElements += storyboard->Children()->Count();
    }

    std::ostringstream out;
    out << "lesson id:       " << lesson.LessonID() << '\n'
        << "title:           " << (lesson.Title().empty() ? "(empty)" : lesson.Title()) << '\n'
        << "identifier:      " << OrNone(lesson.Identifier()) << '\n'
        << "classification:  " << OrNone(lesson.Classification()) << '\n'
        << "encoding:        " << EncodingName(input.decoded.encoding) << '\n'
        << "properties:      " << lesson.Properties()->Count() << " on the lesson, " << allProperties
        << " in all (storyboards, child elements and nested bags and lists included)\n"
        << "storyboards:     " << lesson.Storyboards()->Count() << '\n'
        << "child elements:  " << childElements << '\n'
        << "maps:            " << lesson.Maps()->Count() << '\n'
        << "read as:         " << Functions::RegionalSettings() << " (numbers and dates; see --locale)\n";
    auto maps = lesson.Maps();
    auto defaultMap = DefaultOrFirstMap(lesson);
    for (std::int32_t i = 0; i < maps->Count(); ++i) {
        auto map = maps->ItemAt(i);
        auto items = MapItems(*map);
        out << "  " << MapLabel(*map) << (map == defaultMap ? " (default)" : "") << ", " << items.size()
            << (items.size() == 1 ? " item" : " items") << '\n';
    }
    return out.str();
}

}  // namespace

Command AddInfoCommand(CLI::App& program) {
    auto file = std::make_shared<std::string>();
    auto* app = program.add_subcommand("info", "Show the lesson's identity, its counts and its maps");
    app->add_option("FILE", *file, "Lesson file, or - for standard input")->required();
    return {app, [file] {
                auto input = ReadInput(*file);
                auto lesson = LoadLesson(input);
                WriteOutput(kStandardStream, Info(input, *lesson));
                return kExitOk;
            }};
}

}  // namespace quillbank::tool

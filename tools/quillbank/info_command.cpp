// quillbank info FILE: the lesson's identity, its counts and its maps.

#include <memory>
#include <sstream>
#include <string>

#include <quillbank/functions.hpp>
#include <quillbank/lesson.hpp>

#include "bag_walk.hpp"
#include "commands.hpp"
#include "file_batch.hpp"
#include "json_report.hpp"
#include "lesson_file.hpp"
#include "map_items.hpp"
#include "output_file.hpp"
#include "property_path.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

std::string OrNone(const std::string& text) {
    return text.empty() ? "(none)" : Escaped(text);
}

struct Counts {
    std::int32_t allProperties = 0;
    std::int32_t childElements = 0;
};

Counts CountOf(const Lesson& lesson) {
    Counts counts;
    for (const auto& placed : LessonBags(lesson)) {
        WalkBag(*placed.bag, placed.path, 0, {[&](const PropertyVisit&) { ++counts.allProperties; }, {}});
    }
    for (const auto& storyboard : *lesson.Storyboards()) {
        counts.childElements += storyboard->Children()->Count();
    }
    return counts;
}

std::string InfoJson(const InputFile& input, const Lesson& lesson) {
    const Counts counts = CountOf(lesson);
    Json document = ReportHeader("info", input.path);
    document["lessonId"] = lesson.LessonID();
    document["title"] = lesson.Title();
    document["identifier"] = lesson.Identifier();
    document["classification"] = lesson.Classification();
    document["encoding"] = EncodingName(input.decoded.encoding);
    document["properties"] = Json{{"lesson", lesson.Properties()->Count()}, {"all", counts.allProperties}};
    document["storyboards"] = lesson.Storyboards()->Count();
    document["childElements"] = counts.childElements;
    Json maps = Json::array();
    auto defaultMap = DefaultOrFirstMap(lesson);
    auto all = lesson.Maps();
    for (std::int32_t i = 0; i < all->Count(); ++i) {
        auto map = all->ItemAt(i);
        auto name = MapName(*map);
        maps.push_back(Json{{"name", name ? Json(*name) : Json(nullptr)},
                            {"default", map == defaultMap},
                            {"items", MapItems(*map).size()}});
    }
    document["maps"] = std::move(maps);
    return JsonLine(document);
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
    out << "lesson id:       " << Escaped(lesson.LessonID()) << '\n'
        << "title:           " << (lesson.Title().empty() ? "(empty)" : Escaped(lesson.Title())) << '\n'
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
    auto* app = program.add_subcommand("info", "Show the lesson's identity, its counts and its maps");
    auto batch = AddBatchOptions(*app, "Lesson files or directories, or - for standard input");
    AddJsonFlag(*app, *batch);
    return {app, [batch] {
                const auto files = ExpandInputs(*batch);
                const bool json = batch->json;
                auto results = RunBatch(
                    files, batch->jobs, IsMany(*batch, files) && !json,
                    [json](const std::string& file) {
                        auto input = ReadInput(file);
                        auto lesson = LoadLesson(input);
                        return FileResult{json ? InfoJson(input, *lesson) : Info(input, *lesson)};
                    },
                    json ? JsonFailure("info") : nullptr);
                return WorstStatus(results);
            }};
}

}  // namespace quillbank::tool

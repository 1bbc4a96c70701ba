// quillbank tree FILE [--map NAME]: the navigation tree of one map.

#include <memory>
#include <sstream>
#include <string>

#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map_collection.hpp>

#include "commands.hpp"
#include "file_batch.hpp"
#include "json_report.hpp"
#include "lesson_file.hpp"
#include "map_items.hpp"
#include "output_file.hpp"
#include "property_path.hpp"
#include "tool_error.hpp"
#include "tree_graph.hpp"

namespace quillbank::tool {

namespace {

struct TreeOptions {
    std::string map;
    bool mapGiven = false;
    std::string format = "text";
};

// Two spaces a level; past kMaxIndentLevels the indentation stops growing
// and the line starts with its level instead, so that a deep tree's text
// stays in proportion to the number of items.
constexpr std::int64_t kMaxIndentLevels = 40;

std::string Indent(std::int64_t depth) {
    if (depth <= kMaxIndentLevels) {
        return std::string(static_cast<std::size_t>(2 * depth), ' ');
    }
    return std::string(static_cast<std::size_t>(2 * kMaxIndentLevels), ' ') + "(level " + std::to_string(depth + 1) +
           ") ";
}

std::string Tree(const Lesson& lesson, const std::shared_ptr<LessonMap>& map) {
    std::ostringstream out;
    out << "map " << MapLabel(*map) << (map == DefaultOrFirstMap(lesson) ? " (default)" : "") << '\n';
    auto storyboards = lesson.Storyboards();
    for (const auto& item : MapItems(*map)) {
        std::string indent = Indent(item.depth);
        if (item.sbid.empty()) {
            out << indent << "(item without a storyboard identifier)\n";
            continue;
        }
        auto storyboard = storyboards->Item(item.sbid);
        if (!storyboard) {
            out << indent << "(not in the lesson)  " << Escaped(item.sbid) << '\n';
            continue;
        }
        out << indent << (storyboard->Title().empty() ? "(untitled)" : Escaped(storyboard->Title()));
        if (!storyboard->Identifier().empty()) {
            out << " [" << Escaped(storyboard->Identifier()) << "]";
        }
        out << "  " << Escaped(item.sbid) << '\n';
    }
    return out.str();
}

}  // namespace

std::string TreeJson(const std::string& file, const Lesson& lesson, const std::shared_ptr<LessonMap>& map) {
    Json document = ReportHeader("tree", file);
    auto name = MapName(*map);
    document["map"] = Json{{"name", name ? Json(*name) : Json(nullptr)}, {"default", map == DefaultOrFirstMap(lesson)}};
    Json items = Json::array();
    auto storyboards = lesson.Storyboards();
    for (const auto& item : MapItems(*map)) {
        Json entry{{"level", item.depth + 1}, {"sbid", item.hasSbid ? Json(item.sbid) : Json(nullptr)}};
        auto storyboard = item.sbid.empty() ? nullptr : storyboards->Item(item.sbid);
        entry["inLesson"] = storyboard != nullptr;
        if (storyboard) {
            entry["title"] = storyboard->Title();
            entry["identifier"] = storyboard->Identifier();
        }
        items.push_back(std::move(entry));
    }
    document["items"] = std::move(items);
    return JsonLine(document);
}

// The names of the lesson's maps, for a message.
std::string MapNames(const Lesson& lesson) {
    auto maps = lesson.Maps();
    std::string names;
    for (std::int32_t i = 0; i < maps->Count(); ++i) {
        names += (i == 0 ? "" : ", ") + MapLabel(*maps->ItemAt(i));
    }
    return names;
}

Command AddTreeCommand(CLI::App& program) {
    auto options = std::make_shared<TreeOptions>();
    auto* app = program.add_subcommand(
        "tree", "Show the navigation tree of a map: one storyboard a line, indented by depth, with its title, "
                "[identifier] and storyboard identifier");
    auto batch = AddBatchOptions(*app, "Lesson files or directories, or - for standard input");
    AddJsonFlag(*app, *batch);
    app->add_option("--map", options->map, "The map to show (default: the lesson's default map)");
    app->add_option("--format", options->format,
                    "text (the default), dot (a Graphviz graph) or svg (that graph drawn by Graphviz's dot)")
        ->check(CLI::IsMember({"text", "dot", "svg"}))
        ->capture_default_str();
    return {app, [options, batch, app] {
                const bool mapGiven = app->count("--map") > 0;
                const bool json = batch->json;
                if (json && options->format != "text") {
                    throw ToolError("tree: --json and --format " + options->format + " cannot be used together");
                }
                const auto files = ExpandInputs(*batch);
                auto results = RunBatch(files, batch->jobs, IsMany(*batch, files) && !json && options->format == "text", [&](const std::string& file) {
                    auto input = ReadInput(file);
                    auto lesson = LoadLesson(input);
                    std::shared_ptr<LessonMap> map;
                    if (mapGiven) {
                        map = FindMap(*lesson, options->map);
                        if (!map) {
                            throw ToolError(input.displayName + ": the lesson has no map named " +
                                            Quoted(options->map) +
                                            (lesson->Maps()->Count() == 0 ? "; it has no maps"
                                                                          : "; its maps: " + MapNames(*lesson)));
                        }
                    } else {
                        map = DefaultOrFirstMap(*lesson);
                        if (!map) {
                            throw ToolError(input.displayName + ": the lesson has no maps");
                        }
                    }
                    if (json) {
                        return FileResult{TreeJson(file, *lesson, map)};
                    }
                    if (options->format == "dot") {
                        return FileResult{DotGraph(*lesson, map)};
                    }
                    if (options->format == "svg") {
                        return FileResult{SvgFromDot(DotGraph(*lesson, map))};
                    }
                    return FileResult{Tree(*lesson, map)};
                }, json ? JsonFailure("tree") : nullptr);
                return WorstStatus(results);
            }};
}

}  // namespace quillbank::tool

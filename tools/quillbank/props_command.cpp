// quillbank props FILE [--storyboard SBID]: a property bag, nested content indented.

#include <memory>
#include <sstream>
#include <string>

#include <quillbank/lesson.hpp>

#include "bag_walk.hpp"
#include "commands.hpp"
#include "file_batch.hpp"
#include "json_report.hpp"
#include "lesson_file.hpp"
#include "output_file.hpp"
#include "property_path.hpp"
#include "property_text.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

struct PropsOptions {
    std::string storyboard;
};

// One line a property: "name (type, encoding): value", two spaces of
// indentation a level; a list's elements as "[i] name, type TYPE".
void PrintBag(std::ostringstream& out, const PersistedPropertyCollection& bag, const std::string& path, int depth) {
    WalkBag(bag, path, depth,
            {[&](const PropertyVisit& v) {
                 out << std::string(static_cast<std::size_t>(2 * v.depth), ' ') << PathName(v.name) << " ("
                     << TypeName(v.type) << ", " << EncodingLabel(v.encoding) << "): " << ValueText(v.bag, v.name)
                     << '\n';
             },
             [&](const ElementVisit& v) {
                 out << std::string(static_cast<std::size_t>(2 * v.depth), ' ') << "[" << v.index << "] "
                     << Quoted(v.element.Name()) << ", type " << Quoted(v.element.ElementType()) << ": "
                     << v.element.Count() << (v.element.Count() == 1 ? " property" : " properties") << '\n';
             }});
}

// Every property and list element of a bag, flat, in the order `props`
// prints them, with its path and depth.
void BagJson(Json& entries, const PersistedPropertyCollection& bag, const std::string& path, int depth) {
    WalkBag(bag, path, depth,
            {[&](const PropertyVisit& v) {
                 entries.push_back(Json{{"path", v.Path()},
                                        {"depth", v.depth},
                                        {"name", v.name},
                                        {"type", TypeName(v.type)},
                                        {"encoding", EncodingLabel(v.encoding)},
                                        {"value", ValueJson(v.bag, v.name)}});
             },
             [&](const ElementVisit& v) {
                 entries.push_back(Json{{"path", v.path},
                                        {"depth", v.depth},
                                        {"element", Json{{"name", v.element.Name()},
                                                         {"type", v.element.ElementType()},
                                                         {"count", v.element.Count()}}}});
             }});
}

std::string LessonPropsJson(const std::string& file, const Lesson& lesson) {
    Json document = ReportHeader("props", file);
    document["target"] = "lesson";
    document["title"] = lesson.Title();
    Json entries = Json::array();
    BagJson(entries, *lesson.Properties(), LessonBagPath(), 0);
    document["properties"] = std::move(entries);
    return JsonLine(document);
}

std::string StoryboardPropsJson(const std::string& file, const Storyboard& storyboard) {
    Json document = ReportHeader("props", file);
    const std::string sbid = storyboard.SBID();
    document["target"] = "storyboard";
    document["sbid"] = sbid;
    document["title"] = storyboard.Title();
    Json entries = Json::array();
    BagJson(entries, *storyboard.Properties(), StoryboardBagPath(sbid), 0);
    document["properties"] = std::move(entries);
    Json children = Json::array();
    auto list = storyboard.Children();
    for (std::int32_t i = 0; i < list->Count(); ++i) {
        auto element = list->Item(i);
        if (!element) {
            continue;
        }
        Json properties = Json::array();
        BagJson(properties, *element->PPCObject(), ChildElementPath(sbid, i), 0);
        children.push_back(Json{{"index", i},
                                {"name", element->Name()},
                                {"type", element->ElementType()},
                                {"properties", std::move(properties)}});
    }
    document["children"] = std::move(children);
    return JsonLine(document);
}

std::string CountText(std::int32_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string LessonProps(const Lesson& lesson) {
    std::ostringstream out;
    auto bag = lesson.Properties();
    out << "lesson " << Quoted(lesson.Title()) << ", properties: " << CountText(bag->Count(), "property", "properties")
        << '\n';
    PrintBag(out, *bag, LessonBagPath(), 1);
    return out.str();
}

std::string StoryboardProps(const Storyboard& storyboard) {
    std::ostringstream out;
    const std::string sbid = storyboard.SBID();
    auto bag = storyboard.Properties();
    out << StoryboardPlace(sbid) << " " << Quoted(storyboard.Title()) << ", properties: "
        << CountText(bag->Count(), "property", "properties") << '\n';
    PrintBag(out, *bag, StoryboardBagPath(sbid), 1);
    auto children = storyboard.Children();
    out << "children: " << CountText(children->Count(), "element", "elements") << '\n';
    for (std::int32_t i = 0; i < children->Count(); ++i) {
        auto element = children->Item(i);
        if (!element) {
            continue;
        }
        out << "  [" << i << "] " << Quoted(element->Name()) << ", type " << Quoted(element->ElementType()) << ": "
            << CountText(element->Count(), "property", "properties") << '\n';
        PrintBag(out, *element->PPCObject(), ChildElementPath(sbid, i), 2);
    }
    return out.str();
}

}  // namespace

Command AddPropsCommand(CLI::App& program) {
    auto options = std::make_shared<PropsOptions>();
    auto* app = program.add_subcommand(
        "props", "Show the property bag of the lesson or of one storyboard (and its child elements): each property's "
                 "name, type, encoding and value, encoded ones decoded, nested bags and lists indented");
    auto batch = AddBatchOptions(*app, "Lesson files or directories, or - for standard input");
    AddJsonFlag(*app, *batch);
    app->add_option("--storyboard", options->storyboard, "Show this storyboard (by its identifier) instead of the lesson");
    return {app, [options, batch, app] {
                const bool storyboardGiven = app->count("--storyboard") > 0;
                const auto files = ExpandInputs(*batch);
                const bool json = batch->json;
                auto results = RunBatch(files, batch->jobs, IsMany(*batch, files) && !json, [&](const std::string& file) {
                    auto input = ReadInput(file);
                    auto lesson = LoadLesson(input);
                    if (!storyboardGiven) {
                        return FileResult{json ? LessonPropsJson(file, *lesson) : LessonProps(*lesson)};
                    }
                    auto storyboard = lesson->Storyboards()->Item(options->storyboard);
                    if (!storyboard) {
                        throw ToolError(input.displayName + ": the lesson has no storyboard " + options->storyboard);
                    }
                    return FileResult{json ? StoryboardPropsJson(file, *storyboard) : StoryboardProps(*storyboard)};
                }, json ? JsonFailure("props") : nullptr);
                return WorstStatus(results);
            }};
}

}  // namespace quillbank::tool

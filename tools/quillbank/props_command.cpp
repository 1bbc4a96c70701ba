// quillbank props FILE [--storyboard SBID]: a property bag, nested content indented.

#include <memory>
#include <sstream>
#include <string>

#include <quillbank/lesson.hpp>

#include "bag_walk.hpp"
#include "commands.hpp"
#include "file_batch.hpp"
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
    app->add_option("--storyboard", options->storyboard, "Show this storyboard (by its identifier) instead of the lesson");
    return {app, [options, batch, app] {
                const bool storyboardGiven = app->count("--storyboard") > 0;
                const auto files = ExpandInputs(*batch);
                auto results = RunBatch(files, batch->jobs, IsMany(*batch, files), [&](const std::string& file) {
                    auto input = ReadInput(file);
                    auto lesson = LoadLesson(input);
                    if (!storyboardGiven) {
                        return FileResult{LessonProps(*lesson)};
                    }
                    auto storyboard = lesson->Storyboards()->Item(options->storyboard);
                    if (!storyboard) {
                        throw ToolError(input.displayName + ": the lesson has no storyboard " + options->storyboard);
                    }
                    return FileResult{StoryboardProps(*storyboard)};
                });
                return WorstStatus(results);
            }};
}

}  // namespace quillbank::tool

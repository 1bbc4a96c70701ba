// quillbank ls FILE...: the storyboards of a lesson, one a line.

#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "commands.hpp"
#include "file_batch.hpp"
#include "lesson_file.hpp"
#include "map_items.hpp"
#include "property_path.hpp"
#include "short_ids.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

std::string List(const InputFile& input, const Lesson& lesson) {
    const auto shortIds = ShortIds(input);
    auto maps = lesson.Maps();
    std::ostringstream out;
    for (const auto& storyboard : *lesson.Storyboards()) {
        const std::string sbid = storyboard->SBID();
        auto shortId = shortIds.find(sbid);
        out << Escaped(sbid) << "  #" << (shortId == shortIds.end() ? std::string("-") : Escaped(shortId->second))
            << "  " << (storyboard->SBType().empty() ? std::string("(no type)") : Escaped(storyboard->SBType()))
            << "  " << Quoted(storyboard->Title()) << "  ";
        std::string in;
        for (std::int32_t i = 0; i < maps->Count(); ++i) {
            auto map = maps->ItemAt(i);
            if (map->Contains(sbid)) {
                in += (in.empty() ? "in " : ", ") + MapLabel(*map);
            }
        }
        out << (in.empty() ? "in no map" : in) << '\n';
    }
    return out.str();
}

}  // namespace

Command AddLsCommand(CLI::App& program) {
    auto* app = program.add_subcommand(
        "ls", "List the storyboards, one a line: identifier, short id (#-: none in the file), type, title, and the "
              "maps that use it (\"in no map\" when none does)");
    auto batch = AddBatchOptions(*app, "Lesson files or directories, or - for standard input");
    return {app, [batch] {
                const auto files = ExpandInputs(*batch);
                auto results = RunBatch(files, batch->jobs, IsMany(*batch, files), [](const std::string& file) {
                    auto input = ReadInput(file);
                    auto lesson = LoadLesson(input);
                    return FileResult{List(input, *lesson)};
                });
                return WorstStatus(results);
            }};
}

}  // namespace quillbank::tool

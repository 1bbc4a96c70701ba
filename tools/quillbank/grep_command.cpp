// quillbank grep PATTERN FILE...: where a text stands in lessons.

#include <algorithm>
#include <cctype>
#include <functional>
#include <memory>
#include <regex>
#include <sstream>
#include <string>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "bag_walk.hpp"
#include "commands.hpp"
#include "file_batch.hpp"
#include "lesson_file.hpp"
#include "map_items.hpp"
#include "property_path.hpp"
#include "property_text.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

struct GrepOptions {
    std::string pattern;
    bool ignoreCase = false;
    bool regex = false;
};

std::string FoldAscii(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

using Matcher = std::function<bool(const std::string&)>;

Matcher MakeMatcher(const GrepOptions& options) {
    if (options.regex) {
        auto flags = std::regex::ECMAScript | (options.ignoreCase ? std::regex::icase : std::regex::ECMAScript);
        std::shared_ptr<std::regex> expression;
        try {
            expression = std::make_shared<std::regex>(options.pattern, flags);
        } catch (const std::regex_error& e) {
            throw ToolError("grep: " + Quoted(options.pattern) + " is not a regular expression: " + e.what());
        }
        return [expression](const std::string& text) { return std::regex_search(text, *expression); };
    }
    if (options.ignoreCase) {
        return [needle = FoldAscii(options.pattern)](const std::string& text) {
            return FoldAscii(text).find(needle) != std::string::npos;
        };
    }
    return [needle = options.pattern](const std::string& text) { return text.find(needle) != std::string::npos; };
}

class Search {
public:
    explicit Search(Matcher matches) : matches_(std::move(matches)) {}

    void Text(const std::string& place, const std::string& text) {
        if (matches_(text)) {
            out_ << place << ": " << Quoted(text) << '\n';
            ++hits_;
        }
    }

    void Bag(const PersistedPropertyCollection& bag, const std::string& path) {
        WalkBag(bag, path, 0,
                {[&](const PropertyVisit& v) {
                     const bool nameHit = matches_(v.name);
                     // The value as props shows it, strings decoded and unquoted.
                     std::string value = v.type == ptString ? v.bag.GetString(v.name, "")
                                         : (v.type == ptPPC || v.type == ptCEC) ? std::string()
                                                                                : ValueText(v.bag, v.name);
                     if (nameHit || (!value.empty() && matches_(value))) {
                         out_ << v.Path() << ": " << (v.type == ptString ? Quoted(value) : ValueText(v.bag, v.name))
                              << '\n';
                         ++hits_;
                     }
                 },
                 [&](const ElementVisit& v) {
                     Text(JoinPath(v.path, "name"), v.element.Name());
                     Text(JoinPath(v.path, "type"), v.element.ElementType());
                 }});
    }

    void Lesson(const quillbank::Lesson& lesson) {
        Text("lesson / title", lesson.Title());
        Text("lesson / identifier", lesson.Identifier());
        Bag(*lesson.Properties(), LessonBagPath());
        auto maps = lesson.Maps();
        for (std::int32_t i = 0; i < maps->Count(); ++i) {
            if (auto name = MapName(*maps->ItemAt(i))) {
                Text(MapPlace(*name), *name);
            }
        }
        for (const auto& storyboard : *lesson.Storyboards()) {
            const std::string sbid = storyboard->SBID();
            Text(JoinPath(StoryboardPlace(sbid), "title"), storyboard->Title());
            Text(JoinPath(StoryboardPlace(sbid), "identifier"), storyboard->Identifier());
            Bag(*storyboard->Properties(), StoryboardBagPath(sbid));
            auto children = storyboard->Children();
            for (std::int32_t i = 0; i < children->Count(); ++i) {
                if (auto element = children->Item(i)) {
                    const std::string place = ChildElementPath(sbid, i);
                    Text(JoinPath(place, "name"), element->Name());
                    Text(JoinPath(place, "type"), element->ElementType());
                    Bag(*element->PPCObject(), place);
                }
            }
        }
    }

    std::string Output() const { return out_.str(); }
    int Hits() const { return hits_; }

private:
    Matcher matches_;
    std::ostringstream out_;
    int hits_ = 0;
};

}  // namespace

Command AddGrepCommand(CLI::App& program) {
    auto options = std::make_shared<GrepOptions>();
    auto* app = program.add_subcommand(
        "grep", "Search titles, identifiers, names and property values (encoded ones decoded) for PATTERN; print the "
                "place of each hit as props writes it, and the value. Exit status 0 when something was found, 1 "
                "when nothing was");
    app->add_option("PATTERN", options->pattern, "The text to find (a regular expression with --regex)")->required();
    auto batch = AddBatchOptions(*app, "Lesson files or directories, or - for standard input");
    app->add_flag("-i,--ignore-case", options->ignoreCase, "Ignore letter case (ASCII letters)");
    app->add_flag("--regex", options->regex, "PATTERN is an ECMAScript regular expression");
    return {app, [options, batch] {
                const Matcher matches = MakeMatcher(*options);
                const auto files = ExpandInputs(*batch);
                auto results = RunBatch(files, batch->jobs, IsMany(*batch, files), [&](const std::string& file) {
                    auto lesson = LoadLesson(ReadInput(file));
                    Search search(matches);
                    search.Lesson(*lesson);
                    FileResult result{search.Output()};
                    result.status = search.Hits() > 0 ? kExitOk : kExitFindings;
                    return result;
                });
                // Found in any file: 0; in none: 1; a file not read: 2.
                int status = kExitFindings;
                for (const auto& result : results) {
                    if (result.failed) {
                        return kExitFailure;
                    }
                    if (result.status == kExitOk) {
                        status = kExitOk;
                    }
                }
                return status;
            }};
}

}  // namespace quillbank::tool

// Reading a lesson from JSON. simdjson parses the text into its compact
// document, and the lesson is made by a walk over that document
// (json/lesson_reader.hpp) inside the model's arena, as the XML reader makes
// its objects.
//
// simdjson is given the depth limit, and refuses whatever it does not take
// as JSON. A refused text is checked for its depth by a pass over the bytes
// (which names the byte past the limit) and parsed again by nlohmann-json,
// which names the byte where the text stops being JSON; it also takes the
// few texts that are JSON but that simdjson leaves to others (a byte order
// mark, numbers beyond 64 bits, objects nested just to the limit), and such
// a document is read by the same walk.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "frame/raise.hpp"
#include "json/json_depth.hpp"
#include "json/lesson_reader.hpp"
#include "json/nlohmann_value.hpp"
#include "json/reading_error.hpp"
#include "json/simdjson_value.hpp"
#include "support/model_arena.hpp"

namespace quillbank {

namespace {

using json_form::kReadSource;

// The lesson read by the walk; a value the model refuses is reported in the
// model's own words.
template <class Value>
std::shared_ptr<Lesson> ReadLesson(const Value& document) {
    try {
        const support::ModelArenaScope arena;
        return json_form::LessonReader<Value>().Read(document);
    } catch (const Error& error) {
        if (error.Source() == kReadSource) {
            throw;
        }
        frame::Raise(ErrJsonForm, kReadSource, "A value was refused: " + error.Description());
    }
}

std::shared_ptr<Lesson> ReadWithNlohmann(std::string_view text) {
    using Document = json_form::NlohmannValue::Document;
    Document document;
    try {
        document = Document::parse(text.data(), text.data() + text.size());
    } catch (const Document::parse_error& error) {
        frame::Raise(ErrJsonForm, kReadSource,
                     "JSON text could not be parsed at byte " + std::to_string(error.byte) + ".");
    }
    return ReadLesson(json_form::NlohmannValue(document));
}

}  // namespace

std::shared_ptr<Lesson> LessonFromJSON(std::string_view JsonText, const JsonLimits& Limits) {
    if (JsonText.size() > Limits.MaxBytes) {
        frame::Raise(ErrJsonForm, kReadSource,
                     "JSON text is longer than the limit of " + std::to_string(Limits.MaxBytes) + " bytes.");
    }
    // A document simdjson takes with this limit nests no deeper than it.
    const auto maxDepth = static_cast<std::size_t>(Limits.MaxDepth > 0 ? Limits.MaxDepth : 0);
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    if (parser.allocate(JsonText.size(), maxDepth) == simdjson::SUCCESS &&
        parser.parse(JsonText.data(), JsonText.size()).get(root) == simdjson::SUCCESS) {
        return ReadLesson(json_form::SimdjsonValue(root));
    }
    if (const std::size_t at = json_form::FindTooDeep(JsonText, Limits.MaxDepth); at != std::string_view::npos) {
        frame::Raise(ErrJsonForm, kReadSource,
                     "JSON text nests deeper than the limit of " + std::to_string(Limits.MaxDepth) +
                         " levels at byte " + std::to_string(at) + ".");
    }
    return ReadWithNlohmann(JsonText);
}

}  // namespace quillbank

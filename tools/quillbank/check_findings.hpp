#pragma once

// The findings of `quillbank check`: a catalogue of stable codes (documented
// in docs/check.md) and the list a check run fills.

#include <set>
#include <span>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/lesson.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::tool {

enum class Severity { Error, Warning };

struct FindingKind {
    std::string_view code;
    Severity severity;
    std::string_view summary;
    // What the reader drops, merges, makes up or guesses: the writing
    // subcommands warn about these, and --strict refuses to write.
    bool reading = false;
};

// Every code check can report, in documentation order.
std::span<const FindingKind> FindingCatalogue();
const FindingKind* FindKind(std::string_view code);

struct Finding {
    const FindingKind* kind;
    std::string place;
    std::string sentence;
};

class Findings {
public:
    // `code` must be in the catalogue.
    void Add(std::string_view code, std::string place, std::string sentence);
    const std::vector<Finding>& All() const { return findings_; }

private:
    std::vector<Finding> findings_;
};

// What only the file's text shows (the reader drops or merges it): the
// lesson element's attributes and parts, storyboards without or with the
// same identifier, the maps' "default", properties the reader drops and
// property names that stand twice in one bag.
// Returns the storyboard identifiers the file holds, lower-cased.
std::set<std::string> CheckDocument(const xml::Document& document, Findings& findings);

// P08: a number or date property (at the place `placeOf` gives) whose text is not empty but reads
// as 0 or the zero date in the regional setting in use.
void CheckZeroReading(const xml::Element& property, const std::function<std::string()>& placeOf,
                      Findings& findings);

// What the lesson as read shows: maps and their items, storyboards in no
// map, titles, locations and assets. A storyboard whose identifier is not
// among `fileSbids` got it from the reader (S04 reports it) and is left out
// of the storyboard findings.
void CheckLesson(const Lesson& lesson, const std::set<std::string>& fileSbids, Findings& findings);

}  // namespace quillbank::tool

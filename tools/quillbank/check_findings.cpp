#include "check_findings.hpp"

#include <array>
#include <stdexcept>

namespace quillbank::tool {

namespace {

constexpr auto E = Severity::Error;
constexpr auto W = Severity::Warning;

constexpr std::array<FindingKind, 33> kCatalogue = {{
    {"L01", W, "the lesson's title is empty"},
    {"L02", E, "the lesson element has no lesson identifier", true},
    {"L03", W, "a part of the lesson stands twice; only the last is read", true},
    {"L04", W, "the lesson element holds an element the reader ignores", true},
    {"S01", W, "a storyboard is in no map"},
    {"S02", E, "two storyboards in the file have the same identifier; only the last is read", true},
    {"S03", W, "a storyboard's title is empty"},
    {"S04", E, "a storyboard element has no identifier", true},
    {"S05", W, "two storyboards have the same host identifier"},
    {"M01", E, "a map item names a storyboard the lesson lacks"},
    {"M02", E, "a map item names no storyboard"},
    {"M03", W, "the same storyboard stands twice in one map"},
    {"M04", E, "a map has no name"},
    {"M05", E, "two maps have the same name"},
    {"M06", E, "the maps' default names no map"},
    {"M07", W, "a map has no items"},
    {"M08", W, "a map item matches its storyboard only when letter case is ignored"},
    {"M09", W, "the lesson has storyboards but no map"},
    {"P01", E, "a location names a storyboard the lesson lacks"},
    {"P02", W, "a location names a map the lesson lacks"},
    {"P03", E, "the reader drops a property: its element is unknown", true},
    {"P04", E, "the reader drops a property: its encoded content is corrupt", true},
    {"P05", W, "a property name stands twice in one bag; only the last is read", true},
    {"P06", W, "an asset names no file"},
    {"P07", W, "a property has no name"},
    {"P08", W, "a number or date reads as 0 though its text is not empty"},
    {"R01", W, "the reader skips an element it does not know", true},
    {"R02", W, "a string value is split by a comment, CDATA or an element; only the first text is read", true},
    {"R03", E, "a bag or list is nested deeper than the reader's limit; the reader drops it", true},
    {"E01", W, "the file is UTF-8 with a few invalid bytes, read as Windows-1252 characters", true},
    {"E02", W, "the file is UTF-16 without a byte-order mark", true},
    {"E03", W, "the file is not valid UTF-8 and was read as Windows-1252", true},
    {"E04", W, "the XML declaration names another encoding than the one the file was read in", true},
}};

}  // namespace

std::span<const FindingKind> FindingCatalogue() {
    return kCatalogue;
}

const FindingKind* FindKind(std::string_view code) {
    for (const auto& kind : kCatalogue) {
        if (kind.code == code) {
            return &kind;
        }
    }
    return nullptr;
}

void Findings::Add(std::string_view code, std::string place, std::string sentence) {
    const FindingKind* kind = FindKind(code);
    if (kind == nullptr) {
        throw std::logic_error("unknown finding code");
    }
    findings_.push_back({kind, std::move(place), std::move(sentence)});
}

}  // namespace quillbank::tool

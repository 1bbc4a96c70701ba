#include "check_findings.hpp"

#include <array>
#include <stdexcept>

namespace quillbank::tool {

namespace {

constexpr auto E = Severity::Error;
constexpr auto W = Severity::Warning;

constexpr std::array<FindingKind, 26> kCatalogue = {{
    {"L01", W, "the lesson's title is empty"},
    {"L02", E, "the lesson element has no lesson identifier"},
    {"L03", W, "a part of the lesson stands twice; only the last is read"},
    {"L04", W, "the lesson element holds an element the reader ignores"},
    {"S01", W, "a storyboard is in no map"},
    {"S02", E, "two storyboards in the file have the same identifier; only the last is read"},
    {"S03", W, "a storyboard's title is empty"},
    {"S04", E, "a storyboard element has no identifier"},
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
    {"P03", E, "the reader drops a property: its element is unknown"},
    {"P04", E, "the reader drops a property: its encoded content is corrupt"},
    {"P05", W, "a property name stands twice in one bag; only the last is read"},
    {"P06", W, "an asset names no file"},
    {"P07", W, "a property has no name"},
    {"P08", W, "a number or date reads as 0 though its text is not empty"},
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

#include "reading_losses.hpp"

#include <cstdio>
#include <map>

#include <quillbank/functions.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::tool {

CheckedLesson CheckFileText(const InputFile& input, Findings& findings) {
    // The reader's own view of the file: the same text, cleaned as it cleans
    // it, in a document that does not keep whitespace, as its own does.
    auto document = xml::Document::Create();
    if (!document.LoadXML(Functions::CleanXMLString(input.decoded.text))) {
        // Not XML: the library says so in its words.
        return {LoadLesson(input), {}};
    }
    CheckedLesson checked;
    checked.lesson = LoadLesson(input, document.DocumentElement());
    for (const auto& note : input.decoded.notes) {
        findings.Add(note.code, "file", note.sentence);
    }
    checked.fileSbids = CheckDocument(document, findings);
    return checked;
}

bool ReportReadingLosses(const InputFile& input, std::shared_ptr<Lesson>& lesson) {
    Findings findings;
    lesson = CheckFileText(input, findings).lesson;
    std::map<std::string_view, std::pair<const FindingKind*, int>> counts;
    bool any = !input.decoded.notes.empty();
    for (const auto& finding : findings.All()) {
        if (!finding.kind->reading || finding.kind->code.starts_with("E")) {
            continue;
        }
        auto& entry = counts[finding.kind->code];
        entry.first = finding.kind;
        ++entry.second;
        any = true;
    }
    std::string lines;
    const std::string checkName = input.path == kStandardStream ? "-" : input.path;
    for (const auto& [code, entry] : counts) {
        lines += "quillbank: " + input.displayName + ": warning: " + std::to_string(entry.second) + " x " +
                 std::string(code) + " " + std::string(entry.first->summary) + " (see quillbank check " + checkName +
                 ")\n";
    }
    if (!lines.empty()) {
        std::fflush(stdout);
        std::fwrite(lines.data(), 1, lines.size(), stderr);
    }
    return any;
}

}  // namespace quillbank::tool

#include "reading_losses.hpp"

#include <cstdio>
#include <map>

#include <quillbank/functions.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::tool {

std::set<std::string> CheckFileText(const InputFile& input, Findings& findings) {
    for (const auto& note : input.decoded.notes) {
        findings.Add(note.code, "file", note.sentence);
    }
    // The reader's own view of the file: the same text, cleaned as it cleans it.
    auto document = xml::Document::Create();
    if (!document.LoadXML(Functions::CleanXMLString(input.decoded.text))) {
        return {};
    }
    return CheckDocument(document, findings);
}

bool ReportReadingLosses(const InputFile& input) {
    Findings findings;
    CheckFileText(input, findings);
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

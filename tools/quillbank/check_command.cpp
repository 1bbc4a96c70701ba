// quillbank check FILE [--ignore CODE...]: an integrity report.

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <quillbank/functions.hpp>
#include <quillbank/xml.hpp>

#include "check_findings.hpp"
#include "commands.hpp"
#include "file_batch.hpp"
#include "json_report.hpp"
#include "lesson_file.hpp"
#include "output_file.hpp"
#include "reading_losses.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

struct CheckOptions {
    std::vector<std::string> ignore;
    bool listCodes = false;
};

std::string_view SeverityWord(Severity severity) {
    return severity == Severity::Error ? "error" : "warning";
}

std::string Catalogue() {
    std::ostringstream out;
    for (const auto& kind : FindingCatalogue()) {
        out << kind.code << "  " << std::left << std::setw(7) << SeverityWord(kind.severity) << "  " << kind.summary
            << '\n';
    }
    return out.str();
}

std::string Counts(int errors, int warnings) {
    return std::to_string(errors) + (errors == 1 ? " error, " : " errors, ") + std::to_string(warnings) +
           (warnings == 1 ? " warning" : " warnings");
}

// One file's report: its findings, then (alone) the line that counts them.
FileResult CheckOne(const std::string& file, const std::set<std::string>& ignored, bool many, bool json) {
    auto input = ReadInput(file, false);
    Findings findings;
    const CheckedLesson checked = CheckFileText(input, findings);
    CheckLesson(*checked.lesson, checked.fileSbids, findings);

    FileResult result;
    std::ostringstream out;
    int skipped = 0;
    Json list = Json::array();
    for (const auto& finding : findings.All()) {
        if (ignored.count(std::string(finding.kind->code)) > 0) {
            ++skipped;
            continue;
        }
        (finding.kind->severity == Severity::Error ? result.errors : result.warnings) += 1;
        if (json) {
            list.push_back(Json{{"severity", SeverityWord(finding.kind->severity)},
                                {"code", finding.kind->code},
                                {"place", finding.place},
                                {"sentence", finding.sentence}});
            continue;
        }
        out << SeverityWord(finding.kind->severity) << ' ' << finding.kind->code << ' ' << finding.place << ": "
            << finding.sentence << '\n';
    }
    result.status = result.errors > 0 ? kExitFindings : kExitOk;
    if (json) {
        Json document = ReportHeader("check", file);
        document["findings"] = std::move(list);
        document["errors"] = result.errors;
        document["warnings"] = result.warnings;
        document["ignored"] = skipped;
        result.out = JsonLine(document);
        return result;
    }
    if (!many) {
        out << input.displayName << ": " << Counts(result.errors, result.warnings);
        if (skipped > 0) {
            out << ", " << skipped << " ignored";
        }
        out << '\n';
    }
    result.out = out.str();
    result.status = result.errors > 0 ? kExitFindings : kExitOk;
    return result;
}

int RunCheck(const CheckOptions& options, const BatchOptions& batch) {
    if (options.listCodes) {
        WriteOutput(kStandardStream, Catalogue());
        return kExitOk;
    }
    if (batch.inputs.empty()) {
        throw ToolError("check: FILE is required (see quillbank check --help)");
    }
    std::set<std::string> ignored;
    for (const auto& given : options.ignore) {
        std::string code = given;
        std::transform(code.begin(), code.end(), code.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        if (FindKind(code) == nullptr) {
            throw ToolError("check: --ignore " + given + ": no such finding code (see quillbank check --list-codes)");
        }
        ignored.insert(code);
    }

    const auto files = ExpandInputs(batch);
    const bool many = IsMany(batch, files);
    auto results = RunBatch(
        files, batch.jobs, many && !batch.json,
        [&](const std::string& file) { return CheckOne(file, ignored, many, batch.json); },
        batch.json ? JsonFailure("check") : nullptr);
    if (many) {
        int errors = 0;
        int warnings = 0;
        int unreadable = 0;
        for (const auto& result : results) {
            errors += result.errors;
            warnings += result.warnings;
            unreadable += result.failed ? 1 : 0;
        }
        std::string line = std::to_string(files.size()) + (files.size() == 1 ? " file, " : " files, ") +
                           Counts(errors, warnings);
        if (unreadable > 0) {
            line += ", " + std::to_string(unreadable) + (unreadable == 1 ? " file" : " files") + " not read";
        }
        if (batch.json) {
            Json summary;
            summary["quillbank"] = kReportVersion;
            summary["command"] = "check";
            summary["summary"] = Json{{"files", files.size()}, {"errors", errors}, {"warnings", warnings},
                                      {"notRead", unreadable}};
            WriteOutput(kStandardStream, JsonLine(summary));
        } else {
            WriteOutput(kStandardStream, line + "\n");
        }
    }
    return WorstStatus(results);
}

}  // namespace

Command AddCheckCommand(CLI::App& program) {
    auto options = std::make_shared<CheckOptions>();
    auto* app = program.add_subcommand(
        "check", "Report integrity findings, one a line: severity, code, place and a sentence; exit status 1 when an "
                 "error remains (2 when a file cannot be read). With several files every line starts with the "
                 "file's name and a last line counts files, errors and warnings. The codes are listed by "
                 "--list-codes and explained in check.md (installed in share/doc/quillbank)");
    auto batch = AddBatchOptions(*app, "Lesson files or directories, or - for standard input", false);
    AddJsonFlag(*app, *batch);
    app->add_option("--ignore", options->ignore, "Leave out findings with this code (repeat, or separate with commas)")
        ->type_name("CODE")
        ->delimiter(',')
        ->allow_extra_args(false);
    app->add_flag("--list-codes", options->listCodes, "List every finding code with its severity, and stop");
    return {app, [options, batch] { return RunCheck(*options, *batch); }};
}

}  // namespace quillbank::tool

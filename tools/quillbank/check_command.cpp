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
#include "lesson_file.hpp"
#include "output_file.hpp"
#include "reading_losses.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

struct CheckOptions {
    std::string file;
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

int RunCheck(const CheckOptions& options) {
    if (options.listCodes) {
        WriteOutput(kStandardStream, Catalogue());
        return kExitOk;
    }
    if (options.file.empty()) {
        throw ToolError("check: FILE is required");
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

    auto input = ReadInput(options.file, false);
    auto lesson = LoadLesson(input);
    Findings findings;
    std::set<std::string> fileSbids = CheckFileText(input, findings);
    CheckLesson(*lesson, fileSbids, findings);

    std::ostringstream out;
    int errors = 0;
    int warnings = 0;
    int skipped = 0;
    for (const auto& finding : findings.All()) {
        if (ignored.count(std::string(finding.kind->code)) > 0) {
            ++skipped;
            continue;
        }
        (finding.kind->severity == Severity::Error ? errors : warnings) += 1;
        out << SeverityWord(finding.kind->severity) << ' ' << finding.kind->code << ' ' << finding.place << ": "
            << finding.sentence << '\n';
    }
    out << input.displayName << ": " << errors << (errors == 1 ? " error, " : " errors, ") << warnings
        << (warnings == 1 ? " warning" : " warnings");
    if (skipped > 0) {
        out << ", " << skipped << " ignored";
    }
    out << '\n';
    WriteOutput(kStandardStream, out.str());
    return errors > 0 ? kExitFindings : kExitOk;
}

}  // namespace

Command AddCheckCommand(CLI::App& program) {
    auto options = std::make_shared<CheckOptions>();
    auto* app = program.add_subcommand(
        "check", "Report integrity findings, one a line: severity, code, place and a sentence; exit status 1 when an "
                 "error remains. The codes are listed by --list-codes and explained in docs/check.md");
    app->add_option("FILE", options->file, "Lesson file, or - for standard input");
    app->add_option("--ignore", options->ignore, "Leave out findings with this code (repeat, or separate with commas)")
        ->type_name("CODE")
        ->delimiter(',')
        ->allow_extra_args(false);
    app->add_flag("--list-codes", options->listCodes, "List every finding code with its severity, and stop");
    return {app, [options] { return RunCheck(*options); }};
}

}  // namespace quillbank::tool

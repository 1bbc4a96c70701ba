// quillbank: look at, check, compare and rewrite lesson files.

#include <cstdio>
#include <cstdint>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>

#include "commands.hpp"
#include "lesson_file.hpp"
#include "signal_cleanup.hpp"
#include "usage_error.hpp"
#include "regional_option.hpp"
#include "tool_error.hpp"

using namespace quillbank::tool;

int main(int argc, char** argv) {
    CLI::App program{"Look at, check, compare and rewrite lesson files.\n"
                     "FILE may be - for standard input; results go to standard output unless -o names a file.",
                     "quillbank"};
    program.require_subcommand(1);
    program.set_version_flag("--version", "quillbank " + quillbank::Functions::OCXVersion());
    std::string locale = RegionalSettingFromEnvironment();
    program.add_option("--locale", locale,
                       "Regional setting that numbers and dates are read in, e.g. de-DE (default: from LANG, else en-US)")
        ->capture_default_str();
    program.footer("Exit status: 0 done, 1 findings (check) or differences (diff), 2 failure.");
    program.fallthrough();
    std::uint64_t maxSize = kDefaultMaxInputSize;
    program
        .add_option("--max-size", maxSize,
                    "Refuse an input larger than this many bytes (suffixes K, M, G: KiB, MiB, GiB); default 2G")
        ->type_name("SIZE")
        ->transform(CLI::AsSizeValue(false));

    std::vector<Command> commands = {
        AddInfoCommand(program),      AddTreeCommand(program),  AddPropsCommand(program),
        AddClearCommand(program),     AddNormalizeCommand(program), AddDuplicateCommand(program),
        AddCheckCommand(program),     AddDiffCommand(program),      AddLsCommand(program),
        AddGrepCommand(program),      AddConvertCommand(program),   AddViewCommand(program),
    };

    try {
        program.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return program.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return program.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return program.exit(e);
    } catch (const CLI::ParseError& e) {
        return ReportUsageError(program, e, argc, argv);
    }

    SetMaxInputSize(maxSize);
    InstallSignalCleanup();
    try {
        quillbank::Functions::SetRegionalSettings(locale);
    } catch (const quillbank::Error& e) {
        std::cerr << "quillbank: --locale: " << e.Description() << '\n';
        return kExitFailure;
    }

    for (const auto& command : commands) {
        if (!command.app->parsed()) {
            continue;
        }
        try {
            int status = command.run();
            std::cout.flush();
            return status;
        } catch (const ToolError& e) {
            std::cout.flush();
            std::cerr << "quillbank: " << e.what() << '\n';
            return kExitFailure;
        } catch (const quillbank::Error& e) {
            std::cout.flush();
            std::cerr << "quillbank: " << e.Source() << ": " << e.Description() << '\n';
            return kExitFailure;
        } catch (const std::bad_alloc&) {
            std::cout.flush();
            std::cerr << "quillbank: not enough memory\n";
            return kExitFailure;
        }
    }
    return kExitFailure;
}

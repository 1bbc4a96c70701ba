// quillbank: look at, check, compare and rewrite lesson files.

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>

#include "commands.hpp"
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

    std::vector<Command> commands = {
        AddInfoCommand(program),      AddTreeCommand(program),  AddPropsCommand(program),
        AddClearCommand(program),     AddNormalizeCommand(program), AddDuplicateCommand(program),
        AddCheckCommand(program),     AddDiffCommand(program),
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
        // A first argument that names no subcommand reads better said so.
        std::string first = argc > 1 ? argv[1] : "";
        if (!first.empty() && first[0] != '-' && program.get_subcommands().empty()) {
            std::cerr << "quillbank: no subcommand named " << first << " (see quillbank --help)\n";
            return kExitFailure;
        }
        std::cerr << "quillbank: " << e.what() << " (see quillbank --help)\n";
        return kExitFailure;
    }

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
        }
    }
    return kExitFailure;
}

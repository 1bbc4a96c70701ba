#pragma once

// The subcommands. Each Add... function adds its subcommand, with its
// options and help, to the program's parser and returns what to run when
// that subcommand was chosen; the run returns the exit status or raises
// ToolError.

#include <functional>

#include <CLI/App.hpp>

namespace quillbank::tool {

struct Command {
    CLI::App* app = nullptr;
    std::function<int()> run;
};

Command AddInfoCommand(CLI::App& program);
Command AddTreeCommand(CLI::App& program);
Command AddPropsCommand(CLI::App& program);
Command AddClearCommand(CLI::App& program);
Command AddNormalizeCommand(CLI::App& program);
Command AddDuplicateCommand(CLI::App& program);
Command AddCheckCommand(CLI::App& program);
Command AddDiffCommand(CLI::App& program);
Command AddLsCommand(CLI::App& program);
Command AddGrepCommand(CLI::App& program);
Command AddConvertCommand(CLI::App& program);
Command AddViewCommand(CLI::App& program);

}  // namespace quillbank::tool

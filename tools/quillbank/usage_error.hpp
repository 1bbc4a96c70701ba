#pragma once

// The message for a command line the parser refused: what was wrong, the
// nearest name when a subcommand or option was mistyped, and the --help to
// read (the subcommand's own when one was named).

#include <CLI/App.hpp>
#include <CLI/Error.hpp>

namespace quillbank::tool {

// Writes the message on standard error and returns exit status 2.
int ReportUsageError(CLI::App& program, const CLI::ParseError& error, int argc, char** argv);

}  // namespace quillbank::tool

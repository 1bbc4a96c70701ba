#pragma once

// Many files at once: the FILE... arguments, directories (-r to recurse,
// --glob to choose the files in them) and the parallel run that keeps the
// output in the order of the files.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>

namespace quillbank::tool {

struct BatchOptions {
    std::vector<std::string> inputs;  // files, directories, or "-"
    bool recursive = false;
    std::string glob = "*.xml";
    unsigned jobs = 0;  // 0: one a core
    bool json = false;  // --json, on the subcommands that offer it
};

// Adds --json to a subcommand of these options.
void AddJsonFlag(CLI::App& app, BatchOptions& options);

// Adds FILE... (required unless `required` is false), -r/--recursive,
// --glob and -j/--jobs.
std::shared_ptr<BatchOptions> AddBatchOptions(CLI::App& app, const std::string& fileHelp, bool required = true);

// The files to work on, in order: a file named on the command line as it
// is; a directory's files whose names match the glob, sorted by name (with
// -r its subdirectories' too; links to directories are not followed).
std::vector<std::string> ExpandInputs(const BatchOptions& options);

// Whether the output names the file on every line: several files, or a
// directory.
bool IsMany(const BatchOptions& options, const std::vector<std::string>& files);

struct FileResult {
    std::string out;  // standard output, whole lines
    int status = 0;
    int errors = 0;    // check's counts, for its summary
    int warnings = 0;
    bool failed = false;  // the file could not be read (status 2)
};

// Runs `run` on every file, on up to `jobs` threads (0: one a core), and
// writes each file's output in the order of the files as soon as it and
// those before it are done. A failure of one file (ToolError, a library
// error, lack of memory) is its message on standard error and status 2; the
// others go on. When `prefix` is set, every line of output starts with the
// file's name and ": ". Returns every file's result, in order.
// With `failureLine`, a file that fails also gets that text as its output
// (the --json error document).
std::vector<FileResult> RunBatch(const std::vector<std::string>& files, unsigned jobs, bool prefix,
                                 const std::function<FileResult(const std::string&)>& run,
                                 const std::function<std::string(const std::string& file, const std::string& message)>&
                                     failureLine = {});

// The highest status of the results (0 for none).
int WorstStatus(const std::vector<FileResult>& results);

}  // namespace quillbank::tool

#pragma once

// The options every writing subcommand shares: FILE, -o OUT, --in-place.

#include <memory>
#include <string>
#include <string_view>

#include <CLI/App.hpp>

#include "lesson_file.hpp"
#include "output_file.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

struct WriteOptions {
    std::string file;
    std::string output;
    bool inPlace = false;
    bool strict = false;
    // normalize warns about what the reader drops on every write; the
    // others with --in-place (or --strict).
    bool alwaysWarn = false;
};

// Adds FILE, -o/--output and --in-place (which exclude each other) and --strict.
std::shared_ptr<WriteOptions> AddWriteOptions(CLI::App& app, bool outputRequired);

// Refuses to write under --strict when the reader drops or guesses
// something; returns whether to go on.
bool AcceptReading(const WriteOptions& options, const InputFile& input);

// Reads the lesson, decides where the result goes (before anything is
// written), makes the text with `produce` and writes it. Returns the exit
// status: 1 when --strict refused to write.
template <typename Produce>
int ReadTransformWrite(const WriteOptions& options, bool outputRequired, std::string_view command, Produce produce) {
    auto input = ReadInput(options.file);
    std::string target = ChooseOutput(input, options.output, options.inPlace, outputRequired, command);
    auto lesson = LoadLesson(input);
    if (!AcceptReading(options, input)) {
        return kExitFindings;
    }
    std::string text = produce(*lesson);
    WriteOutput(target, text);
    return kExitOk;
}

}  // namespace quillbank::tool

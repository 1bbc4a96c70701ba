#pragma once

// The options every writing subcommand shares: FILE, -o OUT, --in-place.

#include <memory>
#include <string>
#include <string_view>

#include <CLI/App.hpp>

#include "lesson_file.hpp"
#include "output_file.hpp"

namespace quillbank::tool {

struct WriteOptions {
    std::string file;
    std::string output;
    bool inPlace = false;
};

// Adds FILE, -o/--output and --in-place (which exclude each other).
std::shared_ptr<WriteOptions> AddWriteOptions(CLI::App& app, bool outputRequired);

// Reads the lesson, decides where the result goes (before anything is
// written), makes the text with `produce` and writes it.
template <typename Produce>
void ReadTransformWrite(const WriteOptions& options, bool outputRequired, std::string_view command, Produce produce) {
    auto input = ReadInput(options.file);
    std::string target = ChooseOutput(input, options.output, options.inPlace, outputRequired, command);
    auto lesson = LoadLesson(input);
    std::string text = produce(*lesson);
    WriteOutput(target, text);
}

}  // namespace quillbank::tool

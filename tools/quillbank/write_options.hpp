#pragma once

// The options every writing subcommand shares: FILE, -o OUT, --in-place.

#include <memory>
#include <string>
#include <string_view>

#include <CLI/App.hpp>

#include "document_id.hpp"
#include "file_batch.hpp"
#include "lesson_file.hpp"
#include "output_file.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

struct WriteOptions {
    std::shared_ptr<BatchOptions> files;
    std::string output;
    bool inPlace = false;
    bool strict = false;
    // normalize warns about what the reader drops on every write; the
    // others with --in-place (or --strict).
    bool alwaysWarn = false;
    bool keepDocumentId = false;  // --keep-documentid (normalize and clear)
};

// Adds --keep-documentid.
void AddKeepDocumentId(CLI::App& app, WriteOptions& options);

// Adds FILE... (several only with --in-place; directories with -r and
// --glob as for the reading subcommands), -o/--output and --in-place (which
// exclude each other) and --strict.
std::shared_ptr<WriteOptions> AddWriteOptions(CLI::App& app, bool outputRequired);

// Reads the lesson; with the warnings of what the reader drops (normalize,
// --in-place, --strict) from the same parse of the text. Under --strict,
// when the reader drops or guesses something, says so and gives null:
// nothing is to be written.
std::shared_ptr<Lesson> ReadForWriting(const WriteOptions& options, const InputFile& input);

// Reads the lesson, decides where the result goes (before anything is
// written), makes the text with `produce` and writes it. Returns the exit
// status: 1 when --strict refused to write.
template <typename Produce>
int ReadTransformWriteOne(const WriteOptions& options, const std::string& file, bool outputRequired,
                          std::string_view command, Produce produce) {
    auto input = ReadInput(file);
    std::string target = ChooseOutput(input, options.output, options.inPlace, outputRequired, command);
    auto lesson = ReadForWriting(options, input);
    if (!lesson) {
        return kExitFindings;
    }
    std::string text = produce(*lesson);
    if (options.keepDocumentId) {
        if (auto documentId = DocumentIdOf(input.decoded.text)) {
            text = WithDocumentId(std::move(text), *documentId);
        }
    }
    WriteOutput(target, text);
    return kExitOk;
}

// Raises ToolError when several files are given without --in-place.
void RequireInPlaceForMany(const WriteOptions& options, bool many, std::string_view command);

// ReadTransformWriteOne on every file (in parallel with --in-place); the
// highest status.
template <typename Produce>
int ReadTransformWrite(const WriteOptions& options, bool outputRequired, std::string_view command, Produce produce) {
    const auto files = ExpandInputs(*options.files);
    RequireInPlaceForMany(options, IsMany(*options.files, files), command);
    auto results = RunBatch(files, options.files->jobs, false, [&](const std::string& file) {
        FileResult result;
        result.status = ReadTransformWriteOne(options, file, outputRequired, command, produce);
        return result;
    });
    return WorstStatus(results);
}

}  // namespace quillbank::tool

#include "write_options.hpp"

#include <cstdio>

#include "reading_losses.hpp"

namespace quillbank::tool {

std::shared_ptr<WriteOptions> AddWriteOptions(CLI::App& app, bool outputRequired) {
    auto options = std::make_shared<WriteOptions>();
    options->files = AddBatchOptions(app, "Lesson file, or - for standard input (several files or directories with "
                                          "--in-place)");
    auto* output = app.add_option("-o,--output", options->output,
                                  outputRequired ? "Write to OUT (- for standard output)"
                                                 : "Write to OUT (- for standard output, the default)");
    output->type_name("OUT");
    auto* inPlace = app.add_flag("--in-place", options->inPlace,
                                 "Replace FILE itself (written to a temporary file, then renamed over it)");
    inPlace->excludes(output);
    output->excludes(inPlace);
    app.add_flag("--strict", options->strict,
                 "Write nothing and exit with status 1 when the reader drops, merges, makes up or guesses anything "
                 "(what quillbank check reports with the codes L02-L04, S02, S04, P03-P05, R01-R03, E01-E04)");
    return options;
}

void AddKeepDocumentId(CLI::App& app, WriteOptions& options) {
    app.add_flag("--keep-documentid", options.keepDocumentId,
                 "Keep the file's \"documentid\" instead of a new one, so that rewriting an unchanged file gives the "
                 "same bytes (a file without one gets a new one)");
}

void RequireInPlaceForMany(const WriteOptions& options, bool many, std::string_view command) {
    if (many && !options.inPlace) {
        throw ToolError(std::string(command) + ": several files (or a directory) need --in-place (see quillbank " +
                        std::string(command) + " --help)");
    }
}

std::shared_ptr<Lesson> ReadForWriting(const WriteOptions& options, const InputFile& input) {
    if (!options.alwaysWarn && !options.inPlace && !options.strict) {
        return LoadLesson(input);
    }
    std::shared_ptr<Lesson> lesson;
    const bool lossy = ReportReadingLosses(input, lesson);
    if (lossy && options.strict) {
        std::fflush(stdout);
        std::string line = "quillbank: " + input.displayName +
                           ": --strict: nothing written, because the reader drops or guesses what the warnings say\n";
        std::fwrite(line.data(), 1, line.size(), stderr);
        return nullptr;
    }
    return lesson;
}

}  // namespace quillbank::tool

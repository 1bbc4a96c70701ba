#include "write_options.hpp"

namespace quillbank::tool {

std::shared_ptr<WriteOptions> AddWriteOptions(CLI::App& app, bool outputRequired) {
    auto options = std::make_shared<WriteOptions>();
    app.add_option("FILE", options->file, "Lesson file, or - for standard input")->required();
    auto* output = app.add_option("-o,--output", options->output,
                                  outputRequired ? "Write to OUT (- for standard output)"
                                                 : "Write to OUT (- for standard output, the default)");
    output->type_name("OUT");
    auto* inPlace = app.add_flag("--in-place", options->inPlace,
                                 "Replace FILE itself (written to a temporary file, then renamed over it)");
    inPlace->excludes(output);
    output->excludes(inPlace);
    return options;
}

}  // namespace quillbank::tool

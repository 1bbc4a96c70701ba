#include "output_file.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>

#ifndef _WIN32
#include <unistd.h>
#endif

#include "tool_error.hpp"

namespace fs = std::filesystem;

namespace quillbank::tool {

namespace {

std::string TemporaryName(const fs::path& target) {
    static std::mt19937_64 generator{std::random_device{}()};
    static const char digits[] = "0123456789abcdef";
    std::string suffix;
    for (int i = 0; i < 12; ++i) {
        suffix += digits[generator() % 16];
    }
    return "." + target.filename().string() + "." + suffix + ".tmp";
}

void WriteToStandardOutput(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0) {
        throw ToolError(std::string("(standard output): cannot write: ") + std::strerror(errno));
    }
}

}  // namespace

std::string ChooseOutput(const InputFile& input, const std::string& output, bool inPlace, bool outputRequired,
                         std::string_view command) {
    if (inPlace) {
        if (input.path == kStandardStream) {
            throw ToolError(std::string(command) + ": --in-place needs a file, not standard input");
        }
        return input.path;
    }
    if (output.empty()) {
        if (outputRequired) {
            throw ToolError(std::string(command) + ": -o OUT or --in-place is required");
        }
        return kStandardStream;
    }
    if (output != kStandardStream && input.path != kStandardStream) {
        std::error_code ec;
        if (fs::equivalent(input.path, output, ec)) {
            throw ToolError(output + ": is the input file; use --in-place to replace it");
        }
    }
    return output;
}

void WriteOutput(const std::string& path, std::string_view bytes) {
    if (path == kStandardStream) {
        WriteToStandardOutput(bytes);
        return;
    }
    std::error_code ec;
    fs::path target(path);
    if (fs::is_symlink(target, ec)) {
        target = fs::canonical(target, ec);
        if (ec) {
            throw ToolError(path + ": cannot write the file: " + ec.message());
        }
    }
    if (fs::is_directory(target, ec)) {
        throw ToolError(path + ": cannot write the file: it is a directory");
    }
    fs::path folder = target.parent_path();
    if (folder.empty()) {
        folder = ".";
    }

    fs::path temporary;
    std::FILE* file = nullptr;
    for (int attempt = 0; attempt < 16 && file == nullptr; ++attempt) {
        temporary = folder / TemporaryName(target);
        file = std::fopen(temporary.string().c_str(), "wbx");
        if (file == nullptr && errno != EEXIST) {
            break;
        }
    }
    if (file == nullptr) {
        throw ToolError(path + ": cannot write the file: " + std::strerror(errno));
    }

    bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
#ifndef _WIN32
    written = written && ::fsync(::fileno(file)) == 0;
#endif
    int writeError = errno;
    written = (std::fclose(file) == 0) && written;
    if (!written) {
        fs::remove(temporary, ec);
        throw ToolError(path + ": cannot write the file: " + std::strerror(writeError));
    }

    // A replaced file keeps its permissions; a new one gets the usual ones.
    if (fs::exists(target, ec)) {
        fs::permissions(temporary, fs::status(target, ec).permissions(), ec);
    }
    fs::rename(temporary, target, ec);
    if (ec) {
        std::string reason = ec.message();
        fs::remove(temporary, ec);
        throw ToolError(path + ": cannot write the file: " + reason);
    }
}

}  // namespace quillbank::tool

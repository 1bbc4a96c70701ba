#include "lesson_file.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <vector>

#include <quillbank/error.hpp>

#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

std::vector<std::uint8_t> ReadAll(std::FILE* file, const std::string& displayName) {
    std::vector<std::uint8_t> bytes;
    std::uint8_t buffer[65536];
    for (;;) {
        std::size_t got = std::fread(buffer, 1, sizeof buffer, file);
        bytes.insert(bytes.end(), buffer, buffer + got);
        if (got < sizeof buffer) {
            if (std::ferror(file)) {
                throw ToolError(displayName + ": cannot read the file: " + std::strerror(errno));
            }
            return bytes;
        }
    }
}

}  // namespace

InputFile ReadInput(const std::string& path) {
    InputFile input;
    input.path = path;
    std::vector<std::uint8_t> bytes;
    if (path == kStandardStream) {
        input.displayName = "(standard input)";
        bytes = ReadAll(stdin, input.displayName);
    } else {
        input.displayName = path;
        std::error_code ec;
        if (std::filesystem::is_directory(path, ec)) {
            throw ToolError(path + ": cannot read the file: it is a directory");
        }
        std::FILE* file = std::fopen(path.c_str(), "rb");
        if (file == nullptr) {
            throw ToolError(path + ": cannot open the file: " + std::strerror(errno));
        }
        try {
            bytes = ReadAll(file, path);
        } catch (...) {
            std::fclose(file);
            throw;
        }
        std::fclose(file);
    }
    auto decoded = DecodeFileBytes(bytes);
    if (!decoded) {
        throw ToolError(input.displayName + ": the file starts with a UTF-16 byte-order mark but is not valid UTF-16");
    }
    if (decoded->text.empty()) {
        throw ToolError(input.displayName + ": the file is empty, not a lesson");
    }
    input.decoded = std::move(*decoded);
    return input;
}

std::shared_ptr<Lesson> LoadLesson(const InputFile& input) {
    auto lesson = Lesson::Create();
    try {
        lesson->FromXMLString(input.decoded.text);
    } catch (const Error& e) {
        // The wrong-form errors say all; others name the member that raised them.
        if (e.Number() == ErrXmlForm) {
            throw ToolError(input.displayName + ": " + e.Description());
        }
        throw ToolError(input.displayName + ": " + e.Source() + ": " + e.Description());
    }
    return lesson;
}

std::shared_ptr<Lesson> ReadLesson(const std::string& path) {
    return LoadLesson(ReadInput(path));
}

}  // namespace quillbank::tool

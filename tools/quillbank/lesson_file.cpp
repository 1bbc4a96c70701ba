#include "lesson_file.hpp"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <quillbank/error.hpp>

#include "parse_position.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

std::atomic<std::uint64_t> maxInputSize{kDefaultMaxInputSize};

// The library's description of text that is not XML.
constexpr std::string_view kNotParsed = "XML string could not be parsed.";

[[noreturn]] void TooLarge(const std::string& displayName) {
    throw ToolError(displayName + ": the file is larger than the limit of " + std::to_string(MaxInputSize()) +
                    " bytes (--max-size)");
}

std::vector<std::uint8_t> ReadAll(int fd, const std::string& displayName, std::uint64_t expected) {
    const std::uint64_t limit = MaxInputSize();
    std::vector<std::uint8_t> bytes;
    if (expected > 0) {
        bytes.reserve(static_cast<std::size_t>(expected) + 1);
    }
    std::size_t filled = 0;
    for (;;) {
        if (bytes.size() - filled < 65536) {
            bytes.resize(std::max<std::size_t>(bytes.size() * 2, filled + 65536));
        }
        ssize_t got = ::read(fd, bytes.data() + filled, bytes.size() - filled);
        if (got < 0) {
            if (errno == EINTR) {
                continue;
            }
            throw ToolError(displayName + ": cannot read the file: " + std::strerror(errno));
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<std::size_t>(got);
        if (filled > limit) {
            TooLarge(displayName);
        }
    }
    bytes.resize(filled);
    return bytes;
}

std::vector<std::uint8_t> ReadPath(const std::string& path) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        throw ToolError(path + ": cannot open the file: " + std::strerror(errno));
    }
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};
    struct stat status {};
    if (::fstat(fd, &status) != 0) {
        throw ToolError(path + ": cannot read the file: " + std::strerror(errno));
    }
    if (S_ISDIR(status.st_mode)) {
        throw ToolError(path + ": cannot read the file: it is a directory");
    }
    std::uint64_t size = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
    if (size > MaxInputSize()) {
        TooLarge(path);
    }
    return ReadAll(fd, path, size);
}

[[noreturn]] void OutOfMemory(const std::string& displayName) {
    throw ToolError("not enough memory to read " + displayName);
}

}  // namespace

void SetMaxInputSize(std::uint64_t bytes) {
    maxInputSize.store(bytes);
}

std::uint64_t MaxInputSize() {
    return maxInputSize.load();
}

void PrintNotes(const InputFile& input) {
    std::string lines;
    for (const auto& note : input.decoded.notes) {
        lines += "quillbank: " + input.displayName + ": warning: " + note.sentence + "\n";
    }
    if (!lines.empty()) {
        std::fflush(stdout);
        std::fwrite(lines.data(), 1, lines.size(), stderr);
    }
}

InputFile ReadInput(const std::string& path, bool printNotes) {
    InputFile input;
    input.path = path;
    input.displayName = path == kStandardStream ? "(standard input)" : path;
    try {
        std::vector<std::uint8_t> bytes =
            path == kStandardStream ? ReadAll(STDIN_FILENO, input.displayName, 0) : ReadPath(path);
        auto decoded = DecodeFileBytes(bytes);
        if (!decoded) {
            throw ToolError(input.displayName +
                            ": the file starts with a UTF-16 byte-order mark but is not valid UTF-16");
        }
        if (decoded->text.empty()) {
            throw ToolError(input.displayName + ": the file is empty, not a lesson");
        }
        input.decoded = std::move(*decoded);
    } catch (const std::bad_alloc&) {
        OutOfMemory(input.displayName);
    }
    if (printNotes) {
        PrintNotes(input);
    }
    return input;
}

namespace {

// Reads a lesson with `read`, the library's errors said as the tool says them.
template <typename Read>
std::shared_ptr<Lesson> Loaded(const InputFile& input, Read read) {
    try {
        auto lesson = Lesson::Create();
        read(*lesson);
        return lesson;
    } catch (const Error& e) {
        // The wrong-form errors say all; others name the member that raised them.
        if (e.Number() == ErrXmlForm) {
            std::string place;
            if (auto where = ParseErrorPlace(input.decoded.text); where && e.Description() == kNotParsed) {
                place = " (" + *where + ")";
            }
            throw ToolError(input.displayName + ": " + e.Description() + place);
        }
        throw ToolError(input.displayName + ": " + e.Source() + ": " + e.Description());
    } catch (const std::bad_alloc&) {
        OutOfMemory(input.displayName);
    }
}

}  // namespace

std::shared_ptr<Lesson> LoadLesson(const InputFile& input) {
    return Loaded(input, [&](Lesson& lesson) { lesson.FromXMLString(input.decoded.text); });
}

std::shared_ptr<Lesson> LoadLesson(const InputFile& input, const xml::Element& root) {
    return Loaded(input, [&](Lesson& lesson) { lesson.FromXMLElement(root); });
}

std::shared_ptr<Lesson> ReadLesson(const std::string& path) {
    return LoadLesson(ReadInput(path));
}

}  // namespace quillbank::tool

#include "output_file.hpp"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "replacing_write.hpp"
#include "tool_error.hpp"

namespace fs = std::filesystem;

namespace quillbank::tool {

namespace {

void WriteAllTo(int fd, std::string_view bytes, const std::string& failure) {
    while (!bytes.empty()) {
        ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            throw ToolError(failure + std::strerror(errno));
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void WriteToStandardOutput(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0) {
        throw ToolError(std::string("(standard output): cannot write: ") + std::strerror(errno));
    }
}

// The descriptor a path names by number: /dev/stdout, /dev/stderr,
// /dev/fd/N and /proc/self/fd/N. Writing goes to that descriptor itself, so
// that its position and append mode are the shell's.
std::optional<int> NamedDescriptor(const std::string& path) {
    if (path == "/dev/stdout") {
        return 1;
    }
    if (path == "/dev/stderr") {
        return 2;
    }
    for (std::string_view prefix : {"/dev/fd/", "/proc/self/fd/"}) {
        if (path.starts_with(prefix)) {
            std::string_view digits = std::string_view(path).substr(prefix.size());
            int fd = -1;
            auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), fd);
            if (ec == std::errc() && end == digits.data() + digits.size() && fd >= 0) {
                return fd;
            }
        }
    }
    return std::nullopt;
}

// The path with every symbolic link along its last part followed, also to a
// file that does not exist yet. Following stops at a path that names a
// descriptor: what such a link holds ("pipe:[...]") is no path.
std::string FollowLinks(const std::string& path) {
    std::string current = path;
    for (int hops = 0; hops < 40; ++hops) {
        if (NamedDescriptor(current)) {
            return current;
        }
        struct stat status {};
        if (::lstat(current.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) {
            return current;
        }
        std::error_code ec;
        fs::path link = fs::read_symlink(current, ec);
        if (ec) {
            throw ToolError(path + ": cannot write the file: " + ec.message());
        }
        current = link.is_absolute() ? link.string() : (fs::path(current).parent_path() / link).string();
    }
    throw ToolError(path + ": cannot write the file: " + std::strerror(ELOOP));
}

// Something that is not a regular file (a device, a FIFO, a socket) is
// written into directly: replacing it would destroy it.
void WriteDirectly(const std::string& path, std::string_view bytes) {
    int fd = ::open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        throw ToolError(path + ": cannot write the file: " + std::strerror(errno));
    }
    try {
        WriteAllTo(fd, bytes, path + ": cannot write the file: ");
    } catch (...) {
        ::close(fd);
        throw;
    }
    if (::close(fd) != 0) {
        throw ToolError(path + ": cannot write the file: " + std::strerror(errno));
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
            throw ToolError(std::string(command) + ": -o OUT or --in-place is required (see quillbank " +
                            std::string(command) + " --help)");
        }
        return kStandardStream;
    }
    if (output != kStandardStream && input.path != kStandardStream) {
        std::error_code ec;
        struct stat status {};
        if (::stat(output.c_str(), &status) == 0 && S_ISREG(status.st_mode) && fs::equivalent(input.path, output, ec)) {
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
    const std::string target = FollowLinks(path);
    if (auto fd = NamedDescriptor(target)) {
        if (*fd == 1) {
            std::fflush(stdout);
        }
        WriteAllTo(*fd, bytes, path + ": cannot write: ");
        return;
    }
    struct stat status {};
    std::optional<struct stat> existing;
    if (::stat(target.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) {
            throw ToolError(path + ": cannot write the file: it is a directory");
        }
        if (!S_ISREG(status.st_mode)) {
            WriteDirectly(target, bytes);
            return;
        }
        if (status.st_nlink > 1) {
            throw ToolError(path + ": the file has " + std::to_string(status.st_nlink) +
                            " hard links; replacing it would leave the other names with the old text, so it is "
                            "left alone (write to another file with -o)");
        }
        existing = status;
    } else if (errno != ENOENT) {
        throw ToolError(path + ": cannot write the file: " + std::strerror(errno));
    }
    ReplacingWrite write(target, existing, path);
    write.Write(bytes);
    write.Commit();
}

}  // namespace quillbank::tool

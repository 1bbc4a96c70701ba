#include "tree_graph.hpp"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <sstream>
#include <vector>

#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "map_items.hpp"
#include "signal_cleanup.hpp"
#include "tool_error.hpp"

extern char** environ;

namespace quillbank::tool {

namespace {

// The length of the UTF-8 sequence at `at`, or 0 when it is not one.
std::size_t SequenceLength(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    std::size_t length = 0;
    std::uint32_t lowest = 0;
    if (lead < 0x80) {
        return 1;
    }
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        lowest = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        lowest = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        lowest = 0x10000;
    } else {
        return 0;
    }
    if (at + length > text.size()) {
        return 0;
    }
    std::uint32_t code = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80) {
            return 0;
        }
        code = (code << 6) | (next & 0x3F);
    }
    if (code < lowest || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        return 0;
    }
    return length;
}

std::string ItemLabel(const Storyboard& storyboard) {
    std::string label = storyboard.Title().empty() ? "(untitled)" : storyboard.Title();
    if (!storyboard.Identifier().empty()) {
        label += " [" + storyboard.Identifier() + "]";
    }
    return label + "\n" + storyboard.SBID();
}

// The program's path when an executable of that name is on PATH.
std::optional<std::filesystem::path> FindProgram(const std::string& name) {
    const char* path = std::getenv("PATH");
    if (path == nullptr) {
        return std::nullopt;
    }
    std::string_view rest = path;
    while (true) {
        auto cut = rest.find(':');
        std::string_view folder = rest.substr(0, cut);
        if (!folder.empty()) {
            std::filesystem::path candidate = std::filesystem::path(folder) / name;
            std::error_code error;
            if (std::filesystem::is_regular_file(candidate, error) && access(candidate.c_str(), X_OK) == 0) {
                return candidate;
            }
        }
        if (cut == std::string_view::npos) {
            return std::nullopt;
        }
        rest.remove_prefix(cut + 1);
    }
}

// A temporary file that is removed when it goes (or at a signal).
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& text) {
        std::error_code error;
        auto folder = std::filesystem::temp_directory_path(error);
        if (error) {
            folder = "/tmp";
        }
        std::string pattern = (folder / "quillbank-graph-XXXXXX").string();
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        const int fd = mkstemp(name.data());
        if (fd < 0) {
            throw ToolError(std::string("tree: cannot make a temporary file for dot: ") + std::strerror(errno));
        }
        path_ = name.data();
        registration_.emplace(path_);
        std::size_t done = 0;
        while (done < text.size()) {
            const ssize_t wrote = write(fd, text.data() + done, text.size() - done);
            if (wrote < 0 && errno == EINTR) {
                continue;
            }
            if (wrote <= 0) {
                const int saved = errno;
                close(fd);
                unlink(path_.c_str());
                throw ToolError(std::string("tree: cannot write a temporary file for dot: ") + std::strerror(saved));
            }
            done += static_cast<std::size_t>(wrote);
        }
        close(fd);
    }
    ~TemporaryFile() { unlink(path_.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    const std::string& Path() const { return path_; }

private:
    std::string path_;
    std::optional<CleanupRegistration> registration_;
};

}  // namespace

std::string DotEscaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = SequenceLength(text, at);
        if (length == 0) {
            out += "\xEF\xBF\xBD";
            ++at;
            continue;
        }
        const char c = text[at];
        if (length == 1) {
            if (c == '"' || c == '\\') {
                out += '\\';
                out += c;
            } else if (c == '\n') {
                out += "\\n";
            } else if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) {
                out += c;
            }
        } else {
            out.append(text.substr(at, length));
        }
        at += length;
    }
    return out;
}

std::string DotGraph(const Lesson& lesson, const std::shared_ptr<LessonMap>& map) {
    std::ostringstream out;
    const auto name = MapName(*map);
    out << "digraph \"" << DotEscaped(name ? *name : std::string()) << "\" {\n"
        << "  graph [label=\"" << DotEscaped(MapLabel(*map) + (map == DefaultOrFirstMap(lesson) ? " (default)" : ""))
        << "\", labelloc=t, rankdir=LR];\n"
        << "  node [shape=box, style=rounded, fontname=\"sans-serif\"];\n";
    auto storyboards = lesson.Storyboards();
    const auto items = MapItems(*map);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const auto& item = items[i];
        out << "  n" << i << " [label=\"";
        auto storyboard = item.sbid.empty() ? nullptr : storyboards->Item(item.sbid);
        if (storyboard) {
            out << DotEscaped(ItemLabel(*storyboard)) << "\"];\n";
        } else {
            out << DotEscaped(item.sbid.empty() ? "(item without a storyboard identifier)"
                                                : "(not in the lesson)\n" + item.sbid)
                << "\", style=\"rounded,dashed\", color=red, fontcolor=red];\n";
        }
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i].parent >= 0) {
            out << "  n" << items[i].parent << " -> n" << i << ";\n";
        }
    }
    out << "}\n";
    return out.str();
}

std::string SvgFromDot(const std::string& dot) {
    const auto program = FindProgram("dot");
    if (!program) {
        throw ToolError("tree: --format svg needs Graphviz's dot program, which is not on PATH (Debian package "
                        "graphviz); --format dot writes the graph without it");
    }
    TemporaryFile input(dot);
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) {
        throw ToolError(std::string("tree: cannot run dot: ") + std::strerror(errno));
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
    posix_spawn_file_actions_addclose(&actions, pipeEnds[1]);
    const std::string programPath = program->string();
    std::vector<std::string> arguments = {programPath, "-Tsvg", input.Path()};
    std::vector<char*> argv;
    for (auto& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, programPath.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeEnds[1]);
    if (spawned != 0) {
        close(pipeEnds[0]);
        throw ToolError("tree: cannot run " + programPath + ": " + std::strerror(spawned));
    }
    std::string svg;
    char buffer[65536];
    while (true) {
        const ssize_t got = read(pipeEnds[0], buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        svg.append(buffer, static_cast<std::size_t>(got));
    }
    close(pipeEnds[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw ToolError("tree: " + programPath + " failed to draw the graph");
    }
    return svg;
}

}  // namespace quillbank::tool

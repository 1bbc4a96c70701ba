#pragma once

// The one failure the tool reports: a line for standard error (without the
// program name), leading to exit status 2.

#include <stdexcept>
#include <string>

namespace quillbank::tool {

// Exit statuses of every subcommand.
inline constexpr int kExitOk = 0;
// `check` found an error, or `diff` found a difference.
inline constexpr int kExitFindings = 1;
// A file could not be read, written or understood, or the arguments were bad.
inline constexpr int kExitFailure = 2;

class ToolError : public std::runtime_error {
public:
    explicit ToolError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace quillbank::tool

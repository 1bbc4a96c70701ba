#pragma once

// Replacing a regular file in one step: the new text goes to a temporary
// file beside it, which is renamed over the old file when complete. A run
// that is killed leaves the old file or the complete new one; a run that is
// interrupted by SIGINT, SIGTERM or SIGHUP also removes the temporary file.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

#include "signal_cleanup.hpp"

namespace quillbank::tool {

class ReplacingWrite {
public:
    // `target` is the file to replace or create (symbolic links already
    // followed); `existing` is its status when it exists. The temporary file
    // gets the existing file's owner and group when the process may set them,
    // and its permission bits (never wider: bits of a group or owner that
    // could not be kept are narrowed to those of others). `displayName` names
    // the file in messages. Raises ToolError when the temporary file cannot
    // be made.
    ReplacingWrite(const std::string& target, const std::optional<struct stat>& existing,
                   const std::string& displayName);
    ~ReplacingWrite();
    ReplacingWrite(const ReplacingWrite&) = delete;
    ReplacingWrite& operator=(const ReplacingWrite&) = delete;

    void Write(std::string_view bytes);
    // Flushes to disk, closes and renames over the target.
    void Commit();

    const std::string& TemporaryPath() const { return temporary_; }

private:
    [[noreturn]] void Fail(int error);

    std::string target_;
    std::string displayName_;
    std::string temporary_;
    int fd_ = -1;
    bool committed_ = false;
    std::unique_ptr<CleanupRegistration> cleanup_;
};

}  // namespace quillbank::tool

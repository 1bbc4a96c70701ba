#include "replacing_write.hpp"

#include <cerrno>
#include <cstring>
#include <random>

#include <fcntl.h>
#include <unistd.h>

#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

std::string FolderOf(const std::string& path) {
    auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
    auto slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string RandomSuffix() {
    thread_local std::mt19937_64 generator{std::random_device{}()};
    static const char digits[] = "0123456789abcdef";
    std::string suffix;
    for (int i = 0; i < 12; ++i) {
        suffix += digits[generator() % 16];
    }
    return suffix;
}

// The permission bits the new file may have: the old file's, narrowed where
// its owner or group could not be kept.
mode_t KeptMode(const struct stat& old, bool ownerKept, bool groupKept) {
    mode_t mode = old.st_mode & 07777;
    const mode_t others = mode & 07;
    if (!groupKept) {
        mode = (mode & ~static_cast<mode_t>(070 | S_ISGID)) | static_cast<mode_t>((mode & 070) & (others << 3));
    }
    if (!ownerKept) {
        mode &= ~static_cast<mode_t>(S_ISUID);
    }
    return mode;
}

}  // namespace

ReplacingWrite::ReplacingWrite(const std::string& target, const std::optional<struct stat>& existing,
                               const std::string& displayName)
    : target_(target), displayName_(displayName) {
    const std::string folder = FolderOf(target);
    const std::string prefix = target.find('/') == std::string::npos ? "" : (folder == "/" ? "/" : folder + "/");
    const std::string name = NameOf(target);
    for (int attempt = 0; attempt < 16; ++attempt) {
        std::string candidate = prefix + "." + name + "." + RandomSuffix() + ".tmp";
        // Registered before it exists, so that no moment leaves it unguarded.
        auto cleanup = std::make_unique<CleanupRegistration>(candidate);
        // Owner-only until owner, group and bits are settled: never wider.
        fd_ = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, existing ? 0600 : 0666);
        if (fd_ >= 0) {
            temporary_ = candidate;
            cleanup_ = std::move(cleanup);
            break;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    if (fd_ < 0) {
        throw ToolError(displayName_ + ": cannot write the file: " + std::strerror(errno));
    }
    if (existing) {
        bool ownerKept = existing->st_uid == ::geteuid();
        bool groupKept = existing->st_gid == ::getegid();
        if (!ownerKept || !groupKept) {
            if (::fchown(fd_, existing->st_uid, existing->st_gid) == 0) {
                ownerKept = groupKept = true;
            } else if (!groupKept && ::fchown(fd_, static_cast<uid_t>(-1), existing->st_gid) == 0) {
                groupKept = true;
            }
        }
        if (::fchmod(fd_, KeptMode(*existing, ownerKept, groupKept)) != 0) {
            Fail(errno);
        }
    }
}

ReplacingWrite::~ReplacingWrite() {
    if (fd_ >= 0) {
        ::close(fd_);
    }
    if (!committed_ && !temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

void ReplacingWrite::Fail(int error) {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
    ::unlink(temporary_.c_str());
    temporary_.clear();
    throw ToolError(displayName_ + ": cannot write the file: " + std::strerror(error));
}

void ReplacingWrite::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t written = ::write(fd_, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            Fail(errno);
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void ReplacingWrite::Commit() {
    if (::fsync(fd_) != 0) {
        Fail(errno);
    }
    int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) {
        Fail(errno);
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        Fail(errno);
    }
    committed_ = true;
}

}  // namespace quillbank::tool

#pragma once

// Temporary files that must not outlive an interrupted run.
//
// InstallSignalCleanup() sets handlers for SIGINT, SIGTERM and SIGHUP that
// remove every temporary file registered at that moment and then end the
// program by the same signal, as it would have ended without the handler.
// Registration is safe from several threads at once; the handler does only
// what a signal handler may (unlink, then re-raise).

#include <cstddef>
#include <string>

namespace quillbank::tool {

void InstallSignalCleanup();

// A registration that lasts as long as the object: while it exists, the file
// at `path` is removed when one of the signals arrives.
class CleanupRegistration {
public:
    explicit CleanupRegistration(const std::string& path);
    ~CleanupRegistration();
    CleanupRegistration(const CleanupRegistration&) = delete;
    CleanupRegistration& operator=(const CleanupRegistration&) = delete;

private:
    std::size_t slot_;
};

}  // namespace quillbank::tool

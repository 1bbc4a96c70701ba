#include "signal_cleanup.hpp"

#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <thread>

#include <unistd.h>

#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

// One slot a file being written; a run writes at most one file a worker
// thread at a time, so a fixed table is enough.
constexpr std::size_t kSlots = 256;
constexpr std::size_t kPathBytes = 4096;

struct Slot {
    std::atomic<bool> claimed{false};  // taken by a registration
    std::atomic<bool> armed{false};    // the path is complete and may be removed
    char path[kPathBytes];
};

std::array<Slot, kSlots> slots;

extern "C" void RemoveTemporariesAndRaise(int signal) {
    for (auto& slot : slots) {
        if (slot.armed.load()) {
            ::unlink(slot.path);
        }
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}  // namespace

void InstallSignalCleanup() {
    struct sigaction action {};
    action.sa_handler = RemoveTemporariesAndRaise;
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&action.sa_mask, signal);
    }
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        // A signal the caller chose to ignore (nohup) stays ignored.
        if (::sigaction(signal, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) {
            continue;
        }
        ::sigaction(signal, &action, nullptr);
    }
}

CleanupRegistration::CleanupRegistration(const std::string& path) : slot_(kSlots) {
    if (path.size() >= kPathBytes) {
        throw ToolError(path + ": cannot write the file: the path is too long");
    }
    for (;;) {
        for (std::size_t i = 0; i < kSlots; ++i) {
            bool expected = false;
            if (slots[i].claimed.compare_exchange_strong(expected, true)) {
                slot_ = i;
                break;
            }
        }
        if (slot_ < kSlots) {
            break;
        }
        std::this_thread::yield();
    }
    Slot& slot = slots[slot_];
    std::memcpy(slot.path, path.c_str(), path.size() + 1);
    slot.armed.store(true);
}

CleanupRegistration::~CleanupRegistration() {
    Slot& slot = slots[slot_];
    slot.armed.store(false);
    slot.claimed.store(false);
}

}  // namespace quillbank::tool

// The tool's replacing write: what a signal leaves behind, and what the new
// file keeps of the old one.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "output_file.hpp"
#include "replacing_write.hpp"
#include "signal_cleanup.hpp"
#include "tool_error.hpp"

namespace fs = std::filesystem;
using namespace quillbank::tool;

namespace {

class ReplacingWriteTest : public ::testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() /
                  ("quillbank-replacing-" + std::to_string(::getpid()) + "-" +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        target_ = (folder_ / "lesson.xml").string();
        std::ofstream(target_) << "old text";
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string Read(const std::string& path) const {
        std::ifstream in(path);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    std::size_t Entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }
    struct stat Status() const {
        struct stat status {};
        ::stat(target_.c_str(), &status);
        return status;
    }

    fs::path folder_;
    std::string target_;
};

// The child writes half of the new text, then the signal arrives.
void WriteHalfAndRaise(const std::string& target, int signal) {
    InstallSignalCleanup();
    struct stat status {};
    ::stat(target.c_str(), &status);
    ReplacingWrite write(target, status, target);
    write.Write("new te");
    if (!fs::exists(write.TemporaryPath())) {
        std::_Exit(3);  // no temporary file: the test would prove nothing
    }
    std::raise(signal);
    std::_Exit(4);
}

}  // namespace

TEST_F(ReplacingWriteTest, SigintRemovesTheTemporaryFileAndKeepsTheOldOne) {
    EXPECT_EXIT(WriteHalfAndRaise(target_, SIGINT), ::testing::KilledBySignal(SIGINT), "");
    EXPECT_EQ(Read(target_), "old text");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(ReplacingWriteTest, SigtermRemovesTheTemporaryFileAndKeepsTheOldOne) {
    EXPECT_EXIT(WriteHalfAndRaise(target_, SIGTERM), ::testing::KilledBySignal(SIGTERM), "");
    EXPECT_EQ(Read(target_), "old text");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(ReplacingWriteTest, SighupRemovesTheTemporaryFileAndKeepsTheOldOne) {
    EXPECT_EXIT(WriteHalfAndRaise(target_, SIGHUP), ::testing::KilledBySignal(SIGHUP), "");
    EXPECT_EQ(Read(target_), "old text");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(ReplacingWriteTest, AFinishedWriteReplacesTheFileAndLeavesNothingElse) {
    WriteOutput(target_, "new text");
    EXPECT_EQ(Read(target_), "new text");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(ReplacingWriteTest, AnAbandonedWriteRemovesItsTemporaryFile) {
    {
        ReplacingWrite write(target_, Status(), target_);
        write.Write("new");
        EXPECT_TRUE(fs::exists(write.TemporaryPath()));
    }
    EXPECT_EQ(Read(target_), "old text");
    EXPECT_EQ(Entries(), 1u);
}

TEST_F(ReplacingWriteTest, TheTemporaryFileIsNeverWiderThanTheTarget) {
    ASSERT_EQ(::chmod(target_.c_str(), 0600), 0);
    ReplacingWrite write(target_, Status(), target_);
    struct stat status {};
    ASSERT_EQ(::stat(write.TemporaryPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(ReplacingWriteTest, ReplacedFileKeepsItsPermissionBitsWhateverTheUmask) {
    ASSERT_EQ(::chmod(target_.c_str(), 0754), 0);
    mode_t old = ::umask(077);
    WriteOutput(target_, "new text");
    ::umask(old);
    EXPECT_EQ(Status().st_mode & 07777, 0754u);
}

TEST_F(ReplacingWriteTest, AFileWithSeveralHardLinksIsRefusedAndLeftAlone) {
    const std::string second = (folder_ / "second.xml").string();
    ASSERT_EQ(::link(target_.c_str(), second.c_str()), 0);
    try {
        WriteOutput(second, "new text");
        FAIL() << "no error";
    } catch (const ToolError& e) {
        EXPECT_EQ(std::string(e.what()),
                  second + ": the file has 2 hard links; replacing it would leave the other names with the old text, "
                           "so it is left alone (write to another file with -o)");
    }
    EXPECT_EQ(Read(target_), "old text");
    EXPECT_EQ(Entries(), 2u);
}

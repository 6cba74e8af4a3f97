/**
 * What becomes of files when the system does not do what it is asked at once, or at all. The test
 * program is linked so that the system calls come here first.
 */
#include "files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/** Which system call is to fail the next time, and with what; none at first. */
std::string failingCall;
int failure = 0;

/** How much a read or write takes at most. */
std::size_t mostBytes = 0;

/** How often each is still to be interrupted. */
int interruptions = 0;

bool fails(const char* call)
{
    if (call != failingCall)
        return false;
    failingCall.clear();
    errno = failure;
    return true;
}

bool isInterrupted()
{
    if (interruptions == 0)
        return false;
    --interruptions;
    errno = EINTR;
    return true;
}

} // namespace

extern "C" {
ssize_t __real_read(int file, void* bytes, std::size_t size);
ssize_t __real_write(int file, const void* bytes, std::size_t size);
int __real_fchmod(int file, mode_t mode);
int __real_fsync(int file);
int __real_close(int file);

ssize_t __wrap_read(int file, void* bytes, std::size_t size)
{
    return isInterrupted() ? -1 : __real_read(file, bytes, std::min(size, mostBytes));
}

ssize_t __wrap_write(int file, const void* bytes, std::size_t size)
{
    return isInterrupted() ? -1 : __real_write(file, bytes, std::min(size, mostBytes));
}

int __wrap_fchmod(int file, mode_t mode)
{
    return fails("fchmod") ? -1 : __real_fchmod(file, mode);
}

int __wrap_fsync(int file) { return fails("fsync") ? -1 : __real_fsync(file); }

/** Closes the file also where it fails, as systems do. */
int __wrap_close(int file)
{
    const int result = __real_close(file);
    return fails("close") ? -1 : result;
}
}

namespace {

std::size_t openFiles()
{
    std::size_t count = 0;
    for (int file = 0; file < 256; ++file)
        if (::fcntl(file, F_GETFD) != -1)
            ++count;
    return count;
}

/** A folder with the file "target", which holds "kept". No test leaves a file open. */
class Files : public testing::Test {
protected:
    Files()
    {
        std::string path = testing::TempDir() + "files.XXXXXX";
        if (::mkdtemp(path.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        folder_ = path;
        std::ofstream(folder_ / "target") << "kept";
        mostBytes = 100000;
    }
    ~Files() override
    {
        failingCall.clear();
        fs::remove_all(folder_);
        EXPECT_EQ(openFiles(), openFiles_);
    }

    std::string path(const char* name) const { return (folder_ / name).string(); }

    std::string content() const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(folder_ / "target", std::ios::binary).rdbuf();
        return bytes.str();
    }

    std::size_t files() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }

private:
    const std::size_t openFiles_ = openFiles();
    fs::path folder_;
};

TEST_F(Files, AreReadAndWrittenInWhateverPieces)
{
    std::string bytes;
    for (int i = 0; i < 70000; ++i)
        bytes += static_cast<char>(i % 251);
    for (const std::size_t most : {std::size_t{1}, std::size_t{4095}, std::size_t{65536}}) {
        mostBytes = most;
        interruptions = 3;
        filterctl::writeFile(path("target"), bytes);
        EXPECT_EQ(interruptions, 0);
        EXPECT_EQ(content(), bytes);
        interruptions = 3;
        EXPECT_EQ(filterctl::readFile(path("target")), bytes);
        EXPECT_EQ(interruptions, 0);
    }
}

TEST_F(Files, AreLeftAloneWhereAStepFails)
{
    struct Step {
        const char* call;
        int error;
        const char* reason;
    };
    for (const Step& step :
         {Step{"fchmod", EPERM, ": cannot set the permissions: "},
          Step{"fsync", EIO, ": cannot write: "}, Step{"close", EDQUOT, ": cannot write: "}}) {
        failingCall = step.call;
        failure = step.error;
        try {
            filterctl::writeFile(path("target"), "new");
            ADD_FAILURE() << step.call;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(),
                      path("target") + step.reason + std::generic_category().message(step.error));
        }
        EXPECT_EQ(content(), "kept") << step.call;
        EXPECT_EQ(files(), 1u) << step.call;
    }
}

TEST_F(Files, AreWrittenPieceByPiece)
{
    filterctl::writeFile(path("target"), [](const filterctl::Sink& sink) {
        for (const char* piece : {"a", "", "bc"})
            sink(piece);
    });
    EXPECT_EQ(content(), "abc");
}

TEST_F(Files, AreLeftAloneWhereThereIsNoNextPiece)
{
    const auto write = [](const filterctl::Sink& sink) {
        sink("new");
        throw std::runtime_error("no more");
    };
    EXPECT_THROW(filterctl::writeFile(path("target"), write), std::runtime_error);
    EXPECT_EQ(content(), "kept");
    EXPECT_EQ(files(), 1u);
}

/** What is written to goes on living. */
TEST_F(Files, ThatAreWrittenToAreClosedWithCare)
{
    ASSERT_EQ(::symlink("/dev/null", path("null").c_str()), 0);
    failingCall = "close";
    failure = EIO;
    EXPECT_THROW(filterctl::writeFile(path("null"), "new"), std::runtime_error);
    EXPECT_TRUE(fs::is_character_file(path("null")));
}

} // namespace

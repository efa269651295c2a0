// Files that keep their reader waiting: pipes, leases, and what claims to be a regular file.
#include "base/regular_file.h"
#include "base/stop_request.h"
#include "base/text_file.h"
#include "base/usage_error.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

namespace {

/// A lease on a file: who opens it waits until it is given up.
class cLease {
  public:
    explicit cLease(const std::string& path) : descriptor(::open(path.c_str(), O_RDWR)) {
        earlier = std::signal(SIGIO, SIG_IGN); // what the holder is asked with
        isHeld = ::fcntl(descriptor, F_SETLEASE, F_WRLCK) == 0;
    }
    ~cLease() {
        ::close(descriptor);
        std::signal(SIGIO, earlier);
    }
    cLease(const cLease&) = delete;
    cLease& operator=(const cLease&) = delete;

    void giveUp() const { ::fcntl(descriptor, F_SETLEASE, F_UNLCK); }

    bool isHeld = false;

  private:
    const int descriptor;
    void (*earlier)(int) = nullptr;
};

std::string contentOf(std::ifstream& in) {
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace

TEST(RegularFile, PipePutInItsPlaceWhileItIsOpenedIsRefused) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("file");
    const std::string pipe = scratch.file("pipe");
    writeContent(file, "x");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::atomic<bool> isOver = false;
    std::thread exchange([&] {
        constexpr int exchanges = 20001; // in the end the file's name is the pipe's
        for (int i = 0; i < exchanges; ++i) {
            ASSERT_EQ(::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, pipe.c_str(), RENAME_EXCHANGE),
                      0);
        }
        isOver = true;
        ::close(::open(file.c_str(), O_RDWR | O_NONBLOCK)); // releases who waits for a writer
    });
    int opened = 0;
    while (!isOver) {
        std::ifstream in;
        if (openRegularFile(in, file)) {
            EXPECT_EQ(contentOf(in), "x");
            ++opened;
        }
    }
    exchange.join();
    EXPECT_GT(opened, 0);
}

TEST(RegularFile, LeaseIsWaitedFor) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("file");
    writeContent(file, "x");
    const cLease lease(file);
    if (!lease.isHeld) {
        GTEST_SKIP() << "this file system has no leases";
    }
    const cStopRequest request([&] {
        lease.giveUp();
        return false;
    });
    std::ifstream in;
    ASSERT_TRUE(openRegularFile(in, file));
    EXPECT_EQ(contentOf(in), "x");
}

TEST(RegularFile, StopEndsTheWaitForALease) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("file");
    writeContent(file, "x");
    const cLease lease(file);
    if (!lease.isHeld) {
        GTEST_SKIP() << "this file system has no leases";
    }
    int questions = 0;
    const cStopRequest request([&] { return ++questions == 3; });
    std::ifstream in;
    EXPECT_THROW(openRegularFile(in, file), sStopped);
    EXPECT_FALSE(in.is_open());
}

TEST(RegularFile, KernelLogIsReadWithoutWaiting) {
    std::ifstream in;
    if (!openRegularFile(in, "/proc/kmsg")) {
        GTEST_SKIP() << "only the superuser may read it";
    }
    for (char c = ' '; in.get(c);) {
    }
    EXPECT_TRUE(in.bad()) << "there is no end but the wait for more";
    EXPECT_THROW(forEachLine("/proc/kmsg", "--list", [](std::string_view) {}), cUsageError);
}

TEST(RegularFile, PipesAreTextOnlyWhereTheyAreAllowed) {
    const cScratchDirectory scratch;
    ASSERT_EQ(::mkfifo(scratch.file("pipe").c_str(), 0600), 0);
    const int writer = ::open(scratch.file("pipe").c_str(), O_RDWR);
    ASSERT_EQ(::write(writer, "a\n", 2), 2);
    EXPECT_THROW(
        forEachLine(
            scratch.file("pipe"), "list", [](std::string_view) {}, eTextSource::regularFile),
        cUsageError);
    ::close(writer);
}

TEST(RegularFile, BigFileIsReadWhole) {
    const cScratchDirectory scratch;
    const std::string text(1 << 20, 'a');
    writeContent(scratch.file("file"), text + "b");
    std::ifstream in;
    ASSERT_TRUE(openRegularFile(in, scratch.file("file")));
    in.seekg(1);
    EXPECT_TRUE(contentOf(in) == text.substr(1) + "b");
    EXPECT_FALSE(in.bad());
}

} // namespace kelmo

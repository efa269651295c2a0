// Reports in the making: whole or not there at all, whatever happens.
#include "run/report_file.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/processor_time.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What happens between the creation of a file and its lock.
std::function<void()> beforeNextLock;

} // namespace

/// In the place of the C library's function for this whole program.
extern "C" int flock(int descriptor, int operation) {
    if (const auto happen = std::exchange(beforeNextLock, nullptr)) {
        happen();
    }
    return static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}

namespace kelmo {

namespace {

/// A directory that is open, and a report in the making there.
struct sReport {
    explicit sReport(const std::string& path) : directory(path), file(directory) {}
    explicit sReport(const cScratchDirectory& scratch) : sReport(scratch.path().string()) {}

    void write(const std::string& text) {
        file.write(text);
        EXPECT_TRUE(file.finish());
    }

    const cReportDirectory directory;
    cReportFile file;
};

void sweep(const std::string& path) {
    removeAbandonedReports(cReportDirectory(path));
}

void sweep(const cScratchDirectory& scratch) {
    sweep(scratch.path().string());
}

/// A child process that holds a report open, half-written, until it is killed.
class cWritingChild {
  public:
    explicit cWritingChild(const std::string& directory) {
        std::array<int, 2> ready{};
        EXPECT_EQ(::pipe(ready.data()), 0);
        process = ::fork();
        if (process == 0) {
            sReport report(directory);
            report.write("half");
            const char sign = report.file.error() == 0 ? 'y' : 'n';
            [[maybe_unused]] const ssize_t told = ::write(ready[1], &sign, 1);
            for (;;) {
                ::pause();
            }
        }
        ::close(ready[1]);
        char sign = 'n';
        EXPECT_EQ(::read(ready[0], &sign, 1), 1);
        EXPECT_EQ(sign, 'y');
        ::close(ready[0]);
    }
    ~cWritingChild() { kill(); }
    cWritingChild(const cWritingChild&) = delete;
    cWritingChild& operator=(const cWritingChild&) = delete;

    void kill() {
        if (process > 0) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
            process = 0;
        }
    }

  private:
    pid_t process;
};

class cFileMask {
  public:
    explicit cFileMask(mode_t mask) : previous(::umask(mask)) {}
    ~cFileMask() { ::umask(previous); }
    cFileMask(const cFileMask&) = delete;
    cFileMask& operator=(const cFileMask&) = delete;

  private:
    mode_t previous;
};

} // namespace

TEST(ReportFile, AppearsUnderItsNameOnCommit) {
    const cScratchDirectory scratch;
    sReport report(scratch);
    ASSERT_TRUE(report.file.isOpen());
    report.write("whole");
    EXPECT_FALSE(std::filesystem::exists(scratch.file("1abc.xml")));
    EXPECT_EQ(contentOf(scratch.file(report.file.temporaryName())), "whole");
    EXPECT_TRUE(report.file.commit("1abc.xml"));
    EXPECT_EQ(filesIn(scratch.path()), (std::map<std::string, std::string>{{"1abc.xml", "whole"}}));
}

TEST(ReportFile, SweptUpBeforeItsLockIsCreatedAnew) {
    const cScratchDirectory scratch;
    int sweeps = 0;
    beforeNextLock = [&] {
        sweep(scratch);
        ++sweeps;
        EXPECT_TRUE(namesIn(scratch.path()).empty()) << "another start has taken it for abandoned";
    };
    sReport report(scratch);
    EXPECT_EQ(sweeps, 1);
    report.write("whole");
    EXPECT_TRUE(report.file.commit("a.tbl"));
    EXPECT_EQ(contentOf(scratch.file("a.tbl")), "whole");
    EXPECT_EQ(namesIn(scratch.path()).size(), 1U);
}

TEST(ReportFile, StaysAfterTheObjectWhenCommitted) {
    const cScratchDirectory scratch;
    {
        sReport report(scratch);
        EXPECT_TRUE(report.file.commit("1abc.xml"));
    }
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"1abc.xml"});
}

TEST(ReportFile, AbandonedFileIsRemoved) {
    const cScratchDirectory scratch;
    {
        sReport report(scratch);
        report.write("half");
        EXPECT_EQ(namesIn(scratch.path()).size(), 1U);
    }
    EXPECT_TRUE(namesIn(scratch.path()).empty());
}

TEST(ReportFile, TemporaryNameIsHiddenBesideTheReportsAndNotToBeForeseen) {
    const cScratchDirectory scratch;
    std::set<std::string> names;
    for (int i = 0; i < 100; ++i) {
        const sReport report(scratch);
        const std::string& name = report.file.temporaryName();
        EXPECT_TRUE(std::filesystem::exists(scratch.file(name)));
        EXPECT_EQ(name.front(), '.');
        const std::string random = name.substr(7, name.size() - 12);
        EXPECT_GE(random.size(), 32U) << name;
        names.insert(random.substr(0, 8));
    }
    EXPECT_EQ(names.size(), 100U) << "no two begin alike";
}

TEST(ReportFile, OlderReportIsReplacedAtOnce) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("1abc.xml"), "older and longer");
    sReport report(scratch);
    report.write("new");
    EXPECT_EQ(contentOf(scratch.file("1abc.xml")), "older and longer");
    EXPECT_TRUE(report.file.commit("1abc.xml"));
    EXPECT_EQ(contentOf(scratch.file("1abc.xml")), "new");
}

TEST(ReportFile, FailedCommitLeavesTheOlderReportAndNothingElse) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("1abc.xml"), "older");
    std::filesystem::create_directory(scratch.file("taken.xml"));
    {
        sReport report(scratch);
        EXPECT_FALSE(report.file.commit("taken.xml"));
        EXPECT_EQ(report.file.error(), EISDIR);
        EXPECT_FALSE(report.file.commit("missing/1abc.xml"));
        EXPECT_EQ(report.file.error(), ENOENT);
    }
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"1abc.xml"});
    EXPECT_EQ(contentOf(scratch.file("1abc.xml")), "older");
}

TEST(ReportFile, PermissionsAreThoseOfAnyNewFile) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{027}, mode_t{077}}) {
        const cScratchDirectory scratch;
        const cFileMask fileMask(mask);
        sReport report(scratch);
        ASSERT_TRUE(report.file.commit("1abc.xml"));
        struct stat status {};
        ASSERT_EQ(::stat(scratch.file("1abc.xml").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0666U & ~mask);
    }
}

TEST(ReportFile, UnwritableDirectoryGivesAClosedReport) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("file"), "no directory");
    for (const std::string& directory :
         {std::string("/proc/"), scratch.file("missing/"), scratch.file("file/")}) {
        sReport report(directory);
        EXPECT_FALSE(report.file.isOpen()) << directory;
        EXPECT_NE(report.file.error(), 0);
        EXPECT_FALSE(report.file.commit("1abc.xml"));
    }
}

// Another user of a common directory may take files away and put others in their place.

TEST(ReportFile, LinkInPlaceOfTheFileIsNeverWrittenThrough) {
    const cScratchDirectory scratch;
    const cScratchDirectory elsewhere;
    writeContent(elsewhere.file("private"), "private");
    sReport report(scratch);
    report.write("first, ");
    std::filesystem::remove(scratch.file(report.file.temporaryName()));
    std::filesystem::create_symlink(elsewhere.file("private"),
                                    scratch.file(report.file.temporaryName()));
    report.write("second");
    EXPECT_FALSE(report.file.commit("1abc.xml"));
    EXPECT_EQ(report.file.error(), ESTALE);
    EXPECT_EQ(contentOf(elsewhere.file("private")), "private");
    EXPECT_FALSE(std::filesystem::exists(scratch.file("1abc.xml")));
}

TEST(ReportFile, FileInPlaceOfTheReportIsNotTakenForIt) {
    const cScratchDirectory scratch;
    std::string name;
    {
        sReport report(scratch);
        report.write("mine");
        name = report.file.temporaryName();
        std::filesystem::remove(scratch.file(name));
        writeContent(scratch.file(name), "not mine");
        EXPECT_FALSE(report.file.commit("1abc.xml"));
    }
    EXPECT_EQ(contentOf(scratch.file(name)), "not mine") << "nor is it removed";
    EXPECT_FALSE(std::filesystem::exists(scratch.file("1abc.xml")));
}

TEST(ReportFile, DirectoryMayBeRenamedMeanwhile) {
    const cScratchDirectory scratch;
    std::filesystem::create_directory(scratch.file("before"));
    sReport report(scratch.file("before"));
    std::filesystem::rename(scratch.file("before"), scratch.file("after"));
    std::filesystem::create_directory(scratch.file("before"));
    report.write("whole");
    EXPECT_TRUE(report.file.commit("1abc.xml"));
    EXPECT_EQ(contentOf(scratch.file("after/1abc.xml")), "whole");
    EXPECT_TRUE(namesIn(scratch.file("before")).empty());
}

TEST(ReportFile, WriteErrorIsKeptAndNothingIsNamed) {
    const cScratchDirectory scratch;
    const std::string large(1U << 20U, 'x');
    sReport report(scratch);
    {
        const cFullDisk disk(1000);
        report.file.write(large);
        EXPECT_FALSE(report.file.finish());
    }
    EXPECT_EQ(report.file.error(), EFBIG);
    report.file.write("more");
    EXPECT_FALSE(report.file.finish());
    EXPECT_FALSE(report.file.commit("1abc.xml"));
    EXPECT_EQ(report.file.error(), EFBIG);
}

TEST(ReportFile, NoDescriptorIsLeftOpen) {
    const cScratchDirectory scratch;
    const int before = openDescriptorCount();
    for (int i = 0; i < 20; ++i) {
        sReport committed(scratch);
        const sReport abandoned(scratch);
        const sReport closed(scratch.file("missing/"));
        EXPECT_TRUE(committed.file.commit("1abc.xml"));
    }
    EXPECT_EQ(openDescriptorCount(), before);
}

TEST(AbandonedReports, WhatAKilledProcessLeftIsRemoved) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("1abc.xml"), "older");
    {
        cWritingChild child(scratch.path().string());
        child.kill();
    }
    ASSERT_EQ(namesIn(scratch.path()).size(), 2U);
    sweep(scratch);
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"1abc.xml"});
}

TEST(AbandonedReports, FileOfALivingProcessStays) {
    const cScratchDirectory scratch;
    cWritingChild child(scratch.path().string());
    sweep(scratch);
    ASSERT_EQ(namesIn(scratch.path()).size(), 1U);
    EXPECT_EQ(filesIn(scratch.path()).begin()->second, "half");
    child.kill();
    sweep(scratch);
    EXPECT_TRUE(namesIn(scratch.path()).empty());
}

TEST(AbandonedReports, FileOfThisProcessStays) {
    const cScratchDirectory scratch;
    sReport report(scratch);
    report.write("mine");
    sweep(scratch);
    EXPECT_TRUE(report.file.commit("1abc.xml"));
    EXPECT_EQ(contentOf(scratch.file("1abc.xml")), "mine");
}

TEST(AbandonedReports, OtherFilesStay) {
    const cScratchDirectory scratch;
    for (const char* name :
         {".kelmo-notes", "kelmo-1-2.part", "1abc.part", ".hidden", "1abc.xml"}) {
        writeContent(scratch.file(name), "other");
    }
    writeContent(scratch.file(".kelmo-1-2.part"), "left behind");
    std::filesystem::create_directory(scratch.file(".kelmo-3-4.part"));
    std::filesystem::create_symlink(scratch.file("1abc.xml"), scratch.file(".kelmo-5-6.part"));
    sweep(scratch);
    EXPECT_EQ(namesIn(scratch.path()),
              (std::vector<std::string>{".hidden", ".kelmo-5-6.part", ".kelmo-notes", "1abc.part",
                                        "1abc.xml", "kelmo-1-2.part"}));
    EXPECT_TRUE(std::filesystem::is_directory(scratch.file(".kelmo-3-4.part")));
}

TEST(AbandonedReports, LeaseOfWhoeverHasTheFileOpenHoldsNobodyUp) {
    const cScratchDirectory scratch;
    writeContent(scratch.file(".kelmo-leased.part"), "");
    const int leased = ::open(scratch.file(".kelmo-leased.part").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(leased, 0);
    // The holder would have to give the lease up before anybody else could open the file, and has
    // less than a minute for it.
    const auto before = std::signal(SIGIO, SIG_IGN);
    ASSERT_EQ(::fcntl(leased, F_SETLEASE, F_WRLCK), 0);
    // Who waits for the file gets it in the end and removes it.
    sweep(scratch);
    EXPECT_TRUE(std::filesystem::exists(scratch.file(".kelmo-leased.part")));
    ::close(leased);
    std::signal(SIGIO, before);
}

TEST(AbandonedReports, MissingDirectoryIsNoError) {
    const cScratchDirectory scratch;
    sweep(scratch.file("missing/"));
    EXPECT_TRUE(namesIn(scratch.path()).empty());
    EXPECT_FALSE(std::filesystem::exists(scratch.file("missing")));
}

TEST(AbandonedReports, KilledRunLeavesOnlyWholeReports) {
    const cScratchDirectory expectedReports;
    cRunKEV run;
    switchEverythingOn(run);
    run.setOutputDirectoryName(QString::fromStdString(expectedReports.path().string()));
    const cScratchDirectory input;
    writeContent(input.file("1tst.pdb"), twoGlycines());
    ASSERT_EQ(run.analyseFile(QString::fromStdString(input.file("1tst.pdb")), fixedStamp),
              eFileOutcome::analysed);
    const auto expected = filesIn(expectedReports.path());
    ASSERT_EQ(expected.size(), 4U);

    const cScratchDirectory scratch;
    bool wasLeftBehind = false;
    constexpr int killCount = 40;
    for (int i = 0; i < killCount; ++i) {
        const std::string directory = scratch.path().string() + "/";
        const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
        const std::string option(writeReportsForeverOption);
        const std::string file = input.file("1tst.pdb");
        const pid_t child = ::fork();
        if (child == 0) {
            ::execl(program.c_str(), program.c_str(), option.c_str(), file.c_str(),
                    directory.c_str(), nullptr);
            ::_exit(127);
        }
        const auto isOver = [&] { return ::waitpid(child, nullptr, WNOHANG) != 0; };
        while (namesIn(scratch.path()).empty()) {
            ASSERT_FALSE(isOver()) << "the writing process ended by itself";
            std::this_thread::yield();
        }
        bool hasEnded = false;
        waitForWork(
            std::chrono::microseconds(97 * i), [&] { return processorTimeOf(child); },
            [&] { return hasEnded = isOver(); });
        ASSERT_FALSE(hasEnded) << "the writing process ended by itself";
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const std::size_t count = namesIn(scratch.path()).size();
        sweep(directory);
        const auto files = filesIn(scratch.path());
        wasLeftBehind = wasLeftBehind || files.size() < count;
        for (const auto& [name, content] : files) {
            ASSERT_TRUE(expected.contains(name)) << name;
            ASSERT_EQ(content, expected.at(name)) << name;
            std::filesystem::remove(scratch.file(name));
        }
    }
    EXPECT_TRUE(wasLeftBehind) << "no process was killed in mid-write: the test showed nothing";
}

} // namespace kelmo

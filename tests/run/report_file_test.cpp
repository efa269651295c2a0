// Reports in the making: whole or not there at all, whatever happens.
#include "run/report_file.h"
#include "tests/run/run_test_tools.h"
#include "tests/xml/scratch_directory.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelmo {

namespace {

using namespace std::chrono_literals;

QString inScratch(const cScratchDirectory& scratch, const std::string& name = {}) {
    return QString::fromStdString(scratch.path().string() + "/" + name);
}

void writeThrough(const cReportFile& report, const std::string& text) {
    const int descriptor = report.duplicateDescriptor();
    ASSERT_GE(descriptor, 0);
    EXPECT_EQ(::write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    ::close(descriptor);
}

/// A child process that holds a report open, half-written, until it is killed.
class cWritingChild {
  public:
    explicit cWritingChild(const QString& directory) {
        std::array<int, 2> ready{};
        EXPECT_EQ(::pipe(ready.data()), 0);
        process = ::fork();
        if (process == 0) {
            const cReportFile report(directory);
            const int descriptor = report.duplicateDescriptor();
            const bool isWritten = ::write(descriptor, "half", 4) == 4;
            const char sign = isWritten ? 'y' : 'n';
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

/// The name that follows a temporary name: its counter one higher.
std::string nextName(const std::string& name) {
    const std::size_t end = name.rfind(".part");
    const std::size_t begin = name.rfind('-', end) + 1;
    const unsigned long counter = std::stoul(name.substr(begin, end - begin));
    return name.substr(0, begin) + std::to_string(counter + 1) + ".part";
}

} // namespace

TEST(ReportFile, AppearsUnderItsNameOnCommit) {
    const cScratchDirectory scratch;
    cReportFile report(inScratch(scratch));
    ASSERT_TRUE(report.isOpen());
    writeThrough(report, "whole");
    EXPECT_FALSE(std::filesystem::exists(scratch.file("1abc.xml")));
    EXPECT_EQ(contentOf(report.temporaryName()), "whole");
    EXPECT_TRUE(report.commit(inScratch(scratch, "1abc.xml")));
    EXPECT_EQ(filesIn(scratch.path()), (std::map<std::string, std::string>{{"1abc.xml", "whole"}}));
}

TEST(ReportFile, StaysAfterTheObjectWhenCommitted) {
    const cScratchDirectory scratch;
    {
        cReportFile report(inScratch(scratch));
        EXPECT_TRUE(report.commit(inScratch(scratch, "1abc.xml")));
    }
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"1abc.xml"});
}

TEST(ReportFile, AbandonedFileIsRemoved) {
    const cScratchDirectory scratch;
    {
        const cReportFile report(inScratch(scratch));
        writeThrough(report, "half");
        EXPECT_EQ(namesIn(scratch.path()).size(), 1U);
    }
    EXPECT_TRUE(namesIn(scratch.path()).empty());
}

TEST(ReportFile, TemporaryNameIsHiddenAndBesideTheReports) {
    const cScratchDirectory scratch;
    const cReportFile report(inScratch(scratch));
    const std::filesystem::path name(report.temporaryName());
    EXPECT_EQ(name.parent_path(), scratch.path());
    EXPECT_EQ(name.filename().string().front(), '.');
}

TEST(ReportFile, OlderReportIsReplacedAtOnce) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("1abc.xml"), "older and longer");
    cReportFile report(inScratch(scratch));
    writeThrough(report, "new");
    EXPECT_EQ(contentOf(scratch.file("1abc.xml")), "older and longer");
    EXPECT_TRUE(report.commit(inScratch(scratch, "1abc.xml")));
    EXPECT_EQ(contentOf(scratch.file("1abc.xml")), "new");
}

TEST(ReportFile, FailedCommitLeavesTheOlderReportAndNothingElse) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("1abc.xml"), "older");
    std::filesystem::create_directory(scratch.file("taken.xml"));
    {
        cReportFile report(inScratch(scratch));
        EXPECT_FALSE(report.commit(inScratch(scratch, "taken.xml")));
        EXPECT_EQ(report.error(), EISDIR);
        EXPECT_FALSE(report.commit(inScratch(scratch, "missing/1abc.xml")));
        EXPECT_EQ(report.error(), ENOENT);
    }
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"1abc.xml"});
    EXPECT_EQ(contentOf(scratch.file("1abc.xml")), "older");
}

TEST(ReportFile, PermissionsAreThoseOfAnyNewFile) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{027}, mode_t{077}}) {
        const cScratchDirectory scratch;
        const cFileMask fileMask(mask);
        cReportFile report(inScratch(scratch));
        ASSERT_TRUE(report.commit(inScratch(scratch, "1abc.xml")));
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
        const cReportFile report(QString::fromStdString(directory));
        EXPECT_FALSE(report.isOpen()) << directory;
        EXPECT_LT(report.duplicateDescriptor(), 0);
        EXPECT_NE(report.error(), 0);
        EXPECT_EQ(errno, report.error());
    }
}

TEST(ReportFile, TakenNamesAreLeftAlone) {
    const cScratchDirectory scratch;
    std::string name = cReportFile(inScratch(scratch)).temporaryName();
    constexpr int takenCount = 5;
    for (int i = 0; i < takenCount; ++i) {
        name = nextName(name);
        writeContent(name, "taken");
    }
    {
        const cReportFile report(inScratch(scratch));
        ASSERT_TRUE(report.isOpen());
        EXPECT_EQ(report.temporaryName(), nextName(name));
        writeThrough(report, "mine");
    }
    const auto files = filesIn(scratch.path());
    EXPECT_EQ(files.size(), static_cast<std::size_t>(takenCount));
    for (const auto& [file, content] : files) {
        EXPECT_EQ(content, "taken") << file;
    }
}

TEST(ReportFile, NoDescriptorIsLeftOpen) {
    const cScratchDirectory scratch;
    const int before = openDescriptorCount();
    for (int i = 0; i < 20; ++i) {
        cReportFile committed(inScratch(scratch));
        const cReportFile abandoned(inScratch(scratch));
        const cReportFile closed(inScratch(scratch, "missing/"));
        EXPECT_TRUE(committed.commit(inScratch(scratch, "1abc.xml")));
    }
    EXPECT_EQ(openDescriptorCount(), before);
}

TEST(AbandonedReports, WhatAKilledProcessLeftIsRemoved) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("1abc.xml"), "older");
    {
        cWritingChild child(inScratch(scratch));
        child.kill();
    }
    ASSERT_EQ(namesIn(scratch.path()).size(), 2U);
    removeAbandonedReports(inScratch(scratch));
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"1abc.xml"});
}

TEST(AbandonedReports, FileOfALivingProcessStays) {
    const cScratchDirectory scratch;
    cWritingChild child(inScratch(scratch));
    removeAbandonedReports(inScratch(scratch));
    ASSERT_EQ(namesIn(scratch.path()).size(), 1U);
    EXPECT_EQ(filesIn(scratch.path()).begin()->second, "half");
    child.kill();
    removeAbandonedReports(inScratch(scratch));
    EXPECT_TRUE(namesIn(scratch.path()).empty());
}

TEST(AbandonedReports, FileOfThisProcessStays) {
    const cScratchDirectory scratch;
    cReportFile report(inScratch(scratch));
    writeThrough(report, "mine");
    removeAbandonedReports(inScratch(scratch));
    EXPECT_TRUE(report.commit(inScratch(scratch, "1abc.xml")));
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
    removeAbandonedReports(inScratch(scratch));
    EXPECT_EQ(namesIn(scratch.path()),
              (std::vector<std::string>{".hidden", ".kelmo-5-6.part", ".kelmo-notes", "1abc.part",
                                        "1abc.xml", "kelmo-1-2.part"}));
    EXPECT_TRUE(std::filesystem::is_directory(scratch.file(".kelmo-3-4.part")));
}

TEST(AbandonedReports, MissingDirectoryIsNoError) {
    const cScratchDirectory scratch;
    removeAbandonedReports(inScratch(scratch, "missing/"));
    EXPECT_TRUE(namesIn(scratch.path()).empty());
    EXPECT_FALSE(std::filesystem::exists(scratch.file("missing")));
}

TEST(AbandonedReports, KilledRunLeavesOnlyWholeReports) {
    const cScratchDirectory expectedReports;
    cRunKEV run;
    switchEverythingOn(run);
    run.setOutputDirectoryName(inScratch(expectedReports));
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
        const auto end = std::chrono::steady_clock::now() + 20s;
        while (namesIn(scratch.path()).empty() && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(1ms);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(97 * i));
        ASSERT_EQ(::waitpid(child, nullptr, WNOHANG), 0) << "the writing process ended by itself";
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const std::size_t count = namesIn(scratch.path()).size();
        removeAbandonedReports(QString::fromStdString(directory));
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

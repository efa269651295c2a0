// Stopping the workers at random moments: nothing half-written, nothing left open, nothing lost.
#include "tests/run/message_log.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/processor_time.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace kelmo {

using enum eInteractionCriterion;

namespace {

using tFiles = std::map<std::string, std::string>;

enum class eStop { interruption, termination, both };

struct sStopCase {
    const char* name;
    bool isKev;
    eStop stop;
    int count;
};

void PrintTo(const sStopCase& stopCase, std::ostream* out) {
    *out << stopCase.name;
}

/// Reports by their names without the stamp, which differs from run to run.
tFiles reportsIn(const std::filesystem::path& directory) {
    constexpr std::size_t stampLength = 12;
    tFiles reports;
    for (const auto& [name, content] : filesIn(directory)) {
        const std::size_t stamp = name.find('_') + 1;
        reports[name.starts_with(".") ? name
                                      : name.substr(0, stamp) + name.substr(stamp + stampLength)] =
            content;
    }
    return reports;
}

void clear(const std::filesystem::path& directory) {
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        std::filesystem::remove(entry.path());
    }
}

class RunStop : public testing::TestWithParam<sStopCase> {
  protected:
    RunStop() {
        const QString directory = QString::fromStdString(output.path().string());
        const QStringList files = inputFiles();
        if (GetParam().isKev) {
            auto kev = std::make_unique<cRunKEV>();
            switchEverythingOn(*kev);
            kev->setFilesfForAnalysis(files);
            kev->setOutputDirectoryName(directory);
            run = std::move(kev);
        } else {
            auto vor = std::make_unique<cRunVOR>();
            switchEverythingOn(*vor, vorda);
            vor->inputFiles = files;
            vor->outputDirectory = directory;
            run = std::move(vor);
        }
    }

    /// Small files between larger ones, so that stops meet every step.
    QStringList inputFiles() {
        std::vector<std::string> paths;
        for (int i = 0; i < fileCount; ++i) {
            const std::string path = inputs.file("f" + std::to_string(i) + ".pdb");
            if (i % 4 == 1) {
                std::filesystem::copy_file(samplePath("1ubq"), path);
            } else {
                writeContent(path, twoGlycines());
            }
            paths.push_back(path);
        }
        return pathList(paths);
    }

    bool stopAndWait() {
        if (GetParam().stop != eStop::termination) {
            run->requestInterruption();
        }
        if (GetParam().stop != eStop::interruption) {
            run->terminate();
        }
        return awaitEnd(*run);
    }

    /// Whether what a stopped run left is a beginning of the whole: only whole reports, every file
    /// that was announced as analysed complete, at most one file with some of its reports.
    void checkReports(const tFiles& expected, const cMessageLog& log) {
        const tFiles reports = reportsIn(output.path());
        std::map<std::string, std::size_t> countOfFile;
        for (const auto& [name, content] : reports) {
            ASSERT_TRUE(expected.contains(name)) << name;
            ASSERT_EQ(content, expected.at(name)) << name;
            ++countOfFile[name.substr(0, name.find('_'))];
        }
        const std::size_t reportsPerFile = expected.size() / fileCount;
        std::size_t incomplete = 0;
        for (const auto& [file, count] : countOfFile) {
            incomplete += count < reportsPerFile ? 1U : 0U;
        }
        EXPECT_LE(incomplete, 1U);
        std::size_t announced = 0;
        for (const sMessage& message : log.messages) {
            announced += message.text.ends_with(" analyzed") ? 1U : 0U;
        }
        EXPECT_LE(announced, countOfFile.size() - incomplete);
        EXPECT_GE(announced + 1, countOfFile.size() - incomplete);
    }

    static constexpr int fileCount = 12;
    cScratchDirectory inputs;
    cScratchDirectory output;
    std::unique_ptr<cAnalysisRun> run;
};

} // namespace

TEST_P(RunStop, LeavesOnlyWholeReportsAndAWorkerThatRunsAgain) {
    cMessageLog log(*run);
    ASSERT_TRUE(runToEnd(*run)); // warms up what is done only once
    clear(output.path());
    const tProcessorTime begin = processorTimeOfOthers();
    ASSERT_TRUE(runToEnd(*run));
    const tProcessorTime work = processorTimeOfOthers() - begin;
    const tFiles expected = reportsIn(output.path());
    ASSERT_EQ(expected.size(), fileCount * (GetParam().isKev ? 4U : 6U));

    const int descriptors = openDescriptorCount();
    std::mt19937 generator(5);
    std::set<std::size_t> reportCounts;
    for (int i = 0; i < GetParam().count; ++i) {
        clear(output.path());
        log.messages.clear();
        run->start();
        const tProcessorTime moment(
            static_cast<long>(generator() % static_cast<unsigned long>(work.count())));
        waitForWork(moment, processorTimeOfOthers, [&] { return run->isIdle(); });
        ASSERT_TRUE(stopAndWait()) << "the worker hangs";
        checkReports(expected, log);
        reportCounts.insert(namesIn(output.path()).size());
        ASSERT_EQ(openDescriptorCount(), descriptors);
    }
    EXPECT_GT(reportCounts.size(), 5U) << "the stops fell together: the test showed little";

    clear(output.path());
    ASSERT_TRUE(runToEnd(*run));
    EXPECT_EQ(reportsIn(output.path()), expected);
    EXPECT_TRUE(run->unwrittenReports().isEmpty());
}

TEST_P(RunStop, RightAfterTheStart) {
    constexpr int count = 50;
    for (int i = 0; i < count; ++i) {
        run->start();
        ASSERT_TRUE(stopAndWait());
    }
    clear(output.path());
    ASSERT_TRUE(runToEnd(*run));
    EXPECT_EQ(namesIn(output.path()).size(), fileCount * (GetParam().isKev ? 4U : 6U));
}

TEST_P(RunStop, OfAnIdleWorkerDoesNothing) {
    ASSERT_TRUE(stopAndWait());
    ASSERT_TRUE(runToEnd(*run));
    ASSERT_TRUE(stopAndWait());
    EXPECT_EQ(namesIn(output.path()).size(), fileCount * (GetParam().isKev ? 4U : 6U));
}

INSTANTIATE_TEST_SUITE_P(
    Stops, RunStop,
    testing::Values(sStopCase{"KevInterruptedAndTerminated", true, eStop::both, 200},
                    sStopCase{"KevTerminated", true, eStop::termination, 200},
                    sStopCase{"KevInterrupted", true, eStop::interruption, 50},
                    sStopCase{"VorInterruptedAndTerminated", false, eStop::both, 100},
                    sStopCase{"VorTerminated", false, eStop::termination, 100},
                    sStopCase{"VorInterrupted", false, eStop::interruption, 50}),
    [](const testing::TestParamInfo<sStopCase>& instance) {
        return std::string(instance.param.name);
    });

} // namespace kelmo

// Stopping a run: whole reports only, the exit status, and how far it came.
#include "tests/batch/batch_fixture.h"
#include "tests/support/directory_watch.h"

#include <QRegularExpression>

#include <algorithm>
#include <csignal>

namespace kelmo {

namespace {

class BatchStop : public cBatchFixture {
  protected:
    static constexpr int fileCount = 400;

    std::vector<std::string> longRun(const std::string& jobs) const {
        std::vector<std::string> arguments{
            "kev", "--output-dir=out", "--stamp=200703141530", "--set=z_slice=0.02", "--jobs",
            jobs};
        for (int i = 0; i < fileCount; ++i) {
            arguments.push_back("in/f" + std::to_string(i) + ".pdb");
            directory.linkSample("2hhb", arguments.back());
        }
        return arguments;
    }

    sProcessOutcome stopped(const std::string& jobs, int signalNumber) const {
        sProcessManner manner;
        manner.directory = directory.path();
        cBatchProcess process(longRun(jobs), manner);
        EXPECT_TRUE(process.waitForMessage("analyzed"));
        process.sendSignal(signalNumber);
        return process.finish();
    }

    /// What a report of this kind must hold: all files are the same structure.
    std::map<std::string, std::string> wholeReports() const {
        const auto out = directory.makeDirectory("whole");
        EXPECT_EQ(runAlone({"kev", "--output-dir=whole", "--stamp=200703141530",
                            "--set=z_slice=0.02", haemoglobin})
                      .exitStatus,
                  0);
        return filesIn(out);
    }

    void expectWholeReportsOf(std::size_t filesDone) const {
        const auto whole = wholeReports();
        const auto left = reports();
        EXPECT_GE(left.size(), 4 * filesDone);
        EXPECT_LT(left.size(), 4U * fileCount);
        for (const auto& [name, content] : left) {
            const auto kind = whole.find("2hhb" + name.substr(name.find('_')));
            ASSERT_TRUE(kind != whole.end()) << name;
            EXPECT_TRUE(content == kind->second) << name << " is not whole";
        }
    }
};

/// The number of analysed files in the last line of a stopped run.
std::size_t filesDone(const std::string& messages) {
    const QRegularExpression summary(
        R"(\nStopped: (\d+) of 400 files analysed, 0 failed, 0 reports missing\n\z)");
    return summary.match(QString::fromStdString(messages)).captured(1).toULong();
}

} // namespace

TEST_F(BatchStop, InterruptLeavesWholeReportsOnly) {
    const sProcessOutcome outcome = stopped("1", SIGINT);
    EXPECT_EQ(outcome.exitStatus, 130) << outcome.err;
    EXPECT_GE(filesDone(outcome.err), 1U) << outcome.err;
    expectWholeReportsOf(filesDone(outcome.err));
}

TEST_F(BatchStop, InterruptStopsAllCores) {
    const sProcessOutcome outcome = stopped("3", SIGINT);
    EXPECT_EQ(outcome.exitStatus, 130) << outcome.err;
    EXPECT_GE(filesDone(outcome.err), 1U) << outcome.err;
    expectWholeReportsOf(filesDone(outcome.err));
}

TEST_F(BatchStop, TerminationAndHangupStopTheSameWay) {
    for (const int signalNumber : {SIGTERM, SIGHUP}) {
        const sProcessOutcome outcome = stopped("2", signalNumber);
        EXPECT_EQ(outcome.exitStatus, 130) << outcome.err;
        expectWholeReportsOf(filesDone(outcome.err));
        std::filesystem::remove_all(directory.path() / "out");
        directory.makeDirectory("out");
        std::filesystem::remove_all(directory.path() / "whole");
        std::filesystem::remove_all(directory.path() / "in");
    }
}

TEST_F(BatchStop, QuietRunStillSaysHowFarItCame) {
    auto arguments = longRun("1");
    arguments.insert(arguments.begin() + 1, {"--quiet", "missing.pdb"});
    sProcessManner manner;
    manner.directory = directory.path();
    cBatchProcess process(arguments, manner);
    ASSERT_TRUE(process.waitForMessage("Could not open file missing.pdb\n"));
    process.sendSignal(SIGINT);
    const sProcessOutcome outcome = process.finish();
    EXPECT_EQ(outcome.exitStatus, 130);
    EXPECT_TRUE(contains(outcome.err, "\nFailed: missing.pdb\nStopped: ")) << outcome.err;
}

TEST_F(BatchStop, NextRunRemovesWhatAKilledOneLeft) {
    const auto leftBehind = [&] {
        const auto names = reportNames();
        return std::count_if(names.begin(), names.end(),
                             [](const std::string& name) { return name.starts_with('.'); });
    };
    sProcessManner manner;
    manner.directory = directory.path();
    const std::vector<std::string> command = longRun("2");
    // Killed when it has begun a report: few kills come too late to leave it behind.
    constexpr int mostKills = 100;
    for (int kills = 0; leftBehind() == 0; ++kills) {
        ASSERT_LT(kills, mostKills) << "every kill came too late: the test showed nothing";
        cDirectoryWatch watch(directory.path() / "out");
        cBatchProcess process(command, manner);
        ASSERT_TRUE(watch.waitForEvents(1));
        process.sendSignal(SIGKILL);
        EXPECT_EQ(process.finish().exitStatus, 128 + SIGKILL);
    }
    EXPECT_EQ(run("kev", {"--set=z_slice=0.02", haemoglobin}).exitStatus, 0);
    EXPECT_EQ(leftBehind(), 0);
    EXPECT_GE(reports().size(), 4U);
}

} // namespace kelmo

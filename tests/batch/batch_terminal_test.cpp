// On a terminal: colours, the progress bar, and the switches against both.
#include "tests/batch/batch_fixture.h"

#include <QRegularExpression>

namespace kelmo {

namespace {

class BatchTerminal : public cBatchFixture {
  protected:
    BatchTerminal() {
        manner.hasTerminal = true;
        manner.environment = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
        directory.linkSample("1ubq", "a/1ubq.pdb");
        directory.linkSample("1ubq", "b/1ubq.pdb");
    }

    /// A run with a warning, a failure and a success.
    std::string shown(std::vector<std::string> arguments = {}) const {
        arguments.insert(arguments.end(), {"--jobs=1", "missing.pdb", "a/1ubq.pdb", "b/1ubq.pdb"});
        const sProcessOutcome outcome = run("kev", arguments, manner);
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    }

    sProcessManner manner;
};

const std::string escape = "\033[";
const std::string cleared = "\r\033[K";

} // namespace

TEST_F(BatchTerminal, WarningsAreYellowErrorsRedAndProgressPlain) {
    const std::string text = shown();
    EXPECT_TRUE(contains(text, "\033[33ma/1ubq.pdb and b/1ubq.pdb have the same base name"));
    EXPECT_TRUE(contains(text, "replace those of the earlier one\033[0m\r\n"));
    EXPECT_TRUE(contains(text, cleared + "\033[31mCould not open file missing.pdb\033[0m\r\n"));
    EXPECT_TRUE(contains(text, cleared + "Structure of peptide from a/1ubq.pdb analyzed\r\n"));
    EXPECT_TRUE(contains(text, "\033[31mFailed: missing.pdb\033[0m\r\n"
                               "\033[31m2 of 3 files analysed, 1 failed, 0 reports missing\033[0m"
                               "\r\n"));
}

TEST_F(BatchTerminal, ProgressBarStandsOnOneLineBelowTheMessages) {
    const std::string text = shown();
    EXPECT_TRUE(contains(text, "[..............................] 0/3 files"));
    const QString whole = QString::fromStdString(text);
    EXPECT_TRUE(
        whole.contains(QRegularExpression(R"(\[#{30}\] 3/3 files, [0-9.e+]+ files/s, 0:00 left)")))
        << text;
    // Wherever a bar was drawn, it is cleared before anything else is written.
    auto bar = QRegularExpression(R"(\[[#.]{30}\] \d/3 files[^\r\n]*(.{4}))",
                                  QRegularExpression::DotMatchesEverythingOption)
                   .globalMatch(whole);
    int bars = 0;
    for (; bar.hasNext(); ++bars) {
        EXPECT_EQ(bar.next().captured(1).toStdString(), cleared);
    }
    EXPECT_GE(bars, 2);
    EXPECT_TRUE(text.ends_with("0 reports missing\033[0m\r\n")) << "no bar is left behind";
}

TEST_F(BatchTerminal, NoColorSwitchesColoursOffAndNothingElse) {
    manner.environment["NO_COLOR"] = "1";
    const std::string text = shown();
    EXPECT_FALSE(contains(text, "\033[3"));
    EXPECT_FALSE(contains(text, "\033[0m"));
    EXPECT_TRUE(contains(text, "0/3 files"));
}

TEST_F(BatchTerminal, NoProgressSwitchesTheBarOffAndNothingElse) {
    const std::string text = shown({"--no-progress"});
    EXPECT_FALSE(contains(text, "0/3 files"));
    EXPECT_FALSE(contains(text, cleared));
    EXPECT_TRUE(contains(text, "\033[31mFailed: missing.pdb\033[0m"));
}

TEST_F(BatchTerminal, QuietLeavesWarningsAndErrors) {
    const std::string text = shown({"--quiet"});
    EXPECT_FALSE(contains(text, "0/3 files"));
    EXPECT_FALSE(contains(text, "analyzed"));
    EXPECT_TRUE(contains(text, "\033[33ma/1ubq.pdb and b/1ubq.pdb have the same base name"));
    EXPECT_TRUE(contains(text, "\033[31mCould not open file missing.pdb\033[0m"));
}

TEST_F(BatchTerminal, DumbTerminalGetsPlainText) {
    manner.environment["TERM"] = "dumb";
    EXPECT_FALSE(contains(shown(), escape));
}

TEST_F(BatchTerminal, UsageErrorsAreRed) {
    const sProcessOutcome outcome = runAlone({"kev", "--colour"}, manner);
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_TRUE(outcome.err.starts_with("\033[31mUnknown option --colour\r\n")) << outcome.err;
}

TEST_F(BatchTerminal, WithoutATerminalTextIsPlain) {
    manner.hasTerminal = false;
    const std::string text = shown();
    EXPECT_FALSE(contains(text, "\033"));
    EXPECT_FALSE(contains(text, "\r"));
    EXPECT_FALSE(contains(text, "0/3 files"));
}

TEST_F(BatchTerminal, BarIsClearedWhenTheRunIsStopped) {
    std::vector<std::string> arguments{"kev", "--output-dir=out", "--jobs=1"};
    arguments.insert(arguments.end(), 300, haemoglobin);
    manner.directory = directory.path();
    manner.environment["NO_COLOR"] = "1";
    cBatchProcess process(arguments, manner);
    ASSERT_TRUE(process.waitForMessage("analyzed"));
    process.sendSignal(SIGINT);
    const sProcessOutcome outcome = process.finish();
    EXPECT_EQ(outcome.exitStatus, 130);
    const auto summary = outcome.err.rfind("Stopped: ");
    ASSERT_NE(summary, std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.substr(summary - cleared.size(), cleared.size()), cleared);
}

} // namespace kelmo

// Disks that are full, read-only or broken: no report is damaged, and the user is told which one is
// missing and why.
#include "tests/batch/batch_fixture.h"

#include <QRegularExpression>

#include <cerrno>
#include <cstring>
#include <set>

namespace kelmo {

namespace {

struct sFault {
    const char* call;
    int number; ///< of the call that fails
    int error;
    bool isLasting;
    std::size_t lostReports; ///< of the four
};

std::string texts(const sFault& fault) {
    return std::string(fault.call) + ':' + std::to_string(fault.number) + ':' +
           std::to_string(fault.error) + (fault.isLasting ? "+" : "");
}

sProcessManner mannerWith(const sFault& fault) {
    sProcessManner manner;
    manner.environment = {{"LD_PRELOAD", KELMO_FAILING_CALLS}, {"KELMO_FAIL", texts(fault)}};
    // A sanitizer's library wants to come before every other, for which there is no need here.
    const char* earlier = std::getenv("ASAN_OPTIONS");
    manner.environment["ASAN_OPTIONS"] =
        (earlier == nullptr ? "" : std::string(earlier) + ':') + "verify_asan_link_order=0";
    return manner;
}

/// What the first group of the pattern matches, one for each match.
std::set<std::string> namesIn(const std::string& messages, const std::string& pattern) {
    std::set<std::string> names;
    auto match =
        QRegularExpression(QString::fromStdString(pattern), QRegularExpression::MultilineOption)
            .globalMatch(QString::fromStdString(messages));
    while (match.hasNext()) {
        names.insert(match.next().captured(1).toStdString());
    }
    return names;
}

class BatchFaults : public cBatchFixture {
  protected:
    /// Reports as they are without a fault.
    std::map<std::string, std::string> wholeReports(const std::string& module,
                                                    std::vector<std::string> arguments) const {
        std::filesystem::remove_all(directory.path() / "whole");
        const auto out = directory.makeDirectory("whole");
        arguments.insert(arguments.begin(),
                         {module, "--quiet", "--output-dir=whole", "--stamp=200703141530"});
        EXPECT_EQ(runAlone(arguments).exitStatus, 0);
        return filesIn(out);
    }

    /// With an older report under every name, runs into the fault.
    void expectOlderReportsStay(const std::string& module, const sFault& fault) const {
        SCOPED_TRACE(texts(fault));
        const auto whole = wholeReports(module, {ubiquitin});
        std::filesystem::remove_all(directory.path() / "out");
        for (const auto& [name, content] : whole) {
            directory.write("out/" + name, "older");
        }
        const sProcessOutcome outcome = run(module, {"--jobs=1", ubiquitin}, mannerWith(fault));
        EXPECT_EQ(outcome.exitStatus, 1) << outcome.err;
        std::set<std::string> lost;
        const auto left = reports();
        EXPECT_EQ(left.size(), whole.size()) << "no part of a report is left";
        for (const auto& [name, content] : left) {
            ASSERT_TRUE(whole.contains(name)) << name;
            if (content == "older") {
                lost.insert("out/" + name);
            } else {
                EXPECT_TRUE(content == whole.at(name)) << name << " is not whole";
            }
        }
        EXPECT_EQ(lost.size(), fault.lostReports) << outcome.err;
        EXPECT_EQ(namesIn(outcome.err, std::string("^Could not (?:write|create) report (.+): ") +
                                           std::strerror(fault.error) + '$'),
                  lost)
            << outcome.err;
        EXPECT_EQ(namesIn(outcome.err, "^Report missing: (.+)$"), lost) << outcome.err;
    }
};

} // namespace

// Whether a file can be created is tried out before the run: the first "open" and "close" are that
// file's.

TEST_F(BatchFaults, ReportThatCannotBeCreatedLeavesTheOlderOne) {
    for (const sFault& fault :
         {sFault{"open", 2, EROFS, true, 4}, sFault{"open", 3, ENOSPC, false, 1},
          sFault{"open", 4, EMFILE, false, 1}, sFault{"dup", 1, EMFILE, true, 4},
          sFault{"dup", 2, EMFILE, false, 1}}) {
        expectOlderReportsStay("kev", fault);
    }
}

TEST_F(BatchFaults, ReportThatCannotBeWrittenLeavesTheOlderOne) {
    for (const sFault& fault :
         {sFault{"write", 1, ENOSPC, true, 4}, sFault{"write", 1, EIO, false, 1},
          sFault{"write", 3, EDQUOT, false, 1}, sFault{"write", 2, ENOSPC, true, 4},
          sFault{"write", 3, ENOSPC, true, 3}}) {
        expectOlderReportsStay("kev", fault);
    }
    expectOlderReportsStay("vor", {"write", 1, ENOSPC, true, 6});
    expectOlderReportsStay("vor", {"write", 1, EIO, false, 1});
}

TEST_F(BatchFaults, ReportThatCannotBeClosedLeavesTheOlderOne) {
    expectOlderReportsStay("kev", {"close", 2, EIO, false, 1});
    expectOlderReportsStay("vor", {"close", 4, ENOSPC, false, 1});
}

TEST_F(BatchFaults, ReportThatCannotBeRenamedLeavesTheOlderOne) {
    expectOlderReportsStay("kev", {"rename", 1, ENOSPC, false, 1});
    expectOlderReportsStay("kev", {"rename", 3, EROFS, true, 2});
    expectOlderReportsStay("vor", {"rename", 6, EIO, false, 1});
}

TEST_F(BatchFaults, NothingIsStartedWhereNothingCanBeCreated) {
    const sProcessOutcome outcome =
        run("kev", {ubiquitin}, mannerWith({"open", 1, EROFS, true, 4}));
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.err, "No file can be created in the output directory out/: "
                           "Read-only file system\n");
    EXPECT_TRUE(reports().empty());
}

TEST_F(BatchFaults, DiskThatFillsUpLosesNothingThatWasWritten) {
    std::vector<std::string> names;
    for (int i = 0; i < 8; ++i) {
        names.push_back("in/f" + std::to_string(i) + ".pdb");
        directory.linkSample("1ubq", names.back());
    }
    const auto whole = wholeReports("kev", names);
    for (const char* jobs : {"--jobs=1", "--jobs=3"}) {
        auto arguments = names;
        arguments.insert(arguments.begin(), jobs);
        const sProcessOutcome full =
            run("kev", arguments, mannerWith({"write", 20, ENOSPC, true, 0}));
        EXPECT_EQ(full.exitStatus, 1);
        EXPECT_TRUE(contains(full.err, ": No space left on device\n")) << full.err;
        EXPECT_TRUE(contains(full.err, "8 of 8 files analysed, 0 failed, ")) << full.err;
        const auto left = reports();
        EXPECT_GT(left.size(), 0U);
        EXPECT_LT(left.size(), whole.size());
        for (const auto& [name, content] : left) {
            ASSERT_TRUE(whole.contains(name)) << name;
            EXPECT_TRUE(content == whole.at(name)) << name << " is not whole";
        }
        // There is room again.
        arguments.insert(arguments.begin(), "--resume");
        EXPECT_EQ(run("kev", arguments).exitStatus, 0);
        EXPECT_TRUE(reports() == whole);
        std::filesystem::remove_all(directory.path() / "out");
        directory.makeDirectory("out");
    }
}

TEST_F(BatchFaults, FaultThatPassesCostsOneReport) {
    const sProcessOutcome outcome =
        run("kev", {"--jobs=1", ubiquitin, antibody}, mannerWith({"write", 1, ENOSPC, false, 1}));
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(reports().size(), 7U);
    EXPECT_TRUE(outcome.err.ends_with("Report missing: out/1ubq_200703141530_bound.xml\n"
                                      "2 of 2 files analysed, 0 failed, 1 report missing\n"))
        << outcome.err;
}

TEST_F(BatchFaults, DirectoryThatGoesAwayIsToldAtOnce) {
    std::vector<std::string> arguments{"kev", "--output-dir=out", "--stamp=200703141530",
                                       "--jobs=1", "--set=z_slice=0.02"};
    for (int i = 0; i < 30; ++i) {
        arguments.push_back("in/f" + std::to_string(i) + ".pdb");
        directory.linkSample("1ubq", arguments.back());
    }
    sProcessManner manner;
    manner.directory = directory.path();
    cBatchProcess process(arguments, manner);
    ASSERT_TRUE(process.waitForMessage("f0.pdb analyzed"));
    std::filesystem::rename(directory.path() / "out", directory.path() / "gone");
    EXPECT_TRUE(process.waitForMessage("Could not create report out/f"));
    const sProcessOutcome outcome = process.finish();
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(contains(outcome.err, "Could not create report out/f29_200703141530_bound.xml: "
                                      "No such file or directory\n"))
        << outcome.err;
    EXPECT_TRUE(contains(outcome.err, "Report missing: out/f29_200703141530_unbound.tbl\n"
                                      "30 of 30 files analysed, 0 failed, "))
        << outcome.err;
}

TEST_F(BatchFaults, FileThatLetsItsReaderWaitFails) {
    directory.linkSample("2hhb", "silent.pdb");
    for (const int read : {1, 3}) {
        const sProcessOutcome outcome = run("kev", {"--jobs=1", "silent.pdb", ubiquitin},
                                            mannerWith({"wait", read, 0, false, 0}));
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_TRUE(contains(outcome.err, "Could not read PDB file silent.pdb: It claims to be a "
                                          "regular file but lets its reader wait\n"))
            << outcome.err;
        EXPECT_EQ(reports().size(), 4U);
    }
}

TEST_F(BatchFaults, InterruptedCallsAreMadeAgain) {
    const auto whole = wholeReports("vor", {ubiquitin});
    const std::string messages = run("vor", {"--jobs=1", ubiquitin}).err;
    for (const char* call : {"write", "tell", "read"}) {
        for (const int number : {1, 2, 3}) {
            const sProcessOutcome outcome =
                run("vor", {"--jobs=1", ubiquitin}, mannerWith({call, number, EINTR, false, 0}));
            EXPECT_EQ(outcome.exitStatus, 0) << call << number;
            EXPECT_EQ(outcome.err, messages) << call << number;
            EXPECT_TRUE(reports() == whole) << call << number;
        }
    }
}

TEST_F(BatchFaults, FileThatCannotBeReadToItsEndFails) {
    directory.linkSample("2hhb", "broken.pdb");
    for (const int read : {1, 3}) {
        const sProcessOutcome outcome = run("vor", {"--jobs=1", "broken.pdb", ubiquitin},
                                            mannerWith({"read", read, EIO, false, 0}));
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_TRUE(
            contains(outcome.err, "Could not read PDB file broken.pdb: Input/output error\n"))
            << outcome.err;
        EXPECT_TRUE(outcome.err.ends_with("Failed: broken.pdb\n"
                                          "1 of 2 files analysed, 1 failed, 0 reports missing\n"))
            << outcome.err;
        EXPECT_EQ(reports().size(), 6U);
    }
}

} // namespace kelmo

// Resuming an interrupted run: what is whole is taken over, everything else is computed, and the
// outcome is that of a run that was never interrupted.
#include "batch/resume.h"
#include "tests/batch/batch_fixture.h"

#include <array>
#include <chrono>
#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>

namespace kelmo {

namespace fs = std::filesystem;

namespace {

using tReports = std::map<std::string, std::string>;

class BatchResume : public cBatchFixture {
  protected:
    BatchResume() {
        for (const char* code : {"1ubq", "1a0q"}) {
            directory.linkSample(code, std::string(code) + ".pdb");
        }
    }

    sProcessOutcome resume(const std::string& module, std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--resume", "--jobs=1"});
        return run(module, arguments);
    }
    void removeReport(const std::string& name) const {
        EXPECT_TRUE(fs::remove(directory.path() / "out" / name)) << name;
    }
};

} // namespace

TEST_F(BatchResume, WholeReportsAreTakenOver) {
    EXPECT_EQ(run("kev", {"1ubq.pdb", "1a0q.pdb"}).exitStatus, 0);
    const tReports whole = reports();
    const auto written =
        fs::last_write_time(directory.path() / "out" / "1ubq_200703141530_bound.xml");
    const sProcessOutcome outcome = resume("kev", {"1ubq.pdb", "1a0q.pdb"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "Reports of 1ubq.pdb taken over\n"
                           "Reports of 1a0q.pdb taken over\n"
                           "0 of 2 files analysed, 2 taken over, 0 failed, 0 reports missing\n");
    EXPECT_TRUE(reports() == whole);
    EXPECT_EQ(fs::last_write_time(directory.path() / "out" / "1ubq_200703141530_bound.xml"),
              written);
}

TEST_F(BatchResume, WithoutReportsEverythingIsComputed) {
    const sProcessOutcome outcome = resume("kev", {"1ubq.pdb"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "Analysing structure of peptide from 1ubq.pdb...\n"
                           "Not analysed in 1ubq.pdb: 58 waters. See preparation.\n"
                           "Structure of peptide from 1ubq.pdb analyzed\n"
                           "1 of 1 file analysed, 0 taken over, 0 failed, 0 reports missing\n");
    EXPECT_EQ(reports().size(), 4U);
}

TEST_F(BatchResume, FileThatLacksOneReportIsComputedAnew) {
    for (const std::string module : {"kev", "vor"}) {
        EXPECT_EQ(run(module, {"1ubq.pdb", "1a0q.pdb"}).exitStatus, 0);
        const tReports whole = reports();
        for (const auto& [name, content] : whole) {
            if (!name.starts_with("1a0q")) {
                continue;
            }
            removeReport(name);
            const sProcessOutcome outcome = resume(module, {"1ubq.pdb", "1a0q.pdb"});
            EXPECT_EQ(outcome.exitStatus, 0);
            EXPECT_TRUE(outcome.err.starts_with("Reports of 1ubq.pdb taken over\nAnalysing "))
                << outcome.err;
            EXPECT_TRUE(outcome.err.ends_with(
                "\n1 of 2 files analysed, 1 taken over, 0 failed, 0 reports missing\n"))
                << outcome.err;
            EXPECT_TRUE(reports() == whole) << name;
        }
        fs::remove_all(directory.path() / "out");
        directory.makeDirectory("out");
    }
}

TEST_F(BatchResume, OnlyTheReportsThatAreAskedForCount) {
    struct sChoice {
        std::string module;
        std::vector<std::string> settings;
        std::size_t reports;
    };
    const sChoice choices[] = {
        {"kev", {"--set=analyze_unbound=0", "--set=write_xml=0"}, 1},
        {"kev", {"--set=analyze_bound=0"}, 2},
        {"vor", {"--set=contact_criterion=3", "--set=write_contacts=1", "--set=write_table=0"}, 3},
        {"vor",
         {"--set=contact_criterion=3", "--set=write_contacts=1", "--set=write_binding_residues=0",
          "--set=write_binding_state=0"},
         2},
        {"vor", {"--set=contact_criterion=3"}, 4},
        {"vor", {"--set=contact_criterion=4", "--set=write_contacts=0"}, 4},
        {"vor", {"--set=contact_criterion=2"}, 6},
    };
    for (const sChoice& choice : choices) {
        auto arguments = choice.settings;
        // Without any contact between chains: its reports have no entries but exist.
        arguments.push_back("1ubq.pdb");
        EXPECT_EQ(run(choice.module, arguments).exitStatus, 0);
        EXPECT_EQ(reports().size(), choice.reports);
        EXPECT_TRUE(
            contains(resume(choice.module, arguments).err, "\n0 of 1 file analysed, 1 taken over"));
        // More reports than those are asked for: the file is computed anew.
        const bool hasAll = choice.reports == (choice.module == "kev" ? 4U : 6U);
        EXPECT_EQ(contains(resume(choice.module, {"1ubq.pdb"}).err, "0 of 1 file analysed"),
                  hasAll);
        fs::remove_all(directory.path() / "out");
        directory.makeDirectory("out");
    }
}

TEST_F(BatchResume, EmptyReportAndDirectoryOfItsNameAreNoReports) {
    EXPECT_EQ(run("kev", {"1ubq.pdb"}).exitStatus, 0);
    const tReports whole = reports();
    directory.write("out/1ubq_200703141530_bound.tbl", "");
    EXPECT_EQ(resume("kev", {"1ubq.pdb"}).exitStatus, 0);
    EXPECT_TRUE(reports() == whole);
    removeReport("1ubq_200703141530_bound.tbl");
    directory.makeDirectory("out/1ubq_200703141530_bound.tbl");
    EXPECT_EQ(resume("kev", {"1ubq.pdb"}).exitStatus, 1);
}

TEST_F(BatchResume, FileThatIsNewerThanAReportIsComputedAnew) {
    const fs::path input = directory.path() / "own.pdb";
    fs::copy_file(ubiquitin, input);
    EXPECT_EQ(run("kev", {"own.pdb", "1a0q.pdb"}).exitStatus, 0);
    fs::copy_file(antibody, input, fs::copy_options::overwrite_existing);
    fs::last_write_time(input, fs::file_time_type::clock::now() + std::chrono::hours(1));
    const sProcessOutcome outcome = resume("kev", {"own.pdb", "1a0q.pdb"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(contains(outcome.err, "Structure of peptide from own.pdb analyzed\n"
                                      "Reports of 1a0q.pdb taken over\n"))
        << outcome.err;
    EXPECT_TRUE(contains(reports().at("own_200703141530_bound.tbl"), "pdb_id: 1A0Q"));
}

TEST_F(BatchResume, TimesAreComparedToTheNanosecond) {
    const std::string input = directory.write("own.pdb", "x").string();
    const std::string report = directory.write("own.tbl", "x").string();
    const auto setTime = [](const std::string& path, long nanoseconds) {
        const std::array<timespec, 2> times{{{1, nanoseconds}, {1, nanoseconds}}};
        EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
    };
    setTime(input, 500);
    for (const auto& [time, isUpToDate] : {std::pair(499L, false), {500L, true}, {501L, true}}) {
        setTime(report, time);
        EXPECT_EQ(areUpToDate({QString::fromStdString(report)}, input), isUpToDate) << time;
    }
}

TEST_F(BatchResume, FilesThatFailedAreTriedAgain) {
    directory.write("bad.pdb", "ATOM      1  N   ALA A   1      here\n");
    const std::vector<std::string> files{"bad.pdb", "missing.pdb", "1ubq.pdb"};
    EXPECT_EQ(run("kev", files).exitStatus, 1);
    const sProcessOutcome again = resume("kev", files);
    EXPECT_EQ(again.exitStatus, 1);
    EXPECT_EQ(again.err, "Analysing structure of peptide from bad.pdb...\n"
                         "There was an error in PDB file bad.pdb at line 1\n"
                         "Could not open file missing.pdb\n"
                         "Reports of 1ubq.pdb taken over\n"
                         "Failed: bad.pdb\n"
                         "Failed: missing.pdb\n"
                         "0 of 3 files analysed, 1 taken over, 2 failed, 0 reports missing\n");
    directory.linkSample("1a0q", "missing.pdb");
    fs::remove(directory.path() / "bad.pdb");
    fs::copy_file(ubiquitin, directory.path() / "bad.pdb");
    EXPECT_EQ(resume("kev", files).exitStatus, 0);
    EXPECT_EQ(reports().size(), 12U);
}

TEST_F(BatchResume, FileThatIsGoneFailsAlthoughItsReportsAreThere) {
    EXPECT_EQ(run("kev", {"1ubq.pdb"}).exitStatus, 0);
    fs::remove(directory.path() / "1ubq.pdb");
    const sProcessOutcome outcome = resume("kev", {"1ubq.pdb"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(outcome.err.starts_with("Could not open file 1ubq.pdb\n")) << outcome.err;
    EXPECT_EQ(reports().size(), 4U);
}

TEST_F(BatchResume, FilesWithTheSameBaseNameAreComputedAnew) {
    directory.linkSample("1a0q", "a/x.pdb");
    directory.linkSample("1ubq", "b/x.pdb");
    const std::vector<std::string> files{"a/x.pdb", "1a0q.pdb", "b/x.pdb"};
    EXPECT_EQ(run("kev", files).exitStatus, 0);
    const tReports whole = reports();
    // As if it had been interrupted before the second file of that name.
    EXPECT_EQ(run("kev", {"a/x.pdb"}).exitStatus, 0);
    EXPECT_FALSE(reports() == whole);
    for (const char* jobs : {"--jobs=1", "--jobs=4"}) {
        const sProcessOutcome outcome =
            run("kev", {"--resume", jobs, files[0], files[1], files[2]});
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_TRUE(outcome.err.ends_with(
            "2 of 3 files analysed, 1 taken over, 0 failed, 0 reports missing\n"))
            << outcome.err;
        EXPECT_TRUE(reports() == whole);
    }
}

TEST_F(BatchResume, OtherStampsAndModulesAreOtherRuns) {
    EXPECT_EQ(runAlone({"kev", "--output-dir=out", "--stamp=200703141531", "1ubq.pdb"}).exitStatus,
              0);
    EXPECT_EQ(run("vor", {"1ubq.pdb"}).exitStatus, 0);
    EXPECT_TRUE(contains(resume("kev", {"1ubq.pdb"}).err, "1 of 1 file analysed, 0 taken over"));
    EXPECT_EQ(reports().size(), 14U);
}

TEST_F(BatchResume, QuietRunSaysNothingOfFilesTakenOver) {
    EXPECT_EQ(run("kev", {"1ubq.pdb"}).exitStatus, 0);
    EXPECT_EQ(resume("kev", {"--quiet", "1ubq.pdb"}).err, "");
}

TEST_F(BatchResume, NamesOfAnyBytesAreTakenOver) {
    directory.linkSample("1ubq", "f\xfcr \n.pdb");
    EXPECT_EQ(run("vor", {"f\xfcr \n.pdb"}).exitStatus, 0);
    const sProcessOutcome outcome = resume("vor", {"f\xfcr \n.pdb"});
    EXPECT_TRUE(outcome.err.starts_with("Reports of f\xef\xbf\xbdr ?.pdb taken over\n"))
        << outcome.err;
}

TEST_F(BatchResume, InterruptedRunIsCompleted) {
    std::vector<std::string> names;
    for (int i = 0; i < 24; ++i) {
        names.push_back("in/f" + std::to_string(i) + ".pdb");
        directory.linkSample("1ubq", names.back());
    }
    directory.makeDirectory("whole");
    const auto commandInto = [&](const std::string& out, std::vector<std::string> more) {
        more.insert(more.begin(), {"kev", "--output-dir=" + out, "--stamp=200703141530",
                                   "--set=z_slice=0.05", "--jobs=2"});
        more.insert(more.end(), names.begin(), names.end());
        return more;
    };
    EXPECT_EQ(runAlone(commandInto("whole", {})).exitStatus, 0);
    sProcessManner manner;
    manner.directory = directory.path();
    cBatchProcess process(commandInto("out", {}), manner);
    ASSERT_TRUE(process.waitForMessage("f5.pdb analyzed"));
    process.sendSignal(SIGINT);
    EXPECT_EQ(process.finish().exitStatus, 130);
    const sProcessOutcome outcome = runAlone(commandInto("out", {"--resume"}));
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(contains(outcome.err, " of 24 files analysed, ")) << outcome.err;
    EXPECT_FALSE(contains(outcome.err, "24 of 24 files analysed, ")) << outcome.err;
    EXPECT_FALSE(contains(outcome.err, "\n0 of 24 files analysed, ")) << outcome.err;
    EXPECT_TRUE(reports() == filesIn(directory.path() / "whole"));
}

} // namespace kelmo

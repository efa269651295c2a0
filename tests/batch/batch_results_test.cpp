// Results files of kelmo-batch: what stands in them, whatever the number of jobs, and that nothing
// is lost of them.
#include "tests/batch/batch_fixture.h"

#include "results/database.h"
#include "results/file_identity.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace kelmo {

namespace {

class BatchResults : public cBatchFixture {
  protected:
    /// Runs with results in r.sqlite and without reports.
    sProcessOutcome runInto(const std::string& module, std::vector<std::string> arguments,
                            sProcessManner manner = {}) const {
        arguments.insert(arguments.begin(), {module, "--reports=none", "--results=" + resultsName});
        return runAlone(arguments, std::move(manner));
    }

    cDatabase results(const std::string& name = "r.sqlite") const {
        return {directory.file(name), cDatabase::eMode::readOnly};
    }

    /// All rows of a query, values with "|" between them.
    std::vector<std::string> rowsOf(const std::string& sql,
                                    const std::string& name = "r.sqlite") const {
        cDatabase database = results(name);
        cStatement select = database.prepare(sql);
        std::vector<std::string> rows;
        while (select.step()) {
            std::string row;
            for (int i = 0; i < select.columnCount(); ++i) {
                row += (i == 0 ? "" : "|") + std::string(select.bytes(i));
            }
            rows.push_back(row);
        }
        return rows;
    }
    std::string valueOf(const std::string& sql, const std::string& name = "r.sqlite") const {
        const std::vector<std::string> rows = rowsOf(sql, name);
        return rows.size() == 1 ? rows.front() : std::to_string(rows.size()) + " rows";
    }

    /// Every row of every table but the times of runs, as they come without an order.
    std::vector<std::string> allRows(const std::string& name = "r.sqlite") const {
        std::vector<std::string> rows =
            rowsOf("SELECT id, module, version, first_structure, inputs FROM runs", name);
        for (const char* table : {"settings", "parameter_tables", "columns", "structures", "chains",
                                  "residues", "contacts", "contact_types"}) {
            const std::vector<std::string> more =
                rowsOf("SELECT * FROM " + std::string(table), name);
            rows.insert(rows.end(), more.begin(), more.end());
        }
        return rows;
    }

    void expectSound(const std::string& name = "r.sqlite") const {
        EXPECT_EQ(valueOf("PRAGMA integrity_check", name), "ok");
        EXPECT_TRUE(rowsOf("PRAGMA foreign_key_check", name).empty());
    }

    int checkReports() const {
        return std::system(("python3 '" + sourcePath("tests/results/check_reports.py").string() +
                            "' '" + directory.file("r.sqlite") + "' '" + directory.file("out") +
                            "' >'" + directory.file("differences") + "' 2>&1")
                               .c_str());
    }

    /// A chain of so many glycines, which tells files apart.
    std::string linkMany(int count) const {
        std::string list;
        for (int i = 0; i < count; ++i) {
            const std::string name = "in/f" + std::to_string(i) + ".pdb";
            directory.linkSample(i % 7 == 0 ? "1a0q" : "1ubq", name);
            list += name + '\n';
        }
        directory.write("all.fls", list);
        return "--list=all.fls";
    }

    const std::string resultsName = "r.sqlite";
};

} // namespace

TEST_F(BatchResults, HoldEveryNumberOfTheReports) {
    const std::vector<std::string> samples{ubiquitin, haemoglobin, antibody};
    const auto runBoth = [&](const std::string& module, int id, const std::string& set) {
        std::vector<std::string> arguments{module,
                                           "--output-dir=out",
                                           "--results=r.sqlite",
                                           "--reports=xml",
                                           "--stamp=20070314153" + std::to_string(id),
                                           set};
        arguments.insert(arguments.end(), samples.begin(), samples.end());
        const sProcessOutcome outcome = runAlone(arguments);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    };
    runBoth("kev", 1, "--set=write_xml=1");
    for (int criterion = 1; criterion <= 4; ++criterion) {
        runBoth("vor", criterion + 1, "--set=contact_criterion=" + std::to_string(criterion));
    }
    EXPECT_EQ(checkReports(), 0) << contentOf(directory.path() / "differences");
    EXPECT_TRUE(contains(contentOf(directory.path() / "differences"), "'reports': 39"))
        << contentOf(directory.path() / "differences");
    expectSound();
    // The check can fail.
    {
        cDatabase database(directory.file("r.sqlite"), cDatabase::eMode::readWrite);
        database.execute("UPDATE residues SET cx_average_bound = cx_average_bound + 1e-4 "
                         "WHERE structure = 1 AND residue = 7");
    }
    EXPECT_NE(checkReports(), 0);
}

TEST_F(BatchResults, RowsDoNotDependOnTheNumberOfJobs) {
    const std::string list = linkMany(40);
    std::filesystem::remove(directory.path() / "in/f3.pdb"); // not the sample that it links to
    directory.write("in/f3.pdb", "no structure\n");
    std::vector<std::string> rows;
    for (const char* jobs : {"--jobs=1", "--jobs=2", "--jobs=7"}) {
        std::filesystem::remove(directory.path() / "r.sqlite");
        EXPECT_EQ(runInto("kev", {jobs, "--quiet", list}).exitStatus, 1);
        EXPECT_EQ(runInto("vor", {jobs, "--quiet", list}).exitStatus, 1);
        expectSound();
        if (rows.empty()) {
            rows = allRows();
        }
        EXPECT_TRUE(allRows() == rows) << jobs;
    }
    EXPECT_EQ(namesIn(directory.path()).size(), 2U) << "one file remains, beside the list";
    EXPECT_TRUE(reports().empty());
}

TEST_F(BatchResults, FailedFilesHaveTheirRowWithTheReason) {
    directory.write("empty.pdb", "");
    directory.write("odd.pdb", "ATOM      1  CA  ODD A   1       0.000   0.000   0.000\n");
    EXPECT_EQ(runInto("kev", {"empty.pdb", ubiquitin, "missing.pdb", "odd.pdb"}).exitStatus, 1);
    EXPECT_EQ(
        rowsOf("SELECT structures.id, input, path, status, message, residues, ended IS NOT NULL "
               "FROM structures JOIN runs ON runs.id = run"),
        (std::vector<std::string>{
            "1|1|empty.pdb|failed|No atoms found in PDB file empty.pdb||1",
            "2|2|" + ubiquitin + "|analysed||76|1",
            "3|3|missing.pdb|failed|Could not open file missing.pdb||1",
            "4|4|odd.pdb|analysed|The following radii were not found in radii file: "
            "ODD_CA; \nNot analysed in odd.pdb: 1 residue of no known type (ODD). See "
            "preparation.|1|1"}));
    EXPECT_EQ(valueOf("SELECT count(*) FROM structures WHERE status = 'failed' AND "
                      "(asa_total_bound IS NOT NULL OR residues IS NOT NULL)"),
              "0");
    EXPECT_EQ(valueOf("SELECT not_analysed FROM structures WHERE id = 4"),
              "Not analysed in odd.pdb: 1 residue of no known type (ODD). See preparation.");
    EXPECT_EQ(valueOf("SELECT sha256 FROM structures WHERE id = 2"), sha256Of(sampleText("1ubq")));
    EXPECT_EQ(valueOf("SELECT sha256 IS NULL FROM structures WHERE id = 3"), "1");
}

TEST_F(BatchResults, TellWhatTheRunWentBy) {
    EXPECT_EQ(runInto("kev", {"--set=z_slice=0.30000001", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(valueOf("SELECT value FROM settings WHERE key = 'z_slice'"), "0.30000001");
    EXPECT_EQ(rowsOf("SELECT key, path, sha256 FROM parameter_tables")[1],
              "radii_filename|" + sourcePath("data/protor.radii").string() + '|' +
                  sha256Of(sourceText("data/protor.radii")));
    EXPECT_EQ(valueOf("SELECT name || ' in ' || unit FROM columns WHERE \"table\" = 'residues' "
                      "AND name LIKE 'dpx_average_bound'"),
              "dpx_average_bound in Å");
    EXPECT_EQ(valueOf("SELECT count(*) FROM pragma_table_info('residues')"),
              valueOf("SELECT count(*) FROM columns WHERE \"table\" = 'residues'"));
    EXPECT_EQ(valueOf("PRAGMA application_id") + ' ' + valueOf("PRAGMA user_version"),
              "1263291727 1");
}

TEST_F(BatchResults, HoldNoValuesOfWhatWasNotAskedFor) {
    EXPECT_EQ(runInto("kev", {"--set=calc_cx=0", "--set=analyze_unbound=0", ubiquitin}).exitStatus,
              0);
    EXPECT_EQ(valueOf("SELECT count(asa_total_bound), count(cx_average_bound), "
                      "count(asa_total_unbound), count(is_binding) FROM residues"),
              "76|0|0|0");
}

TEST_F(BatchResults, HostileNamesComeBackAsTheyWere) {
    const std::vector<std::string> names{
        "a'b\"c;--.pdb",        "'); DROP TABLE structures; --.pdb",
        "<b>&amp;.pdb",         "tab\tand\nline.pdb",
        "no \xff utf \x80.pdb", "\xc3\xa5ngstr\xc3\xb6m.pdb",
        "%s%n$1`id`.pdb",       std::string(1'000'000, 'x') + ".pdb"};
    std::string list;
    std::vector<std::string> arguments;
    for (const std::string& name : names) {
        if (name.size() < 200) {
            directory.linkSample("1ubq", name);
        }
        if (name.find('\n') == std::string::npos) {
            list += name + '\n';
        } else {
            arguments.push_back(name);
        }
    }
    directory.write("all.fls", list);
    arguments.insert(arguments.begin(), "--list=all.fls");
    EXPECT_EQ(runInto("kev", arguments).exitStatus, 1) << "one name is too long for a file";
    std::vector<std::string> stored = rowsOf("SELECT path FROM structures");
    std::vector<std::string> wanted = names;
    std::ranges::sort(stored);
    std::ranges::sort(wanted);
    EXPECT_TRUE(stored == wanted);
    EXPECT_EQ(valueOf("SELECT count(*) FROM structures WHERE typeof(path) = 'blob'"), "1");
    expectSound();
}

TEST_F(BatchResults, SecondRunIntoOneFileIsRefusedWhileTheFirstGoesOn) {
    const std::string list = linkMany(30);
    sProcessManner manner;
    manner.directory = directory.path();
    cBatchProcess first(
        {"kev", "--reports=none", "--results=r.sqlite", "--jobs=1", "--set=z_slice=0.02", list},
        manner);
    ASSERT_TRUE(first.waitForMessage("f1.pdb analyzed"));
    const sProcessOutcome second = runInto("vor", {ubiquitin});
    EXPECT_EQ(second.exitStatus, 2);
    EXPECT_EQ(second.err, "Could not open results file r.sqlite: another run or program is using "
                          "it\n");
    EXPECT_EQ(first.finish().exitStatus, 0);
    EXPECT_EQ(valueOf("SELECT count(*) FROM structures WHERE status = 'analysed'"), "30");
    expectSound();
    EXPECT_EQ(
        runAlone({"vor", "--reports=none", "--results=r.sqlite", "--results=r.sqlite", ubiquitin})
            .exitStatus,
        2)
        << "one file named twice";
}

TEST_F(BatchResults, OtherFilesAreRefusedAndStayAsTheyWere) {
    directory.write("r.sqlite", "This is no database, but it is longer than any header of one.\n");
    const std::string before = contentOf(directory.path() / "r.sqlite");
    EXPECT_EQ(runInto("kev", {ubiquitin}).err,
              "Could not open results file r.sqlite: file is not a database\n");
    EXPECT_EQ(contentOf(directory.path() / "r.sqlite"), before);
    std::filesystem::remove(directory.path() / "r.sqlite");
    {
        cDatabase other(directory.file("r.sqlite"), cDatabase::eMode::create);
        other.execute("CREATE TABLE structures (id INTEGER)");
    }
    EXPECT_EQ(runInto("kev", {ubiquitin}).err,
              "Could not open results file r.sqlite is a database of another program\n");
    EXPECT_EQ(valueOf("SELECT count(*) FROM sqlite_schema"), "1");
    EXPECT_EQ(runAlone({"kev", "--results=missing/r.sqlite", ubiquitin}).err,
              "Could not open results file missing/r.sqlite: unable to open database file\n");
    const sProcessOutcome unknown = runAlone({"kev", "--results=r.xlsx", ubiquitin});
    EXPECT_EQ(unknown.exitStatus, 2);
    EXPECT_TRUE(unknown.err.starts_with("Option --results needs a file whose name ends in "))
        << unknown.err;
    EXPECT_TRUE(reports().empty());
}

TEST_F(BatchResults, ReportsAreThoseThatAreNamed) {
    EXPECT_EQ(run("kev", {"--reports=table", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(reportNames(), (std::vector<std::string>{"1ubq_200703141530_bound.tbl",
                                                       "1ubq_200703141530_unbound.tbl"}));
    EXPECT_EQ(run("kev", {"--reports=xml,table", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(reports().size(), 4U);
    EXPECT_EQ(run("vor", {"--reports=none", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(reports().size(), 4U);
    for (const char* wrong : {"--reports=", "--reports=html", "--reports=xml,none"}) {
        EXPECT_EQ(run("kev", {wrong, ubiquitin}).exitStatus, 2) << wrong;
    }
}

TEST_F(BatchResults, ResumedRunHasTheRowsOfAnUninterruptedOne) {
    const std::string list = linkMany(30);
    EXPECT_EQ(runInto("kev", {list}).exitStatus, 0);
    const std::vector<std::string> whole = allRows();
    std::filesystem::remove(directory.path() / "r.sqlite");

    sProcessManner manner;
    manner.directory = directory.path();
    cBatchProcess process({"kev", "--reports=none", "--results=r.sqlite", "--jobs=2", list},
                          manner);
    ASSERT_TRUE(process.waitForMessage("f9.pdb analyzed"));
    process.sendSignal(SIGINT);
    EXPECT_EQ(process.finish().exitStatus, 130);
    const int done =
        std::stoi(valueOf("SELECT count(*) FROM structures WHERE status <> 'pending'"));
    EXPECT_GE(done, 9);
    EXPECT_LT(done, 30);
    EXPECT_EQ(valueOf("SELECT count(*) FROM structures"), "30");
    EXPECT_EQ(valueOf("SELECT ended IS NULL FROM runs"), "1");

    const sProcessOutcome resumed = runInto("kev", {"--resume", list});
    EXPECT_EQ(resumed.exitStatus, 0) << resumed.err;
    EXPECT_TRUE(contains(resumed.err, std::to_string(30 - done) + " of 30 files analysed, " +
                                          std::to_string(done) + " taken over, 0 failed"))
        << resumed.err;
    EXPECT_TRUE(allRows() == whole);
    expectSound();
}

TEST_F(BatchResults, KilledRunLeavesASoundFileThatIsResumed) {
    const std::string list = linkMany(30);
    EXPECT_EQ(runInto("kev", {list}).exitStatus, 0);
    const std::vector<std::string> whole = allRows();
    bool wasInterrupted = false;
    for (int i = 0; i < 5; ++i) {
        std::filesystem::remove(directory.path() / "r.sqlite");
        sProcessManner manner;
        manner.directory = directory.path();
        cBatchProcess process({"kev", "--reports=none", "--results=r.sqlite", "--jobs=2", list},
                              manner);
        ASSERT_TRUE(process.waitForMessage("f" + std::to_string(3 * i) + ".pdb analyzed"));
        std::this_thread::sleep_for(std::chrono::milliseconds(3 * i));
        process.sendSignal(SIGKILL);
        process.finish();
        {
            // Who opens it for writing first takes back what was not whole.
            cDatabase database(directory.file("r.sqlite"), cDatabase::eMode::readWrite);
            EXPECT_EQ(database.integerOf("SELECT count(*) FROM runs"), 1);
            wasInterrupted =
                wasInterrupted ||
                database.integerOf("SELECT count(*) FROM runs WHERE ended IS NULL") > 0;
        }
        expectSound();
        EXPECT_EQ(valueOf("SELECT count(*) FROM structures s WHERE status = 'analysed' AND "
                          "residues <> (SELECT count(*) FROM residues r WHERE r.structure = s.id)"),
                  "0");
        EXPECT_EQ(runInto("kev", {"--resume", list}).exitStatus, 0);
        EXPECT_TRUE(allRows() == whole);
    }
    EXPECT_TRUE(wasInterrupted) << "every run had ended by then: the test showed nothing";
}

TEST_F(BatchResults, FaultsOfTheDiskLoseNothingThatWasCommitted) {
    const std::string list = linkMany(20);
    EXPECT_EQ(runInto("kev", {list}).exitStatus, 0);
    const std::vector<std::string> whole = allRows();
    const auto expectNothingIsLost = [&](const std::string& fault, std::size_t sizeLimit,
                                         int exitStatus) {
        SCOPED_TRACE(fault);
        std::filesystem::remove(directory.path() / "r.sqlite");
        sProcessManner manner;
        manner.fileSizeLimit = sizeLimit;
        if (!fault.empty()) {
            manner.environment = {{"LD_PRELOAD", KELMO_FAILING_CALLS}, {"KELMO_FAIL", fault}};
            const char* earlier = std::getenv("ASAN_OPTIONS");
            manner.environment["ASAN_OPTIONS"] =
                (earlier == nullptr ? "" : std::string(earlier) + ':') + "verify_asan_link_order=0";
        }
        const sProcessOutcome outcome = runInto("kev", {"--jobs=2", list}, manner);
        EXPECT_EQ(outcome.exitStatus, exitStatus) << outcome.err;
        EXPECT_TRUE(contains(outcome.err, exitStatus == 2
                                              ? "Could not open results file r.sqlite: "
                                              : "Could not write results file r.sqlite: "))
            << outcome.err;
        // There is room again.
        EXPECT_EQ(runInto("kev", {"--resume", list}).exitStatus, 0);
        expectSound();
        EXPECT_TRUE(allRows() == whole);
    };
    expectNothingIsLost("", 400'000, 1);
    expectNothingIsLost("pwrite:1:28+", 0, 2);
    expectNothingIsLost("pwrite:30:28+", 0, 1);
    expectNothingIsLost("pwrite:40:5", 0, 1);
    expectNothingIsLost("sync:2:5", 0, 2);
    expectNothingIsLost("sync:8:5+", 0, 1);
}

TEST_F(BatchResults, ReadOnlyFileIsRefused) {
    EXPECT_EQ(runInto("kev", {ubiquitin}).exitStatus, 0);
    const std::vector<std::string> before = allRows();
    sProcessManner manner;
    manner.environment = {{"LD_PRELOAD", KELMO_FAILING_CALLS}, {"KELMO_FAIL", "pwrite:1:30+"}};
    const char* earlier = std::getenv("ASAN_OPTIONS");
    manner.environment["ASAN_OPTIONS"] =
        (earlier == nullptr ? "" : std::string(earlier) + ':') + "verify_asan_link_order=0";
    const sProcessOutcome outcome = runInto("vor", {ubiquitin}, manner);
    EXPECT_EQ(outcome.exitStatus, 2) << outcome.err;
    EXPECT_TRUE(outcome.err.starts_with("Could not open results file r.sqlite: ")) << outcome.err;
    EXPECT_TRUE(allRows() == before);
}

TEST_F(BatchResults, ResumeTrustsContentAndNotTimes) {
    directory.write("a.pdb", sampleText("1ubq"));
    directory.write("b.pdb", sampleText("1ubq"));
    directory.write("c.pdb", "nothing\n");
    EXPECT_EQ(runInto("kev", {"a.pdb", "b.pdb", "c.pdb"}).exitStatus, 1);
    // Another file, which is older than the results; and one that was only touched.
    directory.write("a.pdb", sampleText("1a0q"));
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(10'000);
    std::filesystem::last_write_time(directory.path() / "a.pdb", longAgo);
    std::filesystem::last_write_time(directory.path() / "b.pdb",
                                     std::filesystem::file_time_type::clock::now());
    directory.write("c.pdb", sampleText("1ubq"));
    const sProcessOutcome resumed = runInto("kev", {"--resume", "a.pdb", "b.pdb", "c.pdb"});
    EXPECT_EQ(resumed.exitStatus, 0);
    EXPECT_TRUE(contains(resumed.err, "Results of b.pdb taken over\n")) << resumed.err;
    EXPECT_TRUE(contains(resumed.err, "2 of 3 files analysed, 1 taken over, 0 failed"));
    EXPECT_EQ(rowsOf("SELECT id, path, entry, residues, (SELECT count(*) FROM residues r WHERE "
                     "r.structure = s.id) FROM structures s"),
              (std::vector<std::string>{"1|a.pdb|1A0Q|416|416", "2|b.pdb|1UBQ|76|76",
                                        "3|c.pdb|1UBQ|76|76"}));
    // More files at the end, and one in the middle.
    directory.write("d.pdb", sampleText("1ubq"));
    directory.write("e.pdb", sampleText("1ubq"));
    EXPECT_EQ(runInto("kev", {"--resume", "a.pdb", "e.pdb", "b.pdb", "c.pdb", "d.pdb"}).exitStatus,
              0);
    EXPECT_EQ(valueOf("SELECT count(DISTINCT path), count(*), inputs FROM structures, runs"),
              "5|5|5");
    expectSound();
}

TEST_F(BatchResults, ResumeByOtherSettingsOrTablesIsRefusedWithTheirKeys) {
    EXPECT_EQ(runInto("kev", {ubiquitin}).exitStatus, 0);
    const std::vector<std::string> before = allRows();
    directory.write("my.radii", sourceText("data/protor.radii") + "XXX_CA  1.0\n");
    const sProcessOutcome refused =
        runInto("kev", {"--resume", "--set=z_slice=0.1", "--set=calc_cx=0",
                        "--set=radii_filename=my.radii", ubiquitin});
    EXPECT_EQ(refused.exitStatus, 2);
    EXPECT_EQ(refused.err,
              "Could not open results file r.sqlite cannot be resumed, because these differ from "
              "its last kev run: calc_cx, radii_filename, z_slice\n");
    EXPECT_TRUE(allRows() == before);
    // The same table elsewhere, and what changes no number, is no difference.
    directory.write("my.radii", sourceText("data/protor.radii"));
    const sProcessOutcome resumed = runInto(
        "kev", {"--resume", "--set=radii_filename=my.radii", "--output-dir=out", ubiquitin});
    EXPECT_TRUE(contains(resumed.err, "1 taken over")) << resumed.err;
    EXPECT_TRUE(allRows() == before);
    // Another module begins a run of its own.
    EXPECT_EQ(runInto("vor", {"--resume", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(valueOf("SELECT count(*) FROM runs"), "2");
}

TEST_F(BatchResults, TextFormatsSayTheSameAsTheDatabase) {
    directory.write("bad.pdb", "");
    // What ends a field or a string, bytes that are no UTF-8, and a value that is not a number.
    std::vector<std::string> inputs{ubiquitin, "bad.pdb", antibody, haemoglobin};
    for (const char* name : {"quote\"tab\t.pdb", "line\nend.pdb", "no\xff utf8.pdb", "#.pdb"}) {
        directory.write(name, "ATOM      1  CA  GLY \\   1       0.000   0.000   0.000\n"
                              "ATOM      2  CA  A\"B \xe9   2\"      4.000   0.000   0.000\n");
        inputs.emplace_back(name);
    }
    for (const std::string module : {"kev", "vor"}) {
        for (const std::string end : {"", ".gz"}) {
            std::filesystem::remove(directory.path() / "r.sqlite");
            const std::string tsv = module + ".tsv" + end;
            const std::string jsonl = module + ".jsonl" + end;
            std::vector<std::string> arguments{"--jobs=3", "--results=" + tsv,
                                               "--results=" + jsonl};
            if (module == "vor") {
                arguments.emplace_back("--set=contact_criterion=4");
            }
            arguments.insert(arguments.end(), inputs.begin(), inputs.end());
            EXPECT_EQ(runInto(module, arguments).exitStatus, 1) << "one file is bad";
            const std::string command = "cd '" + directory.path().string() + "' && python3 '" +
                                        sourcePath("tests/results/check_texts.py").string() +
                                        "' r.sqlite " + tsv + ' ' + jsonl + " 1 >messages 2>&1";
            EXPECT_EQ(std::system(command.c_str()), 0) << contentOf(directory.path() / "messages");
            EXPECT_TRUE(contentOf(directory.path() / "messages").ends_with("are the same\n"));
            // What stands in a file that is there already is not overwritten.
            EXPECT_EQ(runAlone({module, "--reports=none", "--results=" + tsv, ubiquitin}).err,
                      "Could not open results file " + tsv + ": File exists\n");
        }
    }
    const sProcessOutcome resumed =
        runAlone({"kev", "--reports=none", "--results=kev.tsv", "--resume", ubiquitin});
    EXPECT_EQ(resumed.exitStatus, 2);
    EXPECT_TRUE(resumed.err.starts_with("Option --resume cannot continue kev.tsv")) << resumed.err;
}

TEST_F(BatchResults, TextFormatsTellOfAFullDisk) {
    const std::string list = linkMany(20);
    for (const char* name : {"r.tsv", "r.jsonl.gz"}) {
        sProcessManner manner;
        manner.fileSizeLimit = 100'000;
        const sProcessOutcome outcome =
            runAlone({"kev", "--reports=none", "--results=" + std::string(name), list}, manner);
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_TRUE(contains(outcome.err, "Could not write results file " + std::string(name) +
                                              ": File too large\n"))
            << outcome.err;
    }
}

TEST_F(BatchResults, MergedShardsHaveTheRowsOfOneRun) {
    const std::string list = linkMany(30);
    std::filesystem::remove(directory.path() / "in/f3.pdb"); // one that fails
    for (const char* module : {"kev", "vor"}) {
        EXPECT_EQ(runInto(module, {"--quiet", list}).exitStatus, 1);
        for (int shard = 1; shard <= 3; ++shard) {
            const std::string number = std::to_string(shard);
            const sProcessOutcome outcome =
                runAlone({module, "--quiet", "--reports=none", "--allow-failed",
                          "--results=part" + number + ".sqlite", "--shard=" + number + "/3", list});
            EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
        }
    }
    std::size_t files = 0;
    for (const char* part : {"part1.sqlite", "part2.sqlite", "part3.sqlite"}) {
        const std::size_t inPart = std::stoul(valueOf("SELECT count(*) FROM structures", part));
        EXPECT_GT(inPart, 0U) << part;
        files += inPart;
    }
    EXPECT_EQ(files, 60U);
    const sProcessOutcome merged =
        runAlone({"merge", "all.sqlite", "part2.sqlite", "part1.sqlite", "part3.sqlite"});
    EXPECT_EQ(merged.exitStatus, 0) << merged.err;
    EXPECT_TRUE(merged.err.ends_with("60 structures\n")) << merged.err;
    EXPECT_TRUE(contains(merged.err, "in/f1.pdb and in/f2.pdb have the same content\n"));
    EXPECT_TRUE(allRows("all.sqlite") == allRows());
    EXPECT_EQ(valueOf("SELECT count(*) FROM runs WHERE ended IS NOT NULL", "all.sqlite"), "2");
    expectSound("all.sqlite");
    // What was merged already is taken once, and what exists is not overwritten.
    const std::string again = "part1.sqlite";
    EXPECT_EQ(runAlone({"merge", "twice.sqlite", "all.sqlite", again}).exitStatus, 0);
    EXPECT_TRUE(allRows("twice.sqlite") == allRows());
    EXPECT_EQ(runAlone({"merge", "all.sqlite", again}).err,
              "Could not merge: results file all.sqlite exists already\n");
}

TEST_F(BatchResults, MergingRefusesOtherSettingsAndOtherContent) {
    directory.write("a.pdb", sampleText("1ubq"));
    directory.write("b.pdb", sampleText("1ubq"));
    const auto into = [&](const std::string& name, const std::string& set, const char* file) {
        return runAlone({"kev", "--reports=none", "--results=" + name, set, file}).exitStatus;
    };
    EXPECT_EQ(into("1.sqlite", "--set=z_slice=0.3", "a.pdb"), 0);
    EXPECT_EQ(into("2.sqlite", "--set=z_slice=0.4", "b.pdb"), 0);
    EXPECT_EQ(into("3.sqlite", "--set=z_slice=0.3", "b.pdb"), 0);
    directory.write("a.pdb", sampleText("1a0q"));
    EXPECT_EQ(into("4.sqlite", "--set=z_slice=0.3", "a.pdb"), 0);
    const sProcessOutcome settings = runAlone({"merge", "all.sqlite", "1.sqlite", "2.sqlite"});
    EXPECT_EQ(settings.exitStatus, 2);
    EXPECT_EQ(settings.err, "Could not merge: results file 2.sqlite has a kev run that the first "
                            "one lacks, because these differ: z_slice\n");
    EXPECT_FALSE(std::filesystem::exists(directory.path() / "all.sqlite"));
    EXPECT_EQ(runAlone({"merge", "all.sqlite", "1.sqlite", "4.sqlite"}).err,
              "Could not merge: results file 4.sqlite has results of another content of a.pdb than "
              "an earlier one\n");
    EXPECT_EQ(runAlone({"merge", "all.sqlite", "missing.sqlite"}).exitStatus, 2);
    // Runs of their own, whose ids are the same, stand behind each other.
    EXPECT_EQ(runAlone({"merge", "all.sqlite", "1.sqlite", "3.sqlite"}).exitStatus, 0);
    EXPECT_EQ(rowsOf("SELECT id, path, (SELECT count(*) FROM residues WHERE structure = id) FROM "
                     "structures",
                     "all.sqlite"),
              (std::vector<std::string>{"1|a.pdb|76", "2|b.pdb|76"}));
    EXPECT_EQ(runAlone({"merge", "all.sqlite"}).exitStatus, 2);
}

TEST_F(BatchResults, ShardsDependOnNamesAlone) {
    for (const char* wrong :
         {"--shard=0/2", "--shard=3/2", "--shard=1", "--shard=a/b", "--shard=1/2x"}) {
        EXPECT_EQ(runInto("kev", {wrong, ubiquitin}).exitStatus, 2) << wrong;
    }
    const auto filesOf = [&](const std::string& shard, const std::string& list) {
        std::filesystem::remove(directory.path() / "r.sqlite");
        EXPECT_EQ(runInto("kev", {"--quiet", "--shard=" + shard, list}).exitStatus, 0);
        return rowsOf("SELECT path FROM structures ORDER BY id");
    };
    const std::string list = linkMany(12);
    const std::vector<std::string> before = filesOf("1/2", list);
    std::filesystem::remove_all(directory.path() / "in");
    linkMany(20);
    std::vector<std::string> behind = filesOf("1/2", list);
    ASSERT_GE(behind.size(), before.size());
    behind.resize(before.size());
    EXPECT_EQ(behind, before);
    // A part without any file is done at once.
    EXPECT_EQ(filesOf("1/1000000", list).size(), 0U);
    EXPECT_EQ(valueOf("SELECT ended IS NOT NULL FROM runs"), "1");
}

TEST_F(BatchResults, QuestionsOnThePageHaveTheirAnswers) {
    for (const char* code : {"1a0q", "1ubq", "2hhb"}) {
        directory.linkSample(code, std::string(code) + ".pdb");
    }
    const std::vector<std::string> samples{"1a0q.pdb", "1ubq.pdb", "2hhb.pdb"};
    const std::string page = sourceText("docs/results.md");
    const std::vector<std::string> commands = fencedBlocks(page, "sh");
    ASSERT_EQ(commands.size(), 1U);
    const std::string pasted = "cd '" + directory.path().string() + "' && PATH='" +
                               batchProgram().parent_path().string() + "':\"$PATH\" && { " +
                               commands.front() + " } 2>messages";
    ASSERT_EQ(std::system(pasted.c_str()), 0) << contentOf(directory.path() / "messages");
    const std::vector<std::string> questions = fencedBlocks(page, "sql");
    const std::vector<std::string> answers = fencedBlocks(page, "text");
    ASSERT_EQ(questions.size(), 10U);
    ASSERT_EQ(answers.size(), questions.size());
    for (std::size_t i = 0; i < questions.size(); ++i) {
        EXPECT_EQ(rowsOf(questions[i], "results.sqlite"), linesOf(answers[i])) << questions[i];
    }
    // The program for Python, as a reader would paste it.
    for (const char* name : {"--results=results.tsv", "--results=results.jsonl"}) {
        std::vector<std::string> arguments{"kev", "--reports=none", name};
        arguments.insert(arguments.end(), samples.begin(), samples.end());
        EXPECT_EQ(runAlone(arguments).exitStatus, 0);
    }
    directory.write("example.py", fencedBlocks(page, "python").front());
    const std::string example =
        "cd '" + directory.path().string() + "' && python3 example.py >out.txt 2>messages";
    EXPECT_EQ(std::system(example.c_str()), 0) << contentOf(directory.path() / "messages");
    EXPECT_TRUE(contains(contentOf(directory.path() / "out.txt"), "1UBQ 4761.4"));
}

TEST_F(BatchResults, ExportWritesRowsAsText) {
    EXPECT_EQ(runInto("kev", {ubiquitin, haemoglobin, "a\tb.pdb"}).exitStatus, 1);
    const sProcessOutcome table =
        runAlone({"export", "r.sqlite", "--table=residues", "--where", "name = 'TRP'"});
    EXPECT_EQ(table.exitStatus, 0) << table.err;
    std::vector<std::string> lines = linesOf(table.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines.front().starts_with("structure\tresidue\tchain\tchain_id\tnumber\tname\t"));
    EXPECT_EQ(lines.size() - 1,
              std::stoul(valueOf("SELECT count(*) FROM residues WHERE name = 'TRP'")));
    EXPECT_TRUE(contains(runAlone({"export", "r.sqlite", "--table", "structures"}).out,
                         "\t\"a\tb.pdb\"\t"));
    const sProcessOutcome json = runAlone(
        {"export", "r.sqlite", "--table=chains", "--format=jsonl", "--where=structure = 1"});
    EXPECT_TRUE(json.out.starts_with("{\"structure\": 1, \"chain\": 1, \"chain_id\": \"A\", "))
        << json.out;
    EXPECT_EQ(linesOf(json.out).size(), 1U);
    EXPECT_TRUE(runAlone({"export", "r.sqlite", "--table=runs", "--format=tsv.gz"})
                    .out.starts_with("\x1f\x8b"));
    // What it is asked for changes nothing, and what it does not know is told.
    const std::vector<std::string> before = allRows();
    runAlone({"export", "r.sqlite", "--table=runs", "--where=1); DELETE FROM runs; --"});
    EXPECT_TRUE(allRows() == before);
    const auto faultOf = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"export", "r.sqlite"});
        const sProcessOutcome outcome = runAlone(arguments);
        EXPECT_EQ(outcome.exitStatus, 2);
        return outcome.err;
    };
    EXPECT_TRUE(faultOf({"--table=atoms"})
                    .starts_with("Could not export: results file r.sqlite has no table atoms, but "
                                 "runs, settings, "));
    EXPECT_EQ(faultOf({"--table=runs", "--where=nowhere = 1"}),
              "Could not export: results file r.sqlite: no such column: nowhere\n");
    EXPECT_TRUE(contains(faultOf({}), "needs a results file and --table"));
    EXPECT_TRUE(contains(faultOf({"--table=runs", "--format=csv"}), "not \"csv\""));
    EXPECT_TRUE(contains(faultOf({"--table=runs", "--tables=runs"}), "Unknown option"));
    EXPECT_TRUE(contains(faultOf({"--table=runs", "--table=runs"}), "given twice"));
    EXPECT_TRUE(contains(faultOf({"--table"}), "needs a value"));
}

} // namespace kelmo

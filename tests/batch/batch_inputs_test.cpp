// Input files: where they come from, what their names may be, and what happens to those that fail.
#include "tests/batch/batch_fixture.h"
#include "tests/input/gzip_text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

namespace {

class BatchInputs : public cBatchFixture {};

/// Runs on one core, where messages come in the order of the files; returns the names in them.
std::vector<std::string> analysed(const std::string& messages) {
    const std::string begin = "Analysing structure of peptide from ";
    std::vector<std::string> names;
    for (auto at = messages.find(begin); at != std::string::npos; at = messages.find(begin, at)) {
        at += begin.size();
        names.push_back(messages.substr(at, messages.find("...\n", at) - at));
    }
    return names;
}

} // namespace

TEST_F(BatchInputs, ListsAndFilesAreTakenInTheirOrder) {
    for (const char* name : {"a.pdb", "b.pdb", "c.pdb", "d.pdb", "e.pdb", "f.pdb"}) {
        directory.linkSample("1ubq", name);
    }
    directory.write("one.fls", "d.pdb\nb.pdb\n");
    directory.write("two.fls", "a.pdb\n");
    const sProcessOutcome outcome = run("kev", {"--jobs=1", "f.pdb", "--list", "one.fls", "--quiet",
                                                "c.pdb", "--list=two.fls", "e.pdb"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_EQ(reports().size(), 24U);
    const sProcessOutcome loud =
        run("kev", {"--jobs=1", "f.pdb", "--list", "one.fls", "c.pdb", "--list=two.fls", "e.pdb"});
    EXPECT_EQ(analysed(loud.err),
              (std::vector<std::string>{"f.pdb", "d.pdb", "b.pdb", "c.pdb", "a.pdb", "e.pdb"}));
    EXPECT_TRUE(loud.err.ends_with("6 of 6 files analysed, 0 failed, 0 reports missing\n"));
}

TEST_F(BatchInputs, LinesOfAListAreTakenAsTheyAre) {
    directory.linkSample("1ubq", "dos.pdb");
    directory.linkSample("1ubq", " with blanks .pdb ");
    directory.linkSample("1ubq", "#hash.pdb");
    directory.linkSample("1ubq", "last.pdb");
    directory.write("set.fls", "dos.pdb\r\n\n\r\n with blanks .pdb \n#hash.pdb\nlast.pdb");
    const sProcessOutcome outcome = run("kev", {"--jobs=1", "--list=set.fls"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_EQ(analysed(outcome.err),
              (std::vector<std::string>{"dos.pdb", " with blanks .pdb ", "#hash.pdb", "last.pdb"}));
}

TEST_F(BatchInputs, ListThatCannotBeReadStartsNothing) {
    for (const std::string name : {"no.fls", "out"}) {
        const sProcessOutcome outcome = run("kev", {ubiquitin, "--list", name});
        EXPECT_EQ(outcome.exitStatus, 2);
        EXPECT_EQ(outcome.err, "--list: Could not open file " + name + "\n");
        EXPECT_TRUE(reports().empty());
    }
}

TEST_F(BatchInputs, EmptyListMeansNoFiles) {
    directory.write("empty.fls", "\n\n");
    const sProcessOutcome outcome = run("kev", {"--list=empty.fls"});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.err, "No files loaded for analysis\n");
}

TEST_F(BatchInputs, NamesMayHoldAnyBytes) {
    directory.linkSample("1ubq", "with blank.pdb");
    directory.linkSample("1ubq", "line\nfeed.pdb");
    directory.linkSample("1ubq", "-dash.pdb");
    directory.linkSample("1ubq", "gr\xfc\xdf"
                                 "e.pdb");
    directory.linkSample("1ubq", "gr\xc3\xbc\xc3\x9f"
                                 "e2.pdb");
    directory.linkSample("1ubq", "[a,b].pdb");
    directory.write("set.fls", "gr\xfc\xdf"
                               "e.pdb\n");
    const sProcessOutcome outcome = run("kev", {"--jobs=1", "with blank.pdb", "line\nfeed.pdb",
                                                "gr\xc3\xbc\xc3\x9f"
                                                "e2.pdb",
                                                "[a,b].pdb", "--list=set.fls", "--", "-dash.pdb"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    const auto files = reports();
    EXPECT_EQ(files.size(), 24U);
    for (const char* name : {"with blank", "line\nfeed", "-dash",
                             "gr\xfc\xdf"
                             "e",
                             "gr\xc3\xbc\xc3\x9f"
                             "e2",
                             "[a,b]"}) {
        EXPECT_EQ(files.count(std::string(name) + "_200703141530_bound.xml"), 1U) << name;
    }
    EXPECT_EQ(analysed(outcome.err), (std::vector<std::string>{"with blank.pdb", "line?feed.pdb",
                                                               "gr\xc3\xbc\xc3\x9f"
                                                               "e2.pdb",
                                                               "[a,b].pdb",
                                                               "gr\xef\xbf\xbd\xef\xbf\xbd"
                                                               "e.pdb",
                                                               "-dash.pdb"}));
}

TEST_F(BatchInputs, OtherPathsMayHoldAnyBytesToo) {
    directory.makeDirectory("\xfc");
    directory.write("\xfc/\xe4.radii", sourceText("data/protor.radii"));
    directory.write("\xfc/\xe4.cfg", "radii_filename:\t\xfc/\xe4.radii\nwrite_xml:\t0\n");
    EXPECT_EQ(runAlone({"kev", "--config", "\xfc/\xe4.cfg", "--output-dir", "\xfc",
                        "--stamp=200703141530", ubiquitin})
                  .exitStatus,
              0);
    EXPECT_TRUE(contains(contentOf(directory.path() / "\xfc/1ubq_200703141530_bound.tbl"),
                         "\nradii_file: \xfc/\xe4.radii\n"));
}

TEST_F(BatchInputs, FailedFilesDoNotStopTheOthers) {
    directory.write("bad.pdb", "ATOM      1  N   ALA A   1      here\n");
    directory.write("empty.pdb", "");
    const sProcessOutcome outcome =
        run("kev", {"--jobs=1", "missing.pdb", "bad.pdb", "empty.pdb", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(reports().size(), 4U);
    EXPECT_EQ(outcome.err, "Could not open file missing.pdb\n"
                           "Analysing structure of peptide from bad.pdb...\n"
                           "There was an error in PDB file bad.pdb at line 1\n"
                           "Analysing structure of peptide from empty.pdb...\n"
                           "No atoms found in PDB file empty.pdb\n"
                           "Analysing structure of peptide from " +
                               ubiquitin +
                               "...\n"
                               "Not analysed in 1ubq.pdb: 58 waters. See preparation.\n"
                               "Structure of peptide from " +
                               ubiquitin +
                               " analyzed\n"
                               "Failed: missing.pdb\n"
                               "Failed: bad.pdb\n"
                               "Failed: empty.pdb\n"
                               "1 of 4 files analysed, 3 failed, 0 reports missing\n");
}

TEST_F(BatchInputs, OnlyRegularFilesAreRead) {
    directory.makeDirectory("directory.pdb");
    ASSERT_EQ(::mkfifo((directory.path() / "pipe.pdb").c_str(), 0600), 0);
    const sProcessOutcome outcome =
        run("vor", {"directory.pdb", "pipe.pdb", "/dev/zero", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(contains(outcome.err, "Failed: directory.pdb\nFailed: pipe.pdb\nFailed: /dev/zero\n"
                                      "1 of 4 files analysed, 3 failed, 0 reports missing\n"))
        << outcome.err;
    EXPECT_EQ(reports().size(), 6U);
}

TEST_F(BatchInputs, MissingRadiiAreAWarningAndNotAFailure) {
    directory.write("few.radii", "ALA_CA  1.88\n");
    const sProcessOutcome outcome =
        run("kev", {"--quiet", "--set=radii_filename=few.radii", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(outcome.err.starts_with(
        ubiquitin + ": The following radii were not found in radii file: ALA_C; "))
        << outcome.err;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << "nothing but the warning";
}

TEST_F(BatchInputs, QuietRunWithoutFaultSaysNothing) {
    const sProcessOutcome outcome = run("kev", {"--quiet", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST_F(BatchInputs, QuietRunNamesWhatFailed) {
    const sProcessOutcome outcome = run("kev", {"--quiet", ubiquitin, "missing.pdb"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.err, "Could not open file missing.pdb\nFailed: missing.pdb\n"
                           "1 of 2 files analysed, 1 failed, 0 reports missing\n");
}

TEST_F(BatchInputs, SameBaseNameIsWarnedOfBeforeTheRun) {
    directory.linkSample("1ubq", "a/x.pdb");
    directory.linkSample("1ubq", "b/x.model1.ent");
    const sProcessOutcome outcome = run("kev", {"--jobs=1", "a/x.pdb", "b/x.model1.ent"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(outcome.err.starts_with(
        "a/x.pdb and b/x.model1.ent have the same base name: the reports of the later file "
        "replace those of the earlier one\nAnalysing "))
        << outcome.err;
    EXPECT_EQ(reports().size(), 4U);
}

TEST_F(BatchInputs, ReportThatIsTooLargeIsMissing) {
    sProcessManner manner;
    manner.fileSizeLimit = 50'000; // between the sizes of table and XML document
    const sProcessOutcome outcome = run("kev", {"--jobs=1", ubiquitin}, manner);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(reportNames(), (std::vector<std::string>{"1ubq_200703141530_bound.tbl",
                                                       "1ubq_200703141530_unbound.tbl"}));
    EXPECT_TRUE(contains(outcome.err, "Could not write report out/1ubq_200703141530_bound.xml: "
                                      "File too large\n"));
    EXPECT_TRUE(outcome.err.ends_with("Report missing: out/1ubq_200703141530_bound.xml\n"
                                      "Report missing: out/1ubq_200703141530_unbound.xml\n"
                                      "1 of 1 file analysed, 0 failed, 2 reports missing\n"))
        << outcome.err;
}

TEST_F(BatchInputs, ReportWhoseNameIsTakenByADirectoryIsMissing) {
    directory.makeDirectory("out/1ubq_200703141530_bound.tbl/inside");
    const sProcessOutcome outcome = run("kev", {ubiquitin, antibody});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(reports().size(), 7U);
    EXPECT_TRUE(contains(outcome.err, "Could not write report out/1ubq_200703141530_bound.tbl: "
                                      "Is a directory\n"));
    EXPECT_TRUE(outcome.err.ends_with("Report missing: out/1ubq_200703141530_bound.tbl\n"
                                      "2 of 2 files analysed, 0 failed, 1 report missing\n"))
        << outcome.err;
}

TEST_F(BatchInputs, AbandonedReportsAreSweptUp) {
    directory.write("out/.kelmo-1-0.part", "half a report");
    directory.write("out/notes.part", "something else");
    EXPECT_EQ(run("kev", {ubiquitin}).exitStatus, 0);
    EXPECT_EQ(reports().count(".kelmo-1-0.part"), 0U);
    EXPECT_EQ(reports().count("notes.part"), 1U);
}

TEST_F(BatchInputs, StampIsTheTimeOfTheStartUnlessGiven) {
    const sProcessOutcome outcome = runAlone({"kev", "--output-dir=out", ubiquitin, antibody});
    EXPECT_EQ(outcome.exitStatus, 0);
    const auto names = reportNames();
    ASSERT_EQ(names.size(), 8U);
    const std::string stamp = names[0].substr(5, 12);
    EXPECT_EQ(stamp.find_first_not_of("0123456789"), std::string::npos) << stamp;
    EXPECT_TRUE(stamp.starts_with("20")) << stamp;
    for (const std::string& name : names) {
        EXPECT_EQ(name.substr(5, 12), stamp) << "one stamp for the whole run";
    }
}

TEST_F(BatchInputs, StructuresComeThroughStandardInput) {
    cGzipMember compressed;
    compressed.append(sampleText("1ubq"));
    for (const std::string& text : {sampleText("1ubq"), compressed.finish()}) {
        directory.write("input", text);
        const std::string command = "cat input | " + batchProgram().string() +
                                    " kev --output-dir=out --stamp=200703141530 - 2>messages";
        ASSERT_EQ(std::system(("cd '" + directory.path().string() + "' && " + command).c_str()), 0)
            << contentOf(directory.path() / "messages");
        const auto piped = reports();
        ASSERT_EQ(piped.size(), 4U);
        EXPECT_EQ(run("kev", {ubiquitin}).exitStatus, 0);
        for (const auto& [name, content] : piped) {
            ASSERT_TRUE(name.starts_with("stdin_200703141530_")) << name;
            EXPECT_TRUE(content == report(name.substr(19))) << name;
        }
        std::filesystem::remove_all(directory.path() / "out");
        directory.makeDirectory("out");
    }
}

TEST_F(BatchInputs, FileCalledLikeStandardInputIsReachedByItsPath) {
    directory.linkSample("1ubq", "-");
    EXPECT_EQ(run("kev", {"./-"}).exitStatus, 0);
    EXPECT_EQ(reports().size(), 4U);
}

TEST_F(BatchInputs, StopEndsTheWaitForStandardInput) {
    // The writer's end stays open and silent.
    const std::string command =
        "mkfifo pipe; exec 3<>pipe; " + batchProgram().string() +
        " kev --jobs=1 --output-dir=out - <pipe 2>messages & child=$!; "
        "while ! grep -q Analysing messages 2>/dev/null; do sleep 0.01; done; "
        "kill -TERM $child; wait $child; test $? -eq 130";
    EXPECT_EQ(
        std::system(("cd '" + directory.path().string() + "' && { " + command + "; }").c_str()), 0)
        << contentOf(directory.path() / "messages");
    EXPECT_TRUE(
        contains(contentOf(directory.path() / "messages"), "Stopped: 0 of 1 file analysed"));
    EXPECT_TRUE(reports().empty());
}

} // namespace kelmo

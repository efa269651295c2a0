// kelmo-batch where every path has an odd name: structures, list, configuration, tables, output
// directory.
#include "base/shown_text.h"
#include "tests/batch/batch_fixture.h"

#include <algorithm>
#include <iterator>

namespace kelmo {

namespace {

constexpr const char* oddNames[] = {"with blank",
                                    "blank at the end ",
                                    "-dash",
                                    "--output-dir",
                                    "line\nfeed",
                                    "gr\xC3\xBC\xC3\x9F",
                                    "latin\xE9",
                                    "\xFF\xFE",
                                    "\xEF\xBB\xBFmark",
                                    "tab\t",
                                    "\x1B[31m",
                                    "a'b\"c$(d)`e\\",
                                    "<&>",
                                    "*?[a]",
                                    "%1%n%s",
                                    "a=b:c",
                                    "#comment"};

/// The tests know the names by their place in the list.
class BatchOddPaths : public cBatchFixture, public testing::WithParamInterface<std::size_t> {
  protected:
    BatchOddPaths() {
        directory.linkSample("2hhb", name + "/" + name + ".pdb");
        for (const auto& [table, suffix] : tables) {
            directory.write(name + "/" + name + suffix, sourceText(std::string("data/") + table));
        }
        directory.makeDirectory(name + "/out");
    }

    std::string path(const std::string& suffix) const { return name + "/" + name + suffix; }
    bool isOneLine() const { return !contains(name, "\n"); }

    /// Runs in the directory of that name's parent, with reports in its "out".
    sProcessOutcome runThere(const std::string& module,
                             const std::vector<std::string>& arguments) const {
        std::vector<std::string> all{module, "--jobs=1", "--stamp=200703141530", "--output-dir",
                                     name + "/out"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return runAlone(all);
    }
    std::string reportThere(const std::string& kind) const {
        return contentOf(directory.path() / name / "out" / (name + "_200703141530_" + kind));
    }

    const std::string name = oddNames[GetParam()];
    const std::vector<std::pair<const char*, const char*>> tables{{"protor.radii", ".radii"},
                                                                  {"ala-x-ala.asa", ".asa"},
                                                                  {"kyte-doolittle.hpb", ".hpb"},
                                                                  {"aa_contacts.txt", ".txt"}};
};

} // namespace

TEST_P(BatchOddPaths, AreTakenFromOptionsAndWrittenToReports) {
    const sProcessOutcome kev = runThere("kev", {"--set", "radii_filename=" + path(".radii"),
                                                 "--set", "standard_asa=" + path(".asa"), "--set",
                                                 "hydro_file=" + path(".hpb"), "--", path(".pdb")});
    EXPECT_EQ(kev.exitStatus, 0) << kev.err;
    EXPECT_TRUE(
        contains(reportThere("bound.tbl"), "radii_file: " + inOneLine(path(".radii")) + '\n'));
    const sProcessOutcome vor = runThere(
        "vor", {"--set=contact_criterion=4", "--contact-rules", path(".txt"), "--", path(".pdb")});
    EXPECT_EQ(vor.exitStatus, 0) << vor.err;
    EXPECT_FALSE(reportThere("contacts.tbl").empty());
    EXPECT_EQ(filesIn(directory.path() / name / "out").size(), 10U);
    // Whatever the names are, every message is a line of its own.
    EXPECT_EQ(std::count(kev.err.begin(), kev.err.end(), '\n'), 4) << kev.err;
    EXPECT_EQ(std::count(vor.err.begin(), vor.err.end(), '\n'), 6) << vor.err;
    EXPECT_FALSE(contains(kev.err, "\x1B")) << kev.err;
}

TEST_P(BatchOddPaths, AreTakenFromListsAndConfigurations) {
    // In these files a line feed ends the path.
    if (isOneLine()) {
        directory.write(path(".cfg"),
                        "radii_filename:\t" + path(".radii") + "\noutput_dir:\t" + name + "/out\n");
        directory.write(path(".fls"), path(".pdb") + '\n');
    } else {
        directory.write(path(".cfg"), "calc_cx:\t1\n");
        directory.write(path(".fls"), ubiquitin + '\n');
    }
    const sProcessOutcome outcome =
        runThere("kev", {"--config", path(".cfg"), "--list", path(".fls")});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_EQ(filesIn(directory.path() / name / "out").size(), 4U);
}

TEST_P(BatchOddPaths, OfMissingFilesAreNamedOnOneLine) {
    const sProcessOutcome outcome = runThere("kev", {"--quiet", "--", path(".missing")});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 3) << outcome.err;
    for (const std::string option : {"--list", "--config", "--contact-rules"}) {
        const sProcessOutcome refused =
            runThere("vor", {"--set=contact_criterion=4", option, path(".missing"), ubiquitin});
        EXPECT_EQ(refused.exitStatus, 2);
        EXPECT_TRUE(refused.err.starts_with(option + ": Could not open file ")) << refused.err;
        EXPECT_LE(std::count(refused.err.begin(), refused.err.end(), '\n'), 2) << refused.err;
    }
}

INSTANTIATE_TEST_SUITE_P(Names, BatchOddPaths, testing::Range(std::size_t{0}, std::size(oddNames)));

namespace {

class BatchLongPaths : public cBatchFixture {};

} // namespace

TEST_F(BatchLongPaths, ReportWhoseNameIsTooLongIsMissing) {
    // The longest name that a file can have leaves no room for the rest of a report's.
    const std::string name = std::string(251, 'n') + ".pdb";
    directory.linkSample("1ubq", name);
    const sProcessOutcome outcome = run("kev", {"--quiet", name});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(contains(outcome.err, "Could not write report out/nnn")) << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("1 of 1 file analysed, 0 failed, 4 reports missing\n"));
    EXPECT_TRUE(reports().empty());
}

TEST_F(BatchLongPaths, NameThatIsAllSuffixGivesReportsWithoutAName) {
    directory.linkSample("1ubq", ".pdb");
    EXPECT_EQ(run("kev", {"--quiet", ".pdb"}).exitStatus, 0);
    EXPECT_EQ(reports().count("_200703141530_bound.xml"), 1U);
}

} // namespace kelmo

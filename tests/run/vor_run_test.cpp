// The worker of the interaction module: what it tells, what it writes, and by which criterion.
#include "run/run_vor_linux.h"
#include "tests/run/run_fixture.h"
#include "tests/support/directory_watch.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <sys/stat.h>

namespace kelmo {

using enum eInteractionCriterion;
using enum eContactType;

namespace {

class VorRun : public cRunFixture<cRunVOR> {
  protected:
    VorRun() {
        switchEverythingOn(run, maximumDistance);
        run.radii = glycineRadii();
        run.contactRules.clear();
        run.outputDirectory = outputName();
    }

    static std::string begin(const std::string& path) {
        return "black: Analysing contacts of peptide from " + path + "...";
    }
    static std::string end(const std::string& path) {
        return "black: Contacts of peptide from " + path + " analyzed";
    }
    std::string report(const std::string& suffix) const {
        return contentOf(output.file("1tst_200703141530_" + suffix));
    }
    /// The rows of a table report, without the lines of its header.
    std::string rows(const std::string& suffix) const {
        std::string text = report(suffix);
        const std::size_t header = text.rfind(": ");
        return header == std::string::npos ? text : text.substr(text.find('\n', header) + 1);
    }

    /// Two glycines of two atoms each, with the given places along x of both atoms.
    static std::string pairOf(std::pair<double, double> a, std::pair<double, double> b) {
        return atomLine("N", "GLY", 'A', "1", a.first, 0, 0) +
               atomLine("CA", "GLY", 'A', "1", a.second, 0, 0) +
               atomLine("N", "GLY", 'B', "2", b.first, 0, 0) +
               atomLine("CA", "GLY", 'B', "2", b.second, 0, 0);
    }
};

const tLines allSix{
    "1tst_200703141530_binding_residues.tbl", "1tst_200703141530_binding_residues.xml",
    "1tst_200703141530_binding_status.tbl",   "1tst_200703141530_binding_status.xml",
    "1tst_200703141530_contacts.tbl",         "1tst_200703141530_contacts.xml"};

/// Rows of the contacts table for one contact of GLY 1 in A and GLY 2 in B.
std::string contactRows(const std::string& criterion, const tLines& types = {}) {
    std::string tail = std::string(20 - criterion.size(), ' ') + criterion;
    for (const std::string& type : types) {
        tail += std::string(18 - type.size(), ' ') + type;
    }
    return "A     1  GLY  B     2  GLY" + tail + "\nB     2  GLY  A     1  GLY" + tail + "\n";
}

} // namespace

TEST_F(VorRun, GoodFileIsAnnouncedAndClosed) {
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(), (tLines{begin(path), end(path)}));
    EXPECT_EQ(reports(), allSix);
    EXPECT_TRUE(run.unwrittenReports().isEmpty());
}

TEST_F(VorRun, NewWorkerHasEmptySettings) {
    const cRunVOR fresh;
    EXPECT_EQ(fresh.criterion, none);
    EXPECT_EQ(fresh.threshold, 0.0);
    EXPECT_EQ(fresh.zSlice, 0.0);
    EXPECT_EQ(fresh.probeRadius, 0.0);
    EXPECT_FALSE(fresh.xmlOutput || fresh.tableOutput || fresh.writeContacts ||
                 fresh.writeBindingResidues || fresh.writeBindingStatus);
    EXPECT_TRUE(fresh.contactRules.empty() && fresh.radii.empty() && fresh.radiiFileName.empty());
    EXPECT_TRUE(fresh.outputDirectory.isEmpty() && fresh.inputFiles.isEmpty());
}

TEST_F(VorRun, EmptyListSendsNothing) {
    ASSERT_TRUE(runToEnd(run));
    EXPECT_TRUE(log.lines().empty());
    EXPECT_TRUE(reports().empty());
}

TEST_F(VorRun, FileThatCannotBeOpenedIsAnnouncedAllTheSame) {
    const std::string pipe = inputs.file("pipe.pdb");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path :
         {inputs.file("missing.pdb"), pipe, inputs.path().string(), std::string("/dev/zero")}) {
        log.messages.clear();
        EXPECT_EQ(analyse(path), eFileOutcome::failed);
        EXPECT_EQ(log.lines(), (tLines{begin(path), "red: Could not open file " + path}));
    }
    EXPECT_TRUE(reports().empty());
}

TEST_F(VorRun, FaultyLineIsNamed) {
    const std::string path = input("bad.pdb", "HETATM\nHETATM\n");
    EXPECT_EQ(analyse(path), eFileOutcome::failed);
    EXPECT_EQ(log.lines(),
              (tLines{begin(path), "red: There was an error in PDB file " + path + " at line 1"}));
    EXPECT_TRUE(reports().empty());
}

TEST_F(VorRun, FileWithoutAtoms) {
    const std::string path = input("empty.pdb", "REMARK nothing\nEND\n");
    EXPECT_EQ(analyse(path), eFileOutcome::failed);
    EXPECT_EQ(log.lines(), (tLines{begin(path), "red: No atoms found in PDB file " + path}));
    EXPECT_TRUE(reports().empty());
}

TEST_F(VorRun, MissingRadiiAreJoinedAndTheAnalysisGoesOn) {
    const std::string path = input("1tst.pdb");
    run.radii = {{"GLY_N", 1.7}, {"GLY_C", 1.7}};
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    run.radii = {{"GLY_N", 1.7}, {"GLY_C", 1.7}, {"GLY_O", 1.7}};
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(
        log.lines(),
        (tLines{begin(path),
                "yellow: The following radii were not found in radii file: GLY_CA; GLY_O",
                end(path), begin(path),
                "yellow: The following radii were not found in radii file: GLY_CA", end(path)}));
    EXPECT_EQ(reports(), allSix);
}

TEST_F(VorRun, AtomsDenserThanInAMoleculeAreWarnedOfBehindMissingRadii) {
    const std::string path = input("1tst.pdb", inNanometres(twoGlycines()));
    run.radii = {{"GLY_N", 1.7}, {"GLY_C", 1.7}, {"GLY_O", 1.7}};
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(
        log.lines(),
        (tLines{begin(path), "yellow: The following radii were not found in radii file: GLY_CA",
                "yellow: Mean distance to the nearest atom in PDB file " + path +
                    " is 0.15 Å: are the coordinates in nanometres?",
                end(path)}));
    EXPECT_EQ(reports(), allSix);
}

TEST_F(VorRun, ReportsThatNoParserTakesAreWarnedOfOnceAFile) {
    const std::string warning = "yellow: Names with &, < or other characters that XML does not "
                                "take make reports that no parser takes: ";
    const std::string base = output.file("1tst_200703141530_");
    const std::string path = input("1tst.pdb", glycine('A', "1", 0.0) + glycine('&', "2", 4.0) +
                                                   glycine('<', "3", 80.0));
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(), (tLines{begin(path),
                                   warning + base + "contacts.xml; " + base +
                                       "binding_residues.xml; " + base + "binding_status.xml",
                                   end(path)}));
    // Only of those reports in which such a name stands.
    log.messages.clear();
    const std::string other = input("1tst.pdb", glycine('A', "1", 0.0) + glycine('B', "2", 4.0) +
                                                    glycine('<', "3", 80.0));
    EXPECT_EQ(analyse(other), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(),
              (tLines{begin(other), warning + base + "binding_status.xml", end(other)}));
    for (const std::string& name : reports()) {
        EXPECT_EQ(areWellFormed({output.file(name)}),
                  name.ends_with(".xml") && !name.ends_with("binding_status.xml"))
            << name;
    }
}

TEST_F(VorRun, BadFilesBetweenGoodOnesAreSkipped) {
    const std::string first = input("first.pdb");
    const std::string missing = inputs.file("missing.pdb");
    const std::string bad = input("bad.pdb", "HEADER\n");
    const std::string empty = input("empty.pdb", "\n");
    const std::string last = input("last.pdb");
    run.inputFiles = pathList({first, missing, bad, empty, last});
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(
        log.lines(),
        (tLines{begin(first), end(first), begin(missing), "red: Could not open file " + missing,
                begin(bad), "red: There was an error in PDB file " + bad + " at line 1",
                begin(empty), "red: No atoms found in PDB file " + empty, begin(last), end(last)}));
    EXPECT_EQ(reports().size(), 12U);
}

TEST_F(VorRun, ContactsOfOneFileDoNotReachTheNext) {
    const std::string touching = input("1tst.pdb", pairOf({0, 1}, {3, 4}));
    analyse(touching);
    EXPECT_NE(rows("contacts.tbl"), "");
    analyse(input("1tst.pdb", pairOf({0, 1}, {30, 31})));
    EXPECT_EQ(rows("contacts.tbl"), "");
    EXPECT_EQ(rows("binding_residues.tbl"), "");
}

TEST_F(VorRun, OnlyTheAskedReportsAreWritten) {
    const std::string path = input("1tst.pdb");
    for (unsigned bits = 0; bits < 32; ++bits) {
        run.xmlOutput = (bits & 1) != 0;
        run.tableOutput = (bits & 2) != 0;
        run.writeContacts = (bits & 4) != 0;
        run.writeBindingResidues = (bits & 8) != 0;
        run.writeBindingStatus = (bits & 16) != 0;
        EXPECT_EQ(analyse(path), eFileOutcome::analysed);
        tLines expected;
        for (const std::string& name : allSix) {
            const bool isAsked = name.find("contacts") != std::string::npos ? run.writeContacts
                                 : name.find("residues") != std::string::npos
                                     ? run.writeBindingResidues
                                     : run.writeBindingStatus;
            if (isAsked && (name.ends_with(".xml") ? run.xmlOutput : run.tableOutput)) {
                expected.push_back(name);
            }
        }
        EXPECT_EQ(reports(), expected);
        for (const std::string& name : expected) {
            std::filesystem::remove(output.file(name));
        }
    }
}

TEST_F(VorRun, ReportsAreFinishedInTheirOrderAndOnlyByRenaming) {
    const std::string path = input("1tst.pdb");
    cDirectoryWatch watch(output.path());
    analyse(path);
    const std::string base = "1tst_200703141530_";
    EXPECT_EQ(watch.renamedTo(),
              (tLines{base + "contacts.xml", base + "binding_residues.xml",
                      base + "binding_status.xml", base + "contacts.tbl",
                      base + "binding_residues.tbl", base + "binding_status.tbl"}));
    for (const auto& event : watch.events()) {
        EXPECT_EQ(event.isRenamed, event.name.starts_with("1tst")) << event.name;
    }
}

TEST_F(VorRun, OnlyASlashEndsTheDirectory) {
    const std::string path = input("1tst.pdb");
    run.outputDirectory = QString::fromStdString(output.path().string() + "/");
    analyse(path);
    EXPECT_EQ(reports(), allSix);
    // A directory whose name ends in a backslash is a directory like any other here.
    std::filesystem::create_directory(output.file("out\\"));
    run.outputDirectory = QString::fromStdString(output.file("out\\"));
    analyse(path);
    EXPECT_EQ(namesIn(output.file("out\\")), allSix);
}

TEST_F(VorRun, BaseNameEndsAtTheFirstDot) {
    run.xmlOutput = false;
    run.writeContacts = false;
    run.writeBindingStatus = false;
    analyse(input("1tst.model1.pdb"));
    analyse(input("bad\xFF.pdb"));
    EXPECT_EQ(reports(), (tLines{"1tst_200703141530_binding_residues.tbl",
                                 "bad\xFF_200703141530_binding_residues.tbl"}));
    EXPECT_EQ(log.lines().back(), end(inputs.file("bad\xEF\xBF\xBD.pdb")));
}

TEST_F(VorRun, StampIsTheLocalMinuteOfTheStart) {
    run.inputFiles = pathList({input("a.pdb"), input("b.pdb")});
    const QString format = QStringLiteral("yyyyMMddhhmm");
    const QString before = QDateTime::currentDateTime().toString(format);
    ASSERT_TRUE(runToEnd(run));
    const QString after = QDateTime::currentDateTime().toString(format);
    ASSERT_EQ(reports().size(), 12U);
    const QString first = QString::fromStdString(reports().front()).section('_', 1, 1);
    EXPECT_GE(first, before);
    EXPECT_LE(first, after);
    for (const std::string& name : reports()) {
        EXPECT_EQ(QString::fromStdString(name).section('_', 1, 1), first);
    }
}

TEST_F(VorRun, ReportsThatCannotBeOpenedAreSkippedInSilence) {
    const std::string missing = output.file("missing");
    run.outputDirectory = QString::fromStdString(missing);
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(), (tLines{begin(path), end(path)}));
    const std::string base = missing + "/1tst_200703141530_";
    EXPECT_EQ(run.unwrittenReports(),
              pathList({base + "contacts.xml", base + "binding_residues.xml",
                        base + "binding_status.xml", base + "contacts.tbl",
                        base + "binding_residues.tbl", base + "binding_status.tbl"}));
}

TEST_F(VorRun, ReportsThatCannotBeCompletedAreReported) {
    const std::string taken = output.file("1tst_200703141530_contacts.xml");
    std::filesystem::create_directory(taken);
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(),
              (tLines{begin(path), "red: Could not write report " + taken + ": Is a directory",
                      end(path)}));
    EXPECT_EQ(reports().size(), 5U);

    for (const std::string& name : reports()) {
        writeContent(output.file(name), "older");
    }
    log.messages.clear();
    {
        const cFullDisk fullDisk(20);
        analyse(path);
    }
    EXPECT_EQ(log.lines().size(), 8U);
    for (std::size_t i = 1; i < 7; ++i) {
        EXPECT_EQ(log.lines()[i].find("red: Could not write report " + output.path().string()), 0U);
    }
    for (const auto& [name, content] : filesIn(output.path())) {
        EXPECT_EQ(content, "older") << name;
    }
    EXPECT_EQ(reports().size(), 5U);
}

TEST_F(VorRun, StopFlagGivesAFileUpWithoutReports) {
    std::atomic<bool> stop = true;
    run.setStopFlag(&stop);
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::stopped);
    EXPECT_EQ(log.lines(), tLines{begin(path)});
    EXPECT_TRUE(reports().empty());
}

TEST_F(VorRun, MaximumDistanceCountsAtTheThreshold) {
    run.threshold = 2.5;
    analyse(input("1tst.pdb", pairOf({0, 1}, {3.5, 4.5})));
    EXPECT_EQ(rows("contacts.tbl"), contactRows("MaximumDistance"));
    analyse(input("1tst.pdb", pairOf({0, 1}, {3.501, 4.5})));
    EXPECT_EQ(rows("contacts.tbl"), "");
    EXPECT_EQ(report("contacts.tbl"),
              "pdb_id: \nradii_filename: protor.radii\nMD_threshold: 2.5\n");
}

TEST_F(VorRun, PrismCountsAtTheRadiiPlusTheThreshold) {
    run.criterion = prism;
    run.threshold = 0.5;
    run.radii = {{"GLY_N", 1.5}, {"GLY_CA", 1.25}};
    analyse(input("1tst.pdb", pairOf({0, 1}, {4.25, 5.25}))); // 1.25 + 1.5 + 0.5 apart
    EXPECT_EQ(rows("contacts.tbl"), contactRows("PRISM"));
    analyse(input("1tst.pdb", pairOf({0, 1}, {4.251, 5.25})));
    EXPECT_EQ(rows("contacts.tbl"), "");
}

TEST_F(VorRun, VordaUsesItsOwnDistancesWhateverTheThresholdIs) {
    run.criterion = vorda;
    run.radii = {{"GLY_N", 1.5}, {"GLY_CA", 1.25}};
    for (const double threshold : {0.0, 1.0, 100.0}) {
        run.threshold = threshold;
        // Van der Waals: 1.25 + 1.5 + 1.125 apart.
        analyse(input("1tst.pdb", pairOf({0, 1}, {4.875, 6})));
        EXPECT_EQ(rows("contacts.tbl"), contactRows("VORDA", {"vanDerWaals"})) << threshold;
        analyse(input("1tst.pdb", pairOf({0, 1}, {4.876, 6})));
        EXPECT_EQ(rows("contacts.tbl"), "");
        // Search: second atoms up to 6 + 15 Å apart, whatever the others do.
        analyse(input("1tst.pdb", pairOf({10, 0}, {12, 21})));
        EXPECT_EQ(rows("contacts.tbl"), contactRows("VORDA", {"vanDerWaals"}));
        analyse(input("1tst.pdb", pairOf({10, 0}, {12, 21.001})));
        EXPECT_EQ(rows("contacts.tbl"), "");
    }
}

TEST_F(VorRun, VordaTypesContactsByItsRules) {
    run.criterion = vorda;
    run.contactRules = {{"GLY_GLY",
                         {{"CA", "NXT", "GLY", "GLY", ionic, 3.0, 1, 0},
                          {"ALL", "ALL", "GLY", "GLY", hydrophobic, 3.0, 0, 0}}}};
    analyse(input("1tst.pdb", pairOf({0, 1}, {4, 5})));
    EXPECT_EQ(rows("contacts.tbl"), contactRows("VORDA", {"Hydrophobic", "Ionic", "vanDerWaals"}));
    EXPECT_NE(report("contacts.xml")
                  .find("      <contact_types>\n"
                        "        <contact_type>Hydrophobic</contact_type>\n"
                        "        <contact_type>Ionic</contact_type>\n"
                        "        <contact_type>vanDerWaals</contact_type>\n"
                        "      </contact_types>\n"),
              std::string::npos);
}

TEST_F(VorRun, DovrethMarksResiduesAndWritesAnEmptyContactsReport) {
    run.criterion = dovreth;
    run.threshold = 1.0;
    analyse(input("1tst.pdb"));
    EXPECT_EQ(reports(), allSix);
    EXPECT_NE(report("contacts.xml").find("  <contacts>\n  </contacts>\n"), std::string::npos);
    EXPECT_EQ(report("contacts.tbl"), "pdb_id: 1TST\nradii_filename: protor.radii\n"
                                      "TH_delta_asa: 1\nTH_z_slice: 0.25\nTH_r_solvent: 1.4\n");
    EXPECT_EQ(rows("binding_residues.tbl"),
              "A     1  GLY           Dovreth\nB     2  GLY           Dovreth\n");
    EXPECT_EQ(rows("binding_status.tbl"),
              "A     1  GLY  1           Dovreth\nB     2  GLY  1           Dovreth\n");
    run.threshold = 1000.0;
    analyse(inputs.file("1tst.pdb"));
    EXPECT_EQ(rows("binding_residues.tbl"), "");
}

TEST_F(VorRun, DovrethLeavesResiduesThatDoNotLoseArea) {
    run.criterion = dovreth;
    run.threshold = 0.0;
    std::string apart = twoGlycines();
    for (std::size_t at = apart.find("   4.000\n"); at != std::string::npos;
         at = apart.find("   4.000\n")) {
        apart.replace(at, 9, "  40.000\n");
    }
    analyse(input("1tst.pdb", apart));
    EXPECT_EQ(rows("binding_residues.tbl"), "");
}

TEST_F(VorRun, NoCriterionFindsNothing) {
    run.criterion = none;
    analyse(input("1tst.pdb"));
    EXPECT_EQ(reports(), allSix);
    EXPECT_EQ(report("contacts.tbl"), "pdb_id: 1TST\nradii_filename: protor.radii\n");
    EXPECT_EQ(report("binding_status.tbl"),
              "pdb_id: 1TST\nradii_filename: protor.radii\n"
              "A     1  GLY  0                  \nB     2  GLY  0                  \n");
}

TEST_F(VorRun, FilesAreClosedAfterwards) {
    const std::string good = input("good.pdb");
    const std::string bad = input("bad.pdb", "HEADER\n");
    analyse(good);
    const int before = openDescriptorCount();
    for (int i = 0; i < 10; ++i) {
        analyse(good);
        analyse(bad);
        analyse(inputs.file("missing.pdb"));
    }
    EXPECT_EQ(openDescriptorCount(), before);
}

} // namespace kelmo

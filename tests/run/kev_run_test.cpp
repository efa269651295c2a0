// The worker of the structure module: what it tells, what it writes, and when.
#include "run/crunkev_linux.h"
#include "tests/run/run_fixture.h"
#include "tests/support/directory_watch.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/text_difference.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <time.h>

namespace kelmo {

namespace {

class KevRun : public cRunFixture<cRunKEV> {
  protected:
    KevRun() {
        switchEverythingOn(run);
        run.setRadii(glycineRadii());
        run.setOutputDirectoryName(outputName());
    }

    static std::string begin(const std::string& path) {
        return "black: Analysing structure of peptide from " + path + "...";
    }
    static std::string end(const std::string& path) {
        return "black: Structure of peptide from " + path + " analyzed";
    }
};

const tLines allFour{"1tst_200703141530_bound.tbl", "1tst_200703141530_bound.xml",
                     "1tst_200703141530_unbound.tbl", "1tst_200703141530_unbound.xml"};

/// The contents of a line's elements with this name, in order.
tLines valuesOf(const std::string& element, const std::string& xml) {
    tLines values;
    const std::string opening = "<" + element + ">";
    for (std::size_t at = xml.find(opening); at != std::string::npos;
         at = xml.find(opening, at + 1)) {
        const std::size_t first = at + opening.size();
        values.push_back(xml.substr(first, xml.find('<', first) - first));
    }
    return values;
}

/// Moves the process to another time zone and back.
class cTimeZone {
  public:
    explicit cTimeZone(const char* name)
        : previous(qgetenv("TZ")), wasSet(qEnvironmentVariableIsSet("TZ")) {
        change(name);
    }
    ~cTimeZone() {
        if (wasSet) {
            change(previous.constData());
        } else {
            qunsetenv("TZ");
            ::tzset();
        }
    }
    cTimeZone(const cTimeZone&) = delete;
    cTimeZone& operator=(const cTimeZone&) = delete;

    static void change(const char* name) {
        qputenv("TZ", name);
        ::tzset();
    }

  private:
    QByteArray previous;
    bool wasSet;
};

} // namespace

TEST_F(KevRun, GoodFileIsAnnouncedAndClosed) {
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(), (tLines{begin(path), end(path)}));
    EXPECT_EQ(reports(), allFour);
    EXPECT_TRUE(run.unwrittenReports().isEmpty());
}

TEST_F(KevRun, EmptyListSendsNothingAndWritesNothing) {
    writeContent(output.file(".kelmo-1-2.part"), "left behind");
    ASSERT_TRUE(runToEnd(run));
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(reports(), tLines{".kelmo-1-2.part"});
}

TEST_F(KevRun, FileThatCannotBeOpened) {
    const std::string path = inputs.file("missing.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::failed);
    EXPECT_EQ(log.lines(), tLines{"red: Could not open file " + path});
    EXPECT_TRUE(reports().empty());
}

TEST_F(KevRun, WhatIsNoRegularFileCannotBeOpened) {
    const std::string pipe = inputs.file("pipe.pdb");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {pipe, inputs.path().string(), std::string("/dev/zero")}) {
        EXPECT_EQ(analyse(path), eFileOutcome::failed);
        EXPECT_EQ(log.lines().back(), "red: Could not open file " + path);
    }
    EXPECT_EQ(log.lines().size(), 3U);
    EXPECT_TRUE(reports().empty());
}

TEST_F(KevRun, FaultyLineIsNamed) {
    const std::string path = input(
        "bad.pdb", "REMARK one\n" + atomLine("N", "GLY", 'A', "1", 0, 0, 0) + "ATOM too short\n");
    EXPECT_EQ(analyse(path), eFileOutcome::failed);
    EXPECT_EQ(log.lines(),
              (tLines{begin(path), "red: There was an error in PDB file " + path + " at line 3"}));
    EXPECT_TRUE(reports().empty());
}

TEST_F(KevRun, FaultyFileIsNotAskedForItsRadii) {
    const std::string path =
        input("bad.pdb", atomLine("XX", "GLY", 'A', "1", 0, 0, 0) + "ATOM too short\n");
    EXPECT_EQ(analyse(path), eFileOutcome::failed);
    EXPECT_EQ(log.lines(),
              (tLines{begin(path), "red: There was an error in PDB file " + path + " at line 2"}));
}

TEST_F(KevRun, FileWithoutAtoms) {
    for (const std::string& text : {std::string(), std::string("REMARK nothing\n"),
                                    "END\n" + atomLine("N", "GLY", 'A', "1", 0, 0, 0)}) {
        const std::string path = input("empty.pdb", text);
        log.messages.clear();
        EXPECT_EQ(analyse(path), eFileOutcome::failed);
        EXPECT_EQ(log.lines(), (tLines{begin(path), "red: No atoms found in PDB file " + path}));
    }
    EXPECT_TRUE(reports().empty());
}

TEST_F(KevRun, MissingRadiiAreListedEachWithASemicolonAndTheAnalysisGoesOn) {
    run.setRadii({{"GLY_N", 1.7}, {"GLY_C", 1.7}});
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(),
              (tLines{begin(path),
                      "yellow: The following radii were not found in radii file: GLY_CA; GLY_O; ",
                      end(path)}));
    EXPECT_EQ(reports(), allFour);
}

TEST_F(KevRun, AtomsDenserThanInAMoleculeAreWarnedOfBeforeTheCalculations) {
    const std::string path = input("1tst.pdb", inNanometres(twoGlycines()));
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(), (tLines{begin(path),
                                   "yellow: Mean distance to the nearest atom in PDB file " + path +
                                       " is 0.15 Å: are the coordinates in nanometres?",
                                   end(path)}));
    EXPECT_EQ(reports(), allFour);
}

TEST_F(KevRun, MissingRadiiOfOneFileAreNotThoseOfTheNext) {
    run.setRadii({});
    const std::string first = input("first.pdb", atomLine("XX", "GLY", 'A', "1", 0, 0, 0));
    const std::string second = input("second.pdb", atomLine("YY", "GLY", 'A', "1", 0, 0, 0));
    analyse(first);
    analyse(second);
    EXPECT_EQ(
        log.lines(),
        (tLines{begin(first), "yellow: The following radii were not found in radii file: GLY_XX; ",
                end(first), begin(second),
                "yellow: The following radii were not found in radii file: GLY_YY; ",
                end(second)}));
}

TEST_F(KevRun, BadFilesBetweenGoodOnesAreSkipped) {
    const std::string first = input("first.pdb");
    const std::string missing = inputs.file("missing.pdb");
    const std::string faulty = input("faulty.pdb", "ATOM\n");
    const std::string bad = input("bad.pdb", "HEADER\n");
    const std::string empty = input("empty.pdb", "\n");
    const std::string last = input("last.pdb");
    run.setFilesfForAnalysis(pathList({first, missing, bad, empty, faulty, last}));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(log.lines(),
              (tLines{begin(first), end(first), "red: Could not open file " + missing, begin(bad),
                      "red: There was an error in PDB file " + bad + " at line 1", begin(empty),
                      "red: No atoms found in PDB file " + empty, begin(faulty),
                      "red: No atoms found in PDB file " + faulty, begin(last), end(last)}));
    EXPECT_EQ(reports().size(), 8U);
    const auto files = filesIn(output.path());
    for (const auto& [name, content] : files) {
        if (name.starts_with("first")) {
            EXPECT_EQ(content, files.at("last" + name.substr(5)));
        }
    }
}

TEST_F(KevRun, OnlyTheAskedReportsAreWritten) {
    const std::string path = input("1tst.pdb");
    for (unsigned bits = 0; bits < 16; ++bits) {
        const bool xml = (bits & 1) != 0;
        const bool table = (bits & 2) != 0;
        const bool bound = (bits & 4) != 0;
        const bool chains = (bits & 8) != 0;
        run.setOutputTypes(xml, table);
        run.setAnalysisTypes(bound, chains);
        log.messages.clear();
        EXPECT_EQ(analyse(path), eFileOutcome::analysed);
        EXPECT_EQ(log.lines(), (tLines{begin(path), end(path)}));
        tLines expected;
        for (const std::string& name : allFour) {
            const bool isBound = name.find("_bound") != std::string::npos;
            const bool isXml = name.ends_with(".xml");
            if ((isBound ? bound : chains) && (isXml ? xml : table)) {
                expected.push_back(name);
            }
        }
        EXPECT_EQ(reports(), expected);
        for (const std::string& name : expected) {
            std::filesystem::remove(output.file(name));
        }
    }
}

TEST_F(KevRun, ReportsAreFinishedInTheirOrderAndOnlyByRenaming) {
    const std::string path = input("1tst.pdb");
    cDirectoryWatch watch(output.path());
    analyse(path);
    EXPECT_EQ(watch.renamedTo(),
              (tLines{"1tst_200703141530_bound.xml", "1tst_200703141530_bound.tbl",
                      "1tst_200703141530_unbound.xml", "1tst_200703141530_unbound.tbl"}));
    for (const auto& event : watch.events()) {
        EXPECT_EQ(event.isRenamed, event.name.starts_with("1tst")) << event.name;
    }
}

TEST_F(KevRun, DirectoryWithAndWithoutSlashIsTheSame) {
    const std::string path = input("1tst.pdb");
    analyse(path);
    const auto without = filesIn(output.path());
    for (const std::string& name : allFour) {
        std::filesystem::remove(output.file(name));
    }
    run.setOutputDirectoryName(QString::fromStdString(output.path().string() + "/"));
    analyse(path);
    EXPECT_EQ(filesIn(output.path()), without);
    EXPECT_EQ(without.size(), 4U);
}

TEST_F(KevRun, TrailingBackslashIsTakenAsASeparator) {
    run.setOutputDirectoryName(QString::fromStdString(output.file("out\\")));
    EXPECT_EQ(analyse(input("1tst.pdb")), eFileOutcome::analysed);
    tLines expected;
    for (const std::string& name : allFour) {
        expected.push_back("out\\" + name);
    }
    EXPECT_EQ(reports(), expected);
}

TEST_F(KevRun, DirectoryNameIsTheOneOfTheStartNotOfEveryFile) {
    run.setFilesfForAnalysis(pathList({input("a.pdb"), input("b.pdb"), input("c.pdb")}));
    ASSERT_TRUE(runToEnd(run));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_GE(reports().size(), 12U);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(output.path())) {
        EXPECT_EQ(entry.path().parent_path(), output.path());
    }
}

TEST_F(KevRun, BaseNameEndsAtTheFirstDot) {
    run.setOutputTypes(true, false);
    run.setAnalysisTypes(true, false);
    for (const char* name : {"1abc.model1.pdb", "in.d/2abc", "in.d/.hidden.pdb"}) {
        EXPECT_EQ(analyse(input(name)), eFileOutcome::analysed);
    }
    EXPECT_EQ(reports(), (tLines{"1abc_200703141530_bound.xml", "2abc_200703141530_bound.xml",
                                 "_200703141530_bound.xml"}));
}

TEST_F(KevRun, LaterFileOfTheSameBaseNameReplacesTheReports) {
    const std::string other = atomLine("N", "GLY", 'Z', "7", 0, 0, 0);
    const std::string first = input("a/1tst.pdb");
    const std::string second = input("b/1tst.pdb", other);
    EXPECT_EQ(analyse(second), eFileOutcome::analysed);
    const auto expected = filesIn(output.path());
    EXPECT_EQ(analyse(first), eFileOutcome::analysed);
    EXPECT_NE(filesIn(output.path()), expected);
    EXPECT_EQ(analyse(second), eFileOutcome::analysed);
    EXPECT_EQ(filesIn(output.path()), expected);
}

TEST_F(KevRun, StampIsTheLocalMinuteOfTheStart) {
    run.setOutputTypes(false, true);
    run.setAnalysisTypes(true, false);
    run.setFilesfForAnalysis(pathList({input("1tst.pdb")}));
    const QString format = QStringLiteral("yyyyMMddhhmm");
    const QString before = QDateTime::currentDateTime().toString(format);
    ASSERT_TRUE(runToEnd(run));
    const QString after = QDateTime::currentDateTime().toString(format);
    ASSERT_EQ(reports().size(), 1U);
    const QString stamp = QString::fromStdString(reports().front()).section('_', 1, 1);
    EXPECT_EQ(stamp.size(), 12);
    EXPECT_GE(stamp, before);
    EXPECT_LE(stamp, after);
}

TEST_F(KevRun, StampIsTakenOncePerRun) {
    // While the run is under way, the clock on the wall goes on by some hours.
    const cTimeZone zone("UTC");
    run.setOutputTypes(false, true);
    run.setAnalysisTypes(true, false);
    run.setFilesfForAnalysis(pathList({input("a.pdb"), input("b.pdb"), input("c.pdb")}));
    const QString format = QStringLiteral("yyyyMMddhhmm");
    const QString before = QDateTime::currentDateTimeUtc().toString(format);
    QObject::connect(
        &run, &cAnalysisRun::messageSent, &log, [] { cTimeZone::change("XYZ-5"); },
        Qt::DirectConnection);
    ASSERT_TRUE(runToEnd(run));
    const QString after = QDateTime::currentDateTimeUtc().toString(format);
    EXPECT_GT(cAnalysisRun::currentTimeStamp(), after) << "the clock did not go on";
    ASSERT_EQ(reports().size(), 3U);
    for (const std::string& name : reports()) {
        const QString stamp = QString::fromStdString(name).section('_', 1, 1);
        EXPECT_GE(stamp, before);
        EXPECT_LE(stamp, after);
    }
}

TEST_F(KevRun, ReportsThatCannotBeOpenedAreSkippedInSilence) {
    const std::string missing = output.file("missing");
    run.setOutputDirectoryName(QString::fromStdString(missing));
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(), (tLines{begin(path), end(path)}));
    EXPECT_EQ(run.unwrittenReports(), pathList({missing + "/1tst_200703141530_bound.xml",
                                                missing + "/1tst_200703141530_bound.tbl",
                                                missing + "/1tst_200703141530_unbound.xml",
                                                missing + "/1tst_200703141530_unbound.tbl"}));
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(KevRun, ReportThatCannotBeRenamedIsReportedAndTheOthersAreWritten) {
    const std::string taken = output.file("1tst_200703141530_bound.tbl");
    std::filesystem::create_directory(taken);
    const std::string path = input("1tst.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(log.lines(),
              (tLines{begin(path), "red: Could not write report " + taken + ": Is a directory",
                      end(path)}));
    EXPECT_EQ(run.unwrittenReports(), pathList({taken}));
    EXPECT_EQ(reports(), (tLines{"1tst_200703141530_bound.xml", "1tst_200703141530_unbound.tbl",
                                 "1tst_200703141530_unbound.xml"}));
}

TEST_F(KevRun, FullDiskIsReportedAndOlderReportsStay) {
    for (const std::string& name : allFour) {
        writeContent(output.file(name), "older");
    }
    run.setRadii(shippedTables().radii);
    // One structure whose reports fit into the writers' buffers and one whose reports do not.
    std::filesystem::copy_file(samplePath("1ubq"), inputs.file("1ubq.pdb"));
    const std::string small = input("1tst.pdb");
    const std::string large = inputs.file("1ubq.pdb");
    {
        const cFullDisk fullDisk(500);
        analyse(small);
        analyse(large);
    }
    tLines expected;
    for (const std::string& path : {small, large}) {
        expected.push_back(begin(path));
        if (path == large) {
            expected.push_back("black: Not analysed in 1ubq.pdb: 58 waters. See preparation.");
        }
        const std::string base = output.file(path == small ? "1tst" : "1ubq");
        for (const char* suffix : {"_bound.xml", "_bound.tbl", "_unbound.xml", "_unbound.tbl"}) {
            expected.push_back("red: Could not write report " + base + "_200703141530" + suffix +
                               ": File too large");
        }
        expected.push_back(end(path));
    }
    EXPECT_EQ(log.lines(), expected);
    EXPECT_EQ(run.unwrittenReports().size(), 8);
    EXPECT_EQ(reports(), allFour);
    for (const auto& [name, content] : filesIn(output.path())) {
        EXPECT_EQ(content, "older") << name;
    }
}

TEST_F(KevRun, UnwrittenReportsAreThoseOfTheLastRun) {
    run.setFilesfForAnalysis(pathList({input("1tst.pdb")}));
    run.setOutputDirectoryName(QString::fromStdString(output.file("missing")));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(run.unwrittenReports().size(), 4);
    run.setOutputDirectoryName(QString::fromStdString(output.path().string()));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_TRUE(run.unwrittenReports().isEmpty());
    EXPECT_EQ(reports().size(), 4U);
}

TEST_F(KevRun, RunSweepsUpWhatAKilledOneLeft) {
    writeContent(output.file(".kelmo-1-2.part"), "left behind");
    run.setFilesfForAnalysis(pathList({input("1tst.pdb")}));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(reports().size(), 4U);
    EXPECT_FALSE(std::filesystem::exists(output.file(".kelmo-1-2.part")));
}

TEST_F(KevRun, RunSweepsWhereItsReportsGoWithATrailingBackslash) {
    writeContent(output.file(".kelmo-1-2.part"), "left behind");
    run.setOutputDirectoryName(QString::fromStdString(output.file("out\\")));
    run.setFilesfForAnalysis(pathList({input("1tst.pdb")}));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(reports().size(), 4U);
    EXPECT_FALSE(std::filesystem::exists(output.file(".kelmo-1-2.part")));
}

TEST_F(KevRun, NamesOfAnyBytesAreShownReadablyAndKeptInReports) {
    run.setOutputTypes(true, false);
    run.setAnalysisTypes(true, false);
    const std::string path = input("bad\xFF.pdb");
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    const std::string shown = inputs.file("bad\xEF\xBF\xBD.pdb");
    EXPECT_EQ(log.lines(), (tLines{begin(shown), end(shown)}));
    EXPECT_EQ(reports(), tLines{"bad\xFF_200703141530_bound.xml"});
}

TEST_F(KevRun, OutputDirectoryMayHaveAnyBytes) {
    const std::string directory = output.file("out\xFE");
    std::filesystem::create_directory(directory);
    run.setOutputDirectoryName(pathFromBytes(directory));
    run.setFilesfForAnalysis(pathList({input("1tst.pdb")}));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(namesIn(directory).size(), 4U);
    EXPECT_TRUE(run.unwrittenReports().isEmpty());
}

TEST_F(KevRun, SettersCopyWhatTheyAreGiven) {
    const std::string path = input("1tst.pdb");
    analyse(path);
    const auto expected = filesIn(output.path());

    cRunKEV other;
    QStringList files = pathList({path});
    QString directory = QString::fromStdString(output.path().string());
    std::map<std::string, double> radii = glycineRadii();
    std::map<std::string, sAsa> standards = shippedTables().standards;
    std::map<std::string, double> scale = shippedTables().scale;
    switchEverythingOn(other);
    other.setFilesfForAnalysis(files);
    other.setOutputDirectoryName(directory);
    other.setRadii(radii);
    other.setRASAAttributes(true, standards);
    other.setHydrophobicityAttributes(true, scale);
    files.clear();
    directory.clear();
    radii.clear();
    standards.clear();
    scale.clear();
    for (const std::string& name : allFour) {
        std::filesystem::remove(output.file(name));
    }
    ASSERT_TRUE(runToEnd(other));
    const auto written = filesIn(output.path());
    ASSERT_EQ(written.size(), 4U);
    EXPECT_TRUE(std::equal(written.begin(), written.end(), expected.begin(),
                           [](const auto& a, const auto& b) { return a.second == b.second; }));
}

TEST_F(KevRun, WorkerIsUsedAgainWithOtherSettings) {
    const std::string path = input("1tst.pdb");
    const auto analysed = [&](cRunKEV& worker, double probeRadius, bool depth) {
        worker.setOutputDirectoryName(QString::fromStdString(output.path().string()));
        worker.setRadii(glycineRadii());
        worker.setASAAttributes(true, probeRadius, 0.25, true);
        worker.setDPXAttributes(depth);
        worker.analyseFile(QString::fromStdString(path), fixedStamp);
        return filesIn(output.path());
    };
    cRunKEV fresh;
    switchEverythingOn(fresh);
    const auto expected = analysed(fresh, 1.2, false);
    const auto first = analysed(run, 1.4, true);
    EXPECT_NE(first, expected);
    EXPECT_EQ(analysed(run, 1.2, false), expected);
    EXPECT_EQ(analysed(run, 1.4, true), first);
}

TEST_F(KevRun, UnboundAreasAreThoseOfEachChainAlone) {
    // Each chain alone in a file of its own, and both in one.
    const std::string text = twoGlycines();
    const std::size_t chainB = text.find("ATOM", text.find(" B  ") - 40);
    const std::size_t firstAtom = text.find("ATOM");
    const std::string header = text.substr(0, firstAtom);
    const std::string onlyA = header + text.substr(firstAtom, chainB - firstAtom);
    const std::string onlyB = header + text.substr(chainB);
    ASSERT_EQ(std::count(onlyA.begin(), onlyA.end(), '\n'), 5);
    ASSERT_EQ(std::count(onlyB.begin(), onlyB.end(), '\n'), 6);
    run.setOutputTypes(true, false);
    analyse(input("a.pdb", onlyA));
    analyse(input("b.pdb", onlyB));
    analyse(input("ab.pdb", text));
    const auto totals = [&](const std::string& name) {
        return valuesOf("total", contentOf(output.file(name + ".xml")));
    };
    // Structure, chain, residue, relative area of the residue; then the next chain.
    const tLines a = totals("a_200703141530_bound");
    const tLines b = totals("b_200703141530_bound");
    const tLines together = totals("ab_200703141530_unbound");
    ASSERT_EQ(together.size(), 7U);
    EXPECT_EQ(together, (tLines{"0", a.at(1), a.at(2), a.at(3), b.at(1), b.at(2), b.at(3)}));
    const tLines bound = totals("ab_200703141530_bound");
    EXPECT_NE(bound.at(2), together.at(2)) << "the chains do not touch: the test shows nothing";
}

TEST_F(KevRun, WhatIsComputedOnACopyOfAChainReachesTheResiduesButNotTheChain) {
    // Without areas of its own a chain reports zeros, whatever its residues got.
    run.setOutputTypes(true, false);
    run.setAnalysisTypes(false, true);
    run.setASAAttributes(false, 1.4, 0.25, true);
    analyse(input("1tst.pdb"));
    const std::string xml = contentOf(output.file("1tst_200703141530_unbound.xml"));
    const tLines totals = valuesOf("total", xml);
    ASSERT_EQ(totals.size(), 7U);
    EXPECT_EQ(totals[0], "0");  // structure
    EXPECT_EQ(totals[1], "0");  // chain
    EXPECT_EQ(totals[2], "-1"); // residue: areas were not asked for
    EXPECT_NE(totals[3], "-1"); // relative area of the residue
    EXPECT_NE(valuesOf("maximum", xml).at(1), "-1") << "protrusion of the first residue";
    EXPECT_EQ(valuesOf("hydrophobicity", xml).front(), "-0.4");
}

TEST_F(KevRun, StopFlagGivesAFileUpWithoutReports) {
    const std::string path = input("1tst.pdb");
    std::atomic<bool> stop = true;
    run.setStopFlag(&stop);
    EXPECT_EQ(analyse(path), eFileOutcome::stopped);
    EXPECT_EQ(log.lines(), tLines{begin(path)});
    EXPECT_TRUE(reports().empty());
    stop = false;
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
    EXPECT_EQ(reports(), allFour);
    stop = true;
    run.setStopFlag(nullptr);
    EXPECT_EQ(analyse(path), eFileOutcome::analysed);
}

TEST_F(KevRun, StopFlagEndsARun) {
    std::atomic<bool> stop = true;
    run.setStopFlag(&stop);
    run.setFilesfForAnalysis(pathList({input("1tst.pdb"), input("2tst.pdb")}));
    ASSERT_TRUE(runToEnd(run));
    EXPECT_TRUE(log.lines().empty());
    EXPECT_TRUE(reports().empty());
}

TEST_F(KevRun, FilesAreClosedAfterwards) {
    const std::string good = input("good.pdb");
    const std::string bad = input("bad.pdb", "HEADER\n");
    const std::string empty = input("empty.pdb", "");
    const std::string missing = inputs.file("missing.pdb");
    analyse(good);
    const int before = openDescriptorCount();
    for (int i = 0; i < 10; ++i) {
        for (const std::string& path : {good, bad, empty, missing}) {
            analyse(path);
        }
        const cFullDisk fullDisk(100);
        analyse(good);
    }
    EXPECT_EQ(openDescriptorCount(), before);
}

TEST_F(KevRun, SeveralWorkersAnalyseAtOnce) {
    run.setRadii(shippedTables().radii);
    const std::string path = samplePath("1ubq");
    analyse(path);
    const auto expected = filesIn(output.path());
    constexpr int workerCount = 4;
    constexpr int repetitions = 3;
    std::vector<std::thread> threads;
    std::vector<std::string> differences(workerCount);
    for (int i = 0; i < workerCount; ++i) {
        threads.emplace_back([&, i] {
            const cScratchDirectory place;
            cRunKEV worker;
            switchEverythingOn(worker);
            worker.setOutputDirectoryName(QString::fromStdString(place.path().string()));
            for (int k = 0; k < repetitions; ++k) {
                worker.analyseFile(QString::fromStdString(path), fixedStamp);
                if (filesIn(place.path()) != expected) {
                    differences[static_cast<std::size_t>(i)] = "other reports";
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(differences, std::vector<std::string>(workerCount));
}

} // namespace kelmo

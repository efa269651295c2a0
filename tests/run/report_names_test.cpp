// The names of a file's reports, told beforehand: exactly those that are written.
#include "tests/run/run_test_tools.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace kelmo {

using enum eInteractionCriterion;

namespace {

class ReportNames : public testing::Test {
  protected:
    /// Analyses two glycines and compares; returns the number of reports.
    std::size_t expectNamesAreWritten(cAnalysisRun& run) {
        const cScratchDirectory input;
        writeContent(input.file("1tst.model1.pdb"), twoGlycines());
        const QString path = QString::fromStdString(input.file("1tst.model1.pdb"));
        std::vector<std::string> names;
        for (const QString& name : run.reportNames(path, fixedStamp)) {
            names.push_back(std::filesystem::path(name.toStdString()).filename().string());
            EXPECT_EQ(std::filesystem::path(name.toStdString()).parent_path(), output->path());
        }
        EXPECT_TRUE(namesIn(output->path()).empty()) << "nothing is written by asking";
        EXPECT_EQ(run.analyseFile(path, fixedStamp), eFileOutcome::analysed);
        std::sort(names.begin(), names.end());
        EXPECT_EQ(names, namesIn(output->path()));
        output = std::make_unique<cScratchDirectory>();
        return names.size();
    }
    QString outputName() const { return QString::fromStdString(output->path().string()); }

    std::unique_ptr<cScratchDirectory> output = std::make_unique<cScratchDirectory>();
};

} // namespace

TEST_F(ReportNames, AreThoseOfTheStructureAnalyses) {
    std::size_t reports = 0;
    for (unsigned choice = 0; choice < 16; ++choice) {
        cRunKEV run;
        switchEverythingOn(run);
        run.setOutputDirectoryName(outputName());
        run.setAnalysisTypes((choice & 1U) != 0, (choice & 2U) != 0);
        run.setOutputTypes((choice & 4U) != 0, (choice & 8U) != 0);
        reports += expectNamesAreWritten(run);
    }
    EXPECT_EQ(reports, 16U) << "each of the four in a quarter of the choices";
}

TEST_F(ReportNames, AreThoseOfTheInteractionAnalysesByEveryCriterion) {
    for (const eInteractionCriterion criterion : {maximumDistance, prism, dovreth, vorda}) {
        std::size_t reports = 0;
        for (unsigned choice = 0; choice < 32; ++choice) {
            cRunVOR run;
            switchEverythingOn(run, criterion);
            run.outputDirectory = outputName();
            run.writeContacts = (choice & 1U) != 0;
            run.writeBindingResidues = (choice & 2U) != 0;
            run.writeBindingStatus = (choice & 4U) != 0;
            run.xmlOutput = (choice & 8U) != 0;
            run.tableOutput = (choice & 16U) != 0;
            reports += expectNamesAreWritten(run);
        }
        EXPECT_EQ(reports, 48U) << "each of the six in a quarter of the choices";
    }
}

TEST_F(ReportNames, DoNotDependOnAStop) {
    const std::atomic<bool> stop = true;
    cRunKEV run;
    switchEverythingOn(run);
    run.setOutputDirectoryName(outputName());
    run.setStopFlag(&stop);
    EXPECT_EQ(run.reportNames(QStringLiteral("1tst.pdb"), fixedStamp).size(), 4);
}

} // namespace kelmo

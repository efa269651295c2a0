// Reports of the sample entries as they were when they were last found right. They say that
// something changed, not that it is right: the comparison with the reference implementation does.
//
// With KELMO_UPDATE_GOLDEN=1 in the environment the files of tests/golden are written anew. Tables
// are kept whole, so that a change shows in their lines; the XML reports hold the same values in
// four times the bytes and are kept as SHA-256 sums.
#include "tests/run/run_test_tools.h"
#include "tests/support/test_files.h"
#include "tests/support/text_difference.h"

#include <QByteArray>
#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

namespace kelmo {

using enum eInteractionCriterion;

namespace {

using tReports = std::map<std::string, std::string>;

const std::filesystem::path goldenDirectory = sourcePath("tests/golden");
const std::filesystem::path actualDirectory =
    std::filesystem::path(KELMO_BINARY_DIR) / "golden-actual";

bool isUpdateAsked() {
    return qgetenv("KELMO_UPDATE_GOLDEN") == "1";
}

/// The reports that the worker writes for a sample, under names without the stamp.
template <typename Worker>
tReports reportsBy(Worker& run, const cScratchDirectory& output, const std::string& sample,
                   const std::string& testName) {
    EXPECT_EQ(run.analyseFile(QString::fromStdString(samplePath(sample).string()), fixedStamp),
              eFileOutcome::analysed);
    tReports reports;
    for (const auto& [name, content] : filesIn(output.path())) {
        reports[testName + name.substr(name.find('_', name.find('_') + 1))] = content;
    }
    return reports;
}

/// The sums of the XML reports, in the format of sha256sum.
std::string sumsOf(const tReports& reports) {
    std::string sums;
    for (const auto& [name, content] : reports) {
        if (name.ends_with(".xml")) {
            const QByteArray sum = QCryptographicHash::hash(
                QByteArrayView(content.data(), static_cast<qsizetype>(content.size())),
                QCryptographicHash::Sha256);
            sums += sum.toHex().toStdString() + "  " + name + "\n";
        }
    }
    return sums;
}

/// What stands in tests/golden for these reports.
tReports goldenFilesOf(const tReports& reports, const std::string& testName) {
    tReports files;
    for (const auto& [name, content] : reports) {
        if (name.ends_with(".tbl")) {
            files[name] = content;
        }
    }
    files[testName + ".sha256"] = sumsOf(reports);
    return files;
}

void writeFiles(const tReports& files, const std::filesystem::path& directory) {
    std::filesystem::create_directories(directory);
    for (const auto& [name, content] : files) {
        writeContent(directory / name, content);
    }
}

void compareWithGolden(const tReports& reports, const std::string& testName) {
    const tReports files = goldenFilesOf(reports, testName);
    if (isUpdateAsked()) {
        writeFiles(files, goldenDirectory);
    }
    bool isSame = true;
    for (const auto& [name, content] : files) {
        const std::string difference = firstDifference(content, contentOf(goldenDirectory / name));
        EXPECT_EQ(difference, "") << name;
        EXPECT_EQ(content.find('/'), std::string::npos) << name << " holds a path of this machine";
        isSame = isSame && difference.empty();
    }
    if (!isSame) {
        writeFiles(reports, actualDirectory);
        writeFiles(files, actualDirectory);
        ADD_FAILURE() << "the reports as they are now stand in " << actualDirectory;
    }
}

struct sVorCase {
    const char* sample;
    eInteractionCriterion criterion;
};

void PrintTo(const sVorCase& vorCase, std::ostream* out) {
    *out << vorCase.sample << " " << cRunVOR::getInteractionCriterionString(vorCase.criterion);
}

class KevGoldenReports : public testing::TestWithParam<const char*> {};
class VorGoldenReports : public testing::TestWithParam<sVorCase> {};

} // namespace

TEST_P(KevGoldenReports, AreUnchanged) {
    const std::string testName = std::string("kev_") + GetParam();
    const cScratchDirectory output;
    cRunKEV run;
    switchEverythingOn(run);
    run.setOutputDirectoryName(QString::fromStdString(output.path().string()));
    const tReports reports = reportsBy(run, output, GetParam(), testName);
    ASSERT_EQ(reports.size(), 4U);
    compareWithGolden(reports, testName);
}

TEST_P(VorGoldenReports, AreUnchanged) {
    const std::string criterion = cRunVOR::getInteractionCriterionString(GetParam().criterion);
    const std::string testName = std::string("vor_") + GetParam().sample + "_" + criterion;
    const cScratchDirectory output;
    cRunVOR run;
    switchEverythingOn(run, GetParam().criterion);
    run.outputDirectory = QString::fromStdString(output.path().string());
    const tReports reports = reportsBy(run, output, GetParam().sample, testName);
    ASSERT_EQ(reports.size(), 6U);
    compareWithGolden(reports, testName);
}

INSTANTIATE_TEST_SUITE_P(Samples, KevGoldenReports, testing::Values("1ubq", "1a0q", "2hhb"),
                         [](const auto& sample) { return std::string(sample.param); });
INSTANTIATE_TEST_SUITE_P(Samples, VorGoldenReports,
                         testing::Values(sVorCase{"1a0q", maximumDistance}, sVorCase{"1a0q", prism},
                                         sVorCase{"1a0q", dovreth}, sVorCase{"1a0q", vorda},
                                         sVorCase{"2hhb", maximumDistance}, sVorCase{"2hhb", prism},
                                         sVorCase{"2hhb", dovreth}, sVorCase{"2hhb", vorda}),
                         [](const auto& vorCase) {
                             return std::string(vorCase.param.sample) +
                                    cRunVOR::getInteractionCriterionString(vorCase.param.criterion);
                         });

} // namespace kelmo

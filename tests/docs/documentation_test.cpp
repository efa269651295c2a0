// What the documentation shows is what the program does: examples of tables parse, report excerpts
// are lines of real reports, links lead somewhere.
#include "contacts/residue_contact.h"
#include "model/addition.h"
#include "run/crunkev_linux.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/test_files.h"

#include <QString>

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace kelmo {

namespace fs = std::filesystem;

namespace {

const fs::path sourceDirectory = sourcePath("");

std::string onlyBlock(const std::string& page) {
    const auto blocks = fencedBlocks(sourceText("docs/formats/" + page));
    EXPECT_EQ(blocks.size(), 1U) << page;
    return blocks.empty() ? std::string() : blocks.front();
}

std::vector<fs::path> pages() {
    std::vector<fs::path> found;
    for (const char* name : {"README.md", "CONTRIBUTING.md", "CHANGELOG.md"}) {
        found.push_back(sourceDirectory / name);
    }
    for (const auto& entry : fs::recursive_directory_iterator(sourceDirectory / "docs")) {
        if (entry.path().extension() == ".md") {
            found.push_back(entry.path());
        }
    }
    return found;
}

/// The bound reports of a sample with everything switched on and the shipped tables.
class cSampleReports {
  public:
    explicit cSampleReports(const std::string& sample) {
        const cScratchDirectory directory;
        cRunKEV worker;
        switchEverythingOn(worker);
        worker.setOutputDirectoryName(QString::fromStdString(directory.path().string()));
        const QString path = QString::fromStdString(samplePath(sample).string());
        EXPECT_EQ(worker.analyseFile(path, fixedStamp), eFileOutcome::analysed);
        for (const auto& [name, content] : filesIn(directory.path())) {
            text += content + '\n';
        }
    }

    bool hasLine(const std::string& line) const {
        return ('\n' + text).find('\n' + line + '\n') != std::string::npos;
    }

  private:
    std::string text;
};

} // namespace

TEST(Documentation, ExampleOfARadiiFileIsRead) {
    std::istringstream in(onlyBlock("radii.md"));
    std::map<std::string, double> radii;
    EXPECT_EQ(getVdWrRadii(in, radii), 0);
    EXPECT_EQ(radii.at("ALA_CA"), 1.88);
}

TEST(Documentation, ExampleOfAStandardAreaFileIsRead) {
    std::istringstream in(onlyBlock("standard-areas.md"));
    std::map<std::string, sAsa> standards;
    EXPECT_EQ(getStandardAsa(in, standards), 0);
    EXPECT_EQ(standards.at("ALA").backbone, 44.24);
    EXPECT_EQ(standards.at("GLY").sideChain, 0.0);
}

TEST(Documentation, ExampleOfAHydrophobicityFileIsRead) {
    std::istringstream in(onlyBlock("hydrophobicity.md"));
    std::map<std::string, double> scale;
    EXPECT_EQ(getHydrophobicity(in, scale), 0);
    EXPECT_EQ(scale.at("GLY"), -0.4);
}

TEST(Documentation, ExampleOfContactRulesIsRead) {
    std::istringstream in(onlyBlock("contact-rules.md"));
    contactMap rules;
    createStringContactMap(in, rules);
    ASSERT_EQ(rules.at("ALA_ARG").size(), 2U);
    EXPECT_EQ(rules.at("ALA_ARG")[1].atomName2, "NE");
    EXPECT_EQ(rules.at("ARG_ALA")[0].maxDistance, 4.5);
}

TEST(Documentation, ReportExcerptsOfTheReadmeAreLinesOfRealReports) {
    const cSampleReports reports("1a0q");
    std::size_t lines = 0;
    for (const std::string& block : fencedBlocks(sourceText("README.md"), "xml")) {
        for (const std::string& line : linesOf(block)) {
            EXPECT_TRUE(reports.hasLine(line)) << line;
            ++lines;
        }
    }
    EXPECT_GT(lines, 10U);
}

TEST(Documentation, LinksLeadToFilesOfTheProject) {
    const std::regex link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
    std::size_t links = 0;
    for (const fs::path& page : pages()) {
        const std::string text = contentOf(page);
        for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end;
             ++match, ++links) {
            EXPECT_TRUE(fs::exists(page.parent_path() / (*match)[1].str()))
                << page << " links to " << (*match)[1];
        }
    }
    EXPECT_GT(links, 5U);
}

} // namespace kelmo

// Every file of the catalogue through the reader and through both workers with everything on.
#include "input/structure_reader.h"
#include "tests/catalogue/odd_inputs.h"
#include "tests/run/message_log.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/structure_links.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <cctype>
#include <ostream>
#include <sstream>

namespace kelmo {

using enum eInteractionCriterion;

/// What the test programs show of a parameter.
static void PrintTo(const sOddInput& input, std::ostream* out) {
    *out << input.name;
}

namespace {

constexpr eInteractionCriterion criteria[] = {maximumDistance, prism, dovreth, vorda};

class OddInput : public testing::TestWithParam<sOddInput> {
  protected:
    OddInput() { writeContent(file, input().bytes); }

    static const sOddInput& input() { return GetParam(); }
    static bool isAnalysed() { return input().faultyLine == 0 && input().atoms > 0; }

    /// The messages that the file must cause, with what the module says before and after.
    std::vector<std::string> expectedMessages(const std::string& subject,
                                              const std::string& unknown) const {
        std::vector<std::string> lines{"black: Analysing " + subject + " of peptide from " + file +
                                       "..."};
        if (!input().refusal.empty()) {
            lines.push_back("red: " + input().refusal);
            lines.back().replace(lines.back().find('%'), 1, file);
            return lines;
        }
        if (input().faultyLine != 0) {
            lines.push_back("red: There was an error in PDB file " + file + " at line " +
                            std::to_string(input().faultyLine));
            return lines;
        }
        if (input().atoms == 0) {
            lines.push_back("red: No atoms found in PDB file " + file);
            return lines;
        }
        if (!unknown.empty()) {
            lines.push_back("yellow: The following radii were not found in radii file: " + unknown);
        }
        if (input().isDense) {
            lines.push_back("yellow: Mean distance to the nearest atom in PDB file " + file +
                            " is 0.001 Å: are the coordinates in nanometres?");
        }
        if (!input().told.empty()) {
            lines.push_back(input().told);
        }
        if (subject == "contacts" && chainIdsOf(input()).size() == 1) {
            lines.push_back("black: There is one chain, " + input().chains +
                            ": no contacts between chains are possible");
        }
        std::string end = subject + " of peptide from " + file + " analyzed";
        end.front() = static_cast<char>(std::toupper(end.front()));
        lines.push_back("black: " + end);
        return lines;
    }

    /// The names without a radius as a message shows them: bytes that are no UTF-8 are replaced.
    static std::string shownUnknown(const char* separator) {
        return QString::fromStdString(input().unknown).replace(u' ', separator).toStdString();
    }

    /// What must be told of the run's reports by what another parser makes of them.
    std::string unparsableWarning(const QString& stamp) const {
        std::string names;
        for (const char* kind : {"contacts", "binding_residues", "binding_status"}) {
            const std::string report =
                output.file("odd_" + stamp.toStdString() + '_' + kind + ".xml");
            if (input().isMarkup && std::filesystem::exists(report) && !areWellFormed({report})) {
                names += (names.empty() ? "" : "; ") + report;
            }
        }
        return names.empty() ? names
                             : "yellow: Names with &, < or other characters that XML does not take "
                               "make reports that no parser takes: " +
                                   names;
    }

    void expectOutcome(cAnalysisRun& run, const QString& stamp,
                       std::vector<std::string> messages) const {
        const cMessageLog log(run);
        EXPECT_EQ(run.analyseFile(QString::fromStdString(file), stamp),
                  isAnalysed() ? eFileOutcome::analysed : eFileOutcome::failed);
        if (const std::string warning = unparsableWarning(stamp); !warning.empty()) {
            messages.insert(messages.end() - 1, warning);
        }
        EXPECT_EQ(log.lines(), messages);
        EXPECT_TRUE(run.unwrittenReports().isEmpty());
    }

    /// So many whole reports and nothing else.
    void expectReports(std::size_t count, bool areTextsEscaped) const {
        std::vector<std::string> documents;
        for (const std::string& name : namesIn(output.path())) {
            if (name.ends_with(".xml")) {
                documents.push_back(output.file(name));
            }
        }
        EXPECT_EQ(namesIn(output.path()).size(), isAnalysed() ? count : 0);
        EXPECT_EQ(documents.size(), isAnalysed() ? count / 2 : 0);
        if (!documents.empty() && (areTextsEscaped || !input().isMarkup)) {
            EXPECT_TRUE(areWellFormed(documents));
        }
    }

    const cScratchDirectory scratch;
    const cScratchDirectory output;
    const std::string file = scratch.file("odd.pdb");
    const QString outputDirectory = QString::fromStdString(output.path().string());
};

std::vector<std::string> chainIdsOf(const cPdbPeptide& peptide) {
    std::vector<std::string> ids;
    for (const cProteinChain& chain : peptide.chains) {
        ids.push_back(chain.chainId);
    }
    return ids;
}

std::string joined(const std::set<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += name + ' ';
    }
    return text;
}

std::size_t countOf(const std::string& part, const std::string& text) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

std::string testName(const testing::TestParamInfo<sOddInput>& info) {
    std::string name = info.param.name;
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

} // namespace

TEST_P(OddInput, IsReadByTheRules) {
    std::istringstream in(input().bytes);
    const sReadResult result = readStructure(in, shippedTables().radii);
    EXPECT_EQ(result.outcome == eReadOutcome::badLine ? result.badLine : 0, input().faultyLine);
    EXPECT_EQ(result.outcome == eReadOutcome::read, isAnalysed()) << result.reason;
    EXPECT_EQ(result.structures.size(), isAnalysed() ? 1U : 0U);
    EXPECT_TRUE(input().refusal.ends_with(result.reason)) << result.reason;
    for (const cPdbPeptide& structure : result.structures) {
        EXPECT_EQ(structure.atoms.size(), input().atoms);
        EXPECT_EQ(structure.residues.size(), input().residues);
        EXPECT_EQ(chainIdsOf(structure), chainIdsOf(input()));
        EXPECT_EQ(joined(result.missingRadii), input().unknown);
        expectLinksIntoOwnLists(structure);
    }
}

TEST_P(OddInput, GetsStructureReportsOrAMessage) {
    cRunKEV run;
    switchEverythingOn(run);
    run.setOutputDirectoryName(outputDirectory);
    expectOutcome(run, fixedStamp, expectedMessages("structure", shownUnknown("; ")));
    expectReports(4, true);
    if (isAnalysed()) {
        const std::string document = contentOf(output.file("odd_200703141530_bound.xml"));
        EXPECT_EQ(countOf("<residue>", document), input().residues);
        EXPECT_EQ(countOf("<chain>", document), chainIdsOf(input()).size());
    }
}

TEST_P(OddInput, GetsInteractionReportsOrAMessage) {
    std::string unknown = shownUnknown("; ");
    unknown = unknown.substr(0, unknown.rfind(';'));
    for (const eInteractionCriterion criterion : criteria) {
        cRunVOR run;
        switchEverythingOn(run, criterion);
        run.outputDirectory = outputDirectory;
        SCOPED_TRACE(static_cast<int>(criterion));
        expectOutcome(run, QString::number(static_cast<int>(criterion)),
                      expectedMessages("contacts", unknown));
    }
    expectReports(std::size(criteria) * 6, false);
}

INSTANTIATE_TEST_SUITE_P(Catalogue, OddInput, testing::ValuesIn(oddInputs()), testName);

} // namespace kelmo

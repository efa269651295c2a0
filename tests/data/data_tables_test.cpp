// The shipped tables and sample entries, read with the readers that the analyses use.

#include "data/generate/residue_template.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace kelmo {

namespace {

std::vector<std::string> readLines(const std::string& file) {
    return linesOf(sourceText("data/" + file));
}

/// Lines that hold an entry rather than a comment.
unsigned countEntries(const std::string& file) {
    unsigned entries = 0;
    for (const std::string& line : readLines(file)) {
        entries += !line.empty() && line.front() != '#' ? 1U : 0U;
    }
    return entries;
}

std::string residuePart(const std::string& key) {
    return key.substr(0, key.find('_'));
}
std::string atomPart(const std::string& key) {
    return key.substr(key.find('_') + 1);
}

bool isAminoAcid(const std::string& residue) {
    std::set<std::string> names;
    createAminoAcidNamesSet(names);
    return names.count(residue) == 1;
}

struct sSample {
    std::string file;
    const char* code;
    unsigned atomCount;
    unsigned chainCount;
    unsigned metalCount;
};

const std::vector<sSample> samples{{"samples/1a0q.pdb", "1A0Q", 3183, 2, 3},
                                   {"samples/1ubq.pdb", "1UBQ", 602, 1, 0},
                                   {"samples/2hhb.pdb", "2HHB", 4384, 4, 4}};

class RadiiTable : public testing::TestWithParam<const char*> {};
class HydrophobicityTable : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(RadiiTable, HoldsEveryHeavyAtomOfTheStandardResidues) {
    const std::map<std::string, double> radii = shippedRadii(GetParam());
    ASSERT_EQ(residueTemplates().size(), 20U);
    for (const sResidueTemplate& residue : residueTemplates()) {
        std::vector<std::string> atoms = heavyAtomNames(residue);
        atoms.push_back("OXT");
        for (const std::string& atom : atoms) {
            EXPECT_EQ(radii.count(residue.name + "_" + atom), 1U) << residue.name << " " << atom;
        }
    }
}

TEST_P(RadiiTable, NamesNoHeavyAtomThatAStandardResidueLacks) {
    unsigned compared = 0;
    for (const auto& [key, radius] : shippedRadii(GetParam())) {
        const std::string atom = atomPart(key);
        const bool isHydrogen = atom.find('H') == 0 || std::isdigit(atom.front()) != 0;
        if (!isAminoAcid(residuePart(key)) || isHydrogen || atom == "OXT") {
            continue;
        }
        const auto names = heavyAtomNames(residueTemplate(residuePart(key)));
        EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).count(atom), 1U) << key;
        ++compared;
    }
    EXPECT_GT(compared, 100U);
}

TEST_P(RadiiTable, HasNoKeyTwice) {
    EXPECT_EQ(shippedRadii(GetParam()).size(), countEntries(GetParam()));
}

TEST_P(RadiiTable, LeavesNoAtomOfTheSamplesWithoutRadius) {
    for (const sSample& sample : samples) {
        const sReading reading =
            readPdb(sourceText("data/" + sample.file), shippedRadii(GetParam()));
        ASSERT_EQ(reading.result, 0) << sample.file;
        EXPECT_EQ(reading.missing, std::set<std::string>{}) << sample.file;
        EXPECT_EQ(reading.peptide.atoms.size(), sample.atomCount);
    }
}

TEST_P(RadiiTable, CoversNucleotidesUnderTheStarredAndBothPhosphateNames) {
    const std::map<std::string, double> radii = shippedRadii(GetParam());
    for (const char* residue : {"A", "C", "G", "T", "U", "DA", "DC", "DG", "DT"}) {
        for (const char* atom : {"P", "O1P", "O2P", "OP1", "OP2", "O5*", "C5*", "C4*", "O4*", "C3*",
                                 "O3*", "C2*", "C1*"}) {
            EXPECT_EQ(radii.count(std::string(residue) + "_" + atom), 1U) << residue << " " << atom;
        }
    }
    EXPECT_EQ(radii.count("A_N9"), 1U);
    EXPECT_EQ(radii.count("U_O2*"), 1U);
    EXPECT_EQ(radii.count("DT_C7"), 1U);
}

TEST_P(RadiiTable, CoversResiduesBesideTheStandardOnes) {
    const std::map<std::string, double> radii = shippedRadii(GetParam());
    const std::map<std::string, std::vector<std::string>> residues{
        {"SEC", {"N", "CA", "C", "O", "CB", "SE", "OXT"}},
        {"PYL",
         {"N", "CA", "C", "O", "CB", "CG", "CD", "CE", "NZ", "CB2", "C2", "O2", "CA2", "CG2", "CD2",
          "CE2", "N2", "OXT"}},
        {"ASX", {"N", "CA", "C", "O", "CB", "CG", "XD1", "XD2", "AD1", "AD2"}},
        {"GLX", {"N", "CA", "C", "O", "CB", "CG", "CD", "XE1", "XE2", "AE1", "AE2"}},
        {"ACE", {"C", "O", "CH3"}},
        {"NH2", {"N"}},
        {"I", {"P", "OP1", "O2P", "O5*", "O2*", "C1*", "N9", "C8", "C2", "O6", "N1", "C4"}},
        {"DI", {"P", "OP1", "O2P", "O5*", "C2*", "C1*", "N9", "C8", "C2", "O6", "N1", "C4"}},
        {"DU", {"P", "OP1", "O2P", "O5*", "C2*", "C1*", "N1", "C2", "O2", "N3", "O4", "C6"}}};
    for (const auto& [residue, atoms] : residues) {
        for (const std::string& atom : atoms) {
            EXPECT_EQ(radii.count(residue + "_" + atom), 1U) << residue << " " << atom;
        }
    }
    EXPECT_EQ(radii.count("I_N2"), 0U);
    EXPECT_EQ(radii.count("DI_O2*"), 0U);
    EXPECT_EQ(radii.count("DU_O2*"), 0U);
    // Other names of one residue.
    const auto radiiOf = [&](const std::string& residue) {
        std::map<std::string, double> found;
        for (const auto& [key, radius] : radii) {
            if (residuePart(key) == residue && atomPart(key) != "HG") {
                found[atomPart(key)] = radius;
            }
        }
        return found;
    };
    for (const char* name : {"HID", "HIE", "HIP", "HSD"}) {
        EXPECT_EQ(radiiOf(name), radiiOf("HIS")) << name;
    }
    EXPECT_EQ(radiiOf("CYX"), radiiOf("CYS"));
}

INSTANTIATE_TEST_SUITE_P(Shipped, RadiiTable, testing::Values("protor.radii", "bondi.radii"));

TEST(ProtOrRadii, AreThoseOfThePublishedClasses) {
    const std::map<std::string, double> radii = shippedRadii();
    const std::map<std::string, double> published{
        {"ALA_C", 1.61},   {"TYR_CZ", 1.61},  {"TRP_CD2", 1.61}, {"ARG_CZ", 1.61},
        {"PHE_CZ", 1.76},  {"HIS_CE1", 1.76}, {"TRP_CD1", 1.76}, {"VAL_CA", 1.88},
        {"GLY_CA", 1.88},  {"ILE_CD1", 1.88}, {"LEU_CG", 1.88},  {"PRO_CD", 1.88},
        {"PRO_N", 1.64},   {"ALA_N", 1.64},   {"ASN_ND2", 1.64}, {"LYS_NZ", 1.64},
        {"HIS_ND1", 1.64}, {"ALA_O", 1.42},   {"GLN_OE1", 1.42}, {"ASP_OD2", 1.42},
        {"SER_OG", 1.46},  {"THR_OG1", 1.46}, {"TYR_OH", 1.46},  {"CYS_SG", 1.77},
        {"MET_SD", 1.77}};
    for (const auto& [key, radius] : published) {
        EXPECT_DOUBLE_EQ(radii.at(key), radius) << key;
    }
    EXPECT_DOUBLE_EQ(radii.at("MSE_SE"), 1.90);
    EXPECT_DOUBLE_EQ(radii.at("SEC_SE"), 1.90);
    EXPECT_DOUBLE_EQ(radii.at("PYL_CE2"), 1.76);
    EXPECT_DOUBLE_EQ(radii.at("I_C2"), 1.76) << "it has a hydrogen, unlike that of G";
    EXPECT_DOUBLE_EQ(radii.at("ASX_XD1"), 0.5 * (1.42 + 1.64));
    EXPECT_DOUBLE_EQ(radii.at("G_P"), 1.80);
}

// A flat carbon has three partners: where only two of them are heavy, the third is a hydrogen.
TEST(ProtOrRadii, GiveFlatCarbonsTheRadiusOfTheirHydrogenCount) {
    const std::map<std::string, double> radii = shippedRadii();
    const std::map<std::string, std::string> flat{{"ARG", "CZ"}, {"ASN", "CG"},  {"ASP", "CG"},
                                                  {"GLN", "CD"}, {"GLU", "CD"},  {"HIS", "CG"},
                                                  {"PHE", "CG"}, {"TRP", "CE2"}, {"TYR", "CZ"}};
    for (const auto& [residue, atom] : flat) {
        EXPECT_EQ(bondedAtoms(residueTemplate(residue), atom).size(), 3U) << residue;
        EXPECT_DOUBLE_EQ(radii.at(residue + "_" + atom), 1.61) << residue;
    }
    for (const auto& [residue, atoms] : std::map<std::string, std::vector<std::string>>{
             {"HIS", {"CD2", "CE1"}},
             {"PHE", {"CD1", "CD2", "CE1", "CE2", "CZ"}},
             {"TRP", {"CD1", "CE3", "CZ2", "CZ3", "CH2"}},
             {"TYR", {"CD1", "CD2", "CE1", "CE2"}}}) {
        for (const std::string& atom : atoms) {
            EXPECT_EQ(bondedAtoms(residueTemplate(residue), atom).size(), 2U) << residue << atom;
            EXPECT_DOUBLE_EQ(radii.at(residue + "_" + atom), 1.76) << residue << atom;
        }
    }
}

TEST(BondiRadii, DependOnTheElementAlone) {
    const std::map<char, double> elements{{'C', 1.70}, {'N', 1.55}, {'O', 1.52},
                                          {'S', 1.80}, {'P', 1.80}, {'H', 1.10},
                                          {'1', 1.10}, {'2', 1.10}, {'3', 1.10}};
    for (const auto& [key, radius] : shippedRadii("bondi.radii")) {
        if (atomPart(key) == "SE") {
            EXPECT_DOUBLE_EQ(radius, 1.90) << key;
        } else if (residuePart(key) == "ASX" || residuePart(key) == "GLX") {
            const bool isEither = atomPart(key).front() == 'X' || atomPart(key).front() == 'A';
            EXPECT_DOUBLE_EQ(radius, isEither ? 1.54 : elements.at(atomPart(key).front())) << key;
        } else {
            EXPECT_DOUBLE_EQ(radius, elements.at(atomPart(key).front())) << key;
        }
    }
}

TEST(BondiRadii, HaveHydrogensUnderCurrentAndFormerNames) {
    const std::map<std::string, double> radii = shippedRadii("bondi.radii");
    for (const char* key :
         {"ALA_H",    "ALA_H1",   "ALA_1H",   "ALA_HB3",  "ALA_3HB",  "ARG_HH11", "ARG_1HH1",
          "ARG_HE",   "GLY_HA2",  "GLY_1HA",  "GLY_2HA",  "ILE_HG12", "ILE_1HG1", "ILE_HG23",
          "ILE_3HG2", "ILE_HD11", "ILE_1HD1", "LEU_HG",   "LEU_HD23", "LEU_3HD2", "LYS_HZ1",
          "LYS_3HZ",  "ASN_HD21", "ASN_2HD2", "GLN_HE22", "GLN_1HE2", "HIS_HD1",  "HIS_HE2",
          "THR_HG1",  "THR_HG21", "THR_1HG2", "TRP_HH2",  "TYR_HH",   "VAL_HG11", "VAL_2HG1",
          "SER_HG",   "CYS_HG",   "PRO_HD3",  "PRO_2HD",  "PRO_2H",   "GLU_HXT"}) {
        EXPECT_EQ(radii.count(key), 1U) << key;
    }
    EXPECT_EQ(radii.count("PRO_H"), 0U) << "the nitrogen of proline carries none within a chain";
}

// Atom names with a digit in front fill all four columns of the field.
TEST(BondiRadii, AreFoundForAHydrogenOfAnOlderFile) {
    const sReading reading =
        readPdb("ATOM      1  CB  VAL A   1      11.639   6.071  -5.147  1.00  0.00\n"
                "ATOM      2 1HG2 VAL A   1      12.639   6.071  -5.147  1.00  0.00\n",
                shippedRadii("bondi.radii"));
    ASSERT_EQ(reading.result, 0);
    EXPECT_EQ(reading.missing, std::set<std::string>{});
    EXPECT_DOUBLE_EQ(reading.peptide.atoms.at(1).radius, 1.10);
}

TEST(Radii, OfTheFirstNitrogenOfAChainAreThoseOfN) {
    const cPdbPeptide peptide = samplePeptide("1ubq");
    EXPECT_EQ(peptide.atoms.front().atomName, "NXT");
    EXPECT_DOUBLE_EQ(peptide.atoms.front().radius, 1.64);
}

// The atom C5' of a current entry, against C5* of an older one.
TEST(Radii, OfPrimedAtomNamesCannotBeExpressed) {
    std::istringstream table("A_C5'     1.88\n");
    std::map<std::string, double> radii;
    EXPECT_EQ(getVdWrRadii(table, radii), 1);

    const sReading reading =
        readPdb("ATOM      1  C5*   A A   1      11.639   6.071  -5.147  1.00  0.00\n"
                "ATOM      2  C5'   A A   2      15.639   6.071  -5.147  1.00  0.00\n",
                shippedRadii());
    ASSERT_EQ(reading.result, 0);
    EXPECT_EQ(reading.missing, std::set<std::string>{"A_C5'"});
    EXPECT_DOUBLE_EQ(reading.peptide.atoms.at(0).radius, 1.88);
    EXPECT_DOUBLE_EQ(reading.peptide.atoms.at(1).radius, 1.60);
}

TEST_P(HydrophobicityTable, IsCompleteForTheStandardResidues) {
    const std::map<std::string, double> scale = shippedScale(GetParam());
    EXPECT_EQ(scale.size(), 20U);
    EXPECT_EQ(countEntries(GetParam()), 20U);
    EXPECT_EQ(checkForStandardPeptides(scale), std::set<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(Shipped, HydrophobicityTable,
                         testing::Values("kyte-doolittle.hpb", "eisenberg.hpb", "hopp-woods.hpb"));

TEST(HydrophobicityScales, HaveThePublishedExtremes) {
    const auto kyteDoolittle = shippedScale("kyte-doolittle.hpb");
    EXPECT_DOUBLE_EQ(kyteDoolittle.at("ILE"), 4.5);
    EXPECT_DOUBLE_EQ(kyteDoolittle.at("ARG"), -4.5);
    EXPECT_DOUBLE_EQ(kyteDoolittle.at("GLY"), -0.4);
    EXPECT_DOUBLE_EQ(kyteDoolittle.at("TRP"), -0.9);
    const auto eisenberg = shippedScale("eisenberg.hpb");
    EXPECT_DOUBLE_EQ(eisenberg.at("ILE"), 1.38);
    EXPECT_DOUBLE_EQ(eisenberg.at("ARG"), -2.53);
    EXPECT_DOUBLE_EQ(eisenberg.at("LYS"), -1.50);
    EXPECT_DOUBLE_EQ(eisenberg.at("GLY"), 0.48);
    const auto hoppWoods = shippedScale("hopp-woods.hpb");
    EXPECT_DOUBLE_EQ(hoppWoods.at("TRP"), -3.4);
    EXPECT_DOUBLE_EQ(hoppWoods.at("LYS"), 3.0);
    EXPECT_DOUBLE_EQ(hoppWoods.at("THR"), -0.4);
    EXPECT_DOUBLE_EQ(hoppWoods.at("PRO"), 0.0);
}

// The scale is normalized to mean 0 and (sample) standard deviation 1 over the 20 residues.
TEST(HydrophobicityScales, EisenbergIsNormalized) {
    double sum = 0.0;
    double sumOfSquares = 0.0;
    for (const auto& [residue, value] : shippedScale("eisenberg.hpb")) {
        sum += value;
        sumOfSquares += value * value;
    }
    EXPECT_NEAR(sum / 20.0, 0.0, 0.01);
    EXPECT_NEAR(sumOfSquares / 19.0, 1.0, 0.01);
}

TEST(StandardAreas, AreCompleteAndUsableAsDenominators) {
    const std::map<std::string, sAsa> standards = shippedStandardAreas();
    EXPECT_EQ(standards.size(), 20U);
    EXPECT_EQ(countEntries("ala-x-ala.asa"), 20U);
    EXPECT_EQ(checkForStandardPeptides(standards), std::set<std::string>{});
    for (const auto& [residue, areas] : standards) {
        EXPECT_GT(areas.backbone, 0.0) << residue;
        EXPECT_GT(areas.polar, 0.0) << residue;
        EXPECT_GT(areas.nonPolar, 0.0) << residue;
        EXPECT_EQ(areas.sideChain == 0.0, residue == "GLY") << residue;
    }
}

// Columns in the wrong order would not sum up.
TEST(StandardAreas, SplitTheTotalInTwoWays) {
    for (const auto& [residue, areas] : shippedStandardAreas()) {
        EXPECT_NEAR(areas.backbone + areas.sideChain, areas.total, 0.0151) << residue;
        EXPECT_NEAR(areas.polar + areas.nonPolar, areas.total, 0.0151) << residue;
    }
    const sAsa leucine = shippedStandardAreas().at("LEU");
    EXPECT_GT(leucine.sideChain, leucine.backbone);
    EXPECT_GT(leucine.nonPolar, leucine.polar);
    const sAsa arginine = shippedStandardAreas().at("ARG");
    EXPECT_GT(arginine.polar, arginine.nonPolar);
}

// Ala-X-Ala totals of the ACCESS tables of Hubbard & Thornton (1993).
TEST(StandardAreas, LieWithinATenthOfThePublishedTripeptideValues) {
    const std::map<std::string, double> published{
        {"ALA", 107.95}, {"ARG", 238.76}, {"ASN", 143.94}, {"ASP", 140.39}, {"CYS", 134.28},
        {"GLN", 178.50}, {"GLU", 172.25}, {"GLY", 80.10},  {"HIS", 182.88}, {"ILE", 175.12},
        {"LEU", 178.63}, {"LYS", 200.81}, {"MET", 194.15}, {"PHE", 199.48}, {"PRO", 136.13},
        {"SER", 116.50}, {"THR", 139.27}, {"TRP", 249.36}, {"TYR", 212.76}, {"VAL", 151.44}};
    const std::map<std::string, sAsa> standards = shippedStandardAreas();
    ASSERT_EQ(published.size(), standards.size());
    for (const auto& [residue, total] : published) {
        EXPECT_NEAR(standards.at(residue).total, total, 0.1 * total) << residue;
    }
}

// The rows of the tables in docs/data.md: residue, our total, the other one, their difference. The
// table that compares the complete form comes second.
TEST(StandardAreas, AreTheOnesThatTheDocumentationDiscusses) {
    std::istringstream in(sourceText("data/ala-x-ala-complete.asa"));
    std::map<std::string, sAsa> complete;
    ASSERT_EQ(getStandardAsa(in, complete), 0);
    const std::map<std::string, sAsa> classic = shippedStandardAreas();
    unsigned rows = 0;
    for (const std::string& line : readLines("../docs/data.md")) {
        std::istringstream fields(line);
        std::string bar;
        std::string residue;
        double total = 0.0;
        double other = 0.0;
        double percent = 0.0;
        if (fields >> bar >> residue >> bar >> total >> bar >> other >> bar >> percent) {
            const std::map<std::string, sAsa>& standards = rows < 20 ? classic : complete;
            ASSERT_EQ(standards.count(residue), 1U) << line;
            EXPECT_DOUBLE_EQ(total, standards.at(residue).total) << line;
            EXPECT_NEAR(percent, 100.0 * (total / other - 1.0), 0.05001) << line;
            ++rows;
        }
    }
    EXPECT_EQ(rows, 40U);
}

TEST(Tables, NameTheirSourceInTheirCommentLines) {
    for (const auto& [file, source] :
         std::map<std::string, std::string>{{"protor.radii", "Tsai"},
                                            {"bondi.radii", "Bondi"},
                                            {"kyte-doolittle.hpb", "Kyte"},
                                            {"eisenberg.hpb", "Eisenberg"},
                                            {"hopp-woods.hpb", "Hopp"},
                                            {"ala-x-ala.asa", "kelmo-make-standard-areas"},
                                            {"ala-x-ala-complete.asa", "complete form"},
                                            {"aa_contacts.txt", "kelmo-make-contact-rules"}}) {
        std::string heading;
        for (const std::string& line : readLines(file)) {
            if (line.rfind("#", 0) == 0 || line.rfind("RES", 0) == 0) {
                heading += line;
            }
        }
        EXPECT_NE(heading.find(source), std::string::npos) << file;
    }
}

TEST(Samples, HoldOnlyTheRecordsThatAreRead) {
    const std::set<std::string> records{"HEADER", "ATOM  ", "HETATM", "TER   ", "END   "};
    for (const sSample& sample : samples) {
        const std::vector<std::string> lines = readLines(sample.file);
        ASSERT_GT(lines.size(), 2U) << sample.file;
        for (const std::string& line : lines) {
            EXPECT_EQ(records.count(line.substr(0, 6)), 1U) << line;
        }
        EXPECT_GE(lines.front().size(), 66U);
        EXPECT_EQ(lines.front().substr(0, 6), "HEADER");
        EXPECT_EQ(lines.back().substr(0, 3), "END");
    }
}

// 2HHB is of the old format, with the entry's code and line numbers in columns 73 to 80.
TEST(Samples, LoadWithTheirCodesChainsAndMetals) {
    for (const sSample& sample : samples) {
        const cPdbPeptide peptide = structureOf(sourceText("data/" + sample.file), shippedRadii());
        EXPECT_EQ(peptide.name, sample.code);
        EXPECT_EQ(peptide.chains.size(), sample.chainCount);
        EXPECT_EQ(peptide.heteroAtoms.size(), sample.metalCount);
        for (const cChainResidue& residue : peptide.residues) {
            EXPECT_EQ(residue.residueType, eResidueType::aminoAcid) << residue.residueName;
        }
    }
}

} // namespace kelmo

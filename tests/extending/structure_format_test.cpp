// A new input format is one file and one row.
#include "tests/extending/xyz_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

namespace kelmo {

namespace {

class NewFormat : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { addStructureFormat({"XYZ", {".xyz"}, isXyz, readXyz}); }

    static sReadResult read(const std::string& text, const sReadOptions& options = {}) {
        std::istringstream in(text);
        return readStructure(in, {{"ALA_N", 1.65}, {"HIS_CA", 1.87}}, options);
    }
};

TEST_F(NewFormat, IsReadByTheRulesOfAllFormats) {
    const sReadResult result =
        read("xyz\nN ALA 1 A 1 2 3\nCB ALA 1 A 2 2 3\nN GLY 1 B 3 2 3\nCA GLY 2 B 4 2 3\n");
    ASSERT_EQ(result.outcome, eReadOutcome::read);
    const cPdbPeptide& structure = result.structures.at(0);
    ASSERT_EQ(structure.atoms.size(), 4U);
    EXPECT_EQ(structure.atoms[0].atomName, "NXT");
    EXPECT_EQ(structure.atoms[0].radius, 1.65);
    EXPECT_EQ(structure.residues.size(), 3U);
    EXPECT_EQ(structure.chains.size(), 2U);
    EXPECT_EQ(result.missingRadii, (std::set<std::string>{"ALA_CB", "GLY_CA", "GLY_N"}));
}

TEST_F(NewFormat, IsPreparedAsOtherFormatsAre) {
    sReadOptions options;
    options.preparation = standardPreparation;
    const sReadResult result = read("xyz\nCA HSD 1 A 1 2 3\n", options);
    ASSERT_EQ(result.outcome, eReadOutcome::read);
    const cChainResidue& residue = result.structures.at(0).residues.at(0);
    EXPECT_EQ(residue.residueName, "HIS");
    EXPECT_EQ(residue.nameInFile(), "HSD");
    EXPECT_EQ(residue.atoms[0].radius, 1.87);
}

TEST_F(NewFormat, TellsWhatIsWrong) {
    const sReadResult result = read("xyz\nCA ALA 1 A 1 2\n");
    EXPECT_EQ(result.outcome, eReadOutcome::refused);
    EXPECT_EQ(result.reason, "Not an atom: CA ALA 1 A 1 2");
}

TEST_F(NewFormat, IsOfferedWithTheOthers) {
    EXPECT_TRUE(hasStructureSuffix("a.xyz"));
    EXPECT_TRUE(hasStructureSuffix("a.XYZ.gz"));
    const std::vector<std::string> suffixes = structureSuffixes();
    EXPECT_EQ(suffixes.front(), ".pdb");
    EXPECT_NE(std::find(suffixes.begin(), suffixes.end(), ".xyz"), suffixes.end());
}

TEST_F(NewFormat, LeavesTheOthersAsTheyAre) {
    std::istringstream in("ATOM      1  N   ALA A   1       1.000   2.000   3.000\n");
    EXPECT_EQ(readStructure(in, {}).structures.at(0).atoms.size(), 1U);
}

} // namespace

} // namespace kelmo

// One residue and one chain: what their constructors set, and the range tests between residues.
#include "model/addition.h"
#include "model/chain_residue.h"
#include "model/protein_chain.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace kelmo {

namespace {

using tValue = double cChainResidue::*;

/// Every value that holds -1 until it is computed.
constexpr std::array<tValue, 22> computedValues{&cChainResidue::totalAsa,
                                                &cChainResidue::sideChainAsa,
                                                &cChainResidue::backboneAsa,
                                                &cChainResidue::polarAsa,
                                                &cChainResidue::nonPolarAsa,
                                                &cChainResidue::relativeTotalAsa,
                                                &cChainResidue::relativeSideChainAsa,
                                                &cChainResidue::relativeBackboneAsa,
                                                &cChainResidue::relativePolarAsa,
                                                &cChainResidue::relativeNonPolarAsa,
                                                &cChainResidue::maxProtrusionIndex,
                                                &cChainResidue::minProtrusionIndex,
                                                &cChainResidue::averageProtrusionIndex,
                                                &cChainResidue::protrusionIndexDeviation,
                                                &cChainResidue::averageSideChainProtrusionIndex,
                                                &cChainResidue::sideChainProtrusionIndexDeviation,
                                                &cChainResidue::maxDepthIndex,
                                                &cChainResidue::minDepthIndex,
                                                &cChainResidue::averageDepthIndex,
                                                &cChainResidue::depthIndexDeviation,
                                                &cChainResidue::averageSideChainDepthIndex,
                                                &cChainResidue::sideChainDepthIndexDeviation};

cResidueAtom atomAt(double x, double y, double z, double radius = 1.5) {
    return {"CA", "1", x, y, z, radius};
}

cChainResidue residueOf(std::vector<cResidueAtom>& atoms) {
    return {"ALA", "1", atoms.data(), static_cast<unsigned>(atoms.size()), eResidueType::aminoAcid};
}

TEST(ChainResidue, TypesHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(eResidueType::other), 0);
    EXPECT_EQ(static_cast<int>(eResidueType::nucleicAcid), 1);
    EXPECT_EQ(static_cast<int>(eResidueType::aminoAcid), 2);
}

TEST(ChainResidue, ConstructorMarksEverythingAsNotComputed) {
    std::vector<cResidueAtom> atoms(3);
    const cChainResidue residue("SER", "52A", atoms.data(), 3, eResidueType::aminoAcid);
    EXPECT_EQ(residue.residueName, "SER");
    EXPECT_EQ(residue.residueNumber, "52A");
    EXPECT_EQ(residue.atoms, atoms.data());
    EXPECT_EQ(residue.atomCount, 3U);
    EXPECT_EQ(residue.residueType, eResidueType::aminoAcid);
    for (const tValue value : computedValues) {
        EXPECT_EQ(residue.*value, -1.0);
    }
    EXPECT_EQ(residue.hydrophobicity, 0.0);
    EXPECT_FALSE(residue.isBinding);
}

TEST(ChainResidue, CopyAndAssignmentTakeEveryFieldAndTheAtomPointerAsItIs) {
    std::vector<cResidueAtom> atoms(2);
    cChainResidue residue("A", "7", atoms.data(), 2, eResidueType::nucleicAcid);
    double next = 10.0;
    for (const tValue value : computedValues) {
        residue.*value = next++;
    }
    residue.hydrophobicity = 4.5;
    residue.isBinding = true;
    const cChainResidue copy(residue);
    cChainResidue assigned;
    assigned = residue;
    for (const cChainResidue& other : {copy, assigned}) {
        EXPECT_EQ(other.residueType, eResidueType::nucleicAcid);
        EXPECT_EQ(other.atoms, atoms.data());
        EXPECT_EQ(other.residueName, "A");
        EXPECT_EQ(other.residueNumber, "7");
        EXPECT_EQ(other.atomCount, 2U);
        double expected = 10.0;
        for (const tValue value : computedValues) {
            EXPECT_EQ(other.*value, expected++);
        }
        EXPECT_EQ(other.hydrophobicity, 4.5);
        EXPECT_TRUE(other.isBinding);
    }
}

TEST(ChainResidue, OneAtomPairExactlyAtRangeIsEnough) {
    std::vector<cResidueAtom> near{atomAt(0, 0, 0), atomAt(0, 1, 0)};
    std::vector<cResidueAtom> far{atomAt(0, 50, 0), atomAt(3, 5, 0)};
    const cChainResidue a = residueOf(near);
    const cChainResidue b = residueOf(far);
    EXPECT_TRUE(a.isWithinRange(b, 5.0)) << "the two last atoms are 5 apart";
    EXPECT_TRUE(b.isWithinRange(a, 5.0));
    EXPECT_FALSE(a.isWithinRange(b, std::nextafter(5.0, 0.0)));
}

TEST(ChainResidue, RadiusRangeAddsBothRadiiOnce) {
    std::vector<cResidueAtom> near{atomAt(0, 0, 0, 1.5)};
    std::vector<cResidueAtom> far{atomAt(0, 40, 0, 1.0), atomAt(0, 0, 3.25, 1.25)};
    const cChainResidue a = residueOf(near);
    const cChainResidue b = residueOf(far);
    EXPECT_TRUE(a.isWithinRangeFromRadius(b, 0.5)) << "1.5 + 1.25 + 0.5 is the distance";
    EXPECT_TRUE(b.isWithinRangeFromRadius(a, 0.5));
    EXPECT_FALSE(a.isWithinRangeFromRadius(b, 0.5 - 1e-12));
    EXPECT_FALSE(a.isWithinRangeFromRadius(b, -0.5));
    far[1] = atomAt(0, 0, 2.25, 1.25);
    EXPECT_TRUE(a.isWithinRangeFromRadius(b, -0.5)) << "half an ångström of overlap";
}

TEST(ChainResidue, AtomsAtOnePlaceDoNotBringResiduesIntoRange) {
    std::vector<cResidueAtom> one{atomAt(1, 2, 3)};
    std::vector<cResidueAtom> same{atomAt(1, 2, 3)};
    std::vector<cResidueAtom> sameAndOther{atomAt(1, 2, 3), atomAt(1, 2, 4)};
    EXPECT_FALSE(residueOf(one).isWithinRange(residueOf(same), 10.0));
    EXPECT_FALSE(residueOf(one).isWithinRangeFromRadius(residueOf(same), 10.0));
    EXPECT_TRUE(residueOf(one).isWithinRange(residueOf(sameAndOther), 1.0));
    EXPECT_TRUE(residueOf(one).isWithinRangeFromRadius(residueOf(sameAndOther), 0.0));
}

TEST(ChainResidue, ResidueWithoutAtomsIsNeverInRange) {
    std::vector<cResidueAtom> atoms{atomAt(0, 0, 0)};
    const cChainResidue full = residueOf(atoms);
    const cChainResidue empty;
    EXPECT_FALSE(full.isWithinRange(empty, 1e9));
    EXPECT_FALSE(empty.isWithinRange(full, 1e9));
    EXPECT_FALSE(empty.isWithinRange(empty, 1e9));
    EXPECT_FALSE(full.isWithinRangeFromRadius(empty, 1e9));
    EXPECT_FALSE(empty.isWithinRangeFromRadius(full, 1e9));
}

TEST(ProteinChain, ConstructorSetsTheBoxOfItsAtomsAndNoAreas) {
    std::vector<cResidueAtom> atoms{atomAt(1, 5, -2), atomAt(-3, 2, 8), atomAt(99, 99, 99)};
    std::vector<cChainResidue> residues(2);
    const cProteinChain chain("1ABC", "B", residues.data(), 2, atoms.data(), 2);
    EXPECT_EQ(chain.peptideName, "1ABC");
    EXPECT_EQ(chain.chainId, "B");
    EXPECT_EQ(chain.residues, residues.data());
    EXPECT_EQ(chain.residueCount, 2U);
    EXPECT_EQ(chain.atoms, atoms.data());
    EXPECT_EQ(chain.atomCount, 2U);
    EXPECT_EQ(chain.maxPoint.x, 1.0);
    EXPECT_EQ(chain.maxPoint.y, 5.0);
    EXPECT_EQ(chain.maxPoint.z, 8.0);
    EXPECT_EQ(chain.minPoint.x, -3.0);
    EXPECT_EQ(chain.minPoint.y, 2.0);
    EXPECT_EQ(chain.minPoint.z, -2.0);
    for (const double area : {chain.totalAsa, chain.sideChainAsa, chain.backboneAsa, chain.polarAsa,
                              chain.nonPolarAsa}) {
        EXPECT_EQ(area, 0.0);
    }
}

TEST(ResidueNames, AminoAcidsAreTheTwentyStandardOnes) {
    std::set<std::string> names{"XYZ"};
    createAminoAcidNamesSet(names);
    EXPECT_EQ(names, (std::set<std::string>{"ALA", "ARG", "ASN", "ASP", "CYS", "GLN", "GLU",
                                            "GLY", "HIS", "ILE", "LEU", "LYS", "MET", "PHE",
                                            "PRO", "SER", "THR", "TRP", "TYR", "VAL", "XYZ"}))
        << "names are added to those that the set holds";
}

TEST(ResidueNames, NucleotidesAreOneLetter) {
    std::set<std::string> names;
    createNucleicAcidNamesSet(names);
    EXPECT_EQ(names, (std::set<std::string>{"A", "C", "G", "T", "U"}));
}

} // namespace

} // namespace kelmo

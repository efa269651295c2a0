// How atom areas add up to residues, chains and the structure, with and without the other chains.
#include "geometry/atom_space_calculations.h"
#include "model/addition.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace kelmo {

namespace {

constexpr double usualProbeRadius = 1.4;
constexpr double slice = 0.25;

/// Areas of a residue, chain or structure in their fixed order.
template <typename Owner>
std::vector<double> areasOf(const Owner& owner) {
    return {owner.totalAsa, owner.sideChainAsa, owner.backboneAsa, owner.polarAsa,
            owner.nonPolarAsa};
}

using tAreas = std::vector<double>;
const tAreas notComputed(5, -1.0);

std::vector<double> relativeAreasOf(const cChainResidue& residue) {
    return {residue.relativeTotalAsa, residue.relativeSideChainAsa, residue.relativeBackboneAsa,
            residue.relativePolarAsa, residue.relativeNonPolarAsa};
}

// Residues

enum class eClass { polarBackbone, polarSideChain, nonPolarBackbone, nonPolarSideChain };

eClass classOf(const std::string& name) {
    cResidueAtom atom(name, "1", 0, 0, 0, 1.5);
    atom.asa = 8.0;
    cChainResidue residue("XYZ", "1", &atom, 1, eResidueType::other);
    residue.setAsa();
    EXPECT_EQ(residue.totalAsa, 8.0) << name;
    EXPECT_EQ(residue.sideChainAsa + residue.backboneAsa, 8.0) << name;
    EXPECT_EQ(residue.polarAsa + residue.nonPolarAsa, 8.0) << name;
    if (residue.polarAsa == 8.0) {
        return residue.backboneAsa == 8.0 ? eClass::polarBackbone : eClass::polarSideChain;
    }
    return residue.backboneAsa == 8.0 ? eClass::nonPolarBackbone : eClass::nonPolarSideChain;
}

TEST(AtomClasses, FollowTheNameAlone) {
    for (const char* name : {"N", "NXT", "O", "OXT", "O1P", "O2P"}) {
        EXPECT_EQ(classOf(name), eClass::polarBackbone) << name;
    }
    for (const char* name :
         {"ND1", "NZ", "NXTA", "NX", "OG", "OD1", "O3P", "O1", "O5*", "OXT2", "OP1"}) {
        EXPECT_EQ(classOf(name), eClass::polarSideChain) << name;
    }
    for (const char* name : {"CA", "C", "P", "PA", "PXYZ"}) {
        EXPECT_EQ(classOf(name), eClass::nonPolarBackbone) << name;
    }
    for (const char* name : {"CB", "C1", "CAA", "CA ", "SG", "SD", "SE", "H", "HN", "1HB", "FE", "",
                             "n", "o", "c", "ca", "p", " N", "*"}) {
        EXPECT_EQ(classOf(name), eClass::nonPolarSideChain) << name;
    }
}

/// A serine: backbone N, CA, C, O, side chain CB, OG.
tAtoms serineAtoms() {
    tAtoms atoms;
    double area = 1.0;
    for (const char* name : {"N", "CA", "C", "O", "CB", "OG"}) {
        atoms.emplace_back(name, "1", 0, 0, 0, 1.5);
        atoms.back().asa = area;
        area *= 2.0;
    }
    return atoms; // 1, 2, 4, 8, 16, 32
}

TEST(ResidueAreas, AreSumsOverTheAtoms) {
    tAtoms atoms = serineAtoms();
    cChainResidue residue("SER", "1", atoms.data(), 6, eResidueType::aminoAcid);
    residue.setAsa();
    EXPECT_EQ(areasOf(residue), (tAreas{63.0, 48.0, 15.0, 41.0, 22.0}));
    residue.setAsa();
    EXPECT_EQ(areasOf(residue), (tAreas{63.0, 48.0, 15.0, 41.0, 22.0})) << "not added up twice";
}

TEST(ResidueAreas, ResidueWithoutAtomsHasNone) {
    cChainResidue residue;
    residue.setAsa();
    EXPECT_EQ(areasOf(residue), tAreas(5, 0.0));
}

// Relative areas

cChainResidue residueWithAreas(const std::string& name) {
    cChainResidue residue(name, "1", nullptr, 0, eResidueType::aminoAcid);
    residue.totalAsa = 50.0;
    residue.sideChainAsa = 30.0;
    residue.backboneAsa = 20.0;
    residue.polarAsa = 5.0;
    residue.nonPolarAsa = 45.0;
    return residue;
}

TEST(RelativeAreas, ArePercentOfTheStandard) {
    cChainResidue residue = residueWithAreas("SER");
    residue.setRelativeAsa({{"SER", {200.0, 60.0, 80.0, 50.0, 90.0}}});
    EXPECT_EQ(relativeAreasOf(residue), (tAreas{25.0, 50.0, 25.0, 10.0, 50.0}));
    EXPECT_EQ(residue.totalAsa, 50.0);
}

TEST(RelativeAreas, AreDividedBeforeTheyAreMultiplied) {
    cChainResidue residue = residueWithAreas("SER");
    residue.setRelativeAsa({{"SER", {117.0, 91.0, 53.0, 29.0, 87.0}}});
    EXPECT_EQ(residue.relativeTotalAsa, 50.0 / 117.0 * 100.0);
    EXPECT_EQ(residue.relativeSideChainAsa, 30.0 / 91.0 * 100.0);
    EXPECT_EQ(residue.relativeBackboneAsa, 20.0 / 53.0 * 100.0);
    EXPECT_EQ(residue.relativePolarAsa, 5.0 / 29.0 * 100.0);
    EXPECT_EQ(residue.relativeNonPolarAsa, 45.0 / 87.0 * 100.0);
}

TEST(RelativeAreas, ResidueWithoutASideChainHasNoneRelativeToIt) {
    cChainResidue residue = residueWithAreas("GLY");
    residue.setRelativeAsa({{"GLY", {80.0, 0.0, 80.0, 40.0, 40.0}}});
    EXPECT_EQ(residue.relativeSideChainAsa, 0.0);
    EXPECT_EQ(residue.relativeTotalAsa, 62.5);
}

TEST(RelativeAreas, OtherStandardsOfZeroAreNotGuarded) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    cChainResidue residue = residueWithAreas("XYZ");
    residue.setRelativeAsa({{"XYZ", {0.0, 0.0, 0.0, 0.0, 0.0}}});
    EXPECT_EQ(relativeAreasOf(residue), (tAreas{infinity, 0.0, infinity, infinity, infinity}));
    residue.polarAsa = 0.0;
    residue.nonPolarAsa = -1.0;
    residue.setRelativeAsa({{"XYZ", {0.0, 0.0, 0.0, 0.0, 0.0}}});
    EXPECT_TRUE(std::isnan(residue.relativePolarAsa));
    EXPECT_EQ(residue.relativeNonPolarAsa, -infinity);
}

TEST(RelativeAreas, ResidueThatTheTableLacksKeepsItsValues) {
    cChainResidue residue = residueWithAreas("SER");
    residue.setRelativeAsa({{"ser", {1, 1, 1, 1, 1}}, {"SER ", {1, 1, 1, 1, 1}}});
    EXPECT_EQ(relativeAreasOf(residue), notComputed);
    residue.setRelativeAsa({});
    EXPECT_EQ(relativeAreasOf(residue), notComputed);
}

TEST(Hydrophobicity, IsTakenFromTheScale) {
    cChainResidue residue("SER", "1", nullptr, 0, eResidueType::aminoAcid);
    residue.setHydrophobicity({{"SER", -0.8}, {"ALA", 1.8}});
    EXPECT_EQ(residue.hydrophobicity, -0.8);
    residue.setHydrophobicity({{"ALA", 1.8}});
    EXPECT_EQ(residue.hydrophobicity, -0.8) << "what the scale lacks stays";
    cChainResidue other("XYZ", "1", nullptr, 0, eResidueType::aminoAcid);
    other.setHydrophobicity({{"SER", -0.8}});
    EXPECT_EQ(other.hydrophobicity, 0.0);
}

// Chains and structures

/// Two chains that touch: A is an alanine and a residue of no known type, B a serine and a
/// nucleotide.
cPdbPeptide smallComplex() {
    cPdbPeptide peptide = structureOf(atomLine("N", "ALA", 'A', "1", 0.0, 0.0, 0.0) +
                                      atomLine("CA", "ALA", 'A', "1", 1.5, 0.0, 0.0) +
                                      atomLine("C", "ALA", 'A', "1", 2.0, 1.4, 0.2) +
                                      atomLine("O", "ALA", 'A', "1", 1.2, 2.3, 0.4) +
                                      atomLine("CB", "ALA", 'A', "1", 2.0, -0.8, 1.2) +
                                      atomLine("C1", "LIG", 'A', "2", 3.3, 1.6, 0.1) +
                                      atomLine("O1", "LIG", 'A', "2", 4.4, 1.1, 0.9) +
                                      atomLine("N", "SER", 'B', "1", 1.0, 0.4, 3.9) +
                                      atomLine("CA", "SER", 'B', "1", 2.2, 0.9, 4.5) +
                                      atomLine("OG", "SER", 'B', "1", 3.1, -0.1, 4.9) +
                                      atomLine("P", "A", 'B', "2", 4.0, 2.0, 4.2) +
                                      atomLine("O1P", "A", 'B', "2", 5.2, 1.5, 3.6));
    EXPECT_EQ(peptide.chains.size(), 2U);
    EXPECT_EQ(peptide.residues.size(), 4U);
    return peptide;
}

tAreas atomAreas(const cResidueAtom* atoms, std::size_t count) {
    tAreas areas;
    for (std::size_t i = 0; i < count; ++i) {
        areas.push_back(atoms[i].asa);
    }
    return areas;
}

tAreas atomAreas(const cPdbPeptide& peptide) {
    return atomAreas(peptide.atoms.data(), peptide.atoms.size());
}

tAreas areasOfAtomsAlone(tAtoms atoms, double probeRadius, double zSlice) {
    setAreas(atoms, probeRadius, zSlice);
    return atomAreas(atoms.data(), atoms.size());
}

tAreas added(tAreas a, const tAreas& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        a[i] += b[i];
    }
    return a;
}

TEST(BoundAreas, AtomsOfAllChainsCoverEachOther) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_EQ(atomAreas(peptide), areasOfAtomsAlone(peptide.atoms, usualProbeRadius, slice));
    EXPECT_GT(peptide.totalAsa, 100.0);
}

TEST(BoundAreas, StructureIsTheSumOfItsKnownResidues) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    tAreas expected(5, 0.0);
    for (const std::size_t i : {0U, 2U, 3U}) {
        cChainResidue residue = peptide.residues[i];
        residue.setAsa();
        EXPECT_EQ(areasOf(peptide.residues[i]), areasOf(residue));
        expected = added(expected, areasOf(residue));
    }
    EXPECT_EQ(areasOf(peptide), expected);
}

TEST(BoundAreas, SkippedResidueKeepsItsSumsAndTheChainCountsThem) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_EQ(areasOf(peptide.residues[1]), notComputed);
    EXPECT_GT(peptide.atoms[6].asa, 0.0) << "though its atoms have areas";
    EXPECT_EQ(areasOf(peptide.chains[0]),
              added(added(tAreas(5, 0.0), areasOf(peptide.residues[0])), notComputed));
    EXPECT_EQ(areasOf(peptide.chains[1]),
              added(areasOf(peptide.residues[2]), areasOf(peptide.residues[3])));
}

TEST(BoundAreas, SkippedResidueKeepsTheSumsOfAnUnboundCalculation) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    const tAreas alone = areasOf(peptide.residues[1]);
    EXPECT_GT(alone[0], 0.0);
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_EQ(areasOf(peptide.residues[1]), alone);
    EXPECT_EQ(areasOf(peptide.chains[0]), added(areasOf(peptide.residues[0]), alone));
}

TEST(UnboundAreas, EveryChainIsComputedByItself) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    for (const cProteinChain& chain : peptide.chains) {
        const tAtoms alone(chain.atoms, chain.atoms + chain.atomCount);
        EXPECT_EQ(atomAreas(chain.atoms, chain.atomCount),
                  areasOfAtomsAlone(alone, usualProbeRadius, slice));
        tAreas sum(5, 0.0);
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            cChainResidue residue = chain.residues[i];
            residue.setAsa();
            EXPECT_EQ(areasOf(chain.residues[i]), areasOf(residue)) << "no type is skipped";
            sum = added(sum, areasOf(residue));
        }
        EXPECT_EQ(areasOf(chain), sum);
        EXPECT_GT(chain.totalAsa, 50.0);
    }
}

TEST(UnboundAreas, StructureHasNone) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_GT(peptide.totalAsa, 0.0);
    for (int call = 0; call < 2; ++call) {
        peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
        EXPECT_EQ(areasOf(peptide), tAreas(5, 0.0));
        peptide.totalAsa = peptide.polarAsa = 3.0;
    }
}

TEST(UnboundAreas, AreNotSmallerThanBoundOnes) {
    cPdbPeptide peptide = samplePeptide("1a0q");
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    const double bound = peptide.totalAsa;
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    const double unbound = peptide.chains[0].totalAsa + peptide.chains[1].totalAsa;
    EXPECT_GT(unbound, bound + 1000.0) << "the interface of the two chains";
}

TEST(UnboundAreas, LastCalculationIsWhatAtomsAndResiduesHold) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    const tAreas bound = atomAreas(peptide);
    const tAreas boundResidue = areasOf(peptide.residues[2]);
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    const tAreas unbound = atomAreas(peptide);
    EXPECT_NE(unbound, bound);
    EXPECT_NE(areasOf(peptide.residues[2]), boundResidue);
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_EQ(atomAreas(peptide), bound);
    EXPECT_EQ(areasOf(peptide.residues[2]), boundResidue);
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_EQ(atomAreas(peptide), unbound);
}

TEST(ChainAreas, SummingTakesTheResiduesAsTheyStand) {
    cPdbPeptide peptide = smallComplex();
    cProteinChain& chain = peptide.chains[0];
    chain.totalAsa = 1000.0;
    chain.setASASummingResidueAsa();
    EXPECT_EQ(areasOf(chain), tAreas(5, -2.0)) << "two residues that were never computed";
    peptide.residues[0].totalAsa = 10.0;
    peptide.residues[0].polarAsa = 4.0;
    chain.setASASummingResidueAsa();
    EXPECT_EQ(areasOf(chain), (tAreas{9.0, -2.0, -2.0, 3.0, -2.0}));
    EXPECT_EQ(peptide.atoms[0].asa, 0.0) << "atoms are left alone";
}

TEST(ChainAreas, ChainAloneLeavesTheOtherChainsAndTheStructureAlone) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    const tAreas structure = areasOf(peptide);
    const tAreas other = areasOf(peptide.chains[1]);
    peptide.chains[0].setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_EQ(areasOf(peptide), structure);
    EXPECT_EQ(areasOf(peptide.chains[1]), other);
}

TEST(StructureTables, ResiduesOfNoKnownTypeAreLeftOut) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    const std::map<std::string, sAsa> standards{{"ALA", {100, 100, 100, 100, 100}},
                                                {"LIG", {100, 100, 100, 100, 100}},
                                                {"A", {100, 100, 100, 100, 100}}};
    peptide.setRelativeAccessibleSurfaceArea(standards);
    EXPECT_DOUBLE_EQ(peptide.residues[0].relativeTotalAsa, peptide.residues[0].totalAsa);
    EXPECT_EQ(relativeAreasOf(peptide.residues[1]), notComputed);
    EXPECT_EQ(relativeAreasOf(peptide.residues[2]), notComputed) << "not in the table";
    EXPECT_DOUBLE_EQ(peptide.residues[3].relativeTotalAsa, peptide.residues[3].totalAsa);
    peptide.chains[0].setRelativeAccessibleSurfaceArea(standards);
    EXPECT_DOUBLE_EQ(peptide.residues[1].relativeTotalAsa, peptide.residues[1].totalAsa)
        << "the chain leaves no type out";
    peptide.setHydrophobicity({{"ALA", 1.8}, {"LIG", 5.0}, {"SER", -0.8}});
    EXPECT_EQ(peptide.residues[0].hydrophobicity, 1.8);
    EXPECT_EQ(peptide.residues[1].hydrophobicity, 0.0);
    EXPECT_EQ(peptide.residues[2].hydrophobicity, -0.8);
    EXPECT_EQ(peptide.residues[3].hydrophobicity, 0.0);
}

TEST(StructureAreas, EmptyStructureIsNoWork) {
    cPdbPeptide peptide;
    peptide.totalAsa = 5.0;
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_EQ(areasOf(peptide), tAreas(5, 0.0));
    peptide.totalAsa = 5.0;
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_EQ(areasOf(peptide), tAreas(5, 0.0));
}

// Unbound areas that are still current are not computed again. A foreign value in an atom shows
// whether they were.

constexpr double foreign = 12345.0;

/// A complex with current unbound areas and a foreign value in the first atom of either chain.
cPdbPeptide tamperedComplex() {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    peptide.chains[0].atoms[0].asa = foreign;
    peptide.chains[1].atoms[0].asa = foreign;
    return peptide;
}

bool isForeign(const cPdbPeptide& peptide, std::size_t chain) {
    return peptide.chains[chain].atoms[0].asa == foreign;
}

TEST(CurrentUnboundAreas, AreNotComputedAgain) {
    cPdbPeptide peptide = tamperedComplex();
    const tAreas chainAreas = areasOf(peptide.chains[0]);
    for (int call = 0; call < 3; ++call) {
        peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
        EXPECT_TRUE(isForeign(peptide, 0));
        EXPECT_TRUE(isForeign(peptide, 1));
        EXPECT_EQ(areasOf(peptide.chains[0]), chainAreas);
    }
}

TEST(CurrentUnboundAreas, AreStaleAfterABoundCalculation) {
    cPdbPeptide peptide = tamperedComplex();
    const cPdbPeptide fresh = [] {
        cPdbPeptide other = smallComplex();
        other.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
        return other;
    }();
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_FALSE(isForeign(peptide, 0));
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_EQ(atomAreas(peptide), atomAreas(fresh));
    EXPECT_EQ(areasOf(peptide.residues[1]), areasOf(fresh.residues[1]));
    EXPECT_EQ(areasOf(peptide.chains[1]), areasOf(fresh.chains[1]));
}

TEST(CurrentUnboundAreas, AreStaleForOtherParameters) {
    cPdbPeptide peptide = tamperedComplex();
    peptide.setAccessibleSurfaceAreaUnbound(1.5, slice);
    EXPECT_FALSE(isForeign(peptide, 0));
    EXPECT_FALSE(isForeign(peptide, 1));
    peptide = tamperedComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, 0.1);
    EXPECT_FALSE(isForeign(peptide, 0));
    peptide = tamperedComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice, eAsaForm::complete);
    EXPECT_FALSE(isForeign(peptide, 0));
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    const tAreas back = atomAreas(peptide);
    peptide = smallComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_EQ(atomAreas(peptide), back) << "and stale again on the way back";
}

TEST(CurrentUnboundAreas, AreKeptChainByChain) {
    cPdbPeptide peptide = tamperedComplex();
    peptide.chains[0].setAccessibleSurfaceArea(2.0, slice);
    EXPECT_FALSE(isForeign(peptide, 0));
    const double withLargerProbe = peptide.chains[0].atoms[0].asa;
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_NE(peptide.chains[0].atoms[0].asa, withLargerProbe);
    EXPECT_TRUE(isForeign(peptide, 1)) << "the other chain was current";
}

TEST(CurrentUnboundAreas, ChainItselfAlwaysComputes) {
    cPdbPeptide peptide = tamperedComplex();
    peptide.chains[0].setAccessibleSurfaceArea(usualProbeRadius, slice);
    EXPECT_FALSE(isForeign(peptide, 0));
    peptide.chains[0].atoms[0].asa = foreign;
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_TRUE(isForeign(peptide, 0)) << "and what it computed is current";
}

TEST(CurrentUnboundAreas, AreUnknownAfterLoading) {
    cPdbPeptide peptide = tamperedComplex();
    const cPdbPeptide loaded = smallComplex();
    peptide = loaded;
    peptide.atoms[0].asa = foreign;
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_FALSE(isForeign(peptide, 0));
}

TEST(CurrentUnboundAreas, OfACopyAreItsOwn) {
    cPdbPeptide peptide = smallComplex();
    peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    const tAreas unbound = atomAreas(peptide);
    cPdbPeptide copy(peptide);
    peptide.setAccessibleSurfaceArea(usualProbeRadius, slice);
    copy.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_EQ(atomAreas(copy), unbound);
    cPdbPeptide boundCopy(peptide);
    boundCopy.setAccessibleSurfaceAreaUnbound(usualProbeRadius, slice);
    EXPECT_EQ(atomAreas(boundCopy), unbound);
    EXPECT_NE(atomAreas(peptide), unbound);
}

} // namespace

} // namespace kelmo

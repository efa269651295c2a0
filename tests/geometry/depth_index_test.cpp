// Depth index: distances of buried atoms to the surface, and how residues summarise them.
#include "geometry/atom_space_calculations.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <tbb/global_control.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace kelmo {

namespace {

cResidueAtom atomWithArea(double x, double y, double z, double area) {
    cResidueAtom atom = atomAt(x, y, z);
    atom.asa = area;
    atom.depthIndex = 77.0; // left over
    return atom;
}

std::vector<double> depthsOf(tAtoms atoms) {
    calculateAtomDepthIndex(atoms.data(), static_cast<unsigned>(atoms.size()));
    std::vector<double> depths;
    for (const cResidueAtom& atom : atoms) {
        depths.push_back(atom.depthIndex);
    }
    return depths;
}

using tDepths = std::vector<double>;

TEST(DepthIndex, SurfaceAtomsHaveDepthZero) {
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0001), atomWithArea(5, 0, 0, 80.0)}),
              (tDepths{0.0, 0.0}));
}

TEST(DepthIndex, AreaThatIsNotExactlyZeroIsSurface) {
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, -1.0), atomWithArea(1, 0, 0, 1e-300),
                        atomWithArea(2, 0, 0, std::nan("")), atomWithArea(3, 0, 0, -0.0)}),
              (tDepths{0.0, 0.0, 0.0, 1.0}))
        << "minus zero is zero";
}

TEST(DepthIndex, WithoutSurfaceNothingIsWritten) {
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(5, 0, 0, 0.0)}),
              (tDepths{77.0, 77.0}));
    calculateAtomDepthIndex(nullptr, 0);
}

TEST(DepthIndex, IsTheExactDistanceToTheNearestSurfaceAtom) {
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(2.5, 0, 0, 1.0)})[0], 2.5);
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(3, 4, 0, 1.0),
                        atomWithArea(-6, 0, 0, 1.0)})[0],
              5.0);
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(2.9, 0, 0, 1.0),
                        atomWithArea(0, 2.1, 0, 1.0), atomWithArea(0, 0, -2.5, 1.0)})[0],
              2.1)
        << "all are found in the same step";
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(1, 0, 0, 1.0)})[0], 1.0)
        << "exactly at the first range";
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(0.001, 0, 0, 1.0)})[0], 0.001);
}

TEST(DepthIndex, DoesNotReckonWithRadii) {
    tAtoms atoms{atomWithArea(0, 0, 0, 0.0), atomWithArea(4, 0, 0, 1.0)};
    atoms[0].radius = 3.0;
    atoms[1].radius = 9.0;
    EXPECT_EQ(depthsOf(atoms)[0], 4.0);
}

TEST(DepthIndex, SurfaceFarFromAllBuriedAtomsIsFound) {
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(5000, 0, 0, 1.0)})[0], 5000.0);
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(0, 0, 1e6, 1.0),
                        atomWithArea(0, 0, -1e6, 1.0)})[0],
              1e6);
}

// The smallest distance is sought from 9,999,999 down; nothing farther is told apart.
TEST(DepthIndex, IsAtMostJustBelowTenMillion) {
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(9999998.5, 0, 0, 1.0)})[0],
              9999998.5);
    EXPECT_EQ(depthsOf({atomWithArea(0, 0, 0, 0.0), atomWithArea(9999999.5, 0, 0, 1.0)})[0],
              9999999.0);
    EXPECT_EQ(depthsOf({atomWithArea(-9999999, 0, 0, 0.0), atomWithArea(99999999, 0, 0, 1.0)})[0],
              9999999.0);
}

TEST(DepthIndex, SurfaceAtomAtTheVeryPlaceIsPassedOver) {
    EXPECT_EQ(depthsOf({atomWithArea(1, 2, 3, 0.0), atomWithArea(1, 2, 3, 1.0),
                        atomWithArea(1, 2, 6, 1.0)})[0],
              3.0);
}

// No search could ever succeed; it has to end all the same, and with a value.
TEST(DepthIndex, OnlySurfaceAtTheVeryPlaceGivesZero) {
    EXPECT_EQ(depthsOf({atomWithArea(1, 2, 3, 0.0), atomWithArea(1, 2, 3, 1.0),
                        atomWithArea(9, 9, 9, 0.0)}),
              (tDepths{0.0, 0.0, std::sqrt(64.0 + 49.0 + 36.0)}));
}

TEST(DepthIndex, IsTheSmallestDistanceOnRandomClouds) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        cRandom random(seed);
        tAtoms atoms = randomCloud(seed, 10 + random.below(400),
                                   seed % 3 == 0 ? sPoint{40, 40, 0} : sPoint{30, 10, 50}, {1.5});
        const unsigned surfaceShare = 1 + random.below(90);
        for (cResidueAtom& atom : atoms) {
            atom.asa = random.below(100) < surfaceShare ? random.between(0.1, 50.0) : 0.0;
        }
        const std::vector<double> depths = depthsOf(atoms);
        for (std::size_t i = 0; i < atoms.size(); ++i) {
            double expected = atoms[i].asa != 0.0 ? 0.0 : std::numeric_limits<double>::infinity();
            for (const cResidueAtom& other : atoms) {
                const double distance = centreDistance(atoms[i], other);
                if (other.asa != 0.0 && distance != 0.0) {
                    expected = std::min(expected, distance);
                }
            }
            if (expected != std::numeric_limits<double>::infinity()) {
                ASSERT_EQ(depths[i], expected) << "seed " << seed << " atom " << i;
            }
        }
    }
}

TEST(DepthIndex, NumberOfThreadsDoesNotMatter) {
    tAtoms atoms = samplePeptide("1a0q").atoms;
    setAreas(atoms, 1.4, 0.25);
    const std::vector<double> depths = depthsOf(atoms);
    EXPECT_GT(*std::max_element(depths.begin(), depths.end()), 3.0);
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 1);
    EXPECT_EQ(depthsOf(atoms), depths);
}

// Chains and structures

/// Chain A is an alanine and a residue of no known type, chain B a ligand that brings the surface.
cPdbPeptide smallComplex() {
    cPdbPeptide peptide;
    const auto add = [&](double x, double area) {
        peptide.atoms.push_back(atomWithArea(x, 0.0, 0.0, area));
    };
    add(0.0, 0.0); // A, alanine
    add(2.0, 5.0);
    add(10.0, 0.0); // A, unknown
    add(12.0, 0.0);
    add(11.0, 5.0); // B, unknown
    peptide.residues = {{"ALA", "1", peptide.atoms.data(), 2, eResidueType::aminoAcid},
                        {"LIG", "2", peptide.atoms.data() + 2, 2, eResidueType::other},
                        {"LIG", "1", peptide.atoms.data() + 4, 1, eResidueType::other}};
    peptide.chains = {{"1XYZ", "A", peptide.residues.data(), 2, peptide.atoms.data(), 4},
                      {"1XYZ", "B", peptide.residues.data() + 2, 1, peptide.atoms.data() + 4, 1}};
    return peptide;
}

TEST(DepthIndex, StructureLeavesResiduesOfNoKnownTypeOut) {
    cPdbPeptide peptide = smallComplex();
    peptide.setDepthIndex();
    EXPECT_EQ(peptide.atoms[0].depthIndex, 2.0);
    EXPECT_EQ(peptide.atoms[2].depthIndex, 1.0) << "atoms are all computed";
    EXPECT_EQ(peptide.atoms[3].depthIndex, 1.0);
    EXPECT_EQ(peptide.residues[0].maxDepthIndex, 2.0);
    EXPECT_EQ(peptide.residues[0].averageDepthIndex, 1.0);
    EXPECT_EQ(peptide.residues[0].depthIndexDeviation, 1.0);
    EXPECT_EQ(peptide.residues[1].maxDepthIndex, -1.0);
    EXPECT_EQ(peptide.residues[1].sideChainDepthIndexDeviation, -1.0);
}

TEST(DepthIndex, ChainComputesEveryResidueFromItsOwnAtomsOnly) {
    cPdbPeptide peptide = smallComplex();
    peptide.chains[0].setDepthIndex();
    EXPECT_EQ(peptide.atoms[2].depthIndex, 8.0) << "chain B is not there";
    EXPECT_EQ(peptide.atoms[3].depthIndex, 10.0);
    EXPECT_EQ(peptide.atoms[4].depthIndex, 77.0) << "and not touched";
    EXPECT_EQ(peptide.residues[1].maxDepthIndex, 10.0) << "no type is left out";
    EXPECT_EQ(peptide.residues[1].minDepthIndex, 8.0);
    EXPECT_EQ(peptide.residues[2].maxDepthIndex, -1.0);
}

TEST(DepthIndex, EmptyStructureIsNoWork) {
    tAtoms atoms{atomAt(0, 0, 0), atomAt(1, 0, 0)};
    atoms[0].asa = 1.0;
    atoms[1].depthIndex = 7.0;
    calculateAtomDepthIndex(atoms.data(), 0);
    EXPECT_EQ(atoms[1].depthIndex, 7.0) << "atoms beyond the count are not touched";
    cPdbPeptide peptide;
    EXPECT_NO_THROW(peptide.setDepthIndex());
    cProteinChain chain;
    EXPECT_NO_THROW(chain.setDepthIndex());
}

} // namespace

} // namespace kelmo

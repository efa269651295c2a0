// Protrusion index: how much of a sphere around each atom its neighbours leave empty.
#include "geometry/atom_space_calculations.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/geometry/only_loops.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <tbb/global_control.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace kelmo {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double volumeOfTenAngstroms = 4188.790204786391; // Å³

using tIndices = std::vector<double>;

tIndices protrusionsOf(tAtoms atoms, double sphereRadius, double atomVolume) {
    const sCorners box(atoms);
    for (cResidueAtom& atom : atoms) {
        atom.protrusionIndex = 77.0; // left over
    }
    calculateAtomProtrusionIndex(atoms.data(), static_cast<unsigned>(atoms.size()), box.maxPoint,
                                 box.minPoint, sphereRadius, atomVolume);
    tIndices indices;
    for (const cResidueAtom& atom : atoms) {
        indices.push_back(atom.protrusionIndex);
    }
    return indices;
}

/// One atom in the middle of `count` others, all within the sphere of 10 Å around it.
tAtoms crowd(unsigned count) {
    tAtoms atoms{atomAt(0.0, 0.0, 0.0)};
    for (unsigned i = 0; i < count; ++i) {
        const double angle = 0.1 * i;
        atoms.push_back(atomAt(5.0 * std::cos(angle), 5.0 * std::sin(angle), 0.01 * i));
    }
    return atoms;
}

TEST(ProtrusionIndex, FiftyNeighboursOfTwentyCubicAngstromsLeaveThreeParts) {
    EXPECT_EQ(protrusionsOf(crowd(50), 10.0, 20.0)[0], 3.188790204786391);
}

TEST(ProtrusionIndex, AtomItselfTakesNoRoom) {
    EXPECT_EQ(protrusionsOf(crowd(1), 10.0, 20.0)[0], (volumeOfTenAngstroms - 20.0) / 20.0);
}

TEST(ProtrusionIndex, FullSphereIsZero) {
    EXPECT_GT(protrusionsOf(crowd(209), 10.0, 20.0)[0], 0.0) << "4180 of 4188.79";
    EXPECT_EQ(protrusionsOf(crowd(210), 10.0, 20.0)[0], 0.0);
    EXPECT_EQ(protrusionsOf(crowd(300), 10.0, 20.0)[0], 0.0);
    EXPECT_EQ(protrusionsOf(crowd(1), 10.0, 1e6)[0], 0.0);
    EXPECT_EQ(protrusionsOf(crowd(1), 10.0, volumeOfTenAngstroms)[0], 0.0);
}

TEST(ProtrusionIndex, LonelyAtomIsInfinite) {
    EXPECT_EQ(protrusionsOf({atomAt(1, 2, 3)}, 10.0, 20.0), tIndices{infinity});
    EXPECT_EQ(protrusionsOf({atomAt(0, 0, 0), atomAt(11, 0, 0)}, 10.0, 20.0),
              (tIndices{infinity, infinity}));
    EXPECT_EQ(protrusionsOf({atomAt(1, 2, 3), atomAt(1, 2, 3)}, 10.0, 20.0),
              (tIndices{infinity, infinity}))
        << "an atom at the very place is no neighbour";
}

TEST(ProtrusionIndex, NeighbourExactlyAtTheRadiusCounts) {
    const tAtoms atoms{atomAt(0, 0, 0), atomAt(6, 8, 0)};
    EXPECT_LT(protrusionsOf(atoms, 10.0, 20.0)[0], infinity);
    EXPECT_EQ(protrusionsOf(atoms, std::nextafter(10.0, 0.0), 20.0)[0], infinity);
}

TEST(ProtrusionIndex, EmptyAtomsAndEmptySpheresAreNotGuarded) {
    const tAtoms atoms{atomAt(0, 0, 0), atomAt(1, 0, 0)};
    EXPECT_EQ(protrusionsOf(atoms, 10.0, 0.0), (tIndices{infinity, infinity}));
    EXPECT_TRUE(std::isnan(protrusionsOf(atoms, 0.0, 20.0)[0])) << "nothing over nothing";
}

TEST(ProtrusionIndex, NoAtomsAreNoWork) {
    tAtoms atoms{atomAt(0, 0, 0), atomAt(1, 0, 0)};
    atoms[0].protrusionIndex = 5.0;
    const sCorners box(atoms);
    calculateAtomProtrusionIndex(atoms.data(), 0, box.maxPoint, box.minPoint, 10.0, 20.0);
    EXPECT_EQ(atoms[0].protrusionIndex, 5.0) << "atoms beyond the count are not touched";
    EXPECT_NO_THROW(calculateAtomProtrusionIndex(nullptr, 0, sPoint{}, sPoint{}, 10.0, 20.0));
    cPdbPeptide peptide;
    EXPECT_NO_THROW(peptide.setProtrusionIndex(10.0, 20.0));
}

// A sphere without limit holds every atom; counting them has to come to an end.
TEST(ProtrusionIndexDeathTest, SphereWithoutLimitIsCounted) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto countWithoutLimit = [] {
        alarm(5);
        const tIndices indices = protrusionsOf(crowd(5), infinity, 20.0);
        std::_Exit(indices == tIndices(6, infinity) ? 0 : 1);
    };
    EXPECT_EXIT(countWithoutLimit(), testing::ExitedWithCode(0), "");
}

double expectedProtrusion(const tAtoms& atoms, std::size_t which, double sphereRadius,
                          double atomVolume) {
    const double sphereVolume = std::pow(sphereRadius, 3.0) * 4.1887902047863905;
    const auto neighbours =
        std::count_if(atoms.begin(), atoms.end(), [&](const cResidueAtom& other) {
            return atoms[which].isInRangeByCenter(other, sphereRadius);
        });
    const double occupied = std::min(static_cast<double>(neighbours) * atomVolume, sphereVolume);
    return (sphereVolume - occupied) / occupied;
}

TEST(ProtrusionIndex, CountsNeighboursOneByOne) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        cRandom random(seed);
        tAtoms atoms = randomCloud(seed, 1 + random.below(300),
                                   seed % 3 == 0 ? sPoint{40, 40, 0} : sPoint{30, 10, 50}, {1.5});
        if (seed % 4 == 0) { // whole coordinates: many distances are exactly the radius
            for (cResidueAtom& atom : atoms) {
                atom = atomAt(std::floor(atom.x), std::floor(atom.y), std::floor(atom.z));
            }
        }
        for (const double radius : {1.0, 5.0, 7.3, 10.0, 13.0, 200.0}) {
            const tIndices indices = protrusionsOf(atoms, radius, 20.1);
            for (std::size_t i = 0; i < atoms.size(); ++i) {
                ASSERT_EQ(indices[i], expectedProtrusion(atoms, i, radius, 20.1))
                    << "seed " << seed << " atom " << i << " radius " << radius;
            }
        }
    }
}

// Radii that are themselves distances within the cloud, rounded as distances are.
TEST(ProtrusionIndex, RangeEndsExactlyAtADistance) {
    const tAtoms atoms = randomCloud(8, 60, 9.0);
    for (std::size_t i = 1; i < atoms.size(); ++i) {
        const double distance = centreDistance(atoms[0], atoms[i]);
        for (const double radius :
             {std::nextafter(distance, 0.0), distance, std::nextafter(distance, infinity)}) {
            ASSERT_EQ(protrusionsOf(atoms, radius, 20.1)[0],
                      expectedProtrusion(atoms, 0, radius, 20.1));
        }
    }
}

TEST(ProtrusionIndex, EveryInstructionSetAndNumberOfThreadsCountTheSame) {
    const tAtoms atoms = samplePeptide("1ubq").atoms;
    const tIndices indices = protrusionsOf(atoms, 10.0, 20.1);
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        ASSERT_EQ(indices[i], expectedProtrusion(atoms, i, 10.0, 20.1));
    }
    for (std::size_t place = 0; place < availableSurfaceLoops().size(); ++place) {
        const cOnlyLoops only(place);
        EXPECT_EQ(protrusionsOf(atoms, 10.0, 20.1), indices) << only.name();
    }
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 1);
    EXPECT_EQ(protrusionsOf(atoms, 10.0, 20.1), indices);
}

// Chains and structures

/// Chain A is an alanine and a residue of no known type; chain B is one atom near the latter.
cPdbPeptide smallComplex() {
    cPdbPeptide peptide;
    for (const double x : {0.0, 1.0, 20.0, 21.0, 22.0}) {
        peptide.atoms.push_back(atomAt(x, 0.0, 0.0));
    }
    peptide.residues = {{"ALA", "1", peptide.atoms.data(), 2, eResidueType::aminoAcid},
                        {"LIG", "2", peptide.atoms.data() + 2, 2, eResidueType::other},
                        {"LIG", "1", peptide.atoms.data() + 4, 1, eResidueType::other}};
    peptide.chains = {{"1XYZ", "A", peptide.residues.data(), 2, peptide.atoms.data(), 4},
                      {"1XYZ", "B", peptide.residues.data() + 2, 1, peptide.atoms.data() + 4, 1}};
    setMinMaxPoints(peptide.atoms.data(), 5, &peptide.maxPoint, &peptide.minPoint);
    return peptide;
}

const double withOne = (volumeOfTenAngstroms - 20.0) / 20.0;
const double withTwo = (volumeOfTenAngstroms - 40.0) / 40.0;

TEST(ProtrusionIndex, StructureLeavesResiduesOfNoKnownTypeOut) {
    cPdbPeptide peptide = smallComplex();
    peptide.setProtrusionIndex(10.0, 20.0);
    EXPECT_EQ(peptide.atoms[0].protrusionIndex, withOne);
    EXPECT_EQ(peptide.atoms[2].protrusionIndex, withTwo) << "atoms are all computed";
    EXPECT_EQ(peptide.residues[0].maxProtrusionIndex, withOne);
    EXPECT_EQ(peptide.residues[0].protrusionIndexDeviation, 0.0);
    EXPECT_EQ(peptide.residues[1].maxProtrusionIndex, -1.0);
    EXPECT_EQ(peptide.residues[2].averageProtrusionIndex, -1.0);
}

TEST(ProtrusionIndex, ChainComputesEveryResidueFromItsOwnAtomsOnly) {
    cPdbPeptide peptide = smallComplex();
    peptide.chains[0].setProtrusionIndex(10.0, 20.0);
    EXPECT_EQ(peptide.atoms[2].protrusionIndex, withOne) << "chain B is not there";
    EXPECT_EQ(peptide.atoms[4].protrusionIndex, 0.0) << "and not touched";
    EXPECT_EQ(peptide.residues[1].maxProtrusionIndex, withOne) << "no type is left out";
    peptide.chains[1].setProtrusionIndex(10.0, 20.0);
    EXPECT_EQ(peptide.residues[2].maxProtrusionIndex, infinity);
    EXPECT_EQ(peptide.residues[2].minProtrusionIndex, infinity);
    EXPECT_TRUE(std::isnan(peptide.residues[2].protrusionIndexDeviation));
    EXPECT_EQ(peptide.residues[2].averageSideChainProtrusionIndex, 0.0);
}

} // namespace

} // namespace kelmo

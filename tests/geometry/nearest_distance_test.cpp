// The mean distance to the nearest atom, by which coordinates in a wrong unit give themselves away.
#include "geometry/nearest_distance.h"

#include "base/stop_request.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelmo {

namespace {

cPdbPeptide structureOf(const tAtoms& atoms) {
    cPdbPeptide peptide;
    peptide.atoms = atoms;
    return peptide;
}

/// From every atom to every other.
double meanOfAll(const tAtoms& atoms) {
    double sum = 0.0;
    for (const cResidueAtom& atom : atoms) {
        double nearest = farthestNearestDistance;
        for (const cResidueAtom& other : atoms) {
            const double distance = centreDistance(atom, other);
            nearest = distance != 0.0 ? std::min(nearest, distance) : nearest;
        }
        sum += nearest;
    }
    return sum / static_cast<double>(atoms.size());
}

void scale(cPdbPeptide& peptide, double factor) {
    for (cResidueAtom& atom : peptide.atoms) {
        atom.x *= factor;
        atom.y *= factor;
        atom.z *= factor;
    }
}

} // namespace

TEST(NearestDistance, OfFewAtomsIsTheMeanOfAll) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        const unsigned count = 1 + seed * 37 % 64;
        const double edge = std::array{0.5, 4.0, 12.0, 100.0}[seed % 4];
        const tAtoms atoms = randomCloud(seed, count, edge);
        EXPECT_NEAR(meanNearestDistance(structureOf(atoms)), meanOfAll(atoms), 1e-12) << seed;
    }
}

TEST(NearestDistance, OfManyAtomsIsNearTheMeanOfAll) {
    for (const double edge : {2.0, 20.0}) {
        const tAtoms atoms = randomCloud(3, 3000, edge);
        const double mean = meanOfAll(atoms);
        EXPECT_NEAR(meanNearestDistance(structureOf(atoms)), mean, 0.1 * mean) << edge;
    }
}

TEST(NearestDistance, OfAMoleculeIsABondLength) {
    for (const std::string& name : sampleCodes()) {
        const cPdbPeptide peptide = samplePeptide(name);
        EXPECT_GT(meanNearestDistance(peptide), 1.2) << name;
        EXPECT_LT(meanNearestDistance(peptide), 1.5) << name;
    }
}

TEST(NearestDistance, OfCoordinatesInNanometresIsATenth) {
    for (const std::string& name : sampleCodes()) {
        cPdbPeptide peptide = samplePeptide(name);
        const double inAngstrom = meanNearestDistance(peptide);
        scale(peptide, 0.1);
        EXPECT_NEAR(meanNearestDistance(peptide), 0.1 * inAngstrom, 1e-9) << name;
        EXPECT_LT(meanNearestDistance(peptide), densestMolecule) << name;
    }
}

TEST(NearestDistance, OfHydrogenMoleculesAndOfTwoPlacesForEveryAtomIsThatOfAMolecule) {
    tAtoms atoms;
    for (int i = 0; i < 100; ++i) {
        atoms.push_back(atomAt(4.0 * i, 0, 0));
        atoms.push_back(atomAt(4.0 * i + 0.74, 0, 0));
    }
    EXPECT_GT(meanNearestDistance(structureOf(atoms)), densestMolecule);
    for (const std::string& name : sampleCodes()) {
        cPdbPeptide peptide = samplePeptide(name);
        const tAtoms once = peptide.atoms;
        for (cResidueAtom atom : once) {
            atom.z += 0.6;
            peptide.atoms.push_back(atom);
        }
        EXPECT_GT(meanNearestDistance(peptide), densestMolecule) << name;
    }
}

TEST(NearestDistance, FarAtomsCountWithTheFarthestDistance) {
    EXPECT_EQ(meanNearestDistance(structureOf({atomAt(0, 0, 0), atomAt(0, 50, 0)})),
              farthestNearestDistance);
    EXPECT_EQ(meanNearestDistance(structureOf({atomAt(0, 0, 0)})), farthestNearestDistance);
    EXPECT_EQ(meanNearestDistance(cPdbPeptide()), farthestNearestDistance);
}

TEST(NearestDistance, AtomsAtTheSamePlaceAreNotNearest) {
    EXPECT_EQ(meanNearestDistance(structureOf(
                  {atomAt(0, 0, 0), atomAt(0, 0, 0), atomAt(0, 0, 1.5), atomAt(0, 0, 1.5)})),
              1.5);
}

TEST(NearestDistance, HeedsAStop) {
    const cPdbPeptide peptide = structureOf(randomCloud(1, 1000, 20.0));
    const cStopRequest request([] { return true; });
    EXPECT_THROW(meanNearestDistance(peptide), sStopped);
}

} // namespace kelmo

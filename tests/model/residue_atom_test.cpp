// One atom: its fields, the two range tests and the bounding box of a run of atoms.
#include "model/residue_atom.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace kelmo {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

cResidueAtom atomAt(double x, double y, double z, double radius = 1.5) {
    return {"CA", "1", x, y, z, radius};
}

TEST(ResidueAtom, DefaultAtomIsEmptyAndZero) {
    const cResidueAtom atom;
    EXPECT_EQ(atom.atomName, "");
    EXPECT_EQ(atom.serial, "");
    for (const double value : {atom.asa, atom.protrusionIndex, atom.depthIndex, atom.x, atom.y,
                               atom.z, atom.radius, atom.zMax, atom.zMin}) {
        EXPECT_EQ(value, 0.0);
    }
    EXPECT_EQ(atom.sliceCount, 0);
    EXPECT_EQ(atom.residue, nullptr);
}

TEST(ResidueAtom, ConstructorDerivesTheTopAndBottomOfTheSphere) {
    const cResidueAtom atom("OD1", "417", 1.25, -2.5, 3.75, 1.4);
    EXPECT_EQ(atom.atomName, "OD1");
    EXPECT_EQ(atom.serial, "417");
    EXPECT_EQ(atom.x, 1.25);
    EXPECT_EQ(atom.y, -2.5);
    EXPECT_EQ(atom.z, 3.75);
    EXPECT_EQ(atom.radius, 1.4);
    EXPECT_EQ(atom.zMax, 3.75 + 1.4);
    EXPECT_EQ(atom.zMin, 3.75 - 1.4);
    EXPECT_EQ(atom.asa, 0.0);
    EXPECT_EQ(atom.protrusionIndex, 0.0);
    EXPECT_EQ(atom.depthIndex, 0.0);
    EXPECT_EQ(atom.sliceCount, 0);
    EXPECT_EQ(atom.residue, nullptr);
}

void expectSameFields(const cResidueAtom& a, const cResidueAtom& b) {
    EXPECT_EQ(a.atomName, b.atomName);
    EXPECT_EQ(a.serial, b.serial);
    EXPECT_EQ(a.asa, b.asa);
    EXPECT_EQ(a.protrusionIndex, b.protrusionIndex);
    EXPECT_EQ(a.depthIndex, b.depthIndex);
    EXPECT_EQ(a.x, b.x);
    EXPECT_EQ(a.y, b.y);
    EXPECT_EQ(a.z, b.z);
    EXPECT_EQ(a.radius, b.radius);
    EXPECT_EQ(a.zMax, b.zMax);
    EXPECT_EQ(a.zMin, b.zMin);
    EXPECT_EQ(a.sliceCount, b.sliceCount);
    EXPECT_EQ(a.residue, b.residue);
}

TEST(ResidueAtom, CopyAndAssignmentTakeEveryField) {
    std::vector<int> place(1);
    cResidueAtom atom("CB", "9", 1.0, 2.0, 3.0, 1.7);
    atom.asa = 4.0;
    atom.protrusionIndex = 5.0;
    atom.depthIndex = 6.0;
    atom.zMax = 7.0; // no longer what z and radius give: a copy must not derive it again
    atom.zMin = 8.0;
    atom.sliceCount = 9;
    atom.residue = reinterpret_cast<cChainResidue*>(place.data()); // never followed
    const cResidueAtom copy(atom);
    expectSameFields(copy, atom);
    cResidueAtom assigned("N", "1", 0.0, 0.0, 0.0, 1.0);
    assigned = atom;
    expectSameFields(assigned, atom);
}

TEST(ResidueAtom, CentreDistanceIsEuclidean) {
    EXPECT_EQ(centreDistance(atomAt(1, 2, 3), atomAt(3, 5, 9)), 7.0);
    EXPECT_EQ(centreDistance(atomAt(1, 2, 3), atomAt(1, 2, 3)), 0.0);
}

TEST(ResidueAtom, CentresExactlyAtRangeAreInRange) {
    const cResidueAtom a = atomAt(0, 0, 0);
    const cResidueAtom b = atomAt(3, 4, 0);
    EXPECT_TRUE(a.isInRangeByCenter(b, 5.0));
    EXPECT_TRUE(b.isInRangeByCenter(a, 5.0));
    EXPECT_FALSE(a.isInRangeByCenter(b, std::nextafter(5.0, 0.0)));
    EXPECT_TRUE(a.isInRangeByCenter(b, infinity));
}

TEST(ResidueAtom, RangeTestTakesNoNoticeOfRadii) {
    EXPECT_FALSE(atomAt(0, 0, 0, 100.0).isInRangeByCenter(atomAt(3, 4, 0, 100.0), 4.9));
}

TEST(ResidueAtom, AtomsAtOnePlaceAreNeverInRange) {
    const cResidueAtom a = atomAt(1.5, -2.0, 7.0);
    const cResidueAtom b = atomAt(1.5, -2.0, 7.0);
    for (const double range : {0.0, 1.0, 1e9, infinity}) {
        EXPECT_FALSE(a.isInRangeByCenter(a, range)) << range;
        EXPECT_FALSE(a.isInRangeByCenter(b, range)) << range;
        EXPECT_FALSE(a.doesIntersect(a, range)) << range;
        EXPECT_FALSE(a.doesIntersect(b, range)) << range;
    }
}

TEST(ResidueAtom, NoRangeReachesOtherAtomsUnlessPositive) {
    const cResidueAtom a = atomAt(0, 0, 0);
    const cResidueAtom b = atomAt(0, 0, 0.001);
    EXPECT_FALSE(a.isInRangeByCenter(b, 0.0));
    EXPECT_FALSE(a.isInRangeByCenter(b, -1.0));
    EXPECT_FALSE(a.isInRangeByCenter(b, std::nan("")));
}

TEST(ResidueAtom, SpheresThatTouchIntersect) {
    const cResidueAtom a = atomAt(0, 0, 0, 1.5);
    const double sum = 1.5 + 0.5 + 1.25 + 0.5;
    EXPECT_TRUE(a.doesIntersect(atomAt(0, sum, 0, 1.25), 0.5));
    EXPECT_FALSE(a.doesIntersect(atomAt(0, std::nextafter(sum, 9.0), 0, 1.25), 0.5));
    EXPECT_TRUE(a.doesIntersect(atomAt(0, 0.001, 0, 1.25), 0.5)) << "one inside the other";
    EXPECT_FALSE(a.doesIntersect(atomAt(0, 2.0, 0, 1.25), -0.5));
}

// Radius, probe, radius, probe: another order of the sum may differ in its last bit, and then two
// atoms at just that distance would change sides.
TEST(ResidueAtom, IntersectionAddsInAFixedOrder) {
    std::mt19937 random(20);
    unsigned differing = 0;
    const auto thousandths = [&random](unsigned limit) {
        return static_cast<double>(random() % limit) / 1000.0;
    };
    for (int i = 0; i < 20000; ++i) {
        const double radius = thousandths(4000);
        const double otherRadius = thousandths(4000);
        const double enlargement = thousandths(3000);
        const double sum = radius + enlargement + otherRadius + enlargement;
        if (sum == 0.0) {
            continue;
        }
        differing += sum != radius + otherRadius + 2.0 * enlargement ? 1U : 0U;
        const cResidueAtom a = atomAt(0, 0, 0, radius);
        ASSERT_TRUE(a.doesIntersect(atomAt(sum, 0, 0, otherRadius), enlargement));
        ASSERT_FALSE(
            a.doesIntersect(atomAt(std::nextafter(sum, infinity), 0, 0, otherRadius), enlargement));
    }
    EXPECT_GT(differing, 1000U);
}

TEST(MinMaxPoints, OneAtomGivesTwoEqualPoints) {
    const cResidueAtom atom = atomAt(1.0, -2.0, 3.0, 5.0);
    sPoint maxPoint;
    sPoint minPoint;
    setMinMaxPoints(&atom, 1, &maxPoint, &minPoint);
    for (const sPoint& point : {maxPoint, minPoint}) {
        EXPECT_EQ(point.x, 1.0);
        EXPECT_EQ(point.y, -2.0);
        EXPECT_EQ(point.z, 3.0);
    }
}

TEST(MinMaxPoints, ThirdArgumentReceivesTheMaximum) {
    const std::vector<cResidueAtom> atoms{atomAt(1, -5, 2, 9.0), atomAt(-1, 4, 2.5),
                                          atomAt(7, 0, -3), atomAt(99, 99, 99)};
    sPoint third{1000.0, 1000.0, 1000.0};
    sPoint fourth{-1000.0, -1000.0, -1000.0};
    setMinMaxPoints(atoms.data(), 3, &third, &fourth);
    EXPECT_EQ(third.x, 7.0);
    EXPECT_EQ(third.y, 4.0);
    EXPECT_EQ(third.z, 2.5);
    EXPECT_EQ(fourth.x, -1.0);
    EXPECT_EQ(fourth.y, -5.0);
    EXPECT_EQ(fourth.z, -3.0);
}

} // namespace

} // namespace kelmo

// Accessible surface areas: the slices one by one, bodies whose area is known in closed form, and
// the fast calculation against the plain one, bit by bit.
#include "geometry/atom_grid.h"
#include "geometry/atom_space_calculations.h"
#include "geometry/surface_kernel.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/geometry/only_loops.h"
#include "tests/support/reference_surface.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <tbb/global_control.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <numbers>
#include <numeric>
#include <string>
#include <vector>

namespace kelmo {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double usualProbeRadius = 1.4;

using tAreas = std::vector<double>;

tAreas areasOf(const tAtoms& atoms) {
    tAreas areas;
    for (const cResidueAtom& atom : atoms) {
        areas.push_back(atom.asa);
    }
    return areas;
}

/// Every atom by itself from the neighbours that the grid finds.
tAreas plainAreas(tAtoms atoms, double probeRadius, double zSlice) {
    const sCorners box(atoms);
    const cAtomGrid grid(atoms.data(), static_cast<unsigned>(atoms.size()), box.maxPoint,
                         box.minPoint, -1);
    tAtoms neighbours(atoms.size());
    for (cResidueAtom& atom : atoms) {
        const unsigned count =
            grid.getNeighboursInRangeByRadius(atom, 2.0 * probeRadius, 2.0, neighbours.data());
        atom.setFreeSurface(neighbours.data(), count, zSlice, probeRadius);
    }
    return areasOf(atoms);
}

tAreas fastAreas(tAtoms atoms, double probeRadius, double zSlice) {
    setAreas(atoms, probeRadius, zSlice);
    return areasOf(atoms);
}

bool haveSameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// Every atom as if it stood in a crowd.
tAreas areasInACrowd(tAtoms atoms, double probeRadius, double zSlice) {
    const sCorners box(atoms);
    const auto count = static_cast<unsigned>(atoms.size());
    const cCentreGrid grid(atoms.data(), count, box.maxPoint, box.minPoint, count);
    const cSurfaceKernel kernel(grid, probeRadius, zSlice, 0);
    sSurfaceScratch scratch;
    for (const cCentreGrid::sEntry& entry : grid.entriesInCellOrder()) {
        if (probeRadius + entry.radius != 0.0) {
            atoms[entry.index].asa = kernel.areaOf(entry, scratch);
        }
    }
    return areasOf(atoms);
}

/// The areas, after making sure that all ways of computing them agree to the last bit.
tAreas areasEveryWay(const tAtoms& atoms, double probeRadius, double zSlice) {
    const tAreas plain = plainAreas(atoms, probeRadius, zSlice);
    const tAreas fast = fastAreas(atoms, probeRadius, zSlice);
    const tAreas crowded = areasInACrowd(atoms, probeRadius, zSlice);
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        EXPECT_TRUE(haveSameBits(fast[i], plain[i]) && haveSameBits(crowded[i], plain[i]))
            << "atom " << i << " of " << atoms.size() << ", probe " << probeRadius << ", slice "
            << zSlice << ": " << fast[i] << " or " << crowded[i] << " instead of " << plain[i];
        EXPECT_TRUE(plain[i] >= 0.0) << i;
    }
    return plain;
}

double sumOf(const tAreas& areas) {
    double sum = 0.0;
    for (const double area : areas) {
        sum += area;
    }
    return sum;
}

// Planes

int sliceCountOf(cResidueAtom atom, double zSlice, double probeRadius) {
    atom.sliceOnZ(zSlice, probeRadius);
    return atom.sliceCount;
}

TEST(SliceCount, PlanesLieAtTheCentreAndToBothSidesBelowThePoles) {
    const cResidueAtom atom = atomAt(5.0, 6.0, 0.0, 1.0);
    EXPECT_EQ(sliceCountOf(atom, 0.25, 0.0), 7) << "0 and three to each side, none at the poles";
    EXPECT_EQ(sliceCountOf(atom, 0.3, 0.0), 7);
    EXPECT_EQ(sliceCountOf(atom, 0.5, 1.0), 7) << "the probe enlarges the sphere";
    EXPECT_EQ(sliceCountOf(atom, 0.99, 0.0), 3);
    EXPECT_EQ(sliceCountOf(atom, 1.0, 0.0), 1);
    EXPECT_EQ(sliceCountOf(atom, 50.0, 0.0), 1);
}

TEST(SliceCount, HeightsAreSummedUpNotMultiplied) {
    // Ten times 0.1 added up is a rounding below 1, so that an eleventh step is made.
    EXPECT_EQ(sliceCountOf(atomAt(0.0, 0.0, 0.0, 1.0), 0.1, 0.0), 21);
    EXPECT_EQ(sliceCountOf(atomAt(0.0, 0.0, 1.0, 1.0), 0.1, 0.0), 19);
}

TEST(SliceCount, SphereWithoutHeightHasNone) {
    EXPECT_EQ(sliceCountOf(atomAt(0.0, 0.0, 3.0, 0.0), 0.25, 0.0), -1);
    EXPECT_EQ(sliceCountOf(atomAt(0.0, 0.0, 3.0, -1.4), 0.25, 1.4), -1);
    EXPECT_EQ(sliceCountOf(atomAt(0.0, 0.0, 3.0, -2.0), 0.25, 1.4), -1);
    EXPECT_EQ(sliceCountOf(atomAt(0.0, 0.0, 1e9, 1e-9), 0.25, 0.0), -1)
        << "too thin for this height";
}

TEST(SliceCount, TopIsTakenFromTheAtom) {
    cResidueAtom atom = atomAt(0.0, 0.0, 0.0, 1.0);
    atom.zMax = 2.0;
    EXPECT_EQ(sliceCountOf(atom, 0.5, 0.0), 7);
}

TEST(FreeSurface, SlicesAreCountedDown) {
    cResidueAtom atom = atomAt(0.0, 0.0, 0.0, 1.0);
    atom.setFreeSurface(nullptr, 0, 0.25, usualProbeRadius);
    EXPECT_EQ(atom.sliceCount, 0);
    cResidueAtom negative = atomAt(0.0, 0.0, 0.0, -2.0);
    negative.setFreeSurface(nullptr, 0, 0.25, usualProbeRadius);
    EXPECT_EQ(negative.sliceCount, -1);
}

// Slices one by one

TEST(FreeSurface, IsolatedAtomHasNone) {
    tAtoms atoms{atomAt(1.0, 2.0, 3.0)};
    atoms[0].asa = 55.0;
    EXPECT_EQ(areasEveryWay(atoms, usualProbeRadius, 0.25), tAreas{0.0});
    EXPECT_EQ(areasEveryWay({atomAt(0, 0, 0), atomAt(0, 0, 100)}, usualProbeRadius, 0.25),
              (tAreas{0.0, 0.0}));
}

TEST(FreeSurface, NoAtomsAreNoWork) {
    tAtoms atoms{atomAt(0, 0, 0), atomAt(1, 0, 0)};
    atoms[0].asa = 55.0;
    atoms[1].asa = 66.0;
    const sCorners box(atoms);
    calculateAtomASA(atoms.data(), 0, box.maxPoint, box.minPoint, usualProbeRadius, 0.25);
    EXPECT_EQ(areasOf(atoms), (tAreas{55.0, 66.0})) << "atoms beyond the count are not touched";
    EXPECT_NO_THROW(calculateAtomASA(nullptr, 0, sPoint{}, sPoint{}, usualProbeRadius, 0.25));
}

// Two spheres of 2 Å, 5.2 Å apart: they do not touch, but each turns those planes of the other that
// it meets into fully exposed slices. Those are 0, 0.5, 1 and 1.5; at -0.5 the farther one has its
// pole, which does not count.
TEST(FreeSurface, OnlyPlanesThatMeetANeighbourCount) {
    const tAtoms atoms{atomAt(0.0, 0.0, 0.0, 1.0), atomAt(5.0, 0.0, 1.5, 1.0)};
    const tAreas areas = areasEveryWay(atoms, 1.0, 0.5);
    const double slice = 6.283 * 2.0 * 0.5; // the angle times radius and thickness
    EXPECT_NEAR(areas[0], 4 * slice, 4e-4 + 1e-9);
    EXPECT_NEAR(areas[1], 4 * slice, 4e-4 + 1e-9);
    EXPECT_LE(areas[0], 4 * slice + 1e-9) << "every slice is cut, never rounded up";
}

TEST(FreeSurface, ThickSliceIsOnePlaneWithTheWholeSphere) {
    const tAtoms atoms{atomAt(0.0, 0.0, 0.0, 1.0), atomAt(5.0, 0.0, 0.0, 1.0)};
    const auto area = [&](double zSlice) { return areasEveryWay(atoms, 1.0, zSlice)[0]; };
    EXPECT_NEAR(area(10.0), 6.283 * 2.0 * (5.0 + 2.0), 1.1e-4)
        << "half a slice, and up to the pole";
    EXPECT_NEAR(area(4.0), 6.283 * 2.0 * (2.0 + 2.0), 1.1e-4);
    EXPECT_NEAR(area(3.0), 6.283 * 2.0 * (1.5 + 1.5), 1.1e-4);
    EXPECT_NEAR(area(2.0), 6.283 * 2.0 * (1.0 + 1.0), 1.1e-4);
}

// Planes at 0, 0.95 and 1.9; above the last one only 0.1 is left of the 0.475 of half a slice.
TEST(FreeSurface, LastSliceReachesToThePoleAndNoFurther) {
    const tAtoms atoms{atomAt(0.0, 0.0, 0.0, 1.0), atomAt(5.0, 0.0, 0.0, 1.0)};
    const double thickness = 3 * 0.95 + 2 * (0.475 + 0.1);
    EXPECT_NEAR(areasEveryWay(atoms, 1.0, 0.95)[0], 6.283 * 2.0 * thickness, 5.1e-4);
}

// The circle near a pole is left out below 0.001 Å; from there on it counts with its radius cut.
TEST(FreeSurface, CirclesBelowAThousandthAreLeftOut) {
    const tAtoms atoms{atomAt(0.0, 0.0, 0.0, 0.0), atomAt(3.0, 0.0, 0.0, 0.5)};
    EXPECT_NEAR(areasEveryWay(atoms, 1.0, 0.9999999)[0], 6.2829, 1e-9) << "radius 0.00045";
    EXPECT_NEAR(areasEveryWay(atoms, 1.0, 0.999999755)[0], 6.2829, 1e-9) << "radius 0.0007";
    EXPECT_NEAR(areasEveryWay(atoms, 1.0, 0.999999)[0], 6.2829 + 2 * 3.1415, 1e-9)
        << "radius 0.0014";
}

TEST(FreeSurface, AreaOfASliceIsCutToFourDecimals) {
    const tAtoms atoms{atomAt(0.0, 0.0, 0.0, 0.25), atomAt(5.0, 0.0, 0.0, 1.0)};
    const double area = areasEveryWay(atoms, 1.0, 7.0)[0];
    // 6.283 * 1.25 * (3.5 + 1.25) = 37.3053125
    EXPECT_EQ(area, 37.3053);
}

TEST(FreeSurface, EnclosedAtomHasNone) {
    const tAtoms atoms{atomAt(0.0, 0.0, 0.0, 1.0), atomAt(1.0, 0.0, 0.0, 3.0)};
    const tAreas areas = areasEveryWay(atoms, 0.0, 0.5);
    EXPECT_EQ(areas[0], 0.0);
    // Of the larger one, the planes at -0.5, 0 and 0.5 meet the smaller one, which covers nothing.
    EXPECT_NEAR(areas[1], 3 * 6.283 * 3.0 * 0.5, 4e-4);
    EXPECT_EQ(
        areasEveryWay({atomAt(0, 0, 0, 1.0), atomAt(0, 0, 0.5, 3.0)}, usualProbeRadius, 0.25)[0],
        0.0)
        << "one above the other";
    EXPECT_EQ(areasEveryWay({atomAt(0, 0, 0, 1.0), atomAt(1, 0, 0, 2.0)}, 0.0, 0.25)[0], 0.0)
        << "touching from inside";
}

TEST(FreeSurface, SecondNeighbourAtTheSamePlaceChangesNothing) {
    tAtoms atoms{atomAt(0.0, 0.0, 0.0, 1.5), atomAt(2.0, 1.0, 0.5, 1.7)};
    const double area = areasEveryWay(atoms, usualProbeRadius, 0.25)[0];
    EXPECT_GT(area, 10.0);
    atoms.push_back(atoms[1]);
    EXPECT_EQ(areasEveryWay(atoms, usualProbeRadius, 0.25)[0], area);
}

TEST(FreeSurface, AtomsAtOnePlaceDoNotCoverEachOther) {
    const tAtoms pair(2, atomAt(1.0, 1.0, 1.0));
    EXPECT_EQ(areasEveryWay(pair, usualProbeRadius, 0.25), (tAreas{0.0, 0.0}))
        << "no neighbours at all";
    const tAtoms withThird{pair[0], pair[1], atomAt(3.0, 1.0, 1.0)};
    const tAreas areas = areasEveryWay(withThird, usualProbeRadius, 0.25);
    EXPECT_EQ(areas[0], areasEveryWay({pair[0], withThird[2]}, usualProbeRadius, 0.25)[0]);
    EXPECT_EQ(areas[0], areas[1]);
}

TEST(FreeSurface, SphereOfNoRadiusKeepsItsArea) {
    tAtoms atoms{atomAt(0.0, 0.0, 0.0, -1.4), atomAt(2.0, 0.0, 0.0, 1.5)};
    atoms[0].asa = 7.5;
    atoms[1].asa = 7.5;
    const tAreas areas = areasEveryWay(atoms, 1.4, 0.25);
    EXPECT_EQ(areas[0], 7.5);
    EXPECT_NE(areas[1], 7.5);
    tAtoms points{atomAt(0.0, 0.0, 0.0, 0.0), atomAt(1.0, 0.0, 0.0, 0.0)};
    points[0].asa = points[1].asa = 3.25;
    EXPECT_EQ(areasEveryWay(points, 0.0, 0.25), (tAreas{3.25, 3.25}));
}

TEST(FreeSurface, SphereOfNegativeRadiusHasNoArea) {
    tAtoms atoms{atomAt(0.0, 0.0, 0.0, -2.0), atomAt(2.0, 0.0, 0.0, 1.5)};
    atoms[0].asa = 7.5;
    EXPECT_EQ(areasEveryWay(atoms, 1.4, 0.25)[0], 0.0);
}

// A negative area cannot come from a sphere; an atom whose top contradicts its radius makes one.
TEST(FreeSurface, NegativeAreaIsReportedWithTheSerial) {
    cResidueAtom atom("CA", "4711", 0.0, 0.0, 0.0, -1.0);
    atom.zMax = 1.0;
    const tAtoms neighbours{atomAt(10.0, 0.0, 0.0, 3.0)};
    testing::internal::CaptureStdout();
    atom.setFreeSurface(neighbours.data(), 1, 1.0, 0.0);
    EXPECT_LT(atom.asa, 0.0);
    char expected[64];
    std::snprintf(expected, sizeof expected, "4711\t%.6g\n", atom.asa);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
}

TEST(FreeSurface, AreasOfSpheresAreReportedByNobody) {
    testing::internal::CaptureStdout();
    areasEveryWay(randomCloud(1, 100, 10.0), usualProbeRadius, 0.25);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// Who is a neighbour

// Radii of 1.5 and a probe of 1.5: neighbours up to 9 Å, twice as far as probes can touch both.
TEST(SurfaceNeighbours, CountUpToFourProbesBetweenTheSpheres) {
    const auto area = [](double x) {
        return areasEveryWay({atomAt(0.0, 0.0, 0.0, 1.5), atomAt(x, 4.0, 4.0, 1.5)}, 1.5, 1.0)[0];
    };
    EXPECT_NEAR(area(7.0), 6.283 * 3.0, 1.1e-4) << "exactly 9 Å: the plane at 2 Å meets it";
    EXPECT_EQ(area(7.0 + 1e-9), 0.0);
}

// The cells that are searched reach 2 * 1.4 + 2 * 2.0 + 1 = 7.8 Å, which is less than the range of
// large atoms; so at 8 Å only the one with the larger coordinate sees the other.
TEST(SurfaceNeighbours, AreSoughtWithinTheBoxOfCells) {
    const tAreas areas = areasEveryWay({atomAt(0.0, 0.0, 0.0, 2.0), atomAt(8.0, 0.0, 0.0, 2.0)},
                                       usualProbeRadius, 0.25);
    EXPECT_EQ(areas[0], 0.0);
    EXPECT_GT(areas[1], 100.0);
}

TEST(SurfaceNeighbours, LargeSpheresBeyondTheBoxOfCellsDoNotCover) {
    EXPECT_EQ(areasEveryWay({atomAt(0, 0, 0, 10.0), atomAt(15, 0, 0, 10.0)}, 0.0, 0.25),
              (tAreas{0.0, 0.0}));
}

TEST(SurfaceNeighbours, OrderOfTheAtomsDoesNotMatter) {
    tAtoms atoms = randomCloud(2, 300, 14.0);
    tAreas areas = fastAreas(atoms, usualProbeRadius, 0.25);
    std::reverse(atoms.begin(), atoms.end());
    std::reverse(areas.begin(), areas.end());
    EXPECT_EQ(fastAreas(atoms, usualProbeRadius, 0.25), areas);
}

// Bodies of known area. A slice that meets no circle counts for nothing, so every sphere gets a
// companion at its height that is a neighbour but touches nothing.

struct sBall {
    double x, y, z;
    double enlarged; ///< radius with probe, Å
};

constexpr double companionRadius = 1.9;

// The classic form counts a slice only when some neighbour's circle lies in its plane, near enough
// to be looked at, so that a sphere alone has no area at all. Every ball therefore gets a companion
// of this radius beside it, in all of whose planes it has a circle without covering any of it: what
// is compared with the closed forms is the area of balls that have company. The complete form needs
// none; its closed forms stand in complete_surface_test.cpp.

/// A place at the height of one ball, 7 Å away, where a companion touches none of the balls.
cResidueAtom companionOf(const sBall& ball, const std::vector<sBall>& balls) {
    for (int degrees = 0; degrees < 360; degrees += 5) {
        const double angle = degrees * pi / 180.0;
        const cResidueAtom companion =
            atomAt(ball.x + 7.0 * std::cos(angle), ball.y + 7.0 * std::sin(angle), ball.z,
                   companionRadius);
        if (std::all_of(balls.begin(), balls.end(), [&](const sBall& other) {
                return centreDistance(companion, atomAt(other.x, other.y, other.z)) >
                       companionRadius + usualProbeRadius + other.enlarged;
            })) {
            return companion;
        }
    }
    ADD_FAILURE() << "no room for a companion";
    return {};
}

/// The exposed area of every ball. Slices are fine, but not so fine that their cut decimals add up.
/// The radii end just above a plane, because the last slice reaches up by half a slice at most: a
/// radius of a whole number of slices would lack the other half at either pole.
tAreas exposedAreas(const std::vector<sBall>& balls) {
    tAtoms atoms;
    for (const sBall& ball : balls) {
        atoms.push_back(atomAt(ball.x, ball.y, ball.z, ball.enlarged - usualProbeRadius));
    }
    for (const sBall& ball : balls) {
        atoms.push_back(companionOf(ball, balls));
    }
    tAreas areas = areasEveryWay(atoms, usualProbeRadius, 0.02);
    areas.resize(balls.size());
    return areas;
}

double sphereArea(double enlarged) {
    return 4.0 * pi * enlarged * enlarged;
}

/// What a crossing sphere of radius `other` at distance d cuts off a sphere.
double capArea(double enlarged, double other, double d) {
    const double height = enlarged - (d * d + enlarged * enlarged - other * other) / (2.0 * d);
    return 2.0 * pi * enlarged * height;
}

void expectArea(double area, double expected) {
    EXPECT_NEAR(area, expected, 0.005 * expected);
}

TEST(KnownBodies, UntouchedSphereIsWhollyExposed) {
    for (const double enlarged : {1.503, 2.603, 3.003, 3.263}) {
        expectArea(exposedAreas({{0.3, 0.2, 0.1, enlarged}})[0], sphereArea(enlarged));
    }
}

TEST(KnownBodies, TwoCrossingSpheresLoseTheirCaps) {
    const std::vector<sBall> directions{{1, 0, 0, 0},
                                        {0, 1, 0, 0},
                                        {0, 0, 1, 0},
                                        {0.6, 0, 0.8, 0},
                                        {2.0 / 3, 1.0 / 3, -2.0 / 3, 0}};
    for (const sBall& direction : directions) {
        for (const double d : {1.5, 2.5, 4.0, 5.2}) {
            for (const auto& [first, second] :
                 {std::pair{3.003, 3.003}, {3.003, 2.603}, {2.403, 3.203}}) {
                const tAreas areas = exposedAreas(
                    {{0.1, 0.0, 0.2, first},
                     {0.1 + d * direction.x, d * direction.y, 0.2 + d * direction.z, second}});
                expectArea(areas[0], sphereArea(first) - capArea(first, second, d));
                expectArea(areas[1], sphereArea(second) - capArea(second, first, d));
            }
        }
    }
}

TEST(KnownBodies, MiddleOfThreeInARowLosesTwoCaps) {
    for (const sBall& direction : {sBall{1, 0, 0, 0}, sBall{0, 0, 1, 0}, sBall{0.6, 0, -0.8, 0}}) {
        constexpr double d = 4.5;
        constexpr std::array enlarged{2.503, 3.003, 2.803}; // the outer two are 9 Å apart
        std::vector<sBall> balls;
        for (std::size_t i = 0; i < 3; ++i) {
            const double along = d * static_cast<double>(i);
            balls.push_back(
                {along * direction.x, along * direction.y, along * direction.z, enlarged[i]});
        }
        const tAreas areas = exposedAreas(balls);
        expectArea(areas[0], sphereArea(2.503) - capArea(2.503, 3.003, d));
        expectArea(areas[1],
                   sphereArea(3.003) - capArea(3.003, 2.503, d) - capArea(3.003, 2.803, d));
        expectArea(areas[2], sphereArea(2.803) - capArea(2.803, 3.003, d));
    }
}

/// The exposed area of one of several balls as the share of its surface points outside all others,
/// on an even grid of longitude and height about the x axis.
double areaByPoints(const std::vector<sBall>& balls, std::size_t which) {
    constexpr int heights = 800;
    constexpr int longitudes = 1600;
    const sBall& ball = balls[which];
    int exposed = 0;
    for (int i = 0; i < heights; ++i) {
        const double height = (2.0 * i + 1.0) / heights - 1.0;
        const double across = ball.enlarged * std::sqrt(1.0 - height * height);
        const double x = ball.x + ball.enlarged * height;
        for (int j = 0; j < longitudes; ++j) {
            const double longitude = 2.0 * pi * (j + 0.5) / longitudes;
            const double y = ball.y + across * std::cos(longitude);
            const double z = ball.z + across * std::sin(longitude);
            bool isExposed = true;
            for (std::size_t k = 0; k < balls.size(); ++k) {
                const double dx = x - balls[k].x;
                const double dy = y - balls[k].y;
                const double dz = z - balls[k].z;
                isExposed &= k == which ||
                             dx * dx + dy * dy + dz * dz >= balls[k].enlarged * balls[k].enlarged;
            }
            exposed += isExposed ? 1 : 0;
        }
    }
    return sphereArea(ball.enlarged) * exposed / (static_cast<double>(heights) * longitudes);
}

TEST(KnownBodies, PointsOnTheSphereGiveTheAreaOfACap) {
    const std::vector<sBall> pair{{0, 0, 0, 3.0}, {1.5, 1.0, 2.0, 2.8}};
    const double d = std::sqrt(1.5 * 1.5 + 1.0 + 4.0);
    EXPECT_NEAR(areaByPoints(pair, 0), sphereArea(3.0) - capArea(3.0, 2.8, d), 0.05);
}

TEST(KnownBodies, ThreeMutuallyCrossingSpheresCoverPartsTwice) {
    const std::vector<std::vector<sBall>> triples{
        {{0, 0, 0, 3.003}, {2.2, 0.5, 0.4, 2.903}, {0.9, 2.1, -0.8, 3.103}},
        {{0, 0, 0, 3.003}, {0.4, 0.2, 3.0, 3.003}, {0.5, 2.5, 1.4, 2.703}},
        {{0, 0, 0, 2.603}, {1.0, 1.0, 1.0, 3.303}, {-1.2, 1.0, -1.1, 2.903}}};
    for (const std::vector<sBall>& balls : triples) {
        const tAreas areas = exposedAreas(balls);
        for (std::size_t i = 0; i < 3; ++i) {
            expectArea(areas[i], areaByPoints(balls, i));
        }
    }
}

// Moving and turning

tAtoms moved(const tAtoms& atoms, double dx, double dy, double dz) {
    const auto thousandths = [](double value) { return std::round(value * 1000.0) / 1000.0; };
    tAtoms result;
    for (const cResidueAtom& atom : atoms) {
        result.emplace_back(atom.atomName, atom.serial, thousandths(atom.x + dx),
                            thousandths(atom.y + dy), thousandths(atom.z + dz), atom.radius);
    }
    return result;
}

std::string shown(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    return text;
}

// In binary, moved coordinates are not exactly as far from each other as before. In principle that
// could move a last digit of a slice; in none of the entries does it, so their reports stay the
// same.
TEST(SurfaceOfSamples, MovingByWholeAngstromsChangesNoDigitOfAReport) {
    for (const std::string& name : sampleCodes()) {
        const tAtoms atoms = samplePeptide(name).atoms;
        const tAreas areas = fastAreas(atoms, usualProbeRadius, 0.25);
        for (const sPoint& by :
             {sPoint{1, 1, 1}, sPoint{10, -20, 30}, sPoint{0, 0, 7}, sPoint{-500, 300, -200}}) {
            const tAreas after = fastAreas(moved(atoms, by.x, by.y, by.z), usualProbeRadius, 0.25);
            std::size_t changed = 0;
            for (std::size_t i = 0; i < areas.size(); ++i) {
                changed += shown(areas[i], 6) != shown(after[i], 6) ||
                                   shown(areas[i], 5) != shown(after[i], 5)
                               ? 1U
                               : 0U;
            }
            EXPECT_EQ(changed, 0U) << name;
            EXPECT_EQ(shown(sumOf(areas), 6), shown(sumOf(after), 6)) << name;
        }
    }
}

tAtoms turned(const tAtoms& atoms, sPoint (*turn)(const cResidueAtom&)) {
    tAtoms result;
    for (const cResidueAtom& atom : atoms) {
        const sPoint place = turn(atom);
        result.emplace_back(atom.atomName, atom.serial, place.x, place.y, place.z, atom.radius);
    }
    return result;
}

// Turning about z leaves the planes as they are; only directions within them are rounded anew.
TEST(SurfaceOfSamples, QuarterTurnAboutTheSliceAxisKeepsEveryArea) {
    for (const std::string& name : sampleCodes()) {
        const tAtoms atoms = samplePeptide(name).atoms;
        const tAreas areas = fastAreas(atoms, usualProbeRadius, 0.25);
        const tAreas after = fastAreas(turned(atoms,
                                              [](const cResidueAtom& a) {
                                                  return sPoint{-a.y, a.x, a.z};
                                              }),
                                       usualProbeRadius, 0.25);
        EXPECT_NEAR(sumOf(after), sumOf(areas), 1e-4 * sumOf(areas)) << name;
        for (std::size_t i = 0; i < areas.size(); ++i) {
            EXPECT_NEAR(after[i], areas[i], 0.05) << name << " atom " << i;
        }
    }
}

TEST(SurfaceOfSamples, SlicingAlongAnotherAxisGivesNearlyTheSameTotal) {
    for (const std::string& name : sampleCodes()) {
        const tAtoms atoms = samplePeptide(name).atoms;
        const double total = sumOf(fastAreas(atoms, usualProbeRadius, 0.05));
        const double alongX = sumOf(fastAreas(turned(atoms,
                                                     [](const cResidueAtom& a) {
                                                         return sPoint{a.z, a.y, -a.x};
                                                     }),
                                              usualProbeRadius, 0.05));
        EXPECT_NEAR(alongX, total, 0.005 * total) << name;
    }
}

// The fast calculation against the plain one

TEST(FastSurface, AgreesOnTheSamples) {
    for (const std::string& name : sampleCodes()) {
        const tAtoms atoms = samplePeptide(name).atoms;
        for (const double probeRadius : {0.0, 1.4, 2.0}) {
            EXPECT_GT(sumOf(areasEveryWay(atoms, probeRadius, 0.25)), 1000.0);
        }
    }
}

TEST(FastSurface, AgreesOnASampleForEveryThicknessOfSlices) {
    const tAtoms atoms = samplePeptide("1ubq").atoms;
    for (const double probeRadius : {0.0, 1.4, 2.0}) {
        for (const double zSlice : {0.05, 0.1, 0.25, 1.0}) {
            EXPECT_GT(sumOf(areasEveryWay(atoms, probeRadius, zSlice)), 1000.0);
        }
    }
}

TEST(FastSurface, AgreesOnRandomCloudsOfManyDensitiesAndRadii) {
    const std::vector<std::vector<double>> radii{
        {1.4, 1.6, 1.75, 1.87}, {0.0},       {1e-9},        {3.5},       {10.0}, {-0.5, 1.5},
        {0.0, 1.25, 2},         {-1.4, 1.4}, {1.0, 1.1, 2}, {-3.0, 10.0}};
    for (unsigned seed = 0; seed < 300; ++seed) {
        cRandom random(seed);
        const double probeRadius = std::array{0.0, 1.4, 2.0}[random.below(3)];
        const double zSlice = std::array{0.05, 0.1, 0.25, 1.0}[random.below(4)];
        const double edge = std::array{4.0, 8.0, 12.0, 20.0, 40.0}[random.below(5)];
        tAtoms atoms = randomCloud(seed, 5 + random.below(100), edge,
                                   radii[seed % static_cast<unsigned>(radii.size())]);
        for (cResidueAtom& atom : atoms) {
            atom.asa = 0.125; // kept by spheres without radius
        }
        areasEveryWay(atoms, probeRadius, zSlice);
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

// Whole coordinates: spheres and circles touch exactly, atoms stand exactly above each other.
TEST(FastSurface, AgreesOnLattices) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        cRandom random(seed);
        const unsigned edge = 2 + random.below(8);
        const double step = std::array{1.0, 0.5, 1.5, 0.1}[random.below(4)];
        tAtoms atoms;
        for (unsigned i = 0; i < 5 + random.below(80); ++i) {
            atoms.emplace_back("C", "1", step * random.below(edge), step * random.below(edge),
                               step * random.below(edge),
                               std::array{1.0, 2.0, 3.0, 1.5, 0.5}[random.below(5)]);
        }
        areasEveryWay(atoms, std::array{0.0, 1.0, 2.0, 1.4}[random.below(4)],
                      std::array{1.0, 0.5, 0.25, 0.1}[random.below(4)]);
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

TEST(FastSurface, AgreesOnPlanesLinesAndColumns) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        for (const sPoint& edges : {sPoint{15, 15, 0}, sPoint{0, 15, 15}, sPoint{30, 0, 0},
                                    sPoint{0, 0, 30}, sPoint{0.02, 0.02, 30}, sPoint{1e5, 4, 4}}) {
            areasEveryWay(randomCloud(seed, 40, edges, {1.4, 1.5, 1.75, 2.0}), usualProbeRadius,
                          0.25);
        }
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

TEST(FastSurface, AgreesWhereAtomsShareTheirPlaces) {
    for (unsigned seed = 0; seed < 50; ++seed) {
        tAtoms atoms = randomCloud(seed, 60, 8.0);
        const tAtoms once = atoms;
        atoms.insert(atoms.end(), once.begin(), once.begin() + 30);
        atoms.insert(atoms.end(), once.begin(), once.begin() + 5);
        areasEveryWay(atoms, usualProbeRadius, 0.25);
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

/// An atom and neighbours whose circles all but touch its circle in one of its planes, from outside
/// or from inside, give or take 10^-4 to 10^-13 Å.
tAtoms nearlyTouching(unsigned seed, double zSlice) {
    cRandom random(seed);
    const double enlarged = random.coordinate(0.5, 5.0);
    tAtoms atoms{atomAt(0.0, 0.0, 0.0, enlarged)};
    const unsigned neighbours = 1 + random.below(3);
    for (unsigned i = 0; i < neighbours; ++i) {
        const int steps = static_cast<int>(enlarged / zSlice);
        const double z =
            zSlice * (static_cast<int>(random.below(2U * unsigned(steps) + 1U)) - steps);
        const double exact = std::sqrt(std::max(0.0, enlarged * enlarged - z * z));
        const double circle = std::trunc(exact * 1000.0) / 1000.0;
        if (circle < 0.06) {
            continue;
        }
        const double otherEnlarged = random.coordinate(0.5, 5.0);
        const double height = random.between(-1.0, 1.0) * otherEnlarged;
        const double other = std::sqrt(otherEnlarged * otherEnlarged - height * height);
        const double miss = std::pow(10.0, -4.0 - random.below(10)) * (random.below(3) - 1.0);
        const std::array distances{circle + other + miss, std::abs(circle - other) + miss,
                                   random.between(0.02, circle + other)};
        const double d = distances[random.below(3)];
        const double angle = random.below(2) == 0 ? 0.0 : random.between(0.0, 2.0 * pi);
        atoms.push_back(
            atomAt(d * std::cos(angle), d * std::sin(angle), z + height, otherEnlarged));
    }
    return atoms;
}

TEST(FastSurface, AgreesWhereCirclesAllButTouch) {
    for (unsigned seed = 0; seed < 20000; ++seed) {
        const double zSlice = std::array{0.05, 0.1, 0.25, 0.5, 1.0}[seed % 5];
        areasEveryWay(nearlyTouching(seed, zSlice), 0.0, zSlice);
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

// In the plane at 4 Å the neighbour leaves less than the last decimal of the circle free; further
// down it leaves much more. What held in one plane must not be taken for granted in the next.
TEST(FastSurface, NeighbourThatAllButEnclosesOnePlaneLeavesTheOthersFree) {
    const tAtoms atoms{atomAt(0.0, 0.0, 0.0, 5.0), atomAt(1.0 + 1e-9, 0.0, 1.0, 5.0)};
    EXPECT_NEAR(areasEveryWay(atoms, 0.0, 1.0)[0], 131.53, 0.01);
}

// The neighbour has its lower pole in the plane at 0.5 Å, on the very rim of the circle there. It
// does not meet the plane, nor does anything else.
TEST(FastSurface, PoleOnTheRimOfACircleIsNoCircle) {
    unsigned onTheRim = 0;
    for (int thousandths = 1000; thousandths < 3000; ++thousandths) {
        const double enlarged = thousandths / 1000.0;
        const double rim =
            static_cast<std::int32_t>(std::sqrt(enlarged * enlarged - 0.25) * 1000.0) / 1000.0;
        for (const double other : {0.75, 1.0, 1.5, 2.0}) {
            const tAtoms atoms{atomAt(0.0, 0.0, 0.0, enlarged),
                               atomAt(rim, 0.0, 0.5 + other, other)};
            ++onTheRim;
            areasEveryWay(atoms, 0.0, 0.5);
        }
        if (HasFailure()) {
            FAIL() << "radius " << enlarged;
        }
    }
    EXPECT_EQ(onTheRim, 8000U);
}

// Rounding makes the cosine of the half-angle exactly -1 although the circles still count as
// crossing. The arc then begins where it ends and covers nothing, and so it must in both
// calculations.
TEST(FastSurface, ArcOfAWholeTurnBeginsWhereItEnds) {
    const std::vector<tAtoms> examples{
        {atomAt(0.0, 0.0, 0.0, 1.676),
         atomAt(-0.11862583415672899, -3.6237189390978686, -2.7781406479384749, 3.394),
         atomAt(-0.22410041458295335, 2.3425047554142688, 1.071559143117629, 4.238),
         atomAt(0.34877878097669035, 0.09054630275642446, -4.9112022415851246, 4.033)},
        {atomAt(0.0, 0.0, 0.0, 2.715),
         atomAt(-3.0676295696306224, -0.31226296014974769, -3.7532839163285683, 3.773),
         atomAt(0.019426278442579936, 1.04807738560313, -0.62139015495078631, 3.923),
         atomAt(5.6190325659870668, 0.0, 1.4072836175821721, 3.921)}};
    for (const tAtoms& atoms : examples) {
        EXPECT_GT(areasEveryWay(atoms, 0.0, 1.0)[0], 1.0);
    }
}

// Free angles that end on a third decimal, give or take a rounding: which side they fall on must
// not depend on how they are computed.
TEST(FastSurface, AgreesWhereTheFreeAngleEndsOnItsLastDecimal) {
    constexpr double circle = 2.0;
    // A third circle that all but touches the first takes an arc of some 0.00002 rad.
    constexpr double touching = 1.5;
    constexpr double touchingDistance = circle + touching - 1e-10;
    const double narrow =
        std::acos((circle * circle + touchingDistance * touchingDistance - touching * touching) /
                  (2.0 * circle * touchingDistance));
    for (int thousandths = 1; thousandths < 6283; ++thousandths) {
        const double angle = 0.001 * thousandths;
        const double x = std::cos(angle);
        const double y = std::sin(angle);
        for (const bool withThird : {false, true}) {
            const double half = pi - 0.5 * thousandths / 1000.0 - (withThird ? narrow : 0.0);
            const double d = thousandths % 2 == 0 ? 0.7 : 2.5;
            const double other =
                std::sqrt(circle * circle + d * d - 2.0 * circle * d * std::cos(half));
            tAtoms atoms{atomAt(0.0, 0.0, 0.0, circle), atomAt(d * x, d * y, 0.0, other)};
            if (withThird) {
                atoms.push_back(
                    atomAt(-touchingDistance * x, -touchingDistance * y, 0.0, touching));
            }
            areasEveryWay(atoms, 0.0, 100.0); // one plane, through all centres
        }
        if (HasFailure()) {
            FAIL() << thousandths;
        }
    }
}

// Without a probe, spheres a hair apart are no neighbours, so neither makes a slice of the other
// count.
TEST(FastSurface, SpheresAHairApartAreNoNeighboursWithoutAProbe) {
    for (const double gap : {1e-12, 1e-9, 5e-7, 9e-7}) {
        EXPECT_EQ(areasEveryWay({atomAt(0, 0, 0, 1.0), atomAt(2.0 + gap, 0, 0, 1.0)}, 0.0, 0.25)[0],
                  0.0)
            << gap;
        areasEveryWay({atomAt(0, 0, 0, 1.0), atomAt(2.0 + gap, 0, 0, 1.0)}, 1e-7, 0.25);
        areasEveryWay({atomAt(0, 0, 0, 1.0), atomAt(2.0 + gap, 0, 0, 1.0)}, -0.1, 0.25);
    }
    EXPECT_GT(areasEveryWay({atomAt(0, 0, 0, 1.0), atomAt(2.0, 0, 0, 1.0)}, 0.0, 0.25)[0], 1.0)
        << "touching, they are";
}

/// Neighbours whose axis all but coincides with the atom's.
TEST(FastSurface, AgreesNearTheAxis) {
    for (unsigned seed = 0; seed < 3000; ++seed) {
        cRandom random(seed);
        const double enlarged = random.coordinate(0.5, 5.0);
        tAtoms atoms{atomAt(0.0, 0.0, 0.0, enlarged)};
        for (unsigned i = 0; i < 1 + random.below(4); ++i) {
            const double d = random.between(0.005, 0.05);
            const double angle = random.between(0.0, 2.0 * pi);
            const double other = std::array{enlarged, 2.0 * enlarged, 10.0, 100.0}[random.below(4)];
            const double apartBy = other - enlarged + random.between(-1.0, 1.0) * enlarged;
            atoms.push_back(atomAt(d * std::cos(angle), d * std::sin(angle),
                                   random.below(2) == 0 ? apartBy : -apartBy, other));
        }
        areasEveryWay(atoms, 0.0, std::array{0.1, 0.25, 1.0}[seed % 3]);
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

// A plane just below a pole: rounding leaves the square of the circle's radius at 0 or below. Such
// a neighbour does not meet the plane: it makes no slice count and no area stop being a number.
TEST(FreeSurface, SquareOfARadiusThatRoundsToNothingIsNoCircle) {
    cRandom random(5);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    unsigned found = 0;
    unsigned negative = 0;
    for (int i = 0; i < 20000; ++i) {
        const double radius = random.coordinate(0.5, 2.0);
        const cResidueAtom neighbour =
            atomAt(0.5, 0.25, random.coordinate(-50.0, 50.0), random.coordinate(0.5, 2.0));
        const bool isAbove = i % 2 == 0;
        const double height = isAbove ? std::nextafter(usualProbeRadius + neighbour.zMax, -infinity)
                                      : std::nextafter(neighbour.zMin - usualProbeRadius, infinity);
        const double sphere = usualProbeRadius + neighbour.radius;
        const double square = sphere * sphere - (height - neighbour.z) * (height - neighbour.z);
        if (square > 0.0) {
            continue;
        }
        ++found;
        negative += square < 0.0 ? 1U : 0U;
        const cResidueAtom atom = atomAt(0.0, 0.0, height, radius);
        const cResidueAtom companion = atomAt(0.0, -7.0, height, 1.5);
        if (found > 300) {
            continue;
        }
        // Slices of 100 Å: one plane, through the centre.
        EXPECT_EQ(areasEveryWay({atom, neighbour}, usualProbeRadius, 100.0)[0], 0.0);
        const double enlarged = usualProbeRadius + radius;
        EXPECT_NEAR(areasEveryWay({atom, neighbour, companion}, usualProbeRadius, 100.0)[0],
                    6.283 * enlarged * (50.0 + enlarged), 2e-4);
    }
    EXPECT_GT(found, 300U);
    EXPECT_GT(negative, 10U);
}

// Exactly at a pole it is the heights that decide, though rounding may leave a square above 0.
TEST(FreeSurface, PlaneExactlyAtAPoleIsNotMet) {
    cRandom random(6);
    unsigned found = 0;
    for (int i = 0; i < 20000; ++i) {
        const cResidueAtom neighbour =
            atomAt(0.5, 0.25, random.coordinate(-50.0, 50.0), random.coordinate(0.5, 2.0));
        const double height =
            i % 2 == 0 ? usualProbeRadius + neighbour.zMax : neighbour.zMin - usualProbeRadius;
        const double sphere = usualProbeRadius + neighbour.radius;
        const double square = sphere * sphere - (height - neighbour.z) * (height - neighbour.z);
        if (square > 0.0 && found < 300) {
            ++found;
            const cResidueAtom atom = atomAt(0.0, 0.0, height, 1.5);
            EXPECT_EQ(areasEveryWay({atom, neighbour}, usualProbeRadius, 100.0)[0], 0.0);
        }
    }
    EXPECT_EQ(found, 300U);
}

// Crowds

/// Some atoms one by one in the plain form, the others not at all.
void expectPlainAreasOfSome(const tAtoms& atoms, double probeRadius, double zSlice,
                            const std::string& what) {
    constexpr unsigned some = 16;
    const tAreas fast = fastAreas(atoms, probeRadius, zSlice);
    const sCorners box(atoms);
    const auto count = static_cast<unsigned>(atoms.size());
    const cAtomGrid grid(atoms.data(), count, box.maxPoint, box.minPoint, -1);
    // The atoms with the largest areas, and others spread over the list.
    std::vector<std::size_t> chosen(atoms.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
    std::stable_sort(chosen.begin(), chosen.end(),
                     [&](std::size_t a, std::size_t b) { return fast[a] > fast[b]; });
    chosen.resize(some / 2);
    for (unsigned i = 0; i < some / 2; ++i) {
        chosen.push_back(i * atoms.size() / (some / 2));
    }
    tAtoms neighbours(atoms.size());
    for (const std::size_t i : chosen) {
        cResidueAtom atom = atoms[i];
        const unsigned found =
            grid.getNeighboursInRangeByRadius(atom, 2.0 * probeRadius, 2.0, neighbours.data());
        atom.setFreeSurface(neighbours.data(), found, zSlice, probeRadius);
        EXPECT_TRUE(haveSameBits(fast[i], atom.asa))
            << what << ", atom " << i << ": " << fast[i] << " instead of " << atom.asa;
    }
    EXPECT_GT(*std::max_element(fast.begin(), fast.end()), 0.0) << what;
}

void scale(tAtoms& atoms, double factor) {
    for (cResidueAtom& atom : atoms) {
        atom = atomAt(std::round(1000.0 * factor * atom.x) / 1000.0,
                      std::round(1000.0 * factor * atom.y) / 1000.0,
                      std::round(1000.0 * factor * atom.z) / 1000.0, atom.radius);
    }
}

tAtoms shell(unsigned seed, unsigned count, double radius) {
    cRandom random(seed);
    tAtoms atoms;
    for (unsigned i = 0; i < count; ++i) {
        const double z = random.between(-1.0, 1.0);
        const double longitude = random.between(0.0, 2.0 * pi);
        const double across = radius * std::sqrt(1.0 - z * z);
        atoms.push_back(atomAt(across * std::cos(longitude), across * std::sin(longitude),
                               radius * z, std::array{1.4, 1.6, 1.75, 1.87}[random.below(4)]));
    }
    return atoms;
}

TEST(CrowdedSurface, AgreesInBoxesPlanesAndLines) {
    constexpr unsigned atoms = 2 * cSurfaceKernel::usualCrowd;
    const std::vector<double> radii{1.42, 1.64, 1.76, 1.88};
    unsigned seed = 0;
    for (const sPoint& edges : {sPoint{3, 3, 3}, sPoint{0.2, 0.2, 0.2}, sPoint{4, 4, 0},
                                sPoint{4, 0, 0}, sPoint{0, 0, 4}, sPoint{7, 3, 3}}) {
        expectPlainAreasOfSome(randomCloud(++seed, atoms, edges, radii), usualProbeRadius, 0.5,
                               "edges " + std::to_string(edges.x) + " " + std::to_string(edges.y) +
                                   " " + std::to_string(edges.z));
    }
}

TEST(CrowdedSurface, AgreesWithRadiiOfEverySize) {
    constexpr unsigned atoms = 2 * cSurfaceKernel::usualCrowd;
    for (const std::vector<double>& radii :
         {std::vector<double>{0.0, 0.5, 5.0}, {1.5}, {-1.0, 1.5}, {1.0, 1.001}}) {
        for (const double probeRadius : {0.0, 1e-7, 0.3, 3.0}) {
            expectPlainAreasOfSome(randomCloud(5, atoms, 3.0, radii), probeRadius, 0.5,
                                   "probe " + std::to_string(probeRadius));
        }
    }
}

TEST(CrowdedSurface, AgreesOnShells) {
    for (const double radius : {0.5, 2.0, 4.0}) {
        expectPlainAreasOfSome(shell(1, 2 * cSurfaceKernel::usualCrowd, radius), usualProbeRadius,
                               0.25, "shell of " + std::to_string(radius));
    }
}

TEST(CrowdedSurface, AgreesOnAProteinInNanometres) {
    tAtoms atoms = samplePeptide("2hhb").atoms;
    scale(atoms, 0.1);
    expectPlainAreasOfSome(atoms, usualProbeRadius, 0.25, "2hhb");
}

TEST(CrowdedSurface, AgreesInACrowdWithinAProteinAndWithOneAtomFarAway) {
    tAtoms atoms = samplePeptide("1a0q").atoms;
    for (const cResidueAtom& atom : randomCloud(9, 2 * cSurfaceKernel::usualCrowd, 1.0)) {
        atoms.push_back(atomAt(atoms[100].x + atom.x, atoms[100].y + atom.y, atoms[100].z + atom.z,
                               atom.radius));
    }
    expectPlainAreasOfSome(atoms, usualProbeRadius, 0.5, "crowd within");
    atoms.push_back(atomAt(9999.0, 9999.0, 9999.0, 1.8));
    expectPlainAreasOfSome(atoms, usualProbeRadius, 0.5, "one far away");
}

TEST(CrowdedSurface, AgreesWhereManyShareTheirPlaces) {
    tAtoms atoms;
    for (int copy = 0; copy < 20; ++copy) {
        for (const cResidueAtom& atom : randomCloud(4, 150, 3.0)) {
            atoms.push_back(atom);
        }
    }
    expectPlainAreasOfSome(atoms, usualProbeRadius, 0.5, "places shared");
}

// Instruction sets and threads

TEST(FastSurface, EveryInstructionSetGivesTheSameBits) {
    const tAtoms sample = samplePeptide("1ubq").atoms;
    const tAtoms cloud = randomCloud(3, 500, 18.0);
    const tAreas sampleAreas = plainAreas(sample, usualProbeRadius, 0.25);
    const tAreas cloudAreas = plainAreas(cloud, usualProbeRadius, 0.25);
    ASSERT_FALSE(availableSurfaceLoops().empty());
    for (std::size_t place = 0; place < availableSurfaceLoops().size(); ++place) {
        const cOnlyLoops only(place);
        EXPECT_EQ(fastAreas(sample, usualProbeRadius, 0.25), sampleAreas) << only.name();
        EXPECT_EQ(fastAreas(cloud, usualProbeRadius, 0.25), cloudAreas) << only.name();
        for (unsigned seed = 0; seed < 500; ++seed) {
            areasEveryWay(nearlyTouching(seed, 0.5), 0.0, 0.5);
        }
        if (HasFailure()) {
            FAIL() << only.name();
        }
    }
}

TEST(FastSurface, NumberOfThreadsDoesNotMatter) {
    const tAtoms atoms = samplePeptide("1a0q").atoms;
    tAreas areas;
    for (const std::size_t threads : {1U, 2U, 4U}) {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
        const tAreas found = fastAreas(atoms, usualProbeRadius, 0.25);
        EXPECT_TRUE(areas.empty() || found == areas) << threads;
        areas = found;
    }
    EXPECT_EQ(areas, plainAreas(atoms, usualProbeRadius, 0.25));
}

// Against the slow implementation that shares no code with either

reference::sAtom referenceAtom(const cResidueAtom& atom) {
    reference::sAtom result =
        reference::makeAtom(atom.atomName, atom.serial, atom.x, atom.y, atom.z, atom.radius);
    result.asa = atom.asa;
    return result;
}

tAreas referenceAreas(const tAtoms& atoms, double probeRadius, double zSlice) {
    std::vector<reference::sAtom> copies;
    for (const cResidueAtom& atom : atoms) {
        copies.push_back(referenceAtom(atom));
    }
    return reference::atomAreas(copies, probeRadius, zSlice);
}

TEST(PlainSurface, AgreesWithTheIndependentImplementation) {
    EXPECT_EQ(plainAreas(samplePeptide("1ubq").atoms, usualProbeRadius, 0.25),
              referenceAreas(samplePeptide("1ubq").atoms, usualProbeRadius, 0.25));
    for (unsigned seed = 0; seed < 40; ++seed) {
        const tAtoms atoms =
            randomCloud(seed, 60, 4.0 + seed % 20, {0.0, 1.4, 1.75, 2.0, 3.5, -1.4});
        for (const double probeRadius : {0.0, 1.4, 2.0}) {
            EXPECT_EQ(plainAreas(atoms, probeRadius, 0.25),
                      referenceAreas(atoms, probeRadius, 0.25))
                << "seed " << seed;
        }
    }
}

} // namespace

} // namespace kelmo

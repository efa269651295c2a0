// The complete form of the surface: bodies whose area is known in closed form, what it must not
// depend on, and the vectorised calculation against a slow one that shares no code with it.
#include "geometry/atom_space_calculations.h"
#include "geometry/surface_loops.h"
#include "model/pdb_peptide.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/geometry/only_loops.h"
#include "tests/support/reference_surface.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <tbb/global_control.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double usualProbeRadius = 1.4;

using tAreas = std::vector<double>;

tAreas completeAreas(tAtoms atoms, double probeRadius, double zSlice) {
    const sCorners box(atoms);
    calculateAtomAsaComplete(atoms.data(), static_cast<unsigned>(atoms.size()), box.maxPoint,
                             box.minPoint, probeRadius, zSlice);
    tAreas areas;
    for (const cResidueAtom& atom : atoms) {
        areas.push_back(atom.asa);
    }
    return areas;
}

// Bodies of known area

struct sBall {
    double x, y, z;
    double enlarged; ///< radius with probe, Å
};

tAreas exposedAreas(const std::vector<sBall>& balls, double zSlice) {
    tAtoms atoms;
    for (const sBall& ball : balls) {
        atoms.push_back(atomAt(ball.x, ball.y, ball.z, ball.enlarged - usualProbeRadius));
    }
    return completeAreas(atoms, usualProbeRadius, zSlice);
}

double sphereArea(double enlarged) {
    return 4.0 * pi * enlarged * enlarged;
}

/// Angular radius of the cap that a crossing sphere of radius `other` at distance d covers.
double capAngle(double enlarged, double other, double d) {
    return std::acos((d * d + enlarged * enlarged - other * other) / (2.0 * d * enlarged));
}

/// Area of a cap of the unit sphere.
double capArea(double angle) {
    return 2.0 * pi * (1.0 - std::cos(angle));
}

/// Area that two crossing caps of the unit sphere share, their middles being `apart` radians apart:
/// by the theorem of Gauss and Bonnet from the two arcs around it and the angles between them.
double sharedArea(double a, double b, double apart) {
    const double corner =
        std::acos((std::cos(apart) - std::cos(a) * std::cos(b)) / (std::sin(a) * std::sin(b)));
    const double alongA =
        std::acos((std::cos(b) - std::cos(apart) * std::cos(a)) / (std::sin(apart) * std::sin(a)));
    const double alongB =
        std::acos((std::cos(a) - std::cos(apart) * std::cos(b)) / (std::sin(apart) * std::sin(b)));
    return 2.0 * (pi - corner - alongA * std::cos(a) - alongB * std::cos(b));
}

TEST(CompleteBodies, TwoHemispheresShareALune) {
    for (const double apart : {0.3, 1.0, 2.0, 3.0}) {
        EXPECT_NEAR(sharedArea(0.5 * pi, 0.5 * pi, apart), 2.0 * (pi - apart), 1e-12);
    }
    EXPECT_NEAR(sharedArea(0.4, 0.7, 0.3 + 1e-9), capArea(0.4), 1e-3) << "one inside the other";
    EXPECT_NEAR(sharedArea(0.4, 0.7, 1.1 - 1e-9), 0.0, 1e-3) << "touching";
}

TEST(CompleteBodies, SphereAloneIsWhollyExposed) {
    for (const double enlarged : {0.01, 1.5, 2.6, 2.82, 3.0, 3.28, 90.0}) {
        for (const double zSlice : {0.02, 0.05, 0.25, 1.0, 50.0, 1000.0}) {
            EXPECT_NEAR(exposedAreas({{0.3, 0.2, 0.1, enlarged}}, zSlice)[0], sphereArea(enlarged),
                        1e-7 * sphereArea(enlarged))
                << enlarged << " in slices of " << zSlice;
        }
    }
    const tAreas far = exposedAreas({{0, 0, 0, 3.0}, {0, 0, 100, 2.0}}, 0.25);
    EXPECT_NEAR(far[0], sphereArea(3.0), 1e-5);
    EXPECT_NEAR(far[1], sphereArea(2.0), 1e-5);
}

// Directions that lie neither along the planes nor across them.
const std::vector<sPoint>& obliqueDirections() {
    static const std::vector<sPoint> all{
        {0.6, 0.0, 0.8},   {-0.8, 0.0, -0.6},           {2.0 / 3, 1.0 / 3, -2.0 / 3},
        {0.48, 0.6, 0.64}, {6.0 / 7, 3.0 / 7, 2.0 / 7}, {-3.0 / 7, 6.0 / 7, -2.0 / 7}};
    return all;
}

const std::vector<std::pair<double, double>>& pairsOfRadii() {
    static const std::vector<std::pair<double, double>> all{
        {3.0, 3.0}, {3.28, 3.0}, {3.28, 2.82}, {2.86, 3.01}};
    return all;
}

/// What two spheres at this distance leave of each other.
std::array<double, 2> areasOfPair(double first, double second, double d) {
    return {first * first * capArea(pi - capAngle(first, second, d)),
            second * second * capArea(pi - capAngle(second, first, d))};
}

std::vector<sBall> pairAlong(const sPoint& direction, double first, double second, double d) {
    return {{0.1, 0.0, 0.2, first},
            {0.1 + d * direction.x, d * direction.y, 0.2 + d * direction.z, second}};
}

TEST(CompleteBodies, TwoCrossingSpheresLoseTheirCaps) {
    for (const sPoint& direction : obliqueDirections()) {
        for (const double d : {1.5, 2.5, 4.0, 5.2}) {
            for (const auto& [first, second] : pairsOfRadii()) {
                const tAreas areas = exposedAreas(pairAlong(direction, first, second, d), 0.05);
                const std::array<double, 2> expected = areasOfPair(first, second, d);
                EXPECT_NEAR(areas[0] / expected[0], 1.0, 0.001) << d << " apart";
                EXPECT_NEAR(areas[1] / expected[1], 1.0, 0.001) << d << " apart";
            }
        }
    }
}

// The rim of a cap that lies along a plane falls into one slab, which then counts either wholly or
// not at all: the error is up to half of it, and shrinks with the slice.
TEST(CompleteBodies, RimAlongAPlaneIsOffByHalfASlabAtMost) {
    for (const sPoint& direction : {sPoint{0, 0, 1}, sPoint{0, 0, -1}}) {
        for (const double d : {1.5, 2.5, 4.0, 5.2}) {
            for (const auto& [first, second] : pairsOfRadii()) {
                for (const double zSlice : {0.25, 0.05, 0.01}) {
                    const tAreas areas =
                        exposedAreas(pairAlong(direction, first, second, d), zSlice);
                    const std::array<double, 2> expected = areasOfPair(first, second, d);
                    EXPECT_NEAR(areas[0], expected[0], pi * first * zSlice + 1e-4);
                    EXPECT_NEAR(areas[1], expected[1], pi * second * zSlice + 1e-4);
                }
            }
        }
    }
}

TEST(CompleteBodies, RimAcrossThePlanesIsNearerThanThat) {
    for (const sPoint& direction : {sPoint{1, 0, 0}, sPoint{0, -1, 0}, sPoint{-0.28, 0.96, 0}}) {
        for (const double d : {1.5, 2.5, 4.0, 5.2}) {
            for (const auto& [first, second] : pairsOfRadii()) {
                const tAreas areas = exposedAreas(pairAlong(direction, first, second, d), 0.05);
                const std::array<double, 2> expected = areasOfPair(first, second, d);
                EXPECT_NEAR((areas[0] + areas[1]) / (expected[0] + expected[1]), 1.0, 0.001);
                EXPECT_NEAR(areas[0] / expected[0], 1.0, 0.0025);
                EXPECT_NEAR(areas[1] / expected[1], 1.0, 0.0025);
            }
        }
    }
}

TEST(CompleteBodies, MiddleOfThreeInARowLosesTwoCaps) {
    for (const sPoint& direction : obliqueDirections()) {
        constexpr double d = 4.5;
        constexpr std::array enlarged{2.5, 3.0, 2.8}; // the outer two are 9 Å apart
        std::vector<sBall> balls;
        for (std::size_t i = 0; i < 3; ++i) {
            const double along = d * static_cast<double>(i);
            balls.push_back(
                {along * direction.x, along * direction.y, along * direction.z, enlarged[i]});
        }
        const double expected =
            9.0 * (4.0 * pi - capArea(capAngle(3.0, 2.5, d)) - capArea(capAngle(3.0, 2.8, d)));
        EXPECT_NEAR(exposedAreas(balls, 0.05)[1] / expected, 1.0, 0.001);
    }
}

/// What two others that cross each other leave of the first of three balls.
double areaOfTriple(const std::vector<sBall>& balls) {
    const sBall& ball = balls[0];
    std::array<double, 2> angle{};
    std::array<sPoint, 2> towards;
    for (std::size_t i = 0; i < 2; ++i) {
        const sBall& other = balls[i + 1];
        const sPoint difference{other.x - ball.x, other.y - ball.y, other.z - ball.z};
        const double d = std::hypot(difference.x, difference.y, difference.z);
        towards[i] = {difference.x / d, difference.y / d, difference.z / d};
        angle[i] = capAngle(ball.enlarged, other.enlarged, d);
    }
    const double apart = std::acos(towards[0].x * towards[1].x + towards[0].y * towards[1].y +
                                   towards[0].z * towards[1].z);
    EXPECT_LT(apart, angle[0] + angle[1]);
    EXPECT_GT(apart, std::abs(angle[0] - angle[1]));
    const double covered =
        capArea(angle[0]) + capArea(angle[1]) - sharedArea(angle[0], angle[1], apart);
    return ball.enlarged * ball.enlarged * (4.0 * pi - covered);
}

TEST(CompleteBodies, ThreeMutuallyCrossingSpheresCoverPartsTwice) {
    const std::vector<std::vector<sBall>> triples{
        {{0, 0, 0, 3.0}, {2.2, 0.5, 0.4, 2.9}, {0.9, 2.1, -0.8, 3.1}},
        {{0, 0, 0, 3.0}, {0.4, 1.2, 2.6, 3.0}, {0.5, 2.5, 1.4, 2.7}},
        {{0, 0, 0, 2.6}, {1.0, 1.0, 1.0, 3.28}, {-1.2, 1.0, -1.1, 2.9}}};
    for (std::vector<sBall> balls : triples) {
        for (int which = 0; which < 3; ++which) {
            EXPECT_NEAR(exposedAreas(balls, 0.05)[0] / areaOfTriple(balls), 1.0, 0.0015);
            std::rotate(balls.begin(), balls.begin() + 1, balls.end());
        }
    }
}

TEST(CompleteBodies, EnclosedSphereHasNoAreaAndCoversNothing) {
    const std::vector<sPoint> places{{0.9, 0.0, 0.0}, {0.0, 0.0, 0.9}, {0.5, -0.5, 0.5}};
    for (const sPoint& place : places) {
        const tAreas areas = exposedAreas({{0, 0, 0, 3.0}, {place.x, place.y, place.z, 2.0}}, 0.25);
        EXPECT_NEAR(areas[0], sphereArea(3.0), 1e-5);
        EXPECT_EQ(areas[1], 0.0);
    }
    const tAreas concentric = exposedAreas({{1, 2, 3, 3.0}, {1, 2, 3, 2.9}}, 0.25);
    EXPECT_NEAR(concentric[0], sphereArea(3.0), 1e-5);
    EXPECT_EQ(concentric[1], 0.0);
    const tAreas touching = exposedAreas({{0, 0, 0, 3.0}, {0, 0, 1, 2.0}}, 0.25);
    EXPECT_NEAR(touching[0], sphereArea(3.0), 1e-5) << "touching from inside";
    EXPECT_EQ(touching[1], 0.0);
}

TEST(CompleteBodies, SpheresThatMerelyTouchCoverNothing) {
    for (const sPoint& direction : obliqueDirections()) {
        const tAreas areas = exposedAreas(
            {{0, 0, 0, 3.0}, {6 * direction.x, 6 * direction.y, 6 * direction.z, 3.0}}, 0.25);
        EXPECT_NEAR(areas[0], sphereArea(3.0), 1e-4);
    }
}

TEST(CompleteBodies, EqualSpheresAtOnePlaceShareTheirArea) {
    const sBall other{2.0, 1.0, 0.5, 2.9};
    const sBall ball{0.0, 0.0, 0.0, 3.0};
    const tAreas alone = exposedAreas({ball, other}, 0.25);
    const tAreas twice = exposedAreas({ball, other, ball}, 0.25);
    EXPECT_EQ(twice[0], 0.5 * alone[0]);
    EXPECT_EQ(twice[2], 0.5 * alone[0]);
    EXPECT_EQ(twice[1], alone[1]) << "covered by both as by one";
    const tAreas thrice = exposedAreas({ball, ball, ball}, 0.25);
    EXPECT_NEAR(thrice[0] + thrice[1] + thrice[2], sphereArea(3.0), 1e-5);
    EXPECT_EQ(thrice[0], thrice[2]);
}

TEST(CompleteBodies, SphereWithoutRadiusHasNoAreaAndCoversNothing) {
    tAtoms atoms{atomAt(0.0, 0.0, 0.0, -1.4), atomAt(2.0, 0.0, 0.0, 1.5),
                 atomAt(0.0, 2.0, 0.0, -2.0), atomAt(50.0, 0.0, 0.0, 0.0)};
    for (cResidueAtom& atom : atoms) {
        atom.asa = 7.5;
    }
    const tAreas areas = completeAreas(atoms, usualProbeRadius, 0.25);
    EXPECT_EQ(areas[0], 0.0);
    EXPECT_NEAR(areas[1], sphereArea(2.9), 1e-5);
    EXPECT_EQ(areas[2], 0.0);
    EXPECT_NEAR(areas[3], sphereArea(1.4), 1e-5);
    EXPECT_EQ(completeAreas({atomAt(0, 0, 0, 0.0)}, 0.0, 0.25)[0], 0.0);
}

TEST(CompleteBodies, NoAtomsAreNoWork) {
    calculateAtomAsaComplete(nullptr, 0, sPoint{}, sPoint{}, usualProbeRadius, 0.25);
    SUCCEED();
}

TEST(CompleteBodies, WildCoordinatesEndWithoutNonsense) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double wild :
         {1e6, 1e12, 1e300, infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        const tAreas areas =
            completeAreas({atomAt(0, 0, 0, 1.5), atomAt(1, 0, 0, 1.5), atomAt(wild, 0, 0, 1.5)},
                          usualProbeRadius, 0.25);
        for (const double area : areas) {
            EXPECT_TRUE(area >= 0.0 && area <= sphereArea(2.9) * 1.001) << wild;
        }
    }
}

// What the areas must not depend on

tAtoms shuffled(tAtoms atoms, unsigned seed) {
    cRandom random(seed);
    for (std::size_t i = atoms.size(); i > 1; --i) {
        std::swap(atoms[i - 1], atoms[random.below(static_cast<unsigned>(i))]);
    }
    return atoms;
}

/// The areas in the order of the serials, which are positions in an earlier list.
tAreas bySerial(const tAtoms& atoms, const tAreas& areas) {
    tAreas result(areas.size());
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        result.at(std::stoul(atoms[i].serial)) = areas[i];
    }
    return result;
}

tAtoms numbered(tAtoms atoms) {
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        atoms[i].serial = std::to_string(i);
    }
    return atoms;
}

/// A structure, a crowd, one with many atoms at one place, and a lattice on which circles touch and
/// lie above each other exactly.
std::vector<tAtoms> examples() {
    tAtoms lattice;
    for (int i = 0; i < 343; ++i) {
        lattice.push_back(atomAt(3.0 * (i % 7), 3.0 * (i / 7 % 7), 3.0 * (i / 49), 1.6));
    }
    tAtoms doubled = randomCloud(5, 150, 12.0);
    const tAtoms half = doubled;
    doubled.insert(doubled.end(), half.begin(), half.end());
    return {numbered(samplePeptide("1ubq").atoms), randomCloud(4, 400, 10.0), numbered(doubled),
            numbered(lattice)};
}

TEST(CompleteSurface, OrderOfTheAtomsDoesNotMatter) {
    for (const tAtoms& atoms : examples()) {
        const tAreas areas = completeAreas(atoms, usualProbeRadius, 0.25);
        for (unsigned seed = 1; seed < 6; ++seed) {
            const tAtoms others = shuffled(atoms, seed);
            EXPECT_EQ(bySerial(others, completeAreas(others, usualProbeRadius, 0.25)), areas);
        }
    }
}

TEST(CompleteSurface, DistantAtomDoesNotMatter) {
    for (const tAtoms& atoms : examples()) {
        const tAreas areas = completeAreas(atoms, usualProbeRadius, 0.25);
        for (const sPoint& place : {sPoint{150, 0, 0}, sPoint{0, -150, 0}, sPoint{30, 40, 150},
                                    sPoint{-9999, 9999, 9999}}) {
            tAtoms more = atoms;
            more.insert(more.begin(), atomAt(place.x, place.y, place.z));
            tAreas found = completeAreas(more, usualProbeRadius, 0.25);
            found.erase(found.begin());
            EXPECT_EQ(found, areas);
        }
    }
}

TEST(CompleteSurface, MovingByWholeAngstromsDoesNotMatter) {
    const tAtoms atoms = samplePeptide("1ubq").atoms;
    const tAreas areas = completeAreas(atoms, usualProbeRadius, 0.25);
    for (const sPoint& by : {sPoint{1, 1, 1}, sPoint{-500, 300, -200}, sPoint{0, 0, 7000}}) {
        tAtoms moved;
        for (const cResidueAtom& atom : atoms) {
            moved.push_back(atomAt(atom.x + by.x, atom.y + by.y, atom.z + by.z, atom.radius));
        }
        EXPECT_EQ(completeAreas(moved, usualProbeRadius, 0.25), areas);
    }
}

TEST(CompleteSurface, NumberOfThreadsDoesNotMatter) {
    const tAtoms atoms = samplePeptide("1a0q").atoms;
    const tAreas areas = completeAreas(atoms, usualProbeRadius, 0.25);
    for (const std::size_t threads : {1U, 2U, 4U}) {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
        EXPECT_EQ(completeAreas(atoms, usualProbeRadius, 0.25), areas) << threads;
    }
}

TEST(CompleteSurface, EveryInstructionSetGivesTheSameBits) {
    ASSERT_FALSE(availableSurfaceLoops().empty());
    std::vector<tAtoms> all = examples();
    for (unsigned seed = 0; seed < 40; ++seed) {
        all.push_back(
            randomCloud(seed, 60, 4.0 + seed % 20, {0.0, 1.4, 1.75, 2.0, 3.5, 20.0, -1.4}));
    }
    for (const tAtoms& atoms : all) {
        for (const double zSlice : {0.25, 0.07, 3.0}) {
            const tAreas areas = completeAreas(atoms, usualProbeRadius, zSlice);
            for (std::size_t place = 1; place < availableSurfaceLoops().size(); ++place) {
                const cOnlyLoops only(place);
                ASSERT_EQ(completeAreas(atoms, usualProbeRadius, zSlice), areas) << only.name();
            }
        }
    }
}

// The form promises no area to anyone whom more atoms cover: a gap between arcs is never wider for
// one more arc.
TEST(CompleteSurface, NoAtomGainsAreaInTheComplex) {
    for (const char* const name : {"1a0q", "2hhb"}) {
        cPdbPeptide peptide = samplePeptide(name);
        peptide.setAccessibleSurfaceArea(usualProbeRadius, 0.25, eAsaForm::complete);
        tAreas bound;
        for (const cResidueAtom& atom : peptide.atoms) {
            bound.push_back(atom.asa);
        }
        peptide.setAccessibleSurfaceAreaUnbound(usualProbeRadius, 0.25, eAsaForm::complete);
        std::size_t less = 0;
        for (std::size_t i = 0; i < bound.size(); ++i) {
            EXPECT_LE(bound[i], peptide.atoms[i].asa) << name << " atom " << i;
            less += bound[i] < peptide.atoms[i].asa ? 1U : 0U;
        }
        EXPECT_GT(less, 100U);
    }
}

// Convergence and orientation

using tResidueAreas = std::vector<double>;

tResidueAreas residueAreas(const cPdbPeptide& peptide, const tAreas& areas) {
    tResidueAreas result;
    for (const cChainResidue& residue : peptide.residues) {
        const auto first = static_cast<std::size_t>(residue.atoms - peptide.atoms.data());
        double sum = 0.0;
        for (std::size_t i = 0; i < residue.atomCount; ++i) {
            sum += areas[first + i];
        }
        result.push_back(sum);
    }
    return result;
}

double rootMeanSquare(const tResidueAreas& a, const tResidueAreas& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += (a[i] - b[i]) * (a[i] - b[i]);
    }
    return std::sqrt(sum / static_cast<double>(a.size()));
}

/// Turned about an axis through the origin, of length 1.
tAtoms turned(const tAtoms& atoms, const sPoint& axis, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    tAtoms result;
    for (const cResidueAtom& a : atoms) {
        const double along = (1.0 - c) * (axis.x * a.x + axis.y * a.y + axis.z * a.z);
        result.push_back(atomAt(c * a.x + s * (axis.y * a.z - axis.z * a.y) + along * axis.x,
                                c * a.y + s * (axis.z * a.x - axis.x * a.z) + along * axis.y,
                                c * a.z + s * (axis.x * a.y - axis.y * a.x) + along * axis.z,
                                a.radius));
    }
    return result;
}

TEST(CompleteSurface, NoiseOfOrientationShrinksWithTheSlice) {
    const cPdbPeptide peptide = samplePeptide("1ubq");
    double former = 3.0;
    for (const double zSlice : {0.5, 0.25, 0.1, 0.05, 0.02}) {
        const tResidueAreas before =
            residueAreas(peptide, completeAreas(peptide.atoms, usualProbeRadius, zSlice));
        double worst = 0.0;
        for (const auto& [axis, angle] : {std::pair{sPoint{1, 0, 0}, 0.5 * pi},
                                          {sPoint{0, 1, 0}, 0.5 * pi},
                                          {sPoint{0.6, 0, 0.8}, 1.0},
                                          {sPoint{2.0 / 3, -1.0 / 3, 2.0 / 3}, 2.5}}) {
            const tResidueAreas after =
                residueAreas(peptide, completeAreas(turned(peptide.atoms, axis, angle),
                                                    usualProbeRadius, zSlice));
            worst = std::max(worst, rootMeanSquare(before, after));
        }
        EXPECT_LT(worst, 0.7 * former) << "slice " << zSlice;
        EXPECT_LT(worst, 3.0 * zSlice) << "slice " << zSlice;
        former = worst;
    }
}

TEST(CompleteSurface, FinerSlicesConverge) {
    const cPdbPeptide peptide = samplePeptide("1ubq");
    const tResidueAreas finest =
        residueAreas(peptide, completeAreas(peptide.atoms, usualProbeRadius, 0.002));
    for (const auto& [zSlice, bound] :
         {std::pair{0.25, 0.4}, {0.1, 0.2}, {0.05, 0.07}, {0.01, 0.01}}) {
        const tResidueAreas areas =
            residueAreas(peptide, completeAreas(peptide.atoms, usualProbeRadius, zSlice));
        EXPECT_LT(rootMeanSquare(areas, finest), bound) << zSlice;
    }
}

// Against the slow implementation that shares no code

tAreas referenceAreas(const tAtoms& atoms, double probeRadius, double zSlice) {
    std::vector<reference::sAtom> copies;
    for (const cResidueAtom& atom : atoms) {
        copies.push_back(
            reference::makeAtom(atom.atomName, atom.serial, atom.x, atom.y, atom.z, atom.radius));
    }
    return reference::completeAtomAreas(copies, probeRadius, zSlice);
}

/// Single precision may shift the ends of an arc that barely reaches a plane by some 0.001 rad.
void expectReferenceAreas(const tAtoms& atoms, double probeRadius, double zSlice) {
    const tAreas areas = completeAreas(atoms, probeRadius, zSlice);
    const tAreas expected = referenceAreas(atoms, probeRadius, zSlice);
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        const double enlarged = std::max(0.0, atoms[i].radius + probeRadius);
        const double allowance =
            1e-6 * sphereArea(enlarged) + 0.005 * enlarged * std::min(zSlice, enlarged);
        EXPECT_NEAR(areas[i], expected[i], allowance)
            << "atom " << i << " of " << atoms.size() << ", probe " << probeRadius << ", slice "
            << zSlice;
    }
}

TEST(CompleteSurface, AgreesWithTheIndependentImplementationOnSamples) {
    for (const std::string& name : sampleCodes()) {
        expectReferenceAreas(samplePeptide(name).atoms, usualProbeRadius, 0.25);
    }
    for (const double zSlice : {0.05, 0.1, 1.0, 10.0}) {
        expectReferenceAreas(samplePeptide("1ubq").atoms, usualProbeRadius, zSlice);
    }
}

TEST(CompleteSurface, AgreesWithTheIndependentImplementationOnRandomAtoms) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        const tAtoms atoms =
            randomCloud(seed, 60, 4.0 + seed % 20, {0.0, 1.4, 1.75, 2.0, 3.5, -1.4});
        for (const double probeRadius : {0.0, 1.4, 2.0}) {
            expectReferenceAreas(atoms, probeRadius, 0.25);
        }
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

TEST(CompleteSurface, AgreesOnExactTouchesAndAlignments) {
    for (const tAtoms& atoms : examples()) {
        expectReferenceAreas(atoms, usualProbeRadius, 0.25);
        expectReferenceAreas(atoms, 0.0, 0.25);
    }
}

// Depth asks for areas of exactly 0.
TEST(CompleteSurface, BuriedMeansExactlyNothing) {
    const tAtoms lattice = examples()[3];
    const tAreas areas = completeAreas(lattice, usualProbeRadius, 0.25);
    for (int i = 0; i < 343; ++i) {
        const auto isInner = [](int place) { return place > 0 && place < 6; };
        const bool isBuried = isInner(i % 7) && isInner(i / 7 % 7) && isInner(i / 49);
        EXPECT_EQ(areas[static_cast<std::size_t>(i)] == 0.0, isBuried) << i;
    }
    const tAtoms atoms = samplePeptide("2hhb").atoms;
    const tAreas found = completeAreas(atoms, usualProbeRadius, 0.25);
    const tAreas expected = referenceAreas(atoms, usualProbeRadius, 0.25);
    std::size_t buried = 0;
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        EXPECT_TRUE(found[i] == 0.0 || expected[i] > 0.0) << i;
        EXPECT_TRUE(found[i] > 0.0 || expected[i] < 1e-3) << i;
        buried += found[i] == 0.0 ? 1U : 0U;
    }
    EXPECT_GT(buried, 1000U);
}

} // namespace

} // namespace kelmo

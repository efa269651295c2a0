// Circles in a plane: how they lie towards each other, which arcs they cover, what remains free.
#include "geometry/circles.h"
#include "tests/geometry/atom_clouds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace kelmo {

using enum eCircleLocation;

namespace {

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;

using tArcs = std::vector<std::pair<double, double>>;

tArcs arcsOf(const cCircle& circle) {
    tArcs arcs;
    for (const cCircleSegment& segment : circle.segments) {
        arcs.emplace_back(segment.start, segment.end);
    }
    return arcs;
}

tArcs coveredBy(cCircle circle, const std::vector<cCircle>& others) {
    circle.createArcs(others.data(), static_cast<unsigned>(others.size()));
    return arcsOf(circle);
}

double freeLength(cCircle circle, const std::vector<cCircle>& others) {
    return circle.getFreeArcLength(others.data(), static_cast<unsigned>(others.size()));
}

TEST(CircleSegment, ComparesByItsStartAlone) {
    const cCircleSegment a(1.0, 2.0);
    const cCircleSegment b(1.0, 5.0);
    const cCircleSegment c(1.5, 1.6);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(a > b);
    EXPECT_TRUE(b < c);
    EXPECT_TRUE(c > b);
    EXPECT_TRUE(b != c);
    EXPECT_FALSE(c == b);
    EXPECT_FALSE(c < b);
    EXPECT_FALSE(b > c);
}

TEST(CircleSegment, IsCopied) {
    cCircleSegment a(1.0, 2.0);
    const cCircleSegment copy(a);
    a = cCircleSegment(3.0, 4.0);
    EXPECT_EQ(copy.start, 1.0);
    EXPECT_EQ(copy.end, 2.0);
    EXPECT_EQ(a.end, 4.0);
}

TEST(Circle, IsMadeWithoutSegmentsAndNotEnclosed) {
    const cCircle circle(1.0, -2.0, 3.0);
    EXPECT_EQ(circle.x, 1.0);
    EXPECT_EQ(circle.y, -2.0);
    EXPECT_EQ(circle.radius, 3.0);
    EXPECT_FALSE(circle.enclosed);
    EXPECT_TRUE(circle.segments.empty());
}

TEST(Circle, CopyAndAssignmentTakeTheSegmentsToo) {
    cCircle circle(0.0, 0.0, 1.0);
    const std::vector<cCircle> others{{0.5, 0.0, 3.0}, {1.0, 0.0, 1.0}};
    circle.createArcs(others.data(), 2);
    ASSERT_TRUE(circle.enclosed);
    const cCircle copy(circle);
    cCircle assigned(9.0, 9.0, 9.0);
    assigned = circle;
    circle.createArcs(others.data(), 0);
    for (const cCircle& other : {copy, assigned}) {
        EXPECT_EQ(other.x, 0.0);
        EXPECT_EQ(other.radius, 1.0);
        EXPECT_TRUE(other.enclosed);
        EXPECT_GE(other.segments.size(), 3U);
    }
    EXPECT_FALSE(circle.enclosed);
}

// Position. All numbers are exact in binary, so that touching is touching.

TEST(CircleLocation, ValuesHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(apart), 0);
    EXPECT_EQ(static_cast<int>(otherInside), 1);
    EXPECT_EQ(static_cast<int>(crossing), 2);
    EXPECT_EQ(static_cast<int>(insideOther), 3);
}

TEST(CircleLocation, OtherStrictlyWithinIsInside) {
    const cCircle me(0.0, 0.0, 3.0);
    EXPECT_EQ(me.locationTowardsMe({1.0, 0.0, 1.0}), 1);
    EXPECT_EQ(me.locationTowardsMe({0.0, 0.0, 2.999}), 1);
    EXPECT_EQ(me.locationTowardsMe({0.0, 0.0, 0.0}), 1);
    EXPECT_EQ(me.locationTowardsMe({0.0, 2.0, 1.0}), 2) << "touching me from inside is a crossing";
    EXPECT_EQ(me.locationTowardsMe({0.0, 3.0, 0.0}), 0) << "a point on me is apart";
}

TEST(CircleLocation, TouchingFromOutsideIsApart) {
    const cCircle me(1.0, 1.0, 2.0);
    EXPECT_EQ(me.locationTowardsMe({4.0, 5.0, 3.0}), 0);
    EXPECT_EQ(me.locationTowardsMe({4.0, 5.0, std::nextafter(3.0, 4.0)}), 2);
    EXPECT_EQ(me.locationTowardsMe({4.0, 5.0, 1.0}), 0);
    EXPECT_EQ(me.locationTowardsMe({-4.0, 1.0, 3.0}), 0);
}

TEST(CircleLocation, TouchingFromInsideIsInsideTheOther) {
    const cCircle me(0.0, 0.0, 1.5);
    EXPECT_EQ(me.locationTowardsMe({3.0, 4.0, 6.5}), 3);
    EXPECT_EQ(me.locationTowardsMe({3.0, 4.0, 7.0}), 3);
    EXPECT_EQ(me.locationTowardsMe({3.0, 4.0, std::nextafter(6.5, 0.0)}), 2);
    EXPECT_EQ(me.locationTowardsMe({0.0, 0.0, 2.0}), 3);
}

TEST(CircleLocation, IdenticalCirclesLieInsideEachOther) {
    const cCircle me(1.0, 2.0, 1.5);
    EXPECT_EQ(me.locationTowardsMe(me), 3);
}

TEST(CircleLocation, PointsAreTestedInTheSameOrder) {
    const cCircle point(0.0, 0.0, 0.0);
    EXPECT_EQ(point.locationTowardsMe(point), 0) << "apart is asked before inside";
    EXPECT_EQ(point.locationTowardsMe({1.0, 0.0, 2.0}), 3);
    EXPECT_EQ(point.locationTowardsMe({2.0, 0.0, 2.0}), 0);
}

// Covered half-angle

TEST(CrossSectionAngle, IsZeroOrHalfATurnWithoutCrossing) {
    const cCircle me(0.0, 0.0, 2.0);
    EXPECT_EQ(me.crossSectionAngle({10.0, 0.0, 1.0}), 0.0);
    EXPECT_EQ(me.crossSectionAngle({3.0, 0.0, 1.0}), 0.0);
    EXPECT_EQ(me.crossSectionAngle({0.5, 0.0, 1.0}), 0.0);
    EXPECT_EQ(me.crossSectionAngle({1.0, 0.0, 3.0}), pi);
    EXPECT_EQ(me.crossSectionAngle({1.0, 0.0, 9.0}), pi);
    EXPECT_EQ(me.crossSectionAngle(me), pi);
}

TEST(CrossSectionAngle, FollowsTheLawOfCosines) {
    const cCircle unit(0.0, 0.0, 1.0);
    EXPECT_NEAR(unit.crossSectionAngle({1.0, 0.0, 1.0}), pi / 3.0, 1e-15);
    EXPECT_NEAR(unit.crossSectionAngle({1.0, 1.0, 1.0}), pi / 4.0, 1e-15);
    EXPECT_EQ(unit.crossSectionAngle({0.0, 0.5, 1.25}), std::acos(1.0 + 0.25 - 1.5625));
    EXPECT_EQ(cCircle(0.0, 0.0, 3.0).crossSectionAngle({2.0, 0.0, 1.0}), 0.0)
        << "touching from inside crosses at a single point";
    EXPECT_GT(unit.crossSectionAngle({0.5, 0.0, 1.25}), 0.5 * pi) << "more than half is covered";
}

// Circles that all but touch: rounding takes the cosine beyond 1 or below -1, where its inverse is
// no number.
TEST(CrossSectionAngle, StaysANumberWhereRoundingLeavesTheRangeOfCosines) {
    cRandom random(1);
    unsigned above = 0;
    unsigned below = 0;
    for (int i = 0; i < 200000; ++i) {
        const cCircle me(random.coordinate(-9.0, 9.0), random.coordinate(-9.0, 9.0),
                         random.coordinate(0.1, 4.0));
        const double angle = random.between(0.0, twoPi);
        const double ro = random.coordinate(0.1, 4.0);
        const double d = i % 3 == 0 ? me.radius + ro : std::abs(me.radius - ro);
        const cCircle other(me.x + d * std::cos(angle), me.y + d * std::sin(angle), ro);
        const double dx = me.x - other.x;
        const double dy = me.y - other.y;
        const double distance = std::sqrt(dx * dx + dy * dy);
        if (me.locationOf(other) != crossing || distance == 0.0) {
            continue;
        }
        const double cosine =
            (me.radius * me.radius + distance * distance - ro * ro) / (2.0 * me.radius * distance);
        const double half = me.crossSectionAngle(other);
        ASSERT_TRUE(half >= 0.0 && half <= pi);
        if (cosine > 1.0) {
            ++above;
            EXPECT_EQ(half, 0.0);
        } else if (cosine < -1.0) {
            ++below;
            EXPECT_EQ(half, pi);
        } else {
            EXPECT_EQ(half, std::acos(cosine));
        }
        EXPECT_FALSE(std::isnan(freeLength(me, {other})));
    }
    EXPECT_GT(above, 0U);
    EXPECT_GT(below, 0U);
}

// Arcs

TEST(CircleArcs, NoOthersLeaveTheClosingSegment) {
    cCircle circle(0.0, 0.0, 1.0);
    circle.createArcs(nullptr, 0);
    EXPECT_EQ(arcsOf(circle), (tArcs{{twoPi, twoPi}}));
    EXPECT_FALSE(circle.enclosed);
}

TEST(CircleArcs, ArcIsCentredOnTheDirectionOfTheOther) {
    const double half = cCircle(0.0, 0.0, 1.0).crossSectionAngle({0.0, 1.0, 1.0});
    const tArcs arcs = coveredBy({0.0, 0.0, 1.0}, {{0.0, 1.0, 1.0}});
    EXPECT_EQ(arcs, (tArcs{{pi / 2 - half, pi / 2 + half}, {twoPi, twoPi}}));
}

TEST(CircleArcs, DirectionsBelowTheAxisAreTakenPositive) {
    const double half = cCircle(0.0, 0.0, 1.0).crossSectionAngle({0.0, -1.0, 1.0});
    const tArcs arcs = coveredBy({0.0, 0.0, 1.0}, {{0.0, -1.0, 1.0}});
    const double direction = -pi / 2 + twoPi;
    EXPECT_EQ(arcs, (tArcs{{direction - half, direction + half}, {twoPi, twoPi}}));
}

TEST(CircleArcs, ArcAcrossTheAxisIsSplit) {
    const double half = cCircle(0.0, 0.0, 1.0).crossSectionAngle({1.0, 0.0, 1.0});
    const tArcs arcs = coveredBy({0.0, 0.0, 1.0}, {{1.0, 0.0, 1.0}});
    ASSERT_EQ(arcs.size(), 3U);
    EXPECT_EQ(arcs[0], (std::pair{0.0, half}));
    EXPECT_EQ(arcs[1].first, -half + twoPi);
    EXPECT_EQ(arcs[1].second, twoPi);
    EXPECT_EQ(arcs[2], (std::pair{twoPi, twoPi}));
}

TEST(CircleArcs, OthersThatCoverNothingAddAPoint) {
    const double direction = std::atan2(4.0, 3.0);
    EXPECT_EQ(coveredBy({0.0, 0.0, 1.0}, {{3.0, 4.0, 1.0}}),
              (tArcs{{direction, direction}, {twoPi, twoPi}}));
    EXPECT_EQ(coveredBy({0.0, 0.0, 9.0}, {{3.0, 4.0, 1.0}}),
              (tArcs{{direction, direction}, {twoPi, twoPi}}));
    EXPECT_EQ(coveredBy({0.0, 0.0, 9.0}, {{0.0, 0.0, 1.0}}), (tArcs{{0.0, 0.0}, {twoPi, twoPi}}));
}

// A direction a hair below the axis becomes a full turn, which is reduced to 0 again.
TEST(CircleArcs, FullTurnIsReducedToZero) {
    EXPECT_EQ(coveredBy({0.0, 0.0, 1.0}, {{5.0, -1e-30, 1.0}}),
              (tArcs{{0.0, 0.0}, {twoPi, twoPi}}));
}

TEST(CircleArcs, EnclosingCircleIsNotedAndOnesBeforeAreForgotten) {
    cCircle circle(0.0, 0.0, 1.0);
    const std::vector<cCircle> others{{0.0, 2.0, 1.5}, {0.5, 0.0, 1.5}, {5.0, 0.0, 1.0}};
    circle.createArcs(others.data(), 3);
    EXPECT_TRUE(circle.enclosed);
    circle.createArcs(others.data(), 1);
    EXPECT_FALSE(circle.enclosed);
    EXPECT_EQ(circle.segments.size(), 2U);
}

TEST(CircleArcs, SegmentsAreSortedAndWithinTheTurn) {
    cRandom random(2);
    for (int round = 0; round < 300; ++round) {
        std::vector<cCircle> others;
        for (unsigned i = 0; i < 1 + random.below(150); ++i) {
            others.emplace_back(random.coordinate(-3.0, 3.0), random.coordinate(-3.0, 3.0),
                                random.coordinate(0.0, 3.0));
        }
        cCircle circle(0.25, -0.5, 1.5);
        circle.createArcs(others.data(), static_cast<unsigned>(others.size()));
        EXPECT_TRUE(std::is_sorted(circle.segments.begin(), circle.segments.end()));
        EXPECT_EQ(circle.segments.back().start, twoPi);
        for (const cCircleSegment& segment : circle.segments) {
            ASSERT_LE(0.0, segment.start);
            ASSERT_LE(segment.start, segment.end);
            ASSERT_LE(segment.end, twoPi);
        }
    }
}

// Free length. The angle is cut to 0.001 rad before it is multiplied by the radius.

TEST(FreeArcLength, WholeCircleIsCutToThreeDecimals) {
    EXPECT_EQ(freeLength({0.0, 0.0, 2.0}, {}), 6.283 * 2.0);
    EXPECT_EQ(freeLength({0.0, 0.0, 2.0}, {{9.0, 0.0, 1.0}}), 6.283 * 2.0);
    EXPECT_EQ(freeLength({0.0, 0.0, 2.0}, {{9.0, 0.0, 1.0}, {-3.0, 8.0, 1.0}, {1.0, -0.5, 0.5}}),
              6.283 * 2.0);
}

TEST(FreeArcLength, OneCrossingCircleTakesItsArc) {
    // 2π - 2π/3 = 4.18879...
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{0.0, 1.0, 1.0}}), 4.188);
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{1.0, 0.0, 1.0}}), 4.188) << "across the axis";
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{0.0, -1.0, 1.0}}), 4.188);
    EXPECT_EQ(freeLength({0.0, 0.0, 4.0}, {{-4.0, 0.0, 4.0}}), 4.188 * 4.0);
    // 2π - π/2 = 4.71238...
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{1.0, 1.0, 1.0}}), 4.712);
}

TEST(FreeArcLength, EnclosedCircleHasNone) {
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{0.5, 0.0, 2.0}}), 0.0);
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{0.0, 0.0, 1.0}}), 0.0);
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{9.0, 9.0, 1.0}, {0.5, 0.0, 1.5}}), 0.0);
}

TEST(FreeArcLength, OverlappingArcsCountOnce) {
    const cCircle up(0.0, 1.0, 1.0);
    const cCircle down(0.0, -1.0, 1.0);
    const cCircle slanted(std::sin(0.5), std::cos(0.5), 1.0); // half a radian from `up`
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {up, down}), 2.094) << "2π - 4π/3 = 2.09439...";
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {up, slanted}), 3.688) << "2π - 2π/3 - 0.5 = 3.68879...";
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {up, up}), 4.188);
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {up, {0.0, 1.0, 0.5}}), 4.188) << "one within the other";
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, {{0.0, 1.0, 0.5}, up}), 4.188);
}

TEST(FreeArcLength, RingOfCirclesCoversEverything) {
    std::vector<cCircle> ring;
    for (int i = 0; i < 4; ++i) {
        ring.emplace_back(std::cos(0.1 + i * pi / 2), std::sin(0.1 + i * pi / 2), 1.0);
    }
    EXPECT_EQ(freeLength({0.0, 0.0, 1.0}, ring), 0.0);
}

TEST(FreeArcLength, LessThanTheLastDecimalIsNothing) {
    // Half-angle π - 0.0004 leaves 0.0008 rad; π - 0.0006 leaves 0.0012 rad.
    const auto leaving = [](double angle) {
        const double d = 0.5;
        const double ro = std::sqrt(1.0 + d * d + 2.0 * d * std::cos(0.5 * angle));
        return freeLength({0.0, 0.0, 1.0}, {{0.0, d, ro}});
    };
    EXPECT_EQ(leaving(0.0008), 0.0);
    EXPECT_EQ(leaving(0.0012), 0.001);
    EXPECT_EQ(leaving(0.0032), 0.003);
}

TEST(FreeArcLength, OrderOfTheOthersDoesNotMatter) {
    cRandom random(3);
    for (int round = 0; round < 300; ++round) {
        std::vector<cCircle> others;
        for (unsigned i = 0; i < 2 + random.below(20); ++i) {
            others.emplace_back(random.below(5) - 2.0, random.below(5) - 2.0,
                                0.5 * random.below(4));
        }
        const cCircle me(0.5, 0.25, 1.0);
        const double length = freeLength(me, others);
        for (int turn = 0; turn < 5; ++turn) {
            std::rotate(others.begin(), others.begin() + 1, others.end());
            std::swap(others.front(), others[random.below(static_cast<unsigned>(others.size()))]);
            ASSERT_EQ(freeLength(me, others), length);
        }
    }
}

TEST(FreeArcLength, ObjectIsReusedWithoutMemory) {
    cCircle circle(0.0, 0.0, 1.0);
    const std::vector<cCircle> enclosing{{0.0, 0.0, 3.0}};
    const std::vector<cCircle> crossingOne{{0.0, 1.0, 1.0}};
    EXPECT_EQ(circle.getFreeArcLength(enclosing.data(), 1), 0.0);
    EXPECT_EQ(circle.getFreeArcLength(crossingOne.data(), 1), 4.188);
    EXPECT_EQ(circle.getFreeArcLength(crossingOne.data(), 0), 6.283);
}

// Against asking many points of the circle one by one.
TEST(FreeArcLength, IsTheShareOfUncoveredPoints) {
    constexpr int points = 20000;
    cRandom random(4);
    for (int round = 0; round < 200; ++round) {
        const cCircle me(random.coordinate(-5.0, 5.0), random.coordinate(-5.0, 5.0),
                         random.coordinate(0.5, 3.0));
        std::vector<cCircle> others;
        for (unsigned i = 0; i < 1 + random.below(6); ++i) {
            others.emplace_back(me.x + random.coordinate(-4.0, 4.0),
                                me.y + random.coordinate(-4.0, 4.0), random.coordinate(0.2, 3.0));
        }
        int uncovered = 0;
        for (int i = 0; i < points; ++i) {
            const double x = me.x + me.radius * std::cos((i + 0.5) * twoPi / points);
            const double y = me.y + me.radius * std::sin((i + 0.5) * twoPi / points);
            uncovered += std::none_of(others.begin(), others.end(), [&](const cCircle& other) {
                return std::hypot(x - other.x, y - other.y) < other.radius;
            });
        }
        const double angle = uncovered * twoPi / points;
        const double tolerance = 0.001 + 12.0 * twoPi / points; // a decimal, and one point per end
        ASSERT_NEAR(freeLength(me, others) / me.radius, angle, tolerance);
    }
}

} // namespace

} // namespace kelmo

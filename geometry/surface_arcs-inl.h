// The vectorised inner loops of the calculations, compiled once per instruction set.
// No include guard: the dispatcher includes this file once for every target.
#include "geometry/complete_arcs-inl.h"
#include "geometry/cut_numbers.h"
#include "geometry/surface_loops.h"

#include <hwy/contrib/math/math-inl.h>
#include <hwy/highway.h>

#include <array>
#include <cmath>
#include <type_traits>

HWY_BEFORE_NAMESPACE();
namespace kelmo::surface_arcs {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using cDoubles = hn::ScalableTag<double>;

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;

/// What countInRange() returns. The squares are summed in the order of the plain form and without
/// fusing, so that the comparison is exact.
unsigned countRun(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                  const sPoint& point, double squaredRange) {
    const cDoubles d;
    const auto x = hn::Set(d, point.x);
    const auto y = hn::Set(d, point.y);
    const auto z = hn::Set(d, point.z);
    const auto limit = hn::Set(d, squaredRange);
    std::size_t count = 0;
    for (std::size_t i = first; i < last; i += hn::Lanes(d)) {
        const auto dx = hn::Sub(x, hn::LoadU(d, &columns.x[i]));
        const auto dy = hn::Sub(y, hn::LoadU(d, &columns.y[i]));
        const auto dz = hn::Sub(z, hn::LoadU(d, &columns.z[i]));
        const auto squared = hn::Add(hn::Add(hn::Mul(dx, dx), hn::Mul(dy, dy)), hn::Mul(dz, dz));
        const auto isNear = hn::And(hn::Le(squared, limit), hn::Gt(squared, hn::Zero(d)));
        count += hn::CountTrue(d, hn::And(isNear, hn::FirstN(d, last - i)));
    }
    return static_cast<unsigned>(count);
}

/// Writes the lanes that the mask selects to consecutive places from `to` on, where there is room
/// for a whole vector.
template <class D, typename T>
HWY_INLINE void storeSelected(D d, hn::Vec<D> values, hn::Mask<D> mask, T* to) {
#if HWY_TARGET == HWY_AVX3
    // The instruction itself: Highway's Compress() goes through a table for lanes of this size,
    // which took ten times as long.
    if constexpr (std::is_floating_point_v<T>) {
        hn::StoreU(hn::Vec<D>{_mm512_maskz_compress_pd(mask.raw, values.raw)}, d, to);
    } else {
        hn::StoreU(hn::Vec<D>{_mm512_maskz_compress_epi64(mask.raw, values.raw)}, d, to);
    }
#else
    alignas(64) std::array<T, widestVector> lanes;
    hn::Store(values, d, lanes.data());
    std::uint8_t bytes[8] = {};
    hn::StoreMaskBits(d, mask, bytes);
    for (unsigned bits = bytes[0]; bits != 0; bits &= bits - 1U) {
        *to++ = lanes[static_cast<unsigned>(__builtin_ctz(bits))];
    }
#endif
}

/// Writes the places of the lanes that the mask selects, counted from that of the first lane, to
/// consecutive places from `to` on, where there is room for a whole vector.
template <class D>
HWY_INLINE void storeSelectedPlaces(D, std::size_t first, hn::Mask<D> mask, std::uint64_t* to) {
    const hn::RebindToUnsigned<D> u;
    storeSelected(u, hn::Iota(u, first), hn::RebindMask(u, mask), to);
}

/// See sSurfaceLoops.
void findTouching(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                  const cCentreGrid::sEntry& atom, double probeRadius, double margin,
                  sSurfaceScratch& scratch) {
    const cDoubles d;
    const auto zero = hn::Zero(d);
    const auto enlargedWithMargin = hn::Set(d, atom.radius + probeRadius + margin);
    for (std::size_t i = first; i < last; i += hn::Lanes(d)) {
        const auto towardsX = hn::Sub(hn::LoadU(d, &columns.x[i]), hn::Set(d, atom.x));
        const auto towardsY = hn::Sub(hn::LoadU(d, &columns.y[i]), hn::Set(d, atom.y));
        const auto z = hn::LoadU(d, &columns.z[i]);
        const auto dz = hn::Sub(z, hn::Set(d, atom.z));
        const auto enlarged = hn::Add(hn::LoadU(d, &columns.radius[i]), hn::Set(d, probeRadius));
        const auto squared = hn::Add(
            hn::Add(hn::Mul(towardsX, towardsX), hn::Mul(towardsY, towardsY)), hn::Mul(dz, dz));
        const auto touching = hn::Max(zero, hn::Add(enlargedWithMargin, enlarged));
        const auto isNear =
            hn::And(hn::Le(squared, hn::Mul(touching, touching)), hn::Gt(squared, zero));
        const auto mask = hn::And(hn::And(isNear, hn::Gt(enlarged, zero)), hn::FirstN(d, last - i));
        if (hn::AllFalse(d, mask)) {
            continue;
        }
        const std::size_t at = scratch.count;
        storeSelectedPlaces(d, i, mask, &scratch.position[at]);
        storeSelected(d, towardsX, mask, &scratch.towardsX[at]);
        storeSelected(d, towardsY, mask, &scratch.towardsY[at]);
        storeSelected(d, z, mask, &scratch.z[at]);
        storeSelected(d, enlarged, mask, &scratch.enlarged[at]);
        scratch.count = at + hn::CountTrue(d, mask);
    }
}

/// What does not change from plane to plane. Returns the smallest planar distance, Å.
double prepareNeighbours(sSurfaceScratch& scratch) {
    const cDoubles d;
    auto nearest = hn::Set(d, 1e30);
    for (std::size_t i = 0; i < scratch.padded; i += hn::Lanes(d)) {
        const auto x = hn::LoadU(d, &scratch.towardsX[i]);
        const auto y = hn::LoadU(d, &scratch.towardsY[i]);
        const auto enlarged = hn::LoadU(d, &scratch.enlarged[i]);
        const auto squared = hn::Add(hn::Mul(x, x), hn::Mul(y, y));
        const auto distance = hn::Sqrt(squared);
        nearest = hn::Min(nearest, distance);
        hn::StoreU(hn::Sub(squared, hn::Mul(enlarged, enlarged)), d, &scratch.offset[i]);
        hn::StoreU(hn::Div(hn::Set(d, 0.5), distance), d, &scratch.halfOverDistance[i]);
    }
    return hn::GetLane(hn::MinOfLanes(d, nearest));
}

/// Cosines of the half-angles that the neighbours cover of a circle with the given radius at the
/// given height: below -1 a neighbour covers it wholly, above 1 not at all. Returns the smallest.
inline double computeCosines(sSurfaceScratch& scratch, double height, double radius) {
    const cDoubles d;
    const auto planeHeight = hn::Set(d, height);
    const auto squaredRadius = hn::Set(d, radius * radius);
    const auto overRadius = hn::Set(d, 1.0 / radius);
    auto smallest = hn::Set(d, 1e30);
    for (std::size_t i = 0; i < scratch.padded; i += hn::Lanes(d)) {
        const auto dz = hn::Sub(planeHeight, hn::LoadU(d, &scratch.z[i]));
        const auto sum =
            hn::MulAdd(dz, dz, hn::Add(squaredRadius, hn::LoadU(d, &scratch.offset[i])));
        const auto cosine =
            hn::Mul(hn::Mul(sum, overRadius), hn::LoadU(d, &scratch.halfOverDistance[i]));
        hn::StoreU(cosine, d, &scratch.cosine[i]);
        smallest = hn::Min(smallest, cosine);
    }
    return hn::GetLane(hn::MinOfLanes(d, smallest));
}

/// Directions of all neighbours, radians in [-π, π].
inline void computeAngles(sSurfaceScratch& scratch) {
    const cDoubles d;
    const auto zero = hn::Zero(d);
    for (std::size_t i = 0; i < scratch.padded; i += hn::Lanes(d)) {
        const auto x = hn::LoadU(d, &scratch.towardsX[i]);
        const auto y = hn::LoadU(d, &scratch.towardsY[i]);
        const auto absX = hn::Abs(x);
        const auto absY = hn::Abs(y);
        const auto isSteep = hn::Gt(absY, absX);
        const auto tangent = hn::Div(hn::Min(absX, absY), hn::Max(absX, absY));
        auto angle = hn::Atan(d, tangent);
        angle = hn::IfThenElse(isSteep, hn::Sub(hn::Set(d, 0.5 * pi), angle), angle);
        angle = hn::IfThenElse(hn::Lt(x, zero), hn::Sub(hn::Set(d, pi), angle), angle);
        angle = hn::IfThenElse(hn::Lt(y, zero), hn::Neg(angle), angle);
        hn::StoreU(angle, d, &scratch.angle[i]);
    }
}

/// Whether two arcs overlap or touch, from the cosines of their half-angles: whether the sum of the
/// half-angles reaches the angle between their centres. The sine of that angle counts by its sign.
inline bool linkHolds(double cosine, double nextCosine, double cosineToNext, double sineToNext) {
    const bool isReflex = sineToNext < 0.0;
    const bool isSumReflex = cosine + nextCosine < 0.0;
    if (isSumReflex != isReflex) {
        return isSumReflex;
    }
    // The cosine of the sum is the product of the cosines less that of the sines; the comparison
    // with it is made without its root.
    const double difference = cosine * nextCosine - cosineToNext;
    const double squaredSines = (1.0 - cosine * cosine) * (1.0 - nextCosine * nextCosine);
    const double squaredDifference = difference * difference;
    return isReflex ? difference >= 0.0 && squaredSines <= squaredDifference
                    : difference <= 0.0 || squaredSines >= squaredDifference;
}

/// Whether the ring that covered an earlier plane covers this one too.
inline bool ringCovers(const sSurfaceScratch& scratch) {
    const sArcRing& ring = scratch.ring;
    if (ring.links == 0) {
        return false;
    }
    double cosine = scratch.cosine[ring.neighbour[0]];
    for (std::size_t i = 0; i < ring.links; ++i) {
        const double next = scratch.cosine[ring.neighbour[i + 1]];
        if (!(std::abs(cosine) < 1.0 - uncertainCosine) ||
            !linkHolds(cosine, next, ring.cosineToNext[i], ring.sineToNext[i])) {
            return false;
        }
        cosine = next;
    }
    return true;
}

/// Collects the neighbours that cover an arc of the plane's circle, padded with arcs of no width.
/// Returns false when some cosine comes too near to 1 or -1.
inline bool collectArcs(sSurfaceScratch& scratch) {
    const cDoubles d;
    const auto one = hn::Set(d, 1.0);
    const auto uncertain = hn::Set(d, uncertainCosine);
    auto isUncertain = hn::FirstN(d, 0);
    std::size_t arcs = 0;
    for (std::size_t i = 0; i < scratch.padded; i += hn::Lanes(d)) {
        const auto cosine = hn::LoadU(d, &scratch.cosine[i]);
        isUncertain =
            hn::Or(isUncertain, hn::Lt(hn::Abs(hn::Sub(hn::Abs(cosine), one)), uncertain));
        const auto covers = hn::Lt(cosine, one);
        storeSelectedPlaces(d, i, covers, &scratch.arcOwner[arcs]);
        storeSelected(d, cosine, covers, &scratch.arcCosine[arcs]);
        storeSelected(d, hn::LoadU(d, &scratch.angle[i]), covers, &scratch.arcAngle[arcs]);
        arcs += hn::CountTrue(d, covers);
    }
    hn::StoreU(one, d, &scratch.arcCosine[arcs]);
    scratch.arcs = arcs;
    return hn::AllFalse(d, isUncertain);
}

/// Position of a value that stands among the first `count`.
inline std::size_t positionOf(const std::vector<double>& values, std::size_t count, double value) {
    const cDoubles d;
    const auto wanted = hn::Set(d, value);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto found = hn::FindFirstTrue(d, hn::Eq(hn::LoadU(d, &values[i]), wanted));
        if (found >= 0) {
            return i + static_cast<std::size_t>(found);
        }
    }
    return 0;
}

/// Start and end of every arc, turned so that the widest arc is centred at 0.
inline void computeArcs(sSurfaceScratch& scratch, double widestAngle) {
    const cDoubles d;
    const auto one = hn::Set(d, 1.0);
    const auto origin = hn::Set(d, widestAngle);
    const auto fullTurn = hn::Set(d, twoPi);
    hn::StoreU(origin, d, &scratch.arcAngle[scratch.arcs]);
    for (std::size_t i = 0; i < scratch.arcs; i += hn::Lanes(d)) {
        const auto cosine = hn::Max(hn::Neg(one), hn::LoadU(d, &scratch.arcCosine[i]));
        const auto half = hn::Acos(d, cosine);
        auto centre = hn::Sub(hn::LoadU(d, &scratch.arcAngle[i]), origin);
        centre = hn::IfThenElse(hn::Lt(centre, hn::Zero(d)), hn::Add(centre, fullTurn), centre);
        hn::StoreU(hn::Sub(centre, half), d, &scratch.arcStart[i]);
        hn::StoreU(hn::Add(centre, half), d, &scratch.arcEnd[i]);
    }
}

/// The angle that no arc covers, radians. The widest arc is centred at 0 with half-angle `half`, so
/// no other arc needs to be followed across 0. Each step goes to the end of the arc that reaches
/// furthest among those that begin within what is covered, or across the gap to the next arc.
inline double sweepFreeAngle(sSurfaceScratch& scratch, double half) {
    const cDoubles d;
    const double limit = twoPi - half;
    const auto to = hn::Set(d, limit);
    double covered = half;
    double free = 0.0;
    scratch.sweepEnds.clear();
    while (covered < limit) {
        const auto from = hn::Set(d, covered);
        auto best = from;
        auto next = to;
        for (std::size_t i = 0; i < scratch.arcs; i += hn::Lanes(d)) {
            const auto start = hn::LoadU(d, &scratch.arcStart[i]);
            const auto isReached = hn::Le(start, from);
            best = hn::Max(best, hn::IfThenElse(isReached, hn::LoadU(d, &scratch.arcEnd[i]), from));
            next = hn::Min(next, hn::IfThenElse(isReached, to, start));
        }
        const double furthest = hn::GetLane(hn::MaxOfLanes(d, best));
        if (furthest > covered) {
            scratch.sweepEnds.push_back(furthest);
            covered = furthest;
        } else {
            const double nextStart = hn::GetLane(hn::MinOfLanes(d, next));
            free += nextStart - covered;
            covered = nextStart;
        }
    }
    return free;
}

/// Appends the link from the last neighbour of the ring to another, in turning order.
inline void appendLink(sSurfaceScratch& scratch, std::size_t to) {
    sArcRing& ring = scratch.ring;
    const std::size_t from = ring.neighbour[ring.links];
    const double x = scratch.towardsX[from];
    const double y = scratch.towardsY[from];
    const double nextX = scratch.towardsX[to];
    const double nextY = scratch.towardsY[to];
    ring.cosineToNext[ring.links] = (x * nextX + y * nextY) * 4.0 * scratch.halfOverDistance[from] *
                                    scratch.halfOverDistance[to];
    ring.sineToNext[ring.links] = x * nextY - y * nextX;
    ring.neighbour[++ring.links] = to;
}

/// Remembers the arcs that a gapless sweep went along, the widest arc first. One arc alone is no
/// ring: the angle from it to itself would read as nothing instead of a whole turn.
inline void rememberRing(sSurfaceScratch& scratch, std::size_t widest) {
    sArcRing& ring = scratch.ring;
    ring.links = 0;
    if (scratch.sweepEnds.empty() || scratch.sweepEnds.size() + 1 > longestRing) {
        return;
    }
    ring.neighbour[0] = scratch.arcOwner[widest];
    for (const double end : scratch.sweepEnds) {
        appendLink(scratch, scratch.arcOwner[positionOf(scratch.arcEnd, scratch.arcs, end)]);
    }
    appendLink(scratch, ring.neighbour[0]);
}

/// What is free of a circle that some neighbour crosses.
inline sFreeAngle freeAngleBetweenArcs(sSurfaceScratch& scratch, double smallestCosine) {
    if (!scratch.anglesAreKnown) {
        computeAngles(scratch);
        scratch.anglesAreKnown = true;
    }
    if (!collectArcs(scratch)) {
        return {eSlice::uncertain, 0};
    }
    const std::size_t widest = positionOf(scratch.arcCosine, scratch.arcs, smallestCosine);
    computeArcs(scratch, scratch.arcAngle[widest]);
    const double free = freeAnglePartsPerRadian * sweepFreeAngle(scratch, scratch.arcEnd[widest]);
    if (free < 1.0 - angleError) {
        rememberRing(scratch, widest);
        return {eSlice::covered, 0};
    }
    const double whole = std::floor(free);
    if (free - whole < angleError || whole + 1.0 - free < angleError) {
        return {eSlice::uncertain, 0};
    }
    return {eSlice::exposed, static_cast<int>(whole)};
}

/// What sSurfaceLoops says of it.
sFreeAngle freeAngle(sSurfaceScratch& scratch, double height, double radius) {
    const double smallestCosine = computeCosines(scratch, height, radius);
    // Gaps that an inexact cosine hides are far below the last digit that counts.
    if (smallestCosine < -1.0 - uncertainCosine || ringCovers(scratch)) {
        return {eSlice::covered, 0};
    }
    if (smallestCosine > 1.0 + uncertainCosine) {
        return {eSlice::untouched, 0};
    }
    return freeAngleBetweenArcs(scratch, smallestCosine);
}

constexpr sSurfaceLoops loops{
    HWY_STR(HWY_NAMESPACE), countRun,  findTouching,
    prepareNeighbours,      freeAngle, complete_arcs::HWY_NAMESPACE::loops};

} // namespace HWY_NAMESPACE
} // namespace kelmo::surface_arcs
HWY_AFTER_NAMESPACE();

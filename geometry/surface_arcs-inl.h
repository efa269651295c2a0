// The vectorised inner loops of the calculations, compiled once per instruction set.
// No include guard: the dispatcher includes this file once for every target.
#include "geometry/surface_kernel.h"

#include <hwy/contrib/math/math-inl.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace surface_arcs {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using cDoubles = hn::ScalableTag<double>;

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;

/// See countInRange() in the kernel's header. The squares are summed in the order of the plain form
/// and without fusing, so that the comparison is exact.
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

/// Calls `visit(position)` for every lane that the mask selects. Going through bits is faster than
/// the compressing stores that some processors have in name only.
template <class D, class M, class Visit>
HWY_INLINE void forEachSelected(D d, M mask, std::size_t firstPosition, Visit visit) {
    std::uint8_t bytes[8] = {};
    hn::StoreMaskBits(d, mask, bytes);
    for (unsigned bits = bytes[0]; bits != 0; bits &= bits - 1U) {
        visit(firstPosition + static_cast<unsigned>(__builtin_ctz(bits)));
    }
}

/// Appends the entries of a run whose enlarged spheres touch the atom's, give or take the margin,
/// to the scratch arrays, which have room for the whole run.
void findTouching(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                  const cCentreGrid::sEntry& atom, double probe, double margin,
                  sSurfaceScratch& scratch) {
    const cDoubles d;
    const auto zero = hn::Zero(d);
    const auto enlargedWithMargin = hn::Set(d, atom.radius + probe + margin);
    for (std::size_t i = first; i < last; i += hn::Lanes(d)) {
        const auto towardsX = hn::Sub(hn::LoadU(d, &columns.x[i]), hn::Set(d, atom.x));
        const auto towardsY = hn::Sub(hn::LoadU(d, &columns.y[i]), hn::Set(d, atom.y));
        const auto z = hn::LoadU(d, &columns.z[i]);
        const auto dz = hn::Sub(z, hn::Set(d, atom.z));
        const auto enlarged = hn::Add(hn::LoadU(d, &columns.radius[i]), hn::Set(d, probe));
        const auto squared = hn::Add(
            hn::Add(hn::Mul(towardsX, towardsX), hn::Mul(towardsY, towardsY)), hn::Mul(dz, dz));
        const auto touching = hn::Add(enlargedWithMargin, enlarged);
        const auto isNear =
            hn::And(hn::Le(squared, hn::Mul(touching, touching)), hn::Gt(squared, zero));
        const auto mask = hn::And(hn::And(isNear, hn::Gt(enlarged, zero)), hn::FirstN(d, last - i));
        forEachSelected(d, mask, i, [&](std::size_t position) {
            const std::size_t at = scratch.count++;
            scratch.position[at] = position;
            scratch.towardsX[at] = columns.x[position] - atom.x;
            scratch.towardsY[at] = columns.y[position] - atom.y;
            scratch.z[at] = columns.z[position];
            scratch.enlarged[at] = probe + columns.radius[position];
        });
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
double computeCosines(sSurfaceScratch& scratch, double height, double radius) {
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
void computeAngles(sSurfaceScratch& scratch) {
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

/// Collects the neighbours that cover an arc of the plane's circle, padded with arcs of no width.
/// Returns whether some cosine comes nearer than `uncertain` to 1 or -1.
bool collectArcs(sSurfaceScratch& scratch, double uncertain) {
    const cDoubles d;
    const auto one = hn::Set(d, 1.0);
    auto isUncertain = hn::FirstN(d, 0);
    std::size_t arcs = 0;
    for (std::size_t i = 0; i < scratch.padded; i += hn::Lanes(d)) {
        const auto cosine = hn::LoadU(d, &scratch.cosine[i]);
        isUncertain = hn::Or(isUncertain,
                             hn::Lt(hn::Abs(hn::Sub(hn::Abs(cosine), one)), hn::Set(d, uncertain)));
        const auto covers = hn::Lt(cosine, one);
        forEachSelected(d, covers, i, [&](std::size_t neighbour) {
            scratch.arcOwner[arcs] = neighbour;
            scratch.arcCosine[arcs] = scratch.cosine[neighbour];
            scratch.arcAngle[arcs] = scratch.angle[neighbour];
            ++arcs;
        });
    }
    hn::StoreU(one, d, &scratch.arcCosine[arcs]);
    scratch.arcs = arcs;
    return !hn::AllFalse(d, isUncertain);
}

/// Start and end of every arc, turned so that the widest arc is centred at 0.
void computeArcs(sSurfaceScratch& scratch, double widestAngle) {
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
double sweepFreeAngle(sSurfaceScratch& scratch, double half) {
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

} // namespace HWY_NAMESPACE
} // namespace surface_arcs
HWY_AFTER_NAMESPACE();

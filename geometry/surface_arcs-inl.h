// The vectorised inner loops of the surface calculation, compiled once per instruction set.
// No include guard: the dispatcher includes this file once for every target.
#include "geometry/surface_kernel.h"

#include <hwy/contrib/math/math-inl.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace surface_arcs {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using cDoubles = hn::ScalableTag<double>;

/// Cosines of the half-angles that the neighbours cover of a circle with the given radius at the given
/// height: below -1 a neighbour covers it wholly, above 1 not at all. Returns the smallest.
double computeCosines(sSurfaceScratch& scratch, double height, double radius) {
    const cDoubles d;
    const auto planeHeight = hn::Set(d, height);
    const auto squaredRadius = hn::Set(d, radius * radius);
    const auto overRadius = hn::Set(d, 1.0 / radius);
    auto smallest = hn::Set(d, 2.0);
    for (std::size_t i = 0; i < scratch.padded; i += hn::Lanes(d)) {
        const auto dz = hn::Sub(planeHeight, hn::LoadU(d, &scratch.z[i]));
        const auto sum = hn::MulAdd(
            dz, dz, hn::Add(squaredRadius, hn::LoadU(d, &scratch.offset[i])));
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
        angle = hn::IfThenElse(isSteep, hn::Sub(hn::Set(d, 1.5707963267948966), angle), angle);
        angle = hn::IfThenElse(hn::Lt(x, zero), hn::Sub(hn::Set(d, 3.141592653589793), angle), angle);
        angle = hn::IfThenElse(hn::Lt(y, zero), hn::Neg(angle), angle);
        hn::StoreU(angle, d, &scratch.angle[i]);
    }
}

/// Start and end of every crossing arc, turned so that the widest arc is centred at 0.
void computeArcs(sSurfaceScratch& scratch, std::size_t padded, double widestAngle) {
    const cDoubles d;
    const auto one = hn::Set(d, 1.0);
    const auto origin = hn::Set(d, widestAngle);
    const auto fullTurn = hn::Set(d, 6.283185307179586);
    for (std::size_t i = 0; i < padded; i += hn::Lanes(d)) {
        const auto cosine = hn::Max(hn::Neg(one), hn::LoadU(d, &scratch.arcCosine[i]));
        const auto half = hn::Acos(d, cosine);
        auto centre = hn::Sub(hn::LoadU(d, &scratch.arcAngle[i]), origin);
        centre = hn::IfThenElse(hn::Lt(centre, hn::Zero(d)), hn::Add(centre, fullTurn), centre);
        hn::StoreU(hn::Sub(centre, half), d, &scratch.arcStart[i]);
        hn::StoreU(hn::Add(centre, half), d, &scratch.arcEnd[i]);
    }
}

/// Among the arcs that begin by `covered`, how far the furthest reaches (`covered` when none gets
/// further), and where the first of the others begins (`limit` when none does before).
void nextStep(const sSurfaceScratch& scratch, std::size_t padded, double covered, double limit,
              double* furthest, double* nextStart) {
    const cDoubles d;
    const auto from = hn::Set(d, covered);
    const auto to = hn::Set(d, limit);
    auto best = from;
    auto next = to;
    for (std::size_t i = 0; i < padded; i += hn::Lanes(d)) {
        const auto start = hn::LoadU(d, &scratch.arcStart[i]);
        const auto reachable = hn::Le(start, from);
        best = hn::Max(best, hn::IfThenElse(reachable, hn::LoadU(d, &scratch.arcEnd[i]), from));
        next = hn::Min(next, hn::IfThenElse(reachable, to, start));
    }
    *furthest = hn::GetLane(hn::MaxOfLanes(d, best));
    *nextStart = hn::GetLane(hn::MinOfLanes(d, next));
}

/// The angle that no arc covers, radians. The widest arc is centred at 0 with half-angle `half`, so no
/// other arc needs to be followed across 0. Notes the arcs that a gapless sweep went along.
double sweepFreeAngle(sSurfaceScratch& scratch, std::size_t padded, double half) {
    const double limit = 6.283185307179586 - half;
    double covered = half;
    double free = 0.0;
    scratch.ringCandidate.clear();
    while (covered < limit) {
        double furthest = 0.0;
        double nextStart = 0.0;
        nextStep(scratch, padded, covered, limit, &furthest, &nextStart);
        if (furthest > covered) {
            for (std::size_t i = 0; i < padded; ++i) {
                if (scratch.arcEnd[i] == furthest) {
                    scratch.ringCandidate.push_back(i);
                    break;
                }
            }
            covered = furthest;
        } else {
            free += nextStart - covered;
            covered = nextStart;
        }
    }
    return free;
}

} // namespace HWY_NAMESPACE
} // namespace surface_arcs
HWY_AFTER_NAMESPACE();

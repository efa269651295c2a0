// The vectorised inner loops of the complete surface, compiled once per instruction set.
// No include guard: the dispatcher includes this file once for every target.
#include "geometry/complete_loops.h"

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#ifndef KELMO_COMPLETE_ARCS_ONCE
#define KELMO_COMPLETE_ARCS_ONCE

namespace kelmo::complete_arcs {

constexpr float pi = 3.14159265F;

// Directions and half-arcs are rounded to whole units of 2^-21 rad. Sums and differences of such
// angles are exact up to 8 rad, so that neither the order of the arcs nor one inside another can
// move a last digit.
constexpr float angleUnit = 1.0F / (1 << 21);
constexpr float fullTurn = 13176795.0F * angleUnit;
// Adding and taking it away again rounds an angle from 0 to pi to whole units.
constexpr float roundsToUnits = 4.0F;

// What rounding may leave between arcs that meet; not more than that is no gap.
constexpr float largestSlit = 16.0F * angleUnit;

// Half of an arc that is not there: it ends long before it begins, on either side of all others.
constexpr float absentHalf = -50.0F;

// Caps that point all but along the axis of the planes count as pointing this far from it, radians.
constexpr float smallestTilt = 1e-4F;

// Caps wider than that may make others superfluous, cosine; for those that they hold with this much
// to spare, radians. With more of such caps in one place than are tried, none is dropped.
constexpr float wideCap = 0.5F;
constexpr float spareAngle = 2e-3F;
constexpr std::size_t mostWideCaps = 32;

/// A place behind the last; above every angle.
constexpr float unused = 100.0F;

/// For each set of lanes, as bits, their numbers one after the other.
constexpr std::array<std::array<std::uint8_t, 8>, 256> tabulateChosenLanes() {
    std::array<std::array<std::uint8_t, 8>, 256> table{};
    for (unsigned bits = 0; bits < 256; ++bits) {
        std::size_t count = 0;
        for (std::uint8_t lane = 0; lane < 8; ++lane) {
            if ((bits >> lane & 1U) != 0) {
                table[bits][count++] = lane;
            }
        }
    }
    return table;
}
inline constexpr auto chosenLanes = tabulateChosenLanes();

/// A cap that may hold others: where it points, cosine and sine of its angular radius less what is
/// to spare.
struct sWideCap {
    float x, y, z;
    float cosine, sine;
};

} // namespace kelmo::complete_arcs

#endif // KELMO_COMPLETE_ARCS_ONCE

HWY_BEFORE_NAMESPACE();
namespace kelmo::complete_arcs {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using cFloats = hn::ScalableTag<float>;
using cWholes = hn::ScalableTag<std::int32_t>;
using tFloats = hn::Vec<cFloats>;
using tMask = hn::Mask<cFloats>;

/// A polynomial by its coefficients, the constant first. Never fused.
HWY_INLINE tFloats polynomial(tFloats, float last) {
    return hn::Set(cFloats(), last);
}
template <typename... More>
HWY_INLINE tFloats polynomial(tFloats x, float first, More... more) {
    return hn::Add(hn::Set(cFloats(), first), hn::Mul(x, polynomial(x, more...)));
}

/// Writes the lanes that the mask selects to consecutive places from `to` on, where there is room
/// for a whole vector. Highway's Compress() copies its table to the stack every time.
HWY_INLINE void storeChosen(tFloats values, tMask mask, float* to) {
#if HWY_TARGET == HWY_AVX3
    hn::StoreU(tFloats{_mm512_maskz_compress_ps(mask.raw, values.raw)}, cFloats(), to);
#elif HWY_TARGET == HWY_AVX2
    const auto bits = static_cast<unsigned>(_mm256_movemask_ps(mask.raw));
    const __m128i lanes =
        _mm_loadl_epi64(reinterpret_cast<const __m128i*>(chosenLanes[bits].data()));
    hn::StoreU(tFloats{_mm256_permutevar8x32_ps(values.raw, _mm256_cvtepu8_epi32(lanes))},
               cFloats(), to);
#else
    const cFloats f;
    alignas(64) std::array<float, widestFloats> lanes;
    hn::Store(values, f, lanes.data());
    std::uint8_t bytes[8] = {};
    hn::StoreMaskBits(f, mask, bytes);
    for (unsigned bits = bytes[0]; bits != 0; bits &= bits - 1U) {
        *to++ = lanes[static_cast<unsigned>(__builtin_ctz(bits))];
    }
#endif
}

/// See sCompleteLoops.
void findCaps(const sSphereColumns& spheres, std::size_t first, std::size_t last,
              const sFixedSphere& atom, sCompleteScratch& scratch) {
    const cFloats f;
    const cWholes w;
    const auto zero = hn::Zero(f);
    const auto radius = hn::Set(f, atom.radius);
    const auto difference = [&](const std::vector<std::int32_t>& column, std::size_t i,
                                std::int32_t own) {
        return hn::ConvertTo(f, hn::Sub(hn::LoadU(w, &column[i]), hn::Set(w, own)));
    };
    for (std::size_t i = first; i < last; i += hn::Lanes(f)) {
        const auto x = difference(spheres.x, i, atom.x);
        const auto y = difference(spheres.y, i, atom.y);
        const auto z = difference(spheres.z, i, atom.z);
        const auto squared = hn::Add(hn::Add(hn::Mul(x, x), hn::Mul(y, y)), hn::Mul(z, z));
        const auto other = hn::LoadU(f, &spheres.radius[i]);
        const auto farthest = hn::Add(radius, other);
        const auto excess = hn::Sub(radius, other);
        const auto nearest = hn::Mul(excess, excess);
        const auto meets =
            hn::And(hn::And(hn::Lt(squared, hn::Mul(farthest, farthest)), hn::Gt(other, zero)),
                    hn::FirstN(f, last - i));
        const auto crosses = hn::And(meets, hn::Gt(squared, nearest));
        const auto isInside = hn::AndNot(crosses, meets);
        if (!hn::AllFalse(f, isInside)) {
            scratch.isEnclosed |= !hn::AllFalse(f, hn::And(isInside, hn::Lt(excess, zero)));
            scratch.atSamePlace +=
                static_cast<unsigned>(hn::CountTrue(f, hn::And(isInside, hn::Eq(excess, zero))));
        }
        if (hn::AllFalse(f, crosses)) {
            continue;
        }
        // The plane through the circle in which the spheres cross, times the distance.
        const auto depth = hn::Mul(hn::Set(f, 0.5F), hn::Add(squared, hn::Mul(excess, farthest)));
        const std::size_t at = scratch.count;
        storeChosen(x, crosses, &scratch.x[at]);
        storeChosen(y, crosses, &scratch.y[at]);
        storeChosen(z, crosses, &scratch.z[at]);
        storeChosen(depth, crosses, &scratch.cosine[at]);
        scratch.count = at + hn::CountTrue(f, crosses);
    }
}

/// Divides what has been found by the lengths.
inline void normaliseCaps(sCompleteScratch& scratch, float radius) {
    const cFloats f;
    const auto one = hn::Set(f, 1.0F);
    const auto overRadius = hn::Set(f, 1.0F / radius);
    hn::StoreU(one, f, &scratch.x[scratch.count]);
    hn::StoreU(hn::Zero(f), f, &scratch.y[scratch.count]);
    hn::StoreU(hn::Zero(f), f, &scratch.z[scratch.count]);
    hn::StoreU(one, f, &scratch.cosine[scratch.count]);
    for (std::size_t i = 0; i < scratch.count; i += hn::Lanes(f)) {
        const auto x = hn::LoadU(f, &scratch.x[i]);
        const auto y = hn::LoadU(f, &scratch.y[i]);
        const auto z = hn::LoadU(f, &scratch.z[i]);
        const auto squared = hn::Add(hn::Add(hn::Mul(x, x), hn::Mul(y, y)), hn::Mul(z, z));
        const auto overDistance = hn::Div(one, hn::Sqrt(squared));
        hn::StoreU(hn::Mul(x, overDistance), f, &scratch.x[i]);
        hn::StoreU(hn::Mul(y, overDistance), f, &scratch.y[i]);
        hn::StoreU(hn::Mul(z, overDistance), f, &scratch.z[i]);
        const auto depth = hn::Mul(hn::LoadU(f, &scratch.cosine[i]), overDistance);
        hn::StoreU(hn::Mul(depth, overRadius), f, &scratch.cosine[i]);
    }
}

/// The wide caps among those found; returns their number, 0 for too many.
inline std::size_t collectWideCaps(const sCompleteScratch& scratch,
                                   std::array<sWideCap, mostWideCaps>& wideCaps) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < scratch.count; ++i) {
        const float cosine = scratch.cosine[i];
        if (cosine < wideCap) {
            if (count == mostWideCaps) {
                return 0;
            }
            const float sine = std::sqrt(std::max(0.0F, 1.0F - cosine * cosine));
            wideCaps[count++] = {scratch.x[i], scratch.y[i], scratch.z[i],
                                 cosine + sine * spareAngle, sine - cosine * spareAngle};
        }
    }
    return count;
}

/// Drops caps that lie in wide ones.
inline void dropHeldCaps(sCompleteScratch& scratch) {
    const cFloats f;
    std::array<sWideCap, mostWideCaps> wideCaps;
    const std::size_t wide = collectWideCaps(scratch, wideCaps);
    const std::size_t count = scratch.count;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; i += hn::Lanes(f)) {
        const auto x = hn::LoadU(f, &scratch.x[i]);
        const auto y = hn::LoadU(f, &scratch.y[i]);
        const auto z = hn::LoadU(f, &scratch.z[i]);
        const auto cosine = hn::LoadU(f, &scratch.cosine[i]);
        const auto squaredSine = hn::Sub(hn::Set(f, 1.0F), hn::Mul(cosine, cosine));
        const auto sine = hn::Sqrt(hn::Max(hn::Zero(f), squaredSine));
        auto isKept = hn::FirstN(f, count - i);
        for (std::size_t k = 0; k < wide; ++k) {
            const sWideCap& cap = wideCaps[k];
            const auto capCosine = hn::Set(f, cap.cosine);
            const auto between =
                hn::Add(hn::Add(hn::Mul(x, hn::Set(f, cap.x)), hn::Mul(y, hn::Set(f, cap.y))),
                        hn::Mul(z, hn::Set(f, cap.z)));
            const auto ofDifference =
                hn::Add(hn::Mul(cosine, capCosine), hn::Mul(sine, hn::Set(f, cap.sine)));
            const auto isHeld = hn::And(hn::Ge(between, ofDifference), hn::Ge(cosine, capCosine));
            isKept = hn::AndNot(isHeld, isKept);
        }
        for (auto* values : {&scratch.x, &scratch.y, &scratch.z, &scratch.cosine}) {
            storeChosen(hn::LoadU(f, &(*values)[i]), isKept, &(*values)[kept]);
        }
        kept += hn::CountTrue(f, isKept);
    }
    scratch.count = kept;
}

/// Direction of a vector, radians in [-pi, pi] in whole units; 0 for the vector of no length. The
/// polynomial is the arc tangent on [0, 1] to 4e-8.
HWY_INLINE tFloats directionOf(tFloats x, tFloats y) {
    const cFloats f;
    const auto zero = hn::Zero(f);
    const auto absX = hn::Abs(x);
    const auto absY = hn::Abs(y);
    const auto larger = hn::Max(hn::Max(absX, absY), hn::Set(f, 1e-30F));
    const auto tangent = hn::Div(hn::Min(absX, absY), larger);
    auto angle = hn::Mul(tangent, polynomial(hn::Mul(tangent, tangent), 0.999999340F, -0.333298725F,
                                             0.199466731F, -0.139090878F, 0.0964323255F,
                                             -0.0559250968F, 0.0218710840F, -0.00405665439F));
    angle = hn::IfThenElse(hn::Gt(absY, absX), hn::Sub(hn::Set(f, 0.5F * pi), angle), angle);
    angle = hn::IfThenElse(hn::Lt(x, zero), hn::Sub(hn::Set(f, pi), angle), angle);
    const auto rounds = hn::Set(f, roundsToUnits);
    angle = hn::Sub(hn::Add(angle, rounds), rounds);
    return hn::IfThenElse(hn::Lt(y, zero), hn::Neg(angle), angle);
}

/// Level, tilt and direction of every cap.
inline void projectCaps(sCompleteScratch& scratch) {
    const cFloats f;
    for (std::size_t i = 0; i < scratch.count; i += hn::Lanes(f)) {
        const auto x = hn::LoadU(f, &scratch.x[i]);
        const auto y = hn::LoadU(f, &scratch.y[i]);
        const auto planar = hn::Sqrt(hn::Add(hn::Mul(x, x), hn::Mul(y, y)));
        const auto overPlanar =
            hn::Div(hn::Set(f, 1.0F), hn::Max(planar, hn::Set(f, smallestTilt)));
        hn::StoreU(hn::Mul(hn::LoadU(f, &scratch.cosine[i]), overPlanar), f, &scratch.level[i]);
        hn::StoreU(hn::Mul(hn::LoadU(f, &scratch.z[i]), overPlanar), f, &scratch.tilt[i]);
        hn::StoreU(directionOf(x, y), f, &scratch.direction[i]);
    }
}

/// Orders the caps by direction: each goes to the place after all those before it. The order of
/// equal ones makes no difference to the result.
inline void orderCaps(sCompleteScratch& scratch) {
    const cFloats f;
    const auto nothing = hn::Set(f, unused);
    hn::StoreU(nothing, f, &scratch.direction[scratch.count]);
    for (std::size_t i = 0; i < scratch.count; i += hn::Lanes(f)) {
        hn::StoreU(nothing, f, &scratch.orderedDirection[i]);
    }
    for (std::size_t j = 0; j < scratch.count; ++j) {
        const float direction = scratch.direction[j];
        const auto own = hn::Set(f, direction);
        std::size_t place = 0;
        for (std::size_t i = 0; i < scratch.count; i += hn::Lanes(f)) {
            place += hn::CountTrue(f, hn::Lt(hn::LoadU(f, &scratch.direction[i]), own));
        }
        while (scratch.orderedDirection[place] != unused) {
            ++place;
        }
        scratch.orderedDirection[place] = direction;
        scratch.orderedLevel[place] = scratch.level[j];
        scratch.orderedTilt[place] = scratch.tilt[j];
    }
}

/// Cosines of the half-arcs in as many planes as a vector has lanes, of those caps that have an arc
/// in one of them. The planes are in the middle of slabs of the unit sphere, the first of which is
/// given. Returns the number of arcs.
inline std::size_t cutCaps(sCompleteScratch& scratch, std::size_t slab, std::size_t slabs) {
    const cFloats f;
    // Twice the distances of a plane from both poles, in slabs. There may be fewer slabs than
    // lanes.
    const auto fromBottom = hn::Iota(f, static_cast<float>(slab));
    const auto doubled = hn::Add(hn::Add(fromBottom, fromBottom), hn::Set(f, 1.0F));
    const auto toTop =
        hn::Max(hn::Set(f, 1.0F), hn::Sub(hn::Set(f, 2.0F * static_cast<float>(slabs)), doubled));
    const auto thickness = hn::Set(f, 1.0F / static_cast<float>(slabs));
    const auto aboveBottom = hn::Mul(doubled, thickness);
    const auto belowTop = hn::Mul(toTop, thickness);
    const auto height = hn::Sub(aboveBottom, hn::Set(f, 1.0F));
    const auto one = hn::Set(f, 1.0F);
    const auto overRadius = hn::Div(one, hn::Sqrt(hn::Mul(aboveBottom, belowTop)));
    std::size_t arcs = 0;
    for (std::size_t j = 0; j < scratch.count; ++j) {
        const auto inPlane = hn::Sub(hn::Set(f, scratch.orderedLevel[j]),
                                     hn::Mul(hn::Set(f, scratch.orderedTilt[j]), height));
        const auto cosine = hn::Mul(inPlane, overRadius);
        hn::Store(cosine, f, scratch.arcCosine[arcs].lane.data());
        scratch.arcCap[arcs] = static_cast<std::uint32_t>(j);
        arcs += hn::AllFalse(f, hn::Lt(cosine, one)) ? 0U : 1U;
    }
    return arcs;
}

/// Half of an arc by its cosine plus the angle that rounds it to whole units: `absentHalf` for a
/// cosine of 1 or more, more than a half turn for -1 or less. The polynomial is the arc cosine on
/// [0, 1], divided by the square root of 1 - x, to 9e-8.
HWY_INLINE tFloats roundedHalf(tFloats cosine) {
    const cFloats f;
    const auto zero = hn::Zero(f);
    const auto absolute = hn::Abs(cosine);
    const auto rest = hn::Sub(hn::Set(f, 1.0F), absolute);
    const auto quotient = polynomial(absolute, 1.57079624F, -0.214591089F, 0.0888358861F,
                                     -0.0491974382F, 0.0277629159F, -0.0120033973F, 0.00261172142F);
    auto angle = hn::Mul(hn::Sqrt(hn::Max(rest, zero)), quotient);
    angle = hn::IfThenElse(hn::Gt(rest, zero), angle, hn::Set(f, absentHalf));
    return hn::IfThenElse(hn::Lt(cosine, zero), hn::Sub(hn::Set(f, roundsToUnits + pi), angle),
                          hn::Add(hn::Set(f, roundsToUnits), angle));
}

/// The sum over as many planes as a vector has lanes of what no arc covers, in angle units.
///
/// The arcs stand in the order of their middles. What is free between two neighbouring middles ends
/// at the earliest start of all arcs from there on and begins at the latest end of all arcs up to
/// there, those that reach around once from the other side included. So two passes over the arcs
/// tell, without sorting starts or ends, and all planes go through the same steps.
inline std::int64_t freeUnits(sCompleteScratch& scratch, std::size_t slab, std::size_t slabs) {
    const cFloats f;
    const std::size_t arcs = cutCaps(scratch, slab, slabs);
    const auto rounds = hn::Set(f, roundsToUnits);
    auto earliest = hn::Set(f, unused);
    auto latest = hn::Set(f, -unused);
    for (std::size_t k = arcs; k-- > 0;) {
        const auto half = roundedHalf(hn::Load(f, scratch.arcCosine[k].lane.data()));
        const auto middle = hn::Set(f, scratch.orderedDirection[scratch.arcCap[k]]);
        earliest = hn::Min(earliest, hn::Sub(hn::Add(middle, rounds), half));
        const auto end = hn::Add(hn::Sub(middle, rounds), half);
        latest = hn::Max(latest, end);
        hn::Store(earliest, f, scratch.earliestStart[k].lane.data());
        hn::Store(end, f, scratch.arcEnd[k].lane.data());
    }
    const auto isPresentFrom = hn::Set(f, 0.5F * absentHalf);
    const auto turn = hn::Set(f, fullTurn);
    const auto nextEarliest = hn::Add(earliest, turn);
    auto covered = hn::Sub(latest, turn);
    auto free = hn::Zero(f);
    for (std::size_t k = 0; k < arcs; ++k) {
        const auto end = hn::Load(f, scratch.arcEnd[k].lane.data());
        const auto start = hn::Load(f, scratch.earliestStart[k].lane.data());
        const auto gap = hn::Sub(hn::Min(start, nextEarliest), covered);
        const auto counts =
            hn::And(hn::Gt(gap, hn::Set(f, largestSlit)), hn::Gt(end, isPresentFrom));
        free = hn::Add(free, hn::IfThenElseZero(counts, gap));
        covered = hn::Max(covered, end);
    }
    free = hn::IfThenElse(hn::Gt(latest, isPresentFrom), free, turn);
    const cWholes w;
    const auto units = hn::ConvertTo(w, hn::Mul(free, hn::Set(f, 1.0F / angleUnit)));
    const auto ofSlabs = hn::IfThenElseZero(hn::FirstN(w, slabs - slab), units);
    return hn::GetLane(hn::SumOfLanes(w, ofSlabs));
}

/// See sCompleteLoops.
double sumOfFreeAngles(sCompleteScratch& scratch, std::size_t slabs, float radius) {
    normaliseCaps(scratch, radius);
    dropHeldCaps(scratch);
    projectCaps(scratch);
    orderCaps(scratch);
    std::int64_t units = 0;
    for (std::size_t slab = 0; slab < slabs; slab += hn::Lanes(cFloats())) {
        units += freeUnits(scratch, slab, slabs);
    }
    return static_cast<double>(units) * angleUnit;
}

constexpr sCompleteLoops loops{findCaps, sumOfFreeAngles};

} // namespace HWY_NAMESPACE
} // namespace kelmo::complete_arcs
HWY_AFTER_NAMESPACE();

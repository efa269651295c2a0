// Dispatch per instruction set: the loops are included once for every target.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/surface_arcs-inl.h"
#include <hwy/foreach_target.h>

#include "geometry/surface_arcs-inl.h"

#if HWY_ONCE

#include "geometry/circles.h"
#include "geometry/slice_plane.h"

#include <algorithm>
#include <cmath>

namespace surface_arcs {
HWY_EXPORT(countRun);
HWY_EXPORT(findTouching);
HWY_EXPORT(prepareNeighbours);
HWY_EXPORT(computeCosines);
HWY_EXPORT(computeAngles);
HWY_EXPORT(collectArcs);
HWY_EXPORT(computeArcs);
HWY_EXPORT(sweepFreeAngle);
} // namespace surface_arcs

namespace {

/// Widest vector that any instruction set has, in doubles.
constexpr std::size_t vectorLanes = 8;
/// The largest atom radius that neighbour queries allow for, Å.
constexpr double largestRadius = 2.0;
/// By how much spheres may be apart and still be looked at, Å.
constexpr double touchingMargin = 1e-6;

// Circles smaller and axes nearer than this are left to the plain form, so that the cosines of the
// others are good to 1e-10.
constexpr double smallestCircle = 0.05;
constexpr double smallestAxisDistance = 0.01;
// Where a cosine comes nearer than this to 1 or -1, rounding decides whether circles touch or
// enclose each other; such slices are left to the plain form, too.
constexpr double uncertainCosine = 1e-6;
// Bound on the error of a free angle, in units of its last digit that counts (0.001 rad).
constexpr double angleError = 1e-4;

constexpr std::size_t longestRing = 12;

std::size_t paddedSize(std::size_t count) {
    return (count + vectorLanes - 1) / vectorLanes * vectorLanes;
}

/// Fills the places behind the last neighbour with neighbours that cover nothing.
void padNeighbours(sSurfaceScratch& scratch) {
    scratch.padded = paddedSize(scratch.count);
    for (std::size_t i = scratch.count; i < scratch.padded; ++i) {
        scratch.towardsX[i] = 1e6;
        scratch.towardsY[i] = 0.0;
        scratch.z[i] = 0.0;
        scratch.enlarged[i] = 0.0;
    }
}

/// Whether two arcs whose centres are the link's angle apart overlap or touch, from the cosines of
/// their half-angles alone.
bool linkHolds(const sSurfaceScratch::sLink& link, double cosine, double nextCosine) {
    const bool sumIsAboveHalfTurn = cosine + nextCosine < 0.0;
    if (sumIsAboveHalfTurn != link.isReflex) {
        return sumIsAboveHalfTurn;
    }
    const double sines = std::sqrt((1.0 - cosine * cosine) * (1.0 - nextCosine * nextCosine));
    const double cosineOfSum = cosine * nextCosine - sines;
    return link.isReflex ? cosineOfSum >= link.cosineToNext : cosineOfSum <= link.cosineToNext;
}

/// Whether the ring that covered an earlier plane covers this one too.
bool ringCovers(const sSurfaceScratch& scratch) {
    const auto& ring = scratch.ring;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const double cosine = scratch.cosine[ring[i].neighbour];
        const double nextCosine = scratch.cosine[ring[i + 1 < ring.size() ? i + 1 : 0].neighbour];
        if (!(std::abs(cosine) < 1.0 - uncertainCosine) ||
            !linkHolds(ring[i], cosine, nextCosine)) {
            return false;
        }
    }
    return !ring.empty();
}

/// The link from one neighbour to the next in turning order.
sSurfaceScratch::sLink linkBetween(const sSurfaceScratch& scratch, std::size_t from,
                                   std::size_t to) {
    const double x = scratch.towardsX[from];
    const double y = scratch.towardsY[from];
    const double nextX = scratch.towardsX[to];
    const double nextY = scratch.towardsY[to];
    const double overDistances =
        4.0 * scratch.halfOverDistance[from] * scratch.halfOverDistance[to];
    return {from, (x * nextX + y * nextY) * overDistances, x * nextY - y * nextX < 0.0};
}

/// Remembers the arcs that a gapless sweep went along, the widest arc first. One arc alone is no
/// ring: the angle from it to itself would read as nothing instead of a whole turn.
void rememberRing(sSurfaceScratch& scratch, std::size_t widest) {
    scratch.ring.clear();
    if (scratch.sweepEnds.empty() || scratch.sweepEnds.size() + 1 > longestRing) {
        return;
    }
    std::size_t from = scratch.arcOwner[widest];
    const std::size_t start = from;
    const auto arcEnds = scratch.arcEnd.begin();
    for (const double end : scratch.sweepEnds) {
        const auto arc =
            std::find(arcEnds, arcEnds + static_cast<std::ptrdiff_t>(scratch.arcs), end);
        const std::size_t to = scratch.arcOwner[static_cast<std::size_t>(arc - arcEnds)];
        scratch.ring.push_back(linkBetween(scratch, from, to));
        from = to;
    }
    scratch.ring.push_back(linkBetween(scratch, from, start));
}

} // namespace

void sSurfaceScratch::reserve(std::size_t neighbours) {
    const std::size_t needed = neighbours + 2 * vectorLanes;
    if (needed <= capacity) {
        return;
    }
    capacity = 2 * needed;
    for (auto* values : {&towardsX, &towardsY, &z, &enlarged, &offset, &halfOverDistance, &angle,
                         &cosine, &arcCosine, &arcAngle, &arcStart, &arcEnd}) {
        values->resize(capacity);
    }
    position.resize(capacity);
    arcOwner.resize(capacity);
}

unsigned countInRange(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                      const sPoint& point, double squaredRange) {
    return HWY_DYNAMIC_DISPATCH(surface_arcs::countRun)(columns, first, last, point, squaredRange);
}

cSurfaceKernel::cSurfaceKernel(const cCentreGrid& atomGrid, double probeRadius, double zSlice)
    : grid(atomGrid), probe(probeRadius), slice(zSlice),
      reach(2.0 * probeRadius + 2.0 * largestRadius + 1.0) {
    for (const cCentreGrid::sEntry& entry : grid.entriesInCellOrder()) {
        largestEnlarged = std::max(largestEnlarged, probe + entry.radius);
    }
}

void cSurfaceKernel::gatherTouching(const cCentreGrid::sEntry& atom,
                                    sSurfaceScratch& scratch) const {
    scratch.count = 0;
    scratch.anglesAreKnown = false;
    scratch.allNeighboursAreKnown = false;
    scratch.ring.clear();
    const double touchingReach = probe + atom.radius + largestEnlarged + 1000.0 * touchingMargin;
    const auto box = grid.cellsAround(atom.x, atom.y, atom.z, std::min(reach, touchingReach));
    const cCentreGrid::sEntry* const entries = grid.entriesInCellOrder().data();
    grid.forEachRun(box, [&](const cCentreGrid::sEntry* first, const cCentreGrid::sEntry* last) {
        scratch.reserve(scratch.count + static_cast<std::size_t>(last - first));
        HWY_DYNAMIC_DISPATCH(surface_arcs::findTouching)
        (grid.columnsInCellOrder(), static_cast<std::size_t>(first - entries),
         static_cast<std::size_t>(last - entries), atom, probe, touchingMargin, scratch);
    });
    scratch.reserve(scratch.count);
    if (4.0 * probe < 2.0 * touchingMargin) {
        dropNonNeighbours(atom, scratch);
    }
    padNeighbours(scratch);
    scratch.hasCoaxialNeighbour =
        HWY_DYNAMIC_DISPATCH(surface_arcs::prepareNeighbours)(scratch) < smallestAxisDistance;
}

/// Almost without a probe the margin is wider than the range of a neighbour query: who is outside
/// that range is no neighbour, however near it comes to touching.
void cSurfaceKernel::dropNonNeighbours(const cCentreGrid::sEntry& atom,
                                       sSurfaceScratch& scratch) const {
    const double queryProbe = 2.0 * probe;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < scratch.count; ++i) {
        const cCentreGrid::sEntry& other = grid.entriesInCellOrder()[scratch.position[i]];
        const double dx = atom.x - other.x;
        const double dy = atom.y - other.y;
        const double dz = atom.z - other.z;
        if (atom.radius + queryProbe + other.radius + queryProbe >=
            std::sqrt(dx * dx + dy * dy + dz * dz)) {
            scratch.position[kept] = scratch.position[i];
            for (auto* values :
                 {&scratch.towardsX, &scratch.towardsY, &scratch.z, &scratch.enlarged}) {
                (*values)[kept] = (*values)[i];
            }
            ++kept;
        }
    }
    scratch.count = kept;
}

const std::vector<cCentreGrid::sEntry>&
cSurfaceKernel::allNeighbours(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const {
    if (!scratch.allNeighboursAreKnown) {
        scratch.allNeighbours.clear();
        cResidueAtom query;
        query.x = atom.x;
        query.y = atom.y;
        query.z = atom.z;
        query.radius = atom.radius;
        grid.forEachInRangeByRadius(
            query, 2.0 * probe, largestRadius,
            [&](const cCentreGrid::sEntry& entry) { scratch.allNeighbours.push_back(entry); });
        scratch.allNeighboursAreKnown = true;
    }
    return scratch.allNeighbours;
}

bool cSurfaceKernel::meetsAnyNeighbour(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                       sSurfaceScratch& scratch) const {
    double squaredRadius = 0.0;
    for (std::size_t i = 0; i < scratch.count; ++i) {
        if (plane.meets(grid.entriesInCellOrder()[scratch.position[i]], probe, &squaredRadius)) {
            return true;
        }
    }
    const auto& all = allNeighbours(atom, scratch);
    return std::any_of(all.begin(), all.end(), [&](const cCentreGrid::sEntry& entry) {
        return plane.meets(entry, probe, &squaredRadius);
    });
}

double cSurfaceKernel::plainArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                 sSurfaceScratch& scratch) const {
    std::vector<cCircle> others;
    for (const cCentreGrid::sEntry& entry : allNeighbours(atom, scratch)) {
        double squaredRadius = 0.0;
        if (plane.meets(entry, probe, &squaredRadius)) {
            others.emplace_back(entry.x, entry.y, std::sqrt(squaredRadius));
        }
    }
    if (others.empty()) {
        return 0.0;
    }
    cCircle circle(atom.x, atom.y, plane.circleRadius);
    return plane.areaOf(
        circle.getFreeArcLength(others.data(), static_cast<unsigned>(others.size())));
}

double cSurfaceKernel::sliceArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                 sSurfaceScratch& scratch) const {
    if (scratch.hasCoaxialNeighbour || plane.circleRadius < smallestCircle) {
        return plainArea(plane, atom, scratch);
    }
    const double smallestCosine = HWY_DYNAMIC_DISPATCH(surface_arcs::computeCosines)(
        scratch, plane.height, plane.circleRadius);
    // Gaps that an inexact cosine hides are far below the last digit that counts.
    if (smallestCosine < -1.0 - uncertainCosine || ringCovers(scratch)) {
        return 0.0;
    }
    if (smallestCosine > 1.0 + uncertainCosine) {
        constexpr double fullTurn = 6283 / 1000.0;
        return meetsAnyNeighbour(plane, atom, scratch) ? plane.areaOf(fullTurn * plane.circleRadius)
                                                       : 0.0;
    }
    return arcArea(plane, atom, scratch);
}

/// The area of a slice whose circle some neighbour crosses.
double cSurfaceKernel::arcArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                               sSurfaceScratch& scratch) const {
    if (!scratch.anglesAreKnown) {
        HWY_DYNAMIC_DISPATCH(surface_arcs::computeAngles)(scratch);
        scratch.anglesAreKnown = true;
    }
    if (HWY_DYNAMIC_DISPATCH(surface_arcs::collectArcs)(scratch, uncertainCosine)) {
        return plainArea(plane, atom, scratch);
    }
    const auto cosines = scratch.arcCosine.begin();
    const auto widest = static_cast<std::size_t>(
        std::min_element(cosines, cosines + static_cast<std::ptrdiff_t>(scratch.arcs)) - cosines);
    HWY_DYNAMIC_DISPATCH(surface_arcs::computeArcs)(scratch, scratch.arcAngle[widest]);
    const double free = 1000.0 * HWY_DYNAMIC_DISPATCH(surface_arcs::sweepFreeAngle)(
                                     scratch, scratch.arcEnd[widest]);
    if (free < 1.0 - angleError) {
        rememberRing(scratch, widest);
        return 0.0;
    }
    const double whole = std::floor(free);
    if (free - whole < angleError || whole + 1.0 - free < angleError) {
        return plainArea(plane, atom, scratch);
    }
    return plane.areaOf(whole / 1000.0 * plane.circleRadius);
}

double cSurfaceKernel::areaOf(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const {
    gatherTouching(atom, scratch);
    const double enlarged = probe + atom.radius;
    double area = 0.0;
    int slices = slicesBelow(probe + atom.zMax, atom.z, slice);
    const int planesAbove = (slices - 1) / 2;
    double height = atom.z + slice * planesAbove;
    for (; slices > 0; --slices, height -= slice) {
        const sSlicePlane plane(height, atom.z, enlarged, slice);
        if (plane.cutsSphere) {
            area += sliceArea(plane, atom, scratch);
        }
    }
    return area;
}

#endif // HWY_ONCE

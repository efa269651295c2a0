// Dispatch per instruction set: this file includes itself once for every target.
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
HWY_EXPORT(computeCosines);
HWY_EXPORT(computeAngles);
HWY_EXPORT(computeArcs);
HWY_EXPORT(sweepFreeAngle);
} // namespace surface_arcs

namespace {

/// Widest vector that any instruction set has, in doubles.
constexpr std::size_t vectorLanes = 8;
/// Factor by which radii are multiplied in the query, for every neighbour.
constexpr double largestRadius = 2.0;

// Circles smaller and axes nearer than this are left to the plain form, so that the cosines of the
// others are good to 1e-10.
constexpr double smallestCircle = 0.05;
constexpr double smallestAxisDistance = 0.01;
// An arc whose cosine comes nearer than this to 1 or -1 has an uncertain end.
constexpr double uncertainCosine = 1e-6;
// Bounds on the error of a free angle, in units of its last digit that counts (0.001 rad).
constexpr double usualError = 1e-4;
constexpr double uncertainError = 0.1;

constexpr std::size_t longestRing = 12;

std::size_t paddedSize(std::size_t count) {
    return (count + vectorLanes - 1) / vectorLanes * vectorLanes;
}

template <typename... Vectors>
void growTo(std::size_t size, Vectors&... vectors) {
    const auto grow = [size](auto& vector) {
        if (vector.size() < size) {
            vector.resize(2 * size);
        }
    };
    (grow(vectors), ...);
}

/// Fills the places from `count` to `padded` with neighbours that cover nothing.
void padNeighbours(sSurfaceScratch& scratch) {
    scratch.padded = paddedSize(scratch.count);
    for (std::size_t i = scratch.count; i < scratch.padded; ++i) {
        scratch.towardsX[i] = 1.0;
        scratch.towardsY[i] = 0.0;
        scratch.z[i] = 0.0;
        scratch.offset[i] = 1e30;
        scratch.halfOverDistance[i] = 1.0;
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
        if (!(cosine < 1.0 && nextCosine < 1.0) || !linkHolds(ring[i], cosine, nextCosine)) {
            return false;
        }
    }
    return !ring.empty();
}

/// Remembers the arcs that a gapless sweep went along, the widest arc first.
void rememberRing(sSurfaceScratch& scratch, std::size_t widest) {
    scratch.ring.clear();
    const auto& candidate = scratch.ringCandidate;
    if (candidate.size() + 1 > longestRing) {
        return;
    }
    const auto angleOf = [&](std::size_t i) { return scratch.arcAngle[i]; };
    for (std::size_t i = 0; i <= candidate.size(); ++i) {
        const std::size_t arc = i == 0 ? widest : candidate[i - 1];
        const std::size_t next = i == candidate.size() ? widest : candidate[i];
        double turn = angleOf(next) - angleOf(arc);
        if (turn < 0.0) {
            turn += 6.283185307179586;
        }
        scratch.ring.push_back(
            {scratch.arcOwner[arc], std::cos(turn), turn > 3.141592653589793});
    }
}

/// Collects the neighbours that cover an arc of the plane's circle; returns their number and whether
/// the end of some arc is uncertain.
std::size_t collectArcs(sSurfaceScratch& scratch, bool* isUncertain, std::size_t* widest) {
    std::size_t arcs = 0;
    std::size_t uncertain = 0;
    double widestCosine = 2.0;
    for (std::size_t i = 0; i < scratch.count; ++i) {
        const double cosine = scratch.cosine[i];
        scratch.arcOwner[arcs] = i;
        scratch.arcCosine[arcs] = cosine;
        scratch.arcAngle[arcs] = scratch.angle[i];
        uncertain += std::abs(std::abs(cosine) - 1.0) < uncertainCosine ? 1U : 0U;
        if (cosine < widestCosine) {
            widestCosine = cosine;
            *widest = arcs;
        }
        arcs += cosine < 1.0 ? 1U : 0U;
    }
    *isUncertain = uncertain != 0;
    return arcs;
}

} // namespace

cSurfaceKernel::cSurfaceKernel(const cAtomGrid& atomGrid, double probeRadius, double zSlice)
    : grid(atomGrid), probe(probeRadius), slice(zSlice),
      reach(2.0 * probeRadius + 2.0 * largestRadius + 1.0) {
    for (const cAtomGrid::sEntry& entry : grid.entriesInCellOrder()) {
        largestEnlarged = std::max(largestEnlarged, probe + entry.radius);
    }
}

void cSurfaceKernel::gatherTouching(const cAtomGrid::sEntry& atom, sSurfaceScratch& scratch) const {
    constexpr double margin = 1e-6;
    const double enlarged = probe + atom.radius;
    const double queryProbe = 2.0 * probe;
    scratch.count = 0;
    scratch.hasCoaxialNeighbour = false;
    scratch.anglesAreKnown = false;
    scratch.allNeighboursAreKnown = false;
    scratch.ring.clear();
    const auto box = grid.cellsAround(atom.x, atom.y, atom.z,
                                      std::min(reach, enlarged + largestEnlarged + 1000.0 * margin));
    grid.forEachRun(box, [&](const cAtomGrid::sEntry* first, const cAtomGrid::sEntry* last) {
        const std::size_t room =
            paddedSize(scratch.count + static_cast<std::size_t>(last - first) + 1);
        growTo(room, scratch.towardsX, scratch.towardsY, scratch.z, scratch.offset,
               scratch.halfOverDistance, scratch.angle, scratch.cosine, scratch.touching,
               scratch.arcCosine, scratch.arcAngle, scratch.arcStart, scratch.arcEnd,
               scratch.arcOwner);
        for (; first != last; ++first) {
            const double dx = atom.x - first->x;
            const double dy = atom.y - first->y;
            const double dz = atom.z - first->z;
            const double squared = dx * dx + dy * dy + dz * dz;
            const double otherEnlarged = probe + first->radius;
            const double touchingDistance = enlarged + otherEnlarged + margin;
            if (squared > touchingDistance * touchingDistance || !(otherEnlarged > 0.0)) {
                continue;
            }
            const double distance = std::sqrt(squared);
            if (distance == 0.0 ||
                !(atom.radius + queryProbe + first->radius + queryProbe >= distance)) {
                continue;
            }
            const double planarSquared = dx * dx + dy * dy;
            const double planar = std::sqrt(planarSquared);
            const std::size_t i = scratch.count++;
            scratch.touching[i] = *first;
            scratch.towardsX[i] = -dx;
            scratch.towardsY[i] = -dy;
            scratch.z[i] = first->z;
            scratch.offset[i] = planarSquared - otherEnlarged * otherEnlarged;
            scratch.halfOverDistance[i] = 0.5 / planar;
            scratch.hasCoaxialNeighbour |= planar < smallestAxisDistance;
        }
    });
    growTo(paddedSize(scratch.count + 1), scratch.towardsX, scratch.towardsY, scratch.z,
           scratch.offset, scratch.halfOverDistance, scratch.angle, scratch.cosine,
           scratch.touching, scratch.arcCosine, scratch.arcAngle, scratch.arcStart, scratch.arcEnd,
           scratch.arcOwner);
    padNeighbours(scratch);
}

const std::vector<cAtomGrid::sEntry>&
cSurfaceKernel::allNeighbours(const cAtomGrid::sEntry& atom, sSurfaceScratch& scratch) const {
    if (!scratch.allNeighboursAreKnown) {
        scratch.allNeighbours.clear();
        cResidueAtom query;
        query.x = atom.x;
        query.y = atom.y;
        query.z = atom.z;
        query.radius = atom.radius;
        grid.forEachInRangeByRadius(
            query, 2.0 * probe, largestRadius,
            [&](const cAtomGrid::sEntry& entry) { scratch.allNeighbours.push_back(entry); });
        scratch.allNeighboursAreKnown = true;
    }
    return scratch.allNeighbours;
}

bool cSurfaceKernel::meetsAnyNeighbour(const sSlicePlane& plane, const cAtomGrid::sEntry& atom,
                                       sSurfaceScratch& scratch) const {
    double squaredRadius = 0.0;
    const auto isMet = [&](const cAtomGrid::sEntry& entry) {
        return plane.meets(entry, probe, &squaredRadius);
    };
    const auto touchingEnd =
        scratch.touching.begin() + static_cast<std::ptrdiff_t>(scratch.count);
    if (std::any_of(scratch.touching.begin(), touchingEnd, isMet)) {
        return true;
    }
    const auto& all = allNeighbours(atom, scratch);
    return std::any_of(all.begin(), all.end(), isMet);
}

double cSurfaceKernel::plainArea(const sSlicePlane& plane, const cAtomGrid::sEntry& atom,
                                 sSurfaceScratch& scratch) const {
    std::vector<cCircle> others;
    for (const cAtomGrid::sEntry& entry : allNeighbours(atom, scratch)) {
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

double cSurfaceKernel::sliceArea(const sSlicePlane& plane, const cAtomGrid::sEntry& atom,
                                 sSurfaceScratch& scratch) const {
    const double radius = plane.circleRadius;
    if (scratch.hasCoaxialNeighbour || radius < smallestCircle) {
        return plainArea(plane, atom, scratch);
    }
    const double smallestCosine =
        HWY_DYNAMIC_DISPATCH(surface_arcs::computeCosines)(scratch, plane.height, radius);
    // Gaps that an inexact cosine hides are far below the last digit that counts.
    if (smallestCosine <= -1.0 || ringCovers(scratch)) {
        return 0.0;
    }
    if (smallestCosine > 1.0 + uncertainCosine) {
        constexpr double fullTurn = 6283 / 1000.0;
        return meetsAnyNeighbour(plane, atom, scratch) ? plane.areaOf(fullTurn * radius) : 0.0;
    }
    if (!scratch.anglesAreKnown) {
        HWY_DYNAMIC_DISPATCH(surface_arcs::computeAngles)(scratch);
        scratch.anglesAreKnown = true;
    }
    bool isUncertain = false;
    std::size_t widest = 0;
    const std::size_t arcs = collectArcs(scratch, &isUncertain, &widest);
    if (arcs == 0) {
        return plainArea(plane, atom, scratch);
    }
    const std::size_t padded = paddedSize(arcs);
    growTo(padded, scratch.arcCosine, scratch.arcAngle, scratch.arcStart, scratch.arcEnd,
           scratch.arcOwner);
    std::fill(scratch.arcCosine.begin() + static_cast<std::ptrdiff_t>(arcs),
              scratch.arcCosine.begin() + static_cast<std::ptrdiff_t>(padded), 1.0);
    // Padding arcs repeat the widest one's direction with no width at all.
    std::fill(scratch.arcAngle.begin() + static_cast<std::ptrdiff_t>(arcs),
              scratch.arcAngle.begin() + static_cast<std::ptrdiff_t>(padded),
              scratch.arcAngle[widest]);
    HWY_DYNAMIC_DISPATCH(surface_arcs::computeArcs)(scratch, padded, scratch.arcAngle[widest]);
    const double free = 1000.0 * HWY_DYNAMIC_DISPATCH(surface_arcs::sweepFreeAngle)(
                                     scratch, padded, scratch.arcEnd[widest]);
    const double error = isUncertain ? uncertainError : usualError;
    if (free < 1.0 - error) {
        rememberRing(scratch, widest);
        return 0.0;
    }
    const double whole = std::floor(free);
    if (free - whole < error || whole + 1.0 - free < error) {
        return plainArea(plane, atom, scratch);
    }
    return plane.areaOf(whole / 1000.0 * radius);
}

double cSurfaceKernel::areaOf(const cAtomGrid::sEntry& atom, sSurfaceScratch& scratch) const {
    gatherTouching(atom, scratch);
    const double enlarged = probe + atom.radius;
    double area = 0.0;
    int slices = slicesBelow(probe + atom.zMax, atom.z, slice);
    double height = atom.z + slice * ((slices - 1) / 2);
    for (; slices > 0; --slices, height -= slice) {
        const sSlicePlane plane(height, atom.z, enlarged, slice);
        if (plane.cutsSphere) {
            area += sliceArea(plane, atom, scratch);
        }
    }
    return area;
}

#endif // HWY_ONCE

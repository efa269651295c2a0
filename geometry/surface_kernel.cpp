#include "geometry/surface_kernel.h"

#include "geometry/cut_numbers.h"
#include "geometry/plain_slice.h"
#include "geometry/slice_plane.h"

#include <algorithm>
#include <cmath>

namespace kelmo {

namespace {

/// The largest atom radius that neighbour queries allow for, Å.
constexpr double largestRadius = 2.0;
/// By how much spheres may be apart and still be looked at, Å.
constexpr double touchingMargin = 1e-6;
/// By how much further than spheres can touch cells are looked at, Å: enough for any rounding.
constexpr double cellMargin = 1e-3;

/// Smaller circles (radius in Å) are left to the plain form, so that the cosines of the others are
/// good to 1e-10.
constexpr double smallestCircle = 0.05;
/// Slices of atoms with neighbours whose axes are nearer (Å) are left to the plain form, so that
/// the cosines of the others are good to 1e-10.
constexpr double smallestAxisDistance = 0.01;

/// Planar distance (Å) of what only fills up a vector of neighbours: too far to cover anything.
constexpr double outOfReach = 1e6;

std::size_t paddedSize(std::size_t count) {
    return (count + widestVector - 1) / widestVector * widestVector;
}

/// Fills the places behind the last neighbour with neighbours that cover nothing.
void padNeighbours(sSurfaceScratch& scratch) {
    scratch.padded = paddedSize(scratch.count);
    for (std::size_t i = scratch.count; i < scratch.padded; ++i) {
        scratch.towardsX[i] = outOfReach;
        scratch.towardsY[i] = 0.0;
        scratch.z[i] = 0.0;
        scratch.enlarged[i] = 0.0;
    }
}

} // namespace

void sSurfaceScratch::reserve(std::size_t neighbours) {
    const std::size_t needed = neighbours + 2 * widestVector;
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
    return surfaceLoops().countRun(columns, first, last, point, squaredRange);
}

cSurfaceKernel::cSurfaceKernel(const cCentreGrid& atomGrid, double probeRadius, double zSlice)
    : grid(atomGrid), loops(surfaceLoops()), probe(probeRadius), slice(zSlice),
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
    scratch.ring.links = 0;
    const double touchingReach = probe + atom.radius + largestEnlarged + cellMargin;
    const auto box = grid.cellsAround(atom.x, atom.y, atom.z, std::min(reach, touchingReach));
    const cCentreGrid::sEntry* const entries = grid.entriesInCellOrder().data();
    grid.forEachRun(box, [&](const cCentreGrid::sEntry* first, const cCentreGrid::sEntry* last) {
        scratch.reserve(scratch.count + static_cast<std::size_t>(last - first));
        loops.findTouching(grid.columnsInCellOrder(), static_cast<std::size_t>(first - entries),
                           static_cast<std::size_t>(last - entries), atom, probe, touchingMargin,
                           scratch);
    });
    scratch.reserve(scratch.count);
    if (4.0 * probe < 2.0 * touchingMargin) {
        dropNonNeighbours(atom, scratch);
    }
    padNeighbours(scratch);
    scratch.hasCoaxialNeighbour = loops.prepareNeighbours(scratch) < smallestAxisDistance;
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
    const auto& all = allNeighbours(atom, scratch);
    return plainSliceArea(plane, atom.x, atom.y, all.data(), all.size(), probe, scratch.circles);
}

double cSurfaceKernel::sliceArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                 sSurfaceScratch& scratch) const {
    if (scratch.hasCoaxialNeighbour || plane.circleRadius < smallestCircle) {
        return plainArea(plane, atom, scratch);
    }
    const sFreeAngle free = loops.freeAngle(scratch, plane.height, plane.circleRadius);
    constexpr int fullTurn = 6283; // parts of a radian, cut like every other free angle
    switch (free.slice) {
    case eSlice::covered:
        return 0.0;
    case eSlice::exposed:
        return plane.areaOf(free.parts / freeAnglePartsPerRadian * plane.circleRadius);
    case eSlice::untouched:
        return meetsAnyNeighbour(plane, atom, scratch)
                   ? plane.areaOf(fullTurn / freeAnglePartsPerRadian * plane.circleRadius)
                   : 0.0;
    case eSlice::uncertain:
        break;
    }
    return plainArea(plane, atom, scratch);
}

double cSurfaceKernel::areaOf(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const {
    gatherTouching(atom, scratch);
    double area = 0.0;
    int planes = slicesBelow(probe + atom.zMax, atom.z, slice);
    forEachPlane(planes, atom.z, probe + atom.radius, slice,
                 [&](const sSlicePlane& plane) { area += sliceArea(plane, atom, scratch); });
    return area;
}

} // namespace kelmo

#include "geometry/surface_kernel.h"

#include "geometry/cut_numbers.h"
#include "geometry/plain_slice.h"

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
/// Neighbours whose axes are nearer (Å) are looked at one by one, so that the cosines of the others
/// are good to 1e-10.
constexpr double smallestAxisDistance = 0.01;

/// Planar distance (Å) of what only fills up a vector of neighbours: too far to cover anything.
constexpr double outOfReach = 1e6;

/// By how much a circle must be clear of another (Å) before rounding cannot matter.
constexpr double clearance = 1e-9;

/// In a crowd about so many neighbours are asked first.
constexpr double fewNeighbours = 48.0;

/// Fills the places behind the last neighbour with neighbours that cover nothing.
void padNeighbours(sSurfaceScratch& scratch) {
    scratch.padded = (scratch.count + widestVector - 1) / widestVector * widestVector;
    for (std::size_t i = scratch.count; i < scratch.padded; ++i) {
        scratch.towardsX[i] = outOfReach;
        scratch.towardsY[i] = 0.0;
        scratch.z[i] = 0.0;
        scratch.enlarged[i] = 0.0;
    }
}

/// Keeps the neighbours for which `isKept(i)` is true, in their order.
template <typename IsKept>
void keepNeighbours(sSurfaceScratch& scratch, IsKept isKept) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < scratch.count; ++i) {
        if (isKept(i)) {
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

/// Puts the neighbours aside whose axes all but coincide with the atom's.
void setCoaxialAside(sSurfaceScratch& scratch) {
    keepNeighbours(scratch, [&](std::size_t i) {
        constexpr double limit = smallestAxisDistance + clearance;
        const double x = scratch.towardsX[i];
        const double y = scratch.towardsY[i];
        const bool isCoaxial = x * x + y * y < limit * limit;
        if (isCoaxial) {
            scratch.coaxial.push_back(scratch.position[i]);
        }
        return !isCoaxial;
    });
}

/// How a neighbour covers the atom's circle: wholly, not at all, or neither for sure.
eSlice sliceByOne(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                  const cCentreGrid::sEntry& other, double probeRadius) {
    double squaredRadius = 0.0;
    if (!plane.meets(other, probeRadius, &squaredRadius)) {
        return eSlice::untouched;
    }
    const double radius = std::sqrt(squaredRadius);
    const double dx = atom.x - other.x;
    const double dy = atom.y - other.y;
    const double distance = std::sqrt(dx * dx + dy * dy);
    if (radius > plane.circleRadius + distance + clearance) {
        return eSlice::covered;
    }
    return plane.circleRadius > radius + distance + clearance ? eSlice::untouched
                                                              : eSlice::uncertain;
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

cSurfaceKernel::cSurfaceKernel(const cCentreGrid& atomGrid, double givenProbeRadius,
                               double givenZSlice, std::size_t atomsOfCrowd)
    : grid(atomGrid), loops(surfaceLoops()), probeRadius(givenProbeRadius), zSlice(givenZSlice),
      crowd(atomsOfCrowd), queryReach(2.0 * probeRadius + 2.0 * largestRadius + 1.0) {
    for (const cCentreGrid::sEntry& entry : grid.entriesInCellOrder()) {
        largestEnlarged = std::max(largestEnlarged, probeRadius + entry.radius);
    }
}

bool cSurfaceKernel::isProbeTiny() const {
    return 4.0 * probeRadius < 2.0 * touchingMargin;
}

double cSurfaceKernel::touchingReachOf(const cCentreGrid::sEntry& atom) const {
    return probeRadius + atom.radius + largestEnlarged + cellMargin;
}

/// Gathers the atoms, among those in cells within `cellReach` Å, whose enlarged spheres come as
/// near to the atom's as `margin` Å, or reach as deep into it if that is negative.
void cSurfaceKernel::gather(const cCentreGrid::sEntry& atom, double cellReach, double margin,
                            sSurfaceScratch& scratch) const {
    scratch.count = 0;
    scratch.anglesAreKnown = false;
    scratch.ring.links = 0;
    scratch.coaxial.clear();
    const auto box = grid.cellsAround(atom.x, atom.y, atom.z, std::min(queryReach, cellReach));
    const cCentreGrid::sEntry* const entries = grid.entriesInCellOrder().data();
    grid.forEachRun(box, [&](const cCentreGrid::sEntry* first, const cCentreGrid::sEntry* last) {
        scratch.reserve(scratch.count + static_cast<std::size_t>(last - first));
        loops.findTouching(grid.columnsInCellOrder(), static_cast<std::size_t>(first - entries),
                           static_cast<std::size_t>(last - entries), atom, probeRadius, margin,
                           scratch);
    });
    scratch.reserve(scratch.count);
    if (isProbeTiny()) {
        dropNonNeighbours(atom, scratch);
    }
    padNeighbours(scratch);
    if (loops.prepareNeighbours(scratch) < smallestAxisDistance) {
        setCoaxialAside(scratch);
        padNeighbours(scratch);
        loops.prepareNeighbours(scratch);
    }
}

std::size_t cSurfaceKernel::atomsWithin(const cCentreGrid::sCellBox& box) const {
    std::size_t atoms = 0;
    grid.forEachRun(box, [&](const cCentreGrid::sEntry* first, const cCentreGrid::sEntry* last) {
        atoms += static_cast<std::size_t>(last - first);
    });
    return atoms;
}

/// Calls `visit(plane, number)` for the planes that are not known to be covered, numbered from the
/// top.
template <typename Visit>
void cSurfaceKernel::forEachOpenPlane(const cCentreGrid::sEntry& atom, int planes,
                                      const sSurfaceScratch& scratch, Visit visit) const {
    const int count = planes;
    forEachPlane(planes, atom.z, probeRadius + atom.radius, zSlice, [&](const sSlicePlane& plane) {
        const auto number = static_cast<std::size_t>(count - planes);
        if (scratch.coveredPlanes.empty() || !scratch.coveredPlanes[number]) {
            visit(plane, number);
        }
    });
}

/// Finds out in a crowd which planes are covered already by the neighbours that reach deepest into
/// the atom: whatever the others do, such a plane stays covered.
void cSurfaceKernel::markPlanesCoveredByFew(const cCentreGrid::sEntry& atom, int planes,
                                            sSurfaceScratch& scratch) const {
    scratch.coveredPlanes.clear();
    const double touchingReach = touchingReachOf(atom);
    const auto box = grid.cellsAround(atom.x, atom.y, atom.z, std::min(queryReach, touchingReach));
    const std::size_t candidates = atomsWithin(box);
    if (candidates <= crowd || planes <= 0 || isProbeTiny()) {
        return;
    }
    // As far as to find the few, were the atoms spread evenly over the cells. They may stand closer
    // together, for some atom far away makes all cells large.
    constexpr double volumeOfUnitSphere = 4.18879;
    const double volume = box.volume() * std::pow(grid.cellSize, 3.0);
    const double evenRange =
        std::cbrt(fewNeighbours * volume / (static_cast<double>(candidates) * volumeOfUnitSphere));
    double range = std::min(0.25 * touchingReach, evenRange);
    scratch.coveredPlanes.assign(static_cast<std::size_t>(planes), false);
    for (bool isAnyLeft = true; isAnyLeft && range < 0.5 * touchingReach; range *= 2.0) {
        // The largest atoms are found from as far as the range, others from nearer: they cover
        // less.
        gather(atom, range, range - (probeRadius + atom.radius) - largestEnlarged, scratch);
        isAnyLeft = false;
        forEachOpenPlane(atom, planes, scratch, [&](const sSlicePlane& plane, std::size_t number) {
            const bool isCovered = sliceOf(plane, atom, scratch).slice == eSlice::covered;
            scratch.coveredPlanes[number] = isCovered;
            isAnyLeft = isAnyLeft || !isCovered;
        });
    }
}

/// Almost without a probe the margin is wider than the range of a neighbour query: who is outside
/// that range is no neighbour, however near it comes to touching.
void cSurfaceKernel::dropNonNeighbours(const cCentreGrid::sEntry& atom,
                                       sSurfaceScratch& scratch) const {
    const double queryEnlargement = 2.0 * probeRadius;
    keepNeighbours(scratch, [&](std::size_t i) {
        const cCentreGrid::sEntry& other = grid.entriesInCellOrder()[scratch.position[i]];
        const double dx = atom.x - other.x;
        const double dy = atom.y - other.y;
        const double dz = atom.z - other.z;
        return atom.radius + queryEnlargement + other.radius + queryEnlargement >=
               std::sqrt(dx * dx + dy * dy + dz * dz);
    });
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
            query, 2.0 * probeRadius, largestRadius,
            [&](const cCentreGrid::sEntry& entry) { scratch.allNeighbours.push_back(entry); });
        scratch.allNeighboursAreKnown = true;
    }
    return scratch.allNeighbours;
}

bool cSurfaceKernel::meetsAnyNeighbour(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                       sSurfaceScratch& scratch) const {
    double squaredRadius = 0.0;
    for (std::size_t i = 0; i < scratch.count; ++i) {
        if (plane.meets(grid.entriesInCellOrder()[scratch.position[i]], probeRadius,
                        &squaredRadius)) {
            return true;
        }
    }
    const auto& all = allNeighbours(atom, scratch);
    return std::any_of(all.begin(), all.end(), [&](const cCentreGrid::sEntry& entry) {
        return plane.meets(entry, probeRadius, &squaredRadius);
    });
}

double cSurfaceKernel::plainArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                 sSurfaceScratch& scratch) const {
    const auto& all = allNeighbours(atom, scratch);
    return plainSliceArea(plane, atom.x, atom.y, all.data(), all.size(), probeRadius,
                          scratch.circles);
}

bool cSurfaceKernel::isEnclosed(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                const sSurfaceScratch& scratch) const {
    const auto encloses = [&](std::uint64_t position) {
        return sliceByOne(plane, atom, grid.entriesInCellOrder()[position], probeRadius) ==
               eSlice::covered;
    };
    const auto first = scratch.position.begin();
    return std::any_of(first, first + static_cast<std::ptrdiff_t>(scratch.count), encloses) ||
           std::any_of(scratch.coaxial.begin(), scratch.coaxial.end(), encloses);
}

/// How the coaxial neighbours cover the atom's circle: wholly, not at all, or rounding decides.
eSlice cSurfaceKernel::sliceByCoaxial(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                      const sSurfaceScratch& scratch) const {
    eSlice found = eSlice::untouched;
    for (const std::uint64_t position : scratch.coaxial) {
        const eSlice byOne =
            sliceByOne(plane, atom, grid.entriesInCellOrder()[position], probeRadius);
        if (byOne == eSlice::covered) {
            return byOne;
        }
        found = byOne == eSlice::uncertain ? byOne : found;
    }
    return found;
}

/// What the gathered neighbours leave free of a plane.
sFreeAngle cSurfaceKernel::sliceOf(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                   sSurfaceScratch& scratch) const {
    if (plane.circleRadius < smallestCircle) {
        return {isEnclosed(plane, atom, scratch) ? eSlice::covered : eSlice::uncertain, 0};
    }
    const eSlice byCoaxial = sliceByCoaxial(plane, atom, scratch);
    if (byCoaxial == eSlice::covered) {
        return {byCoaxial, 0};
    }
    const sFreeAngle free = loops.freeAngle(scratch, plane.height, plane.circleRadius);
    return free.slice != eSlice::covered && byCoaxial == eSlice::uncertain
               ? sFreeAngle{byCoaxial, 0}
               : free;
}

double cSurfaceKernel::sliceArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                                 sSurfaceScratch& scratch) const {
    const sFreeAngle free = sliceOf(plane, atom, scratch);
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
    const int planes = slicesBelow(probeRadius + atom.zMax, atom.z, zSlice);
    markPlanesCoveredByFew(atom, planes, scratch);
    scratch.allNeighboursAreKnown = false;
    bool isGathered = false;
    double area = 0.0;
    forEachOpenPlane(atom, planes, scratch, [&](const sSlicePlane& plane, std::size_t) {
        if (!isGathered) {
            gather(atom, touchingReachOf(atom), touchingMargin, scratch);
            isGathered = true;
        }
        area += sliceArea(plane, atom, scratch);
    });
    return area;
}

bool cSurfaceKernel::isLocal(const cCentreGrid::sEntry& atom,
                             const sSurfaceScratch& scratch) const {
    return !scratch.allNeighboursAreKnown && !isProbeTiny() && probeRadius + atom.radius > 0.0 &&
           touchingReachOf(atom) <= queryReach;
}

} // namespace kelmo

#include "geometry/complete_surface.h"

#include "geometry/surface_loops.h"

#include <algorithm>
#include <cmath>

namespace kelmo {

namespace {

/// Whole units of length modulo 2^32.
std::int32_t fixedCoordinate(double coordinate) {
    constexpr double modulus = 4294967296.0;
    const double units = coordinate * lengthUnits;
    // Beyond that, whole units are no longer exact; nor are the coordinates.
    const double inRange = std::abs(units) < 1e15 ? units : std::fmod(units, modulus);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(std::llrint(inRange)));
}

} // namespace

void sCompleteScratch::reserve(std::size_t caps) {
    const std::size_t needed = caps + 2 * widestFloats;
    if (needed <= capacity) {
        return;
    }
    capacity = 2 * needed;
    for (auto* values : {&x, &y, &z, &cosine, &level, &tilt, &direction, &orderedLevel,
                         &orderedTilt, &orderedDirection}) {
        values->resize(capacity);
    }
    arcCap.resize(capacity);
    for (auto* planes : {&arcCosine, &earliestStart, &arcEnd}) {
        planes->resize(capacity);
    }
}

cCompleteSurface::cCompleteSurface(const cCentreGrid& atomGrid, double givenProbeRadius,
                                   double givenZSlice)
    : grid(atomGrid), loops(surfaceLoops().complete), probeRadius(givenProbeRadius),
      zSlice(givenZSlice) {
    const std::vector<cCentreGrid::sEntry>& entries = grid.entriesInCellOrder();
    for (auto* column : {&spheres.x, &spheres.y, &spheres.z}) {
        column->resize(entries.size() + widestFloats);
    }
    spheres.radius.resize(entries.size() + widestFloats);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const cCentreGrid::sEntry& entry = entries[i];
        spheres.x[i] = fixedCoordinate(entry.x);
        spheres.y[i] = fixedCoordinate(entry.y);
        spheres.z[i] = fixedCoordinate(entry.z);
        spheres.radius[i] =
            static_cast<float>(std::nearbyint((probeRadius + entry.radius) * lengthUnits));
        largestEnlarged = std::max(largestEnlarged, probeRadius + entry.radius);
    }
}

double cCompleteSurface::areaOf(const cCentreGrid::sEntry& atom, sCompleteScratch& scratch) const {
    const double enlarged = probeRadius + atom.radius;
    const cCentreGrid::sEntry* const entries = grid.entriesInCellOrder().data();
    const auto place = static_cast<std::size_t>(&atom - entries);
    const sFixedSphere sphere{spheres.x[place], spheres.y[place], spheres.z[place],
                              spheres.radius[place]};
    if (!(sphere.radius > 0.0F)) {
        return 0.0;
    }
    scratch.count = 0;
    scratch.atSamePlace = 0;
    scratch.isEnclosed = false;
    const auto box = grid.cellsAround(atom.x, atom.y, atom.z, enlarged + largestEnlarged);
    grid.forEachRun(box, [&](const cCentreGrid::sEntry* first, const cCentreGrid::sEntry* last) {
        scratch.reserve(scratch.count + static_cast<std::size_t>(last - first));
        loops.findCaps(spheres, static_cast<std::size_t>(first - entries),
                       static_cast<std::size_t>(last - entries), sphere, scratch);
    });
    if (scratch.isEnclosed) {
        return 0.0;
    }
    scratch.reserve(scratch.count);
    // More slabs than that could not be told apart in single precision.
    constexpr double mostSlabs = 1 << 22;
    const double slabs = std::clamp(std::ceil(2.0 * enlarged / zSlice), 1.0, mostSlabs);
    const double freeAngles =
        loops.sumOfFreeAngles(scratch, static_cast<std::size_t>(slabs), sphere.radius);
    const double area = enlarged * (2.0 * enlarged / slabs) * freeAngles;
    return area / std::max(1U, scratch.atSamePlace);
}

} // namespace kelmo

#include "geometry/atom_space_calculations.h"

#include "base/in_parallel.h"
#include "geometry/atom_grid.h"
#include "geometry/complete_surface.h"
#include "geometry/surface_kernel.h"

#include <tbb/enumerable_thread_specific.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

/// Calls `work(entry)` for every entry of the grid, in parallel. Cell order keeps neighbours near
/// each other in memory.
template <typename Work>
void forEveryEntry(const cCentreGrid& grid, Work work) {
    constexpr std::size_t entriesPerTask = 256;
    const auto& entries = grid.entriesInCellOrder();
    inParallel(entries.size(), entriesPerTask, [&](std::size_t i) { work(entries[i]); });
}

/// The largest square whose root is not above the range, so that squares can be compared in place
/// of distances with the same outcome; negative for a negative range, which nothing is within.
double squaredRangeOf(double range) {
    if (range < 0.0) {
        return -1.0;
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double squared = range * range;
    if (squared == infinity) {
        return squared;
    }
    while (std::sqrt(squared) > range) {
        squared = std::nextafter(squared, 0.0);
    }
    while (std::sqrt(std::nextafter(squared, infinity)) <= range) {
        squared = std::nextafter(squared, infinity);
    }
    return squared;
}

/// No atom counts as deeper than this, Å.
constexpr double deepest = 9999999.0;

} // namespace

void calculateAtomASA(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                      const sPoint& minPoint, double probeRadius, double zSlice) {
    const cCentreGrid grid(atoms, atomCount, maxPoint, minPoint, atomCount);
    const cSurfaceKernel kernel(grid, probeRadius, zSlice);
    tbb::enumerable_thread_specific<sSurfaceScratch> scratches;
    forEveryEntry(grid, [&](const cCentreGrid::sEntry& entry) {
        if (probeRadius + entry.radius != 0.0) {
            atoms[entry.index].asa = kernel.areaOf(entry, scratches.local());
        }
    });
}

void calculateAtomAsaComplete(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                              const sPoint& minPoint, double probeRadius, double zSlice) {
    const cCentreGrid grid(atoms, atomCount, maxPoint, minPoint, atomCount);
    const cCompleteSurface surface(grid, probeRadius, zSlice);
    tbb::enumerable_thread_specific<sCompleteScratch> scratches;
    forEveryEntry(grid, [&](const cCentreGrid::sEntry& entry) {
        atoms[entry.index].asa = surface.areaOf(entry, scratches.local());
    });
}

void calculateAtomDepthIndex(cResidueAtom* atoms, unsigned atomCount) {
    std::vector<cCentreGrid::sEntry> surface;
    std::vector<cResidueAtom*> buried;
    for (unsigned i = 0; i < atomCount; ++i) {
        if (atoms[i].asa != 0.0) {
            atoms[i].depthIndex = 0.0;
            surface.push_back(cCentreGrid::entryOf(atoms[i]));
        } else {
            buried.push_back(&atoms[i]);
        }
    }
    if (surface.empty()) {
        return;
    }
    const cCentreGrid grid(std::move(surface));
    constexpr std::size_t atomsPerTask = 64;
    inParallel(buried.size(), atomsPerTask, [&](std::size_t i) {
        double depth = 0.0;
        grid.nearest(*buried[i], &depth);
        buried[i]->depthIndex = std::min(depth, deepest);
    });
}

void calculateAtomProtrusionIndex(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                                  const sPoint& minPoint, double sphereRadius, double atomVolume) {
    constexpr double volumeOfUnitSphere = 4.1887902047863905;
    const double sphereVolume = std::pow(sphereRadius, 3.0) * volumeOfUnitSphere;
    const cCentreGrid grid(atoms, atomCount, maxPoint, minPoint, atomCount);
    const double squaredRange = squaredRangeOf(sphereRadius);
    const cCentreGrid::sEntry* const entries = grid.entriesInCellOrder().data();
    forEveryEntry(grid, [&](const cCentreGrid::sEntry& entry) {
        unsigned neighbours = 0;
        const auto box = grid.cellsAround(entry.x, entry.y, entry.z, sphereRadius + 1.0);
        grid.forEachRun(box,
                        [&](const cCentreGrid::sEntry* first, const cCentreGrid::sEntry* last) {
                            neighbours += countInRange(grid.columnsInCellOrder(),
                                                       static_cast<std::size_t>(first - entries),
                                                       static_cast<std::size_t>(last - entries),
                                                       {entry.x, entry.y, entry.z}, squaredRange);
                        });
        const double occupied = std::min(neighbours * atomVolume, sphereVolume);
        atoms[entry.index].protrusionIndex = (sphereVolume - occupied) / occupied;
    });
}

} // namespace kelmo

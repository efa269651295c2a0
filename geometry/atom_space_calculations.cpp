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

/// Far more than rounding can bring two spheres together, Å.
constexpr double touchingMargin = 1e-4;

bool mayTouch(const cCentreGrid::sEntry& a, const cCentreGrid::sEntry& b, double probeRadius) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    const double dz = a.z - b.z;
    const double reach = a.radius + b.radius + 2.0 * probeRadius + touchingMargin;
    // Written such that what is no number counts.
    return !(dx * dx + dy * dy + dz * dz > reach * reach);
}

constexpr auto everyAtom = [](std::uint32_t) { return true; };

/// Sets the areas of the atoms for which `isWanted(position)` is true.
template <typename IsWanted>
void setClassicAreas(const cCentreGrid& grid, cResidueAtom* atoms, double probeRadius,
                     double zSlice, IsWanted isWanted) {
    const cSurfaceKernel kernel(grid, probeRadius, zSlice);
    tbb::enumerable_thread_specific<sSurfaceScratch> scratches;
    forEveryEntry(grid, [&](const cCentreGrid::sEntry& entry) {
        cResidueAtom& atom = atoms[entry.index];
        if (probeRadius + entry.radius != 0.0 && isWanted(entry.index)) {
            sSurfaceScratch& scratch = scratches.local();
            atom.asa = kernel.areaOf(entry, scratch);
            atom.isAsaLocal = kernel.isLocal(entry, scratch);
        }
    });
}

template <typename IsWanted>
void setCompleteAreas(const cCentreGrid& grid, cResidueAtom* atoms, double probeRadius,
                      double zSlice, IsWanted isWanted) {
    const cCompleteSurface surface(grid, probeRadius, zSlice);
    tbb::enumerable_thread_specific<sCompleteScratch> scratches;
    forEveryEntry(grid, [&](const cCentreGrid::sEntry& entry) {
        if (isWanted(entry.index)) {
            atoms[entry.index].asa = surface.areaOf(entry, scratches.local());
            atoms[entry.index].isAsaLocal = true;
        }
    });
}

} // namespace

void calculateAtomASA(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                      const sPoint& minPoint, double probeRadius, double zSlice) {
    const cCentreGrid grid(atoms, atomCount, maxPoint, minPoint, atomCount);
    setClassicAreas(grid, atoms, probeRadius, zSlice, everyAtom);
}

void calculateAtomAsaComplete(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                              const sPoint& minPoint, double probeRadius, double zSlice) {
    const cCentreGrid grid(atoms, atomCount, maxPoint, minPoint, atomCount);
    setCompleteAreas(grid, atoms, probeRadius, zSlice, everyAtom);
}

void calculateAsaOfMarked(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                          const sPoint& minPoint, double probeRadius, double zSlice, eAsaForm form,
                          const bool* isMarked) {
    if (std::none_of(isMarked, isMarked + atomCount, [](bool mark) { return mark; })) {
        return;
    }
    const cCentreGrid grid(atoms, atomCount, maxPoint, minPoint, atomCount);
    const auto isWanted = [isMarked](std::uint32_t atom) { return isMarked[atom]; };
    if (form == eAsaForm::complete) {
        setCompleteAreas(grid, atoms, probeRadius, zSlice, isWanted);
    } else {
        setClassicAreas(grid, atoms, probeRadius, zSlice, isWanted);
    }
}

void markWhereOthersMatter(const cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                           const sPoint& minPoint, double probeRadius, const std::uint32_t* groups,
                           bool* isMarked) {
    const cCentreGrid grid(atoms, atomCount, maxPoint, minPoint, atomCount);
    const auto& entries = grid.entriesInCellOrder();
    // For each place the next one with an atom of another group, so that runs of one group are
    // passed over.
    std::vector<std::uint32_t> nextOther(entries.size());
    double largestRadius = 0.0;
    for (std::size_t i = entries.size(); i-- > 0;) {
        const bool isSame =
            i + 1 < entries.size() && groups[entries[i].index] == groups[entries[i + 1].index];
        nextOther[i] = isSame ? nextOther[i + 1] : static_cast<std::uint32_t>(i + 1);
        largestRadius = std::max(largestRadius, entries[i].radius);
    }
    forEveryEntry(grid, [&](const cCentreGrid::sEntry& entry) {
        bool isTouched = false;
        const auto look = [&](const cCentreGrid::sEntry* first, const cCentreGrid::sEntry* last) {
            const std::uint32_t own = groups[entry.index];
            while (!isTouched && first != last) {
                if (groups[first->index] == own) {
                    first = std::min(
                        last, entries.data() +
                                  nextOther[static_cast<std::size_t>(first - entries.data())]);
                } else {
                    isTouched = mayTouch(entry, *first, probeRadius);
                    ++first;
                }
            }
        };
        if (atoms[entry.index].isAsaLocal) {
            const double reach = entry.radius + largestRadius + 2.0 * probeRadius + touchingMargin;
            grid.forEachRun(grid.cellsAround(entry.x, entry.y, entry.z, reach), look);
        }
        isMarked[entry.index] = isTouched || !atoms[entry.index].isAsaLocal;
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

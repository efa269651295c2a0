// The surface of atoms of a grid, with the same results as the plain form but many times faster.
#pragma once

#include "geometry/surface_loops.h"

#include <cstddef>
#include <vector>

namespace kelmo {

struct sSlicePlane;

/// Computes areas for the atoms of one grid; may be used by several threads, each with its scratch.
///
/// Of a slice only three digits of its free angle count. So the angle is computed in whatever way
/// is fast, together with a bound on its error, and only where that bound straddles a last digit is
/// the slice computed again in the plain form. Hence the results are those of the plain form,
/// whatever vector width the machine has.
class cSurfaceKernel {
  public:
    /// Å; the grid must outlive the kernel.
    cSurfaceKernel(const cCentreGrid& atomGrid, double probeRadius, double zSlice);

    /// Accessible area in Å² of an atom of the grid whose enlarged radius is not 0.
    double areaOf(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const;

  private:
    void gatherTouching(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const;
    void dropNonNeighbours(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const;
    const std::vector<cCentreGrid::sEntry>& allNeighbours(const cCentreGrid::sEntry& atom,
                                                          sSurfaceScratch& scratch) const;
    bool meetsAnyNeighbour(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                           sSurfaceScratch& scratch) const;
    double plainArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                     sSurfaceScratch& scratch) const;
    double sliceArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                     sSurfaceScratch& scratch) const;

    const cCentreGrid& grid;
    const sSurfaceLoops& loops;
    double probe;
    double slice;
    double reach;                 ///< of a neighbour query, Å
    double largestEnlarged = 0.0; ///< radius plus probe of the grid's largest atom, Å
};

/// The number of entries of a run of a grid, [first, last) in its order, whose distance from a
/// point is not 0 and whose squared distance (Å²) is at most `squaredRange`.
unsigned countInRange(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                      const sPoint& point, double squaredRange);

} // namespace kelmo

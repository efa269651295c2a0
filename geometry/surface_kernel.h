// The surface of atoms of a grid, with the same results as the plain form but many times faster.
#pragma once

#include "geometry/slice_plane.h"
#include "geometry/surface_loops.h"

#include <cstddef>
#include <vector>

namespace kelmo {

/// Computes areas for the atoms of one grid; may be used by several threads, each with its scratch.
///
/// Of a slice only three digits of its free angle count. So the angle is computed in whatever way
/// is fast, together with a bound on its error, and only where that bound straddles a last digit is
/// the slice computed again in the plain form. Hence the results are those of the plain form,
/// whatever vector width the machine has.
///
/// In a crowd thousands of neighbours touch an atom, but the few that reach deepest into it cover
/// most of it. They are asked first, then more and more, and all of them only for the planes that
/// are left.
class cSurfaceKernel {
  public:
    /// With more atoms than this in the cells around it an atom stands in a crowd: three times as
    /// many as in a protein with hydrogens.
    static constexpr std::size_t usualCrowd = 1500;

    /// Å; the grid must outlive the kernel. What is taken for a crowd does not change the results.
    cSurfaceKernel(const cCentreGrid& atomGrid, double givenProbeRadius, double givenZSlice,
                   std::size_t atomsOfCrowd = usualCrowd);

    /// Accessible area in Å² of an atom of the grid whose enlarged radius is not 0.
    double areaOf(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const;

    /// Whether the area that areaOf() has just given, with this scratch, depends on the atoms that
    /// touch this one and on no others: no plane was left to the plain form or had to ask who is
    /// near, and none of those that touch can lie beyond the cells that are looked at.
    bool isLocal(const cCentreGrid::sEntry& atom, const sSurfaceScratch& scratch) const;

  private:
    void markPlanesCoveredByFew(const cCentreGrid::sEntry& atom, int planes,
                                sSurfaceScratch& scratch) const;
    template <typename Visit>
    void forEachOpenPlane(const cCentreGrid::sEntry& atom, int planes,
                          const sSurfaceScratch& scratch, Visit visit) const;
    std::size_t atomsWithin(const cCentreGrid::sCellBox& box) const;
    void gather(const cCentreGrid::sEntry& atom, double cellReach, double margin,
                sSurfaceScratch& scratch) const;
    void dropNonNeighbours(const cCentreGrid::sEntry& atom, sSurfaceScratch& scratch) const;
    const std::vector<cCentreGrid::sEntry>& allNeighbours(const cCentreGrid::sEntry& atom,
                                                          sSurfaceScratch& scratch) const;
    bool meetsAnyNeighbour(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                           sSurfaceScratch& scratch) const;
    bool isEnclosed(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                    const sSurfaceScratch& scratch) const;
    eSlice sliceByCoaxial(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                          const sSurfaceScratch& scratch) const;
    sFreeAngle sliceOf(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                       sSurfaceScratch& scratch) const;
    double sliceArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                     sSurfaceScratch& scratch) const;
    double plainArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                     sSurfaceScratch& scratch) const;
    /// Whether the probe is so small, or negative, that spheres may all but touch and yet be no
    /// neighbours.
    bool isProbeTiny() const;
    /// As far from an atom others may touch it, Å.
    double touchingReachOf(const cCentreGrid::sEntry& atom) const;

    const cCentreGrid& grid;
    const sSurfaceLoops& loops;
    double probeRadius;
    double zSlice;                ///< Å
    std::size_t crowd;            ///< number of atoms
    double queryReach;            ///< of a neighbour query, Å
    double largestEnlarged = 0.0; ///< radius plus probe of the grid's largest atom, Å
};

/// The number of entries of a run of a grid, [first, last) in its order, whose distance from a
/// point is not 0 and whose squared distance (Å²) is at most `squaredRange`.
unsigned countInRange(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                      const sPoint& point, double squaredRange);

} // namespace kelmo

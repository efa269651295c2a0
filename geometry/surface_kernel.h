// The surface of atoms of a grid, with the same results as the plain form but many times faster.
#pragma once

#include "geometry/atom_grid.h"

#include <cstddef>
#include <memory>
#include <vector>

/// Arrays that one thread reuses from atom to atom. Touching neighbours stand in arrays of their
/// own, padded to whole vectors with neighbours that cover nothing.
struct sSurfaceScratch {
    std::size_t count = 0;  ///< touching neighbours of the current atom
    std::size_t padded = 0; ///< the same, rounded up to whole vectors
    bool hasCoaxialNeighbour = false;
    bool anglesAreKnown = false;

    std::vector<double> towardsX, towardsY; ///< from the atom to the neighbour in the plane, Å
    std::vector<double> z;                  ///< height of the neighbour, Å
    std::vector<double> offset;             ///< squared planar distance minus squared enlarged radius
    std::vector<double> halfOverDistance;   ///< 1 / (2 planar distance)
    std::vector<double> angle;              ///< direction of the neighbour, radians
    std::vector<double> cosine;             ///< of the covered half-angle in the current plane
    std::vector<cAtomGrid::sEntry> touching;

    std::vector<double> arcCosine, arcAngle, arcStart, arcEnd; ///< the crossing ones of a plane
    std::vector<std::size_t> arcOwner;

    /// A ring of arcs that covered an earlier plane wholly, in turning order, with the angle from each
    /// to the next. It often covers the next plane as well.
    struct sLink {
        std::size_t neighbour;
        double cosineToNext;
        bool isReflex; ///< the angle to the next is above π
    };
    std::vector<sLink> ring;
    std::vector<std::size_t> ringCandidate;

    std::vector<cAtomGrid::sEntry> allNeighbours;
    bool allNeighboursAreKnown = false;
};

/// Computes areas for the atoms of one grid; may be used by several threads, each with its scratch.
///
/// Of a slice only three digits of its free angle count. So the angle is computed in whatever way is
/// fast, together with a bound on its error, and only where that bound straddles a last digit is the
/// slice computed again in the plain form. Hence the results are those of the plain form, whatever
/// vector width the machine has.
class cSurfaceKernel {
  public:
    /// Å; the grid must outlive the kernel.
    cSurfaceKernel(const cAtomGrid& atomGrid, double probeRadius, double zSlice);

    /// Accessible area in Å² of an atom of the grid whose enlarged radius is not 0.
    double areaOf(const cAtomGrid::sEntry& atom, sSurfaceScratch& scratch) const;

  private:
    void gatherTouching(const cAtomGrid::sEntry& atom, sSurfaceScratch& scratch) const;
    const std::vector<cAtomGrid::sEntry>& allNeighbours(const cAtomGrid::sEntry& atom,
                                                        sSurfaceScratch& scratch) const;
    bool meetsAnyNeighbour(const struct sSlicePlane& plane, const cAtomGrid::sEntry& atom,
                           sSurfaceScratch& scratch) const;
    double plainArea(const struct sSlicePlane& plane, const cAtomGrid::sEntry& atom,
                     sSurfaceScratch& scratch) const;
    double sliceArea(const struct sSlicePlane& plane, const cAtomGrid::sEntry& atom,
                     sSurfaceScratch& scratch) const;

    const cAtomGrid& grid;
    double probe;
    double slice;
    double reach;             ///< of a neighbour query, Å
    double largestEnlarged = 0.0; ///< radius plus probe of the grid's largest atom, Å
};

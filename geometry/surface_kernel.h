// The surface of atoms of a grid, with the same results as the plain form but many times faster.
#pragma once

#include "geometry/atom_grid.h"

#include <cstddef>
#include <cstdint>
#include <vector>

struct sSlicePlane;

/// Arrays that one thread reuses from atom to atom. The touching neighbours of an atom and the arcs
/// of a plane stand in one array per quantity, padded to whole vectors with what covers nothing.
struct sSurfaceScratch {
    /// Makes room for this many neighbours and a whole vector behind them.
    void reserve(std::size_t neighbours);

    std::size_t capacity = 0;
    std::size_t count = 0;  ///< touching neighbours of the current atom
    std::size_t padded = 0; ///< the same, rounded up to whole vectors
    bool hasCoaxialNeighbour = false;
    bool anglesAreKnown = false;

    std::vector<std::uint64_t> position;    ///< of the neighbour in the grid's order
    std::vector<double> towardsX, towardsY; ///< from the atom to the neighbour in the plane, Å
    std::vector<double> z;                  ///< height of the neighbour, Å
    std::vector<double> enlarged;           ///< radius plus probe, Å
    std::vector<double> offset;           ///< squared planar distance minus squared enlarged radius
    std::vector<double> halfOverDistance; ///< 1 / (2 planar distance)
    std::vector<double> angle;            ///< direction of the neighbour, radians
    std::vector<double> cosine;           ///< of the covered half-angle in the current plane

    std::size_t arcs = 0; ///< of the current plane
    std::vector<std::uint64_t> arcOwner;
    std::vector<double> arcCosine, arcAngle, arcStart, arcEnd;
    std::vector<double> sweepEnds; ///< where the last sweep got to, step by step

    /// A ring of arcs that covered an earlier plane wholly, in turning order, with the angle from
    /// each to the next. It often covers the next plane as well.
    struct sLink {
        std::size_t neighbour;
        double cosineToNext;
        bool isReflex; ///< the angle to the next is above π
    };
    std::vector<sLink> ring;

    std::vector<cCentreGrid::sEntry> allNeighbours;
    bool allNeighboursAreKnown = false;
};

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
    double arcArea(const sSlicePlane& plane, const cCentreGrid::sEntry& atom,
                   sSurfaceScratch& scratch) const;

    const cCentreGrid& grid;
    double probe;
    double slice;
    double reach;                 ///< of a neighbour query, Å
    double largestEnlarged = 0.0; ///< radius plus probe of the grid's largest atom, Å
};

/// The number of entries of a run of a grid, [first, last) in its order, whose distance from a
/// point is not 0 and whose squared distance (Å²) is at most `squaredRange`.
unsigned countInRange(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                      const sPoint& point, double squaredRange);

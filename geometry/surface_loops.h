// The vectorised loops of the calculations, one set of them per instruction set.
#pragma once

#include "geometry/atom_grid.h"
#include "geometry/circles.h"
#include "geometry/complete_loops.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kelmo {

/// More arcs than this are not remembered.
constexpr std::size_t longestRing = 12;

/// Where a cosine comes nearer than this to 1 or -1, rounding decides whether circles touch or
/// enclose each other; such slices are left to the plain form.
constexpr double uncertainCosine = 1e-6;
/// Bound on the error of a free angle, in the parts of a radian to which it is cut.
constexpr double angleError = 1e-4;

/// A ring of arcs that covered an earlier plane wholly, in turning order, with the angle from each
/// to the next. It often covers the next plane as well.
struct sArcRing {
    std::size_t links = 0;
    std::array<std::size_t, longestRing + 1> neighbour{}; ///< the first stands at the end again
    std::array<double, longestRing> cosineToNext{};
    std::array<double, longestRing> sineToNext{}; ///< to scale only: its sign counts
};

/// Arrays that one thread reuses from atom to atom. The touching neighbours of an atom and the arcs
/// of a plane stand in one array per quantity, padded to whole vectors with what covers nothing.
struct sSurfaceScratch {
    /// Makes room for this many neighbours and a whole vector behind them.
    void reserve(std::size_t neighbours);

    std::size_t capacity = 0;
    std::size_t count = 0;  ///< touching neighbours of the current atom
    std::size_t padded = 0; ///< their number rounded up to whole vectors
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

    sArcRing ring;

    /// Whether each plane of the current atom, from the top, is covered; empty if none is known to
    /// be.
    std::vector<bool> coveredPlanes;
    /// Positions of touching neighbours whose axes all but coincide with the atom's: they are not
    /// among those counted.
    std::vector<std::uint64_t> coaxial;

    std::vector<cCentreGrid::sEntry> allNeighbours;
    std::vector<cCircle> circles; ///< of the plain form
    bool allNeighboursAreKnown = false;
};

/// How the neighbours that touch an atom cover its circle in one plane.
enum class eSlice {
    covered,
    exposed,   ///< at least one part of a radian is free
    untouched, ///< by the neighbours at hand
    uncertain, ///< rounding decides: left to the plain form
};

struct sFreeAngle {
    eSlice slice;
    int parts; ///< of a radian that are free, if exposed; see freeAnglePartsPerRadian
};

/// The loops as compiled for one instruction set. Their results are the same in all.
struct sSurfaceLoops {
    std::string_view instructionSet;

    /// What countInRange() returns.
    unsigned (*countRun)(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                         const sPoint& point, double squaredRange);
    /// Appends the entries of a run whose enlarged spheres come as near to the atom's as the margin
    /// (Å), or reach as deep into it if that is negative, to the scratch arrays, which have room
    /// for the whole run.
    void (*findTouching)(const cCentreGrid::sColumns& columns, std::size_t first, std::size_t last,
                         const cCentreGrid::sEntry& atom, double probeRadius, double margin,
                         sSurfaceScratch& scratch);
    /// Computes what does not change from plane to plane. Returns the smallest planar distance, Å.
    double (*prepareNeighbours)(sSurfaceScratch& scratch);
    /// What the touching neighbours leave free of a circle of this radius around the atom at this
    /// height (Å).
    sFreeAngle (*freeAngle)(sSurfaceScratch& scratch, double height, double radius);

    sCompleteLoops complete;
};

/// The loops that this processor can run, the fastest first.
const std::vector<sSurfaceLoops>& availableSurfaceLoops();
/// The loops in use: the fastest, unless a test chose others.
const sSurfaceLoops& surfaceLoops();
/// Only for tests, while no calculation runs: uses those of this place in the list.
void chooseSurfaceLoops(std::size_t place);

} // namespace kelmo

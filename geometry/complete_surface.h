// Accessible areas in their complete form: equal slabs over every whole sphere, nothing cut.
#pragma once

#include "base/exported.h"
#include "geometry/atom_grid.h"
#include "geometry/complete_loops.h"

namespace KELMO_API kelmo {

/// Computes areas for the atoms of one grid; may be used by several threads, each with its scratch.
///
/// The sphere of an atom, enlarged by the probe, is cut into ceil(2 R / zSlice) slabs of equal
/// thickness. Zones of a sphere of equal thickness have equal areas, so each stands for R times its
/// thickness times the angle that is free in the plane through its middle. Spheres that merely
/// touch cover nothing; an enclosed one has no area; equal spheres at one place share theirs
/// equally.
///
/// The area of an atom depends on the spheres that cross its own and on nothing else, not on their
/// order nor on the grid. Single precision: good to 1e-6 of the sphere's area beside the noise of
/// the slabs. Centres closer than 4e-6 Å may count as one place.
class cCompleteSurface {
  public:
    /// Å; the grid must outlive this.
    cCompleteSurface(const cCentreGrid& atomGrid, double givenProbeRadius, double givenZSlice);

    /// Accessible area in Å² of an atom of the grid; 0 without a positive enlarged radius.
    double areaOf(const cCentreGrid::sEntry& atom, sCompleteScratch& scratch) const;

  private:
    const cCentreGrid& grid;
    const sCompleteLoops& loops;
    double probeRadius;
    double zSlice;
    double largestEnlarged = 0.0; ///< radius plus probe of the grid's largest atom, Å
    sSphereColumns spheres;       ///< in the grid's order
};

} // namespace kelmo

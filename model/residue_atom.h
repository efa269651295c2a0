// One atom of a structure, and the bounding box of a run of atoms.
#pragma once

#include "base/exported.h"

#include <string>

namespace KELMO_API kelmo {

class cChainResidue;

/// A point in space.
struct sPoint {
    double x = 0.0; ///< Å
    double y = 0.0; ///< Å
    double z = 0.0; ///< Å
};

/// One atom: what the file says of it, and what the calculations find out about it.
class cResidueAtom {
  public:
    cResidueAtom() = default;
    /// Coordinates and van der Waals radius (without probe) in ångström.
    cResidueAtom(std::string name, std::string serialText, double xCentre, double yCentre,
                 double zCentre, double vdwRadius);

    /// True when the centres are at most `range` Å apart and not at the same place, so that an atom
    /// is never its own neighbour.
    bool isInRangeByCenter(const cResidueAtom& other, double range) const;

    /// True when the spheres, each enlarged by `enlargement` Å, touch or overlap and the centres
    /// are not at the same place.
    bool doesIntersect(const cResidueAtom& other, double enlargement) const;

    /// Sets `sliceCount` to the number of planes, `zSlice` Å apart and symmetric about the centre,
    /// that cut the sphere enlarged by `probeRadius` Å; -1 when the enlarged radius is not
    /// positive.
    void sliceOnZ(double zSlice, double probeRadius);

    /// Computes `asa` after Lee & Richards (J Mol Biol 55:379, 1971) from the atoms whose enlarged
    /// spheres may cover this one's. Slices that meet no neighbour at all add nothing.
    /// Mind the order: slice thickness first, probe radius second, both in Å.
    void setFreeSurface(const cResidueAtom* neighbours, unsigned neighbourCount, double zSlice,
                        double probeRadius);

    std::string atomName;         ///< "NXT" for the nitrogen that opens a chain
    std::string serial;           ///< serial number as text; not necessarily a number
    double asa = 0.0;             ///< accessible surface area, Å²
    double protrusionIndex = 0.0; ///< free over occupied volume of a sphere around the atom
    double depthIndex = 0.0;      ///< distance to the nearest surface atom, Å
    double x = 0.0;               ///< of the centre, Å
    double y = 0.0;               ///< of the centre, Å
    double z = 0.0;               ///< of the centre, Å
    double radius = 0.0;          ///< van der Waals radius without probe, Å
    double zMax = 0.0;            ///< z + radius
    double zMin = 0.0;            ///< z - radius
    int sliceCount = 0;           ///< slices still to be visited by the surface calculation
    /// Whether `asa` depends on the atoms that touch this one and on no others.
    bool isAsaLocal = false;
    cChainResidue* residue = nullptr; ///< owning residue; not owned
};

/// Distance of the centres, Å.
double centreDistance(const cResidueAtom& a, const cResidueAtom& b);

/// Bounding box of the centres (radii are not added) of `n` >= 1 atoms: the third parameter
/// receives the largest, the fourth the smallest coordinates.
void setMinMaxPoints(const cResidueAtom* atoms, unsigned n, sPoint* maxPoint, sPoint* minPoint);

} // namespace kelmo

// The surface of one atom from its neighbours, slice by slice: the plain form of the calculation.
#include "geometry/plain_slice.h"
#include "geometry/slice_plane.h"
#include "model/residue_atom.h"

#include <iostream>
#include <vector>

namespace kelmo {

namespace {

/// Room for the circles of a slice before more is asked for: a few more than an atom of a protein
/// meets in one plane.
constexpr std::size_t usualNeighbours = 50;

} // namespace

void cResidueAtom::sliceOnZ(double zSlice, double probeRadius) {
    sliceCount = slicesBelow(probeRadius + zMax, z, zSlice);
}

void cResidueAtom::setFreeSurface(const cResidueAtom* neighbours, unsigned neighbourCount,
                                  double zSlice, double probeRadius) {
    const double enlarged = probeRadius + radius;
    if (enlarged == 0.0) {
        return;
    }
    sliceOnZ(zSlice, probeRadius);
    asa = 0.0;
    std::vector<cCircle> others;
    others.reserve(usualNeighbours);
    forEachPlane(sliceCount, z, enlarged, zSlice, [&](const sSlicePlane& plane) {
        asa += plainSliceArea(plane, x, y, neighbours, neighbourCount, probeRadius, others);
    });
    if (asa < 0.0) {
        std::cout << serial << '\t' << asa << std::endl;
    }
}

} // namespace kelmo

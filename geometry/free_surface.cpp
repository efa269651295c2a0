// The surface of one atom from its neighbours, slice by slice: the plain form of the calculation.
#include "geometry/circles.h"
#include "geometry/slice_plane.h"
#include "model/residue_atom.h"

#include <cmath>
#include <iostream>
#include <vector>

namespace kelmo {

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
    const int planesAbove = (sliceCount - 1) / 2;
    double height = z + zSlice * planesAbove;
    cCircle circle(x, y, 0.0);
    std::vector<cCircle> others;
    others.reserve(50);
    for (; sliceCount > 0; --sliceCount, height -= zSlice) {
        const sSlicePlane plane(height, z, enlarged, zSlice);
        if (!plane.cutsSphere) {
            continue;
        }
        circle.radius = plane.circleRadius;
        others.clear();
        for (unsigned i = 0; i < neighbourCount; ++i) {
            double squaredRadius = 0.0;
            if (plane.meets(neighbours[i], probeRadius, &squaredRadius)) {
                others.emplace_back(neighbours[i].x, neighbours[i].y, std::sqrt(squaredRadius));
            }
        }
        if (!others.empty()) {
            const double freeLength =
                circle.getFreeArcLength(others.data(), static_cast<unsigned>(others.size()));
            asa += plane.areaOf(freeLength);
        }
    }
    if (asa < 0.0) {
        std::cout << serial << '\t' << asa << std::endl;
    }
}

} // namespace kelmo

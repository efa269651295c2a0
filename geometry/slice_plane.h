// One plane through an atom's enlarged sphere: its circle, its thickness and what meets it.
#pragma once

#include "geometry/cut_numbers.h"

#include <cmath>

namespace kelmo {

/// The number of planes through a sphere: at the centre and every `zSlice` Å (which must be
/// positive) from it below `top`, the height of the enlarged sphere's upper pole; -1 when that is
/// not above the centre. The heights are summed up, not multiplied, as the planes themselves are.
inline int slicesBelow(double top, double centre, double zSlice) {
    int planes = 0;
    if (top > centre) {
        double height = centre;
        do {
            height += zSlice;
            ++planes;
        } while (height < top);
    }
    return 2 * planes - 1;
}

/// Circles of a smaller radius (Å) do not count: cut to thousandths, nothing is left of it.
constexpr double smallestCircleRadius = 1.0 / circleRadiusPartsPerAngstrom;

/// The cut of a plane z = `height` through a sphere of radius `enlarged` (van der Waals plus probe)
/// about `centre`; Å. Every expression is evaluated in the order written: the numbers in the
/// reports are cut to fixed decimals, so another order could move a last digit.
struct sSlicePlane {
    sSlicePlane(double planeHeight, double centre, double enlargedRadius, double zSlice)
        : height(planeHeight), enlarged(enlargedRadius) {
        const double d = std::abs(planeHeight - centre);
        if (enlargedRadius == d) {
            return;
        }
        const double exactRadius = std::sqrt(enlargedRadius * enlargedRadius - d * d);
        if (!(exactRadius >= smallestCircleRadius)) {
            return;
        }
        cutsSphere = true;
        circleRadius = cutTo(circleRadiusPartsPerAngstrom, exactRadius);
        // Half the distance to the next plane on either side, but towards the pole at most what is
        // left of the sphere.
        const double half = 0.5 * zSlice;
        const double toPole = std::abs(enlargedRadius - d);
        thickness = (half <= toPole ? half : toPole) + half;
    }

    /// Whether the enlarged sphere of another atom meets the plane in a circle, and the square of
    /// that circle's radius. A square that rounding leaves at 0 or below is no circle.
    template <typename Atom>
    bool meets(const Atom& other, double probeRadius, double* squaredRadius) const {
        if (!(height < probeRadius + other.zMax) || !(other.zMin - probeRadius < height)) {
            return false;
        }
        const double sphere = probeRadius + other.radius;
        const double d = height - other.z;
        *squaredRadius = sphere * sphere - d * d;
        return *squaredRadius > 0.0;
    }

    /// The sphere's area in Å² that a free arc of this length stands for, cut to 0.0001 Å².
    double areaOf(double freeLength) const {
        return cutTo(sliceAreaPartsPerSquareAngstrom,
                     freeLength * (enlarged * thickness) / circleRadius);
    }

    double height;   ///< Å
    double enlarged; ///< radius of the sphere, Å
    bool cutsSphere = false;
    double circleRadius = 0.0; ///< cut to 0.001 Å
    double thickness = 0.0;    ///< of the slab that the slice stands for, Å
};

/// Calls `visit(plane)` from the top down for the planes of a sphere that leave a circle large
/// enough to count. `planes` is their number as slicesBelow() gives it and is counted down.
template <typename Visit>
void forEachPlane(int& planes, double centre, double enlargedRadius, double zSlice, Visit visit) {
    const int planesAbove = (planes - 1) / 2;
    double height = centre + zSlice * planesAbove;
    for (; planes > 0; --planes, height -= zSlice) {
        const sSlicePlane plane(height, centre, enlargedRadius, zSlice);
        if (plane.cutsSphere) {
            visit(plane);
        }
    }
}

} // namespace kelmo

// The area of one slice from circles and their arcs: what every faster way is held against.
#pragma once

#include "geometry/circles.h"
#include "geometry/slice_plane.h"

#include <cmath>
#include <vector>

namespace kelmo {

/// The exposed area in Å² of the slice of an atom at `x`, `y` (Å), given all its neighbours (atoms
/// or entries of a grid) and the probe radius (Å); 0 when no neighbour meets the plane. `others` is
/// room for their circles, reused from slice to slice.
template <typename Neighbour>
double plainSliceArea(const sSlicePlane& plane, double x, double y, const Neighbour* neighbours,
                      std::size_t neighbourCount, double probeRadius,
                      std::vector<cCircle>& others) {
    others.clear();
    for (std::size_t i = 0; i < neighbourCount; ++i) {
        double squaredRadius = 0.0;
        if (plane.meets(neighbours[i], probeRadius, &squaredRadius)) {
            others.emplace_back(neighbours[i].x, neighbours[i].y, std::sqrt(squaredRadius));
        }
    }
    if (others.empty()) {
        return 0.0;
    }
    cCircle circle(x, y, plane.circleRadius);
    return plane.areaOf(
        circle.getFreeArcLength(others.data(), static_cast<unsigned>(others.size())));
}

} // namespace kelmo

// Circles in a slice plane and the arcs that they cover of each other.
#pragma once

#include "base/exported.h"

#include <vector>

namespace KELMO_API kelmo {

/// An interval of angles on a circle, radians in [0, 2π].
class cCircleSegment {
  public:
    /// `endAngle` is not less than `startAngle`; radians.
    cCircleSegment(double startAngle, double endAngle) : start(startAngle), end(endAngle) {}

    double start; ///< radians
    double end;   ///< radians, not less than `start`
};

///@{
/// Segments compare by their start alone.
inline bool operator==(const cCircleSegment& a, const cCircleSegment& b) {
    return a.start == b.start;
}
inline bool operator!=(const cCircleSegment& a, const cCircleSegment& b) {
    return a.start != b.start;
}
inline bool operator<(const cCircleSegment& a, const cCircleSegment& b) {
    return a.start < b.start;
}
inline bool operator>(const cCircleSegment& a, const cCircleSegment& b) {
    return a.start > b.start;
}
///@}

/// How another circle lies towards this one.
enum class eCircleLocation : int { apart = 0, otherInside = 1, crossing = 2, insideOther = 3 };

/// The slice of one atom's enlarged sphere.
class cCircle {
  public:
    /// Centre in the plane and radius, Å.
    cCircle(double xCentre, double yCentre, double circleRadius)
        : x(xCentre), y(yCentre), radius(circleRadius) {}

    /// Where `other` lies. Touching from outside counts as apart, touching from inside as inside
    /// the other.
    eCircleLocation locationOf(const cCircle& other) const;
    /// The number of locationOf().
    int locationTowardsMe(const cCircle& other) const;
    /// Half the angle (radians) of this circle that `other` covers, by the law of cosines; 0 when
    /// it covers nothing, π when it covers all.
    double crossSectionAngle(const cCircle& other) const;
    /// Fills `segments` with the covered arcs, sorted by start and closed by [2π, 2π].
    void createArcs(const cCircle* others, unsigned count);
    /// The circumference in Å that no other circle covers, the angle cut to 0.001 rad.
    double getFreeArcLength(const cCircle* others, unsigned count);

    double x;                             ///< of the centre, Å
    double y;                             ///< of the centre, Å
    double radius;                        ///< Å
    bool enclosed = false;                ///< lies wholly inside at least one other circle
    std::vector<cCircleSegment> segments; ///< covered arcs, as createArcs() leaves them

  private:
    double planarDistance(const cCircle& other) const;
};

} // namespace kelmo

#include "geometry/circles.h"

#include "geometry/cut_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kelmo {

namespace {

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;

double reducedAngle(double angle) {
    return angle - twoPi * std::floor(angle / twoPi);
}

} // namespace

double cCircle::planarDistance(const cCircle& other) const {
    const double dx = x - other.x;
    const double dy = y - other.y;
    return std::sqrt(dx * dx + dy * dy);
}

eCircleLocation cCircle::locationOf(const cCircle& other) const {
    const double d = planarDistance(other);
    if (radius > d + other.radius) {
        return eCircleLocation::otherInside;
    }
    if (d - other.radius >= radius) {
        return eCircleLocation::apart;
    }
    if (other.radius >= d + radius) {
        return eCircleLocation::insideOther;
    }
    return eCircleLocation::crossing;
}

int cCircle::locationTowardsMe(const cCircle& other) const {
    return static_cast<int>(locationOf(other));
}

double cCircle::crossSectionAngle(const cCircle& other) const {
    const eCircleLocation location = locationOf(other);
    if (location == eCircleLocation::apart || location == eCircleLocation::otherInside) {
        return 0.0;
    }
    if (location == eCircleLocation::insideOther) {
        return pi;
    }
    const double d = planarDistance(other);
    const double cosine =
        (radius * radius + d * d - other.radius * other.radius) / (2.0 * radius * d);
    // Circles that all but touch may come out a rounding beyond the range of a cosine.
    return std::acos(std::clamp(cosine, -1.0, 1.0));
}

void cCircle::createArcs(const cCircle* others, unsigned count) {
    segments.clear();
    segments.reserve(100);
    enclosed = false;
    for (unsigned i = 0; i < count; ++i) {
        const cCircle& other = others[i];
        double direction = std::atan2(other.y - y, other.x - x);
        const double half = crossSectionAngle(other);
        if (locationOf(other) == eCircleLocation::insideOther) {
            enclosed = true;
        }
        if (direction < 0.0) {
            direction += twoPi;
        }
        const double start = reducedAngle(direction - half);
        const double end = reducedAngle(direction + half);
        if (start > end) {
            segments.emplace_back(0.0, end);
            segments.emplace_back(start, twoPi);
        } else {
            segments.emplace_back(start, end);
        }
    }
    segments.emplace_back(twoPi, twoPi);
    segments.shrink_to_fit();
    std::sort(segments.begin(), segments.end());
}

double cCircle::getFreeArcLength(const cCircle* others, unsigned count) {
    createArcs(others, count);
    if (enclosed) {
        return 0.0;
    }
    double free = 0.0;
    double covered = 0.0;
    for (std::size_t i = 0; i < segments.size();) {
        free = free + segments[i].start - covered;
        covered = std::max(covered, segments[i].end);
        for (++i; i < segments.size() && covered > segments[i].start; ++i) {
            covered = std::max(covered, segments[i].end);
        }
    }
    free = free + twoPi - covered;
    free = cutTo(freeAnglePartsPerRadian, free);
    return free < 0.0 ? 0.0 : free * radius;
}

} // namespace kelmo

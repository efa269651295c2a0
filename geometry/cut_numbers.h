// To how many decimals the surface calculation cuts its intermediate results.
#pragma once

#include "base/exported.h"

#include <cstdint>

namespace KELMO_API kelmo {

/// Radii of circles are cut to thousandths of an ångström, the last digit of a PDB coordinate.
constexpr double circleRadiusPartsPerAngstrom = 1000.0;
/// Free angles are cut to thousandths of a radian: 0.003 Å along the rim of an atom and its probe.
constexpr double freeAnglePartsPerRadian = 1000.0;
/// Areas of slices are cut to ten-thousandths of a square ångström, so that the cuts of all slices
/// of an atom together stay below a hundredth.
constexpr double sliceAreaPartsPerSquareAngstrom = 10000.0;

/// A number cut towards 0 to a whole number of parts, so many to one.
inline double cutTo(double partsPerOne, double value) {
    return static_cast<std::int32_t>(value * partsPerOne) / partsPerOne;
}

} // namespace kelmo

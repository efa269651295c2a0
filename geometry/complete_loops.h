// What the vectorised loops of the complete surface work on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelmo {

/// Widest vector that any instruction set has, in floats.
constexpr std::size_t widestFloats = 16;

/// Lengths count in units of 2^-18 Å, coordinates as whole numbers of them modulo 2^32: so the
/// difference of two atoms is exact and the same wherever the structure and its grid begin.
constexpr double lengthUnits = 1 << 18;

/// A sphere with its probe.
struct sFixedSphere {
    std::int32_t x, y, z;
    float radius;
};

/// Spheres, one array per quantity, with room behind the last for a whole vector to be loaded.
struct sSphereColumns {
    std::vector<std::int32_t> x, y, z;
    std::vector<float> radius;
};

/// One float for each of as many planes as are computed together.
struct alignas(4 * widestFloats) sPlaneLanes {
    std::array<float, widestFloats> lane;
};

/// What one thread reuses from atom to atom. Of each neighbour whose sphere crosses the atom's the
/// cap that it covers is kept: where it points and the cosine of its angular radius.
struct sCompleteScratch {
    /// Makes room for so many caps and a whole vector behind them.
    void reserve(std::size_t caps);

    std::size_t capacity = 0;
    std::size_t count = 0;
    unsigned atSamePlace = 0; ///< equal spheres there, the atom's own among them
    bool isEnclosed = false;

    std::vector<float> x, y, z; ///< towards the neighbour; of length 1 when all are found
    std::vector<float> cosine;  ///< of the cap; until all are found, not yet divided by the lengths
    // The cosine of half the arc that a cap covers in the plane at height h of the unit sphere is
    // (level - tilt * h) / (radius of the circle there).
    std::vector<float> level, tilt;
    std::vector<float> direction; ///< of the arc's middle, radians

    std::vector<float> orderedLevel, orderedTilt, orderedDirection; ///< by direction

    // Of the arcs present in some of the planes at hand, in the same order:
    std::vector<std::uint32_t> arcCap;      ///< place of its cap
    std::vector<sPlaneLanes> arcCosine;     ///< of half of it
    std::vector<sPlaneLanes> earliestStart; ///< of this arc and those after it, radians
    std::vector<sPlaneLanes> arcEnd;        ///< radians
};

/// The loops as compiled for one instruction set. Their results are the same in all, bit by bit:
/// every lane goes through the same additions, multiplications, divisions and roots, each rounded
/// by itself, and what is summed over lanes are whole numbers.
struct sCompleteLoops {
    /// Appends the caps of those spheres of a run that cross the atom's to the scratch, which has
    /// room for the whole run; notes whether one encloses it and how many are the same.
    void (*findCaps)(const sSphereColumns& spheres, std::size_t first, std::size_t last,
                     const sFixedSphere& atom, sCompleteScratch& scratch);
    /// The sum over all planes of the angle that the caps found leave free, radians. Changes what
    /// has been found.
    double (*sumOfFreeAngles)(sCompleteScratch& scratch, std::size_t slabs, float radius);
};

} // namespace kelmo

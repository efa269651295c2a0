// A test's choice of one instruction set for the vectorised loops.
#pragma once

#include "geometry/surface_loops.h"

#include <cstddef>
#include <string_view>

namespace kelmo {

/// Lets the calculations use the loops of one place in the list only, for its own lifetime.
class cOnlyLoops {
  public:
    explicit cOnlyLoops(std::size_t place) { chooseSurfaceLoops(place); }
    ~cOnlyLoops() { chooseSurfaceLoops(0); }
    cOnlyLoops(const cOnlyLoops&) = delete;
    cOnlyLoops& operator=(const cOnlyLoops&) = delete;

    static std::string_view name() { return surfaceLoops().instructionSet; }
};

} // namespace kelmo

// The loops are included once for every instruction set. Which to use is asked of the compiler's
// own tables; the library's dispatcher would add 3 ms to the start of every program.
#include "geometry/surface_loops.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/surface_arcs-inl.h"
#include <hwy/foreach_target.h>

#include "geometry/surface_arcs-inl.h"

#if HWY_ONCE

namespace {

std::vector<sSurfaceLoops> loopsOfThisProcessor() {
    std::vector<sSurfaceLoops> available;
#if HWY_TARGETS & HWY_AVX3
    if (__builtin_cpu_supports("x86-64-v4")) {
        available.push_back(surface_arcs::N_AVX3::loops);
    }
#endif
#if HWY_TARGETS & HWY_AVX2
    if (__builtin_cpu_supports("x86-64-v3")) {
        available.push_back(surface_arcs::N_AVX2::loops);
    }
#endif
#if HWY_TARGETS & HWY_SSE4
    if (__builtin_cpu_supports("x86-64-v2")) {
        available.push_back(surface_arcs::N_SSE4::loops);
    }
#endif
#if HWY_TARGETS & HWY_SSSE3
    if (__builtin_cpu_supports("ssse3")) {
        available.push_back(surface_arcs::N_SSSE3::loops);
    }
#endif
    available.push_back(surface_arcs::HWY_STATIC_DISPATCH(loops));
    return available;
}

const sSurfaceLoops*& chosenLoops() {
    static const sSurfaceLoops* chosen = &availableSurfaceLoops().front();
    return chosen;
}

} // namespace

const std::vector<sSurfaceLoops>& availableSurfaceLoops() {
    static const std::vector<sSurfaceLoops> available = loopsOfThisProcessor();
    return available;
}

const sSurfaceLoops& surfaceLoops() {
    return *chosenLoops();
}

void chooseSurfaceLoops(std::size_t place) {
    chosenLoops() = &availableSurfaceLoops()[place];
}

#endif // HWY_ONCE

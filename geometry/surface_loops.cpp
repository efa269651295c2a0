// The loops are included once for every instruction set. Which to use is asked of the compiler's
// own tables; the library's dispatcher would add 3 ms to the start of every program.
#include "geometry/surface_loops.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/surface_arcs-inl.h"
#include <hwy/foreach_target.h>

#include "geometry/surface_arcs-inl.h"

#if HWY_ONCE

namespace kelmo {

namespace {

// Instruction sets by their parts: clang 14 does not know the names of the levels of x86-64.
bool hasSse4() {
    return __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt");
}

bool hasAvx2() {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
           __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
}

bool hasAvx3() {
    return hasAvx2() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") &&
           __builtin_cpu_supports("avx512vl");
}

std::vector<sSurfaceLoops> loopsOfThisProcessor() {
    std::vector<sSurfaceLoops> available;
#if HWY_TARGETS & HWY_AVX3
    if (hasAvx3()) {
        available.push_back(surface_arcs::N_AVX3::loops);
    }
#endif
#if HWY_TARGETS & HWY_AVX2
    if (hasAvx2()) {
        available.push_back(surface_arcs::N_AVX2::loops);
    }
#endif
#if HWY_TARGETS & HWY_SSE4
    if (hasSse4()) {
        available.push_back(surface_arcs::N_SSE4::loops);
    }
#endif
#if HWY_TARGETS & HWY_SSSE3
    if (__builtin_cpu_supports("ssse3") != 0) {
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

} // namespace kelmo

#endif // HWY_ONCE

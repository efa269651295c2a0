// Giving up a calculation while it runs.
#include "base/in_parallel.h"
#include "base/stop_request.h"
#include "geometry/atom_space_calculations.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <atomic>

namespace kelmo {

namespace {

TEST(StopRequest, LoopIsGivenUpOnAllThreads) {
    std::atomic<int> done = 0;
    const cStopRequest request([&] { return done >= 100; });
    EXPECT_THROW(inParallel(1'000'000, 16, [&](std::size_t) { ++done; }), sStopped);
    EXPECT_GE(done, 100);
    EXPECT_LT(done, 1000);
}

TEST(StopRequest, ReachesLoopsWithinLoops) {
    std::atomic<int> done = 0;
    const cStopRequest request([&] { return done >= 100; });
    const auto inner = [&](std::size_t) {
        inParallel(1'000'000, 16, [&](std::size_t) { ++done; });
    };
    EXPECT_THROW(inParallel(8, 1, inner), sStopped);
    EXPECT_LT(done, 1000);
}

TEST(StopRequest, InnermostOneCountsAndEndsWithItsScope) {
    const cStopRequest outer([] { return false; });
    {
        const cStopRequest inner([] { return true; });
        EXPECT_THROW(inParallel(10, 1, [](std::size_t) {}), sStopped);
    }
    std::atomic<int> done = 0;
    inParallel(10, 1, [&](std::size_t) { ++done; });
    EXPECT_EQ(done, 10);
}

TEST(StopRequest, CalculationsHeedIt) {
    cPdbPeptide peptide = samplePeptide("1ubq");
    const cStopRequest request([] { return true; });
    EXPECT_THROW(peptide.setAccessibleSurfaceArea(1.4, 0.25), sStopped);
    EXPECT_THROW(peptide.setAccessibleSurfaceAreaUnbound(1.4, 0.25), sStopped);
    EXPECT_THROW(peptide.setDepthIndex(), sStopped);
    EXPECT_THROW(peptide.setProtrusionIndex(10.0, 20.1), sStopped);
}

TEST(StopRequest, OneThatSaysNoChangesNothing) {
    cPdbPeptide alone = samplePeptide("1ubq");
    cPdbPeptide asked = samplePeptide("1ubq");
    alone.setAccessibleSurfaceArea(1.4, 0.25);
    std::atomic<unsigned> questions = 0;
    const cStopRequest request([&] {
        ++questions;
        return false;
    });
    asked.setAccessibleSurfaceArea(1.4, 0.25);
    EXPECT_GE(questions, asked.atoms.size());
    EXPECT_EQ(asked.totalAsa, alone.totalAsa);
}

} // namespace

} // namespace kelmo

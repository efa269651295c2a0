// Loops over independent items on all threads of the current arena.
#pragma once

#include "geometry/stop_request.h"

#include <cstddef>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

/// So many residues are worth a task when each costs little.
constexpr std::size_t residuesPerTask = 128;

/// Calls `work(i)` for 0 <= i < `count`, at least `grain` of them on one thread. Isolated, so that
/// a thread that waits here never starts on another structure. Heeds the stop request of this
/// thread. Either all of the work is done or an exception comes out, also while a loop around this
/// one is given up.
template <typename Work>
void inParallel(std::size_t count, std::size_t grain, Work work) {
    const cStopRequest* const request = cStopRequest::current();
    // By default a loop ends without a word when the one around it is cancelled.
    tbb::task_group_context ownCancellation(tbb::task_group_context::isolated);
    tbb::this_task_arena::isolate([&] {
        tbb::parallel_for(
            tbb::blocked_range<std::size_t>(0, count, grain),
            [&](const tbb::blocked_range<std::size_t>& range) {
                const cStopRequest::cLoan loan(request);
                for (std::size_t i = range.begin(); i < range.end(); ++i) {
                    if (request != nullptr) {
                        request->check();
                    }
                    work(i);
                }
            },
            ownCancellation);
    });
}

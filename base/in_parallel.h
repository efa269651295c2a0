// Loops over independent items on all free threads.
#pragma once

#include "base/exported.h"
#include "base/parallel_work.h"
#include "base/stop_request.h"

#include <cstddef>

namespace KELMO_API kelmo {

/// How many residues are worth a task of their own when each costs little.
constexpr std::size_t residuesPerTask = 128;

/// Calls `work(i)` for 0 <= i < `count`, at least `grain` of them on one thread. Heeds the stop
/// request of this thread. Threads, waiting and exceptions as with shareOut().
template <typename Work>
void inParallel(std::size_t count, std::size_t grain, Work work) {
    const cStopRequest* const request = cStopRequest::current();
    shareOut(count, grain, [&](std::size_t begin, std::size_t end) {
        const cStopRequest::cLoan loan(request);
        for (std::size_t i = begin; i < end; ++i) {
            if (request != nullptr) {
                request->check();
            }
            work(i);
        }
    });
}

} // namespace kelmo

#include "base/parallel_work.h"

#include "base/thread_order.h"

#include <tbb/blocked_range.h>
#include <tbb/global_control.h>
#include <tbb/info.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

#include <cassert>
#include <future>
#include <system_error>
#include <thread>
#include <vector>

namespace kelmo {

// A build with ThreadSanitizer leaves this file unchecked: the templates of the library work hand
// in hand with its compiled part, which is unchecked, and what the one half does would be taken for
// a race with the other. Here stands nothing but those templates; the work itself is compiled
// elsewhere and checked in full.

void shareOut(std::size_t count, std::size_t rangeSize,
              const std::function<void(std::size_t begin, std::size_t end)>& work) {
    using tRange = tbb::blocked_range<std::size_t>;
    cForkedWork order;
    // By default a loop ends without a word when the one around it is cancelled.
    tbb::task_group_context ownCancellation(tbb::task_group_context::isolated);
    tbb::this_task_arena::isolate([&] {
        tbb::parallel_for(
            tRange(0, count, rangeSize),
            [&](const tRange& range) {
                const cForkedWork::cPiece piece(order);
                work(range.begin(), range.end());
            },
            ownCancellation);
    });
}

void workInOrder(std::size_t underWay, const std::function<bool(std::size_t place)>& take,
                 const std::function<void(std::size_t place)>& work,
                 const std::function<void(std::size_t place)>& handOn) {
    using tFilter = tbb::filter_mode;
    cForkedWork order;
    // What one thread did at a place, or at an end of the line, is over for the next that comes by.
    std::vector<char> isTaken(underWay);
    char entrance = 0;
    char exit = 0;
    std::size_t taken = 0;
    const auto takeNext = [&](tbb::flow_control& control) {
        const cForkedWork::cPiece piece(order);
        const cVisit visitToTheEntrance(&entrance);
        // Items leave in order, and no more of them are under way: the oldest place is free again.
        const std::size_t place = taken++ % underWay;
        const cVisit visit(&isTaken[place]);
        assert(isTaken[place] == 0);
        isTaken[place] = 1;
        if (!take(place)) {
            control.stop();
        }
        return place;
    };
    const auto workOn = [&](std::size_t place) {
        const cForkedWork::cPiece piece(order);
        const cVisit visit(&isTaken[place]);
        work(place);
        return place;
    };
    const auto finish = [&](std::size_t place) {
        const cForkedWork::cPiece piece(order);
        const cVisit visit(&isTaken[place]);
        const cVisit visitToTheExit(&exit);
        handOn(place);
        isTaken[place] = 0;
    };
    using tPlace = std::size_t;
    tbb::task_group_context ownCancellation(tbb::task_group_context::isolated);
    tbb::this_task_arena::isolate([&] {
        tbb::parallel_pipeline(underWay,
                               tbb::make_filter<void, tPlace>(tFilter::serial_in_order, takeNext) &
                                   tbb::make_filter<tPlace, tPlace>(tFilter::parallel, workOn) &
                                   tbb::make_filter<tPlace, void>(tFilter::serial_in_order, finish),
                               ownCancellation);
    });
}

void runTogether(std::size_t times, int threads, const std::function<void()>& work) {
    const tbb::global_control control(tbb::global_control::max_allowed_parallelism,
                                      static_cast<std::size_t>(threads));
    tbb::task_arena arena(threads);
    cForkedWork order;
    arena.execute([&] {
        tbb::task_group group;
        for (std::size_t i = 0; i < times; ++i) {
            group.run([&] {
                const cForkedWork::cPiece piece(order);
                work();
            });
        }
        group.wait();
    });
}

int startableThreads(int wanted) {
    std::promise<void> end;
    const std::shared_future<void> ended = end.get_future().share();
    std::vector<std::thread> threads;
    try {
        while (static_cast<int>(threads.size()) + 1 < wanted) {
            threads.emplace_back([ended] { ended.wait(); });
        }
    } catch (const std::system_error&) { // as many as there can be
    }
    end.set_value();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return static_cast<int>(threads.size()) + 1;
}

void limitThreads(int threads) {
    static tbb::global_control control(tbb::global_control::max_allowed_parallelism,
                                       static_cast<std::size_t>(threads));
}

int usualThreads() {
    return tbb::info::default_concurrency();
}

} // namespace kelmo

// Work shared among threads: the one place where the project meets the library that schedules it.
#pragma once

#include "base/exported.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace KELMO_API kelmo {

/// Calls `work(begin, end)` for ranges that together are all of 0 <= i < count, on this thread and
/// on those that are free, and returns when all is done. A range is split no further than to
/// `rangeSize`. While this thread waits it starts on nothing else: in
/// a batch, that would hold one more structure in memory. An exception of a range ends the
/// others early and comes out here; otherwise all of the work is done, also while work around this
/// one is given up.
void shareOut(std::size_t count, std::size_t rangeSize,
              const std::function<void(std::size_t begin, std::size_t end)>& work);

/// Calls `work` so many times, at the same time as far as threads are free, on at most `threads` of
/// them, this one included, and returns when all is done. Whatever shareOut() finds to do in the
/// meantime is done by these threads too.
void runTogether(std::size_t times, int threads, const std::function<void()>& work);

/// How many threads, this one included and `wanted` at most, the system lets the process have now.
int startableThreads(int wanted);

/// Keeps the process to so many threads for good: where the system refuses one to the scheduler,
/// the process ends.
void limitThreads(int threads);

/// How many threads the scheduler takes by default: as many as the process may use cores.
int usualThreads();

/// Takes items one after the other until take() returns false, works on several of them at the same
/// time, at most `underWay`, and hands them on one at a time in the order of taking, each on any
/// thread. An item stands at a place below `underWay`, which it leaves to a later one when it has
/// been handed on. Waiting and exceptions as with shareOut().
void workInOrder(std::size_t underWay, const std::function<bool(std::size_t place)>& take,
                 const std::function<void(std::size_t place)>& work,
                 const std::function<void(std::size_t place)>& handOn);

/// Takes items one after the other until take(item) returns false, works on at most `underWay` of
/// them at the same time, and hands them on one at a time in the order of taking. There are
/// `underWay` items in all: take() finds in one what a former round has left there. Waiting and
/// exceptions as with shareOut().
template <typename Item, typename Take, typename Work, typename HandOn>
void workInOrder(std::size_t underWay, Take take, Work work, HandOn handOn) {
    // Not owned by the scheduler, which forgets some of them when all is given up.
    std::vector<Item> items(underWay);
    workInOrder(
        underWay, [&](std::size_t place) { return take(items[place]); },
        [&](std::size_t place) { work(items[place]); },
        [&](std::size_t place) { handOn(items[place]); });
}

} // namespace kelmo

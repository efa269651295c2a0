// Work shared among threads: the one place where the project meets the library that schedules it.
#pragma once

#include "model/thread_order.h"

#include <cstddef>
#include <functional>
#include <memory>

/// Calls `work(begin, end)` for ranges that together are all of 0 <= i < count, on this thread and
/// on those that are free, and returns when all is done. A range is split no further than to
/// `rangeSize`. While this thread waits it starts on nothing else. An exception of a range ends the
/// others early and comes out here; otherwise all of the work is done, also while work around this
/// one is given up.
void shareOut(std::size_t count, std::size_t rangeSize,
              const std::function<void(std::size_t begin, std::size_t end)>& work);

/// Calls `work` so many times, at the same time as far as threads are free, on at most `threads` of
/// them with this one, and returns when all is done. Whatever shareOut() finds to do in the
/// meantime is done by the same threads.
void runTogether(std::size_t times, int threads, const std::function<void()>& work);

/// Calls `work` on this thread. While it waits inside for others, it starts on nothing that was
/// begun outside.
void keepTogether(const std::function<void()>& work);

/// Takes items one after the other until there is none (null), works on several of them at the same
/// time, at most `underWay`, and hands them on one at a time in the order of taking, each on any
/// thread. Waiting and exceptions as with shareOut().
void workInOrder(std::size_t underWay, const std::function<std::shared_ptr<void>()>& take,
                 const std::function<void(void*)>& work, const std::function<void(void*)>& handOn);

/// The same with items of one type: `take(item)` fills an item or returns false.
template <typename Item, typename Take, typename Work, typename HandOn>
void workInOrder(std::size_t underWay, Take take, Work work, HandOn handOn) {
    workInOrder(
        underWay,
        [&]() -> std::shared_ptr<void> {
            // Destroyed by any thread, also when everything is given up.
            const std::shared_ptr<Item> item(new Item, [](Item* last) {
                takeOver(last);
                delete last;
            });
            return take(*item) ? item : nullptr;
        },
        [&](void* item) { work(*static_cast<Item*>(item)); },
        [&](void* item) { handOn(*static_cast<Item*>(item)); });
}

// Sharing work among threads: everything is done once, and when the call returns it is done.
#include "base/parallel_work.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace kelmo {

namespace {

/// The threads that have come by.
class cVisitors {
  public:
    void sign() {
        const std::lock_guard lock(mutex);
        threads.insert(std::this_thread::get_id());
    }
    const std::set<std::thread::id>& seen() const { return threads; }

  private:
    std::mutex mutex;
    std::set<std::thread::id> threads;
};

} // namespace

TEST(ParallelWork, EveryNumberIsInExactlyOneRange) {
    for (const std::size_t count : {0U, 1U, 2U, 255U, 256U, 257U, 10'000U}) {
        for (const std::size_t rangeSize : {1U, 7U, 256U, 20'000U}) {
            std::vector<int> times(count, 0);
            shareOut(count, rangeSize, [&](std::size_t begin, std::size_t end) {
                ASSERT_LT(begin, end);
                ASSERT_LE(end, count);
                for (std::size_t i = begin; i < end; ++i) {
                    ++times[i];
                }
            });
            EXPECT_EQ(times, std::vector<int>(count, 1)) << count << ' ' << rangeSize;
        }
    }
}

TEST(ParallelWork, RangeThatFitsIsNotSplit) {
    int calls = 0;
    shareOut(256, 256, [&](std::size_t begin, std::size_t end) {
        ++calls;
        EXPECT_EQ(begin, 0U);
        EXPECT_EQ(end, 256U);
    });
    EXPECT_EQ(calls, 1);
}

TEST(ParallelWork, ExceptionOfARangeComesOut) {
    const auto work = [](std::size_t begin, std::size_t end) {
        if (begin <= 500 && 500 < end) {
            throw std::runtime_error("five hundred");
        }
    };
    EXPECT_THROW(shareOut(1000, 1, work), std::runtime_error);
}

TEST(ParallelWork, EverythingTogetherIsDoneSoManyTimes) {
    for (const std::size_t times : {0U, 1U, 5U, 100U}) {
        for (const int threads : {1, 2, 4}) {
            std::atomic<std::size_t> calls = 0;
            runTogether(times, threads, [&] { ++calls; });
            EXPECT_EQ(calls, times) << threads;
        }
    }
}

TEST(ParallelWork, OneThreadIsTheCaller) {
    cVisitors visitors;
    runTogether(20, 1, [&] {
        shareOut(1000, 1, [&](std::size_t, std::size_t) { visitors.sign(); });
        visitors.sign();
    });
    EXPECT_EQ(visitors.seen(), std::set{std::this_thread::get_id()});
}

TEST(ParallelWork, RangesWithinUseNoMoreThreads) {
    cVisitors visitors;
    runTogether(20, 3, [&] {
        shareOut(1000, 1, [&](std::size_t, std::size_t) { visitors.sign(); });
        visitors.sign();
    });
    EXPECT_LE(visitors.seen().size(), 3U);
}

TEST(ParallelWork, TwoAreAtWorkAtTheSameTime) {
    std::atomic<int> present = 0;
    // Each waits for the other: one after the other this would never end.
    runTogether(2, 2, [&] {
        ++present;
        while (present < 2) {
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(present, 2);
}

TEST(ParallelWork, WaitingThreadBeginsNothingFromOutside) {
    // Which work of runTogether() this thread is in.
    static thread_local int depth = 0;
    // Long enough for others to take parts of a loop, for which its own thread then waits.
    const auto takeSomeTime = [] { std::this_thread::sleep_for(std::chrono::microseconds(200)); };
    std::atomic<int> deepest = 0;
    runTogether(100, 4, [&] {
        const int here = ++depth;
        int seen = deepest;
        while (here > seen && !deepest.compare_exchange_weak(seen, here)) {
        }
        shareOut(8, 1, [&](std::size_t, std::size_t) { takeSomeTime(); });
        int next = 0;
        workInOrder<int>(
            4, [&](int&) { return ++next < 8; }, [&](int&) { takeSomeTime(); }, [](int&) {});
        --depth;
    });
    EXPECT_EQ(deepest, 1);
}

TEST(ParallelWork, LoopWithinIsDoneToItsEndWhenTheOneAroundItIsGivenUp) {
    int roundsAtTheSameTime = 0;
    for (int round = 0; round < 50; ++round) {
        std::atomic<bool> isInside = false;
        std::atomic<bool> isGivenUp = false;
        std::atomic<int> done = 0;
        const auto wait = [](const std::atomic<bool>& sign) {
            for (int i = 0; i < 1000 && !sign; ++i) {
                std::this_thread::sleep_for(std::chrono::microseconds(10));
            }
            return sign.load();
        };
        const auto work = [&](std::size_t begin, std::size_t) {
            if (begin == 0) {
                wait(isInside);
                isGivenUp = true;
                throw std::runtime_error("given up");
            }
            isInside = true;
            if (wait(isGivenUp)) {
                // The exception is on its way to the loop.
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                ++roundsAtTheSameTime;
            }
            shareOut(100, 1, [&](std::size_t, std::size_t) { ++done; });
            EXPECT_EQ(done, 100);
        };
        EXPECT_THROW(runTogether(1, 2, [&] { shareOut(2, 1, work); }), std::runtime_error);
    }
    EXPECT_GT(roundsAtTheSameTime, 0);
}

TEST(ParallelWork, ItemsAreHandedOnInTheOrderOfTaking) {
    struct sItem {
        int number = 0;
        int square = 0;
    };
    for (const int threads : {1, 2, 4}) {
        int next = 0;
        std::vector<int> squares;
        std::atomic<int> underWay = 0;
        std::atomic<int> most = 0;
        runTogether(1, threads, [&] {
            workInOrder<sItem>(
                8,
                [&](sItem& item) {
                    const int now = ++underWay;
                    most = std::max(most.load(), now);
                    item.number = next++;
                    return item.number < 5000;
                },
                [](sItem& item) { item.square = item.number * item.number; },
                [&](const sItem& item) {
                    --underWay;
                    squares.push_back(item.square);
                });
        });
        ASSERT_EQ(squares.size(), 5000U);
        for (int i = 0; i < 5000; ++i) {
            ASSERT_EQ(squares[static_cast<std::size_t>(i)], i * i);
        }
        EXPECT_LE(most, 9) << "with the one that found the end";
    }
}

// Items that wait for their turn when all is given up are the ones that get lost.
TEST(ParallelWork, NothingIsLeftOfItemsThatWereGivenUp) {
    struct sItem {
        int number = 0;
        std::shared_ptr<int> content;
    };
    for (int round = 0; round < 100; ++round) {
        const auto content = std::make_shared<int>(round);
        int next = 0;
        std::atomic<int> finished = 0;
        const auto take = [&](sItem& item) {
            item = {next++, content};
            if (next > 30) {
                throw std::runtime_error("no more");
            }
            return true;
        };
        const auto work = [&](const sItem& item) {
            // The first one holds the others up, if there is another thread to work on them.
            for (int i = 0; item.number == 0 && i < 1000 && finished < 5; ++i) {
                std::this_thread::yield();
            }
            ++finished;
        };
        EXPECT_THROW(workInOrder<sItem>(16, take, work, [](const sItem&) {}), std::runtime_error);
        ASSERT_EQ(content.use_count(), 1);
    }
}

TEST(ParallelWork, ErrorsOfEveryKindOfWorkInOrderComeOut) {
    const auto fail = [](bool must) {
        if (must) {
            throw std::runtime_error("no more");
        }
    };
    for (int where = 0; where < 3; ++where) {
        int next = 0;
        const auto take = [&](int& item) {
            item = next++;
            fail(where == 0 && item == 50);
            return item < 100;
        };
        EXPECT_THROW(workInOrder<int>(
                         4, take, [&](const int& item) { fail(where == 1 && item == 50); },
                         [&](const int& item) { fail(where == 2 && item == 50); }),
                     std::runtime_error);
    }
}

} // namespace kelmo

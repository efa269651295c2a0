// Reports put together in blocks, several at a time: every item once, and in order.
#include "base/in_parallel.h"
#include "base/parallel_work.h"
#include "reports/report_blocks.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

namespace kelmo {

namespace {

TEST(ReportBlocks, EveryItemComesOnceAndInOrder) {
    for (const std::size_t count : {0U, 1U, 31U, 32U, 33U, 64U, 10'000U}) {
        std::string expected;
        for (std::size_t i = 0; i < count; ++i) {
            expected += std::to_string(i) + '\n';
        }
        std::string text;
        inBlocks(
            count, [](std::string& block, std::size_t i) { block += std::to_string(i) + '\n'; },
            [&](std::string_view block) { text += block; });
        EXPECT_EQ(text, expected);
    }
}

TEST(ReportBlocks, FewBlocksStandInMemoryAtATime) {
    std::atomic<int> waiting = 0;
    std::atomic<int> most = 0;
    inBlocks(
        100'000,
        [&](std::string& block, std::size_t) {
            if (block.empty()) {
                const int now = ++waiting;
                int seen = most;
                while (now > seen && !most.compare_exchange_weak(seen, now)) {
                }
            }
            block += 'x';
        },
        [&](std::string_view) { --waiting; });
    EXPECT_EQ(waiting, 0);
    EXPECT_LE(most, 64);
    EXPECT_GE(most, 1);
}

TEST(ReportBlocks, LoopAroundThatIsGivenUpCutsNoReportShort) {
    for (int attempt = 0; attempt < 50; ++attempt) {
        std::atomic<std::size_t> handedOn = 0;
        std::atomic<bool> isUnderWay = false;
        const auto work = [&](std::size_t i) {
            if (i == 0) {
                inBlocks(
                    20'000,
                    [&](std::string& block, std::size_t) {
                        isUnderWay = true;
                        block += 'x';
                    },
                    [&](std::string_view block) { handedOn += block.size(); });
                return;
            }
            while (!isUnderWay) {
                std::this_thread::yield();
            }
            throw std::runtime_error("the other report failed");
        };
        runTogether(1, 2, [&] { EXPECT_THROW(inParallel(2, 1, work), std::runtime_error); });
        EXPECT_EQ(handedOn, 20'000U);
    }
}

TEST(ReportBlocks, ErrorOfAnItemComesOut) {
    EXPECT_THROW(inBlocks(
                     1000,
                     [](std::string&, std::size_t i) {
                         if (i == 500) {
                             throw std::runtime_error("no more");
                         }
                     },
                     [](std::string_view) {}),
                 std::runtime_error);
}

} // namespace

} // namespace kelmo

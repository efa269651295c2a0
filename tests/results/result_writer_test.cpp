// The one writer of results: order, commits, many threads, and what happens when writing fails.
#include "results/result_writer.h"

#include "results/database.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <thread>

namespace kelmo {

namespace {

/// What a results file was told.
struct sLog {
    std::vector<std::size_t> written;
    std::size_t commits = 0;
    std::size_t finishes = 0;
    bool isComplete = false;
};

class cLoggingFile final : public cResultFile {
  public:
    cLoggingFile(sLog& itsLog, bool isOrdered, std::size_t failingWrite = SIZE_MAX)
        : log(itsLog), isInOrder(isOrdered), failingPosition(failingWrite) {}

    bool needsOrder() const override { return isInOrder; }
    bool holds(std::size_t, std::string_view sha256) const override { return sha256 == "held"; }
    void write(std::size_t position, const sFileRecord& file) override {
        if (position == failingPosition) {
            throw cResultError("results file x: full");
        }
        EXPECT_EQ(file.path, std::to_string(position));
        log.written.push_back(position);
    }
    void commit() override { ++log.commits; }
    void finish(bool isComplete) override {
        ++log.finishes;
        log.isComplete = isComplete;
    }

  private:
    sLog& log;
    const bool isInOrder;
    const std::size_t failingPosition;
};

std::vector<std::unique_ptr<cResultFile>> oneFile(sLog& log, bool isOrdered,
                                                  std::size_t failingWrite = SIZE_MAX) {
    std::vector<std::unique_ptr<cResultFile>> files;
    files.push_back(std::make_unique<cLoggingFile>(log, isOrdered, failingWrite));
    return files;
}

std::unique_ptr<sFileRecord> recordOf(std::size_t position) {
    auto record = std::make_unique<sFileRecord>();
    record->path = std::to_string(position);
    return record;
}

std::vector<std::size_t> numbersBelow(std::size_t end) {
    std::vector<std::size_t> numbers(end);
    std::iota(numbers.begin(), numbers.end(), std::size_t{0});
    return numbers;
}

} // namespace

TEST(ResultWriter, WithoutNeedOfOrderWritesWhatComesAtOnce) {
    sLog log;
    cResultWriter writer(oneFile(log, false));
    writer.take(2, recordOf(2));
    writer.take(0, recordOf(0));
    EXPECT_EQ(log.written, (std::vector<std::size_t>{2, 0}));
}

TEST(ResultWriter, WhereOrderCountsKeepsWhatIsEarly) {
    sLog log;
    cResultWriter writer(oneFile(log, true));
    writer.take(2, recordOf(2));
    writer.take(1, nullptr); // taken over
    EXPECT_TRUE(log.written.empty());
    writer.take(0, recordOf(0));
    EXPECT_EQ(log.written, (std::vector<std::size_t>{0, 2}));
}

TEST(ResultWriter, WritesAtTheEndWhatAStopLeftBehind) {
    sLog log;
    cResultWriter writer(oneFile(log, true));
    writer.take(5, recordOf(5));
    writer.take(3, recordOf(3));
    writer.finish(false);
    EXPECT_EQ(log.written, (std::vector<std::size_t>{3, 5}));
    EXPECT_EQ(log.finishes, 1U);
    EXPECT_FALSE(log.isComplete);
}

TEST(ResultWriter, CommitsEveryHundredFiles) {
    sLog log;
    cResultWriter writer(oneFile(log, false));
    for (std::size_t i = 0; i < 250; ++i) {
        writer.take(i, recordOf(i));
    }
    EXPECT_GE(log.commits, 2U); // more on a machine on which this takes seconds
}

TEST(ResultWriter, TakesFromManyThreadsEveryFileOnce) {
    for (const bool isOrdered : {true, false}) {
        sLog log;
        cResultWriter writer(oneFile(log, isOrdered));
        std::atomic<std::size_t> next{0};
        constexpr std::size_t count = 20'000;
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] {
                for (std::size_t position = next++; position < count; position = next++) {
                    writer.take(position, recordOf(position));
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        writer.finish(true);
        EXPECT_TRUE(log.isComplete);
        if (!isOrdered) {
            std::sort(log.written.begin(), log.written.end());
        }
        EXPECT_TRUE(log.written == numbersBelow(count));
    }
}

TEST(ResultWriter, WhatWaitsForItsTurnIsBounded) {
    sLog log;
    cResultWriter writer(oneFile(log, true));
    const auto largeRecord = [](std::size_t position) {
        auto record = recordOf(position);
        record->message.resize(std::size_t{40} << 20U);
        return record;
    };
    writer.take(1, largeRecord(1));
    writer.take(2, largeRecord(2)); // the queue is full now
    std::atomic<bool> isTaken{false};
    std::thread late([&] {
        writer.take(3, recordOf(3));
        isTaken = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(isTaken);
    writer.take(0, recordOf(0)); // the one that all wait for never waits
    late.join();
    EXPECT_EQ(log.written, numbersBelow(4));
}

TEST(ResultWriter, FailureEndsItAndWakesWhoWaits) {
    sLog log;
    cResultWriter writer(oneFile(log, true, 1));
    writer.take(1, recordOf(1));
    auto large = recordOf(2);
    large->message.resize(std::size_t{80} << 20U);
    writer.take(2, std::move(large));
    std::thread late([&] { writer.take(3, recordOf(3)); });
    writer.take(0, recordOf(0));
    late.join();
    EXPECT_TRUE(writer.hasFailed());
    EXPECT_EQ(writer.failure(), "results file x: full");
    EXPECT_EQ(log.written, numbersBelow(1));
    writer.take(4, recordOf(4));
    writer.finish(true);
    EXPECT_EQ(log.finishes, 0U);
}

TEST(ResultWriter, WritesNothingThatTheFileHolds) {
    sLog log;
    cResultWriter writer(oneFile(log, false));
    auto record = recordOf(0);
    record->sha256 = "held";
    writer.take(0, std::move(record));
    EXPECT_TRUE(log.written.empty());
}

} // namespace kelmo

// Programs that are wrong on purpose, one for each way by which threads get their work here: what
// ThreadSanitizer is told of the libraries' order, and what it is told to leave out, must not hide
// them. "orderly" does all of it properly and must not be reported.

#include "base/parallel_work.h"
#include "run/analysis_run.h"
#include "tests/threads/message_receiver.h"

#include <QCoreApplication>
#include <QStringList>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace kelmo {

namespace {

/// Keeps pieces of work until another thread has one, too, without putting them in any order.
class cMeeting {
  public:
    void attend() {
        constexpr std::chrono::seconds patience(60);
        present.fetch_add(1, std::memory_order_relaxed);
        const auto end = std::chrono::steady_clock::now() + patience;
        while (present.load(std::memory_order_relaxed) < 2) {
            if (std::chrono::steady_clock::now() > end) {
                std::fputs("No second thread has come\n", stderr);
                std::exit(EXIT_FAILURE);
            }
            std::this_thread::yield();
        }
    }

  private:
    std::atomic<int> present{0};
};

/// A worker that sends a message and then touches what the receiver of it touches.
class cTalkingRun : public cAnalysisRun {
  public:
    explicit cTalkingRun(bool countsAfterMessage)
        : cAnalysisRun(nullptr), isCareless(countsAfterMessage) {}

    void setUp(const cSettings&, const sParameterTables&) override {}
    void setInputFiles(const QStringList&) override {}

    int files = 0;

  protected:
    const QStringList& pathsToAnalyse() const override { return paths; }
    QString reportDirectory() const override { return QStringLiteral("./"); }
    sAnalysisPlan plan() const override { return {}; }
    const std::map<std::string, double>& radiiTable() const override { return radii; }
    eFileOutcome analyse(const std::string&, const std::string&) override {
        if (!isCareless) {
            ++files;
        }
        emit messageSent({eSeverity::progress, "done"});
        if (isCareless) {
            ++files;
        }
        return eFileOutcome::analysed;
    }

  private:
    const QStringList paths{QStringLiteral("any")};
    const std::map<std::string, double> radii;
    bool isCareless;
};

/// Many, as the sanitizer can miss a race of two accesses at the very same time.
using tCounters = std::array<int, 1000>;

/// Counts on by one, for each of two threads in counters of its own or in those of both.
class cCounting {
  public:
    explicit cCounting(bool areShared) : isShared(areShared) {}

    void count(std::size_t thread) {
        meeting.attend();
        for (int& counter : counters[isShared ? 0 : thread]) {
            ++counter;
        }
    }
    void print() const { std::printf("%d\n", counters[0].back() + counters[1].back()); }

  private:
    bool isShared;
    cMeeting meeting;
    std::array<tCounters, 2> counters{};
};

/// Two threads, each with a piece of the same work.
void countInPieces(bool areShared) {
    cCounting counting(areShared);
    runTogether(1, 2, [&] {
        shareOut(2, 1, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                counting.count(i);
            }
        });
    });
    counting.print();
}

/// Two threads, each with work of its own.
void countTogether(bool areShared) {
    cCounting counting(areShared);
    std::atomic<std::size_t> next{0};
    runTogether(2, 2, [&] { counting.count(next.fetch_add(1, std::memory_order_relaxed)); });
    counting.print();
}

void readAtMessage(bool countsAfterMessage) {
    cTalkingRun run(countsAfterMessage);
    cMessageReceiver receiver(run, [&] { std::printf("%d\n", run.files); });
    run.start();
    while (!receiver.hasReceived) {
        QCoreApplication::processEvents();
    }
    run.awaitEnd();
}

void readAtEnd(bool isAwaited) {
    cTalkingRun run(false);
    run.start();
    if (isAwaited) {
        run.awaitEnd();
    }
    std::printf("%d\n", run.files);
    run.awaitEnd();
}

} // namespace

} // namespace kelmo

using namespace kelmo;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const std::string_view wrong = argc > 1 ? argv[1] : "";
    if (wrong == "orderly" || wrong == "pieces") {
        countInPieces(wrong == "pieces");
    }
    if (wrong == "orderly" || wrong == "tasks") {
        countTogether(wrong == "tasks");
    }
    if (wrong == "orderly" || wrong == "message") {
        readAtMessage(wrong == "message");
    }
    if (wrong == "orderly" || wrong == "end") {
        readAtEnd(wrong != "end");
    }
    return EXIT_SUCCESS;
}

// The walk over the files that both workers share, with an analysis of the test's own.
#include "base/stop_request.h"
#include "base/thread_order.h"
#include "tests/run/message_log.h"
#include "tests/run/run_test_tools.h"
#include "tests/xml/scratch_directory.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QSemaphore>
#include <QThread>

#include <atomic>
#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace kelmo {

namespace {

using tLines = std::vector<std::string>;

/// A worker whose work on a file is given to it.
class cGivenRun : public cAnalysisRun {
  public:
    using tWork = std::function<eFileOutcome(const std::string& path)>;

    cGivenRun(const std::vector<std::string>& files, tWork given)
        : cAnalysisRun(nullptr), paths(pathList(files)), work(std::move(given)) {}

    std::vector<std::string> stamps;

  protected:
    const QStringList& pathsToAnalyse() const override { return paths; }
    QString reportDirectory() const override { return QStringLiteral("missing/"); }
    eFileOutcome analyse(const QString& path, const QString& timeStamp) override {
        stamps.push_back(timeStamp.toStdString());
        return work(path.toStdString());
    }

  private:
    QStringList paths;
    tWork work;
};

/// A worker that writes a document and then does something of the test's in its table.
class cStoppingRun : public cAnalysisRun {
  public:
    cStoppingRun(const cScratchDirectory& output, std::function<void()> givenTable)
        : cAnalysisRun(nullptr), directory(QString::fromStdString(output.path().string()) + '/'),
          table(std::move(givenTable)) {}

  protected:
    const QStringList& pathsToAnalyse() const override { return none; }
    QString reportDirectory() const override { return directory; }
    eFileOutcome analyse(const QString& path, const QString& timeStamp) override {
        return calculateAndWrite(path, timeStamp) ? eFileOutcome::analysed : eFileOutcome::stopped;
    }
    std::vector<sReportGroup> planReports(const QString& base) override {
        const cXmlContent document = [](cXmlWriter& writer) {
            writer.writeElement("whole", "yes", 0);
        };
        return {{[] { return true; },
                 {{base + ".xml", document},
                  {base + ".tbl", cTableContent([this](QTextStream&) { table(); })}}}};
    }

  private:
    const QStringList none;
    const QString directory;
    const std::function<void()> table;
};

} // namespace

TEST(AnalysisRun, StopLeavesTheReportsThatAreWhole) {
    const cScratchDirectory output;
    const std::string document = output.file("a_" + fixedStamp.toStdString() + ".xml");
    cStoppingRun run(output, [&] {
        const QDeadlineTimer patience(30'000);
        while (!std::filesystem::exists(document) && !patience.hasExpired()) {
            QThread::msleep(1); // another thread writes it, if this one has not
        }
        throw sStopped{};
    });
    EXPECT_EQ(run.analyseFile(QStringLiteral("a"), fixedStamp), eFileOutcome::stopped);
    const auto left = filesIn(output.path());
    ASSERT_EQ(left.size(), 1U);
    EXPECT_TRUE(left.begin()->second.ends_with("<whole>yes</whole>\n"))
        << left.begin()->first << left.begin()->second;
}

TEST(AnalysisRun, FilesAreTakenInTheirOrderWhateverBecomesOfThem) {
    tLines taken;
    cGivenRun run({"a", "b", "c"}, [&](const std::string& path) {
        taken.push_back(path);
        return path == "b" ? eFileOutcome::failed : eFileOutcome::analysed;
    });
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(taken, (tLines{"a", "b", "c"}));
    EXPECT_EQ(run.stamps, tLines(3, run.stamps.front()));
    EXPECT_EQ(run.stamps.front().size(), 12U);
}

TEST(AnalysisRun, StopOfAFileEndsTheRun) {
    tLines taken;
    cGivenRun run({"a", "b", "c"}, [&](const std::string& path) {
        taken.push_back(path);
        return path == "b" ? eFileOutcome::stopped : eFileOutcome::analysed;
    });
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(taken, (tLines{"a", "b"}));
}

TEST(AnalysisRun, IsIdleOutsideOfARunOnly) {
    QSemaphore begun;
    QSemaphore mayEnd;
    cGivenRun run({"a"}, [&](const std::string&) {
        begun.release();
        mayEnd.acquire();
        return eFileOutcome::analysed;
    });
    EXPECT_TRUE(run.isIdle());
    EXPECT_TRUE(run.awaitEnd());
    run.start();
    begun.acquire();
    EXPECT_FALSE(run.isIdle());
    EXPECT_FALSE(run.awaitEnd(QDeadlineTimer(1)));
    mayEnd.release();
    EXPECT_TRUE(awaitEnd(run));
    EXPECT_TRUE(run.isIdle());
}

TEST(AnalysisRun, IdleRunHasToldOfItsEnd) {
    cGivenRun run({}, [](const std::string&) { return eFileOutcome::analysed; });
    std::atomic<bool> isEndTold = false;
    QObject::connect(
        &run, &QThread::finished, &run,
        [&] {
            QThread::msleep(50); // to the toolkit, the thread does not run any more by now
            isEndTold = true;
        },
        Qt::DirectConnection);
    run.start();
    while (!run.isIdle()) {
        QThread::yieldCurrentThread();
    }
    EXPECT_TRUE(isEndTold);
}

TEST(AnalysisRun, LackOfMemoryIsReportedAndTheRunGoesOn) {
    tLines taken;
    cGivenRun run({"a", "b"}, [&](const std::string& path) -> eFileOutcome {
        taken.push_back(path);
        if (path == "a") {
            throw std::bad_alloc();
        }
        return eFileOutcome::analysed;
    });
    const cMessageLog log(run);
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(taken, (tLines{"a", "b"}));
    EXPECT_EQ(log.lines(), tLines{"red: Not enough memory for PDB file a"});
    EXPECT_EQ(run.analyseFile(QStringLiteral("a"), fixedStamp), eFileOutcome::failed);
}

TEST(AnalysisRun, InterruptionEndsTheRunAfterTheFile) {
    tLines taken;
    cGivenRun run({"a", "b"}, [&](const std::string& path) {
        taken.push_back(path);
        QThread::currentThread()->requestInterruption();
        return eFileOutcome::analysed;
    });
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(taken, tLines{"a"});
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(taken, (tLines{"a", "a"})) << "a new start knows nothing of the old interruption";
}

TEST(AnalysisRun, TerminationWaitsForTheNextSafePoint) {
    tLines taken;
    cGivenRun run({"a", "b"}, [&](const std::string& path) {
        taken.push_back(path);
        QThread::currentThread()->terminate();
        // Were a termination taken here, "whole" would be missing.
        QThread::msleep(20);
        taken.push_back("whole");
        return eFileOutcome::analysed;
    });
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(taken, (tLines{"a", "whole"}));
    EXPECT_TRUE(run.isFinished());
    ASSERT_TRUE(runToEnd(run));
    EXPECT_EQ(taken.size(), 4U);
}

TEST(AnalysisRun, TerminationWaitsFromTheVeryBeginning) {
    // Asked for its files, before the first safe point, this worker is terminated and dawdles.
    class cDawdlingRun : public cGivenRun {
      public:
        using cGivenRun::cGivenRun;
        mutable bool isThrough = false;

      protected:
        const QStringList& pathsToAnalyse() const override {
            QThread::currentThread()->terminate();
            QThread::msleep(20);
            isThrough = true;
            return cGivenRun::pathsToAnalyse();
        }
    };
    bool wasWorking = false;
    cDawdlingRun run({"a"}, [&](const std::string&) {
        wasWorking = true;
        return eFileOutcome::analysed;
    });
    ASSERT_TRUE(runToEnd(run));
    EXPECT_TRUE(run.isThrough);
    EXPECT_FALSE(wasWorking);
}

TEST(AnalysisRun, FinishedIsEmittedAfterATermination) {
    int finished = 0;
    cGivenRun run({"a", "b"}, [&](const std::string&) {
        QThread::currentThread()->terminate();
        return eFileOutcome::analysed;
    });
    QObject::connect(
        &run, &QThread::finished, &run,
        [&] {
            ++finished;
            handOver(&finished);
        },
        Qt::DirectConnection);
    ASSERT_TRUE(runToEnd(run));
    takeOver(&finished);
    EXPECT_EQ(finished, 1);
}

} // namespace kelmo

// The walk over the files that both workers share, with an analysis of the test's own.
#include "base/stop_request.h"
#include "base/thread_order.h"
#include "tests/run/message_log.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/test_files.h"

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

#include <pthread.h>

namespace kelmo {

namespace {

using tLines = std::vector<std::string>;

/// A worker without settings of its own.
class cBareRun : public cAnalysisRun {
  public:
    cBareRun() : cAnalysisRun(nullptr) {}
    void setUp(const cSettings&, const sParameterTables&) override {}
    void setInputFiles(const QStringList& files) override { paths = files; }

  protected:
    const QStringList& pathsToAnalyse() const override { return paths; }
    QString reportDirectory() const override { return QStringLiteral("missing/"); }
    sAnalysisPlan plan() const override { return {}; }
    const std::map<std::string, double>& radiiTable() const override { return radii; }

  private:
    QStringList paths;
    const std::map<std::string, double> radii = glycineRadii();
};

/// A worker whose work on a file is given to it.
class cGivenRun : public cBareRun {
  public:
    using tWork = std::function<eFileOutcome(const std::string& path)>;

    cGivenRun(const std::vector<std::string>& files, tWork given) : work(std::move(given)) {
        setInputFiles(pathList(files));
    }

    std::vector<std::string> stamps;

  protected:
    eFileOutcome analyse(const std::string& path, const sReportBase& base) override {
        stamps.push_back(base.stamp.substr(1));
        return work(path);
    }

  private:
    tWork work;
};

/// A worker that writes a document and then does something of the test's in its table.
class cStoppingRun : public cBareRun {
  public:
    cStoppingRun(const cScratchDirectory& output, std::function<void()> givenTable)
        : directory(QString::fromStdString(output.path().string()) + '/'),
          table(std::move(givenTable)) {}

  protected:
    QString reportDirectory() const override { return directory; }
    sAnalysisPlan plan() const override {
        const auto document = [](cTextSink& out) { out.write("<whole>yes</whole>\n"); };
        sPlannedStage stage;
        stage.calculate = [](cPdbPeptide&, const std::function<void()>&) {};
        stage.reports = {{".xml", 0, document}, {".tbl", 1, [this](cTextSink&) { table(); }}};
        sAnalysisPlan plan;
        plan.stages.push_back(std::move(stage));
        return plan;
    }

  private:
    const QString directory;
    const std::function<void()> table;
};

} // namespace

TEST(AnalysisRun, StopLeavesTheReportsThatAreWhole) {
    const cScratchDirectory output;
    const cScratchDirectory input;
    writeContent(input.file("a"), twoGlycines());
    const std::string document = output.file("a_" + fixedStamp.toStdString() + ".xml");
    cStoppingRun run(output, [&] {
        while (!std::filesystem::exists(document)) {
            QThread::yieldCurrentThread(); // another thread writes it, if this one has not
        }
        throw sStopped{};
    });
    EXPECT_EQ(run.analyseFile(QString::fromStdString(input.file("a")), fixedStamp),
              eFileOutcome::stopped);
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
            // To the toolkit, the thread does not run any more by now: who asks may take it for
            // idle.
            for (int i = 0; i < 10'000; ++i) {
                QThread::yieldCurrentThread();
            }
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
        ::pthread_testcancel();
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
    // Asked for its files, before the first safe point, this worker is terminated and comes to
    // where the system would take it.
    class cDawdlingRun : public cGivenRun {
      public:
        using cGivenRun::cGivenRun;
        mutable bool isThrough = false;

      protected:
        const QStringList& pathsToAnalyse() const override {
            QThread::currentThread()->terminate();
            ::pthread_testcancel();
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

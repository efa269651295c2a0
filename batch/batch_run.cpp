#include "batch/batch_run.h"

#include "batch/shown_text.h"
#include "run/file_path.h"

#include <QHash>

#include <algorithm>
#include <utility>

#include <tbb/global_control.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

namespace {

/// Passes a worker's messages on: at once, or kept until its file ends when other workers talk too.
class cMessageRelay {
  public:
    cMessageRelay(cReporter& receiver, bool keepsTogether)
        : reporter(receiver), isKeeping(keepsTogether) {}

    void take(const cStatusMessage& message) {
        kept.emplace_back(message.colour, onOneLine(message.text));
        if (!isKeeping) {
            pass();
        }
    }
    void pass() {
        reporter.show(kept);
        kept.clear();
    }

  private:
    cReporter& reporter;
    bool isKeeping;
    std::vector<cStatusMessage> kept;
};

} // namespace

cBatchRun::cBatchRun(const QStringList& pathsToAnalyse, QString stamp, int jobCount,
                     const cWorkerMaker& workerMaker, cReporter& messageReporter,
                     const std::atomic<bool>& flag)
    : paths(pathsToAnalyse), timeStamp(std::move(stamp)), jobs(jobCount), makeWorker(workerMaker),
      reporter(messageReporter), stopFlag(flag) {}

std::vector<sFileResult> cBatchRun::run() {
    results.resize(static_cast<std::size_t>(paths.size()));
    groupFiles();
    const auto cores = static_cast<std::size_t>(jobs);
    const tbb::global_control control(tbb::global_control::max_allowed_parallelism, cores);
    tbb::task_arena arena(jobs);
    reporter.beginProgress(results.size());
    arena.execute([&] {
        tbb::task_group pumps;
        for (std::size_t i = 0; i < std::min(cores, groups.size()); ++i) {
            pumps.run([this] { pump(); });
        }
        pumps.wait();
    });
    reporter.endProgress();
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
    return std::move(results);
}

/// Files with the same base name write the same reports, and those of the last one are to remain:
/// they stay together, so that they are never worked on at the same time.
void cBatchRun::groupFiles() {
    QHash<QString, std::size_t> groupByBaseName;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        // A single core takes the files one after the other anyway.
        const QString name = jobs == 1 ? QString::number(i) : baseNameOf(paths[i]);
        const auto found = groupByBaseName.constFind(name);
        if (found != groupByBaseName.constEnd()) {
            groups[*found].push_back(i);
        } else {
            groupByBaseName.insert(name, groups.size());
            groups.push_back({i});
        }
    }
}

/// Lets no exception out: it would cancel the calculations of the other pumps, which would then
/// write reports of half-computed values.
void cBatchRun::pump() {
    try {
        takeGroups();
    } catch (...) {
        const std::lock_guard lock(failureMutex);
        if (failure == nullptr) {
            failure = std::current_exception();
        }
    }
}

void cBatchRun::takeGroups() {
    const std::unique_ptr<cAnalysisRun> worker = makeWorker();
    worker->setStopFlag(&stopFlag);
    cMessageRelay relay(reporter, jobs > 1);
    // Without a receiver object the call is direct, on this thread.
    QObject::connect(worker.get(), &cAnalysisRun::sendStatusMessage,
                     [&relay](cStatusMessage& message) { relay.take(message); });
    for (std::size_t group = nextGroup++; group < groups.size(); group = nextGroup++) {
        for (const qsizetype file : groups[group]) {
            if (stopFlag) {
                return;
            }
            sFileResult result = analyse(*worker, paths[file]);
            relay.pass();
            if (result.outcome != eFileOutcome::stopped) {
                reporter.countFile();
            }
            results[static_cast<std::size_t>(file)] = std::move(result);
        }
    }
}

sFileResult cBatchRun::analyse(cAnalysisRun& worker, const QString& path) {
    const qsizetype missingBefore = worker.unwrittenReports().size();
    sFileResult result;
    // While it waits for helpers, a pump must not begin another one: that would hold one more
    // structure in memory, and this file would have to wait for all of the other's.
    tbb::this_task_arena::isolate([&] { result.outcome = worker.analyseFile(path, timeStamp); });
    result.missingReports = worker.unwrittenReports().mid(missingBefore);
    return result;
}

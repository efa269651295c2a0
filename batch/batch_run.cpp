#include "batch/batch_run.h"

#include "base/parallel_work.h"
#include "base/shown_text.h"
#include "base/standard_input.h"
#include "batch/resume.h"
#include "results/file_identity.h"
#include "run/file_path.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace kelmo {

namespace {

/// Passes a worker's messages on: at once, or kept until its file ends when other workers talk too.
class cMessageRelay {
  public:
    cMessageRelay(cReporter& receiver, bool keepsTogether)
        : reporter(receiver), isKeeping(keepsTogether) {}

    void begin(std::string_view path) { file = displayedText(path); }
    void take(const sMessage& message) {
        // In a quiet run the announcement that tells of which file a warning speaks is not shown.
        const bool needsName = reporter.isQuiet() && message.severity == eSeverity::warning;
        kept.emplace_back(message.severity,
                          shownText(needsName ? file + ": " + message.text : message.text));
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
    std::string file;
    std::vector<sMessage> kept;
};

} // namespace

/// Takes files one after the other, with a worker of its own.
class cBatchRun::cPump {
  public:
    explicit cPump(cBatchRun& owner)
        : run(owner), worker(owner.makeWorker()), relay(owner.reporter, owner.manner.jobs > 1) {
        worker->setStopFlag(&run.stopFlag);
        // Without a receiver object the call is direct, on this thread.
        QObject::connect(worker.get(), &cAnalysisRun::messageSent,
                         [this](const sMessage& message) { relay.take(message); });
        QObject::connect(worker.get(), &cAnalysisRun::reportWasLost,
                         [this](const sReportLost& report) { takeLost(report); });
        QObject::connect(worker.get(), &cAnalysisRun::fileEnded,
                         [this](const sFileEnded& file) { takeFindings(file); });
    }

    void takeFiles() {
        const std::size_t end = run.paths.size();
        for (std::size_t file = run.nextFile++; file < end; file = run.nextFile++) {
            // Files with the same base name write the same reports, and those of the last one are
            // to remain: they must not be worked on at the same time. A single core takes the files
            // one after the other anyway.
            const auto* group = run.sameNames.groupOf(file);
            if (group == nullptr || run.manner.jobs == 1) {
                take(file);
            } else if (group->front() == file) {
                std::for_each(group->begin(), group->end(), [&](std::size_t one) { take(one); });
            }
        }
    }

  private:
    void take(std::size_t file) {
        if (run.stopFlag || run.results.hasFailed()) {
            return;
        }
        const std::string_view bytes = run.paths[file];
        const QString path = pathFromBytes(bytes);
        relay.begin(bytes);
        missing.clear();
        std::unique_ptr<sFileRecord> kept = newRecord(bytes);
        if (run.manner.isResumed && mayTakeOver(file, path, kept.get())) {
            takeOver(file, bytes);
            return;
        }
        const eFileOutcome outcome = worker->analyseFile(path, run.manner.timeStamp, kept.get());
        relay.pass();
        if (kept != nullptr && outcome != eFileOutcome::stopped) {
            run.results.take(file, std::move(kept));
        }
        if (outcome != eFileOutcome::stopped) {
            run.reporter.countFile();
        }
        record(file, outcome);
    }

    /// What is kept of a file for results files; null where nobody wants it.
    std::unique_ptr<sFileRecord> newRecord(std::string_view path) const {
        if (!run.results.isWanted()) {
            return nullptr;
        }
        auto record = std::make_unique<sFileRecord>();
        record->path = path;
        // Before it is read: when it changes meanwhile, its content is another one than this.
        if (auto identity = identityOf(record->path)) {
            record->sha256 = std::move(identity->sha256);
        }
        return record;
    }

    bool mayTakeOver(std::size_t file, const QString& path, const sFileRecord* record) {
        return run.paths[file] != standardInputPath && // who knows what comes through it now
               (record == nullptr || run.results.holds(file, record->sha256)) &&
               (!run.manner.hasReports || areReportsUpToDate(file, path));
    }

    /// Which of several files with the same name the reports are of, nobody can tell.
    bool areReportsUpToDate(std::size_t file, const QString& path) {
        const QStringList reports = worker->reportNames(path, run.manner.timeStamp);
        return run.sameNames.groupOf(file) == nullptr && !reports.isEmpty() &&
               areUpToDate(reports, std::string(run.paths[file]));
    }

    void takeOver(std::size_t file, std::string_view path) {
        const char* const what = run.manner.hasReports ? "Reports of " : "Results of ";
        relay.take({eSeverity::progress, what + displayedText(path) + " taken over"});
        relay.pass();
        run.reporter.countFileTakenOver();
        if (run.results.isWanted()) {
            run.results.take(file, nullptr);
        }
        const std::lock_guard lock(run.mutex);
        ++run.result.takenOver;
    }

    /// Tells of those about which the worker was silent.
    void takeLost(const sReportLost& report) {
        if (!report.isBegun) {
            relay.take({eSeverity::error, "Could not create report " +
                                              displayedText(report.fileName) + ": " +
                                              report.reason});
        }
        missing.push_back(report.fileName);
    }

    void takeFindings(const sFileEnded& file) {
        if (file.outcome == eFileOutcome::analysed && file.findings.has_value()) {
            const std::lock_guard lock(run.mutex);
            run.result.findings = run.result.findings.value_or(sFindings{}) += *file.findings;
        }
    }

    void record(std::size_t file, eFileOutcome outcome) {
        const std::lock_guard lock(run.mutex);
        run.result.analysed += outcome == eFileOutcome::analysed ? 1U : 0U;
        run.result.failed += outcome == eFileOutcome::failed ? 1U : 0U;
        if (outcome == eFileOutcome::failed || !missing.empty()) {
            run.result.faults.push_back({file, outcome == eFileOutcome::failed, missing});
        }
    }

    cBatchRun& run;
    const std::unique_ptr<cAnalysisRun> worker;
    cMessageRelay relay;
    std::vector<std::string> missing; ///< reports of the file at hand, final names
};

cBatchRun::cBatchRun(const cInputPaths& pathsToAnalyse, const cSameBaseNames& names,
                     sBatchManner chosenManner, const cWorkerMaker& workerMaker,
                     cResultWriter& resultWriter, cReporter& messageReporter,
                     const std::atomic<bool>& flag)
    : paths(pathsToAnalyse), sameNames(names), manner(std::move(chosenManner)),
      makeWorker(workerMaker), results(resultWriter), reporter(messageReporter), stopFlag(flag) {}

sBatchResult cBatchRun::run() {
    result.files = paths.size();
    const auto cores = static_cast<std::size_t>(manner.jobs);
    reporter.beginProgress(paths.size());
    runTogether(std::min({cores, paths.size(), manner.structuresAtOnce}), manner.jobs,
                [this] { pump(); });
    reporter.endProgress();
    results.finish(result.stopped() == 0);
    result.lostResults = results.failure();
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
    std::ranges::sort(result.faults, {}, &sFileFault::file);
    return std::move(result);
}

/// Lets no exception out: it would cancel the calculations of the other pumps, which would then
/// write reports of half-computed values.
void cBatchRun::pump() {
    try {
        cPump(*this).takeFiles();
    } catch (...) {
        const std::lock_guard lock(mutex);
        if (failure == nullptr) {
            failure = std::current_exception();
        }
    }
}

} // namespace kelmo

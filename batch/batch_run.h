// The work on all files of a run with a given number of cores.
#pragma once

#include "batch/prepared_run.h"
#include "batch/reporter.h"

#include <QStringList>

#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <vector>

/// What became of one input file.
struct sFileResult {
    eFileOutcome outcome = eFileOutcome::stopped; ///< also of a file that was never begun
    QStringList missingReports;                   ///< final names of the reports not written
};

/// Takes the files in order, as many at once as there are cores, each with a worker of its own;
/// cores that have no file help with the others' calculations. Holds one structure per core in
/// memory. The reports do not depend on the number of cores.
class cBatchRun {
  public:
    /// `jobs` is at least 1; with 1 everything happens on the calling thread. What is referred to
    /// must outlive the run.
    cBatchRun(const QStringList& paths, QString timeStamp, int jobs, const cWorkerMaker& makeWorker,
              cReporter& reporter, const std::atomic<bool>& stopFlag);

    /// One result per path, in their order. To be called once.
    std::vector<sFileResult> run();

  private:
    using cFileGroup = std::vector<qsizetype>; ///< positions of paths

    void groupFiles();
    void pump();
    void takeGroups();
    sFileResult analyse(cAnalysisRun& worker, const QString& path);

    const QStringList& paths;
    const QString timeStamp;
    const int jobs;
    const cWorkerMaker& makeWorker;
    cReporter& reporter;
    const std::atomic<bool>& stopFlag;
    std::vector<cFileGroup> groups; ///< each is for one pump, in its order
    std::atomic<std::size_t> nextGroup{0};
    std::vector<sFileResult> results;
    std::mutex failureMutex;
    std::exception_ptr failure; ///< the first exception that ended a pump
};

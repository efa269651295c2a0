// The work on all files of a run with a given number of cores.
#pragma once

#include "batch/input_paths.h"
#include "batch/prepared_run.h"
#include "batch/reporter.h"
#include "results/result_writer.h"

#include <QString>

#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kelmo {

/// An input file that failed, or of which reports are missing.
struct sFileFault {
    std::size_t file = 0; ///< its position among the paths
    bool hasFailed = false;
    std::vector<std::string> missingReports; ///< final names
};

/// What became of the files of a run. Only what went wrong takes memory of its own.
struct sBatchResult {
    std::size_t files = 0;
    std::size_t analysed = 0;
    std::size_t takenOver = 0; ///< by a resumed run from the interrupted one
    std::size_t failed = 0;
    std::vector<sFileFault> faults; ///< in the order of the files
    /// What the interaction module found in the files that were analysed.
    std::optional<sFindings> findings = {};
    std::string lostResults = {}; ///< why results could not be written, which ends a run; or empty

    /// Files that were given up or never begun because of a stop.
    std::size_t stopped() const { return files - analysed - takenOver - failed; }
};

struct sBatchManner {
    QString timeStamp;                   ///< of 12 digits
    int jobs = 1;                        ///< with 1 everything happens on the calling thread
    std::size_t structuresAtOnce = 1024; ///< at most, however many jobs there are
    bool isResumed = false; ///< files whose reports and results are up to date are taken over
    bool hasReports = true; ///< whether any report is wanted
};

/// Takes the files in order, as many at once as there are cores, each with a worker of its own;
/// cores that have no file help with the others' calculations. Holds one structure per core in
/// memory. The reports do not depend on the number of cores.
class cBatchRun {
  public:
    /// What is referred to must outlive the run.
    cBatchRun(const cInputPaths& paths, const cSameBaseNames& sameNames, sBatchManner manner,
              const cWorkerMaker& makeWorker, cResultWriter& results, cReporter& reporter,
              const std::atomic<bool>& stopFlag);

    /// To be called once.
    sBatchResult run();

  private:
    class cPump;

    void pump();

    const cInputPaths& paths;
    const cSameBaseNames& sameNames;
    const sBatchManner manner;
    const cWorkerMaker& makeWorker;
    cResultWriter& results;
    cReporter& reporter;
    const std::atomic<bool>& stopFlag;
    std::atomic<std::size_t> nextFile{0};
    std::mutex mutex; ///< guards what follows
    sBatchResult result;
    std::exception_ptr failure; ///< the first exception that ended a pump
};

} // namespace kelmo

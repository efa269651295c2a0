// From the command line to a run that is checked and ready to start.
#pragma once

#include "batch/input_paths.h"
#include "batch/options.h"
#include "run/analysis_run.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kelmo {

/// Makes one more worker with the settings of the run. May be called from several threads at once.
using cWorkerMaker = std::function<std::unique_ptr<cAnalysisRun>()>;

struct sPreparedRun {
    cWorkerMaker makeWorker;
    std::string outputDirectory;    ///< ends in a slash
    std::vector<sMessage> messages; ///< what the user should know before the start
    /// Resolved, with the tables that were found.
    std::shared_ptr<const cSettings> settings;
};

/// The settings of the command line and of the configuration that it names. Throws cUsageError at
/// the first that cannot be used.
cSettings settingsFrom(const sOptions& options);

/// Checks the settings in the order of the window and reads the tables that they need. Throws
/// cUsageError at the first thing that keeps the run from starting.
sPreparedRun prepareRun(const cSettings& given, const cInputPaths& inputs,
                        bool areReportsNeeded = true);

/// Throws cUsageError when no file can be created in the directory, which would cost a whole run.
void checkWritable(const std::string& directory);

} // namespace kelmo

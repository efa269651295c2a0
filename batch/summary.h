// The last words of a run: what failed, what is missing, and the exit status.
#pragma once

#include "batch/batch_run.h"

namespace kelmo {

/// The exit status of the program.
enum class eExitStatus : int {
    allDone = 0,
    someMissing = 1,
    notStarted = 2,
    stoppedBySignal = 130 ///< as shells give it for Ctrl-C
};

/// One line for what the interaction module found, one for every file that failed and every report
/// that is missing, and one for the whole; that of a resumed run counts the files that
/// were taken over.
std::vector<sMessage> summaryMessages(const cInputPaths& paths, const sBatchResult& result,
                                      bool isResumed);

/// With `mayFilesFail`, files that could not be analysed make no difference.
eExitStatus exitStatus(const sBatchResult& result, bool mayFilesFail = false);

} // namespace kelmo

#include "app/run_progress.h"

namespace kelmo {

void cRunProgress::begin(qsizetype numberOfFiles) {
    *this = cRunProgress();
    files = numberOfFiles;
}

void cRunProgress::beginFile(const QString& path) {
    current = path;
    currentLacksReport = false;
}

void cRunProgress::endFile(eFileOutcome outcome) {
    current.clear();
    if (outcome == eFileOutcome::stopped) {
        return;
    }
    ++done;
    failed += outcome == eFileOutcome::failed || currentLacksReport ? 1 : 0;
}

} // namespace kelmo

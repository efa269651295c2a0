#include "app/run_progress.h"

namespace kelmo {

void cRunProgress::begin(qsizetype numberOfFiles) {
    *this = cRunProgress();
    files = numberOfFiles;
}

void cRunProgress::beginFile(const QString& path) {
    current = path;
    currentLacksReport = false;
    isCurrentWarnedOf = false;
}

void cRunProgress::countWarning() {
    warned += isCurrentWarnedOf ? 0 : 1;
    isCurrentWarnedOf = true;
}

void cRunProgress::add(const sFindings& newFindings) {
    found = found.value_or(sFindings{}) += newFindings;
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

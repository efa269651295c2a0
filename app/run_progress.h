// How far a run has come, told from the messages of its worker.
#pragma once

#include "run/status_message.h"

#include <QString>

namespace kelmo {

/// Counts the files of one run. A file is done when its worker says so, or reports in red why it
/// gave the file up.
class cRunProgress {
  public:
    /// Forgets the run before.
    void begin(qsizetype numberOfFiles);
    void take(const cStatusMessage& message);

    qsizetype fileCount() const { return files; }
    qsizetype filesDone() const { return done; }
    /// Files that were given up, or of which a report is missing.
    qsizetype filesWithErrors() const { return failed; }
    /// Files of which some atoms had no radius.
    qsizetype filesWithWarnings() const { return warned; }
    /// The file that is being analysed, as the messages show it; empty between files.
    const QString& currentFile() const { return current; }

  private:
    void endFile(bool isGivenUp);

    qsizetype files = 0;
    qsizetype done = 0;
    qsizetype failed = 0;
    qsizetype warned = 0;
    QString current;
    bool currentLacksReport = false;
};

} // namespace kelmo

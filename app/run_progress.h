// How far a run has come, as its worker tells it.
#pragma once

#include "run/run_events.h"

#include <QString>

#include <optional>

namespace kelmo {

/// Counts the files of one run.
class cRunProgress {
  public:
    /// Forgets the run before.
    void begin(qsizetype numberOfFiles);
    /// The path as it is shown to people.
    void beginFile(const QString& path);
    /// A file that was stopped is not done.
    void endFile(eFileOutcome outcome);
    /// Of the file at hand.
    void countLostReport() { currentLacksReport = true; }
    void countWarning();
    void add(const sFindings& newFindings);

    qsizetype fileCount() const { return files; }
    qsizetype filesDone() const { return done; }
    /// Files that were given up, or of which a report is missing.
    qsizetype filesWithErrors() const { return failed; }
    /// Files of which the user was warned.
    qsizetype filesWithWarnings() const { return warned; }
    /// In the files that are done; none in the structure module.
    const std::optional<sFindings>& findings() const { return found; }
    /// The file that is being analysed; empty between files.
    const QString& currentFile() const { return current; }

  private:
    qsizetype files = 0;
    qsizetype done = 0;
    qsizetype failed = 0;
    qsizetype warned = 0;
    QString current;
    bool currentLacksReport = false;
    bool isCurrentWarnedOf = false;
    std::optional<sFindings> found;
};

} // namespace kelmo

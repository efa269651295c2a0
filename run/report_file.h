// A report in the making: it appears under its final name only when it is whole.
#pragma once

#include <QString>

#include <string>

/// A new file beside the reports, under a name of its own, that commit() renames. Without a commit
/// it is removed when the object goes; a process that is killed leaves it behind unlocked, for
/// removeAbandonedReports() of a later run to sweep up.
class cReportFile {
  public:
    /// Creates the file in the directory (which ends in a separator).
    explicit cReportFile(const QString& directory);
    ~cReportFile();
    cReportFile(const cReportFile&) = delete;
    cReportFile& operator=(const cReportFile&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    /// The name under which the file is written.
    const std::string& temporaryName() const { return name; }
    /// A descriptor of its own for a writer, who closes it; negative on failure.
    int duplicateDescriptor() const;
    /// Gives the file its final name, replacing an older report.
    bool commit(const QString& finalName);

  private:
    bool createLocked(const std::string& directory);

    std::string name;
    int descriptor = -1;
    bool isCommitted = false;
};

/// Removes what killed processes left half-written in the directory; files that a living process is
/// writing are locked and stay.
void removeAbandonedReports(const QString& directory);

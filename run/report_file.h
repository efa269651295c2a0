// A report in the making: it appears under its final name only when it is whole.
#pragma once

#include <QString>

#include <string>

namespace kelmo {

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
    /// Why the file could not be created or get its final name: an errno.
    int error() const { return lastError; }
    /// The name under which the file is written.
    const std::string& temporaryName() const { return name; }
    /// A descriptor of its own for a writer, who closes it; negative on failure, with errno set.
    int duplicateDescriptor() const;
    /// Why writing failed, given its errno. When that is 0, a write was cut short, and one more is
    /// tried to learn the reason: such a report must not be committed.
    int writeError(int errorNumber) const;
    /// Gives the file its final name, replacing an older report.
    bool commit(const QString& finalName);

  private:
    bool createLocked(const std::string& directory);

    std::string name;
    int descriptor = -1;
    int lastError = 0;
    bool isCommitted = false;
};

/// Removes what killed processes left half-written in the directory; files that a living process is
/// writing are locked and stay.
void removeAbandonedReports(const QString& directory);

} // namespace kelmo

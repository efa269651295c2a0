// A report in the making: it appears under its final name only when it is whole.
#pragma once

#include "base/text_sink.h"

#include <string>
#include <string_view>

namespace kelmo {

/// An open directory, so that what is done in it is done there whatever becomes of its name.
class cReportDirectory {
  public:
    /// The path is bytes of any encoding.
    explicit cReportDirectory(const std::string& path);
    ~cReportDirectory();
    cReportDirectory(const cReportDirectory&) = delete;
    cReportDirectory& operator=(const cReportDirectory&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    /// Why it could not be opened: an errno.
    int error() const { return lastError; }
    int handle() const { return descriptor; }

  private:
    int descriptor;
    int lastError;
};

/// A new file beside the reports, under a name of its own that nobody can foresee, which commit()
/// changes. All that is written goes through the descriptor that created the file: whoever may
/// change the directory can take the report away, but not lead what is written elsewhere. Without a
/// commit the file is removed when the object goes; a process that is killed leaves it behind
/// unlocked, for removeAbandonedReports() of a later run to sweep up.
class cReportFile : public cTextSink {
  public:
    /// Creates the file in the directory, which must outlive it.
    explicit cReportFile(const cReportDirectory& directory);
    ~cReportFile() override;
    cReportFile(const cReportFile&) = delete;
    cReportFile& operator=(const cReportFile&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    /// Why the file could not be created, written or given its final name: an errno, 0 for none.
    int error() const { return lastError; }
    /// The name in the directory under which the file is written.
    const std::string& temporaryName() const { return name; }

    /// Nothing more is written after the first error.
    void write(std::string_view text) override;
    /// Writes what is still held back. False when the report is not complete.
    bool finish();
    /// Gives the file the permissions of another one, whatever the user's mask takes from new
    /// files.
    void setPermissions(unsigned mode);
    /// Finishes the file and waits until the disk has it. False when it is not complete.
    bool putOnDisk();
    /// Finishes the file and gives it its final name in the directory, replacing an older report.
    /// False when it is not complete, or another file stands under the name in the end.
    bool commit(const std::string& finalName);

  private:
    bool createLocked();
    void writeOut(std::string_view bytes);
    bool standsUnder(const std::string& fileName) const;

    const cReportDirectory& directory;
    std::string name;
    std::string heldBack; ///< so that the system is not asked line by line
    int descriptor = -1;
    int lastError = 0;
    bool isWhole = false;
    bool isCommitted = false;
};

/// Removes what killed processes of this user left half-written in the directory; files that a
/// living process is writing are locked and stay. Waits for nothing.
void removeAbandonedReports(const cReportDirectory& directory);

} // namespace kelmo

// What the tests of the workers share: the usual settings, waiting, and what befalls their files.
#pragma once

#include "contacts/residue_contact.h"
#include "model/addition.h"
#include "run/crunkev_linux.h"
#include "run/run_vor_linux.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

inline const QString fixedStamp = QStringLiteral("200703141530");
inline constexpr std::string_view writeReportsForeverOption = "--write-reports-forever";

/// Every analysis and report on, usual parameters, shipped tables under their plain names.
void switchEverythingOn(cRunKEV& run);
/// Every report on, shipped radii and rules, and the usual threshold of the criterion.
void switchEverythingOn(cRunVOR& run, eInteractionCriterion criterion);

/// Waits for the end of a worker; false when it does not come in ten minutes.
bool awaitEnd(cAnalysisRun& run);
/// Starts the worker and waits for its end; false when it does not end in ten minutes.
bool runToEnd(cAnalysisRun& run);

QStringList pathList(const std::vector<std::string>& paths);

/// How many file descriptors this process has open.
int openDescriptorCount();

/// Whether an XML parser accepts all of the files.
bool areWellFormed(const std::vector<std::string>& files);

/// While it exists, no file of this process can grow beyond a size: a full disk.
class cFullDisk {
  public:
    explicit cFullDisk(unsigned long maxFileSize);
    ~cFullDisk();
    cFullDisk(const cFullDisk&) = delete;
    cFullDisk& operator=(const cFullDisk&) = delete;

  private:
    unsigned long previousLimit;
};

} // namespace kelmo

// What the tests of the workers share: small structures, the shipped tables, reports as texts.
#pragma once

#include "contacts/residue_contact.h"
#include "model/addition.h"
#include "run/crunkev_linux.h"
#include "run/run_vor_linux.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

inline const QString fixedStamp = QStringLiteral("200703141530");
inline constexpr std::string_view writeReportsForeverOption = "--write-reports-forever";

/// One ATOM line in the columns of the format, with its line end.
std::string atomLine(const std::string& atomName, const std::string& residueName, char chain,
                     const std::string& residueNumber, double x, double y, double z);
/// Two chains of one glycine each, 4 Å apart: "A 1" and "B 2", code "1TST".
std::string twoGlycines();
/// A radius of 1.7 Å for each atom of twoGlycines().
std::map<std::string, double> glycineRadii();

/// The tables that come with the program.
struct sShippedTables {
    std::map<std::string, double> radii;
    std::map<std::string, sAsa> standards;
    std::map<std::string, double> scale;
    contactMap rules;
};
const sShippedTables& shippedTables();
/// The path of a file of data/samples.
std::string samplePath(const std::string& name);

/// Every analysis and report on, usual parameters, shipped tables under their plain names.
void switchEverythingOn(cRunKEV& run);
/// Every report on, shipped radii and rules, and the usual threshold of the criterion.
void switchEverythingOn(cRunVOR& run, eInteractionCriterion criterion);

/// Waits for the end of a worker; false when it does not come in a minute.
bool awaitEnd(cAnalysisRun& run);
/// Starts the worker and waits for its end; false when it does not end in a minute.
bool runToEnd(cAnalysisRun& run);

/// Names and contents of all files in a directory, hidden ones included.
std::map<std::string, std::string> filesIn(const std::filesystem::path& directory);
std::vector<std::string> namesIn(const std::filesystem::path& directory);

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

/// Records what happens to the files of a directory from its construction on.
class cDirectoryWatch {
  public:
    explicit cDirectoryWatch(const std::filesystem::path& directory);
    ~cDirectoryWatch();
    cDirectoryWatch(const cDirectoryWatch&) = delete;
    cDirectoryWatch& operator=(const cDirectoryWatch&) = delete;

    struct sEvent {
        bool isRenamed; ///< the file received this name; otherwise it was created or changed
        std::string name;
    };
    /// What happened so far, in order.
    std::vector<sEvent> events();
    /// Only the names that files received by renaming, in order.
    std::vector<std::string> renamedTo();

  private:
    int descriptor;
    std::vector<sEvent> recorded;
};

} // namespace kelmo

// What is to be done with every file of a run, and the function that does it.
#pragma once

#include "base/text_sink.h"
#include "input/structure_reader.h"
#include "model/pdb_peptide.h"
#include "results/structure_record.h"
#include "run/report_file.h"
#include "run/run_events.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kelmo {

/// A report that was asked for.
struct sPlannedReport {
    std::string fileNameEnd =
        {};                 ///< behind what the names of a file's reports begin with: "_bound.xml"
    std::size_t format = 0; ///< reports of one format are written one after the other
    std::function<void(cTextSink& out)> write = {};
};

/// Who follows the work on a file.
class cPlanFollower {
  public:
    virtual ~cPlanFollower() = default;

    virtual void tell(sMessage message) = 0;
    virtual void reportWritten(sReportWritten report) = 0;
    virtual void reportLost(sReportLost report) = 0;
    virtual void found(const sFindings& findings) = 0;
    /// Between two steps on the thread of the work: throws sStopped when it is to be given up.
    virtual void safePoint() = 0;
};

/// Calculations, and the reports of what they find.
struct sPlannedStage {
    /// Calls `safePoint` between its steps; throws sStopped when that does.
    std::function<void(cPdbPeptide& structure, const std::function<void()>& safePoint)> calculate =
        {};
    /// Tells of what was found, before the reports are written; may be empty.
    std::function<void(cPlanFollower& follower)> tell = {};
    std::vector<sPlannedReport> reports = {}; ///< in the order in which they get their names
    /// Takes what was calculated for results files, behind the reports, which lose it.
    std::function<void(const cPdbPeptide& structure, sStructureRecord& record)> record = {};
};

/// Everything that is to be done with a file by the settings of a run.
struct sAnalysisPlan {
    std::string announcement = {}; ///< before the path: "Analysing structure of peptide from "
    std::string conclusion = {};   ///< before the path: "Structure of peptide from "
    /// Whether a file is announced before it is known whether it can be opened.
    bool isAnnouncedUnopened = false;
    /// Whether each name in the list of missing radii is followed by a separator, the last too.
    bool isListClosed = false;
    sReadOptions reading = {};
    std::vector<sPlannedStage> stages = {};
};

/// What the names of a file's reports begin with.
struct sReportBase {
    std::string file = {};  ///< directory and base name of the file
    std::string stamp = {}; ///< "_200703141530"

    /// With the number of a model, from 1, between the two; 0 for none.
    std::string ofModel(std::size_t model) const;
};

/// One file of a run.
struct sFileJob {
    std::string path = {}; ///< bytes of any encoding; a regular file or standardInputPath
    sReportBase reportBase = {};
    const std::map<std::string, double>& radii;
    sFileRecord* record = nullptr; ///< receives what results files keep; null for none
};

/// Final names of the reports that the plan writes for a file, in the order of writing; none when
/// they depend on the models that the file has.
std::vector<std::string> reportNames(const sAnalysisPlan& plan, const sReportBase& reportBase);

/// Reads the file, calculates and writes the reports, and tells of it. Heeds the stop request of
/// this thread. Throws std::bad_alloc.
eFileOutcome carryOut(const sAnalysisPlan& plan, const sFileJob& job, cPlanFollower& follower);

/// The directory that a file name begins with, up to its last slash; "./" when it has none.
std::string directoryOf(const std::string& fileName);

} // namespace kelmo

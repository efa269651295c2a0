#include "run/analysis_plan.h"

#include "base/in_parallel.h"
#include "base/number_text.h"
#include "base/regular_file.h"
#include "base/shown_text.h"
#include "base/standard_input.h"
#include "geometry/nearest_distance.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

namespace kelmo {

namespace {

/// What the system says about an errno.
std::string reasonOf(int error) {
    return std::generic_category().message(error);
}

std::string fileNameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1); // the next of "not found" is the beginning
}

std::string missingRadiiText(const std::set<std::string>& names, bool isListClosed) {
    std::string text = "The following radii were not found in radii file: ";
    bool isFirst = true;
    for (const std::string& name : names) {
        text += isFirst || isListClosed ? "" : "; ";
        text += displayedText(name) + (isListClosed ? "; " : "");
        isFirst = false;
    }
    return text;
}

/// The warning of a file whose atoms stand denser than in any molecule, so that its calculations
/// may take long and mean little; nothing when they do not.
std::optional<std::string> densityWarning(const std::vector<cPdbPeptide>& structures,
                                          const std::string& path) {
    for (const cPdbPeptide& structure : structures) {
        const double distance = meanNearestDistance(structure);
        if (distance < densestMolecule) {
            return "Mean distance to the nearest atom in PDB file " + path + " is " +
                   std::string(cNumberText(distance, 2).view()) +
                   " Å: are the coordinates in nanometres?";
        }
    }
    return std::nullopt;
}

/// The error of a file that could not be read; nothing when it could.
std::optional<std::string> readingProblem(const sReadResult& result, const std::string& path) {
    switch (result.outcome) {
    case eReadOutcome::unreadable:
        return "Could not read PDB file " + path + ": " + result.reason;
    case eReadOutcome::badLine:
        return "There was an error in PDB file " + path + " at line " +
               std::to_string(result.badLine);
    case eReadOutcome::noAtoms:
        return "No atoms found in PDB file " + path;
    case eReadOutcome::refused:
        return "Could not use PDB file " + path + ": " + result.reason;
    case eReadOutcome::read:
        break;
    }
    return std::nullopt;
}

void tellSummary(const sFileSummary& summary, const std::string& fileName,
                 cPlanFollower& follower) {
    const std::string line = summaryLine(summary, fileName);
    if (!line.empty()) {
        follower.tell(
            {isWarning(summary) ? eSeverity::warning : eSeverity::progress, displayedText(line)});
    }
}

/// Writes the reports of a stage: each format by itself, at the same time, but the reports get
/// their final names in order, each as soon as it and those before it are whole: a stop takes none
/// of them away.
class cStageReports {
  public:
    /// Adds the names of reports that no parser takes to `unparsableReports`.
    cStageReports(const std::vector<sPlannedReport>& planned, const std::string& base,
                  cPlanFollower& planFollower, std::vector<std::string>& unparsableReports)
        : reports(planned), reportBase(base), directory(directoryOf(base)), follower(planFollower),
          unparsable(unparsableReports), written(planned.size()) {}

    void write() {
        try {
            inParallel(formats(), 1, [this](std::size_t format) { writeFormat(format); });
        } catch (...) {
            tell();
            throw;
        }
        tell();
    }

  private:
    struct sWritten {
        std::unique_ptr<cReportFile> file; ///< under its temporary name
        int error = 0;                     ///< errno of a report that is not complete
        bool isBegun = false;              ///< false when not even a file could be created
        bool canBeParsed = true;
    };

    std::size_t formats() const {
        std::size_t count = 0;
        for (const sPlannedReport& report : reports) {
            count = std::max(count, report.format + 1);
        }
        return count;
    }

    void writeFormat(std::size_t format) {
        for (std::size_t i = 0; i < reports.size(); ++i) {
            if (reports[i].format == format) {
                keep(i, writeOne(reports[i]));
            }
        }
    }

    sWritten writeOne(const sPlannedReport& report) const {
        auto file = std::make_unique<cReportFile>(directory);
        if (!file->isOpen()) {
            return {nullptr, file->error(), false};
        }
        report.write(*file);
        const int error = file->finish() ? 0 : file->error();
        const bool canBeParsed = file->canBeParsed();
        return {std::move(file), error, true, canBeParsed};
    }

    void keep(std::size_t i, sWritten report) {
        const std::lock_guard lock(mutex);
        written[i] = std::move(report);
        while (named < reports.size() && written[named]) {
            giveName(*written[named], fullName(named));
            ++named;
        }
    }

    static void giveName(sWritten& report, const std::string& fullName) {
        if (report.error == 0 && !report.file->commit(fileNameOf(fullName))) {
            report.error = report.file->error();
        }
        report.file.reset(); // handles are few
    }

    std::string fullName(std::size_t i) const { return reportBase + reports[i].fileNameEnd; }

    void tell() const {
        for (std::size_t i = 0; i < named; ++i) {
            const sWritten& report = *written[i];
            if (report.error == 0) {
                follower.reportWritten(sReportWritten(fullName(i)));
                if (!report.canBeParsed) {
                    unparsable.push_back(fullName(i));
                }
                continue;
            }
            const std::string reason = reasonOf(report.error);
            if (report.isBegun) {
                follower.tell({eSeverity::error, "Could not write report " +
                                                     displayedText(fullName(i)) + ": " + reason});
            }
            follower.reportLost({fullName(i), reason, report.isBegun});
        }
    }

    const std::vector<sPlannedReport>& reports;
    const std::string& reportBase;
    const cReportDirectory directory;
    cPlanFollower& follower;
    std::vector<std::string>& unparsable;
    std::vector<std::optional<sWritten>> written;
    std::size_t named = 0; ///< so many have been given their names, or up
    std::mutex mutex;      ///< guards both
};

std::string unparsableText(const std::vector<std::string>& reports) {
    std::string text = "Names with &, < or other characters that XML does not take make reports "
                       "that no parser takes: ";
    for (const std::string& report : reports) {
        text += (&report == &reports.front() ? "" : "; ") + displayedText(report);
    }
    return text;
}

/// Fills the record unless it is null.
void carryOutStages(const sAnalysisPlan& plan, cPdbPeptide& structure, const std::string& base,
                    cPlanFollower& follower, std::vector<std::string>& unparsable,
                    sStructureRecord* record) {
    const std::function<void()> safePoint = [&follower] { follower.safePoint(); };
    if (record != nullptr) {
        takeLayout(structure, *record);
    }
    for (const sPlannedStage& stage : plan.stages) {
        safePoint();
        stage.calculate(structure, safePoint);
        safePoint();
        if (stage.tell) {
            stage.tell(follower);
        }
        cStageReports(stage.reports, base, follower, unparsable).write();
        if (record != nullptr && stage.record != nullptr) {
            stage.record(structure, *record);
        }
        safePoint();
    }
}

} // namespace

std::string directoryOf(const std::string& fileName) {
    const std::size_t slash = fileName.rfind('/');
    return slash == std::string::npos ? "./" : fileName.substr(0, slash + 1);
}

std::string sReportBase::ofModel(std::size_t model) const {
    return file + (model == 0 ? "" : "_model" + std::to_string(model)) + stamp;
}

std::vector<std::string> reportNames(const sAnalysisPlan& plan, const sReportBase& reportBase) {
    std::vector<std::string> names;
    if (plan.reading.models == eModels::each) {
        return names;
    }
    for (const sPlannedStage& stage : plan.stages) {
        for (const sPlannedReport& report : stage.reports) {
            names.push_back(reportBase.ofModel(0) + report.fileNameEnd);
        }
    }
    return names;
}

eFileOutcome carryOut(const sAnalysisPlan& plan, const sFileJob& job, cPlanFollower& follower) {
    const std::string path = displayedText(job.path);
    std::ifstream file;
    cStandardInput standardInput;
    const bool isStandardInput = job.path == standardInputPath;
    const bool isOpen = isStandardInput || openRegularFile(file, job.path);
    if (isOpen || plan.isAnnouncedUnopened) {
        follower.tell({eSeverity::progress, plan.announcement + path + "..."});
    }
    if (!isOpen) {
        follower.tell({eSeverity::error, "Could not open file " + path});
        return eFileOutcome::failed;
    }
    std::istream in(isStandardInput ? static_cast<std::streambuf*>(&standardInput) : file.rdbuf());
    sReadResult result = readStructure(in, job.radii, plan.reading);
    follower.safePoint(); // to a stop, a reader that waits can only answer with an error
    if (const auto problem = readingProblem(result, path)) {
        follower.tell({eSeverity::error, *problem});
        return eFileOutcome::failed;
    }
    if (!result.missingRadii.empty()) {
        follower.tell(
            {eSeverity::warning, missingRadiiText(result.missingRadii, plan.isListClosed)});
    }
    // Models that are laid over each other as chains of one structure may well stand so dense.
    if (const auto warning = plan.reading.models == eModels::chains
                                 ? std::nullopt
                                 : densityWarning(result.structures, path)) {
        follower.tell({eSeverity::warning, *warning});
    }
    tellSummary(result.summary, fileNameOf(path), follower);
    std::vector<std::string> unparsable;
    if (job.record != nullptr) {
        job.record->notAnalysed = summaryLine(result.summary, fileNameOf(path));
    }
    std::size_t model = 0;
    for (cPdbPeptide& read : result.structures) {
        cPdbPeptide structure = std::move(read); // and goes when its reports are written
        model += plan.reading.models == eModels::each ? 1 : 0;
        sStructureRecord* const record =
            job.record == nullptr ? nullptr : &job.record->structures.emplace_back();
        carryOutStages(plan, structure, job.reportBase.ofModel(model), follower, unparsable,
                       record);
    }
    if (!unparsable.empty()) {
        follower.tell({eSeverity::warning, unparsableText(unparsable)});
    }
    follower.tell({eSeverity::progress, plan.conclusion + path + " analyzed"});
    return eFileOutcome::analysed;
}

} // namespace kelmo

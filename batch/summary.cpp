#include "batch/summary.h"

#include "base/shown_text.h"

#include <algorithm>

namespace kelmo {

namespace {

std::size_t missingReports(const sBatchResult& result) {
    std::size_t missing = 0;
    for (const sFileFault& fault : result.faults) {
        missing += fault.missingReports.size();
    }
    return missing;
}

std::string counted(std::size_t count, const char* singular, const char* plural) {
    return std::to_string(count) + ' ' + (count == 1 ? singular : plural);
}

sMessage totals(const sBatchResult& result, bool isResumed) {
    const eExitStatus status = exitStatus(result);
    std::string text = status == eExitStatus::stoppedBySignal ? "Stopped: " : "";
    text += std::to_string(result.analysed) + " of " + counted(result.files, "file", "files") +
            " analysed";
    if (isResumed) {
        text += ", " + std::to_string(result.takenOver) + " taken over";
    }
    text += ", " + std::to_string(result.failed) + " failed, " +
            counted(missingReports(result), "report", "reports") + " missing";
    switch (status) {
    case eExitStatus::allDone:
        return {eSeverity::progress, text};
    case eExitStatus::stoppedBySignal:
        return {eSeverity::warning, text};
    case eExitStatus::someMissing:
    case eExitStatus::notStarted:
        break;
    }
    return {eSeverity::error, text};
}

} // namespace

std::vector<sMessage> summaryMessages(const cInputPaths& paths, const sBatchResult& result,
                                      bool isResumed) {
    std::vector<sMessage> messages;
    if (result.findings.has_value()) {
        messages.emplace_back(eSeverity::progress, "Found: " + findingsText(*result.findings));
    }
    for (const sFileFault& fault : result.faults) {
        if (fault.hasFailed) {
            messages.emplace_back(eSeverity::error, "Failed: " + shownText(paths[fault.file]));
        }
        for (const std::string& report : fault.missingReports) {
            messages.emplace_back(eSeverity::error, "Report missing: " + shownText(report));
        }
    }
    if (!result.lostResults.empty()) {
        messages.emplace_back(eSeverity::error, "Could not write " + result.lostResults);
    }
    messages.push_back(totals(result, isResumed));
    return messages;
}

eExitStatus exitStatus(const sBatchResult& result, bool mayFilesFail) {
    if (!result.lostResults.empty()) {
        return eExitStatus::someMissing;
    }
    if (result.stopped() > 0) {
        return eExitStatus::stoppedBySignal;
    }
    const bool isWhole = std::ranges::all_of(result.faults, [&](const sFileFault& fault) {
        return fault.missingReports.empty() && mayFilesFail;
    });
    return isWhole ? eExitStatus::allDone : eExitStatus::someMissing;
}

} // namespace kelmo

#include "batch/merge_command.h"

#include "base/shown_text.h"
#include "base/usage_error.h"
#include "batch/reporter.h"
#include "results/database.h"
#include "results/result_merging.h"

#include <algorithm>

namespace kelmo {

namespace {

std::vector<sMessage> messagesOf(const sMergeReport& report) {
    std::vector<sMessage> messages;
    constexpr std::size_t mostNamed = 20;
    for (std::size_t i = 0; i < std::min(report.sameContent.size(), mostNamed); ++i) {
        messages.emplace_back(eSeverity::warning, shownText(report.sameContent[i].first) + " and " +
                                                      shownText(report.sameContent[i].second) +
                                                      " have the same content");
    }
    if (report.sameContent.size() > mostNamed) {
        messages.emplace_back(eSeverity::warning,
                              std::to_string(report.sameContent.size() - mostNamed) +
                                  " more files have the same content as others");
    }
    if (report.leftOut > 0) {
        messages.emplace_back(eSeverity::warning,
                              std::to_string(report.leftOut) +
                                  " structures stood in several files and were taken once");
    }
    if (report.pending > 0) {
        messages.emplace_back(eSeverity::warning,
                              std::to_string(report.pending) + " files are still to be analysed");
    }
    messages.emplace_back(eSeverity::progress, std::to_string(report.structures) + " structures");
    return messages;
}

} // namespace

eExitStatus merge(const sOptions& options) {
    std::vector<std::string> parts;
    for (const sInputSource& input : options.inputs) {
        parts.push_back(input.path);
    }
    const std::string merged = parts.front();
    parts.erase(parts.begin());
    try {
        const sMergeReport report = mergeResults(merged, parts);
        cReporter(mannerOfStandardError()).show(messagesOf(report));
    } catch (const cResultError& error) {
        throw cUsageError("Could not merge: " + std::string(error.what()));
    }
    return eExitStatus::allDone;
}

} // namespace kelmo

#include "batch/summary.h"

#include "batch/shown_text.h"

#include <algorithm>

namespace {

qsizetype countOf(const std::vector<sFileResult>& results, eFileOutcome outcome) {
    return std::ranges::count(results, outcome, &sFileResult::outcome);
}

qsizetype missingReports(const std::vector<sFileResult>& results) {
    qsizetype missing = 0;
    for (const sFileResult& result : results) {
        missing += result.missingReports.size();
    }
    return missing;
}

QString counted(qsizetype count, const char* singular, const char* plural) {
    return QString::number(count) + ' ' + QLatin1String(count == 1 ? singular : plural);
}

cStatusMessage totals(const std::vector<sFileResult>& results) {
    const eExitStatus status = exitStatus(results);
    const QString text = QStringLiteral("%1%2 of %3 analysed, %4 failed, %5 missing")
                             .arg(QLatin1String(status == stoppedBySignal ? "Stopped: " : ""))
                             .arg(countOf(results, eFileOutcome::analysed))
                             .arg(counted(static_cast<qsizetype>(results.size()), "file", "files"))
                             .arg(countOf(results, eFileOutcome::failed))
                             .arg(counted(missingReports(results), "report", "reports"));
    switch (status) {
    case allDone:
        return {Qt::black, text};
    case stoppedBySignal:
        return {Qt::yellow, text};
    default:
        return {Qt::red, text};
    }
}

} // namespace

std::vector<cStatusMessage> summaryMessages(const QStringList& paths,
                                            const std::vector<sFileResult>& results) {
    std::vector<cStatusMessage> messages;
    for (std::size_t i = 0; i < results.size(); ++i) {
        if (results[i].outcome == eFileOutcome::failed) {
            messages.emplace_back(Qt::red,
                                  "Failed: " + shownPath(paths[static_cast<qsizetype>(i)]));
        }
        for (const QString& report : results[i].missingReports) {
            messages.emplace_back(Qt::red, "Report missing: " + shownPath(report));
        }
    }
    messages.push_back(totals(results));
    return messages;
}

eExitStatus exitStatus(const std::vector<sFileResult>& results) {
    if (countOf(results, eFileOutcome::stopped) > 0) {
        return stoppedBySignal;
    }
    const bool isAllDone =
        countOf(results, eFileOutcome::failed) == 0 && missingReports(results) == 0;
    return isAllDone ? allDone : someMissing;
}

#include "batch/summary.h"

#include "batch/shown_text.h"

namespace kelmo {

namespace {

std::size_t missingReports(const sBatchResult& result) {
    qsizetype missing = 0;
    for (const sFileFault& fault : result.faults) {
        missing += fault.missingReports.size();
    }
    return static_cast<std::size_t>(missing);
}

QString counted(std::size_t count, const char* singular, const char* plural) {
    return QString::number(count) + ' ' + QLatin1String(count == 1 ? singular : plural);
}

cStatusMessage totals(const sBatchResult& result, bool isResumed) {
    const eExitStatus status = exitStatus(result);
    const QString takenOver =
        isResumed ? QStringLiteral(", %1 taken over").arg(result.takenOver) : QString();
    const QString text =
        QStringLiteral("%1%2 of %3 analysed%4, %5 failed, %6 missing")
            .arg(QLatin1String(status == eExitStatus::stoppedBySignal ? "Stopped: " : ""))
            .arg(result.analysed)
            .arg(counted(result.files, "file", "files"), takenOver)
            .arg(result.failed)
            .arg(counted(missingReports(result), "report", "reports"));
    switch (status) {
    case eExitStatus::allDone:
        return {Qt::black, text};
    case eExitStatus::stoppedBySignal:
        return {Qt::yellow, text};
    default:
        return {Qt::red, text};
    }
}

} // namespace

std::vector<cStatusMessage> summaryMessages(const cInputPaths& paths, const sBatchResult& result,
                                            bool isResumed) {
    std::vector<cStatusMessage> messages;
    for (const sFileFault& fault : result.faults) {
        if (fault.hasFailed) {
            messages.emplace_back(Qt::red, "Failed: " + shownPath(paths.bytes(fault.file)));
        }
        for (const QString& report : fault.missingReports) {
            messages.emplace_back(Qt::red, "Report missing: " + shownPath(report));
        }
    }
    messages.push_back(totals(result, isResumed));
    return messages;
}

eExitStatus exitStatus(const sBatchResult& result) {
    if (result.stopped() > 0) {
        return eExitStatus::stoppedBySignal;
    }
    return result.faults.empty() ? eExitStatus::allDone : eExitStatus::someMissing;
}

} // namespace kelmo

#include "run/analysis_run.h"

#include "base/shown_text.h"
#include "base/stop_request.h"
#include "base/thread_order.h"
#include "run/file_path.h"

#include <QDateTime>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

#include <new>

namespace kelmo {

namespace {

/// Tells in the record how it ended. Of a file that failed no numbers are kept.
void complete(sFileRecord& record, eFileOutcome outcome) {
    const bool isAnalysed = outcome == eFileOutcome::analysed;
    record.status = isAnalysed ? eFileStatus::analysed : eFileStatus::failed;
    if (!isAnalysed) {
        record.structures.clear();
    }
}

} // namespace

cAnalysisRun::cAnalysisRun(QObject* parent) : QThread(parent) {
    // Also of a thread that is terminated before it comes to run().
    connect(
        this, &QThread::finished, this, [this] { handOver(this); }, Qt::DirectConnection);
}

cAnalysisRun::~cAnalysisRun() = default;

QString cAnalysisRun::currentTimeStamp() {
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddhhmm"));
}

bool cAnalysisRun::isIdle() {
    if (isRunning()) {
        return false;
    }
    return awaitEnd(); // the thread may still be on its way out
}

bool cAnalysisRun::awaitEnd(QDeadlineTimer deadline) {
    const bool hasEnded = wait(deadline);
    if (hasEnded) {
        takeOver(this);
    }
    return hasEnded;
}

void cAnalysisRun::run() {
    setTerminationEnabled(false);
    unwritten.clear();
    if (pathsToAnalyse().isEmpty()) {
        return;
    }
    const QString timeStamp = currentTimeStamp();
    if (const cReportDirectory directory(directoryOf(pathToBytes(reportDirectory())));
        directory.isOpen()) {
        removeAbandonedReports(directory);
    }
    for (const QString& path : pathsToAnalyse()) {
        if (!mayGoOn() || analyseFile(path, timeStamp) == eFileOutcome::stopped) {
            return;
        }
    }
}

eFileOutcome cAnalysisRun::analyseFile(const QString& path, const QString& timeStamp,
                                       sFileRecord* record) {
    const std::string bytes = pathToBytes(path);
    emit fileBegun(sFileBegun(bytes));
    findings.reset();
    fileRecord = record;
    const eFileOutcome outcome = analyseOrStop(bytes, reportBase(path, timeStamp));
    if (fileRecord != nullptr) {
        complete(*fileRecord, outcome);
        fileRecord = nullptr;
    }
    emit fileEnded(sFileEnded(bytes, outcome, findings));
    return outcome;
}

eFileOutcome cAnalysisRun::analyse(const std::string& path, const sReportBase& base) {
    return carryOut(plan(), {path, base, radiiTable(), fileRecord}, *this);
}

eFileOutcome cAnalysisRun::analyseOrStop(const std::string& path, const sReportBase& base) {
    const cStopRequest request([this] { return isStopWanted(); });
    try {
        return analyse(path, base);
    } catch (const sStopped&) {
        return eFileOutcome::stopped;
    } catch (const std::bad_alloc&) {
        tell({eSeverity::error, "Not enough memory for PDB file " + displayedText(path)});
        return eFileOutcome::failed;
    }
}

sReportBase cAnalysisRun::reportBase(const QString& path, const QString& timeStamp) const {
    return {pathToBytes(reportDirectory() + baseNameOf(path)), pathToBytes('_' + timeStamp)};
}

QStringList cAnalysisRun::reportNames(const QString& path, const QString& timeStamp) const {
    QStringList names;
    for (const std::string& name : kelmo::reportNames(plan(), reportBase(path, timeStamp))) {
        names.append(pathFromBytes(name));
    }
    return names;
}

QStringList cAnalysisRun::unwrittenReports() const {
    return unwritten;
}

bool cAnalysisRun::isStopWanted() const {
    return isInterruptionRequested() || (stopFlag != nullptr && *stopFlag);
}

bool cAnalysisRun::mayGoOn() {
    if (isStopWanted()) {
        return false;
    }
    if (QThread::currentThread() == this) {
#ifdef __SANITIZE_ADDRESS__
        __asan_handle_no_return(); // a termination unwinds the stack behind the sanitizer's back
#endif
        setTerminationEnabled(true);
        setTerminationEnabled(false);
    }
    return true;
}

void cAnalysisRun::safePoint() {
    if (!mayGoOn()) {
        throw sStopped{};
    }
}

void cAnalysisRun::tell(sMessage message) {
    if (fileRecord != nullptr && message.severity != eSeverity::progress) {
        fileRecord->message += (fileRecord->message.empty() ? "" : "\n") + message.text;
    }
    emit messageSent(message);
}

void cAnalysisRun::found(const sFindings& newFindings) {
    findings = findings.value_or(sFindings{}) += newFindings;
}

void cAnalysisRun::reportWritten(sReportWritten report) {
    emit reportWasWritten(report);
}

void cAnalysisRun::reportLost(sReportLost report) {
    unwritten.append(pathFromBytes(report.fileName));
    emit reportWasLost(report);
}

} // namespace kelmo

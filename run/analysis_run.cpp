#include "run/analysis_run.h"

#include "base/in_parallel.h"
#include "base/stop_request.h"
#include "base/thread_order.h"
#include "run/file_path.h"
#include "run/report_file.h"

#include <QDateTime>
#include <QFileInfo>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

#include <cerrno>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

namespace kelmo {

namespace {

/// The directory of a file, with a slash at its end.
QString directoryOf(const QString& fileName) {
    return QFileInfo(fileName).path() + '/';
}

/// What the system says about an errno.
QString reasonOf(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

/// Runs an action when a scope is left, however that happens.
template <typename Action>
class cAtScopeEnd {
  public:
    explicit cAtScopeEnd(Action actionAtEnd) : action(std::move(actionAtEnd)) {}
    ~cAtScopeEnd() { action(); }
    cAtScopeEnd(const cAtScopeEnd&) = delete;
    cAtScopeEnd& operator=(const cAtScopeEnd&) = delete;

  private:
    Action action;
};

} // namespace

cAnalysisRun::cAnalysisRun(QObject* parent) : QThread(parent) {
    registerStatusMessageType();
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
    // The separator at the end of the directory's name may be a backslash, which is none to the
    // system.
    removeAbandonedReports(directoryOf(reportDirectory() + 'x'));
    for (const QString& path : pathsToAnalyse()) {
        if (!mayGoOn() || analyseFile(path, timeStamp) == eFileOutcome::stopped) {
            return;
        }
    }
}

eFileOutcome cAnalysisRun::analyseFile(const QString& path, const QString& timeStamp) {
    const cAtScopeEnd release([this] { releaseFile(); });
    const cStopRequest request([this] { return isStopWanted(); });
    try {
        return analyse(path, timeStamp);
    } catch (const sStopped&) {
        return eFileOutcome::stopped;
    } catch (const std::bad_alloc&) {
        releaseFile();
        send(Qt::red, "Not enough memory for PDB file " + displayedPath(path));
        return eFileOutcome::failed;
    }
}

QString cAnalysisRun::reportBase(const QString& path, const QString& timeStamp) const {
    return reportDirectory() + baseNameOf(path) + '_' + timeStamp;
}

std::vector<cAnalysisRun::sReportGroup> cAnalysisRun::planReports(const QString& /*base*/) {
    return {};
}

QStringList cAnalysisRun::reportNames(const QString& path, const QString& timeStamp) {
    QStringList names;
    for (const sReportGroup& group : planReports(reportBase(path, timeStamp))) {
        for (const sPlannedReport& report : group.reports) {
            names.append(report.fileName);
        }
    }
    return names;
}

bool cAnalysisRun::calculateAndWrite(const QString& path, const QString& timeStamp) {
    for (const sReportGroup& group : planReports(reportBase(path, timeStamp))) {
        if (!group.calculate()) {
            return false;
        }
        writeReports(group.reports);
        if (!mayGoOn()) {
            return false;
        }
    }
    return true;
}

/// Documents and tables are written at the same time, but get their final names in order, each as
/// soon as it and those before it are whole: a stop takes none of them away.
void cAnalysisRun::writeReports(const std::vector<sPlannedReport>& reports) {
    std::vector<std::optional<sWrittenReport>> written(reports.size());
    std::size_t named = 0; // so many have been given their names, or up
    std::mutex mutex;
    const auto keep = [&](std::size_t i, sWrittenReport report) {
        const std::lock_guard lock(mutex);
        written[i] = std::move(report);
        while (named < reports.size() && written[named]) {
            giveName(*written[named], reports[named].fileName);
            ++named;
        }
    };
    const auto writeKind = [&](std::size_t kind) {
        for (std::size_t i = 0; i < reports.size(); ++i) {
            if (reports[i].content.index() == kind) {
                const auto write = [&](const auto& content) {
                    return writeReport(reports[i].fileName, content);
                };
                keep(i, std::visit(write, reports[i].content));
            }
        }
    };
    const auto tell = [&] {
        for (std::size_t i = 0; i < named; ++i) {
            tellIfUnwritten(*written[i], reports[i].fileName);
        }
    };
    try {
        inParallel(2, 1, writeKind);
    } catch (...) {
        tell();
        throw;
    }
    tell();
}

QStringList cAnalysisRun::unwrittenReports() const {
    QStringList names;
    for (const sUnwrittenReport& report : unwritten) {
        names.append(report.fileName);
    }
    return names;
}

void cAnalysisRun::releaseFile() {
    currentXmlWriter.reset();
    currentPeptide.reset();
    tableFile.close();
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

void cAnalysisRun::send(Qt::GlobalColor colour, const QString& text) {
    cStatusMessage message(colour, text);
    Q_EMIT sendStatusMessage(message);
}

cAnalysisRun::eLoad cAnalysisRun::loadPeptide(std::ifstream& in, const QString& path,
                                              const std::map<std::string, double>& radii,
                                              std::set<std::string>& missingRadii) {
    currentPeptide = std::make_unique<cPdbPeptide>();
    errno = 0;
    const int badLine = currentPeptide->loadFromStream(in, radii, missingRadii);
    if (in.bad()) {
        // Neither the end of the file nor a bad line: what was read is not all there is.
        send(Qt::red, "Could not read PDB file " + displayedPath(path) + ": " + reasonOf(errno));
        return eLoad::failed;
    }
    if (badLine != 0) {
        send(Qt::red, "There was an error in PDB file " + displayedPath(path) + " at line " +
                          QString::number(badLine));
        return eLoad::failed;
    }
    if (currentPeptide->atoms.empty()) {
        send(Qt::red, "No atoms found in PDB file " + displayedPath(path));
        return eLoad::failed;
    }
    return eLoad::loaded;
}

cAnalysisRun::sWrittenReport cAnalysisRun::writeReport(const QString& fileName,
                                                       const cXmlContent& content) {
    auto report = std::make_unique<cReportFile>(directoryOf(fileName));
    if (report->isOpen()) {
        currentXmlWriter = std::make_unique<cXmlWriter>(report->temporaryName().c_str());
    }
    if (currentXmlWriter == nullptr || !currentXmlWriter->isFileOpen()) {
        const int error = report->isOpen() ? errno : report->error();
        currentXmlWriter.reset();
        return {nullptr, error, false};
    }
    errno = 0; // a stream tells that it failed but not why
    content(*currentXmlWriter);
    currentXmlWriter->close();
    const int error = currentXmlWriter->fail() ? report->writeError(errno) : 0;
    currentXmlWriter.reset();
    return {std::move(report), error, true};
}

cAnalysisRun::sWrittenReport cAnalysisRun::writeReport(const QString& fileName,
                                                       const cTableContent& content) {
    auto report = std::make_unique<cReportFile>(directoryOf(fileName));
    const int descriptor = report->duplicateDescriptor();
    if (descriptor < 0) {
        return {nullptr, errno, false};
    }
    tableFile.setFileName(fileName);
    tableFile.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
    errno = 0; // the file forgets why it failed when it is written to again
    QTextStream stream(&tableFile);
    content(stream);
    stream.flush();
    bool isComplete = stream.status() == QTextStream::Ok && tableFile.flush() &&
                      tableFile.error() == QFileDevice::NoError;
    tableFile.close();
    isComplete = isComplete && tableFile.error() == QFileDevice::NoError;
    const int error = isComplete ? 0 : report->writeError(errno);
    return {std::move(report), error, true};
}

void cAnalysisRun::writeBytes(QTextStream& stream, std::string_view bytes) {
    const auto size = static_cast<qsizetype>(bytes.size());
    if (stream.device() == nullptr) {
        stream << QString::fromUtf8(bytes.data(), size);
        return;
    }
    stream.flush();
    if (stream.device()->write(bytes.data(), size) != size) {
        stream.setStatus(QTextStream::WriteFailed);
    }
}

void cAnalysisRun::giveName(sWrittenReport& written, const QString& fileName) {
    if (written.error == 0 && !written.file->commit(fileName)) {
        written.error = written.file->error();
    }
    written.file.reset(); // handles are few
}

void cAnalysisRun::tellIfUnwritten(const sWrittenReport& written, const QString& fileName) {
    if (written.error == 0) {
        return;
    }
    unwritten.push_back({fileName, reasonOf(written.error), written.isBegun});
    if (written.isBegun) {
        send(Qt::red,
             "Could not write report " + displayedPath(fileName) + ": " + unwritten.back().reason);
    }
}

} // namespace kelmo

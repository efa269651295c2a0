#include "run/analysis_run.h"

#include "geometry/stop_request.h"
#include "run/file_path.h"
#include "run/report_file.h"

#include <QDateTime>
#include <QFileInfo>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

#include <new>
#include <utility>

namespace {

/// The directory of a file, with a slash at its end.
QString directoryOf(const QString& fileName) {
    return QFileInfo(fileName).path() + '/';
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
}

cAnalysisRun::~cAnalysisRun() = default;

QString cAnalysisRun::currentTimeStamp() {
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddhhmm"));
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
    const int badLine = currentPeptide->loadFromStream(in, radii, missingRadii);
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

void cAnalysisRun::writeXmlReport(const QString& fileName, const cXmlContent& content) {
    cReportFile report(directoryOf(fileName));
    if (report.isOpen()) {
        currentXmlWriter = std::make_unique<cXmlWriter>(report.temporaryName().c_str());
    }
    if (currentXmlWriter == nullptr || !currentXmlWriter->isFileOpen()) {
        currentXmlWriter.reset();
        unwritten.append(fileName);
        return;
    }
    content(*currentXmlWriter);
    currentXmlWriter->close();
    const bool isComplete = !currentXmlWriter->fail();
    currentXmlWriter.reset();
    finishReport(isComplete, report, fileName);
}

void cAnalysisRun::writeTableReport(const QString& fileName, const cTableContent& content) {
    cReportFile report(directoryOf(fileName));
    tableFile.setFileName(fileName);
    if (!report.isOpen() || !tableFile.open(report.duplicateDescriptor(), QIODevice::WriteOnly,
                                            QFileDevice::AutoCloseHandle)) {
        unwritten.append(fileName);
        return;
    }
    QTextStream stream(&tableFile);
    content(stream);
    stream.flush();
    const bool isComplete = stream.status() == QTextStream::Ok && tableFile.flush() &&
                            tableFile.error() == QFileDevice::NoError;
    tableFile.close();
    finishReport(isComplete, report, fileName);
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

void cAnalysisRun::finishReport(bool isComplete, cReportFile& report, const QString& fileName) {
    if (!isComplete || !report.commit(fileName)) {
        unwritten.append(fileName);
        send(Qt::red, "Could not write report " + displayedPath(fileName));
    }
}

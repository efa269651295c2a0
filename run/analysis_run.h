// What both analysis workers share: the walk over the input files, safe points, messages and
// reports.
#pragma once

#include "model/pdb_peptide.h"
#include "run/status_message.h"
#include "xml/xml_writer.h"

#include <QFile>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <QThread>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

/// How the work on one file ended.
enum class eFileOutcome {
    analysed, ///< reports that could not be written are in unwrittenReports()
    failed,   ///< reported in red; no report exists
    stopped   ///< a stop was asked for; only reports that were whole before it exist
};

/// A worker thread that takes its input files one by one. A stop takes effect at safe points
/// between the steps of a file, and within a step by giving it up; afterwards nothing is
/// half-written and the worker can be started again.
class cAnalysisRun : public QThread {
    Q_OBJECT
  public:
    ~cAnalysisRun() override;

    /// The stamp that all reports of a run carry: the local time as "yyyyMMddhhmm".
    static QString currentTimeStamp();

    /// Analyses one file and writes its reports under the given stamp. Sends its messages from the
    /// calling thread. Several threads may work at once, each through a worker object of its own.
    eFileOutcome analyseFile(const QString& path, const QString& timeStamp);

    /// Final names of the reports that were asked for but not written since the run began.
    const QStringList& unwrittenReports() const { return unwritten; }

    /// Besides an interruption of the thread, a flag that asks for a stop; not owned, may be null.
    void setStopFlag(const std::atomic<bool>* flag) { stopFlag = flag; }

  signals:
    void sendStatusMessage(cStatusMessage& message);

  protected:
    explicit cAnalysisRun(QObject* parent);

    void run() override;

    virtual const QStringList& pathsToAnalyse() const = 0;
    virtual QString reportDirectory() const = 0;
    /// The work on one file. Returns early with `stopped` when a safe point says so.
    virtual eFileOutcome analyse(const QString& path, const QString& timeStamp) = 0;

    /// A safe point: false when the work is to be given up at once. On the worker thread a pending
    /// termination takes effect here; nothing is half done that the stack does not undo.
    bool mayGoOn();
    void send(Qt::GlobalColor colour, const QString& text);

    enum class eLoad { loaded, failed };
    /// Reads the open file into a new current peptide. Sends the message of a bad line or of a file
    /// without atoms.
    eLoad loadPeptide(std::ifstream& in, const QString& path,
                      const std::map<std::string, double>& radii,
                      std::set<std::string>& missingRadii);

    using cXmlContent = std::function<void(cXmlWriter&)>;
    using cTableContent = std::function<void(QTextStream&)>;
    void writeXmlReport(const QString& fileName, const cXmlContent& content);
    void writeTableReport(const QString& fileName, const cTableContent& content);

    /// Writes bytes as they are behind what the stream has written so far.
    static void writeBytes(QTextStream& stream, std::string_view bytes);

    std::unique_ptr<cXmlWriter> currentXmlWriter; ///< null between reports
    std::unique_ptr<cPdbPeptide> currentPeptide;  ///< null between files
    QFile tableFile;

  private:
    void finishReport(bool isComplete, class cReportFile& report, const QString& fileName);
    void releaseFile();
    /// Whether a stop was asked for; unlike a safe point this may be asked from any thread.
    bool isStopWanted() const;

    QStringList unwritten;
    const std::atomic<bool>* stopFlag = nullptr;
};

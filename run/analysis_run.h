// What both analysis workers share: the walk over the input files, safe points, messages and
// reports.
#pragma once

#include "model/pdb_peptide.h"
#include "run/report_file.h"
#include "run/status_message.h"
#include "xml/xml_writer.h"

#include <QDeadlineTimer>
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
#include <utility>
#include <variant>
#include <vector>

namespace kelmo {

/// How the work on one file ended.
enum class eFileOutcome {
    analysed, ///< reports that could not be written are in unwrittenReports()
    failed,   ///< reported in red; at most reports exist that were whole before
    stopped   ///< a stop was asked for; only reports that were whole before it exist
};

/// A report that was asked for but does not exist, or exists only as an older run left it.
struct sUnwrittenReport {
    QString fileName;    ///< its final name
    QString reason;      ///< in the words of the system
    bool isBegun = true; ///< false when not even a file could be created: no message was sent
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

    /// Final names of the reports that analyseFile() would write, in the order of writing.
    QStringList reportNames(const QString& path, const QString& timeStamp);

    /// Final names of the reports that were asked for but not written since the run began.
    QStringList unwrittenReports() const;
    /// The same with the reasons; they are forgotten here.
    std::vector<sUnwrittenReport> takeUnwrittenReports() { return std::exchange(unwritten, {}); }

    /// Whether no run is going on. Then the last one has ended altogether, its signals included.
    bool isIdle();
    /// Waits for the end of the run, if there is one; false when the time is over before. Unlike
    /// wait(), it lets a thread checker know that the caller may use what the run has used.
    bool awaitEnd(QDeadlineTimer deadline = QDeadlineTimer(QDeadlineTimer::Forever));

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

    using cXmlContent = std::function<void(cXmlWriter&)>;
    using cTableContent = std::function<void(QTextStream&)>;
    /// A report that was asked for: its final name and what writes its content.
    struct sPlannedReport {
        QString fileName;
        std::variant<cXmlContent, cTableContent> content;
    };
    /// A step of calculations, false when a stop was asked for, and the reports that follow it.
    struct sReportGroup {
        std::function<bool()> calculate;
        std::vector<sPlannedReport> reports;
    };
    /// Everything that is to be done with the current peptide by the settings, in order. `base` is
    /// what the names of the file's reports begin with.
    virtual std::vector<sReportGroup> planReports(const QString& base);
    /// Carries out the plan for the file; false when a stop was asked for.
    bool calculateAndWrite(const QString& path, const QString& timeStamp);

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

    /// Writes bytes as they are behind what the stream has written so far.
    static void writeBytes(QTextStream& stream, std::string_view bytes);

    std::unique_ptr<cXmlWriter> currentXmlWriter; ///< null between reports
    std::unique_ptr<cPdbPeptide> currentPeptide;  ///< null between files
    QFile tableFile;

  private:
    QString reportBase(const QString& path, const QString& timeStamp) const;
    struct sWrittenReport {
        std::unique_ptr<cReportFile> file; ///< under its temporary name
        int error = 0;                     ///< errno of a report that is not complete
        bool isBegun = false;              ///< false when not even a file could be created
    };
    void writeReports(const std::vector<sPlannedReport>& reports);
    sWrittenReport writeReport(const QString& fileName, const cXmlContent& content);
    sWrittenReport writeReport(const QString& fileName, const cTableContent& content);
    static void giveName(sWrittenReport& written, const QString& fileName);
    void tellIfUnwritten(const sWrittenReport& written, const QString& fileName);
    void releaseFile();
    /// Whether a stop was asked for; unlike a safe point this may be asked from any thread.
    bool isStopWanted() const;

    std::vector<sUnwrittenReport> unwritten;
    const std::atomic<bool>* stopFlag = nullptr;
};

} // namespace kelmo

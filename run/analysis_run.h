// What both analysis workers share: the walk over the input files, safe points and signals.
#pragma once

#include "analysis/parameter_tables.h"
#include "analysis/settings.h"
#include "run/analysis_plan.h"
#include "run/run_events.h"

#include <QDeadlineTimer>
#include <QString>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

/// A worker thread that takes its input files one by one. A stop takes effect at safe points
/// between the steps of a file, and within a step by giving it up; afterwards nothing is
/// half-written and the worker can be started again.
class cAnalysisRun : public QThread, private cPlanFollower {
    Q_OBJECT
  public:
    ~cAnalysisRun() override;

    /// The stamp that all reports of a run carry: the local time as "yyyyMMddhhmm".
    static QString currentTimeStamp();

    /// Everything that a run goes by but its files, while idle: settings that are resolved, checked
    /// and complete, and the tables that they name.
    virtual void setUp(const cSettings& settings, const sParameterTables& tables) = 0;
    /// The files of the next run, in order.
    virtual void setInputFiles(const QStringList& files) = 0;

    /// Analyses one file and writes its reports under the given stamp. Signals come from the
    /// calling thread. Several threads may work at once, each through a worker object of its own.
    /// A record is filled with what results files keep, but for the path and SHA-256.
    eFileOutcome analyseFile(const QString& path, const QString& timeStamp,
                             sFileRecord* record = nullptr);

    /// Final names of the reports that analyseFile() would write, in the order of writing; none
    /// when they depend on the models that the file has.
    QStringList reportNames(const QString& path, const QString& timeStamp) const;

    /// Final names of the reports that were asked for but not written since the run began.
    QStringList unwrittenReports() const;

    /// Whether no run is going on. Then the last one has ended altogether, its signals included.
    bool isIdle();
    /// Waits for the end of the run, if there is one; false when the time is over before. Unlike
    /// wait(), it lets a thread checker know that the caller may use what the run has used.
    bool awaitEnd(QDeadlineTimer deadline = QDeadlineTimer(QDeadlineTimer::Forever));

    /// Besides an interruption of the thread, a flag that asks for a stop; not owned, may be null.
    void setStopFlag(const std::atomic<bool>* flag) { stopFlag = flag; }

  signals:
    void messageSent(const sMessage& message);
    void fileBegun(const sFileBegun& file);
    void fileEnded(const sFileEnded& file);
    void reportWasWritten(const sReportWritten& report);
    void reportWasLost(const sReportLost& report);

  protected:
    explicit cAnalysisRun(QObject* parent);

    void run() override;

    virtual const QStringList& pathsToAnalyse() const = 0;
    /// What the names of reports begin with: the output directory with a separator at its end.
    virtual QString reportDirectory() const = 0;
    /// What is to be done with every file by the settings, which the plan may refer to.
    virtual sAnalysisPlan plan() const = 0;
    virtual const std::map<std::string, double>& radiiTable() const = 0;
    /// The work on one file: carries out the plan.
    virtual eFileOutcome analyse(const std::string& path, const sReportBase& base);

  private:
    void tell(sMessage message) override;
    void reportWritten(sReportWritten report) override;
    void reportLost(sReportLost report) override;
    void found(const sFindings& findings) override;
    void safePoint() override;

    /// False when the work is to be given up at once. On the worker thread a pending termination
    /// takes effect here; nothing is half done that the stack does not undo.
    bool mayGoOn();
    /// Whether a stop was asked for; unlike a safe point this may be asked from any thread.
    bool isStopWanted() const;
    sReportBase reportBase(const QString& path, const QString& timeStamp) const;
    eFileOutcome analyseOrStop(const std::string& path, const sReportBase& base);

    QStringList unwritten;
    std::optional<sFindings> findings; ///< in the file at hand
    const std::atomic<bool>* stopFlag = nullptr;
    sFileRecord* fileRecord = nullptr; ///< of the file at hand
};

} // namespace kelmo

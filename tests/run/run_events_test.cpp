// What a worker tells, on its way from its thread to a receiver in another.
#include "tests/run/message_log.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/test_files.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <string>

namespace kelmo {

namespace {

constexpr int messageCount = 1000;

/// A worker that sends many messages and reuses each message object right after sending it.
class cTalkingRun : public cAnalysisRun {
  public:
    cTalkingRun() : cAnalysisRun(nullptr) {}
    void setUp(const cSettings&, const sParameterTables&) override {}
    void setInputFiles(const QStringList&) override {}

  protected:
    const QStringList& pathsToAnalyse() const override { return paths; }
    QString reportDirectory() const override { return QStringLiteral("missing/"); }
    sAnalysisPlan plan() const override { return {}; }
    const std::map<std::string, double>& radiiTable() const override { return radii; }
    eFileOutcome analyse(const std::string&, const sReportBase&) override {
        sMessage message;
        for (int i = 0; i < messageCount; ++i) {
            message.severity = static_cast<eSeverity>(i % 3);
            message.text = "message " + std::to_string(i);
            emit messageSent(message);
            message.severity = eSeverity::error;
            message.text = "reused";
        }
        return eFileOutcome::analysed;
    }

  private:
    QStringList paths{QStringLiteral("any")};
    const std::map<std::string, double> radii;
};

} // namespace

TEST(RunEvents, CopiesOfAMessageAreIndependent) {
    const sMessage first(eSeverity::warning, "first");
    sMessage copy(first);
    sMessage assigned;
    assigned = first;
    copy.text += " changed";
    copy.severity = eSeverity::error;
    EXPECT_EQ(first.text, "first");
    EXPECT_EQ(first.severity, eSeverity::warning);
    EXPECT_EQ(assigned.text, "first");
    EXPECT_EQ(assigned.severity, eSeverity::warning);
}

TEST(RunEvents, QueuedCopiesArriveIntactInTheReceiversThread) {
    cTalkingRun run;
    cMessageLog log(run, Qt::AutoConnection);
    ASSERT_TRUE(runToEnd(run));
    EXPECT_TRUE(log.messages.empty()) << "the receiver's thread has not looked yet";
    QCoreApplication::processEvents();
    ASSERT_EQ(log.messages.size(), static_cast<std::size_t>(messageCount));
    for (int i = 0; i < messageCount; ++i) {
        const sMessage& message = log.messages[static_cast<std::size_t>(i)];
        ASSERT_EQ(message.text, "message " + std::to_string(i));
        ASSERT_EQ(message.severity, static_cast<eSeverity>(i % 3));
        ASSERT_EQ(log.threads[static_cast<std::size_t>(i)], QThread::currentThread());
    }
}

TEST(RunEvents, DirectReceiverIsServedInTheWorkersThread) {
    cTalkingRun run;
    cMessageLog log(run, Qt::DirectConnection);
    ASSERT_TRUE(runToEnd(run));
    ASSERT_EQ(log.messages.size(), static_cast<std::size_t>(messageCount));
    EXPECT_EQ(log.threads.front(), &run);
    EXPECT_EQ(log.messages.back().text, "message 999");
}

TEST(RunEvents, FilesAndReportsAreToldWithTheirNames) {
    const cScratchDirectory input;
    const cScratchDirectory output;
    writeContent(input.file("good.pdb"), twoGlycines());
    cRunKEV run;
    switchEverythingOn(run);
    run.setRadii(glycineRadii());
    run.setOutputDirectoryName(QString::fromStdString(output.path().string()));
    std::vector<std::string> told;
    QObject::connect(&run, &cAnalysisRun::fileBegun,
                     [&](const sFileBegun& file) { told.push_back("begun " + file.path); });
    QObject::connect(&run, &cAnalysisRun::fileEnded, [&](const sFileEnded& file) {
        const bool isAnalysed = file.outcome == eFileOutcome::analysed;
        told.push_back((isAnalysed ? "analysed " : "failed ") + file.path);
    });
    QObject::connect(&run, &cAnalysisRun::reportWasWritten, [&](const sReportWritten& report) {
        told.push_back("written " + report.fileName.substr(report.fileName.rfind('/') + 1));
    });
    QObject::connect(&run, &cAnalysisRun::reportWasLost, [&](const sReportLost& report) {
        told.push_back("lost " + report.fileName.substr(report.fileName.rfind('/') + 1) + ": " +
                       report.reason);
    });
    std::filesystem::create_directory(output.file("good_200703141530_unbound.xml"));
    const std::string good = input.file("good.pdb");
    const std::string gone = input.file("gone.pdb");
    run.analyseFile(QString::fromStdString(good), fixedStamp);
    run.analyseFile(QString::fromStdString(gone), fixedStamp);
    EXPECT_EQ(told,
              (std::vector<std::string>{"begun " + good, "written good_200703141530_bound.xml",
                                        "written good_200703141530_bound.tbl",
                                        "lost good_200703141530_unbound.xml: Is a directory",
                                        "written good_200703141530_unbound.tbl", "analysed " + good,
                                        "begun " + gone, "failed " + gone}));
}

} // namespace kelmo

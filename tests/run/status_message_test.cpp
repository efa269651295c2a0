// Messages by themselves, and on their way from a worker's thread to a receiver in another.
#include "tests/run/message_log.h"
#include "tests/run/run_test_tools.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace kelmo {

namespace {

constexpr int messageCount = 1000;

/// A worker that sends many messages and reuses each message object right after sending it.
class cTalkingRun : public cAnalysisRun {
  public:
    cTalkingRun() : cAnalysisRun(nullptr) {}

  protected:
    const QStringList& pathsToAnalyse() const override { return paths; }
    QString reportDirectory() const override { return QStringLiteral("missing/"); }
    eFileOutcome analyse(const QString&, const QString&) override {
        cStatusMessage message;
        for (int i = 0; i < messageCount; ++i) {
            message.colour = QColor(i % 256, 1, 2);
            message.text = QStringLiteral("message %1").arg(i);
            emit sendStatusMessage(message);
            message.colour = Qt::white;
            message.text = QStringLiteral("reused");
        }
        return eFileOutcome::analysed;
    }

  private:
    QStringList paths{QStringLiteral("any")};
};

} // namespace

TEST(StatusMessage, DefaultIsAnEmptyLineInBlack) {
    const cStatusMessage message;
    EXPECT_EQ(message.colour, QColor(Qt::black));
    EXPECT_TRUE(message.text.isEmpty());
}

TEST(StatusMessage, HoldsColourAndText) {
    const cStatusMessage message(Qt::red, QStringLiteral("Could not open file x"));
    EXPECT_EQ(message.colour, QColor(Qt::red));
    EXPECT_EQ(message.text, QStringLiteral("Could not open file x"));
}

TEST(StatusMessage, CopiesAreIndependent) {
    const cStatusMessage first(Qt::yellow, QStringLiteral("first"));
    cStatusMessage copy(first);
    cStatusMessage assigned;
    assigned = first;
    copy.text += QStringLiteral(" changed");
    copy.colour = Qt::red;
    assigned.text = QStringLiteral("other");
    EXPECT_EQ(first.text, QStringLiteral("first"));
    EXPECT_EQ(first.colour, QColor(Qt::yellow));
    EXPECT_EQ(assigned.colour, QColor(Qt::yellow));
}

TEST(StatusMessage, TypeCanBeRegisteredAgain) {
    registerStatusMessageType();
    registerStatusMessageType();
    EXPECT_TRUE(QMetaType::fromName("cStatusMessage").isValid());
    EXPECT_TRUE(QMetaType::fromName("cStatusMessage&").isValid());
}

TEST(StatusMessage, QueuedCopiesArriveIntactInTheReceiversThread) {
    cTalkingRun run;
    cMessageLog log(run, Qt::AutoConnection);
    ASSERT_TRUE(runToEnd(run));
    EXPECT_TRUE(log.messages.empty()) << "the receiver's thread has not looked yet";
    QCoreApplication::processEvents();
    ASSERT_EQ(log.messages.size(), static_cast<std::size_t>(messageCount));
    for (int i = 0; i < messageCount; ++i) {
        const cStatusMessage& message = log.messages[static_cast<std::size_t>(i)];
        ASSERT_EQ(message.text, QStringLiteral("message %1").arg(i));
        ASSERT_EQ(message.colour, QColor(i % 256, 1, 2));
        ASSERT_EQ(log.threads[static_cast<std::size_t>(i)], QThread::currentThread());
    }
}

TEST(StatusMessage, DirectReceiverIsServedInTheWorkersThread) {
    cTalkingRun run;
    cMessageLog log(run, Qt::DirectConnection);
    ASSERT_TRUE(runToEnd(run));
    ASSERT_EQ(log.messages.size(), static_cast<std::size_t>(messageCount));
    EXPECT_EQ(log.threads.front(), &run);
    EXPECT_EQ(log.messages.back().text, QStringLiteral("message 999"));
}

} // namespace kelmo

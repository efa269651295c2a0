#include "tests/run/message_log.h"

#include <gtest/gtest.h>

namespace kelmo {

cMessageLog::cMessageLog(cAnalysisRun& run, Qt::ConnectionType type) {
    EXPECT_TRUE(connect(&run, &cAnalysisRun::messageSent, this, &cMessageLog::receive, type));
}

void cMessageLog::receive(const sMessage& message) {
    messages.push_back(message);
    threads.push_back(QThread::currentThread());
}

std::vector<std::string> cMessageLog::lines() const {
    std::vector<std::string> all;
    for (const sMessage& message : messages) {
        const bool isError = message.severity == eSeverity::error;
        const bool isWarning = message.severity == eSeverity::warning;
        const std::string colour = isError ? "red" : isWarning ? "yellow" : "black";
        all.push_back(colour + ": " + message.text);
    }
    return all;
}

} // namespace kelmo

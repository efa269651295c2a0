#include "tests/run/message_log.h"

#include <gtest/gtest.h>

namespace kelmo {

cMessageLog::cMessageLog(cAnalysisRun& run, Qt::ConnectionType type) {
    const bool isConnected = connect(&run, SIGNAL(sendStatusMessage(cStatusMessage&)), this,
                                     SLOT(receive(cStatusMessage&)), type);
    EXPECT_TRUE(isConnected);
}

void cMessageLog::receive(cStatusMessage& message) {
    messages.push_back(message);
    threads.push_back(QThread::currentThread());
}

std::vector<std::string> cMessageLog::lines() const {
    std::vector<std::string> all;
    for (const cStatusMessage& message : messages) {
        std::string colour = message.colour.name().toStdString();
        if (message.colour == QColor(Qt::black)) {
            colour = "black";
        } else if (message.colour == QColor(Qt::yellow)) {
            colour = "yellow";
        } else if (message.colour == QColor(Qt::red)) {
            colour = "red";
        }
        all.push_back(colour + ": " + message.text.toStdString());
    }
    return all;
}

} // namespace kelmo

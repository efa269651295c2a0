// Takes a worker's messages in the thread where it was made, as the window does.
#pragma once

#include "base/thread_order.h"
#include "run/analysis_run.h"

#include <QObject>

#include <functional>
#include <utility>

namespace kelmo {

class cMessageReceiver : public QObject {
    Q_OBJECT
  public:
    cMessageReceiver(const cAnalysisRun& run, std::function<void()> actionAtMessage)
        : action(std::move(actionAtMessage)) {
        connect(&run, &cAnalysisRun::messageSent, this, &cMessageReceiver::receive);
    }

    bool hasReceived = false;

  public slots:
    void receive(const sMessage& message) {
        takeOver(&message);
        hasReceived = true;
        action();
    }

  private:
    std::function<void()> action;
};

} // namespace kelmo

// A receiver that keeps what a worker tells, connected as the window connects itself.
#pragma once

#include "run/analysis_run.h"

#include <QObject>
#include <QThread>

#include <ostream>
#include <string>
#include <vector>

namespace kelmo {

class cMessageLog : public QObject {
    Q_OBJECT
  public:
    /// A direct connection is served in the sender's thread: read the log after the sender's end.
    explicit cMessageLog(cAnalysisRun& run, Qt::ConnectionType type = Qt::DirectConnection);

    /// "colour: text" with the colour in which severities are shown, in the order of arrival.
    std::vector<std::string> lines() const;

    std::vector<sMessage> messages;
    std::vector<QThread*> threads; ///< in which each message was received

  public slots:
    void receive(const sMessage& message);
};

} // namespace kelmo

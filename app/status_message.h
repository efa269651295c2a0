// A coloured line of text in a log pane.
#pragma once

#include "run/run_events.h"

#include <QColor>
#include <QString>

namespace kelmo {

/// The colour tells the kind: black is progress, yellow a warning, red an error; blue and green are
/// the window's own start and end.
class cStatusMessage {
  public:
    cStatusMessage();
    cStatusMessage(QColor messageColour, QString messageText);
    /// What a worker says, in the colour of its severity.
    explicit cStatusMessage(const sMessage& message);

    QColor colour;
    QString text;
};

/// The colour of a severity.
QColor colourOf(eSeverity severity);

} // namespace kelmo

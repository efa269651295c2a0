// A coloured line of text by which the analyses tell the user how they get on.
#pragma once

#include <QColor>
#include <QMetaType>
#include <QString>

namespace kelmo {

/// The colour tells the kind: black is progress, yellow a warning, red an error; blue and green are
/// the window's own start and end.
class cStatusMessage {
  public:
    cStatusMessage();
    cStatusMessage(QColor messageColour, QString messageText);
    cStatusMessage(const cStatusMessage& other);
    cStatusMessage(cStatusMessage&&) = default;
    cStatusMessage& operator=(const cStatusMessage&) = default;
    cStatusMessage& operator=(cStatusMessage&&) = default;
    ~cStatusMessage() = default;

    QColor colour;
    QString text;
};

/// Lets messages travel to other threads by reference-typed signals; may be called any number of
/// times.
void registerStatusMessageType();

} // namespace kelmo

Q_DECLARE_METATYPE(kelmo::cStatusMessage)

#include "app/status_message.h"

#include <utility>

namespace kelmo {

cStatusMessage::cStatusMessage() : colour(Qt::black) {}

cStatusMessage::cStatusMessage(QColor messageColour, QString messageText)
    : colour(messageColour), text(std::move(messageText)) {}

cStatusMessage::cStatusMessage(const sMessage& message)
    : colour(colourOf(message.severity)), text(QString::fromStdString(message.text)) {}

QColor colourOf(eSeverity severity) {
    switch (severity) {
    case eSeverity::error:
        return Qt::red;
    case eSeverity::warning:
        return Qt::yellow;
    case eSeverity::progress:
        break;
    }
    return Qt::black;
}

} // namespace kelmo

#include "run/status_message.h"

#include <utility>

cStatusMessage::cStatusMessage() : colour(Qt::black) {}

cStatusMessage::cStatusMessage(QColor messageColour, QString messageText)
    : colour(messageColour), text(std::move(messageText)) {}

void registerStatusMessageType() {
    qRegisterMetaType<cStatusMessage>("cStatusMessage");
    // The signal carries a reference; a queued call stores the copy under this name.
    qRegisterMetaType<cStatusMessage>("cStatusMessage&");
}

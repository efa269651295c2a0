#include "run/status_message.h"

#include "base/thread_order.h"

#include <utility>

namespace kelmo {

cStatusMessage::cStatusMessage() : colour(Qt::black) {}

cStatusMessage::cStatusMessage(QColor messageColour, QString messageText)
    : colour(messageColour), text(std::move(messageText)) {}

cStatusMessage::cStatusMessage(const cStatusMessage& other)
    : colour(other.colour), text(other.text) {
    // A queued signal hands such a copy to the thread of the receiver.
    handOver(this);
}

void registerStatusMessageType() {
    [[maybe_unused]] static const bool isRegistered = [] {
        qRegisterMetaType<cStatusMessage>("cStatusMessage");
        // The signal carries a reference; a queued call stores the copy under this name.
        qRegisterMetaType<cStatusMessage>("cStatusMessage&");
        return true;
    }();
}

} // namespace kelmo

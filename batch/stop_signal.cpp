#include "batch/stop_signal.h"

namespace kelmo {

namespace {

std::atomic<bool> isStopRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may set nothing else");

extern "C" void requestStop(int) {
    isStopRequested = true;
}

struct sigaction handleOnce(int signalNumber) {
    struct sigaction earlier {};
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    // Restarted calls: a report that is being written goes on. Reset: the next signal kills.
    action.sa_flags =
        static_cast<int>(static_cast<unsigned>(SA_RESTART) | static_cast<unsigned>(SA_RESETHAND));
    sigaction(signalNumber, nullptr, &earlier);
    if (earlier.sa_handler != SIG_IGN) {
        sigaction(signalNumber, &action, nullptr);
    }
    return earlier;
}

} // namespace

cStopSignal::cStopSignal() {
    isStopRequested = false;
    earlierInterrupt = handleOnce(SIGINT);
    earlierTermination = handleOnce(SIGTERM);
    earlierHangup = handleOnce(SIGHUP);
}

cStopSignal::~cStopSignal() {
    sigaction(SIGINT, &earlierInterrupt, nullptr);
    sigaction(SIGTERM, &earlierTermination, nullptr);
    sigaction(SIGHUP, &earlierHangup, nullptr);
}

const std::atomic<bool>& cStopSignal::flag() const {
    return isStopRequested;
}

} // namespace kelmo

// Ctrl-C as a flag that the analyses look at.
#pragma once

#include <atomic>

#include <signal.h>

namespace kelmo {

/// While it lives, the first SIGINT, SIGTERM or SIGHUP raises the flag and a second one of the same
/// kind kills the process. One that is ignored stays so: a SIGINT in the background of a script, a
/// SIGHUP under nohup. One at a time.
class cStopSignal {
  public:
    cStopSignal();
    ~cStopSignal();
    cStopSignal(const cStopSignal&) = delete;
    cStopSignal& operator=(const cStopSignal&) = delete;

    const std::atomic<bool>& flag() const;

  private:
    struct sigaction earlierInterrupt {};
    struct sigaction earlierTermination {};
    struct sigaction earlierHangup {};
};

} // namespace kelmo

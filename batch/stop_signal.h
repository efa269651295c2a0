// Ctrl-C as a flag that the analyses look at.
#pragma once

#include <atomic>

#include <signal.h>

/// While it lives, the first SIGINT or SIGTERM raises the flag and a second one of the same kind
/// kills the process. A SIGINT that is ignored, as for jobs in the background of a script, stays
/// ignored. One at a time.
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
};

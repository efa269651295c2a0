// Processor time, in which tests measure and wait: unlike that of the clock it does not depend on
// who else uses the machine.
#pragma once

#include <chrono>
#include <thread>

#include <sys/types.h>

namespace kelmo {

using tProcessorTime = std::chrono::nanoseconds;

/// What all threads of this process have used.
tProcessorTime processorTime();
/// What all threads of this process but the calling one have used.
tProcessorTime processorTimeOfOthers();
/// What a process has used; 0 when there is none.
tProcessorTime processorTimeOf(pid_t process);

/// Waits until `used()` has grown by `amount`, or until `isOver()`: for a moment within the work of
/// somebody else that falls there however slow the machine is.
template <typename Used, typename IsOver>
void waitForWork(tProcessorTime amount, Used used, IsOver isOver) {
    const tProcessorTime end = used() + amount;
    while (used() < end && !isOver()) {
        std::this_thread::yield();
    }
}

} // namespace kelmo

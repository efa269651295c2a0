#include "tests/support/processor_time.h"

#include <ctime>

namespace kelmo {

namespace {

/// 0 when there is no such clock any more.
tProcessorTime reading(clockid_t clock) {
    timespec time{};
    if (::clock_gettime(clock, &time) != 0) {
        return {};
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

tProcessorTime processorTime() {
    return reading(CLOCK_PROCESS_CPUTIME_ID);
}

tProcessorTime processorTimeOfOthers() {
    // In this order the difference is never too large.
    const tProcessorTime all = processorTime();
    return all - reading(CLOCK_THREAD_CPUTIME_ID);
}

tProcessorTime processorTimeOf(pid_t process) {
    clockid_t clock{};
    return ::clock_getcpuclockid(process, &clock) == 0 ? reading(clock) : tProcessorTime{};
}

} // namespace kelmo

#include "run/report_blocks.h"

#include "geometry/stop_request.h"

#include <algorithm>
#include <cerrno>

#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

void inBlocks(std::size_t count,
              const std::function<void(std::string& text, std::size_t i)>& append,
              const std::function<void(std::string_view block)>& handOn) {
    constexpr std::size_t itemsPerBlock = 32;
    constexpr std::size_t blocksInMemory = 64;
    std::size_t next = 0;
    int error = errno;
    const cStopRequest* const request = cStopRequest::current();
    const auto takeBlock = [&](tbb::flow_control& control) {
        if (request != nullptr) {
            request->check();
        }
        const std::size_t first = next;
        if (first >= count) {
            control.stop();
        }
        next += itemsPerBlock;
        return first;
    };
    const auto putTogether = [&](std::size_t first) {
        std::string text;
        const std::size_t last = std::min(first + itemsPerBlock, count);
        for (std::size_t i = first; i < last; ++i) {
            append(text, i);
        }
        return text;
    };
    // By default a pipeline ends without a word when a loop around it is cancelled.
    tbb::task_group_context ownCancellation(tbb::task_group_context::isolated);
    // Isolated, so that a thread that waits here never starts on another file.
    tbb::this_task_arena::isolate([&] {
        tbb::parallel_pipeline(
            blocksInMemory,
            tbb::make_filter<void, std::size_t>(tbb::filter_mode::serial_in_order, takeBlock) &
                tbb::make_filter<std::size_t, std::string>(tbb::filter_mode::parallel,
                                                           putTogether) &
                tbb::make_filter<std::string, void>(tbb::filter_mode::serial_in_order,
                                                    [&](const std::string& text) {
                                                        errno = error;
                                                        handOn(text);
                                                        error = errno;
                                                    }),
            ownCancellation);
    });
    errno = error;
}

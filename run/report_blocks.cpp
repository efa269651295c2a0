#include "run/report_blocks.h"

#include "base/parallel_work.h"
#include "base/stop_request.h"

#include <algorithm>
#include <cerrno>

namespace kelmo {

namespace {

struct sBlock {
    std::size_t firstItem = 0;
    std::string text;
};

} // namespace

void inBlocks(std::size_t count,
              const std::function<void(std::string& text, std::size_t i)>& append,
              const std::function<void(std::string_view block)>& handOn) {
    constexpr std::size_t itemsPerBlock = 32;
    constexpr std::size_t blocksInMemory = 64;
    const cStopRequest* const request = cStopRequest::current();
    std::size_t next = 0;
    int error = errno;
    const auto take = [&](sBlock& block) {
        if (request != nullptr) {
            request->check();
        }
        block.firstItem = next;
        block.text.clear();
        next += itemsPerBlock;
        return block.firstItem < count;
    };
    const auto putTogether = [&](sBlock& block) {
        const std::size_t end = std::min(block.firstItem + itemsPerBlock, count);
        for (std::size_t i = block.firstItem; i < end; ++i) {
            append(block.text, i);
        }
    };
    workInOrder<sBlock>(blocksInMemory, take, putTogether, [&](const sBlock& block) {
        errno = error;
        handOn(block.text);
        error = errno;
    });
    errno = error;
}

} // namespace kelmo

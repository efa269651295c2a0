#include "reports/report_blocks.h"

#include "base/parallel_work.h"
#include "base/stop_request.h"

#include <algorithm>
#include <cerrno>
#include <vector>

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

void writeResidueBlocks(cTextSink& out, const cPdbPeptide& structure,
                        const std::function<void(std::string& text, const cProteinChain& chain,
                                                 const cChainResidue& residue)>& append) {
    std::vector<std::size_t> firstOfChain; // position of its first residue among all
    std::size_t count = 0;
    for (const cProteinChain& chain : structure.chains) {
        firstOfChain.push_back(count);
        count += chain.residueCount;
    }
    inBlocks(
        count,
        [&](std::string& text, std::size_t i) {
            const auto next = std::upper_bound(firstOfChain.begin(), firstOfChain.end(), i) - 1;
            const auto place = static_cast<std::size_t>(next - firstOfChain.begin());
            const cProteinChain& chain = structure.chains[place];
            append(text, chain, chain.residues[i - *next]);
        },
        [&](std::string_view text) { out.write(text); });
}

} // namespace kelmo

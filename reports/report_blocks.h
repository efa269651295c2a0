// Putting a report together block by block, several blocks side by side.
#pragma once

#include "base/exported.h"
#include "base/text_sink.h"
#include "model/pdb_peptide.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// Has `append(text, i)` append the text of every item 0 <= i < `count` to a block of text and
/// hands the blocks on in order, one at a time. `append` runs on several threads at once, `handOn`
/// may run on any of them. Only a few blocks stand in memory at a time.
void inBlocks(std::size_t count,
              const std::function<void(std::string& text, std::size_t i)>& append,
              const std::function<void(std::string_view block)>& handOn);

/// Has `append(text, chain, residue)` append the text of every residue of every chain, in order,
/// and writes the blocks.
void writeResidueBlocks(cTextSink& out, const cPdbPeptide& structure,
                        const std::function<void(std::string& text, const cProteinChain& chain,
                                                 const cChainResidue& residue)>& append);

} // namespace kelmo

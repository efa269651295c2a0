// The search for a pair of atoms, one of each of two residues.
#pragma once

#include "base/exported.h"
#include "base/stop_request.h"
#include "model/chain_residue.h"

namespace KELMO_API kelmo {

/// Whether some atom of one residue and some atom of the other pass the test. Heeds the stop
/// request of this thread: a file may make one residue of all its atoms, and then this takes long.
template <typename Test>
bool isAnyAtomPair(const cChainResidue& one, const cChainResidue& other, Test test) {
    constexpr unsigned usualAtoms = 200;
    const bool isLong = one.atomCount > usualAtoms || other.atomCount > usualAtoms;
    for (unsigned i = 0; i < one.atomCount; ++i) {
        if (isLong) {
            stopIfWanted();
        }
        for (unsigned j = 0; j < other.atomCount; ++j) {
            if (test(one.atoms[i], other.atoms[j])) {
                return true;
            }
        }
    }
    return false;
}

} // namespace kelmo

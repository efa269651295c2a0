// What the atoms of amino acids take part in: hydrogen bonds, salt bridges, disulphides.
#pragma once

#include "base/exported.h"
#include "model/chain_residue.h"

namespace KELMO_API kelmo {

/// What a heavy atom can be to another.
struct sBondingRole {
    bool isDonor = false;    ///< of a hydrogen bond
    bool isAcceptor = false; ///< of a hydrogen bond
    bool isCation = false;   ///< its group has a positive charge at neutral pH; histidine counts
    bool isAnion = false;    ///< its group has a negative charge
    bool isSulphur = false;  ///< of a cysteine
};

/// The role of an atom by its name and that of its residue, which may be one of the 20 amino acids
/// or HID, HIE, HIP, HSD and CYX. Atoms of other residues have none. The first nitrogen of a chain
/// (NXT) and the second oxygen at its end (OXT) are charged.
sBondingRole bondingRoleOf(const cChainResidue& residue, const cResidueAtom& atom);

} // namespace kelmo

// A new attribute of residues: the number of their atoms. One row with its calculation.
#pragma once

#include "analysis/attributes.h"

namespace kelmo {

inline void countAtoms(cPdbPeptide&, eState, const sCalculationInput&) {
    // Nothing to compute beforehand: the residues know it.
}

inline sAttribute atomCount() {
    return {.settings = {{.key = "calc_atom_count",
                          .byDefault = "1",
                          .title = "Number of atoms",
                          .help = "How many atoms each residue has."}},
            .columns = {{.name = "atom_count",
                         .unit = "",
                         .title = "atoms|",
                         .xmlName = "atom_count",
                         .ofResidue =
                             [](const cChainResidue& residue) {
                                 return static_cast<double>(residue.atomCount);
                             }}},
            .calculate = countAtoms};
}

} // namespace kelmo

// A check of the pointers by which a structure holds together.
#pragma once

#include "model/pdb_peptide.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace kelmo {

/// Walks every pointer of the structure: all must lead into its own lists, without gap or overlap.
inline void expectLinksIntoOwnLists(const cPdbPeptide& peptide) {
    std::size_t wrongResidues = 0;
    std::size_t wrongAtoms = 0;
    const cResidueAtom* atom = peptide.atoms.data();
    for (const cChainResidue& residue : peptide.residues) {
        wrongResidues += residue.atoms != atom ? 1U : 0U;
        for (unsigned i = 0; i < residue.atomCount; ++i, ++atom) {
            wrongAtoms += atom->residue != &residue ? 1U : 0U;
        }
    }
    EXPECT_EQ(wrongResidues, 0U);
    EXPECT_EQ(wrongAtoms, 0U);
    EXPECT_EQ(atom, peptide.atoms.data() + peptide.atoms.size());
    atom = peptide.atoms.data();
    const cChainResidue* residue = peptide.residues.data();
    for (const cProteinChain& chain : peptide.chains) {
        EXPECT_EQ(chain.atoms, atom);
        EXPECT_EQ(chain.residues, residue);
        unsigned atomsOfResidues = 0;
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            atomsOfResidues += chain.residues[i].atomCount;
        }
        EXPECT_EQ(atomsOfResidues, chain.atomCount);
        atom += chain.atomCount;
        residue += chain.residueCount;
    }
    EXPECT_EQ(atom, peptide.atoms.data() + peptide.atoms.size());
    EXPECT_EQ(residue, peptide.residues.data() + peptide.residues.size());
}

} // namespace kelmo

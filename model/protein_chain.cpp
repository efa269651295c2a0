#include "model/protein_chain.h"

#include <utility>

namespace kelmo {

cProteinChain::cProteinChain(std::string peptide, std::string id, cChainResidue* firstResidue,
                             unsigned residuesInChain, cResidueAtom* firstAtom,
                             unsigned atomsInChain)
    : peptideName(std::move(peptide)), chainId(std::move(id)), atomCount(atomsInChain),
      residueCount(residuesInChain), residues(firstResidue), atoms(firstAtom) {
    if (atomCount != 0) {
        setMinMaxPoints(atoms, atomCount, &maxPoint, &minPoint);
    }
}

} // namespace kelmo

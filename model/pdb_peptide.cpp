#include "model/pdb_peptide.h"

#include <utility>

namespace kelmo {

cPdbPeptide::cPdbPeptide(const cPdbPeptide& other)
    : name(other.name), maxPoint(other.maxPoint), minPoint(other.minPoint), atoms(other.atoms),
      heteroAtoms(other.heteroAtoms), residues(other.residues), chains(other.chains),
      contacts(other.contacts), totalAsa(other.totalAsa), sideChainAsa(other.sideChainAsa),
      backboneAsa(other.backboneAsa), polarAsa(other.polarAsa), nonPolarAsa(other.nonPolarAsa) {
    rebuildLinks();
}

cPdbPeptide& cPdbPeptide::operator=(const cPdbPeptide& other) {
    if (this != &other) {
        cPdbPeptide copy(other);
        *this = std::move(copy);
    }
    return *this;
}

void cPdbPeptide::rebuildLinks() {
    // Residues and chains follow each other without gaps, so the counts alone say where each
    // starts.
    cResidueAtom* atom = atoms.data();
    for (cChainResidue& residue : residues) {
        residue.atoms = atom;
        for (unsigned i = 0; i < residue.atomCount; ++i, ++atom) {
            atom->residue = &residue;
        }
    }
    atom = atoms.data();
    cChainResidue* residue = residues.data();
    for (cProteinChain& chain : chains) {
        chain.atoms = atom;
        chain.residues = residue;
        atom += chain.atomCount;
        residue += chain.residueCount;
    }
}

bool cPdbPeptide::isOneChain() const {
    const auto areEqual = [](const sPoint& a, const sPoint& b) {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    };
    return chains.size() == 1 && chains[0].atomCount == atoms.size() &&
           areEqual(chains[0].maxPoint, maxPoint) && areEqual(chains[0].minPoint, minPoint);
}

} // namespace kelmo

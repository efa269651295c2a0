// A small structure put together by hand, every value of it different and known beforehand.
#pragma once

#include "model/pdb_peptide.h"

#include <string>
#include <vector>

namespace kelmo {

/// Fills the results of a residue with numbers that tell where they came from: `base` and a number
/// of its own for each value.
inline void fillResidue(cChainResidue& residue, double base) {
    residue.totalAsa = base + 1;
    residue.sideChainAsa = base + 2;
    residue.backboneAsa = base + 3;
    residue.polarAsa = base + 4;
    residue.nonPolarAsa = base + 5;
    residue.relativeTotalAsa = base + 11;
    residue.relativeSideChainAsa = base + 12;
    residue.relativeBackboneAsa = base + 13;
    residue.relativePolarAsa = base + 14;
    residue.relativeNonPolarAsa = base + 15;
    residue.maxProtrusionIndex = base + 21;
    residue.minProtrusionIndex = base + 22;
    residue.averageProtrusionIndex = base + 23;
    residue.protrusionIndexDeviation = base + 24;
    residue.averageSideChainProtrusionIndex = base + 25;
    residue.sideChainProtrusionIndexDeviation = base + 26;
    residue.maxDepthIndex = base + 31;
    residue.minDepthIndex = base + 32;
    residue.averageDepthIndex = base + 33;
    residue.depthIndexDeviation = base + 34;
    residue.averageSideChainDepthIndex = base + 35;
    residue.sideChainDepthIndexDeviation = base + 36;
    residue.hydrophobicity = base + 41;
}

template <typename Owner>
void fillAreas(Owner& owner, double base) {
    owner.totalAsa = base + 1;
    owner.sideChainAsa = base + 2;
    owner.backboneAsa = base + 3;
    owner.polarAsa = base + 4;
    owner.nonPolarAsa = base + 5;
}

/// Chain "A" with VAL 12 (base 100) and GLY 12A (base 200), chain "*" with U 1 (base 300); areas of
/// the chains 1000 and 2000, of the structure 5000. No atoms.
class cHandBuiltStructure {
  public:
    cHandBuiltStructure() {
        peptide.name = "1TST";
        fillAreas(peptide, 5000);
        peptide.residues = {{"VAL", "12", nullptr, 0, eResidueType::aminoAcid},
                            {"GLY", "12A", nullptr, 0, eResidueType::aminoAcid},
                            {"U", "1", nullptr, 0, eResidueType::nucleicAcid}};
        for (std::size_t i = 0; i < peptide.residues.size(); ++i) {
            fillResidue(peptide.residues[i], 100.0 * static_cast<double>(i + 1));
        }
        peptide.chains.resize(2);
        setChain(0, "A", 0, 2, 1000);
        setChain(1, "*", 2, 1, 2000);
    }
    cHandBuiltStructure(const cHandBuiltStructure&) = delete;
    cHandBuiltStructure& operator=(const cHandBuiltStructure&) = delete;

    cPdbPeptide peptide;

  private:
    void setChain(std::size_t index, const std::string& id, std::size_t firstResidue,
                  unsigned residueCount, double base) {
        cProteinChain& chain = peptide.chains[index];
        chain.peptideName = peptide.name;
        chain.chainId = id;
        chain.residues = &peptide.residues[firstResidue];
        chain.residueCount = residueCount;
        fillAreas(chain, base);
    }
};

} // namespace kelmo

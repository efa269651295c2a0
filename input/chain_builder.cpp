#include "input/chain_builder.h"

#include "base/string_operation.h"
#include "input/atom_rules.h"

#include <utility>

namespace kelmo {

cChainBuilder::cChainBuilder(cPdbPeptide& target, eIdentity identity)
    : peptide(target), ignoresCase(identity == eIdentity::ignoringCase) {}

void cChainBuilder::place(const sPlace& atPlace, std::size_t position, std::string& atomName) {
    const bool opensChain = !isBegun || !isSame(atPlace.chainId, chainId);
    if (atomName == "N" && opensChain) {
        atomName = "NXT";
    }
    if (!isBegun) {
        isBegun = true;
        beginResidue(atPlace);
        chainId = atPlace.chainId;
        return;
    }
    if (opensChain || !isSame(atPlace.residueNumber, residueNumber)) {
        closeResidue(position);
        beginResidue(atPlace);
    }
    if (opensChain) {
        closeChain(position);
        chainId = atPlace.chainId;
    }
}

void cChainBuilder::finish() {
    if (isBegun) {
        closeResidue(peptide.atoms.size());
        closeChain(peptide.atoms.size());
    }
    peptide.rebuildLinks();
    for (cProteinChain& chain : peptide.chains) {
        setMinMaxPoints(chain.atoms, chain.atomCount, &chain.maxPoint, &chain.minPoint);
    }
    if (!peptide.atoms.empty()) {
        setMinMaxPoints(peptide.atoms.data(), static_cast<unsigned>(peptide.atoms.size()),
                        &peptide.maxPoint, &peptide.minPoint);
    }
    peptide.totalAsa = peptide.sideChainAsa = peptide.backboneAsa = 0.0;
    peptide.polarAsa = peptide.nonPolarAsa = 0.0;
}

bool cChainBuilder::isSame(std::string_view a, std::string_view b) const {
    return ignoresCase ? equalIgnoringCase(a, b) : a == b;
}

void cChainBuilder::beginResidue(const sPlace& atPlace) {
    residueName = atPlace.residueName;
    otherName = atPlace.nameInFile == atPlace.residueName ? "" : atPlace.nameInFile;
    residueNumber = atPlace.residueNumber;
}

void cChainBuilder::closeResidue(std::size_t end) {
    peptide.residues.emplace_back(residueName, residueNumber, nullptr,
                                  static_cast<unsigned>(end - residueBegin),
                                  residueTypeOf(residueName));
    peptide.residues.back().otherName = otherName;
    residueBegin = end;
}

void cChainBuilder::closeChain(std::size_t end) {
    cProteinChain chain;
    chain.peptideName = peptide.name;
    chain.chainId = chainId.empty() || chainId == " " ? "*" : chainId;
    chain.residueCount = static_cast<unsigned>(peptide.residues.size() - chainFirstResidue);
    chain.atomCount = static_cast<unsigned>(end - chainBegin);
    peptide.chains.push_back(std::move(chain));
    chainFirstResidue = peptide.residues.size();
    chainBegin = end;
}

} // namespace kelmo

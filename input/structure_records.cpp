#include "input/structure_records.h"

namespace kelmo {

namespace {

bool isSameResidue(const sResidueRecord& a, const sResidueRecord& b) {
    return a.number == b.number && a.chainId == b.chainId && a.name == b.name &&
           a.model == b.model && a.isHetero == b.isHetero && a.part == b.part &&
           a.polymer == b.polymer;
}

} // namespace

void sStructureRecords::add(const sResidueRecord& residue, sAtomRecord atom) {
    if (residues.empty() || !isSameResidue(residue, residues.back())) {
        residues.push_back(residue);
        residues.back().firstAtom = atoms.size();
    }
    atoms.push_back(std::move(atom));
}

std::size_t sStructureRecords::atomsEnd(std::size_t residue) const {
    return residue + 1 < residues.size() ? residues[residue + 1].firstAtom : atoms.size();
}

} // namespace kelmo

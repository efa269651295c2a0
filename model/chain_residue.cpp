#include "model/chain_residue.h"

#include "model/atom_pairs.h"

#include <utility>

namespace kelmo {

cChainResidue::cChainResidue(std::string name, std::string number, cResidueAtom* firstAtom,
                             unsigned count, eResidueType type)
    : residueType(type), atoms(firstAtom), residueName(std::move(name)),
      residueNumber(std::move(number)), atomCount(count) {}

bool cChainResidue::isWithinRange(const cChainResidue& other, double range) const {
    return isAnyAtomPair(*this, other, [range](const cResidueAtom& a, const cResidueAtom& b) {
        return a.isInRangeByCenter(b, range);
    });
}

bool cChainResidue::isWithinRangeFromRadius(const cChainResidue& other, double value) const {
    const double enlargement = value * 0.5;
    return isAnyAtomPair(*this, other, [enlargement](const cResidueAtom& a, const cResidueAtom& b) {
        return a.doesIntersect(b, enlargement);
    });
}

} // namespace kelmo

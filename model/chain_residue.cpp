#include "model/chain_residue.h"

#include <utility>

cChainResidue::cChainResidue(std::string name, std::string number, cResidueAtom* firstAtom,
                             unsigned count, eResidueType type)
    : residueType(type), atoms(firstAtom), residueName(std::move(name)),
      residueNumber(std::move(number)), atomCount(count) {}

bool cChainResidue::isWithinRange(const cChainResidue& other, double range) const {
    for (unsigned i = 0; i < atomCount; ++i) {
        for (unsigned j = 0; j < other.atomCount; ++j) {
            if (atoms[i].isInRangeByCenter(other.atoms[j], range)) {
                return true;
            }
        }
    }
    return false;
}

bool cChainResidue::isWithinRangeFromRadius(const cChainResidue& other, double value) const {
    const double probe = value * 0.5;
    for (unsigned i = 0; i < atomCount; ++i) {
        for (unsigned j = 0; j < other.atomCount; ++j) {
            if (atoms[i].doesIntersect(other.atoms[j], probe)) {
                return true;
            }
        }
    }
    return false;
}

#include "tests/support/reference_interfaces.h"

#include "tests/support/reference_surface.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace kelmo {

namespace reference {

namespace {

using tAtoms = std::vector<sAtom>;

tAtoms atomsOfChain(const sStructure& structure, const sChain& chain) {
    return {structure.atoms.begin() + static_cast<std::ptrdiff_t>(chain.firstAtom),
            structure.atoms.begin() +
                static_cast<std::ptrdiff_t>(chain.firstAtom + chain.atomCount)};
}

std::vector<double> areasOf(const tAtoms& atoms, double probeRadius, double zSlice,
                            bool isComplete) {
    return isComplete ? completeAtomAreas(atoms, probeRadius, zSlice)
                      : atomAreas(atoms, probeRadius, zSlice);
}

// The residue that an atom belongs to.
const sResidue& residueOf(const sStructure& structure, std::size_t atom) {
    for (const sResidue& residue : structure.residues) {
        if (atom >= residue.firstAtom && atom < residue.firstAtom + residue.atomCount) {
            return residue;
        }
    }
    throw std::out_of_range("an atom without residue");
}

// ---- Chemistry ----

std::string plainName(const std::string& residue) {
    const std::map<std::string, std::string> others{
        {"HID", "HIS"}, {"HIE", "HIS"}, {"HIP", "HIS"}, {"HSD", "HIS"}, {"CYX", "CYS"}};
    return others.contains(residue) ? others.at(residue) : residue;
}

bool isOneOf(const sResidue& residue, const sAtom& atom, const std::set<std::string>& sideChains,
             const std::set<std::string>& mainChains) {
    const std::set<std::string> aminoAcids{"ALA", "ARG", "ASN", "ASP", "CYS", "GLN", "GLU",
                                           "GLY", "HIS", "ILE", "LEU", "LYS", "MET", "PHE",
                                           "PRO", "SER", "THR", "TRP", "TYR", "VAL"};
    const std::string name = plainName(residue.name);
    return aminoAcids.contains(name) &&
           (mainChains.contains(atom.name) || sideChains.contains(name + " " + atom.name));
}

bool isDonor(const sResidue& residue, const sAtom& atom) {
    if (residue.name == "PRO" && atom.name == "N") {
        return false;
    }
    return isOneOf(residue, atom,
                   {"ARG NE", "ARG NH1", "ARG NH2", "ASN ND2", "GLN NE2", "HIS ND1", "HIS NE2",
                    "LYS NZ", "SER OG", "THR OG1", "TRP NE1", "TYR OH"},
                   {"N", "NXT"});
}

bool isAcceptor(const sResidue& residue, const sAtom& atom) {
    return isOneOf(residue, atom,
                   {"ASN OD1", "ASP OD1", "ASP OD2", "GLN OE1", "GLU OE1", "GLU OE2", "HIS ND1",
                    "HIS NE2", "SER OG", "THR OG1", "TYR OH"},
                   {"O", "OXT"});
}

bool isPositive(const sResidue& residue, const sAtom& atom) {
    return isOneOf(residue, atom, {"ARG NE", "ARG NH1", "ARG NH2", "HIS ND1", "HIS NE2", "LYS NZ"},
                   {"NXT"});
}

bool isNegative(const sResidue& residue, const sAtom& atom) {
    return isOneOf(residue, atom, {"ASP OD1", "ASP OD2", "GLU OE1", "GLU OE2"}, {"OXT"});
}

bool isSulphur(const sResidue& residue, const sAtom& atom) {
    return plainName(residue.name) == "CYS" && atom.name == "SG";
}

bool isHeavy(const sAtom& atom) {
    for (const char c : atom.name) {
        if (c < '0' || c > '9') {
            return c != 'H' && c != 'D';
        }
    }
    return true;
}

double degreesAt(const sAtom& centre, const sAtom& a, const sAtom& b) {
    const double u = centreDistance(centre, a);
    const double v = centreDistance(centre, b);
    const double w = centreDistance(a, b);
    return std::acos(std::clamp((u * u + v * v - w * w) / (2.0 * u * v), -1.0, 1.0)) * 180.0 /
           std::numbers::pi;
}

bool areAnglesWide(const tAtoms& chain, const sAtom& atom, const sAtom& partner) {
    return std::ranges::all_of(chain, [&](const sAtom& other) {
        const double distance = centreDistance(atom, other);
        return distance < 0.9 || distance > 2.0 || !isHeavy(other) ||
               degreesAt(atom, other, partner) >= 90.0;
    });
}

void addBonds(const sStructure& structure, const sChain& chain1, const sChain& chain2,
              sInterface& found) {
    const tAtoms atoms1 = atomsOfChain(structure, chain1);
    const tAtoms atoms2 = atomsOfChain(structure, chain2);
    std::map<std::pair<const sResidue*, const sResidue*>, double> nearest;
    std::map<std::pair<const sResidue*, const sResidue*>, std::pair<std::size_t, std::size_t>>
        saltBridges;
    for (std::size_t i = 0; i < atoms1.size(); ++i) {
        for (std::size_t j = 0; j < atoms2.size(); ++j) {
            const double distance = centreDistance(atoms1[i], atoms2[j]);
            if (distance > 4.0) {
                continue;
            }
            const std::size_t place1 = chain1.firstAtom + i;
            const std::size_t place2 = chain2.firstAtom + j;
            const sResidue& one = residueOf(structure, place1);
            const sResidue& other = residueOf(structure, place2);
            const bool isPair = (isDonor(one, atoms1[i]) && isAcceptor(other, atoms2[j])) ||
                                (isAcceptor(one, atoms1[i]) && isDonor(other, atoms2[j]));
            if (isPair && distance <= 3.5 && areAnglesWide(atoms1, atoms1[i], atoms2[j]) &&
                areAnglesWide(atoms2, atoms2[j], atoms1[i])) {
                found.bonds.emplace("hydrogen", place1, place2);
            }
            if (isSulphur(one, atoms1[i]) && isSulphur(other, atoms2[j]) && distance <= 2.3) {
                found.bonds.emplace("disulphide", place1, place2);
            }
            if ((isPositive(one, atoms1[i]) && isNegative(other, atoms2[j])) ||
                (isNegative(one, atoms1[i]) && isPositive(other, atoms2[j]))) {
                const std::pair residues{&one, &other};
                if (!nearest.contains(residues) || distance < nearest.at(residues)) {
                    nearest[residues] = distance;
                    saltBridges[residues] = {place1, place2};
                }
            }
        }
    }
    for (const auto& [residues, places] : saltBridges) {
        found.bonds.emplace("salt", places.first, places.second);
    }
}

// ---- Areas ----

// The areas that a chain loses; `lost` holds that of each of its atoms.
void addAreas(const sStructure& structure, const sChain& chain, const double* lost, double deltaAsa,
              sAreas& buried, std::vector<std::pair<std::size_t, double>>& residues) {
    for (std::size_t r = chain.firstResidue; r < chain.firstResidue + chain.residueCount; ++r) {
        const sResidue& residue = structure.residues[r];
        double total = 0.0;
        for (std::size_t i = residue.firstAtom; i < residue.firstAtom + residue.atomCount; ++i) {
            const double area = lost[i - chain.firstAtom];
            const std::string& name = structure.atoms[i].name;
            const bool isPolar = name.starts_with('N') || name.starts_with('O');
            (isPolar ? buried.polar : buried.nonPolar) += area;
            total += area;
        }
        buried.total += total;
        if (total > deltaAsa) {
            residues.emplace_back(r, total);
        }
    }
}

} // namespace

std::vector<sInterface> interfaces(const sStructure& structure,
                                   const std::vector<sContact>& contacts, double probeRadius,
                                   double zSlice, bool isComplete, double deltaAsa) {
    std::vector<sInterface> all;
    for (std::size_t c1 = 0; c1 < structure.chains.size(); ++c1) {
        for (std::size_t c2 = c1 + 1; c2 < structure.chains.size(); ++c2) {
            const sChain& chain1 = structure.chains[c1];
            const sChain& chain2 = structure.chains[c2];
            const tAtoms atoms1 = atomsOfChain(structure, chain1);
            const tAtoms atoms2 = atomsOfChain(structure, chain2);
            sInterface found;
            found.chain1 = c1;
            found.chain2 = c2;
            found.closestDistance = std::numeric_limits<double>::infinity();
            bool isTouching = false;
            for (const sAtom& a : atoms1) {
                for (const sAtom& b : atoms2) {
                    const double distance = centreDistance(a, b);
                    found.closestDistance = std::min(found.closestDistance, distance);
                    isTouching = isTouching || distance < a.radius + b.radius + 2.0 * probeRadius;
                }
            }
            if (!isTouching) {
                continue;
            }
            tAtoms both = atoms1;
            both.insert(both.end(), atoms2.begin(), atoms2.end());
            std::vector<double> lost = areasOf(atoms1, probeRadius, zSlice, isComplete);
            const std::vector<double> second = areasOf(atoms2, probeRadius, zSlice, isComplete);
            lost.insert(lost.end(), second.begin(), second.end());
            const std::vector<double> together = areasOf(both, probeRadius, zSlice, isComplete);
            for (std::size_t i = 0; i < lost.size(); ++i) {
                lost[i] -= together[i];
            }
            addAreas(structure, chain1, lost.data(), deltaAsa, found.buried1, found.residues1);
            addAreas(structure, chain2, lost.data() + atoms1.size(), deltaAsa, found.buried2,
                     found.residues2);
            addBonds(structure, chain1, chain2, found);
            for (const sContact& contact : contacts) {
                if (contact.chain1 == chain1.chainId && contact.chain2 == chain2.chainId) {
                    ++found.contactPairs;
                    for (const int type : contact.types) {
                        ++found.contactPairsByType[type];
                    }
                }
            }
            all.push_back(found);
        }
    }
    return all;
}

} // namespace reference

} // namespace kelmo

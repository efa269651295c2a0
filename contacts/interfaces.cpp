#include "contacts/interfaces.h"

#include "base/in_parallel.h"
#include "contacts/bonding_roles.h"
#include "contacts/contact_resolution.h"
#include "geometry/atom_grid.h"
#include "geometry/atom_space_calculations.h"
#include "model/pdb_peptide.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <tuple>
#include <utility>

namespace kelmo {

namespace {

constexpr double longestHydrogenBond = 3.5; // Å
constexpr double longestSaltBridge = 4.0;   // Å
constexpr double longestDisulphide = 2.3;   // Å
constexpr double longestCovalentBond = 2.0; // Å
/// Nearer than that are other locations of the same atom, Å.
constexpr double shortestCovalentBond = 0.9;

/// Two atoms of different chains that are near enough for a bond.
struct sNearPair {
    std::uint32_t atom1;
    std::uint32_t atom2;
    double distance; ///< Å
};

/// What is found of two chains before their areas are computed.
struct sTouching {
    std::uint32_t chain1 = 0;
    std::uint32_t chain2 = 0;
    double closestDistance = std::numeric_limits<double>::infinity(); ///< Å
    bool isTouching = false;
    std::vector<sNearPair> nearPairs;
};

bool isHydrogen(const cResidueAtom& atom) {
    const std::size_t first = atom.atomName.find_first_not_of("0123456789");
    return first != std::string::npos &&
           (atom.atomName[first] == 'H' || atom.atomName[first] == 'D');
}

std::uint32_t firstAtomOf(const cPdbPeptide& structure, const cProteinChain& chain) {
    return static_cast<std::uint32_t>(chain.atoms - structure.atoms.data());
}

// Which chains touch

/// What one chain has with the later ones, in their order.
std::vector<sTouching> touchingOf(const cPdbPeptide& structure, std::uint32_t chain,
                                  const std::vector<std::uint32_t>& chainOfAtom,
                                  const cCentreGrid& grid, double probeRadius, double reach) {
    std::map<std::uint32_t, sTouching> found;
    const cProteinChain& one = structure.chains[chain];
    const std::uint32_t first = firstAtomOf(structure, one);
    cStopCheck check;
    for (std::uint32_t i = first; i < first + one.atomCount; ++i) {
        check();
        const cResidueAtom& atom = structure.atoms[i];
        const auto box = grid.cellsAround(atom.x, atom.y, atom.z, reach);
        grid.forEachRun(
            box, [&](const cCentreGrid::sEntry* entry, const cCentreGrid::sEntry* last) {
                for (; entry != last; ++entry) {
                    const std::uint32_t other = chainOfAtom[entry->index];
                    if (other <= chain) {
                        continue;
                    }
                    const double distance = centreDistance(atom, *entry);
                    sTouching& pair = found[other];
                    pair.closestDistance = std::min(pair.closestDistance, distance);
                    pair.isTouching |= distance < atom.radius + entry->radius + 2.0 * probeRadius;
                    if (distance <= longestSaltBridge) {
                        pair.nearPairs.push_back({i, entry->index, distance});
                    }
                }
            });
    }
    std::vector<sTouching> touching;
    for (auto& [other, pair] : found) {
        if (pair.isTouching) {
            pair.chain1 = chain;
            pair.chain2 = other;
            touching.push_back(std::move(pair));
        }
    }
    return touching;
}

std::vector<sTouching> findTouching(const cPdbPeptide& structure, double probeRadius) {
    std::vector<std::uint32_t> chainOfAtom(structure.atoms.size());
    double largest = 0.0;
    for (std::uint32_t chain = 0; chain < structure.chains.size(); ++chain) {
        const cProteinChain& one = structure.chains[chain];
        std::fill_n(chainOfAtom.begin() + firstAtomOf(structure, one), one.atomCount, chain);
        for (unsigned i = 0; i < one.atomCount; ++i) {
            largest = std::max(largest, one.atoms[i].radius);
        }
    }
    const auto count = static_cast<unsigned>(structure.atoms.size());
    const cCentreGrid grid(structure.atoms.data(), count, structure.maxPoint, structure.minPoint,
                           count);
    const double reach = std::max(2.0 * (largest + probeRadius), longestSaltBridge);
    std::vector<std::vector<sTouching>> ofChains(structure.chains.size());
    inParallel(structure.chains.size(), 1, [&](std::size_t chain) {
        ofChains[chain] = touchingOf(structure, static_cast<std::uint32_t>(chain), chainOfAtom,
                                     grid, probeRadius, reach);
    });
    std::vector<sTouching> all;
    for (std::vector<sTouching>& ofChain : ofChains) {
        std::ranges::move(ofChain, std::back_inserter(all));
    }
    return all;
}

// Areas

void setAreas(std::vector<cResidueAtom>& atoms, const sInterfaceOptions& options) {
    sPoint maxPoint;
    sPoint minPoint;
    const auto count = static_cast<unsigned>(atoms.size());
    setMinMaxPoints(atoms.data(), count, &maxPoint, &minPoint);
    const auto calculate =
        options.form == eAsaForm::complete ? calculateAtomAsaComplete : calculateAtomASA;
    calculate(atoms.data(), count, maxPoint, minPoint, options.probeRadius, options.zSlice);
}

/// The area of every atom in its chain alone, Å².
std::vector<double> areasAlone(const cPdbPeptide& structure, const sInterfaceOptions& options) {
    std::vector<double> areas(structure.atoms.size());
    inParallel(structure.chains.size(), 1, [&](std::size_t c) {
        const cProteinChain& chain = structure.chains[c];
        if (chain.atomCount == 0) {
            return;
        }
        std::vector<cResidueAtom> atoms(chain.atoms, chain.atoms + chain.atomCount);
        setAreas(atoms, options);
        const std::uint32_t first = firstAtomOf(structure, chain);
        for (unsigned i = 0; i < chain.atomCount; ++i) {
            areas[first + i] = atoms[i].asa;
        }
    });
    return areas;
}

/// The atoms of both chains, one after the other, with the area that each loses in `asa`.
std::vector<cResidueAtom> buriedAtoms(const cPdbPeptide& structure, const sTouching& touching,
                                      const std::vector<double>& alone,
                                      const sInterfaceOptions& options) {
    std::vector<cResidueAtom> atoms;
    for (const std::uint32_t c : {touching.chain1, touching.chain2}) {
        const cProteinChain& chain = structure.chains[c];
        atoms.insert(atoms.end(), chain.atoms, chain.atoms + chain.atomCount);
    }
    setAreas(atoms, options);
    std::size_t place = 0;
    for (const std::uint32_t c : {touching.chain1, touching.chain2}) {
        const cProteinChain& chain = structure.chains[c];
        const std::uint32_t first = firstAtomOf(structure, chain);
        for (unsigned i = 0; i < chain.atomCount; ++i, ++place) {
            atoms[place].asa = alone[first + i] - atoms[place].asa;
        }
    }
    return atoms;
}

/// The side of a chain whose atoms stand at `atoms` with the area that each loses in `asa`.
sInterfaceSide sideOf(const cPdbPeptide& structure, std::uint32_t chainPosition,
                      cResidueAtom* atoms, double deltaAsa) {
    sInterfaceSide side{.chain = chainPosition};
    const cProteinChain& chain = structure.chains[chainPosition];
    const auto firstResidue =
        static_cast<std::uint32_t>(chain.residues - structure.residues.data());
    for (std::uint32_t i = 0; i < chain.residueCount; ++i) {
        const cChainResidue& original = chain.residues[i];
        cChainResidue residue(original.residueName, original.residueNumber, atoms,
                              original.atomCount, original.residueType);
        residue.setAsa();
        atoms += original.atomCount;
        side.buried.total += residue.totalAsa;
        side.buried.polar += residue.polarAsa;
        side.buried.nonPolar += residue.nonPolarAsa;
        if (residue.totalAsa > deltaAsa) {
            side.residues.push_back({firstResidue + i, residue.totalAsa});
        }
    }
    return side;
}

// Bonds

/// Cosine of the angle at `centre` between two others.
double cosineAt(const cResidueAtom& centre, const cResidueAtom& a, const cResidueAtom& b) {
    const sPoint u{a.x - centre.x, a.y - centre.y, a.z - centre.z};
    const sPoint v{b.x - centre.x, b.y - centre.y, b.z - centre.z};
    return (u.x * v.x + u.y * v.y + u.z * v.z) /
           (centreDistance(centre, a) * centreDistance(centre, b));
}

/// Whether `partner` lies away from all heavy atoms that the atom is bonded to, which are sought in
/// its residue and those beside it in the chain.
bool isAwayFromBonds(const cResidueAtom& atom, const cResidueAtom& partner,
                     const cProteinChain& chain) {
    const std::ptrdiff_t place = atom.residue - chain.residues;
    const cChainResidue& first = chain.residues[std::max<std::ptrdiff_t>(0, place - 1)];
    const cChainResidue& last =
        chain.residues[std::min<std::ptrdiff_t>(chain.residueCount - 1, place + 1)];
    const cResidueAtom* const end = last.atoms + last.atomCount;
    for (const cResidueAtom* other = first.atoms; other != end; ++other) {
        const double distance = centreDistance(atom, *other);
        const bool isBonded = distance >= shortestCovalentBond && distance <= longestCovalentBond &&
                              !isHydrogen(*other);
        if (isBonded && cosineAt(atom, *other, partner) > 0.0) {
            return false;
        }
    }
    return true;
}

/// The residue pair of a salt bridge.
using tResiduePair = std::pair<const cChainResidue*, const cChainResidue*>;

std::vector<sInterfaceBond> bondsOf(const cPdbPeptide& structure, const sTouching& touching) {
    std::vector<sInterfaceBond> bonds;
    std::map<tResiduePair, sInterfaceBond> saltBridges;
    for (const sNearPair& pair : touching.nearPairs) {
        const cResidueAtom& one = structure.atoms[pair.atom1];
        const cResidueAtom& other = structure.atoms[pair.atom2];
        const sBondingRole role1 = bondingRoleOf(*one.residue, one);
        const sBondingRole role2 = bondingRoleOf(*other.residue, other);
        const bool isHydrogenBond =
            ((role1.isDonor && role2.isAcceptor) || (role1.isAcceptor && role2.isDonor)) &&
            pair.distance <= longestHydrogenBond &&
            isAwayFromBonds(one, other, structure.chains[touching.chain1]) &&
            isAwayFromBonds(other, one, structure.chains[touching.chain2]);
        if (isHydrogenBond) {
            bonds.push_back({eBond::hydrogen, pair.atom1, pair.atom2, pair.distance});
        }
        if (role1.isSulphur && role2.isSulphur && pair.distance <= longestDisulphide) {
            bonds.push_back({eBond::disulphide, pair.atom1, pair.atom2, pair.distance});
        }
        if ((role1.isCation && role2.isAnion) || (role1.isAnion && role2.isCation)) {
            const sInterfaceBond bond{eBond::salt, pair.atom1, pair.atom2, pair.distance};
            const auto [place, isNew] = saltBridges.try_emplace({one.residue, other.residue}, bond);
            if (!isNew &&
                std::tie(bond.distance, bond.atom1, bond.atom2) <
                    std::tie(place->second.distance, place->second.atom1, place->second.atom2)) {
                place->second = bond;
            }
        }
    }
    for (const auto& [residues, bond] : saltBridges) {
        bonds.push_back(bond);
    }
    std::ranges::sort(bonds, {}, [](const sInterfaceBond& bond) {
        return std::tuple(bond.kind, bond.atom1, bond.atom2);
    });
    return bonds;
}

// Contacts

using tChainPair = std::pair<std::uint32_t, std::uint32_t>;

struct sContactCounts {
    std::size_t pairs = 0;
    std::map<eContactType, std::size_t> byType;
};

std::map<tChainPair, sContactCounts> countContacts(const cPdbPeptide& structure,
                                                   const sContactList& contacts) {
    const std::vector<std::uint32_t> chains = chainOfResidues(structure);
    std::map<tChainPair, sContactCounts> counts;
    cStopCheck check;
    for (const sContact& contact : contacts.contacts) {
        check();
        const tChainPair pair{chains[contact.residue1], chains[contact.residue2]};
        if (pair.first < pair.second) { // the other direction is the same contact
            sContactCounts& ofPair = counts[pair];
            ++ofPair.pairs;
            for (const eContactType type : contacts.typeSets[contact.typeSet]) {
                ++ofPair.byType[type];
            }
        }
    }
    return counts;
}

} // namespace

std::size_t sInterface::count(eBond kind) const {
    return static_cast<std::size_t>(std::ranges::count(bonds, kind, &sInterfaceBond::kind));
}

std::vector<sInterface> findInterfaces(const cPdbPeptide& structure, const sContactList& contacts,
                                       const sInterfaceOptions& options) {
    if (structure.atoms.empty()) {
        return {};
    }
    const std::vector<sTouching> touching = findTouching(structure, options.probeRadius);
    const std::vector<double> alone =
        touching.empty() ? std::vector<double>() : areasAlone(structure, options);
    const std::map<tChainPair, sContactCounts> counts = countContacts(structure, contacts);
    std::vector<sInterface> interfaces(touching.size());
    inParallel(touching.size(), 1, [&](std::size_t i) {
        const sTouching& pair = touching[i];
        sInterface& found = interfaces[i];
        std::vector<cResidueAtom> atoms = buriedAtoms(structure, pair, alone, options);
        found.side1 = sideOf(structure, pair.chain1, atoms.data(), options.deltaAsa);
        found.side2 =
            sideOf(structure, pair.chain2, atoms.data() + structure.chains[pair.chain1].atomCount,
                   options.deltaAsa);
        found.closestDistance = pair.closestDistance;
        found.bonds = bondsOf(structure, pair);
        if (const auto count = counts.find({pair.chain1, pair.chain2}); count != counts.end()) {
            found.contactPairs = count->second.pairs;
            found.contactPairsByType = count->second.byType;
        }
    });
    return interfaces;
}

} // namespace kelmo

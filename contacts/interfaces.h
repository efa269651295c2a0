// What lies between two chains that touch: buried areas, residues, contacts by type, bonds.
#pragma once

#include "base/exported.h"
#include "model/asa_form.h"
#include "model/contact.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace KELMO_API kelmo {

class cPdbPeptide;

/// What the area of interfaces is computed by.
struct sInterfaceOptions {
    double probeRadius = 1.4;          ///< Å
    double zSlice = 0.25;              ///< thickness of slices, Å
    eAsaForm form = eAsaForm::classic; ///< of the surface
    double deltaAsa = 1.0;             ///< a residue that loses more is one of the interface, Å²
};

/// Area that is lost where the chains meet, Å². In the classic form parts of it may be negative.
struct sBuriedArea {
    double total = 0.0;    ///< of all atoms
    double polar = 0.0;    ///< of nitrogen and oxygen
    double nonPolar = 0.0; ///< of all else
};

/// A residue that loses area.
struct sInterfaceResidue {
    std::uint32_t residue = 0; ///< position in cPdbPeptide::residues
    double buried = 0.0;       ///< Å²
};

/// One of the two chains.
struct sInterfaceSide {
    std::uint32_t chain = 0;                      ///< position in cPdbPeptide::chains
    sBuriedArea buried = {};                      ///< of this chain alone, minus that in the pair
    std::vector<sInterfaceResidue> residues = {}; ///< in the order of the file
};

/// The kinds of bonds that are looked for.
enum class eBond {
    /// Donor and acceptor, both heavy atoms, within 3.5 Å, and the angles at both with the heavy
    /// atoms that they are bonded to at least 90°: after Baker & Hubbard, Prog Biophys Mol Biol
    /// 44:97 (1984).
    hydrogen,
    /// Nitrogen and oxygen of opposite charges within 4 Å: Barlow & Thornton, J Mol Biol 168:867
    /// (1983). One for two residues, of their nearest such atoms.
    salt,
    /// Sulphurs of two cysteines within 2.3 Å.
    disulphide
};

/// A bond of two atoms of different chains.
struct sInterfaceBond {
    eBond kind = eBond::hydrogen; ///< what holds them
    std::uint32_t atom1 = 0;      ///< of the first chain, position in cPdbPeptide::atoms
    std::uint32_t atom2 = 0;      ///< of the second chain
    double distance = 0.0;        ///< of the centres, Å
};

/// What lies between two chains.
struct sInterface {
    sInterfaceSide side1 = {};    ///< of the chain that comes first in the file
    sInterfaceSide side2 = {};    ///< of the other chain
    double closestDistance = 0.0; ///< of any two atom centres, Å
    std::size_t contactPairs = 0; ///< residue pairs among the contacts
    /// Those of each type; a pair may have several types, or none.
    std::map<eContactType, std::size_t> contactPairsByType = {};
    std::vector<sInterfaceBond> bonds = {}; ///< by kind, then by the atoms' order

    /// How many bonds are of a kind.
    std::size_t count(eBond kind) const;
};

/// The interfaces of all pairs of chains that touch, ordered by their chains: between some atom of
/// the one and some atom of the other a probe finds no way through.
///
/// Buried area is that of each chain alone less that of the two chains together, without all
/// others. `contacts` are those that a criterion has found, both directions of each. Takes time
/// proportional to the atoms of chains that touch, times the chains that each touches. Heeds the
/// stop request of this thread.
std::vector<sInterface> findInterfaces(const cPdbPeptide& structure, const sContactList& contacts,
                                       const sInterfaceOptions& options);

} // namespace kelmo

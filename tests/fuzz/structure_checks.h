// What holds of every structure that a reader makes, whatever stood in the file.
#pragma once

#include "input/structure_reader.h"
#include "tests/fuzz/fuzz_target.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelmo {

/// Every residue and chain holds atoms of its own structure, one behind the other, and all of them.
inline void requireLinks(const cPdbPeptide& structure) {
    const cResidueAtom* atom = structure.atoms.data();
    for (const cChainResidue& residue : structure.residues) {
        require(residue.atoms == atom && residue.atomCount > 0, "residues of atoms in their order");
        atom += residue.atomCount;
    }
    require(atom == structure.atoms.data() + structure.atoms.size(), "no atom without a residue");
    const cChainResidue* residue = structure.residues.data();
    atom = structure.atoms.data();
    for (const cProteinChain& chain : structure.chains) {
        require(chain.residues == residue && chain.residueCount > 0, "chains of residues in order");
        require(chain.atoms == atom && chain.atomCount > 0, "chains of atoms in order");
        residue += chain.residueCount;
        atom += chain.atomCount;
    }
    require(residue == structure.residues.data() + structure.residues.size(),
            "no residue without a chain");
}

/// Structures come with the outcome `read` alone, and have atoms at finite places.
inline void requireSound(const sReadResult& result) {
    require((result.outcome == eReadOutcome::read) == !result.structures.empty(),
            "structures of what was read");
    require((result.outcome == eReadOutcome::badLine) == (result.badLine != 0),
            "the number of a bad line");
    const bool needsReason =
        result.outcome == eReadOutcome::refused || result.outcome == eReadOutcome::unreadable;
    require(needsReason == !result.reason.empty(), "a reason for what is refused");
    for (const cPdbPeptide& structure : result.structures) {
        require(!structure.atoms.empty(), "atoms");
        requireLinks(structure);
        for (const cResidueAtom& atom : structure.atoms) {
            require(std::abs(atom.x) <= 1e8 && std::abs(atom.y) <= 1e8 && std::abs(atom.z) <= 1e8,
                    "coordinates that are numbers");
            require(atom.radius > 0.0, "radii");
        }
    }
}

inline bool isSameNumber(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// Atom by atom, in names and to the last bit.
inline void requireSameStructures(const sReadResult& one, const sReadResult& other) {
    require(one.structures.size() == other.structures.size(), "as many structures");
    for (std::size_t i = 0; i < one.structures.size(); ++i) {
        const std::vector<cResidueAtom>& atoms = one.structures[i].atoms;
        const std::vector<cResidueAtom>& others = other.structures[i].atoms;
        require(atoms.size() == others.size(), "as many atoms");
        for (std::size_t atom = 0; atom < atoms.size(); ++atom) {
            require(atoms[atom].atomName == others[atom].atomName &&
                        isSameNumber(atoms[atom].x, others[atom].x) &&
                        isSameNumber(atoms[atom].y, others[atom].y) &&
                        isSameNumber(atoms[atom].z, others[atom].z),
                    "the same atoms");
        }
    }
}

} // namespace kelmo

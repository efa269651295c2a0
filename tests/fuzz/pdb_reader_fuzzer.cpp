// Fuzzes the PDB reader: any bytes give the structure, or the faulty line, that the slow reference
// reader finds, and every link of the structure leads into its own lists.
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/reference_structure.h"
#include "tests/support/shipped_inputs.h"

#include <bit>
#include <set>
#include <sstream>
#include <vector>

namespace kelmo {

namespace {

/// Equal to the last bit; not-a-number, which a metal's coordinates may be, equals itself.
bool isSameNumber(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool isSameAtom(const cResidueAtom& atom, const reference::sAtom& expected) {
    return atom.atomName == expected.name && atom.serial == expected.serial &&
           isSameNumber(atom.x, expected.x) && isSameNumber(atom.y, expected.y) &&
           isSameNumber(atom.z, expected.z) && isSameNumber(atom.radius, expected.radius) &&
           isSameNumber(atom.zMax, expected.zMax) && isSameNumber(atom.zMin, expected.zMin);
}

void requireSameAtoms(const std::vector<cResidueAtom>& atoms,
                      const std::vector<reference::sAtom>& expected) {
    require(atoms.size() == expected.size(), "as many atoms as the reference reads");
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        require(isSameAtom(atoms[i], expected[i]), "the atoms of the reference");
    }
}

void requireSameResidues(const cPdbPeptide& peptide, const reference::sStructure& expected) {
    require(peptide.residues.size() == expected.residues.size(), "as many residues");
    for (std::size_t i = 0; i < peptide.residues.size(); ++i) {
        const cChainResidue& residue = peptide.residues[i];
        const reference::sResidue& other = expected.residues[i];
        require(residue.residueName == other.name && residue.residueNumber == other.number,
                "the names of the residues");
        require(static_cast<int>(residue.residueType) == other.type, "the types of the residues");
        require(residue.atomCount == other.atomCount &&
                    residue.atoms == peptide.atoms.data() + other.firstAtom,
                "the atoms of the residues");
        for (unsigned atom = 0; atom < residue.atomCount; ++atom) {
            require(residue.atoms[atom].residue == &residue, "atoms that know their residue");
        }
    }
}

void requireSameChains(const cPdbPeptide& peptide, const reference::sStructure& expected) {
    require(peptide.chains.size() == expected.chains.size(), "as many chains");
    for (std::size_t i = 0; i < peptide.chains.size(); ++i) {
        const cProteinChain& chain = peptide.chains[i];
        const reference::sChain& other = expected.chains[i];
        require(chain.chainId == other.chainId, "the ids of the chains");
        require(chain.residueCount == other.residueCount &&
                    chain.residues == peptide.residues.data() + other.firstResidue,
                "the residues of the chains");
        require(chain.atomCount == other.atomCount &&
                    chain.atoms == peptide.atoms.data() + other.firstAtom,
                "the atoms of the chains");
    }
}

void requireSame(const cPdbPeptide& peptide, const reference::sStructure& expected) {
    require(peptide.name == expected.name, "the identification code");
    requireSameAtoms(peptide.atoms, expected.atoms);
    requireSameAtoms(peptide.heteroAtoms, expected.heteroAtoms);
    requireSameResidues(peptide, expected);
    requireSameChains(peptide, expected);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text = textOf(bytes, size);
    const auto& radii = shippedTables().radii;
    std::istringstream in(text);
    cPdbPeptide peptide;
    std::set<std::string> missing;
    const int faultyLine = peptide.loadFromStream(in, radii, missing);

    std::set<std::string> expectedMissing;
    int expectedFaultyLine = 0;
    const reference::sStructure expected =
        reference::readStructure(text, radii, expectedMissing, expectedFaultyLine);
    require(faultyLine == expectedFaultyLine, "the faulty line of the reference");
    require(missing == expectedMissing, "the missing radii of the reference");
    if (faultyLine == 0) {
        requireSame(peptide, expected);
        requireSame(cPdbPeptide(peptide), expected);
    }
    return 0;
}

} // namespace kelmo

// Whether two structures are the same to the last bit, field by field.
#pragma once

#include "model/pdb_peptide.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kelmo {

inline bool isSameNumber(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// Whether serial numbers count: two formats of one entry may number atoms differently.
enum class eSerials { compared, ignored };

inline std::string describe(const cResidueAtom& atom, eSerials serials) {
    std::string text = atom.atomName;
    if (serials == eSerials::compared) {
        text += ' ' + atom.serial;
    }
    for (const double number : {atom.x, atom.y, atom.z, atom.radius, atom.zMin, atom.zMax}) {
        text += ' ' + std::to_string(number) + '/' +
                std::to_string(std::bit_cast<std::uint64_t>(number) & 0xFFFFU);
    }
    return text;
}

inline void expectSameAtoms(const std::vector<cResidueAtom>& atoms,
                            const std::vector<cResidueAtom>& expected, eSerials serials) {
    ASSERT_EQ(atoms.size(), expected.size());
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        ASSERT_EQ(describe(atoms[i], serials), describe(expected[i], serials)) << i;
    }
}

inline void expectSameStructure(const cPdbPeptide& structure, const cPdbPeptide& expected,
                                eSerials serials = eSerials::compared) {
    EXPECT_EQ(structure.name, expected.name);
    expectSameAtoms(structure.atoms, expected.atoms, serials);
    expectSameAtoms(structure.heteroAtoms, expected.heteroAtoms, serials);
    ASSERT_EQ(structure.residues.size(), expected.residues.size());
    for (std::size_t i = 0; i < structure.residues.size(); ++i) {
        const cChainResidue& residue = structure.residues[i];
        const cChainResidue& other = expected.residues[i];
        ASSERT_EQ(residue.residueName, other.residueName) << i;
        ASSERT_EQ(residue.nameInFile(), other.nameInFile()) << i;
        ASSERT_EQ(residue.residueNumber, other.residueNumber) << i;
        ASSERT_EQ(residue.residueType, other.residueType) << i;
        ASSERT_EQ(residue.atomCount, other.atomCount) << i;
    }
    ASSERT_EQ(structure.chains.size(), expected.chains.size());
    for (std::size_t i = 0; i < structure.chains.size(); ++i) {
        const cProteinChain& chain = structure.chains[i];
        const cProteinChain& other = expected.chains[i];
        ASSERT_EQ(chain.chainId, other.chainId) << i;
        ASSERT_EQ(chain.peptideName, other.peptideName) << i;
        ASSERT_EQ(chain.residueCount, other.residueCount) << i;
        ASSERT_EQ(chain.atomCount, other.atomCount) << i;
        ASSERT_TRUE(isSameNumber(chain.maxPoint.x, other.maxPoint.x)) << i;
        ASSERT_TRUE(isSameNumber(chain.minPoint.z, other.minPoint.z)) << i;
    }
    EXPECT_TRUE(isSameNumber(structure.maxPoint.y, expected.maxPoint.y));
    EXPECT_TRUE(isSameNumber(structure.minPoint.y, expected.minPoint.y));
}

} // namespace kelmo

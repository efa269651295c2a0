// Lines of PDB text for the tests, written field by field, and a check of a structure's links.
#pragma once

#include "model/pdb_peptide.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>

namespace kelmo {

/// One coordinate line of exactly 54 characters; the texts are placed as they are, so that a test
/// can put anything into a field.
struct sAtomLine {
    std::string record = "ATOM";
    std::string serial = "1";
    std::string name = "CA";
    char alternate = ' ';
    std::string residue = "ALA";
    char chain = 'A';
    std::string number = "1"; ///< with insertion code
    std::string x = "0.000";
    std::string y = "0.000";
    std::string z = "0.000";

    std::string text() const {
        const auto right = [](const std::string& field, std::size_t width) {
            return std::string(width - field.size(), ' ') + field;
        };
        const auto left = [](const std::string& field, std::size_t width) {
            return field + std::string(width - field.size(), ' ');
        };
        const bool hasInsertionCode =
            !number.empty() && (number.back() < '0' || number.back() > '9');
        return left(record, 6) + right(serial, 5) + ' ' +
               (name.size() < 4 ? ' ' + left(name, 3) : name) + alternate + right(residue, 3) +
               ' ' + chain + (hasInsertionCode ? right(number, 5) : right(number, 4) + ' ') +
               "   " + right(x, 8) + right(y, 8) + right(z, 8);
    }
    std::string line() const { return text() + '\n'; }
};

inline std::string headerLine(const std::string& code) {
    return "HEADER" + std::string(56, ' ') + code + '\n';
}

/// What one reading gave.
struct sReading {
    cPdbPeptide peptide;
    std::set<std::string> missing;
    int result = 0;
};

inline sReading readPdb(const std::string& text, const std::map<std::string, double>& radii = {}) {
    std::istringstream in(text);
    sReading reading;
    reading.result = reading.peptide.loadFromStream(in, radii, reading.missing);
    return reading;
}

/// Walks every pointer of the structure: all must lead into its own lists, without gap or overlap.
inline void expectLinksIntoOwnLists(const cPdbPeptide& peptide) {
    std::size_t wrongResidues = 0;
    std::size_t wrongAtoms = 0;
    const cResidueAtom* atom = peptide.atoms.data();
    for (const cChainResidue& residue : peptide.residues) {
        wrongResidues += residue.atoms != atom ? 1U : 0U;
        for (unsigned i = 0; i < residue.atomCount; ++i, ++atom) {
            wrongAtoms += atom->residue != &residue ? 1U : 0U;
        }
    }
    EXPECT_EQ(wrongResidues, 0U);
    EXPECT_EQ(wrongAtoms, 0U);
    EXPECT_EQ(atom, peptide.atoms.data() + peptide.atoms.size());
    atom = peptide.atoms.data();
    const cChainResidue* residue = peptide.residues.data();
    for (const cProteinChain& chain : peptide.chains) {
        EXPECT_EQ(chain.atoms, atom);
        EXPECT_EQ(chain.residues, residue);
        unsigned atomsOfResidues = 0;
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            atomsOfResidues += chain.residues[i].atomCount;
        }
        EXPECT_EQ(atomsOfResidues, chain.atomCount);
        atom += chain.atomCount;
        residue += chain.residueCount;
    }
    EXPECT_EQ(atom, peptide.atoms.data() + peptide.atoms.size());
    EXPECT_EQ(residue, peptide.residues.data() + peptide.residues.size());
}

} // namespace kelmo

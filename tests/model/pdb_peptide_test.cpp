// The structure as owner of its lists: pointers stay valid at any size, copies are deep.
#include "model/pdb_peptide.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/structure_links.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace kelmo {

using enum eContactType;

namespace {

constexpr unsigned largeResidueCount = 60000;
constexpr unsigned largeAtomCount = 250000;

/// 250,000 atoms in 60,000 residues in 60 chains: more than any list has room for at the start.
std::string largeText() {
    std::string text;
    text.reserve(56ULL * largeAtomCount);
    unsigned serial = 0;
    for (unsigned residue = 0; residue < largeResidueCount; ++residue) {
        // Four atoms each, a fifth until the number of atoms is complete.
        const unsigned atoms = residue < largeAtomCount - 4 * largeResidueCount ? 5 : 4;
        for (unsigned i = 0; i < atoms; ++i, ++serial) {
            text += atomLine("C" + std::to_string(i), "ALA",
                             static_cast<char>('A' + residue / 1000 % 26),
                             std::to_string(residue % 10000), residue % 1000 * 0.5, i,
                             residue / 1000 * 2.0, serial);
        }
    }
    return text;
}

/// Two chains with three residues, a metal, and a result in every kind of field.
cPdbPeptide smallPeptide() {
    sReading reading =
        readPdb(headerLine("1XYZ") + sAtomLine{.name = "N", .x = "1.000"}.line() +
                sAtomLine{.name = "CA", .x = "2.000"}.line() +
                sAtomLine{.name = "N", .residue = "GLY", .number = "2", .x = "3.000"}.line() +
                sAtomLine{.name = "CA", .residue = "GLY", .chain = 'B', .number = "1", .x = "4.000"}
                    .line() +
                sAtomLine{.record = "HETATM", .name = "ZN", .residue = "ZN", .x = "5.000"}.line());
    EXPECT_EQ(reading.result, 0);
    cPdbPeptide& peptide = reading.peptide;
    peptide.totalAsa = 1.0;
    peptide.sideChainAsa = 2.0;
    peptide.backboneAsa = 3.0;
    peptide.polarAsa = 4.0;
    peptide.nonPolarAsa = 5.0;
    peptide.residues[1].totalAsa = 6.0;
    peptide.residues[1].isBinding = true;
    peptide.chains[1].totalAsa = 7.0;
    peptide.atoms[2].asa = 8.0;
    cResidueContact contact;
    contact.chain1 = "A";
    contact.contactTypes = {ionic};
    peptide.contacts.push_back(contact);
    return std::move(reading.peptide);
}

void expectSmallPeptide(const cPdbPeptide& peptide) {
    expectLinksIntoOwnLists(peptide);
    EXPECT_EQ(peptide.name, "1XYZ");
    EXPECT_EQ(peptide.maxPoint.x, 4.0);
    EXPECT_EQ(peptide.minPoint.x, 1.0);
    ASSERT_EQ(peptide.atoms.size(), 4U);
    EXPECT_EQ(peptide.atoms[0].atomName, "NXT");
    EXPECT_EQ(peptide.atoms[2].asa, 8.0);
    ASSERT_EQ(peptide.heteroAtoms.size(), 1U);
    EXPECT_EQ(peptide.heteroAtoms[0].x, 5.0);
    ASSERT_EQ(peptide.residues.size(), 3U);
    EXPECT_EQ(peptide.residues[1].totalAsa, 6.0);
    EXPECT_TRUE(peptide.residues[1].isBinding);
    ASSERT_EQ(peptide.chains.size(), 2U);
    EXPECT_EQ(peptide.chains[1].totalAsa, 7.0);
    EXPECT_EQ(peptide.chains[1].maxPoint.x, 4.0);
    EXPECT_EQ(peptide.chains[0].peptideName, "1XYZ");
    ASSERT_EQ(peptide.contacts.size(), 1U);
    EXPECT_EQ(peptide.contacts[0].contactTypes.size(), 1U);
    EXPECT_EQ(peptide.totalAsa, 1.0);
    EXPECT_EQ(peptide.sideChainAsa, 2.0);
    EXPECT_EQ(peptide.backboneAsa, 3.0);
    EXPECT_EQ(peptide.polarAsa, 4.0);
    EXPECT_EQ(peptide.nonPolarAsa, 5.0);
}

/// Overwrites what copies must not share.
void spoil(cPdbPeptide& peptide) {
    peptide.name = "gone";
    for (cResidueAtom& atom : peptide.atoms) {
        atom.asa = -99.0;
        atom.atomName = "X";
    }
    for (cChainResidue& residue : peptide.residues) {
        residue.totalAsa = -99.0;
        residue.isBinding = false;
    }
    for (cProteinChain& chain : peptide.chains) {
        chain.totalAsa = -99.0;
    }
    peptide.contacts.clear();
    peptide.heteroAtoms.clear();
    peptide.totalAsa = -99.0;
}

TEST(PdbPeptide, DefaultStructureIsEmpty) {
    const cPdbPeptide peptide;
    EXPECT_EQ(peptide.name, "");
    EXPECT_TRUE(peptide.atoms.empty());
    EXPECT_TRUE(peptide.heteroAtoms.empty());
    EXPECT_TRUE(peptide.residues.empty());
    EXPECT_TRUE(peptide.chains.empty());
    EXPECT_TRUE(peptide.contacts.empty());
    for (const double value :
         {peptide.totalAsa, peptide.sideChainAsa, peptide.backboneAsa, peptide.polarAsa,
          peptide.nonPolarAsa, peptide.maxPoint.x, peptide.minPoint.z}) {
        EXPECT_EQ(value, 0.0);
    }
}

TEST(PdbPeptide, LinksHoldInAStructureBeyondAllReservedRoom) {
    sReading reading = readPdb(largeText());
    ASSERT_EQ(reading.result, 0);
    const cPdbPeptide& peptide = reading.peptide;
    ASSERT_EQ(peptide.atoms.size(), largeAtomCount);
    ASSERT_EQ(peptide.residues.size(), largeResidueCount);
    ASSERT_EQ(peptide.chains.size(), 60U);
    expectLinksIntoOwnLists(peptide);
    for (std::size_t i = 0; i < peptide.chains.size(); ++i) {
        EXPECT_EQ(peptide.chains[i].residueCount, 1000U);
        EXPECT_EQ(peptide.chains[i].maxPoint.x, 499.5);
        EXPECT_EQ(peptide.chains[i].minPoint.z, static_cast<double>(i) * 2.0);
    }
    EXPECT_EQ(peptide.atoms.back().residue->residueNumber, "9999");
}

TEST(PdbPeptide, CopyOfALargeStructurePointsIntoItself) {
    const sReading reading = readPdb(largeText());
    const cPdbPeptide copy(reading.peptide);
    EXPECT_NE(copy.atoms.data(), reading.peptide.atoms.data());
    EXPECT_NE(copy.residues.data(), reading.peptide.residues.data());
    expectLinksIntoOwnLists(copy);
    expectLinksIntoOwnLists(reading.peptide);
}

TEST(PdbPeptide, CopyIsIndependentOfTheOriginal) {
    cPdbPeptide original = smallPeptide();
    const cPdbPeptide copy(original);
    spoil(original);
    expectSmallPeptide(copy);
}

TEST(PdbPeptide, OriginalIsIndependentOfTheCopy) {
    const cPdbPeptide original = smallPeptide();
    cPdbPeptide copy(original);
    spoil(copy);
    expectSmallPeptide(original);
}

TEST(PdbPeptide, CopyOutlivesTheOriginal) {
    cPdbPeptide copy;
    {
        const cPdbPeptide original = smallPeptide();
        copy = original;
    }
    expectSmallPeptide(copy);
}

TEST(PdbPeptide, AssignmentReplacesEverything) {
    cPdbPeptide target = readPdb(largeText().substr(0, 55000)).peptide;
    cPdbPeptide source = smallPeptide();
    target = source;
    spoil(source);
    expectSmallPeptide(target);
}

TEST(PdbPeptide, AssignmentToItselfChangesNothing) {
    cPdbPeptide peptide = smallPeptide();
    const cPdbPeptide& same = peptide;
    peptide = same;
    expectSmallPeptide(peptide);
}

TEST(PdbPeptide, MovedStructureKeepsItsPlaceInMemory) {
    cPdbPeptide source = smallPeptide();
    const cResidueAtom* const place = source.atoms.data();
    const cPdbPeptide constructed(std::move(source));
    EXPECT_EQ(constructed.atoms.data(), place);
    expectSmallPeptide(constructed);
    cPdbPeptide other = smallPeptide();
    cPdbPeptide assigned;
    assigned = std::move(other);
    expectSmallPeptide(assigned);
}

// A structure whose reading failed is to be thrown away, but copying it must not go astray.
TEST(PdbPeptide, CopyOfAnAbandonedReadingPointsIntoItself) {
    const sReading reading = readPdb(sAtomLine{.number = "1"}.line() +
                                     sAtomLine{.number = "2"}.line() + "ATOM  too short\n");
    ASSERT_EQ(reading.result, 3);
    const cPdbPeptide copy(reading.peptide);
    ASSERT_EQ(copy.atoms.size(), 2U);
    ASSERT_EQ(copy.residues.size(), 1U);
    EXPECT_EQ(copy.residues[0].atoms, copy.atoms.data());
    EXPECT_EQ(copy.atoms[0].residue, copy.residues.data());
    EXPECT_EQ(copy.atoms[1].residue, nullptr);
}

} // namespace

} // namespace kelmo

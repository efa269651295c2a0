// Interfaces: buried areas, residues, contacts and bonds between chains, against closed forms, hand
// made cases and a slow implementation that shares no code.
#include "contacts/bonding_roles.h"
#include "contacts/contact_resolution.h"
#include "contacts/interfaces.h"
#include "model/pdb_peptide.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/reference_interfaces.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace kelmo {

namespace {

constexpr sInterfaceOptions complete{.form = eAsaForm::complete};

/// One atom of a structure made by hand.
struct sPlaced {
    const char* name;
    const char* residue;
    char chain;
    int number;
    double x, y, z;
};

cPdbPeptide structureWith(const std::vector<sPlaced>& atoms) {
    std::string text;
    int serial = 0;
    for (const sPlaced& atom : atoms) {
        char line[96];
        std::snprintf(line, sizeof line,
                      "ATOM  %5d  %-3s %3s %c%4d    %8.3f%8.3f%8.3f  1.00  0.00\n", ++serial,
                      atom.name, atom.residue, atom.chain, atom.number, atom.x, atom.y, atom.z);
        text += line;
    }
    return structureOf(text, shippedTables().radii);
}

std::vector<sInterface> interfacesOf(const std::vector<sPlaced>& atoms,
                                     const sInterfaceOptions& options = complete) {
    return findInterfaces(structureWith(atoms), {}, options);
}

std::size_t bondsBetween(const std::vector<sPlaced>& atoms, eBond kind) {
    const std::vector<sInterface> found = interfacesOf(atoms);
    EXPECT_EQ(found.size(), 1U);
    return found.at(0).count(kind);
}

// Two atoms

TEST(Interfaces, TwoSpheresBuryTheirCaps) {
    const double enlarged = 1.88 + 1.4;
    const double d = 4.0;
    sInterfaceOptions fine = complete;
    fine.zSlice = 0.01;
    const auto found =
        interfacesOf({{"CA", "ALA", 'A', 1, 0, 0, 0}, {"CB", "ALA", 'B', 1, 2.4, 0, 3.2}}, fine);
    ASSERT_EQ(found.size(), 1U);
    const double cap = 2.0 * std::numbers::pi * enlarged * (enlarged - 0.5 * d);
    EXPECT_NEAR(found[0].side1.buried.total, cap, 0.001 * cap);
    EXPECT_NEAR(found[0].side2.buried.total, cap, 0.001 * cap);
    EXPECT_EQ(found[0].side1.buried.nonPolar, found[0].side1.buried.total);
    EXPECT_EQ(found[0].side1.buried.polar, 0.0);
    EXPECT_DOUBLE_EQ(found[0].closestDistance, d);
    ASSERT_EQ(found[0].side1.residues.size(), 1U);
    EXPECT_EQ(found[0].side1.residues[0].residue, 0U);
    EXPECT_EQ(found[0].side2.residues[0].residue, 1U);
    EXPECT_EQ(found[0].side2.residues[0].buried, found[0].side2.buried.total);
}

TEST(Interfaces, AreThereUntilAProbeFitsBetween) {
    const auto at = [](double distance) {
        return interfacesOf(
            {{"CA", "ALA", 'A', 1, 0, 0, 0}, {"CA", "ALA", 'B', 1, distance, 0, 0}});
    };
    EXPECT_EQ(at(6.55).size(), 1U);
    EXPECT_EQ(at(6.57).size(), 0U);
    EXPECT_EQ(interfacesOf({{"CA", "ALA", 'A', 1, 0, 0, 0}, {"CB", "ALA", 'A', 1, 3, 0, 0}}).size(),
              0U)
        << "one chain";
    EXPECT_EQ(findInterfaces(cPdbPeptide(), {}, complete).size(), 0U);
}

TEST(Interfaces, ThirdChainPlaysNoPart) {
    const std::vector<sPlaced> two{{"CA", "ALA", 'A', 1, 0, 0, 0}, {"O", "GLY", 'B', 1, 3, 1, 0}};
    std::vector<sPlaced> three = two;
    three.push_back({"CB", "VAL", 'C', 1, 1, 2, 2});
    const auto pair = interfacesOf(two);
    const auto all = interfacesOf(three);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].side1.buried.total, pair[0].side1.buried.total);
    EXPECT_EQ(all[0].side2.buried.polar, pair[0].side2.buried.polar);
    const auto chainsOf = [](const sInterface& found) {
        return std::pair(found.side1.chain, found.side2.chain);
    };
    EXPECT_EQ(chainsOf(all[0]), std::pair(0U, 1U));
    EXPECT_EQ(chainsOf(all[1]), std::pair(0U, 2U));
    EXPECT_EQ(chainsOf(all[2]), std::pair(1U, 2U));
}

TEST(Interfaces, ResidueMustLoseMoreThanTheLimit) {
    const std::vector<sPlaced> atoms{{"CA", "ALA", 'A', 1, 0, 0, 0},
                                     {"CA", "ALA", 'B', 1, 6, 0, 0}};
    sInterfaceOptions options = complete;
    const double lost = interfacesOf(atoms, options).at(0).side1.buried.total;
    options.deltaAsa = lost;
    EXPECT_EQ(interfacesOf(atoms, options).at(0).side1.residues.size(), 0U);
    options.deltaAsa = std::nextafter(lost, 0.0);
    EXPECT_EQ(interfacesOf(atoms, options).at(0).side1.residues.size(), 1U);
}

// Bonds

/// A carbonyl group of chain A along x and an amide nitrogen of chain B with its CA, in line.
std::vector<sPlaced> inLine(double distance, const char* donorName = "N") {
    return {{"C", "ALA", 'A', 1, 0, 0, 0},
            {"O", "ALA", 'A', 1, 1.23, 0, 0},
            {"CA", "GLY", 'B', 1, 60, 0, 0}, // the first nitrogen of a chain has another name
            {donorName, "GLY", 'B', 2, 1.23 + distance, 0, 0},
            {"CA", "GLY", 'B', 2, 2.69 + distance, 0, 0}};
}

TEST(HydrogenBonds, ReachToThreeAndAHalfAngstroms) {
    EXPECT_EQ(bondsBetween(inLine(2.9), eBond::hydrogen), 1U);
    EXPECT_EQ(bondsBetween(inLine(3.49), eBond::hydrogen), 1U);
    EXPECT_EQ(bondsBetween(inLine(3.51), eBond::hydrogen), 0U);
    EXPECT_EQ(bondsBetween(inLine(2.9, "CB"), eBond::hydrogen), 0U) << "no donor";
}

TEST(HydrogenBonds, HaveAnglesOfNinetyDegreesAtLeast) {
    const auto withCarbonAt = [](double x, double y) {
        std::vector<sPlaced> atoms = inLine(2.9);
        atoms[0].x = x;
        atoms[0].y = y;
        return bondsBetween(atoms, eBond::hydrogen);
    };
    EXPECT_EQ(withCarbonAt(1.22, 1.23), 1U) << "just behind the oxygen";
    EXPECT_EQ(withCarbonAt(1.24, 1.23), 0U) << "just before it";
    const auto withAlphaAt = [](double x, double y) {
        std::vector<sPlaced> atoms = inLine(2.9);
        atoms[4].x = x;
        atoms[4].y = y;
        return bondsBetween(atoms, eBond::hydrogen);
    };
    EXPECT_EQ(withAlphaAt(4.14, 1.46), 1U);
    EXPECT_EQ(withAlphaAt(4.12, 1.46), 0U);
}

TEST(HydrogenBonds, NoHydrogenCountsAsWhatIsBonded) {
    std::vector<sPlaced> atoms = inLine(2.9);
    atoms.push_back({"H", "GLY", 'B', 2, 3.13, 0, 0});
    EXPECT_EQ(bondsBetween(atoms, eBond::hydrogen), 1U);
}

TEST(HydrogenBonds, CarbonOfTheResidueBeforeCounts) {
    std::vector<sPlaced> atoms = inLine(2.9);
    atoms[2] = {"C", "GLY", 'B', 1, 3.6, 1.2, 0};
    EXPECT_EQ(bondsBetween(atoms, eBond::hydrogen), 0U) << "it stands on the side of the oxygen";
}

TEST(SaltBridges, AreOneForTwoResidues) {
    const std::vector<sPlaced> atoms{{"NH1", "ARG", 'A', 2, 0, 0, 0},
                                     {"NH2", "ARG", 'A', 2, 2.3, 0, 0},
                                     {"OD1", "ASP", 'B', 2, 0, 0, 3.9},
                                     {"OD2", "ASP", 'B', 2, 2.3, 0, 2.8}};
    const auto found = interfacesOf(atoms);
    ASSERT_EQ(found.at(0).count(eBond::salt), 1U);
    const sInterfaceBond& bridge = found[0].bonds.back();
    EXPECT_EQ(bridge.kind, eBond::salt);
    EXPECT_EQ(bridge.atom1, 1U);
    EXPECT_EQ(bridge.atom2, 3U);
    EXPECT_DOUBLE_EQ(bridge.distance, 2.8);
}

TEST(SaltBridges, ReachToFourAngstromsAndToTheEndsOfChains) {
    const auto between = [](const char* residue1, const char* atom1, const char* residue2,
                            const char* atom2, double distance) {
        return bondsBetween({{"CA", residue1, 'A', 1, 0, 40, 0},
                             {atom1, residue1, 'A', 2, 0, 0, 0},
                             {"CA", residue2, 'B', 1, 0, -40, 0},
                             {atom2, residue2, 'B', 2, distance, 0, 0}},
                            eBond::salt);
    };
    EXPECT_EQ(between("LYS", "NZ", "GLU", "OE1", 4.0), 1U);
    EXPECT_EQ(between("LYS", "NZ", "GLU", "OE1", 4.01), 0U);
    EXPECT_EQ(between("GLU", "OE2", "HIS", "NE2", 3.0), 1U);
    EXPECT_EQ(between("LYS", "NZ", "ALA", "OXT", 3.0), 1U);
    EXPECT_EQ(between("LYS", "NZ", "ALA", "O", 3.0), 0U);
    EXPECT_EQ(between("LYS", "NZ", "ARG", "NE", 3.0), 0U);
    EXPECT_EQ(
        bondsBetween({{"N", "ALA", 'A', 1, 0, 0, 0}, {"OD1", "ASP", 'B', 2, 3, 0, 0}}, eBond::salt),
        1U)
        << "the first nitrogen of a chain";
}

TEST(Disulphides, ReachToTwoPointThreeAngstroms) {
    const auto at = [](double distance, const char* name) {
        return bondsBetween({{"SG", "CYS", 'A', 1, 0, 0, 0}, {"SG", name, 'B', 1, distance, 0, 0}},
                            eBond::disulphide);
    };
    EXPECT_EQ(at(2.05, "CYS"), 1U);
    EXPECT_EQ(at(2.3, "CYX"), 1U);
    EXPECT_EQ(at(2.31, "CYS"), 0U);
}

// The roles of atoms are those that the shipped contact rules are made of.
TEST(BondingRoles, AreThoseOfTheContactRules) {
    const contactMap& rules = shippedTables().rules;
    std::map<std::string, std::set<std::string>> atoms; // by residue
    std::set<std::tuple<std::string, std::string, std::string, std::string, eContactType>> joined;
    for (const auto& [key, ofPair] : rules) {
        for (const sResidueAtomContact& rule : ofPair) {
            atoms[rule.residueName1].insert(rule.atomName1);
            joined.emplace(rule.residueName1, rule.atomName1, rule.residueName2, rule.atomName2,
                           rule.contactType);
        }
    }
    ASSERT_EQ(atoms.size(), 20U);
    const auto roleOf = [](const std::string& residue, const std::string& atom) {
        cResidueAtom one;
        one.atomName = atom;
        return bondingRoleOf(cChainResidue(residue, "1", nullptr, 0, eResidueType::aminoAcid), one);
    };
    std::size_t compared = 0;
    for (const auto& [residue1, names1] : atoms) {
        for (const auto& [residue2, names2] : atoms) {
            for (const std::string& name1 : names1) {
                const sBondingRole a = roleOf(residue1, name1);
                for (const std::string& name2 : names2) {
                    const sBondingRole b = roleOf(residue2, name2);
                    const auto isJoined = [&](eContactType type) {
                        return joined.contains({residue1, name1, residue2, name2, type});
                    };
                    EXPECT_EQ((a.isDonor && b.isAcceptor) || (a.isAcceptor && b.isDonor),
                              isJoined(eContactType::polar))
                        << residue1 << name1 << residue2 << name2;
                    EXPECT_EQ((a.isCation && b.isAnion) || (a.isAnion && b.isCation),
                              isJoined(eContactType::ionic))
                        << residue1 << name1 << residue2 << name2;
                    ++compared;
                }
            }
        }
    }
    EXPECT_GT(compared, 10000U);
}

TEST(BondingRoles, OfOtherResiduesAreNone) {
    cResidueAtom atom;
    atom.atomName = "N";
    const auto isDonor = [&](const char* residue, eResidueType type) {
        return bondingRoleOf(cChainResidue(residue, "1", nullptr, 0, type), atom).isDonor;
    };
    EXPECT_TRUE(isDonor("HIE", eResidueType::other));
    EXPECT_FALSE(isDonor("LIG", eResidueType::other));
    EXPECT_FALSE(isDonor("A", eResidueType::nucleicAcid));
}

// Against the slow implementation

using tBonds = std::set<std::tuple<std::string, std::size_t, std::size_t>>;

tBonds bondsOf(const sInterface& found) {
    tBonds bonds;
    for (const sInterfaceBond& bond : found.bonds) {
        const char* const kind = bond.kind == eBond::hydrogen ? "hydrogen"
                                 : bond.kind == eBond::salt   ? "salt"
                                                              : "disulphide";
        bonds.emplace(kind, bond.atom1, bond.atom2);
    }
    return bonds;
}

void expectSameSide(const sInterfaceSide& side, const reference::sAreas& buried,
                    const std::vector<std::pair<std::size_t, double>>& residues, double allowance) {
    EXPECT_NEAR(side.buried.total, buried.total, allowance);
    EXPECT_NEAR(side.buried.polar, buried.polar, allowance);
    EXPECT_NEAR(side.buried.nonPolar, buried.nonPolar, allowance);
    ASSERT_EQ(side.residues.size(), residues.size());
    for (std::size_t i = 0; i < residues.size(); ++i) {
        EXPECT_EQ(side.residues[i].residue, residues[i].first);
        EXPECT_NEAR(side.residues[i].buried, residues[i].second, allowance);
    }
}

/// Residue contacts by rules, which have types.
void expectSameInterfaces(const std::string& entry, eAsaForm form) {
    const bool isComplete = form == eAsaForm::complete;
    sInterfaceOptions options;
    options.form = form;
    cPdbPeptide peptide = samplePeptide(entry);
    const sContactList contacts =
        findContacts(peptide, eInteractionCriterion::vorda, 6.0, 1.125, &shippedTables().rules);
    const std::vector<sInterface> found = findInterfaces(peptide, contacts, options);

    std::set<std::string> missing;
    int errorLine = 0;
    reference::sStructure structure =
        reference::readStructure(sampleText(entry), shippedTables().radii, missing, errorLine);
    reference::tContactRules rules;
    reference::readContactRules(sourceText("data/aa_contacts.txt"), rules);
    const std::vector<reference::sContact> theirs =
        reference::resolveContacts(structure, reference::eCriterion::vorda, 6.0, 1.125, rules);
    const std::vector<reference::sInterface> expected = reference::interfaces(
        structure, theirs, options.probeRadius, options.zSlice, isComplete, options.deltaAsa);

    ASSERT_EQ(found.size(), expected.size());
    ASSERT_GT(found.size(), 0U);
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].side1.chain, expected[i].chain1);
        EXPECT_EQ(found[i].side2.chain, expected[i].chain2);
        // Single precision moves the ends of arcs that barely reach a plane.
        const double allowance = isComplete ? 0.05 : 1e-9;
        expectSameSide(found[i].side1, expected[i].buried1, expected[i].residues1, allowance);
        expectSameSide(found[i].side2, expected[i].buried2, expected[i].residues2, allowance);
        EXPECT_DOUBLE_EQ(found[i].closestDistance, expected[i].closestDistance);
        EXPECT_EQ(found[i].contactPairs, expected[i].contactPairs);
        std::map<int, std::size_t> byType;
        for (const auto& [type, count] : found[i].contactPairsByType) {
            byType[static_cast<int>(type)] = count;
        }
        EXPECT_EQ(byType, expected[i].contactPairsByType);
        EXPECT_EQ(bondsOf(found[i]), expected[i].bonds);
    }
}

TEST(InterfacesOfSamples, AreThoseOfTheSlowImplementation) {
    for (const char* entry : {"1a0q", "2hhb"}) {
        expectSameInterfaces(entry, eAsaForm::classic);
        expectSameInterfaces(entry, eAsaForm::complete);
    }
}

TEST(InterfacesOfSamples, OneChainHasNone) {
    EXPECT_EQ(findInterfaces(samplePeptide("1ubq"), {}, complete).size(), 0U);
}

} // namespace

} // namespace kelmo

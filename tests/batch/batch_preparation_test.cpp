// What of a file is analysed by kelmo-batch, and what the user is told of the rest.
#include "tests/batch/batch_fixture.h"
#include "tests/support/pdb_lines.h"

#include <algorithm>

namespace kelmo {

namespace {

using tArguments = std::vector<std::string>;

/// An alanine in two conformations, of which the second one is occupied more, with a hydrogen, and
/// a water.
const std::string twoConformations =
    headerLine("1TST") + sAtomLine{.name = "N"}.text() + "  1.00\n" +
    sAtomLine{.name = "CA", .alternate = 'A', .x = "1.450"}.text() + "  0.40\n" +
    sAtomLine{.name = "CA", .alternate = 'B', .x = "1.650"}.text() + "  0.60\n" +
    sAtomLine{.name = "H", .x = "-1.000"}.text() + "  1.00\n" +
    sAtomLine{.record = "HETATM", .name = "O", .residue = "HOH", .number = "9", .x = "9.000"}
        .line();

std::string model(int number, double z) {
    return "MODEL        " + std::to_string(number) + '\n' + glycine('A', "1", z) + "ENDMDL\n";
}

const std::string twoModels = headerLine("1TST") + model(1, 0) + model(2, 4);

class BatchPreparation : public cBatchFixture {
  protected:
    /// Analyses a file of the scratch directory; expects that this succeeds.
    std::string messagesOf(const std::string& module, const std::string& file,
                           tArguments arguments = {}) const {
        arguments.push_back(file);
        const sProcessOutcome outcome = run(module, arguments);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
        return outcome.err;
    }
    std::string reportOf(const std::string& name) const {
        return contentOf(directory.path() / "out" / name);
    }
};

} // namespace

TEST_F(BatchPreparation, WhatTakesNoPartIsToldOnceAndBeforeTheAnalysis) {
    directory.write("odd.pdb", twoConformations);
    const std::string messages = messagesOf("kev", "odd.pdb");
    const std::string line = "Not analysed in odd.pdb: 1 water; 1 residue with alternate "
                             "locations, all counted; hydrogens counted. See preparation.\n";
    const std::size_t place = messages.find(line);
    ASSERT_NE(place, std::string::npos) << messages;
    EXPECT_EQ(messages.find("Not analysed", place + 1), std::string::npos);
    EXPECT_LT(messages.find("Analysing structure of peptide from odd.pdb..."), place);
    EXPECT_GT(messages.find("Structure of peptide from odd.pdb analyzed"), place);
}

TEST_F(BatchPreparation, QuietRunsKeepTheWarningsAlone) {
    directory.write("warned.pdb", twoConformations);
    const sAtomLine water{.record = "HETATM", .name = "O", .residue = "HOH", .number = "9"};
    directory.write("water.pdb", glycine('A', "1", 0) + glycine('B', "2", 4) + water.line());
    EXPECT_TRUE(contains(messagesOf("vor", "water.pdb"), "Not analysed in water.pdb: 1 water."));
    EXPECT_EQ(messagesOf("vor", "water.pdb", {"--quiet"}), "");
    EXPECT_TRUE(contains(messagesOf("kev", "warned.pdb", {"--quiet"}),
                         "warned.pdb: Not analysed in warned.pdb: 1 water; 1 residue with"));
}

TEST_F(BatchPreparation, PlainFilesAreToldNothingOf) {
    directory.write("plain.pdb", twoGlycines());
    const std::string messages = messagesOf("kev", "plain.pdb");
    EXPECT_FALSE(contains(messages, "preparation")) << messages;
}

TEST_F(BatchPreparation, StandardPreparationIsStatedInEveryReport) {
    directory.write("odd.pdb", twoConformations);
    const std::string messages = messagesOf("kev", "odd.pdb", {"--prepare", "standard"});
    EXPECT_TRUE(contains(messages, "1 residue with alternate locations, one of each counted"))
        << messages;
    const std::string inTable = "alternate_locations: highest_occupancy\nhydrogens: drop\n"
                                "modified_residues: as_parent\nnames: understood\n";
    const std::string inXml = "  <alternate_locations>highest_occupancy</alternate_locations>\n"
                              "  <hydrogens>drop</hydrogens>\n"
                              "  <modified_residues>as_parent</modified_residues>\n"
                              "  <names>understood</names>\n";
    messagesOf("vor", "odd.pdb", {"--prepare=standard"});
    ASSERT_EQ(reports().size(), 10U);
    for (const auto& [name, content] : reports()) {
        EXPECT_TRUE(contains(content, name.ends_with(".xml") ? inXml : inTable))
            << name << '\n'
            << content.substr(0, 800);
    }
}

TEST_F(BatchPreparation, PreparationChangesTheAreas) {
    directory.write("odd.pdb", twoConformations);
    messagesOf("kev", "odd.pdb");
    const std::string asIs = reportOf("odd_200703141530_bound.tbl");
    EXPECT_FALSE(contains(asIs, "alternate_locations"));
    messagesOf("kev", "odd.pdb", {"--prepare", "standard"});
    const std::string standard = reportOf("odd_200703141530_bound.tbl");
    directory.write("plain.pdb", headerLine("1TST") + sAtomLine{.name = "N"}.line() +
                                     sAtomLine{.name = "CA", .x = "1.650"}.line());
    messagesOf("kev", "plain.pdb");
    const std::string plain = reportOf("plain_200703141530_bound.tbl");
    const auto rows = [](const std::string& table) {
        return table.substr(table.find("chain id|"));
    };
    EXPECT_NE(rows(asIs), rows(plain));
    EXPECT_EQ(rows(standard), rows(plain));
}

TEST_F(BatchPreparation, SinglePartsAreStrongerThanTheShortForm) {
    directory.write("odd.pdb", twoConformations);
    messagesOf("kev", "odd.pdb", {"--set", "hydrogens=keep", "--prepare=standard"});
    const std::string table = reportOf("odd_200703141530_bound.tbl");
    EXPECT_TRUE(contains(table, "alternate_locations: highest_occupancy\nmodified_residues:"))
        << table;
}

TEST_F(BatchPreparation, ConfigurationsPrepareToo) {
    directory.write("odd.pdb", twoConformations);
    directory.write("run.cfg", "prepare:\tstandard\nnames:\tas_they_stand\n");
    messagesOf("kev", "odd.pdb", {"--config=run.cfg"});
    EXPECT_TRUE(contains(reportOf("odd_200703141530_bound.tbl"),
                         "hydrogens: drop\nmodified_residues: as_parent\n"));
}

TEST_F(BatchPreparation, OtherWordsAreRefused) {
    const sProcessOutcome outcome = run("kev", {"--prepare=best", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_TRUE(
        contains(outcome.err, "--prepare best: prepare must be as-is or standard, not \"best\""))
        << outcome.err;
    EXPECT_TRUE(contains(run("kev", {"--set=prepare=best", ubiquitin}).err,
                         "--set prepare=best: prepare must be"));
}

TEST_F(BatchPreparation, EachModelHasReportsOfItsOwn) {
    directory.write("two.models.pdb", twoModels);
    messagesOf("kev", "two.models.pdb", {"--set=models=each", "--set=write_xml=0"});
    EXPECT_EQ(
        reportNames(),
        (tArguments{"two_model1_200703141530_bound.tbl", "two_model1_200703141530_unbound.tbl",
                    "two_model2_200703141530_bound.tbl", "two_model2_200703141530_unbound.tbl"}));
    EXPECT_EQ(reportOf("two_model1_200703141530_bound.tbl"),
              reportOf("two_model2_200703141530_bound.tbl"));
    EXPECT_TRUE(contains(reportOf("two_model2_200703141530_bound.tbl"), "models: each\n"));
}

TEST_F(BatchPreparation, ModelsAsChainsTouchEachOther) {
    directory.write("two.pdb", twoModels);
    EXPECT_TRUE(contains(messagesOf("vor", "two.pdb", {"--set=models=chains"}),
                         "Found: 1 contact, 2 binding residues\n"));
    const std::string table = reportOf("two_200703141530_contacts.tbl");
    EXPECT_TRUE(contains(table, "\n  A     1  GLY  A-2     1  GLY")) << table;
    EXPECT_TRUE(contains(table, "\nA-2     1  GLY    A     1  GLY")) << table;
}

TEST_F(BatchPreparation, ModelsLaidOverEachOtherAreNotTakenForNanometres) {
    directory.write("bundle.pdb", headerLine("1TST") + model(1, 0) + model(2, 0.1));
    for (const char* models : {"first", "each", "chains"}) {
        EXPECT_FALSE(contains(
            messagesOf("kev", "bundle.pdb", {std::string("--set=models=") + models}), "nanometres"))
            << models;
    }
    directory.write("dense.pdb", inNanometres(twoGlycines()));
    EXPECT_TRUE(contains(messagesOf("vor", "dense.pdb"), "nanometres"));
}

TEST_F(BatchPreparation, AssembliesAreMadeAsTheFileSays) {
    const auto operation = [](int number, const std::string& shift) {
        const std::string end = "  " + std::to_string(number);
        const std::string axes[] = {"  1.000000  0.000000  0.000000        0.00000\n",
                                    "  0.000000  1.000000  0.000000        0.00000\n",
                                    "  0.000000  0.000000  1.000000        " + shift + '\n'};
        std::string lines;
        for (int axis = 0; axis < 3; ++axis) {
            lines += "REMARK 350   BIOMT" + std::to_string(axis + 1) + end + axes[axis];
        }
        return lines;
    };
    directory.write("dimer.pdb", headerLine("1TST") +
                                     "REMARK 350 BIOMOLECULE: 1\n"
                                     "REMARK 350 APPLY THE FOLLOWING TO CHAINS: A\n" +
                                     operation(1, "0.00000") + operation(2, "4.00000") +
                                     glycine('A', "1", 0));
    EXPECT_TRUE(contains(messagesOf("vor", "dimer.pdb"), "There is one chain, A: no contacts "));
    const std::string messages = messagesOf("vor", "dimer.pdb", {"--set=assembly=1"});
    EXPECT_TRUE(contains(messages, "Found: 1 contact, 2 binding residues\n")) << messages;
    EXPECT_TRUE(contains(reportOf("dimer_200703141530_binding_status.tbl"), "assembly: 1\n"));
    const sProcessOutcome refused = run("vor", {"--set=assembly=7", "dimer.pdb"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_TRUE(contains(refused.err, "Could not use PDB file dimer.pdb: ")) << refused.err;
}

TEST_F(BatchPreparation, RunsEndWithTheNumberOfContactsFound) {
    const std::string messages =
        messagesOf("vor", haemoglobin, {"--set=contact_criterion=3", antibody});
    EXPECT_TRUE(contains(messages, "Found: ")) << messages;
    EXPECT_FALSE(contains(messages, "contact,")) << messages;
    EXPECT_FALSE(contains(messages, "contacts,")) << messages;
    EXPECT_TRUE(contains(messages, " binding residues\n2 of 2 files analysed")) << messages;
    EXPECT_FALSE(contains(messagesOf("kev", ubiquitin), "Found: "));
}

TEST_F(BatchPreparation, ContactsFoundAreTheLinesOfTheReports) {
    const std::string messages = messagesOf("vor", haemoglobin, {antibody});
    std::size_t lines = 0;
    std::size_t bindingLines = 0;
    for (const auto& [name, content] : reports()) {
        const std::vector<std::string> all = linesOf(content);
        if (name.ends_with("_contacts.tbl")) {
            lines += static_cast<std::size_t>(std::ranges::count_if(
                all, [](const std::string& line) { return contains(line, "MaximumDistance"); }));
        } else if (name.ends_with("_binding_residues.tbl")) {
            bindingLines += static_cast<std::size_t>(std::ranges::count_if(
                all, [](const std::string& line) { return contains(line, "MaximumDistance"); }));
        }
    }
    ASSERT_GT(lines, 0U);
    EXPECT_TRUE(contains(messages, "Found: " + std::to_string(lines / 2) + " contacts, " +
                                       std::to_string(bindingLines) + " binding residues\n"))
        << messages;
}

} // namespace kelmo

// The reports of the interaction module on a structure put together by hand, byte for byte.
#include "run/run_vor_linux.h"
#include "tests/run/hand_built_structure.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/test_files.h"
#include "tests/support/text_difference.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace kelmo {

using enum eContactType;
using enum eInteractionCriterion;

namespace {

using tXmlWriter = void (cRunVOR::*)(cXmlWriter&, cPdbPeptide&);
using tTableWriter = void (cRunVOR::*)(std::ostream&, cPdbPeptide&);

std::string xmlOf(cRunVOR& run, tXmlWriter write, cPdbPeptide& peptide) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("report.xml");
    {
        cXmlWriter writer(file.c_str());
        (run.*write)(writer, peptide);
    }
    return contentOf(file);
}

std::string tableOf(cRunVOR& run, tTableWriter write, cPdbPeptide& peptide) {
    std::ostringstream out;
    (run.*write)(out, peptide);
    return out.str();
}

std::string opening(const std::string& root) {
    return "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n"
           "<" +
           root +
           " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
           " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
           " xmlns=\"http://kelmo.example/krb/namespaces/PDB\">\n";
}

class VorReports : public testing::Test {
  protected:
    VorReports() {
        run.criterion = maximumDistance;
        run.threshold = 5.0;
        run.zSlice = 0.25;
        run.probeRadius = 1.4;
        run.radiiFileName = "my.radii";
        peptide.residues[0].isBinding = true;
        peptide.residues[2].isBinding = true;
        peptide.contacts = {
            {"A", "12", "VAL", "*", "1", "U", {ionic, hydrophobic, vanDerWaals, polar}, vorda},
            {"*", "1", "U", "A", "12", "VAL", maximumDistance}};
    }

    cHandBuiltStructure structure;
    cPdbPeptide& peptide = structure.peptide;
    cRunVOR run;
};

} // namespace

TEST_F(VorReports, ContactsXml) {
    const std::string expected = opening("peptideResidueContacts") +
                                 R"(  <pdb_id>1TST</pdb_id>
  <radii_filename>my.radii</radii_filename>
  <MD_threshold>5</MD_threshold>
  <contacts>
    <contact>
      <interaction_criterion>VORDA</interaction_criterion>
      <chain_id_1>A</chain_id_1>
      <residue_id_1>12</residue_id_1>
      <residue_name_1>VAL</residue_name_1>
      <chain_id_2>*</chain_id_2>
      <residue_id_2>1</residue_id_2>
      <residue_name_2>U</residue_name_2>
      <contact_types>
        <contact_type>Hydrophobic</contact_type>
        <contact_type>Polar</contact_type>
        <contact_type>Ionic</contact_type>
        <contact_type>vanDerWaals</contact_type>
      </contact_types>
    </contact>
    <contact>
      <interaction_criterion>MaximumDistance</interaction_criterion>
      <chain_id_1>*</chain_id_1>
      <residue_id_1>1</residue_id_1>
      <residue_name_1>U</residue_name_1>
      <chain_id_2>A</chain_id_2>
      <residue_id_2>12</residue_id_2>
      <residue_name_2>VAL</residue_name_2>
    </contact>
  </contacts>
</peptideResidueContacts>
)";
    EXPECT_EQ(firstDifference(xmlOf(run, &cRunVOR::writeContactsXml, peptide), expected), "");
}

TEST_F(VorReports, BindingResiduesXml) {
    const std::string expected = opening("peptideBindingResidues") +
                                 R"(  <pdb_id>1TST</pdb_id>
  <radii_filename>my.radii</radii_filename>
  <MD_threshold>5</MD_threshold>
  <binding_residues>
    <binding_residue>
      <interaction_criterion>MaximumDistance</interaction_criterion>
      <chain_id>A</chain_id>
      <residue_id>12</residue_id>
      <residue_name>VAL</residue_name>
    </binding_residue>
    <binding_residue>
      <interaction_criterion>MaximumDistance</interaction_criterion>
      <chain_id>*</chain_id>
      <residue_id>1</residue_id>
      <residue_name>U</residue_name>
    </binding_residue>
  </binding_residues>
</peptideBindingResidues>
)";
    EXPECT_EQ(firstDifference(xmlOf(run, &cRunVOR::writeHotSpotsXml, peptide), expected), "");
}

TEST_F(VorReports, BindingStatusXml) {
    const std::string expected = opening("peptideResidueBindingStatus") +
                                 R"(  <pdb_id>1TST</pdb_id>
  <radii_filename>my.radii</radii_filename>
  <MD_threshold>5</MD_threshold>
  <residues>
    <residue>
      <interaction_criterion>MaximumDistance</interaction_criterion>
      <chain_id>A</chain_id>
      <residue_id>12</residue_id>
      <residue_name>VAL</residue_name>
      <binding_status>1</binding_status>
    </residue>
    <residue>
      <interaction_criterion>MaximumDistance</interaction_criterion>
      <chain_id>A</chain_id>
      <residue_id>12A</residue_id>
      <residue_name>GLY</residue_name>
      <binding_status>0</binding_status>
    </residue>
    <residue>
      <interaction_criterion>MaximumDistance</interaction_criterion>
      <chain_id>*</chain_id>
      <residue_id>1</residue_id>
      <residue_name>U</residue_name>
      <binding_status>1</binding_status>
    </residue>
  </residues>
</peptideResidueBindingStatus>
)";
    EXPECT_EQ(
        firstDifference(xmlOf(run, &cRunVOR::writeResidueBindingStatusXml, peptide), expected), "");
}

TEST_F(VorReports, ContactsTable) {
    EXPECT_EQ(tableOf(run, &cRunVOR::writeContactsTable, peptide),
              "pdb_id: 1TST\n"
              "radii_filename: my.radii\n"
              "MD_threshold: 5\n"
              "A    12  VAL  *     1    U               VORDA       Hydrophobic             Polar"
              "             Ionic       vanDerWaals\n"
              "*     1    U  A    12  VAL     MaximumDistance\n");
}

TEST_F(VorReports, BindingResiduesTable) {
    EXPECT_EQ(tableOf(run, &cRunVOR::writeHotSpotsTable, peptide),
              "pdb_id: 1TST\n"
              "radii_filename: my.radii\n"
              "MD_threshold: 5\n"
              "A    12  VAL   MaximumDistance\n"
              "*     1    U   MaximumDistance\n");
}

TEST_F(VorReports, BindingStatusTable) {
    EXPECT_EQ(tableOf(run, &cRunVOR::writeResidueBindingStatusTable, peptide),
              "pdb_id: 1TST\n"
              "radii_filename: my.radii\n"
              "MD_threshold: 5\n"
              "A    12  VAL  1   MaximumDistance\n"
              "A   12A  GLY  0   MaximumDistance\n"
              "*     1    U  1   MaximumDistance\n");
}

TEST_F(VorReports, EmptyReports) {
    cPdbPeptide empty;
    EXPECT_EQ(xmlOf(run, &cRunVOR::writeContactsXml, empty),
              opening("peptideResidueContacts") +
                  "  <pdb_id></pdb_id>\n  <radii_filename>my.radii</radii_filename>\n"
                  "  <MD_threshold>5</MD_threshold>\n  <contacts>\n  </contacts>\n"
                  "</peptideResidueContacts>\n");
    EXPECT_EQ(xmlOf(run, &cRunVOR::writeHotSpotsXml, empty),
              opening("peptideBindingResidues") +
                  "  <pdb_id></pdb_id>\n  <radii_filename>my.radii</radii_filename>\n"
                  "  <MD_threshold>5</MD_threshold>\n  <binding_residues>\n"
                  "  </binding_residues>\n</peptideBindingResidues>\n");
    EXPECT_EQ(xmlOf(run, &cRunVOR::writeResidueBindingStatusXml, empty),
              opening("peptideResidueBindingStatus") +
                  "  <pdb_id></pdb_id>\n  <radii_filename>my.radii</radii_filename>\n"
                  "  <MD_threshold>5</MD_threshold>\n  <residues>\n  </residues>\n"
                  "</peptideResidueBindingStatus>\n");
    for (const tTableWriter write : {&cRunVOR::writeContactsTable, &cRunVOR::writeHotSpotsTable,
                                     &cRunVOR::writeResidueBindingStatusTable}) {
        EXPECT_EQ(tableOf(run, write, empty),
                  "pdb_id: \nradii_filename: my.radii\nMD_threshold: 5\n");
    }
}

TEST_F(VorReports, EachCriterionHasItsParametersInItsOrder) {
    run.threshold = 1234567.0;
    run.zSlice = 0.000123456789;
    run.probeRadius = 1.4;
    struct sCase {
        eInteractionCriterion criterion;
        const char* xml;
        const char* table;
    };
    for (const sCase& expected : std::initializer_list<sCase>{
             {maximumDistance, "  <MD_threshold>1.23457e+06</MD_threshold>\n",
              "MD_threshold: 1.23457e+06\n"},
             {prism, "  <PRISM_threshold>1.23457e+06</PRISM_threshold>\n",
              "PRISM_threshold: 1.23457e+06\n"},
             {dovreth,
              "  <TH_delta_asa>1.23457e+06</TH_delta_asa>\n"
              "  <TH_z_slice>0.000123457</TH_z_slice>\n"
              "  <TH_r_solvent>1.4</TH_r_solvent>\n",
              "TH_delta_asa: 1.23457e+06\nTH_z_slice: 0.000123457\nTH_r_solvent: 1.4\n"},
             {vorda, "", ""},
             {none, "", ""}}) {
        run.criterion = expected.criterion;
        cPdbPeptide empty;
        struct sReport {
            tXmlWriter write;
            const char* root;
            const char* list;
        };
        for (const sReport& report : std::initializer_list<sReport>{
                 {&cRunVOR::writeContactsXml, "peptideResidueContacts", "contacts"},
                 {&cRunVOR::writeHotSpotsXml, "peptideBindingResidues", "binding_residues"},
                 {&cRunVOR::writeResidueBindingStatusXml, "peptideResidueBindingStatus",
                  "residues"}}) {
            const std::string list(report.list);
            EXPECT_EQ(xmlOf(run, report.write, empty),
                      opening(report.root) +
                          "  <pdb_id></pdb_id>\n  <radii_filename>my.radii</radii_filename>\n" +
                          expected.xml + "  <" + list + ">\n  </" + list + ">\n</" + report.root +
                          ">\n");
        }
        for (const tTableWriter write : {&cRunVOR::writeContactsTable, &cRunVOR::writeHotSpotsTable,
                                         &cRunVOR::writeResidueBindingStatusTable}) {
            EXPECT_EQ(tableOf(run, write, empty),
                      std::string("pdb_id: \nradii_filename: my.radii\n") + expected.table);
        }
    }
}

TEST_F(VorReports, BindingReportsNameTheCriterionOfTheRun) {
    for (const auto& [criterion, name] : std::vector<std::pair<eInteractionCriterion, std::string>>{
             {prism, "PRISM"}, {dovreth, "Dovreth"}, {vorda, "VORDA"}, {none, ""}}) {
        run.criterion = criterion;
        const std::string field = std::string(18 - name.size(), ' ') + name;
        EXPECT_NE(
            tableOf(run, &cRunVOR::writeHotSpotsTable, peptide).find("A    12  VAL" + field + "\n"),
            std::string::npos);
        EXPECT_NE(tableOf(run, &cRunVOR::writeResidueBindingStatusTable, peptide)
                      .find("A    12  VAL  1" + field + "\n"),
                  std::string::npos);
        EXPECT_NE(xmlOf(run, &cRunVOR::writeHotSpotsXml, peptide)
                      .find("      <interaction_criterion>" + name + "</interaction_criterion>\n"),
                  std::string::npos);
        // Contacts carry the criterion that found them.
        EXPECT_NE(tableOf(run, &cRunVOR::writeContactsTable, peptide).find("VORDA"),
                  std::string::npos);
    }
}

TEST_F(VorReports, TextsAreWrittenAsTheyAre) {
    peptide.name = "<&>";
    peptide.residues[0].residueName = "\xE9";
    run.radiiFileName = "a&b \xFF";
    EXPECT_NE(xmlOf(run, &cRunVOR::writeResidueBindingStatusXml, peptide)
                  .find("  <pdb_id><&></pdb_id>\n  <radii_filename>a&b \xFF</radii_filename>\n"),
              std::string::npos);
    EXPECT_NE(xmlOf(run, &cRunVOR::writeHotSpotsXml, peptide)
                  .find("      <residue_name>\xE9</residue_name>\n"),
              std::string::npos);
    EXPECT_EQ(tableOf(run, &cRunVOR::writeHotSpotsTable, peptide)
                  .find("pdb_id: <&>\nradii_filename: a&b \xFF\n"),
              0U);
}

TEST_F(VorReports, PathsMakeNoLinesOfTableHeaders) {
    run.radiiFileName = "a\nMD_threshold: 9\rb";
    for (const tTableWriter write : {&cRunVOR::writeContactsTable, &cRunVOR::writeHotSpotsTable,
                                     &cRunVOR::writeResidueBindingStatusTable}) {
        EXPECT_NE(
            tableOf(run, write, peptide).find("\nradii_filename: a?MD_threshold: 9?b\nMD_thresh"),
            std::string::npos);
    }
}

TEST_F(VorReports, LongTextsAreNotCut) {
    peptide.chains.resize(1);
    peptide.chains[0].residueCount = 1;
    peptide.chains[0].chainId = "chain";
    peptide.residues[0].residueNumber = "1234567";
    peptide.residues[0].residueName = "RESIDUE";
    EXPECT_NE(tableOf(run, &cRunVOR::writeResidueBindingStatusTable, peptide)
                  .find("\nchain 1234567 RESIDUE  1   MaximumDistance\n"),
              std::string::npos);
}

TEST_F(VorReports, PlainReportsAreWellFormed) {
    const cScratchDirectory scratch;
    std::vector<std::string> files;
    for (const tXmlWriter write : {&cRunVOR::writeContactsXml, &cRunVOR::writeHotSpotsXml,
                                   &cRunVOR::writeResidueBindingStatusXml}) {
        files.push_back(scratch.file(std::to_string(files.size()) + ".xml"));
        writeContent(files.back(), xmlOf(run, write, peptide));
    }
    EXPECT_TRUE(areWellFormed(files));
}

TEST(VorNames, ContactTypes) {
    EXPECT_EQ(cRunVOR::getContactTypeString(hydrophobic), "Hydrophobic");
    EXPECT_EQ(cRunVOR::getContactTypeString(polar), "Polar");
    EXPECT_EQ(cRunVOR::getContactTypeString(ionic), "Ionic");
    EXPECT_EQ(cRunVOR::getContactTypeString(vanDerWaals), "vanDerWaals");
    for (const int other : {0, 5, -1, 9999}) {
        EXPECT_EQ(cRunVOR::getContactTypeString(static_cast<eContactType>(other)), "Undefined");
    }
}

TEST(VorNames, Criteria) {
    EXPECT_EQ(cRunVOR::getInteractionCriterionString(maximumDistance), "MaximumDistance");
    EXPECT_EQ(cRunVOR::getInteractionCriterionString(prism), "PRISM");
    EXPECT_EQ(cRunVOR::getInteractionCriterionString(dovreth), "Dovreth");
    EXPECT_EQ(cRunVOR::getInteractionCriterionString(vorda), "VORDA");
    for (const int other : {0, 5, -1}) {
        EXPECT_EQ(cRunVOR::getInteractionCriterionString(static_cast<eInteractionCriterion>(other)),
                  "");
    }
}

} // namespace kelmo

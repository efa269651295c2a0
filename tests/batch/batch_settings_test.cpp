// What a run does with its settings: defaults, configurations, tables, and what keeps it from
// starting.
#include "tests/batch/batch_fixture.h"
#include "tests/support/comma_locale.h"

namespace kelmo {

namespace {

using cNames = std::vector<std::string>;

class KevSettings : public cBatchFixture {
  protected:
    /// Runs and expects that nothing starts; returns what the user is told.
    std::string refusal(const cNames& arguments, const std::string& module = "kev") const {
        const sProcessOutcome outcome = run(module, arguments);
        EXPECT_EQ(outcome.exitStatus, 2) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(reports().empty());
        return outcome.err;
    }
};

class VorSettings : public KevSettings {
  protected:
    std::string refusal(const cNames& arguments) const {
        return KevSettings::refusal(arguments, "vor");
    }
};

const std::string tableDirectory = sourcePath("data/").string();

const char* const invalidRadii =
    "Not a valid radii file path!\n"
    "Please make sure that the path of the specified radii file is correct!\n";

} // namespace

TEST_F(KevSettings, DefaultsAreEverythingWithTheShippedTables) {
    const sProcessOutcome outcome = run("kev", {ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(reportNames(),
              (cNames{"1ubq_200703141530_bound.tbl", "1ubq_200703141530_bound.xml",
                      "1ubq_200703141530_unbound.tbl", "1ubq_200703141530_unbound.xml"}));
    const std::string table = report("bound.tbl");
    EXPECT_TRUE(table.starts_with("pdb_id: 1UBQ\n"
                                  "analysis type: bound\n"
                                  "radii_file: " +
                                  tableDirectory +
                                  "protor.radii\n"
                                  "ASA_zSice: 0.25\n"
                                  "ASA_rSolvent: 1.4\n"
                                  "rasa_file: " +
                                  tableDirectory +
                                  "ala-x-ala.asa\n"
                                  "CX_sRadius: 10\n"
                                  "CX_vAtom: 20.1\n"
                                  "radii_file: " +
                                  tableDirectory +
                                  "kyte-doolittle.hpb\n"
                                  "total ASA: "))
        << table.substr(0, 500);
    EXPECT_TRUE(contains(table, "max DPX|"));
}

TEST_F(KevSettings, DocumentedDefaultsGiveTheSameReports) {
    std::string configuration = fencedBlocks(sourceText("docs/formats/configuration.md")).at(0);
    const std::string place = "tables/";
    for (auto at = configuration.find(place); at != std::string::npos;
         at = configuration.find(place)) {
        configuration.replace(at, place.size(), tableDirectory);
    }
    directory.write("run.cfg", configuration);
    ASSERT_EQ(run("kev", {ubiquitin}).exitStatus, 0);
    const auto expected = reports();
    ASSERT_EQ(expected.size(), 4U);
    directory.makeDirectory("reports");
    EXPECT_EQ(
        runAlone({"kev", "--config", "run.cfg", "--stamp=200703141530", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(filesIn(directory.path() / "reports"), expected);
}

TEST_F(KevSettings, ConfigurationDecidesWhatIsComputedAndWritten) {
    directory.write("tables/my.radii", sourceText("data/protor.radii"));
    directory.write("run.cfg", "analyze_bound:\t0\nanalyze_unbound:\t1\ncalc_asa:\t1\n"
                               "z_slice:\t0.5\nr_solvent:\t1.2\nwrite_asa:\t0\ncalc_rasa:\t0\n"
                               "calc_dpx:\t0\ncalc_cx:\t1\ncx_threshold:\t8.5\ncx_volume:\t18\n"
                               "calc_hydro:\t0\nradii_filename:\ttables/my.radii\n"
                               "write_xml:\t0\nwrite_table:\t1\n");
    EXPECT_EQ(run("kev", {"--config", "run.cfg", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(reportNames(), (cNames{"1ubq_200703141530_unbound.tbl"}));
    const std::string table = report("unbound.tbl");
    EXPECT_TRUE(table.starts_with("pdb_id: 1UBQ\nanalysis type: unbound\n"
                                  "radii_file: tables/my.radii\nASA_zSice: 0.5\n"
                                  "ASA_rSolvent: 1.2\nCX_sRadius: 8.5\nCX_vAtom: 18\n\n"))
        << table.substr(0, 300);
    EXPECT_FALSE(contains(table, "total ASA|"));
    EXPECT_TRUE(contains(table, "max CX|"));
}

TEST_F(KevSettings, SetOverridesTheConfigurationAndTheDefaults) {
    directory.write("run.cfg", "z_slice:\t0.5\nwrite_xml:\t0\n");
    EXPECT_EQ(run("kev", {"--config", "run.cfg", "--set", "z_slice=0.35", "--set",
                          "analyze_unbound=0", "--set", "r_solvent=0", ubiquitin})
                  .exitStatus,
              0);
    EXPECT_EQ(reportNames(), (cNames{"1ubq_200703141530_bound.tbl"}));
    EXPECT_TRUE(contains(report("bound.tbl"), "\nASA_zSice: 0.35\nASA_rSolvent: 0\n"));
}

TEST_F(KevSettings, SlicesMayBeFinerThanTheWindowOffers) {
    EXPECT_EQ(run("kev", {"--set=z_slice=0.01", ubiquitin}).exitStatus, 0);
    EXPECT_TRUE(contains(report("bound.tbl"), "\nASA_zSice: 0.01\n"));
}

TEST_F(KevSettings, CompleteFormIsStatedAndTakesStandardAreasOfItsOwn) {
    const sProcessOutcome outcome = run("kev", {"--set=asa_form=complete", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_FALSE(contains(outcome.err, "standard areas")) << outcome.err;
    for (const char* state : {"bound", "unbound"}) {
        const std::string table = report(state + std::string(".tbl"));
        EXPECT_TRUE(contains(table, "\nASA_rSolvent: 1.4\nASA_form: complete\nrasa_file: "))
            << state;
        EXPECT_TRUE(contains(table, "/ala-x-ala-complete.asa\n"));
        EXPECT_TRUE(contains(report(state + std::string(".xml")),
                             "  <ASA_rSolvent>1.4</ASA_rSolvent>\n"
                             "  <ASA_form>complete</ASA_form>\n  <rasa_filename>"));
    }
    // FreeSASA, Lee & Richards, 1000 slices: 4800.3.
    EXPECT_TRUE(contains(report("bound.xml"), "<asa>\n    <total>4798."));
}

TEST_F(KevSettings, StandardAreasOfTheOtherFormAreWarnedOf) {
    directory.write("mine.asa", sourceText("data/ala-x-ala.asa"));
    sProcessOutcome outcome =
        run("kev", {"--set=asa_form=complete", "--set=standard_asa=mine.asa", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(contains(outcome.err, "The standard areas are those of the classic form of the "
                                      "surface; with asa_form complete take "
                                      "ala-x-ala-complete.asa"))
        << outcome.err;
    directory.write("mine.asa", sourceText("data/ala-x-ala-complete.asa"));
    outcome = run("kev", {"--set=standard_asa=mine.asa", ubiquitin});
    EXPECT_TRUE(contains(outcome.err, "with asa_form classic take ala-x-ala.asa")) << outcome.err;
    outcome = run("kev", {"--set=standard_asa=mine.asa", "--set=calc_rasa=0", ubiquitin});
    EXPECT_FALSE(contains(outcome.err, "standard areas")) << outcome.err;
}

TEST_F(KevSettings, DifferenceIsAThirdReportOfTheSameShape) {
    EXPECT_EQ(run("kev", {"--set=write_difference=1", haemoglobin}).exitStatus, 0);
    ASSERT_EQ(reports().size(), 6U);
    const std::string table = reports().at("2hhb_200703141530_difference.tbl");
    EXPECT_TRUE(table.starts_with("pdb_id: 2HHB\nanalysis type: difference\n")) << table;
    EXPECT_TRUE(contains(table, "min CX|\n")) << "no hydrophobicity";
    EXPECT_TRUE(contains(reports().at("2hhb_200703141530_difference.xml"),
                         "  <analysis_type>difference</analysis_type>\n"));
    const auto withStates = reports();
    directory.makeDirectory("alone");
    EXPECT_EQ(
        runAlone({"kev", "--output-dir=alone", "--stamp=200703141530", "--set=write_difference=1",
                  "--set=analyze_bound=0", "--set=analyze_unbound=0", haemoglobin})
            .exitStatus,
        0);
    const auto alone = filesIn(directory.path() / "alone");
    EXPECT_EQ(alone.size(), 2U);
    for (const auto& [name, content] : alone) {
        EXPECT_TRUE(content == withStates.at(name)) << name;
    }
}

TEST_F(KevSettings, RelativeAreasAndDepthSwitchTheAreasOn) {
    for (const char* attribute : {"calc_rasa", "calc_dpx"}) {
        directory.write("run.cfg", "calc_asa:\t0\ncalc_rasa:\t0\ncalc_dpx:\t0\ncalc_cx:\t0\n"
                                   "calc_hydro:\t0\n");
        EXPECT_EQ(
            run("kev", {"--config=run.cfg", std::string("--set=") + attribute + "=1", ubiquitin})
                .exitStatus,
            0);
        const std::string table = report("bound.tbl");
        EXPECT_TRUE(contains(table, "ASA_zSice: 0.25")) << attribute;
        EXPECT_TRUE(contains(table, "total ASA|")) << attribute;
    }
}

TEST_F(KevSettings, AreasAreWrittenOnlyWhenTheyAreComputed) {
    EXPECT_EQ(run("kev", {"--set=calc_asa=0", "--set=calc_rasa=0", "--set=calc_dpx=0",
                          "--set=write_asa=1", ubiquitin})
                  .exitStatus,
              0);
    EXPECT_FALSE(contains(report("bound.tbl"), "ASA"));
    EXPECT_TRUE(contains(report("bound.tbl"), "Hydrophobicity|"));
}

TEST_F(KevSettings, ChecksComeInTheOrderOfTheWindow) {
    directory.write("run.cfg", "calc_asa:\t0\ncalc_rasa:\t0\ncalc_dpx:\t0\ncalc_cx:\t0\n"
                               "calc_hydro:\t0\nanalyze_bound:\t0\nanalyze_unbound:\t0\n"
                               "write_xml:\t0\nwrite_table:\t0\noutput_dir:\t\n"
                               "radii_filename:\t\n");
    cNames arguments{"kev", "--config=run.cfg"};
    const auto expectAndRepair = [&](const std::string& text, const cNames& repair) {
        const sProcessOutcome outcome = runAlone(arguments);
        EXPECT_EQ(outcome.exitStatus, 2);
        EXPECT_EQ(outcome.err, text);
        arguments.insert(arguments.end(), repair.begin(), repair.end());
    };
    expectAndRepair("No files loaded for analysis\n", {ubiquitin});
    expectAndRepair("No attributes selected for analysis!\n", {"--set=calc_cx=1"});
    expectAndRepair("Please choose an analysis type!\n", {"--set=analyze_bound=1"});
    expectAndRepair("Please choose an output file format (XML or Table)!\n",
                    {"--set=write_table=1"});
    expectAndRepair("run.cfg:10: Please choose an output directory!\n", {"--set=output_dir=no"});
    expectAndRepair("--set output_dir=no: The output directory path is invalid! Please specify a "
                    "valid directory\n",
                    {"--output-dir=out"});
    expectAndRepair("run.cfg:11: Please specify a radii file!\n",
                    {"--set=radii_filename=no.radii"});
    expectAndRepair(std::string("--set radii_filename=no.radii: Could not open file no.radii\n") +
                        invalidRadii,
                    {"--set=radii_filename=" + tableDirectory + "protor.radii"});
    EXPECT_EQ(runAlone(arguments).exitStatus, 0);
}

TEST_F(KevSettings, OutputDirectoryMustBeADirectory) {
    directory.write("file", "");
    for (const std::string name : {"file", "missing", "file/below"}) {
        const sProcessOutcome outcome = runAlone({"kev", "--output-dir", name, ubiquitin});
        EXPECT_EQ(outcome.exitStatus, 2);
        EXPECT_EQ(outcome.err, "--output-dir " + name +
                                   ": The output directory path is invalid! Please specify a valid "
                                   "directory\n");
    }
    EXPECT_EQ(runAlone({"kev", "--output-dir=", ubiquitin}).err,
              "--output-dir : Please choose an output directory!\n");
}

TEST_F(KevSettings, OutputDirectoryWithoutRoomForFilesIsRefused) {
    // Nobody can create files there, whatever his rights.
    const sProcessOutcome outcome = runAlone({"kev", "--output-dir=/proc/self", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.err, "No file can be created in the output directory /proc/self/: "
                           "No such file or directory\n");
}

TEST_F(KevSettings, CurrentDirectoryIsTheDefaultOutputDirectory) {
    EXPECT_EQ(runAlone({"kev", "--stamp=200703141530", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(filesIn(directory.path()).count("1ubq_200703141530_bound.xml"), 1U);
}

TEST_F(KevSettings, OptionWinsOverTheOutputDirectoryOfTheConfiguration) {
    directory.write("run.cfg", "output_dir:\t/no/such/directory\n");
    EXPECT_EQ(run("kev", {"--config=run.cfg", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(reports().size(), 4U);
}

TEST_F(KevSettings, OutputDirectoryMayEndInABackslash) {
    directory.makeDirectory("odd\\");
    EXPECT_EQ(runAlone({"kev", "--output-dir=odd\\", ubiquitin}).exitStatus, 0);
    EXPECT_EQ(filesIn(directory.path() / "odd\\").size(), 4U);
}

TEST_F(KevSettings, FaultyLineOfATableIsNamedWithThePlaceOfItsSetting) {
    directory.write("bad.radii", "# radii\n\nALA_CA  1.88\nALA_CB  1e0\n");
    directory.write("run.cfg", "# tables\nradii_filename:\tbad.radii\n");
    EXPECT_EQ(refusal({"--config=run.cfg", ubiquitin}),
              "run.cfg:2: bad.radii: Radii file not properly formatted!\nError in line: 4\n");
    directory.write("bad.asa", "ALA 1 2 3 4\n");
    EXPECT_EQ(refusal({"--set=standard_asa=bad.asa", ubiquitin}),
              "--set standard_asa=bad.asa: bad.asa: Standard ASA file not properly formatted!\n"
              "Error in line: 1\n");
    directory.write("bad.hpb", "ALA 1.0\nGLY one\n");
    EXPECT_EQ(refusal({"--set=hydro_file=bad.hpb", ubiquitin}),
              "--set hydro_file=bad.hpb: bad.hpb: Hydrophobicity file not properly formatted!\n"
              "Error in line: 2\n");
}

TEST_F(KevSettings, TablesMustHaveAllAminoAcids) {
    std::string scale = sourceText("data/kyte-doolittle.hpb");
    scale.erase(scale.find("\nGLY"),
                scale.find('\n', scale.find("\nGLY") + 1) - scale.find("\nGLY"));
    directory.write("short.hpb", scale);
    EXPECT_EQ(
        refusal({"--set=hydro_file=short.hpb", ubiquitin}),
        "--set hydro_file=short.hpb: short.hpb: Did not find entries for all 20 standard amino "
        "acids in hydrophobicity file file! Missing: GLY \n");
    directory.write("empty.asa", "");
    EXPECT_TRUE(contains(refusal({"--set=standard_asa=empty.asa", ubiquitin}),
                         "Did not find entries for all 20 standard amino acids in standard asa "
                         "file! Missing: ALA ARG "));
}

TEST_F(KevSettings, MissingTablesAreRefused) {
    EXPECT_EQ(refusal({"--set=standard_asa=no.asa", ubiquitin}),
              "--set standard_asa=no.asa: Could not open file no.asa\n"
              "Not a valid standard asa file path!\n"
              "Please make sure that the path of the specified standard asa file is correct!\n");
    EXPECT_EQ(refusal({"--set=hydro_file=", ubiquitin}),
              "--set hydro_file=: Could not open file \n"
              "Not a valid hydrophobicity file path!\n"
              "Please make sure that the path of the specified hydrophobicity file is correct!\n");
    EXPECT_TRUE(contains(refusal({"--set=radii_filename=.", ubiquitin}), invalidRadii))
        << "a directory is no table";
}

TEST_F(KevSettings, TablesThatAreNotNeededAreNotRead) {
    EXPECT_EQ(run("kev", {"--set=calc_rasa=0", "--set=standard_asa=no.asa", "--set=calc_hydro=0",
                          "--set=hydro_file=", ubiquitin})
                  .exitStatus,
              0);
}

TEST_F(KevSettings, FaultsOfTheConfigurationStopEverything) {
    directory.write("run.cfg", "calc_cx:\t1\nz_slice:\t0\n");
    EXPECT_EQ(refusal({"--config=run.cfg", ubiquitin}),
              "run.cfg:2: z_slice must be a number from 0.01 to 1, not \"0\"\n");
    EXPECT_EQ(refusal({"--config=no.cfg", ubiquitin}), "--config: Could not open file no.cfg\n");
    EXPECT_EQ(refusal({"--set=nonsense=1", ubiquitin}),
              "--set nonsense=1: \"nonsense\" is no key of a kev configuration\n");
}

TEST_F(VorSettings, DefaultsAreAllReportsByMaximumDistance) {
    const sProcessOutcome outcome = run("vor", {ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_EQ(
        reportNames(),
        (cNames{"1ubq_200703141530_binding_residues.tbl", "1ubq_200703141530_binding_residues.xml",
                "1ubq_200703141530_binding_status.tbl", "1ubq_200703141530_binding_status.xml",
                "1ubq_200703141530_contacts.tbl", "1ubq_200703141530_contacts.xml"}));
    EXPECT_TRUE(contains(report("contacts.tbl"), "threshold: 4.5\n")) << report("contacts.tbl");
    EXPECT_TRUE(contains(report("contacts.tbl"), tableDirectory + "protor.radii\n"));
}

TEST_F(VorSettings, DocumentedConfigurationGivesTheSameReports) {
    std::string configuration = fencedBlocks(sourceText("docs/formats/configuration.md")).at(1);
    const std::string place = "tables/";
    configuration.replace(configuration.find(place), place.size(), tableDirectory);
    directory.write("run.cfg", configuration);
    ASSERT_EQ(run("vor", {antibody}).exitStatus, 0);
    directory.makeDirectory("reports");
    EXPECT_EQ(runAlone({"vor", "--config=run.cfg", "--stamp=200703141530", antibody}).exitStatus,
              0);
    EXPECT_EQ(filesIn(directory.path() / "reports"), reports());
}

// In the classic form three lysines of deoxyhaemoglobin gain more than 5 Å² in the complex.
TEST_F(VorSettings, AreaChangeGoesByTheFormAndStatesIt) {
    const auto tableWith = [&](const std::string& form) {
        EXPECT_EQ(run("vor", {"--set=contact_criterion=3", "--set=delta_asa=5",
                              "--set=asa_form=" + form, haemoglobin})
                      .exitStatus,
                  0);
        return reports().at("2hhb_200703141530_binding_residues.tbl");
    };
    const std::string classic = tableWith("classic");
    EXPECT_FALSE(contains(classic, "form"));
    const std::string complete = tableWith("complete");
    EXPECT_TRUE(contains(complete, "TH_r_solvent: 1.4\nTH_asa_form: complete\n"));
    EXPECT_TRUE(contains(reports().at("2hhb_200703141530_binding_status.xml"),
                         "  <TH_r_solvent>1.4</TH_r_solvent>\n"
                         "  <TH_asa_form>complete</TH_asa_form>\n"));
    std::size_t gone = 0;
    for (const std::string& line : linesOf(classic)) {
        gone += contains(line, "LYS") && !contains(complete, line) ? 1U : 0U;
    }
    EXPECT_GE(gone, 3U);
    EXPECT_EQ(run("vor", {"--set=asa_form=complete", haemoglobin}).exitStatus, 0);
    EXPECT_FALSE(contains(reports().at("2hhb_200703141530_contacts.tbl"), "form"))
        << "no area plays a part";
}

TEST_F(VorSettings, InterfacesAreAFourthReport) {
    EXPECT_EQ(run("vor", {"--set=contact_criterion=4", "--set=write_interfaces=1",
                          "--set=asa_form=complete", "--set=delta_asa=2", haemoglobin})
                  .exitStatus,
              0);
    ASSERT_EQ(reports().size(), 8U);
    const std::string table = reports().at("2hhb_200703141530_interfaces.tbl");
    EXPECT_TRUE(contains(table, "\ndelta_asa: 2\nz_slice: 0.25\nr_solvent: 1.4\n"
                                "asa_form: complete\n\n   chain 1|   chain 2|"))
        << table;
    const std::string document = reports().at("2hhb_200703141530_interfaces.xml");
    EXPECT_TRUE(contains(document, "  <asa_form>complete</asa_form>\n  <interfaces>\n"
                                   "    <interface>\n"));
    std::size_t ionic = 0;
    for (const std::string& line : linesOf(table)) {
        std::istringstream fields(line);
        std::vector<std::string> values;
        for (std::string value; fields >> value;) {
            values.push_back(value);
        }
        ionic += values.size() == 19 ? std::stoul(values.at(14)) : 0;
    }
    EXPECT_EQ(ionic, 7U) << table;
}

TEST_F(VorSettings, CriteriaHaveThresholdsOfTheirOwn) {
    EXPECT_EQ(run("vor", {"--set=contact_criterion=2", ubiquitin}).exitStatus, 0);
    EXPECT_TRUE(contains(report("contacts.tbl"), "PRISM_threshold: 0.5\n"));
    EXPECT_EQ(run("vor", {"--set=contact_criterion=2", "--set=threshold=5", ubiquitin}).exitStatus,
              0);
    EXPECT_TRUE(contains(report("contacts.tbl"), "PRISM_threshold: 5\n"));
    EXPECT_EQ(run("vor", {"--set=contact_criterion=3", ubiquitin}).exitStatus, 0);
    EXPECT_TRUE(contains(report("binding_residues.tbl"),
                         "TH_delta_asa: 1\nTH_z_slice: 0.25\nTH_r_solvent: 1.4\n"));
    EXPECT_FALSE(contains(report("binding_residues.tbl"), "form"));
    EXPECT_EQ(run("vor", {"--set=contact_criterion=3", "--set=delta_asa=2.5", "--set=z_slice=0.5",
                          "--set=r_solvent=1.2", "--set=threshold=9", ubiquitin})
                  .exitStatus,
              0);
    EXPECT_TRUE(contains(report("binding_residues.tbl"),
                         "TH_delta_asa: 2.5\nTH_z_slice: 0.5\nTH_r_solvent: 1.2\n"));
}

TEST_F(VorSettings, PrismHasASmallerRange) {
    directory.write("run.cfg", "contact_criterion:\t1\nthreshold:\t7\n");
    EXPECT_EQ(run("vor", {"--config=run.cfg", ubiquitin}).exitStatus, 0);
    const auto before = reports();
    const sProcessOutcome outcome =
        run("vor", {"--config=run.cfg", "--set=contact_criterion=2", ubiquitin});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.err, "run.cfg:2: by contact_criterion 2, threshold must be a number from 0 "
                           "to 5, not \"7\"\n");
    EXPECT_EQ(reports(), before);
}

TEST_F(VorSettings, CriterionZeroIsRefused) {
    directory.write("run.cfg", "contact_criterion:\t0\n");
    EXPECT_TRUE(refusal({"--config=run.cfg", ubiquitin})
                    .starts_with("run.cfg:1: contact_criterion must be 1 (maximum distance), "));
}

TEST_F(VorSettings, ContactsByAreaAreAnEmptyReport) {
    EXPECT_EQ(run("vor", {"--set=contact_criterion=3", "--set=write_contacts=1",
                          "--set=write_binding_residues=0", "--set=write_binding_state=0",
                          "--set=write_xml=0", antibody})
                  .exitStatus,
              0);
    EXPECT_EQ(reportNames(), (cNames{"1a0q_200703141530_contacts.tbl"}));
    EXPECT_TRUE(reports().begin()->second.ends_with("TH_r_solvent: 1.4\n"));
}

TEST_F(VorSettings, ContactsByAreaAreNotAskedForByDefault) {
    EXPECT_EQ(run("vor", {"--set=contact_criterion=3", "--set=write_xml=0", antibody}).exitStatus,
              0);
    EXPECT_EQ(reportNames(), (cNames{"1a0q_200703141530_binding_residues.tbl",
                                     "1a0q_200703141530_binding_status.tbl"}));
    const sProcessOutcome outcome =
        run("vor", {"--set=contact_criterion=3", "--set=write_binding_residues=0",
                    "--set=write_binding_state=0", antibody});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.err, "Please choose an output file type (Contacts, Binding Residues or "
                           "Binding State)!\n");
}

TEST_F(VorSettings, ChecksComeInTheOrderOfTheWindow) {
    cNames arguments{"vor",
                     "--set=write_xml=0",
                     "--set=write_table=0",
                     "--set=write_contacts=0",
                     "--set=write_binding_residues=0",
                     "--set=write_binding_state=0",
                     "--set=output_dir=",
                     "--set=radii_filename="};
    const auto expectAndRepair = [&](const std::string& text, const cNames& repair) {
        const sProcessOutcome outcome = runAlone(arguments);
        EXPECT_EQ(outcome.exitStatus, 2);
        EXPECT_EQ(outcome.err, text);
        arguments.insert(arguments.end(), repair.begin(), repair.end());
    };
    expectAndRepair("No files loaded for analysis!\n", {ubiquitin});
    expectAndRepair("Please choose an output file format (XML or Table)!\n", {"--set=write_xml=1"});
    expectAndRepair("Please choose an output file type (Contacts, Binding Residues or Binding "
                    "State)!\n",
                    {"--set=write_binding_state=1"});
    expectAndRepair("--set output_dir=: Please choose an output directory!\n",
                    {"--set=output_dir=no"});
    expectAndRepair("--set output_dir=no: The output directory path is invalid! Please specify a "
                    "valid directory!\n",
                    {"--set=output_dir=out"});
    expectAndRepair("--set radii_filename=: Please specify a radii file!\n",
                    {"--set=radii_filename=no"});
    expectAndRepair(std::string("--set radii_filename=no: Could not open file no\n") + invalidRadii,
                    {"--set=radii_filename=" + tableDirectory + "protor.radii"});
    EXPECT_EQ(runAlone(arguments).exitStatus, 0);
}

TEST_F(VorSettings, ContactRulesComeFromTheOptionTheDirectoryOrTheProgram) {
    const sProcessOutcome shipped = run("vor", {"--set=contact_criterion=4", antibody});
    EXPECT_EQ(shipped.exitStatus, 0);
    EXPECT_TRUE(
        shipped.err.starts_with("Contact rules from " + tableDirectory + "aa_contacts.txt\n"))
        << shipped.err;
    EXPECT_TRUE(contains(reports().at("1a0q_200703141530_contacts.tbl"), "Polar"));

    directory.write("aa_contacts.txt", "header only\n");
    const sProcessOutcome local = run("vor", {"--set=contact_criterion=4", antibody});
    EXPECT_TRUE(local.err.starts_with("Contact rules from aa_contacts.txt\n")) << local.err;
    EXPECT_FALSE(contains(reports().at("1a0q_200703141530_contacts.tbl"), "Polar"));

    const std::string rules = tableDirectory + "aa_contacts.txt";
    EXPECT_EQ(
        run("vor", {"--set=contact_criterion=4", "--contact-rules", rules, antibody}).exitStatus,
        0);
    EXPECT_TRUE(contains(reports().at("1a0q_200703141530_contacts.tbl"), "Polar"));
}

TEST_F(VorSettings, FaultyContactRulesAreRefused) {
    directory.write("rules.txt", "header\nALA   4  CB   ARG   4  CB    4.50     1\n\n");
    EXPECT_EQ(refusal({"--set=contact_criterion=4", "--contact-rules=rules.txt", ubiquitin}),
              "--contact-rules: rules.txt: Contact rules file not properly formatted!\n"
              "Error in line: 3\n");
    EXPECT_EQ(refusal({"--set=contact_criterion=4", "--contact-rules=no.txt", ubiquitin}),
              "--contact-rules: Could not open file no.txt\n");
}

TEST_F(VorSettings, ContactRulesAreRefusedByOtherCriteria) {
    for (const char* setting : {"contact_criterion=1", "contact_criterion=3", "threshold=5"}) {
        EXPECT_EQ(refusal({"--set", setting, "--contact-rules=rules.txt", ubiquitin}),
                  "Option --contact-rules needs contact_criterion 4\n");
    }
}

TEST_F(KevSettings, ProgramIsInstalledWithItsTables) {
    // A copy as an installation lays it out: the tables are found from where the program is.
    directory.makeDirectory("prefix/bin");
    directory.makeDirectory("prefix/share/kelmo");
    std::filesystem::copy(batchProgram(), directory.path() / "prefix/bin/kelmo-batch");
    for (const char* table : {"protor.radii", "ala-x-ala.asa", "kyte-doolittle.hpb"}) {
        std::filesystem::copy(tableDirectory + table, directory.path() / "prefix/share/kelmo");
    }
    sProcessManner manner;
    manner.program = directory.path() / "prefix/bin/kelmo-batch";
    const sProcessOutcome outcome = run("kev", {ubiquitin}, manner);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_TRUE(contains(report("bound.tbl"), "\nradii_file: " + directory.path().string() +
                                                  "/prefix/share/kelmo/protor.radii\n"));
}

TEST_F(KevSettings, ShippedTableThatIsMissingIsReported) {
    std::filesystem::copy(batchProgram(), directory.path() / "kelmo-batch");
    sProcessManner manner;
    manner.program = directory.path() / "kelmo-batch";
    const sProcessOutcome outcome =
        run("kev", {"--set=radii_filename=" + tableDirectory + "protor.radii", ubiquitin}, manner);
    if (outcome.exitStatus == 0) {
        // The program is installed on this machine too, and its tables are found there.
        EXPECT_EQ(reports().size(), 4U);
        return;
    }
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_TRUE(outcome.err.starts_with("The table ala-x-ala.asa, which comes with the program, is "
                                        "missing. These directories were searched:\n"))
        << outcome.err;
}

TEST_F(KevSettings, TableThatCannotBeReadToItsEndIsRefused) {
    // It looks like a regular file, and every attempt to read it fails.
    const std::string unreadable = "/proc/self/mem";
    EXPECT_EQ(refusal({"--set=radii_filename=" + unreadable, ubiquitin}),
              "--set radii_filename=" + unreadable + ": " + unreadable +
                  ": Radii file could not be read to its end!\n");
    EXPECT_EQ(refusal({"--set=standard_asa=" + unreadable, ubiquitin}),
              "--set standard_asa=" + unreadable + ": " + unreadable +
                  ": Standard ASA file could not be read to its end!\n");
    EXPECT_EQ(refusal({"--set=hydro_file=" + unreadable, ubiquitin}),
              "--set hydro_file=" + unreadable + ": " + unreadable +
                  ": Hydrophobicity file could not be read to its end!\n");
    EXPECT_EQ(
        refusal({"--set=contact_criterion=4", "--contact-rules=" + unreadable, ubiquitin}, "vor"),
        "--contact-rules: " + unreadable + ": Contact rules file could not be read to its end!\n");
}

TEST_F(VorSettings, LineWithoutEndIsRefused) {
    directory.write("rules.txt", "header\n" + std::string(17U << 20U, ' '));
    EXPECT_EQ(refusal({"--set=contact_criterion=4", "--contact-rules=rules.txt", ubiquitin}),
              "--contact-rules: rules.txt: Contact rules file not properly formatted!\n"
              "Error in line: 2\n");
}

TEST_F(VorSettings, DecimalCommaOfTheUserChangesNothing) {
    directory.write("odd.cfg", "threshold: 4.25\n");
    const auto reportsOf = [&](const std::string& module, const sProcessManner& manner) {
        cNames arguments{"--jobs=1", ubiquitin, antibody};
        if (module == "vor") {
            arguments.insert(arguments.begin(), "--config=odd.cfg");
        }
        const sProcessOutcome outcome = run(module, arguments, manner);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
        auto written = reports();
        written["messages"] = outcome.err;
        return written;
    };
    sProcessManner withComma;
    withComma.environment = commaLocaleEnvironment();
    for (const char* module : {"kev", "vor"}) {
        const auto usual = reportsOf(module, {});
        EXPECT_EQ(reportsOf(module, withComma), usual) << module;
    }
}

} // namespace kelmo

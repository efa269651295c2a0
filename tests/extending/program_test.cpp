// What a new attribute, report format, criterion and setting take: a row each, and everything that
// a user meets follows: reports, form, configuration files, command line and checks.
#include "analysis/configuration.h"
#include "app/kelmo_linux.h"
#include "base/usage_error.h"
#include "batch/prepared_run.h"
#include "run/file_path.h"
#include "tests/app/app_test_tools.h"
#include "tests/extending/atom_count.h"
#include "tests/extending/line_format.h"
#include "tests/extending/number_criterion.h"
#include "tests/support/pdb_lines.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QRadioButton>
#include <QTest>

#include <memory>

namespace kelmo {

class cExtendingTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void attributeIsComputedAndReported();
    void attributeIsInFormAndConfiguration();
    void formatWritesItsReports();
    void criterionFindsContacts();
    void criterionIsInTheForm();
    void settingIsReadCheckedAndKept();
};

namespace {

const QString stamp = QStringLiteral("200703141530");

/// The reports of two glycines by the command line, by their names' ends.
std::map<std::string, std::string> reportsOf(eModule module,
                                             const std::vector<std::string>& overrides) {
    const cWorkingDirectory place;
    sOptions options;
    options.module = module;
    options.overrides = overrides;
    options.overrides.push_back("radii_filename=" +
                                pathToBytes(place.file("r", glycineRadiiFile())));
    const QString structure = place.file("1tst.pdb", QByteArray::fromStdString(twoGlycines()));
    const sPreparedRun run = prepareRun(settingsFrom(options), cInputPaths{pathToBytes(structure)});
    const std::unique_ptr<cAnalysisRun> worker = run.makeWorker();
    worker->analyseFile(structure, stamp);
    std::map<std::string, std::string> reports;
    for (const auto& [name, bytes] : filesIn(place.path())) {
        if (name.startsWith("1tst_")) {
            reports[name.mid(18).toStdString()] = bytes.toStdString();
        }
    }
    return reports;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace

void cExtendingTest::initTestCase() {
    addAttribute(atomCount());
    addReportFormat(lineFormat());
    addCriterion(numberCriterion(), {numberGap()});
    addSetting(eModule::kev, {.key = "patience",
                              .kind = eSettingKind::number,
                              .group = eSettingGroup::tables,
                              .byDefault = "2",
                              .minimum = 1.0,
                              .maximum = 5.0,
                              .unit = "h",
                              .title = "Patience",
                              .help = "How long to wait.",
                              .isWrittenOnlyIfChanged = true});
}

void cExtendingTest::attributeIsComputedAndReported() {
    const auto reports = reportsOf(eModule::kev, {"calc_rasa=0", "calc_hydro=0"});
    QVERIFY(contains(reports.at("bound.xml"), "          <atom_count>4</atom_count>\n"));
    QVERIFY(contains(reports.at("unbound.xml"), "          <atom_count>4</atom_count>\n"));
    QVERIFY(contains(reports.at("bound.tbl"), "          atoms|\n"));
    QVERIFY(contains(reports.at("bound.tbl"), "               4\n"));
    const auto without =
        reportsOf(eModule::kev, {"calc_rasa=0", "calc_hydro=0", "calc_atom_count=0"});
    QVERIFY(!contains(without.at("bound.xml"), "atom_count"));
}

void cExtendingTest::attributeIsInFormAndConfiguration() {
    const cWorkingDirectory place;
    kelmo window;
    auto* box = widget<QCheckBox>(window, "setting_calc_atom_count");
    QVERIFY2(box->text().remove('&').startsWith("Number of atoms"), qPrintable(box->text()));
    QVERIFY(box->toolTip().startsWith("How many atoms"));
    box->setChecked(false);
    clickAndChoose(window, "pushButtonKEVCreateConfigFile", place.path("a.cfg"));
    QVERIFY(bytesOf(place.path("a.cfg")).contains("calc_atom_count:\t0\n"));
    cSettings settings(eModule::kev);
    settings.setFlag("calc_atom_count", true);
    QVERIFY(contains(configurationText(settings), "calc_atom_count:\t1\n"));
}

void cExtendingTest::formatWritesItsReports() {
    const auto kev = reportsOf(eModule::kev, {"calc_rasa=0", "calc_hydro=0", "calc_dpx=0",
                                              "calc_asa=0", "calc_cx=0", "write_lines=1"});
    QCOMPARE(kev.at("bound.lines"), std::string("A 1 atom_count=4.000000\n"
                                                "B 2 atom_count=4.000000\n"));
    QVERIFY(kev.contains("unbound.lines"));
    const auto vor = reportsOf(eModule::vor, {"write_lines=1"});
    QCOMPARE(vor.at("contacts.lines"), std::string("A1-B2\nB2-A1\n"));
    QVERIFY(!vor.contains("binding_status.lines"));
}

void cExtendingTest::criterionFindsContacts() {
    const auto reports = reportsOf(eModule::vor, {"contact_criterion=5"});
    const std::string& table = reports.at("contacts.tbl");
    QVERIFY(contains(table, "CN_gap: 1\n"));
    QVERIFY(contains(table, "A     1  GLY  B     2  GLY        CloseNumbers\n"));
    QVERIFY(contains(reports.at("binding_residues.xml"),
                     "<interaction_criterion>CloseNumbers</interaction_criterion>"));
    const auto none = reportsOf(eModule::vor, {"contact_criterion=5", "number_gap=0"});
    QVERIFY(!contains(none.at("contacts.tbl"), "GLY"));
    cSettings settings(eModule::vor);
    QCOMPARE(settings.set("contact_criterion", "6"),
             std::string("contact_criterion must be 1 (maximum distance), 2 (PRISM), 3 (Dovreth), "
                         "4 (contact rules) or 5 (close numbers), not \"6\""));
}

void cExtendingTest::criterionIsInTheForm() {
    const cWorkingDirectory place;
    kelmo window;
    widget<QRadioButton>(window, "criterion_CloseNumbers")->setChecked(true);
    QVERIFY(!isChecked(window, "radioButtonMaxDistance"));
    setNumber(window, "setting_number_gap", 3.0);
    clickAndChoose(window, "pushButtonVORCreateConfigFile", place.path("a.cfg"));
    QVERIFY(bytesOf(place.path("a.cfg")).startsWith("contact_criterion:\t5\nnumber_gap:\t3\n"));
}

void cExtendingTest::settingIsReadCheckedAndKept() {
    const cWorkingDirectory place;
    cSettings settings(eModule::kev);
    QCOMPARE(settings.number("patience"), 2.0);
    QVERIFY(!contains(configurationText(settings), "patience"));
    assign("patience=3", settings);
    QVERIFY(contains(configurationText(settings), "patience:\t3\n"));
    QVERIFY_EXCEPTION_THROWN(assign("patience=6", settings), cUsageError);
    {
        kelmo window;
        auto* box = widget<QDoubleSpinBox>(window, "setting_patience");
        QCOMPARE(box->minimum(), 1.0);
        QCOMPARE(box->maximum(), 5.0);
        QCOMPARE(box->value(), 2.0);
        box->setValue(4.0);
    }
    const kelmo again;
    QCOMPARE(numberOf(again, "setting_patience"), 4.0);
}

} // namespace kelmo

QTEST_MAIN(kelmo::cExtendingTest)
#include "program_test.moc"

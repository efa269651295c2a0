#include "app/kev_page.h"

#include "ui_kelmo_main_window.h"

#include <QCoreApplication>

namespace kelmo {

namespace {

sPageWidgets widgetsOf(const Ui_kelmoMainWindow& form) {
    return {.display = form.textBrowserKEVDisplay,
            .runButton = form.pushButtonKEVRUN,
            .stopButton = form.pushButtonKEVStop,
            .outputDirectory = form.lineEditKEVOutputDir,
            .progressBar = form.progressBarKEV,
            .progressLabel = form.labelKEVProgress,
            .fileList = form.listWidgetKEVFileListDisplay,
            .fileCount = form.labelKEVFileCount,
            .preparationButton = form.pushButtonKEVPreparation,
            .preparationSummary = form.labelKEVPreparation,
            .resultsColumn = form.verticalLayoutKEVResults,
            .tables = form.groupBoxKEVTables,
            .page = form.tabKEV};
}

} // namespace

cKevPage::cKevPage(QWidget* itsWindow, cAnalysisRun* itsWorker, Ui_kelmoMainWindow& form)
    : cModulePage(eModule::kev, itsWindow, itsWorker, widgetsOf(form)), ui(form) {
    fields.bind("analyze_bound", ui.checkBoxKEVAnalyzeBound);
    fields.bind("analyze_unbound", ui.checkBoxKEVAnalyseChain);
    fields.bind("calc_asa", ui.checkBoxCalcASA);
    fields.bind("z_slice", ui.doubleSpinBoxASAZSlice);
    fields.bind("r_solvent", ui.doubleSpinBoxASARSolvent);
    fields.bind("write_asa", ui.checkBoxWriteASA);
    fields.bind("calc_rasa", ui.checkBoxCalcRASA);
    fields.bind("calc_dpx", ui.checkBoxCalcDPX);
    fields.bind("calc_cx", ui.checkBoxCalcCX);
    fields.bind("cx_threshold", ui.doubleSpinBoxCxThreshold);
    fields.bind("cx_volume", ui.doubleSpinBoxCXVatom);
    fields.bind("calc_hydro", ui.checkBoxCalcHydro);
    fields.bind("write_xml", ui.checkBoxKEVXMLOutput);
    fields.bind("write_table", ui.checkBoxKEVTableOutput);
    bindPath("standard_asa", ui.lineEditStandardASA);
    bindPath("hydro_file", ui.lineEditHydrophobicityFile);
    bindPath("radii_filename", ui.lineEditRadiiFile);
    bindPath("output_dir", ui.lineEditKEVOutputDir);
    addFurtherSettings();
    offerShippedTables(ui.toolButtonRadiiFileShipped, "radii_filename");
    offerShippedTables(ui.toolButtonStandardASAShipped, "standard_asa");
    offerShippedTables(ui.toolButtonHydrophobicityFileShipped, "hydro_file");
}

void cKevPage::areaClicked() {
    isAreaChosenByUser = ui.checkBoxCalcASA->isChecked();
    followAttributes();
    if (ui.checkBoxWriteASA->isEnabled()) {
        ui.checkBoxWriteASA->setChecked(ui.checkBoxCalcASA->isChecked());
    }
}

void cKevPage::followAttributes() {
    const bool isAreaNeeded = ui.checkBoxCalcRASA->isChecked() || ui.checkBoxCalcDPX->isChecked();
    ui.checkBoxCalcASA->setChecked(isAreaChosenByUser || isAreaNeeded);
    ui.checkBoxWriteASA->setEnabled(isAreaNeeded);
}

void cKevPage::showWriteAreaHint() {
    const bool isUnwritten = ui.checkBoxCalcASA->isChecked() && !ui.checkBoxWriteASA->isChecked();
    ui.labelKEVWriteASAHint->setText(
        isUnwritten ? QCoreApplication::translate(
                          "kelmo", "Surface areas are computed, but left out of the reports.")
                    : QString());
}

void cKevPage::tellProblem(const sTableProblem& problem) {
    refuse(QString::fromStdString(problem.text));
}

/// In the order of the lines; see docs/formats/settings.md.
std::vector<formField> cKevPage::settingsFields() {
    return {fields.field("calc_asa"),      &isAreaChosenByUser,
            fields.field("calc_rasa"),     fields.field("calc_dpx"),
            fields.field("calc_cx"),       fields.field("calc_hydro"),
            fields.field("analyze_bound"), fields.field("analyze_unbound"),
            fields.field("z_slice"),       fields.field("r_solvent"),
            fields.field("write_asa"),     fields.field("cx_threshold"),
            fields.field("cx_volume"),     fields.field("standard_asa"),
            fields.field("hydro_file"),    fields.field("radii_filename"),
            fields.field("write_xml"),     fields.field("write_table"),
            fields.field("output_dir"),    &remembered().tables,
            &remembered().addedFiles,      &remembered().savedList,
            &remembered().loadedList};
}

} // namespace kelmo

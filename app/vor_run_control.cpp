// Starting the interaction module: the checks of its form and the hand-over to its worker.

#include "app/kelmo_linux.h"
#include "app/path_checks.h"
#include "app/shipped_tables.h"
#include "run/file_path.h"
#include "run/parameter_tables.h"
#include "run/run_vor_linux.h"
#include "ui_kelmo_main_window.h"

namespace kelmo {

void kelmo::on_pushButtonVORRun_clicked() {
    if (!isReadyForRun(vor)) {
        return;
    }
    finishTyping();
    if (const QString problem = vorFormProblem(); !problem.isEmpty()) {
        refuse(vor, problem);
        return;
    }
    std::map<std::string, double> radii;
    contactMap rules;
    if (readVorTables(radii, rules)) {
        handOver(radii, rules);
        start(vor);
    }
}

/// The first problem that is seen without opening a table, or an empty text.
QString kelmo::vorFormProblem() const {
    if (vor.inputFiles.paths().isEmpty()) {
        return QStringLiteral("No files loaded for analysis!");
    }
    if (!ui->checkBoxVORXmlOutput->isChecked() && !ui->checkBoxVORTableOutput->isChecked()) {
        return QStringLiteral("Please choose an output file format (XML or Table)!");
    }
    if (!isContactsReportOn() && !ui->checkBoxWriteHotSpotResidues->isChecked() &&
        !ui->checkBoxWriteResiueBindingState->isChecked()) {
        return QStringLiteral(
            "Please choose an output file type (Contacts, Binding Residues or Binding State)!");
    }
    if (ui->lineEditVOROutputDir->text().isEmpty()) {
        return QStringLiteral("Please choose an output directory!");
    }
    if (!isDirectory(ui->lineEditVOROutputDir->text())) {
        return QStringLiteral("The output directory path is invalid! "
                              "Please specify a valid directory!");
    }
    if (ui->lineEditVORRadiiFile->text().isEmpty()) {
        return QStringLiteral("Please specify a radii file!");
    }
    return {};
}

/// The change of surface area finds binding residues, but no pairs.
bool kelmo::isContactsReportOn() const {
    return ui->checkBoxWriteContacts->isChecked() && !ui->radioButtonDovreth->isChecked();
}

eInteractionCriterion kelmo::selectedCriterion() const {
    if (ui->radioButtonMaxDistance->isChecked()) {
        return eInteractionCriterion::maximumDistance;
    }
    if (ui->radioButtonPRISM->isChecked()) {
        return eInteractionCriterion::prism;
    }
    if (ui->radioButtonKRBHovik->isChecked()) {
        return eInteractionCriterion::vorda;
    }
    return ui->radioButtonDovreth->isChecked() ? eInteractionCriterion::dovreth
                                               : eInteractionCriterion::none;
}

/// Returns false when a table cannot be used; the user has been told.
bool kelmo::readVorTables(std::map<std::string, double>& radii, contactMap& rules) {
    std::ifstream radiiFile;
    if (!openInFStream(radiiFile, ui->lineEditVORRadiiFile->text(), vor.display)) {
        return refuse(vor, invalidRadiiPathText());
    }
    QString problem = readRadiiTable(radiiFile, radii);
    if (problem.isEmpty() && selectedCriterion() == eInteractionCriterion::vorda) {
        std::ifstream rulesFile;
        if (!openInFStream(rulesFile, contactTableName, vor.display)) {
            return false;
        }
        problem = readContactRules(rulesFile, rules);
    }
    return problem.isEmpty() || refuse(vor, problem);
}

void kelmo::handOver(const std::map<std::string, double>& radii, const contactMap& rules) {
    cRunVOR& worker = *vorWorker;
    worker.radii = radii;
    worker.radiiFileName = pathToBytes(ui->lineEditVORRadiiFile->text());
    worker.inputFiles = vor.inputFiles.paths();
    worker.outputDirectory = ui->lineEditVOROutputDir->text();
    worker.xmlOutput = ui->checkBoxVORXmlOutput->isChecked();
    worker.tableOutput = ui->checkBoxVORTableOutput->isChecked();
    worker.writeContacts = isContactsReportOn();
    worker.writeBindingResidues = ui->checkBoxWriteHotSpotResidues->isChecked();
    worker.writeBindingStatus = ui->checkBoxWriteResiueBindingState->isChecked();
    worker.criterion = selectedCriterion();
    if (worker.criterion == eInteractionCriterion::maximumDistance ||
        worker.criterion == eInteractionCriterion::prism) {
        worker.threshold = ui->doubleSpinBoxMaxDistPRISMThreshold->value();
    } else if (worker.criterion == eInteractionCriterion::vorda) {
        worker.contactRules = rules;
    } else if (worker.criterion == eInteractionCriterion::dovreth) {
        worker.threshold = ui->doubleSpinBoxDovrethDeltaASA->value();
        worker.zSlice = ui->doubleSpinBoxDovrethZSlice->value();
        worker.probeRadius = ui->doubleSpinBoxDovrethRSolvent->value();
    }
}

} // namespace kelmo

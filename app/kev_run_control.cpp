// Starting the structure module: the checks of its form and the hand-over to its worker.

#include "app/kelmo_linux.h"
#include "app/path_checks.h"
#include "run/crunkev_linux.h"
#include "run/file_path.h"
#include "run/parameter_tables.h"
#include "ui_kelmo_main_window.h"

namespace kelmo {

/// The tables that a run needs; those that it does not need stay empty.
struct kelmo::sKevTables {
    std::map<std::string, double> radii;
    std::map<std::string, sAsa> standardAreas;
    std::map<std::string, double> hydrophobicity;
};

namespace {

/// Returns an empty text, or what is wrong with the table.
template <typename Table, typename Reader>
QString readTable(const QLineEdit& field, Table& table, Reader read, const QString& invalidPath) {
    std::ifstream in;
    return openRegularFile(in, field.text()) ? read(in, table) : invalidPath;
}

} // namespace

void kelmo::on_pushButtonKEVRUN_clicked() {
    if (!isReadyForRun(kev)) {
        return;
    }
    finishTyping();
    if (const QString problem = kevFormProblem(); !problem.isEmpty()) {
        refuse(kev, problem);
        return;
    }
    sKevTables tables;
    if (readKevTables(tables)) {
        handOver(tables);
        start(kev);
    }
}

/// The first problem that is seen without opening a table, or an empty text.
QString kelmo::kevFormProblem() const {
    if (kev.inputFiles.paths().isEmpty()) {
        // Without the exclamation mark that the other module's message has.
        return QStringLiteral("No files loaded for analysis");
    }
    if (!ui->checkBoxCalcASA->isChecked() && !ui->checkBoxCalcRASA->isChecked() &&
        !ui->checkBoxCalcDPX->isChecked() && !ui->checkBoxCalcCX->isChecked() &&
        !ui->checkBoxCalcHydro->isChecked()) {
        return QStringLiteral("No attributes selected for analysis!");
    }
    if (!ui->checkBoxKEVAnalyseChain->isChecked() && !ui->checkBoxKEVAnalyzeBound->isChecked()) {
        return QStringLiteral("Please choose an analysis type!");
    }
    if (!ui->checkBoxKEVXMLOutput->isChecked() && !ui->checkBoxKEVTableOutput->isChecked()) {
        return QStringLiteral("Please choose an output file format (XML or Table)!");
    }
    if (ui->lineEditKEVOutputDir->text().isEmpty()) {
        return QStringLiteral("Please choose an output directory!");
    }
    if (!isDirectory(ui->lineEditKEVOutputDir->text())) {
        return QStringLiteral("The output directory path is invalid! "
                              "Please specify a valid directory\n");
    }
    if (ui->lineEditRadiiFile->text().isEmpty()) {
        return QStringLiteral("Please specify a radii file!");
    }
    return {};
}

/// Returns false when a table cannot be used; the user has been told.
bool kelmo::readKevTables(sKevTables& tables) {
    QString problem =
        readTable(*ui->lineEditRadiiFile, tables.radii, readRadiiTable, invalidRadiiPathText());
    if (problem.isEmpty() && ui->checkBoxCalcRASA->isChecked()) {
        problem = readTable(*ui->lineEditStandardASA, tables.standardAreas, readStandardAsaTable,
                            invalidStandardAsaPathText());
    }
    if (problem.isEmpty() && ui->checkBoxCalcHydro->isChecked()) {
        problem = readTable(*ui->lineEditHydrophobicityFile, tables.hydrophobicity,
                            readHydrophobicityTable, invalidHydrophobicityPathText());
    }
    return problem.isEmpty() || refuse(kev, problem);
}

void kelmo::handOver(const sKevTables& tables) {
    cRunKEV& worker = *kevWorker;
    worker.setRadii(tables.radii);
    worker.setFilesfForAnalysis(kev.inputFiles.paths());
    worker.setOutputDirectoryName(ui->lineEditKEVOutputDir->text());
    worker.setOutputTypes(ui->checkBoxKEVXMLOutput->isChecked(),
                          ui->checkBoxKEVTableOutput->isChecked());
    worker.setAnalysisTypes(ui->checkBoxKEVAnalyzeBound->isChecked(),
                            ui->checkBoxKEVAnalyseChain->isChecked());
    worker.setASAAttributes(ui->checkBoxCalcASA->isChecked(), ui->doubleSpinBoxASARSolvent->value(),
                            ui->doubleSpinBoxASAZSlice->value(),
                            ui->checkBoxWriteASA->isChecked() && ui->checkBoxCalcASA->isChecked());
    worker.setRadiiFilename(pathToBytes(ui->lineEditRadiiFile->text()));
    worker.setRASAAttributes(ui->checkBoxCalcRASA->isChecked(), tables.standardAreas);
    if (ui->checkBoxCalcRASA->isChecked()) {
        worker.setRASAFilename(pathToBytes(ui->lineEditStandardASA->text()));
    }
    worker.setDPXAttributes(ui->checkBoxCalcDPX->isChecked());
    worker.setCXAttributes(ui->checkBoxCalcCX->isChecked(), ui->doubleSpinBoxCxThreshold->value(),
                           ui->doubleSpinBoxCXVatom->value());
    worker.setHydrophobicityAttributes(ui->checkBoxCalcHydro->isChecked(), tables.hydrophobicity);
    if (ui->checkBoxCalcHydro->isChecked()) {
        worker.setHydroFilename(pathToBytes(ui->lineEditHydrophobicityFile->text()));
    }
}

} // namespace kelmo

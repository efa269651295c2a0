// The settings files: one value a line, told apart by their position alone.

#include "app/file_replacement.h"
#include "app/kelmo_linux.h"
#include "base/text_line.h"
#include "run/file_path.h"
#include "ui_kelmo_main_window.h"

#include <fstream>
#include <span>

namespace kelmo {

namespace {

// Bare names: the settings belong to the directory in which the program was started.
const QString kevSettingsFile = QStringLiteral("kev_program_settings.set");
const QString vorSettingsFile = QStringLiteral("vor_program_settings.set");

void saveSettings(const QString& fileName, std::span<const formField> fields,
                  const QStringList& inputFiles) {
    std::string text;
    for (const formField& field : fields) {
        text += fieldText(field) + '\n';
    }
    for (const QString& path : inputFiles) {
        text += pathToBytes(path) + '\n';
    }
    // The program is closing: nobody is left to be told of a failure.
    replaceFile(fileName, text);
}

/// A file that ends early leaves the remaining fields as they are.
void loadSettings(const QString& fileName, std::span<const formField> fields,
                  cInputList& inputFiles) {
    std::ifstream in;
    if (!openRegularFile(in, fileName)) {
        return;
    }
    std::string line;
    for (const formField& field : fields) {
        if (!getTextLine(in, line) || line.size() > longestTextLine) {
            return;
        }
        setField(field, line);
    }
    inputFiles.append(pathsIn(in));
}

} // namespace

void kelmo::saveKEVSettings() {
    finishTyping();
    saveSettings(kevSettingsFile, kevSettingsFields(), kev.inputFiles.paths());
}

void kelmo::saveVORSettings() {
    finishTyping();
    saveSettings(vorSettingsFile, vorSettingsFields(), vor.inputFiles.paths());
}

void kelmo::loadKEVSettings() {
    loadSettings(kevSettingsFile, kevSettingsFields(), kev.inputFiles);
}

void kelmo::loadVORSettings() {
    loadSettings(vorSettingsFile, vorSettingsFields(), vor.inputFiles);
}

/// In the order of the lines; see docs/formats/settings.md.
std::vector<formField> kelmo::kevSettingsFields() {
    return {
        ui->checkBoxCalcASA,          &isAsaChosenByUser,          ui->checkBoxCalcRASA,
        ui->checkBoxCalcDPX,          ui->checkBoxCalcCX,          ui->checkBoxCalcHydro,
        ui->checkBoxKEVAnalyzeBound,  ui->checkBoxKEVAnalyseChain, ui->doubleSpinBoxASAZSlice,
        ui->doubleSpinBoxASARSolvent, ui->checkBoxWriteASA,        ui->doubleSpinBoxCxThreshold,
        ui->doubleSpinBoxCXVatom,     ui->lineEditStandardASA,     ui->lineEditHydrophobicityFile,
        ui->lineEditRadiiFile,        ui->checkBoxKEVXMLOutput,    ui->checkBoxKEVTableOutput,
        ui->lineEditKEVOutputDir,     &kev.remembered.tables,      &kev.remembered.addedFiles,
        &kev.remembered.savedList,    &kev.remembered.loadedList};
}

std::vector<formField> kelmo::vorSettingsFields() {
    return {ui->radioButtonMaxDistance,
            ui->radioButtonPRISM,
            ui->radioButtonKRBHovik,
            ui->radioButtonDovreth,
            ui->doubleSpinBoxMaxDistPRISMThreshold,
            &maxDistanceThreshold,
            &prismThreshold,
            ui->doubleSpinBoxDovrethDeltaASA,
            ui->doubleSpinBoxDovrethZSlice,
            ui->doubleSpinBoxDovrethRSolvent,
            ui->lineEditVORRadiiFile,
            ui->checkBoxWriteContacts,
            ui->checkBoxWriteHotSpotResidues,
            ui->checkBoxWriteResiueBindingState,
            ui->checkBoxVORXmlOutput,
            ui->checkBoxVORTableOutput,
            ui->lineEditVOROutputDir,
            &vor.remembered.tables,
            &vor.remembered.addedFiles,
            &vor.remembered.savedList,
            &vor.remembered.loadedList};
}

} // namespace kelmo

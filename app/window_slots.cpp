// The slots of the window: each hands on to the page of its module.

#include "app/kelmo_linux.h"
#include "app/kev_page.h"
#include "app/vor_page.h"
#include "run/file_path.h"

#include <QTextBrowser>

namespace kelmo {

namespace {

// Fast enough to look immediate, rare enough to cost a long run nothing.
constexpr int refreshInterval = 50; // ms

const QString radiiFilter = QStringLiteral("Radii files (*.radii);; All files(*.*)");

} // namespace

bool kelmo::openInFStream(std::ifstream& stream, QString path, QTextBrowser* display) {
    if (openRegularFile(stream, path)) {
        return true;
    }
    tellUnopened(*display, path);
    return false;
}

void kelmo::saveKEVSettings() {
    kev->saveSettings();
}

void kelmo::saveVORSettings() {
    vor->saveSettings();
}

void kelmo::loadKEVSettings() {
    kev->loadSettings();
}

void kelmo::loadVORSettings() {
    vor->loadSettings();
}

// Messages

void kelmo::receiveKEVStatusMessage(cStatusMessage& message) {
    if (take(*kev, message)) {
        emit kevMessageReceived();
    }
}

void kelmo::receiveVORStatusMessage(cStatusMessage& message) {
    if (take(*vor, message)) {
        emit vorMessageReceived();
    }
}

bool kelmo::take(cModulePage& page, const cStatusMessage& message) {
    if (!refreshTimer.isActive()) {
        refreshTimer.start(refreshInterval);
    }
    return page.take(message);
}

void kelmo::refreshDisplays() {
    kev->refresh();
    vor->refresh();
    if (kev->hasQueuedMessages()) {
        emit kevMessageReceived();
    }
    if (vor->hasQueuedMessages()) {
        emit vorMessageReceived();
    }
}

void kelmo::updateKEVDisplay() {
    kev->showQueued();
}

void kelmo::updateVORDisplay() {
    vor->showQueued();
}

void kelmo::on_pushButtonKEVOutputClear_clicked() {
    kev->clearDisplay();
}

void kelmo::on_pushButtonVORClearDisplay_clicked() {
    vor->clearDisplay();
}

// Runs

void kelmo::kevStarted() {
    kev->runStarted();
}

void kelmo::kevFinished() {
    kev->runFinished();
}

void kelmo::vorStarted() {
    vor->runStarted();
}

void kelmo::vorFinished() {
    vor->runFinished();
}

void kelmo::on_pushButtonKEVRUN_clicked() {
    kev->run();
}

void kelmo::on_pushButtonVORRun_clicked() {
    vor->run();
}

void kelmo::on_pushButtonKEVStop_clicked() {
    kev->stop();
}

void kelmo::on_pushButtonVORStop_clicked() {
    vor->stop();
}

// What depends on what in the form

void kelmo::on_tabWidgetModuleChoice_currentChanged(int) {}

void kelmo::on_checkBoxCalcASA_clicked() {
    kev->areaClicked();
}

void kelmo::on_checkBoxCalcRASA_stateChanged(int) {
    kev->followAttributes();
}

void kelmo::on_checkBoxCalcDPX_stateChanged(int) {
    kev->followAttributes();
}

void kelmo::on_radioButtonMaxDistance_toggled(bool selected) {
    if (selected) {
        vor->programThreshold(eInteractionCriterion::maximumDistance);
    }
}

void kelmo::on_radioButtonPRISM_toggled(bool selected) {
    if (selected) {
        vor->programThreshold(eInteractionCriterion::prism);
    }
}

void kelmo::on_doubleSpinBoxMaxDistPRISMThreshold_valueChanged(double value) {
    vor->rememberThreshold(value);
}

// Files

void kelmo::on_pushButtonKEVFileOpen_clicked() {
    kev->addFiles();
}

void kelmo::on_pushButtonVORLoadFiles_clicked() {
    vor->addFiles();
}

void kelmo::on_pushButtonKEVRemoveInFiles_clicked() {
    kev->inputFiles().removeSelected();
}

void kelmo::on_pushButtonVORRemoveInFiles_clicked() {
    vor->inputFiles().removeSelected();
}

void kelmo::on_pushButtonKEVSaveInputList_clicked() {
    kev->saveInputList();
}

void kelmo::on_pushButtonVORSaveInputList_clicked() {
    vor->saveInputList();
}

void kelmo::on_pushButtonKEVLoadFileList_clicked() {
    kev->loadInputList();
}

void kelmo::on_pushButtonVORLoadFileList_clicked() {
    vor->loadInputList();
}

void kelmo::on_pushButtonKEVCreateConfigFile_clicked() {
    kev->createConfiguration();
}

void kelmo::on_pushButtonVORCreateConfigFile_clicked() {
    vor->createConfiguration();
}

void kelmo::on_pushButtonKEVOutputDir_clicked() {
    kev->chooseOutputDirectory(tr("Choose KEV output directory"));
}

void kelmo::on_pushButtonVOROutputDir_clicked() {
    vor->chooseOutputDirectory(tr("Choose VOR output directory"));
}

void kelmo::on_toolButtonKEVShowOutputDir_clicked() {
    kev->openOutputDirectory();
}

void kelmo::on_toolButtonVORShowOutputDir_clicked() {
    vor->openOutputDirectory();
}

void kelmo::on_pushButtonRadiiFile_clicked() {
    kev->chooseTable("radii_filename", tr("Choose radii file"), radiiFilter);
}

void kelmo::on_pushButtonVORRadiiFileBrowse_clicked() {
    vor->chooseTable("radii_filename", tr("Choose radii file"), radiiFilter);
}

void kelmo::on_pushButtonStandardASABrowse_clicked() {
    kev->chooseTable("standard_asa", tr("Choose standard asa file"),
                     QStringLiteral("Standard ASA files (*.asa);; All files(*.*)"));
}

void kelmo::on_pushButtonHydrophobicityFile_clicked() {
    kev->chooseTable("hydro_file", tr("Choose hydrophobicity file"),
                     QStringLiteral("Hydrophobicity files (*.hpb);; All files(*.*)"));
}

void kelmo::on_pushButtonVORCopyContactTable_clicked() {
    vor->copyContactTable();
}

} // namespace kelmo

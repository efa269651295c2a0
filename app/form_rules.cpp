// Which boxes of the form depend on others, and the threshold that two criteria share.

#include "app/kelmo_linux.h"
#include "ui_kelmo_main_window.h"

namespace kelmo {

void kelmo::on_checkBoxCalcASA_clicked() {
    isAsaChosenByUser = ui->checkBoxCalcASA->isChecked();
    followAttributes();
    if (ui->checkBoxWriteASA->isEnabled()) {
        ui->checkBoxWriteASA->setChecked(ui->checkBoxCalcASA->isChecked());
    }
}

void kelmo::on_checkBoxCalcRASA_stateChanged(int) {
    followAttributes();
}

void kelmo::on_checkBoxCalcDPX_stateChanged(int) {
    followAttributes();
}

/// Relative area and depth are made of surface areas.
void kelmo::followAttributes() {
    const bool isAreaNeeded = ui->checkBoxCalcRASA->isChecked() || ui->checkBoxCalcDPX->isChecked();
    ui->checkBoxCalcASA->setChecked(isAsaChosenByUser || isAreaNeeded);
    ui->checkBoxWriteASA->setEnabled(isAreaNeeded);
}

void kelmo::showWriteAsaHint() {
    const bool isUnwritten = ui->checkBoxCalcASA->isChecked() && !ui->checkBoxWriteASA->isChecked();
    ui->labelKEVWriteASAHint->setText(
        isUnwritten ? tr("Surface areas are computed, but left out of the reports.") : QString());
}

void kelmo::on_radioButtonMaxDistance_toggled(bool selected) {
    constexpr double largestDistance = 10.0; // Å
    if (selected) {
        programThreshold(largestDistance, maxDistanceThreshold);
    }
}

void kelmo::on_radioButtonPRISM_toggled(bool selected) {
    constexpr double largestGap = 5.0; // Å
    if (selected) {
        programThreshold(largestGap, prismThreshold);
    }
}

void kelmo::programThreshold(double maximum, double value) {
    constexpr double step = 0.05; // Å
    isThresholdReprogrammed = true;
    ui->doubleSpinBoxMaxDistPRISMThreshold->setRange(0.0, maximum);
    ui->doubleSpinBoxMaxDistPRISMThreshold->setSingleStep(step);
    ui->doubleSpinBoxMaxDistPRISMThreshold->setValue(value);
    isThresholdReprogrammed = false;
}

void kelmo::on_doubleSpinBoxMaxDistPRISMThreshold_valueChanged(double value) {
    if (isThresholdReprogrammed) {
        return;
    }
    if (ui->radioButtonMaxDistance->isChecked()) {
        maxDistanceThreshold = value;
    } else if (ui->radioButtonPRISM->isChecked()) {
        prismThreshold = value;
    }
}

} // namespace kelmo

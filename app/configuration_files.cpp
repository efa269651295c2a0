// Configuration files: the form of a module as keys and values, to run it without the window.

#include "app/file_replacement.h"
#include "app/kelmo_linux.h"
#include "app/path_checks.h"
#include "run/file_path.h"
#include "ui_kelmo_main_window.h"

#include <span>
#include <utility>

namespace kelmo {

namespace {

struct sSetting {
    const char* key;
    formField value;
};

std::string settingLine(const char* key, const std::string& value) {
    return std::string(key) + ":\t" + value + '\n';
}

std::string settingLines(std::span<const sSetting> settings) {
    std::string lines;
    for (const sSetting& setting : settings) {
        lines += settingLine(setting.key, fieldText(setting.value));
    }
    return lines;
}

} // namespace

void kelmo::on_pushButtonKEVCreateConfigFile_clicked() {
    createConfiguration(kev, [this] { return kevConfiguration(); });
}

void kelmo::on_pushButtonVORCreateConfigFile_clicked() {
    createConfiguration(vor, [this] { return vorConfiguration(); });
}

void kelmo::createConfiguration(sModulePage& page,
                                const std::function<std::string()>& configurationText) {
    finishTyping();
    const QString outputDirectory = page.outputDirectory->text();
    const QString path =
        askForFile({.caption = tr("Save KEV configuration file as"), // in both modules
                    .directory = isDirectory(outputDirectory) ? outputDirectory : QString(),
                    .fileMode = QFileDialog::AnyFile,
                    .acceptMode = QFileDialog::AcceptSave});
    if (!path.isEmpty() && writeFile(page, path, configurationText())) {
        showMessage(page, Qt::black, QStringLiteral("Configuration file created"));
    }
}

std::string kelmo::kevConfiguration() const {
    const sSetting settings[] = {
        {"analyze_bound", ui->checkBoxKEVAnalyzeBound},
        {"analyze_unbound", ui->checkBoxKEVAnalyseChain},
        {"calc_asa", ui->checkBoxCalcASA},
        {"z_slice", ui->doubleSpinBoxASAZSlice},
        {"r_solvent", ui->doubleSpinBoxASARSolvent},
        {"write_asa", ui->checkBoxWriteASA},
        {"calc_rasa", ui->checkBoxCalcRASA},
        {"standard_asa", ui->lineEditStandardASA},
        {"calc_dpx", ui->checkBoxCalcDPX},
        {"calc_cx", ui->checkBoxCalcCX},
        {"cx_threshold", ui->doubleSpinBoxCxThreshold},
        {"cx_volume", ui->doubleSpinBoxCXVatom},
        {"calc_hydro", ui->checkBoxCalcHydro},
        {"hydro_file", ui->lineEditHydrophobicityFile},
        {"radii_filename", ui->lineEditRadiiFile},
        {"write_xml", ui->checkBoxKEVXMLOutput},
        {"write_table", ui->checkBoxKEVTableOutput},
        {"output_dir", ui->lineEditKEVOutputDir},
    };
    return settingLines(settings);
}

std::string kelmo::vorConfiguration() const {
    const eInteractionCriterion criterion = selectedCriterion();
    std::string lines = settingLine("contact_criterion", std::to_string(static_cast<int>(criterion)));
    if (criterion == eInteractionCriterion::maximumDistance ||
        criterion == eInteractionCriterion::prism) {
        const sSetting parameter[] = {{"threshold", ui->doubleSpinBoxMaxDistPRISMThreshold}};
        lines += settingLines(parameter);
    } else if (criterion == eInteractionCriterion::dovreth) {
        const sSetting parameters[] = {
            {"delta_asa", ui->doubleSpinBoxDovrethDeltaASA},
            {"z_slice", ui->doubleSpinBoxDovrethZSlice},
            {"r_solvent", ui->doubleSpinBoxDovrethRSolvent},
        };
        lines += settingLines(parameters);
    }
    const sSetting settings[] = {
        {"radii_filename", ui->lineEditVORRadiiFile},
        {"write_contacts", ui->checkBoxWriteContacts},
        {"write_binding_residues", ui->checkBoxWriteHotSpotResidues},
        {"write_binding_state", ui->checkBoxWriteResiueBindingState},
        {"write_xml", ui->checkBoxVORXmlOutput},
        {"write_table", ui->checkBoxVORTableOutput},
        {"output_dir", ui->lineEditVOROutputDir},
    };
    return lines + settingLines(settings);
}

} // namespace kelmo

#include "app/vor_page.h"

#include "analysis/criteria.h"
#include "analysis/shipped_tables.h"
#include "app/message_pane.h"
#include "run/file_path.h"
#include "ui_kelmo_main_window.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRadioButton>

#include <algorithm>

namespace kelmo {

namespace {

const QString contactTableName = QStringLiteral("aa_contacts.txt");

sPageWidgets widgetsOf(const Ui_kelmoMainWindow& form) {
    return {.display = form.textBrowserVORDisplay,
            .runButton = form.pushButtonVORRun,
            .stopButton = form.pushButtonVORStop,
            .outputDirectory = form.lineEditVOROutputDir,
            .progressBar = form.progressBarVOR,
            .progressLabel = form.labelVORProgress,
            .fileList = form.listWidgetVORFileListDisplay,
            .fileCount = form.labelVORFileCount,
            .preparationButton = form.pushButtonVORPreparation,
            .preparationSummary = form.labelVORPreparation,
            .resultsColumn = form.verticalLayoutVORResults,
            .tables = form.groupBoxVORTables,
            .page = form.tabVOR};
}

QString translated(const char* text) {
    return QCoreApplication::translate("kelmo", text);
}

/// What the criterion makes of the threshold; null when it does not go by it.
const sCriterionParameter* thresholdOf(eInteractionCriterion criterion) {
    const auto& parameters = findCriterion(criterion)->parameters;
    const auto found =
        std::ranges::find(parameters, std::string("threshold"), &sCriterionParameter::key);
    return found == parameters.end() ? nullptr : &*found;
}

/// Empty when the program has come without it.
QString shippedContactTable() {
    return pathFromBytes(findShippedTable(contactTableName.toStdString()).native());
}

} // namespace

cVorPage::cVorPage(QWidget* itsWindow, cAnalysisRun* itsWorker, Ui_kelmoMainWindow& form)
    : cModulePage(eModule::vor, itsWindow, itsWorker, widgetsOf(form)), ui(form),
      maxDistanceThreshold(thresholdOf(eInteractionCriterion::maximumDistance)->byDefault),
      prismThreshold(thresholdOf(eInteractionCriterion::prism)->byDefault) {
    fields.bind("threshold", ui.doubleSpinBoxMaxDistPRISMThreshold);
    fields.bind("delta_asa", ui.doubleSpinBoxDovrethDeltaASA);
    fields.bind("z_slice", ui.doubleSpinBoxDovrethZSlice);
    fields.bind("r_solvent", ui.doubleSpinBoxDovrethRSolvent);
    fields.bind("write_contacts", ui.checkBoxWriteContacts);
    fields.bind("write_binding_residues", ui.checkBoxWriteHotSpotResidues);
    fields.bind("write_binding_state", ui.checkBoxWriteResiueBindingState);
    fields.bind("write_xml", ui.checkBoxVORXmlOutput);
    fields.bind("write_table", ui.checkBoxVORTableOutput);
    fields.bind("contact_rules", ui.labelVORContactTable);
    bindPath("radii_filename", ui.lineEditVORRadiiFile);
    bindPath("output_dir", ui.lineEditVOROutputDir);
    bindCriteria();
    addFurtherSettings();
    offerShippedTables(ui.toolButtonVORRadiiFileShipped, "radii_filename");
}

void cVorPage::bindCriteria() {
    criterionButtons = {{eInteractionCriterion::maximumDistance, ui.radioButtonMaxDistance},
                        {eInteractionCriterion::prism, ui.radioButtonPRISM},
                        {eInteractionCriterion::vorda, ui.radioButtonKRBHovik},
                        {eInteractionCriterion::dovreth, ui.radioButtonDovreth}};
    for (const sCriterion& criterion : criteria()) {
        QAbstractButton*& button = criterionButtons[criterion.number];
        if (button == nullptr) {
            button = new QRadioButton(QString::fromStdString(criterion.title));
            button->setObjectName("criterion_" + QString::fromStdString(criterion.name));
            ui.verticalLayoutVORCriterion->addWidget(button);
        }
        button->setToolTip(QString::fromStdString(criterion.help));
    }
}

eInteractionCriterion cVorPage::selectedCriterion() const {
    const auto selected = std::ranges::find_if(
        criterionButtons, [](const auto& entry) { return entry.second->isChecked(); });
    return selected == criterionButtons.end() ? eInteractionCriterion::none : selected->first;
}

cSettings cVorPage::settings() const {
    cSettings settings = cModulePage::settings();
    settings.setNumber("contact_criterion", static_cast<double>(selectedCriterion()));
    return settings;
}

void cVorPage::programThreshold(eInteractionCriterion criterion) {
    const sCriterionParameter& threshold = *thresholdOf(criterion);
    const sSetting& setting = *findSetting(eModule::vor, threshold.key);
    QDoubleSpinBox& box = *ui.doubleSpinBoxMaxDistPRISMThreshold;
    isThresholdReprogrammed = true;
    box.setRange(setting.smallestInForm(), threshold.maximum);
    box.setSingleStep(setting.step);
    box.setValue(criterion == eInteractionCriterion::prism ? prismThreshold : maxDistanceThreshold);
    isThresholdReprogrammed = false;
}

void cVorPage::rememberThreshold(double value) {
    if (isThresholdReprogrammed) {
        return;
    }
    if (ui.radioButtonMaxDistance->isChecked()) {
        maxDistanceThreshold = value;
    } else if (ui.radioButtonPRISM->isChecked()) {
        prismThreshold = value;
    }
}

void cVorPage::tellProblem(const sTableProblem& problem) {
    if (problem.isUnopened) {
        tellUnopened(*widgets.display, pathFromBytes(problem.path));
    }
    if (!problem.text.empty()) {
        refuse(QString::fromStdString(problem.text));
    }
}

void tellUnopened(QTextBrowser& display, const QString& path) {
    appendMessage(display, display.textColor(), "Could not open file " + displayedPath(path));
}

/// In the order of the lines; see docs/formats/settings.md.
std::vector<formField> cVorPage::settingsFields() {
    return {ui.radioButtonMaxDistance,
            ui.radioButtonPRISM,
            ui.radioButtonKRBHovik,
            ui.radioButtonDovreth,
            fields.field("threshold"),
            &maxDistanceThreshold,
            &prismThreshold,
            fields.field("delta_asa"),
            fields.field("z_slice"),
            fields.field("r_solvent"),
            fields.field("radii_filename"),
            fields.field("write_contacts"),
            fields.field("write_binding_residues"),
            fields.field("write_binding_state"),
            fields.field("write_xml"),
            fields.field("write_table"),
            fields.field("output_dir"),
            &remembered().tables,
            &remembered().addedFiles,
            &remembered().savedList,
            &remembered().loadedList};
}

void cVorPage::showContactTable() {
    const bool isThere = QFileInfo(contactTableName).isFile();
    ui.labelVORContactTable->setText(isThere ? translated("%1, for VORDA").arg(contactTableName)
                                             : translated("%1 is missing").arg(contactTableName));
    ui.labelVORContactTable->setToolTip(
        translated("VORDA reads %1 in the directory in which the program was started:\n%2")
            .arg(contactTableName, QDir::currentPath()));
    ui.pushButtonVORCopyContactTable->setEnabled(!isThere && !shippedContactTable().isEmpty());
}

void cVorPage::copyContactTable() {
    if (!QFile::copy(shippedContactTable(), contactTableName)) {
        refuse("Could not write file " + contactTableName);
    }
    showContactTable();
}

} // namespace kelmo

// The main window: two modules, each with its form, its worker and its log.
#pragma once

#include "app/form_fields.h"
#include "app/module_page.h"
#include "contacts/residue_contact.h"
#include "run/status_message.h"

#include <QFileDialog>
#include <QMainWindow>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <fstream>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QLineEdit;
class QTextBrowser;
class QToolButton;
class Ui_kelmoMainWindow;

namespace kelmo {

class cRunKEV;
class cRunVOR;

/// Reads its settings from the working directory when it is made and saves them there when it goes.
class kelmo : public QMainWindow {
    Q_OBJECT
  public:
    explicit kelmo(QWidget* parent = nullptr);
    ~kelmo() override;

    /// Opens a parameter file. On failure tells so in the display, in its current text colour.
    bool openInFStream(std::ifstream& stream, QString path, QTextBrowser* display);

    void saveKEVSettings();
    void saveVORSettings();
    void loadKEVSettings();
    void loadVORSettings();

  signals:
    void kevMessageReceived();
    void vorMessageReceived();

  public slots:
    void about();

    void receiveKEVStatusMessage(cStatusMessage& message);
    void receiveVORStatusMessage(cStatusMessage& message);
    void updateKEVDisplay();
    void updateVORDisplay();
    void on_pushButtonKEVOutputClear_clicked();
    void on_pushButtonVORClearDisplay_clicked();

    void kevStarted();
    void kevFinished();
    void vorStarted();
    void vorFinished();
    void on_pushButtonKEVRUN_clicked();
    void on_pushButtonVORRun_clicked();
    void on_pushButtonKEVStop_clicked();
    void on_pushButtonVORStop_clicked();

    void on_tabWidgetModuleChoice_currentChanged(int index);
    void on_checkBoxCalcASA_clicked();
    void on_checkBoxCalcRASA_stateChanged(int state);
    void on_checkBoxCalcDPX_stateChanged(int state);
    void on_radioButtonMaxDistance_toggled(bool selected);
    void on_radioButtonPRISM_toggled(bool selected);
    void on_doubleSpinBoxMaxDistPRISMThreshold_valueChanged(double value);

    void on_pushButtonKEVFileOpen_clicked();
    void on_pushButtonVORLoadFiles_clicked();
    void on_pushButtonKEVRemoveInFiles_clicked();
    void on_pushButtonVORRemoveInFiles_clicked();
    void on_pushButtonKEVSaveInputList_clicked();
    void on_pushButtonVORSaveInputList_clicked();
    void on_pushButtonKEVLoadFileList_clicked();
    void on_pushButtonVORLoadFileList_clicked();

    void on_pushButtonKEVCreateConfigFile_clicked();
    void on_pushButtonVORCreateConfigFile_clicked();

    void on_pushButtonKEVOutputDir_clicked();
    void on_pushButtonVOROutputDir_clicked();
    void on_toolButtonKEVShowOutputDir_clicked();
    void on_toolButtonVORShowOutputDir_clicked();
    void on_pushButtonRadiiFile_clicked();
    void on_pushButtonVORRadiiFileBrowse_clicked();
    void on_pushButtonStandardASABrowse_clicked();
    void on_pushButtonHydrophobicityFile_clicked();
    void on_pushButtonVORCopyContactTable_clicked();

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    // kelmo_linux.cpp
    void attachPages();
    void connectWorkers();
    void createMenus();
    void prepareForm();
    void offerShippedTables(QToolButton* button, QLineEdit* field, const QString& suffix);

    // kelmo_messages.cpp
    bool take(sModulePage& page, const cStatusMessage& message);
    void refreshDisplays();
    void showQueued(sModulePage& page);
    void showMessage(sModulePage& page, Qt::GlobalColor colour, const QString& text);
    void showProgress(sModulePage& page);
    void showSummary(sModulePage& page, const QString& ending);

    // run_control.cpp, kev_run_control.cpp, vor_run_control.cpp
    bool isReadyForRun(const sModulePage& page) const;
    void start(sModulePage& page);
    void stop(sModulePage& page);
    void endWorker(sModulePage& page);
    void deliverPendingMessages();
    void runStarted(sModulePage& page);
    void runFinished(sModulePage& page);
    QString kevFormProblem() const;
    QString vorFormProblem() const;
    bool isContactsReportOn() const;
    eInteractionCriterion selectedCriterion() const;
    struct sKevTables;
    bool readKevTables(sKevTables& tables);
    void handOver(const sKevTables& tables);
    bool readVorTables(std::map<std::string, double>& radii, contactMap& rules);
    void handOver(const std::map<std::string, double>& radii, const contactMap& rules);
    bool refuse(sModulePage& page, const QString& problem);
    void finishTyping();

    // form_rules.cpp
    void followAttributes();
    void showWriteAsaHint();
    void programThreshold(double maximum, double value);

    // input_files.cpp
    void addFiles(sModulePage& page);
    void saveInputList(sModulePage& page);
    void loadInputList(sModulePage& page);
    void addDroppedFiles(sModulePage& page, const QStringList& paths);

    // settings_files.cpp, configuration_files.cpp
    std::vector<formField> kevSettingsFields();
    std::vector<formField> vorSettingsFields();
    void createConfiguration(sModulePage& page,
                             const std::function<std::string()>& configurationText);
    std::string kevConfiguration() const;
    std::string vorConfiguration() const;

    // path_choice.cpp
    struct sFileQuestion {
        QString caption;
        QString directory = {};
        QString filter = {}; ///< empty for none
        QFileDialog::FileMode fileMode = QFileDialog::ExistingFile;
        QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
        QString defaultSuffix = {};
    };
    QStringList askForFiles(const sFileQuestion& question);
    QString askForFile(const sFileQuestion& question);
    bool writeFile(sModulePage& page, const QString& path, const std::string& text);
    void chooseTable(sModulePage& page, QLineEdit* field, const QString& caption,
                     const QString& filter);
    void chooseOutputDirectory(sModulePage& page, const QString& caption);
    void openOutputDirectory(sModulePage& page);
    void showContactTable();

    std::unique_ptr<Ui_kelmoMainWindow> ui;
    cRunKEV* kevWorker; ///< children of the window, like all below
    cRunVOR* vorWorker;
    sModulePage kev;
    sModulePage vor;
    QTimer refreshTimer; ///< gathers what need not be shown at once
    QString version;
    bool isAsaChosenByUser = false;
    bool isThresholdReprogrammed = false; ///< the window itself is changing the threshold's box
    double maxDistanceThreshold = 4.5;    ///< Å
    double prismThreshold = 0.5;          ///< Å
};

} // namespace kelmo

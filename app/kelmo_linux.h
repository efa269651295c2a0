// The main window: two modules, each with its form, its worker and its log.
#pragma once

#include "app/status_message.h"

#include <QMainWindow>
#include <QString>
#include <QTimer>

#include <fstream>
#include <memory>

class QTextBrowser;
class Ui_kelmoMainWindow;

namespace kelmo {

class cKevPage;
class cModulePage;
class cRunKEV;
class cRunVOR;
class cVorPage;

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
    void prepareForm();
    void createMenus();
    void connectWorker(cModulePage& page, void (kelmo::*receive)(cStatusMessage&));
    void refreshDisplays();
    /// Returns whether the message is to be shown now, rather than with the next refresh.
    bool take(cModulePage& page, const cStatusMessage& message);

    std::unique_ptr<Ui_kelmoMainWindow> ui;
    cRunKEV* kevWorker; ///< children of the window
    cRunVOR* vorWorker;
    std::unique_ptr<cKevPage> kev;
    std::unique_ptr<cVorPage> vor;
    QTimer refreshTimer; ///< gathers what need not be shown at once
    QString version;
};

} // namespace kelmo

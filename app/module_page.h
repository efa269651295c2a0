// What the window keeps and does for each of its two modules: a form, a worker and a log.
#pragma once

#include "analysis/parameter_tables.h"
#include "app/form_fields.h"
#include "app/input_list.h"
#include "app/preparation_dialog.h"
#include "app/run_progress.h"
#include "app/setting_fields.h"
#include "app/status_message.h"
#include "run/analysis_run.h"

#include <QFileDialog>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

class QAbstractButton;
class QBoxLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QTextBrowser;
class QToolButton;

namespace kelmo {

/// Directories in which the file dialogs of a module start; empty when nothing is remembered. They
/// survive the program.
struct sRememberedDirectories {
    QString tables; ///< of the parameter table chosen last
    QString addedFiles;
    QString savedList;
    QString loadedList;
};

/// The widgets of a module's tab that both modules have.
struct sPageWidgets {
    QTextBrowser* display = nullptr;
    QPushButton* runButton = nullptr;
    QPushButton* stopButton = nullptr;
    QLineEdit* outputDirectory = nullptr;
    QProgressBar* progressBar = nullptr;
    QLabel* progressLabel = nullptr;
    QListWidget* fileList = nullptr;
    QLabel* fileCount = nullptr;
    QAbstractButton* preparationButton = nullptr;
    QLabel* preparationSummary = nullptr;
    QBoxLayout* resultsColumn = nullptr; ///< where further settings go, below the tables
    QWidget* tables = nullptr;
    QWidget* page = nullptr; ///< the whole tab
};

/// One module's tab. Its widgets belong to the form, its worker to the window, which it outlives
/// neither.
class cModulePage {
  public:
    cModulePage(eModule ofModule, QWidget* itsWindow, cAnalysisRun* itsWorker,
                const sPageWidgets& itsWidgets);
    virtual ~cModulePage();
    cModulePage(const cModulePage&) = delete;
    cModulePage& operator=(const cModulePage&) = delete;

    cAnalysisRun& worker() { return *analysis; }

    // The log and the progress display (module_messages.cpp)

    /// Queues a message of the worker. Returns whether it is to be shown now, rather than with the
    /// next refresh.
    bool take(const cStatusMessage& message);
    void takeBegun(const QString& path) { progress.beginFile(path); }
    void takeEnded(const sFileEnded& file);
    void takeLost() { progress.countLostReport(); }
    bool hasQueuedMessages() const { return !messages.empty(); }
    void showQueued();
    void showMessage(Qt::GlobalColor colour, const QString& text);
    void refresh();
    void clearDisplay();

    // Runs (module_runs.cpp)

    /// Checks the form and starts the worker, or tells what keeps it from starting.
    void run();
    void stop();
    /// Returns when the worker has come to its next safe point; nothing is half-written then.
    void endWorker();
    void runStarted();
    void runFinished();
    bool isRunning() const { return analysis->isRunning(); }

    // Files (module_files.cpp)

    cInputList& inputFiles() { return files; }
    bool hasListFocus() const;
    void addFiles();
    void addDroppedFiles(const QStringList& paths);
    void saveInputList();
    void loadInputList();
    void createConfiguration();
    void chooseTable(const std::string& key, const QString& caption, const QString& filter);
    void chooseOutputDirectory(const QString& caption);
    void openOutputDirectory();
    void offerShippedTables(QToolButton* button, const std::string& key);
    void saveSettings();
    void loadSettings();

  protected:
    /// What the form says.
    virtual cSettings settings() const;
    /// The lines of the settings file, in order, before the input files.
    virtual std::vector<formField> settingsFields() = 0;
    /// What the user is told of a table that cannot be used.
    virtual void tellProblem(const sTableProblem& problem) = 0;

    /// Lets a line edit show a setting.
    void bindPath(const std::string& key, QLineEdit* edit);
    /// Gives every setting that has no field one of its own, those of the input in a dialog. To be
    /// called when all are bound.
    void addFurtherSettings();
    void refuse(const QString& problem);
    /// Fields that a shortcut leaves as they are must count as they show.
    void finishTyping();
    sRememberedDirectories& remembered() { return directories; }

    QWidget* const window;
    const sPageWidgets widgets;
    cSettingFields fields;

  private:
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
    bool writeFile(const QString& path, const std::string& text);
    std::string settingsFileName() const;
    std::string furtherSettingsFileName() const;
    void saveFurtherSettings() const;
    void loadFurtherSettings();
    void start();
    void deliverPendingMessages();
    void choosePreparation();
    void showPreparation();
    void showProgress();
    void showSummary(const QString& ending);

    const eModule module;
    cAnalysisRun* const analysis;
    cInputList files;
    cPreparationDialog* preparation = nullptr; ///< owned by the window
    std::vector<cStatusMessage> messages;      ///< received and not yet shown, in order
    int messagesInInterval = 0;                ///< received since the last refresh
    cRunProgress progress;
    sRememberedDirectories directories;
    bool isStoppedByUser = false;
    bool isInProgress = false; ///< the progress display shows a run
};

} // namespace kelmo

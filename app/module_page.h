// What the window keeps for each of its two modules.
#pragma once

#include "app/input_list.h"
#include "app/run_progress.h"
#include "run/analysis_run.h"
#include "run/status_message.h"

#include <QString>

#include <vector>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTextBrowser;

namespace kelmo {

/// Directories in which the file dialogs of a module start; empty when nothing is remembered. They
/// survive the program.
struct sRememberedDirectories {
    QString tables; ///< of the parameter table chosen last
    QString addedFiles;
    QString savedList;
    QString loadedList;
};

/// The widgets belong to the form, the worker to the window.
struct sModulePage {
    cAnalysisRun* worker = nullptr;
    QTextBrowser* display = nullptr;
    QPushButton* runButton = nullptr;
    QPushButton* stopButton = nullptr;
    QLineEdit* outputDirectory = nullptr;
    QProgressBar* progressBar = nullptr;
    QLabel* progressLabel = nullptr;
    cInputList inputFiles;
    std::vector<cStatusMessage> messages; ///< received and not yet shown, in order
    int messagesInInterval = 0;           ///< received since the displays were last refreshed
    cRunProgress progress;
    sRememberedDirectories remembered;
    bool isStoppedByUser = false;
    bool isInProgress = false; ///< the progress display shows a run
};

} // namespace kelmo

// Starting and stopping the worker of a module.

#include "analysis/checks.h"
#include "analysis/standard_areas.h"
#include "app/message_pane.h"
#include "app/module_page.h"
#include "base/thread_order.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace kelmo {

void cModulePage::run() {
    // A second click may come before the first one's start has disabled the button.
    if (!analysis->isIdle()) {
        return;
    }
    finishTyping();
    const cSettings wanted = settings().resolved();
    const auto fileCount = static_cast<std::size_t>(files.paths().size());
    if (const auto problem = findProblem(wanted, fileCount)) {
        refuse(QString::fromStdString(problem->text));
        return;
    }
    sParameterTables tables;
    if (const auto problem = readParameterTables(wanted, tables)) {
        tellProblem(*problem);
        return;
    }
    analysis->setUp(wanted, tables);
    analysis->setInputFiles(files.paths());
    start();
    if (const std::string warning = standardAreaWarning(wanted, tables); !warning.empty()) {
        showMessage(Qt::yellow, QString::fromStdString(warning));
    }
}

void cModulePage::start() {
    // What an earlier run still has to say belongs before this one's start.
    deliverPendingMessages();
    showQueued();
    const qsizetype fileCount = files.paths().size();
    isStoppedByUser = false;
    progress.begin(fileCount);
    isInProgress = true;
    widgets.progressBar->setMaximum(static_cast<int>(fileCount));
    widgets.progressBar->setTextVisible(true);
    widgets.progressBar->setValue(0);
    widgets.progressLabel->clear();
    analysis->start();
    appendMessage(*widgets.display, Qt::blue, QStringLiteral("Analysis started"));
}

void cModulePage::stop() {
    isStoppedByUser = true;
    endWorker();
    // Nothing of a stopped run may appear below the message that it was stopped.
    deliverPendingMessages();
    widgets.runButton->setEnabled(true);
    widgets.stopButton->setEnabled(false);
    showMessage(Qt::yellow, QStringLiteral("Analysis stopped by user"));
    showSummary(QCoreApplication::translate("kelmo", "Stopped"));
}

void cModulePage::endWorker() {
    if (analysis->isRunning()) {
        analysis->requestInterruption();
        analysis->terminate();
    }
    analysis->awaitEnd();
}

void cModulePage::deliverPendingMessages() {
    QCoreApplication::sendPostedEvents(window, QEvent::MetaCall);
}

void cModulePage::runStarted() {
    widgets.runButton->setEnabled(false);
    widgets.stopButton->setEnabled(true);
}

void cModulePage::runFinished() {
    takeOver(analysis);
    widgets.runButton->setEnabled(true);
    widgets.stopButton->setEnabled(false);
    if (isStoppedByUser) {
        isStoppedByUser = false;
        return;
    }
    if (progress.findings().has_value()) {
        showMessage(Qt::black,
                    "Found: " + QString::fromStdString(findingsText(*progress.findings())));
    }
    showMessage(Qt::green, QStringLiteral("Analysis finished"));
    showSummary(QCoreApplication::translate("kelmo", "Finished"));
}

} // namespace kelmo

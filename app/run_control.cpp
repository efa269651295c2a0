// Starting and stopping the workers: what both modules share.

#include "app/kelmo_linux.h"
#include "app/message_pane.h"
#include "base/thread_order.h"
#include "run/file_path.h"

#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextBrowser>

namespace kelmo {

bool kelmo::openInFStream(std::ifstream& stream, QString path, QTextBrowser* display) {
    if (openRegularFile(stream, path)) {
        return true;
    }
    appendMessage(*display, display->textColor(), "Could not open file " + displayedPath(path));
    return false;
}

/// Returns false, for callers that give up.
bool kelmo::refuse(sModulePage& page, const QString& problem) {
    showMessage(page, Qt::red, problem);
    return false;
}

/// A second click may come before the first one's start has disabled the button.
bool kelmo::isReadyForRun(const sModulePage& page) const {
    return page.worker->isIdle();
}

/// A shortcut leaves the field in which it is pressed as it is; what the field shows must be what
/// counts.
void kelmo::finishTyping() {
    for (QDoubleSpinBox* box : findChildren<QDoubleSpinBox*>()) {
        box->interpretText();
    }
}

void kelmo::start(sModulePage& page) {
    // What an earlier run still has to say belongs before this one's start.
    deliverPendingMessages();
    showQueued(page);
    const qsizetype files = page.inputFiles.paths().size();
    page.isStoppedByUser = false;
    page.progress.begin(files);
    page.isInProgress = true;
    page.progressBar->setMaximum(static_cast<int>(files));
    page.progressBar->setTextVisible(true);
    page.progressBar->setValue(0);
    page.progressLabel->clear();
    page.worker->start();
    appendMessage(*page.display, Qt::blue, QStringLiteral("Analysis started"));
}

void kelmo::stop(sModulePage& page) {
    page.isStoppedByUser = true;
    endWorker(page);
    // Nothing of a stopped run may appear below the message that it was stopped.
    deliverPendingMessages();
    page.runButton->setEnabled(true);
    page.stopButton->setEnabled(false);
    showMessage(page, Qt::yellow, QStringLiteral("Analysis stopped by user"));
    showSummary(page, tr("Stopped"));
}

/// Returns when the worker has come to its next safe point; nothing is half-written then.
void kelmo::endWorker(sModulePage& page) {
    if (page.worker->isRunning()) {
        page.worker->requestInterruption();
        page.worker->terminate();
    }
    page.worker->awaitEnd();
}

void kelmo::deliverPendingMessages() {
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void kelmo::runStarted(sModulePage& page) {
    page.runButton->setEnabled(false);
    page.stopButton->setEnabled(true);
}

void kelmo::runFinished(sModulePage& page) {
    takeOver(page.worker);
    page.runButton->setEnabled(true);
    page.stopButton->setEnabled(false);
    if (page.isStoppedByUser) {
        page.isStoppedByUser = false;
        return;
    }
    showMessage(page, Qt::green, QStringLiteral("Analysis finished"));
    showSummary(page, tr("Finished"));
}

void kelmo::kevStarted() {
    runStarted(kev);
}

void kelmo::kevFinished() {
    runFinished(kev);
}

void kelmo::vorStarted() {
    runStarted(vor);
}

void kelmo::vorFinished() {
    runFinished(vor);
}

void kelmo::on_pushButtonKEVStop_clicked() {
    stop(kev);
}

void kelmo::on_pushButtonVORStop_clicked() {
    stop(vor);
}

} // namespace kelmo

// The window's log panes and progress displays.

#include "app/kelmo_linux.h"
#include "app/message_pane.h"
#include "base/thread_order.h"

#include <QLabel>
#include <QProgressBar>
#include <QStringList>
#include <QTextBrowser>

#include <utility>

namespace kelmo {

namespace {

// Fast enough to look immediate, rare enough to cost a long run nothing.
constexpr int refreshInterval = 50; // ms

// So many messages of an interval are shown one by one. Those of a flood, for example a long list
// of files of which none can be opened, wait for its end: together they cost a fifth of the time.
constexpr int shownOneByOne = 200;

} // namespace

void kelmo::receiveKEVStatusMessage(cStatusMessage& message) {
    if (take(kev, message)) {
        emit kevMessageReceived();
    }
}

void kelmo::receiveVORStatusMessage(cStatusMessage& message) {
    if (take(vor, message)) {
        emit vorMessageReceived();
    }
}

/// Returns whether the message is to be shown now, rather than with the next refresh.
bool kelmo::take(sModulePage& page, const cStatusMessage& message) {
    takeOver(&message);
    page.messages.push_back(message);
    page.progress.take(message);
    if (!refreshTimer.isActive()) {
        refreshTimer.start(refreshInterval);
    }
    return ++page.messagesInInterval <= shownOneByOne;
}

void kelmo::refreshDisplays() {
    for (sModulePage* page : {&kev, &vor}) {
        page->messagesInInterval = 0;
        showProgress(*page);
    }
    if (!kev.messages.empty()) {
        emit kevMessageReceived();
    }
    if (!vor.messages.empty()) {
        emit vorMessageReceived();
    }
}

void kelmo::updateKEVDisplay() {
    showQueued(kev);
}

void kelmo::updateVORDisplay() {
    showQueued(vor);
}

void kelmo::on_pushButtonKEVOutputClear_clicked() {
    kev.display->clear();
}

void kelmo::on_pushButtonVORClearDisplay_clicked() {
    vor.display->clear();
}

void kelmo::showQueued(sModulePage& page) {
    appendMessages(*page.display, std::exchange(page.messages, {}));
}

void kelmo::showMessage(sModulePage& page, Qt::GlobalColor colour, const QString& text) {
    page.messages.emplace_back(colour, text);
    showQueued(page);
}

void kelmo::showProgress(sModulePage& page) {
    if (!page.isInProgress) {
        return;
    }
    page.progressBar->setValue(static_cast<int>(page.progress.filesDone()));
    const QString& file = page.progress.currentFile();
    const QString text = file.isEmpty() ? QString() : tr("Analysing %1").arg(file);
    QLabel& label = *page.progressLabel;
    label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, label.width()));
    label.setToolTip(file);
}

void kelmo::showSummary(sModulePage& page, const QString& ending) {
    page.isInProgress = false;
    const cRunProgress& progress = page.progress;
    page.progressBar->setValue(static_cast<int>(progress.filesDone()));
    QStringList parts(
        tr("%1: %2 of %3 files").arg(ending).arg(progress.filesDone()).arg(progress.fileCount()));
    if (progress.filesWithErrors() > 0) {
        parts.append(tr("%1 with errors").arg(progress.filesWithErrors()));
    }
    if (progress.filesWithWarnings() > 0) {
        parts.append(tr("%1 with warnings").arg(progress.filesWithWarnings()));
    }
    if (const auto missing = page.worker->unwrittenReports().size(); missing > 0) {
        parts.append(tr("%1 reports not written").arg(missing));
    }
    page.progressLabel->setText(parts.join(QStringLiteral(", ")));
    page.progressLabel->setToolTip(page.worker->unwrittenReports().join(u'\n'));
}

} // namespace kelmo

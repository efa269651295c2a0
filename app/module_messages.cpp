// The log pane and the progress display of a module.

#include "app/message_pane.h"
#include "app/module_page.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QTextBrowser>

#include <utility>

namespace kelmo {

namespace {

// So many messages of an interval are shown one by one. Those of a flood, for example a long list
// of files of which none can be opened, wait for its end: together they cost a fifth of the time.
constexpr int shownOneByOne = 200;

QString translated(const char* text) {
    return QCoreApplication::translate("kelmo", text);
}

} // namespace

bool cModulePage::take(const cStatusMessage& message) {
    messages.push_back(message);
    if (message.colour == QColor(Qt::yellow)) {
        progress.countWarning();
    }
    return ++messagesInInterval <= shownOneByOne;
}

void cModulePage::takeEnded(const sFileEnded& file) {
    progress.endFile(file.outcome);
    if (file.outcome == eFileOutcome::analysed && file.findings.has_value()) {
        progress.add(*file.findings);
    }
}

void cModulePage::showQueued() {
    appendMessages(*widgets.display, std::exchange(messages, {}));
}

void cModulePage::showMessage(Qt::GlobalColor colour, const QString& text) {
    messages.emplace_back(colour, text);
    showQueued();
}

void cModulePage::clearDisplay() {
    widgets.display->clear();
}

void cModulePage::refresh() {
    messagesInInterval = 0;
    showProgress();
}

void cModulePage::showProgress() {
    if (!isInProgress) {
        return;
    }
    widgets.progressBar->setValue(static_cast<int>(progress.filesDone()));
    const QString& file = progress.currentFile();
    const QString text = file.isEmpty() ? QString() : translated("Analysing %1").arg(file);
    QLabel& label = *widgets.progressLabel;
    label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, label.width()));
    label.setToolTip(file);
}

void cModulePage::showSummary(const QString& ending) {
    isInProgress = false;
    widgets.progressBar->setValue(static_cast<int>(progress.filesDone()));
    QStringList parts(translated("%1: %2 of %3 files")
                          .arg(ending)
                          .arg(progress.filesDone())
                          .arg(progress.fileCount()));
    if (progress.filesWithErrors() > 0) {
        parts.append(translated("%1 with errors").arg(progress.filesWithErrors()));
    }
    if (progress.filesWithWarnings() > 0) {
        parts.append(translated("%1 with warnings").arg(progress.filesWithWarnings()));
    }
    const QStringList unwritten = analysis->unwrittenReports();
    if (!unwritten.isEmpty()) {
        parts.append(translated("%1 reports not written").arg(unwritten.size()));
    }
    widgets.progressLabel->setText(parts.join(QStringLiteral(", ")));
    widgets.progressLabel->setToolTip(unwritten.join(u'\n'));
}

} // namespace kelmo

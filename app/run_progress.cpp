#include "app/run_progress.h"

namespace kelmo {

void cRunProgress::begin(qsizetype numberOfFiles) {
    *this = cRunProgress();
    files = numberOfFiles;
}

void cRunProgress::take(const cStatusMessage& message) {
    static const QString startText = QStringLiteral("Analysing ");
    static const QString pathText = QStringLiteral(" of peptide from ");
    static const QString dots = QStringLiteral("...");
    const QString& text = message.text;
    if (message.colour == QColor(Qt::yellow)) {
        ++warned;
    } else if (message.colour == QColor(Qt::red)) {
        if (text.startsWith(QLatin1String("Could not write report "))) {
            currentLacksReport = true;
        } else {
            endFile(true);
        }
    } else if (text.endsWith(QLatin1String(" analyzed"))) {
        endFile(false);
    } else if (text.startsWith(startText) && text.endsWith(dots)) {
        const qsizetype begin = text.indexOf(pathText) + pathText.size();
        current = text.mid(begin, text.size() - dots.size() - begin);
    }
}

void cRunProgress::endFile(bool isGivenUp) {
    ++done;
    if (isGivenUp || currentLacksReport) {
        ++failed;
    }
    current.clear();
    currentLacksReport = false;
}

} // namespace kelmo

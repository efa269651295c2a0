#include "app/message_pane.h"

#include <QPalette>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace kelmo {

namespace {

// Marks the first paragraph of a pane that was written to: an empty message is invisible otherwise.
constexpr int writtenState = 1;

/// Relative luminance of one sRGB channel.
double linearChannel(double value) {
    constexpr double linearLimit = 0.03928;
    return value <= linearLimit ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor& colour) {
    return 0.2126 * linearChannel(colour.redF()) + 0.7152 * linearChannel(colour.greenF()) +
           0.0722 * linearChannel(colour.blueF());
}

bool isUntouched(const QTextDocument& document) {
    return document.isEmpty() && document.firstBlock().userState() != writtenState;
}

/// Removing from the top lays out all that follows anew, so it is done rarely and much at once.
void removeOldest(QTextDocument& document) {
    constexpr int removedAtOnce = keptParagraphs / 5;
    const int excess = document.blockCount() - keptParagraphs;
    const bool isTooLong = document.characterCount() > keptCharacters;
    if (excess <= 0 && !isTooLong) {
        return;
    }
    const int removed = excess > 0 ? excess + removedAtOnce : document.blockCount() / 2;
    QTextCursor oldest(&document);
    oldest.setPosition(document.findBlockByNumber(removed).position(), QTextCursor::KeepAnchor);
    oldest.removeSelectedText();
}

/// The text with line feeds in lines that are too long: laying out a paragraph takes time that
/// grows with the square of its length, and a message that names every atom of a file can be
/// megabytes long. Of those the beginning is shown.
QString inShownParagraphs(const QString& text) {
    constexpr qsizetype longestLine = 4000;
    if (text.size() <= longestLine) {
        return text;
    }
    QString broken;
    qsizetype lineLength = 0;
    for (const QChar character : QStringView(text).left(shownCharacters)) {
        // Between words, if there are any, and never within a character of two units.
        const bool isBreak = (lineLength >= longestLine && character.isSpace()) ||
                             (lineLength >= 2 * longestLine && !character.isLowSurrogate());
        if (isBreak && character != u'\n') {
            broken += u'\n';
            lineLength = 0;
        }
        broken += character;
        lineLength = character == u'\n' ? 0 : lineLength + 1;
    }
    if (text.size() > shownCharacters) {
        broken += QStringLiteral(" ... (%1 more characters)").arg(text.size() - shownCharacters);
    }
    return broken;
}

QTextCharFormat formatOf(const QTextBrowser& pane, const QColor& colour) {
    QTextCharFormat format;
    format.setForeground(colour);
    format.setBackground(readableBackground(colour, pane.palette().color(QPalette::Base)));
    return format;
}

} // namespace

double contrastRatio(const QColor& a, const QColor& b) {
    constexpr double flare = 0.05;
    const auto [darker, lighter] = std::minmax({relativeLuminance(a), relativeLuminance(b)});
    return (lighter + flare) / (darker + flare);
}

QColor readableBackground(const QColor& text, const QColor& base) {
    if (contrastRatio(text, base) >= readableContrast) {
        return base;
    }
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return contrastRatio(text, black) > contrastRatio(text, white) ? black : white;
}

void prepareMessagePane(QTextBrowser& pane) {
    pane.document()->setUndoRedoEnabled(false);
}

void appendMessages(QTextBrowser& pane, std::span<const cStatusMessage> messages) {
    if (messages.empty()) {
        return;
    }
    QScrollBar& bar = *pane.verticalScrollBar();
    const bool isAtEnd = bar.value() >= bar.maximum();
    QTextDocument& document = *pane.document();
    bool isFirst = isUntouched(document);
    const QTextCursor selection = pane.textCursor();
    const int anchor = selection.anchor();
    const int position = selection.position();
    QTextCharFormat format;
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    for (const cStatusMessage& message : messages) {
        format = formatOf(pane, message.colour);
        QTextBlockFormat band;
        band.setBackground(format.background());
        if (isFirst) {
            cursor.setBlockFormat(band);
            cursor.setBlockCharFormat(format);
            cursor.block().setUserState(writtenState);
        } else {
            cursor.insertBlock(band, format);
        }
        isFirst = false;
        cursor.insertText(inShownParagraphs(message.text), format);
    }
    cursor.endEditBlock();
    if (anchor != position) {
        // A selection that reached the end has grown with it.
        cursor.setPosition(anchor);
        cursor.setPosition(position, QTextCursor::KeepAnchor);
        pane.setTextCursor(cursor);
    } else {
        pane.setCurrentCharFormat(format);
    }
    removeOldest(document);
    if (isAtEnd) {
        bar.setValue(bar.maximum());
    }
}

void appendMessage(QTextBrowser& pane, const QColor& colour, const QString& text) {
    const cStatusMessage message(colour, text);
    appendMessages(pane, {&message, 1});
}

} // namespace kelmo

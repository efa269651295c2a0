// Coloured lines in a log pane, readable on any background.
#pragma once

#include "app/status_message.h"

#include <QColor>

#include <span>

class QTextBrowser;

namespace kelmo {

/// The least contrast at which text of normal size counts as readable (WCAG 2.1, criterion 1.4.3).
inline constexpr double readableContrast = 4.5;

/// The most paragraphs that a pane keeps. A run of 10,000 files sends 20,000 or more.
inline constexpr int keptParagraphs = 30'000;
/// The most characters that it keeps, and that it shows of one message. The toolkit does not come
/// to an end with laying out very much more.
inline constexpr int keptCharacters = 20'000'000;
inline constexpr int shownCharacters = 200'000;

/// The contrast of two opaque colours, from 1 to 21, by the definition of WCAG 2.1.
double contrastRatio(const QColor& a, const QColor& b);

/// A background on which the text colour is readable: the base itself if that will do, otherwise
/// black or white.
QColor readableBackground(const QColor& text, const QColor& base);

/// Keeps the pane from remembering how its text came about.
void prepareMessagePane(QTextBrowser& pane);

/// Appends each message as a paragraph of its own, as plain text in its colour, and leaves the
/// pane's text colour at that of the last. When there are too many, the oldest fifth goes. Follows
/// the end unless the user has scrolled away from it, and leaves a selection alone.
void appendMessages(QTextBrowser& pane, std::span<const cStatusMessage> messages);
void appendMessage(QTextBrowser& pane, const QColor& colour, const QString& text);

} // namespace kelmo

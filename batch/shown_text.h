// Names that come from outside, made fit to be shown on a terminal.
#pragma once

#include <QString>

#include <string_view>

namespace kelmo {

/// The text with "?" for every control character, line ends included: a file name can neither break
/// a message in two nor send commands to the terminal.
QString onOneLine(QString text);

/// A path for a message, on one line; what is no UTF-8 shows as the replacement character.
QString shownPath(const QString& path);
QString shownPath(std::string_view bytes);

} // namespace kelmo

// The one exception of the runner: the run cannot be started, and what the user is told.
#pragma once

#include <QString>

#include <stdexcept>

namespace kelmo {

/// Thrown before anything is written; main() shows the text and exits with 2.
class cUsageError : public std::runtime_error {
  public:
    explicit cUsageError(const QString& text) : std::runtime_error(text.toStdString()) {}

    QString text() const { return QString::fromUtf8(what()); }
};

} // namespace kelmo

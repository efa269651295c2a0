// A virtual X server and the keyboard of its user.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace kelmo {

/// An Xvfb of its own on a free display, and the keys that a user types there. Not started yet
/// after construction.
class cXDisplay {
  public:
    ~cXDisplay();

    /// Starts the server and returns its display, such as ":1"; empty when it does not start.
    QString start();

    /// Waits until a visible window has this title and gives it the keyboard; false after a while.
    bool focus(const QString& title);
    /// Waits until no visible window has this title any more; false after a while.
    bool waitForClosing(const QString& title);
    /// Presses key combinations in the window that has the keyboard, such as "alt+n" or "Return".
    void press(const QStringList& keys);
    void type(const QString& text);

  private:
    QStringList visibleWindows(const QString& title);
    QString run(const QStringList& xdotool);

    QProcess server;
    QString display;
};

} // namespace kelmo

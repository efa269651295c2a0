#include "tests/app/x_display.h"

#include "tests/app/app_test_tools.h"

#include <QElapsedTimer>
#include <QProcessEnvironment>
#include <QThread>

#include <unistd.h>

namespace kelmo {

namespace {

constexpr int interval = 50; // ms, between two looks

} // namespace

cXDisplay::~cXDisplay() {
    if (server.state() != QProcess::NotRunning) {
        server.terminate();
        server.waitForFinished();
    }
}

QString cXDisplay::start() {
    // The server picks a free display and tells its number on the descriptor.
    server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten", "tcp"});
    QByteArray number;
    while (!number.endsWith('\n') && server.waitForReadyRead(patience)) {
        number += server.readAllStandardOutput();
    }
    if (number.endsWith('\n')) {
        display = ':' + QString::fromLatin1(number.trimmed());
    }
    return display;
}

QString cXDisplay::run(const QStringList& xdotool) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", display);
    process.setProcessEnvironment(environment);
    process.start("xdotool", xdotool);
    process.waitForFinished(patience);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QStringList cXDisplay::visibleWindows(const QString& title) {
    return run({"search", "--onlyvisible", "--name", '^' + title + '$'})
        .split('\n', Qt::SkipEmptyParts);
}

bool cXDisplay::focus(const QString& title) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < patience) {
        const QStringList windows = visibleWindows(title);
        if (!windows.isEmpty()) {
            run({"windowfocus", "--sync", windows.last()});
            return true;
        }
        QThread::msleep(interval);
    }
    return false;
}

bool cXDisplay::waitForClosing(const QString& title) {
    QElapsedTimer clock;
    clock.start();
    while (!visibleWindows(title).isEmpty()) {
        if (clock.elapsed() > patience) {
            return false;
        }
        QThread::msleep(interval);
    }
    return true;
}

void cXDisplay::press(const QStringList& keys) {
    run(QStringList({"key", "--delay", "30"}) + keys);
}

void cXDisplay::type(const QString& text) {
    run({"type", "--delay", "5", text});
}

} // namespace kelmo

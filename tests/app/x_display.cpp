#include "tests/app/x_display.h"

#include <QElapsedTimer>
#include <QProcessEnvironment>
#include <QThread>

#include <unistd.h>

cXDisplay::~cXDisplay() {
    if (server.state() != QProcess::NotRunning) {
        server.terminate();
        server.waitForFinished();
    }
}

QString cXDisplay::start() {
    constexpr int limit = 20'000; // ms
    // The server picks a free display and tells its number on the descriptor.
    server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten", "tcp"});
    QByteArray number;
    while (!number.endsWith('\n') && server.waitForReadyRead(limit)) {
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
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

bool cXDisplay::focus(const QString& title) {
    constexpr int limit = 20'000; // ms
    constexpr int interval = 50;  // ms
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < limit) {
        const QString windows = run({"search", "--onlyvisible", "--name", '^' + title + '$'});
        if (!windows.isEmpty()) {
            run({"windowfocus", "--sync", windows.section('\n', -1)});
            return true;
        }
        QThread::msleep(interval);
    }
    return false;
}

void cXDisplay::press(const QStringList& keys) {
    run(QStringList({"key", "--delay", "30"}) + keys);
}

void cXDisplay::type(const QString& text) {
    run({"type", "--delay", "5", text});
}

// The desktop program.

#include "app/kelmo_linux.h"
#include "base/parallel_work.h"
#include "run/process_start.h"

#include <QApplication>

#include <clocale>

int main(int argc, char* argv[]) {
    kelmo::prepareProcess();
    kelmo::limitThreads(kelmo::startableThreads(kelmo::usualThreads()));
    QApplication application(argc, argv);
    // The toolkit has taken the user's locale; tables and PDB files have decimal points everywhere.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(QStringLiteral("kelmo"));
    QApplication::setDesktopFileName(QStringLiteral("example.kelmo.kelmo"));
    kelmo::kelmo window;
    window.show();
    QObject::connect(&application, &QApplication::lastWindowClosed, &application,
                     &QApplication::quit);
    return QApplication::exec();
}

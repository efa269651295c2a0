#include "app/shipped_tables.h"

#include "run/file_path.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <fstream>
#include <string>

QString shippedTablesDirectory() {
    const QDir programs(QCoreApplication::applicationDirPath());
    // An installed program must not depend on what happens to the sources it was built from.
    if (programs == QDir(QStringLiteral(KELMO_BUILT_PROGRAMS_DIR))) {
        return QStringLiteral(KELMO_SOURCE_DATA_DIR);
    }
    const QFileInfo installed(programs.filePath(QStringLiteral("../share/kelmo")));
    return installed.isDir() ? installed.canonicalFilePath() : QString();
}

QStringList shippedTables(const QString& suffix) {
    const QString place = shippedTablesDirectory();
    if (place.isEmpty()) {
        return {};
    }
    QStringList paths;
    for (const QFileInfo& file :
         QDir(place).entryInfoList({'*' + suffix}, QDir::Files, QDir::Name)) {
        paths.append(file.filePath());
    }
    return paths;
}

QString tableTitle(const QString& path) {
    std::ifstream in;
    std::string line;
    if (!openRegularFile(in, path) || !std::getline(in, line) || !line.starts_with('#')) {
        return {};
    }
    return QString::fromStdString(line.substr(1)).trimmed();
}

#include "app/shipped_tables.h"

#include "base/text_line.h"
#include "run/file_path.h"
#include "run/shipped_directories.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <fstream>
#include <string>

namespace kelmo {

QString shippedTablesDirectory() {
    for (const std::filesystem::path& directory : shippedDataDirectories()) {
        const QFileInfo place(pathFromBytes(directory.native()));
        if (place.isDir()) {
            return place.canonicalFilePath();
        }
    }
    return {};
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
    if (!openRegularFile(in, path) || !getTextLine(in, line) || !line.starts_with('#')) {
        return {};
    }
    return QString::fromStdString(line.substr(1)).trimmed();
}

} // namespace kelmo

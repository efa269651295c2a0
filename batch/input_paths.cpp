#include "batch/input_paths.h"

#include "batch/shown_text.h"
#include "batch/text_lines.h"
#include "run/file_path.h"

#include <QHash>

QStringList inputPaths(const std::vector<sInputSource>& sources) {
    QStringList paths;
    for (const sInputSource& source : sources) {
        const QString path = pathFromBytes(source.path);
        if (source.kind == sInputSource::eKind::pdbFile) {
            paths.append(path);
            continue;
        }
        for (const std::string& line : readLines(path, "--list")) {
            if (!line.empty()) {
                paths.append(pathFromBytes(line));
            }
        }
    }
    return paths;
}

QStringList sameBaseNameWarnings(const QStringList& paths) {
    QStringList warnings;
    QHash<QString, QString> firstByBaseName;
    for (const QString& path : paths) {
        const QString baseName = baseNameOf(path);
        const auto first = firstByBaseName.constFind(baseName);
        if (first == firstByBaseName.constEnd()) {
            firstByBaseName.insert(baseName, path);
            continue;
        }
        warnings.append(
            QStringLiteral("%1 and %2 have the same base name: the reports of the later "
                           "file replace those of the earlier one")
                .arg(shownPath(*first), shownPath(path)));
    }
    return warnings;
}

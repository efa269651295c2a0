#include "batch/shipped_data.h"

#include "batch/shown_text.h"
#include "batch/usage_error.h"
#include "run/file_path.h"

#include <system_error>

namespace kelmo {

QString shippedTable(const char* fileName) {
    QString searched;
    for (const std::filesystem::path& directory : shippedDataDirectories()) {
        const std::filesystem::path table = directory / fileName;
        std::error_code error;
        if (std::filesystem::is_regular_file(table, error)) {
            return pathFromBytes(table.native());
        }
        searched += "\n  " + shownPath(directory.native());
    }
    throw cUsageError(
        QStringLiteral("The table %1, which comes with the program, is missing. These "
                       "directories were searched:")
            .arg(QLatin1String(fileName)) +
        searched);
}

} // namespace kelmo

#include "batch/shipped_data.h"

#include "batch/shown_text.h"
#include "batch/usage_error.h"
#include "run/file_path.h"

#include <system_error>

namespace {

/// Empty when the system does not tell.
std::filesystem::path directoryOfProgram() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

} // namespace

std::vector<std::filesystem::path> shippedDataDirectories() {
    std::vector<std::filesystem::path> directories;
    const std::filesystem::path programs = directoryOfProgram();
    std::error_code error;
    // An installed program must not depend on what happens to the sources it was built from.
    if (std::filesystem::equivalent(programs, KELMO_BUILT_PROGRAMS_DIR, error)) {
        directories.emplace_back(KELMO_SOURCE_DATA_DIR);
    }
    directories.push_back(programs.parent_path() / "share" / "kelmo");
    directories.emplace_back(KELMO_INSTALLED_DATA_DIR);
    return directories;
}

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

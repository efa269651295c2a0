#include "analysis/shipped_tables.h"

#include "base/shown_text.h"
#include "base/usage_error.h"

#include <map>
#include <system_error>

namespace kelmo {

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

std::filesystem::path findShippedTable(const std::string& fileName) {
    for (const std::filesystem::path& directory : shippedDataDirectories()) {
        std::error_code error;
        if (std::filesystem::is_regular_file(directory / fileName, error)) {
            return directory / fileName;
        }
    }
    return {};
}

std::filesystem::path shippedTable(const std::string& fileName) {
    std::filesystem::path table = findShippedTable(fileName);
    if (!table.empty()) {
        return table;
    }
    std::string text = "The table " + fileName +
                       ", which comes with the program, is missing. These directories were "
                       "searched:";
    for (const std::filesystem::path& directory : shippedDataDirectories()) {
        text += "\n  " + shownText(directory.native());
    }
    throw cUsageError(text);
}

std::vector<std::filesystem::path> shippedTables(std::string_view suffix) {
    std::map<std::string, std::filesystem::path> tables; // by file name
    for (const std::filesystem::path& directory : shippedDataDirectories()) {
        std::error_code error;
        for (std::filesystem::directory_iterator entry(directory, error), end;
             !error && entry != end; entry.increment(error)) {
            const std::string name = entry->path().filename();
            if (name.ends_with(suffix) && entry->is_regular_file(error)) {
                tables.emplace(name, entry->path());
            }
        }
    }
    std::vector<std::filesystem::path> paths;
    paths.reserve(tables.size());
    for (const auto& [name, path] : tables) {
        paths.push_back(path);
    }
    return paths;
}

} // namespace kelmo

#include "run/shipped_directories.h"

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

} // namespace kelmo

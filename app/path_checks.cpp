#include "app/path_checks.h"

#include "run/file_path.h"

#include <filesystem>
#include <system_error>

namespace kelmo {

bool isDirectory(const QString& path) {
    std::error_code error;
    return std::filesystem::is_directory(pathToBytes(path), error);
}

} // namespace kelmo

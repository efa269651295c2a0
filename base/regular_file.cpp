#include "base/regular_file.h"

#include <filesystem>
#include <system_error>

#include <sys/stat.h>

namespace kelmo {

bool openRegularFile(std::ifstream& in, const std::string& path) {
    struct stat status {};
    if (path.find('\0') != std::string::npos || ::stat(path.c_str(), &status) != 0 ||
        !S_ISREG(status.st_mode)) {
        return false;
    }
    in.open(path, std::ios::in);
    return in.is_open();
}

bool isDirectory(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

} // namespace kelmo

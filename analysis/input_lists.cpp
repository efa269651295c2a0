#include "analysis/input_lists.h"

#include <filesystem>
#include <system_error>

namespace kelmo {

namespace {

std::string_view pathIn(std::string_view line) {
    if (!line.ends_with('\r')) {
        return line;
    }
    std::error_code error;
    return std::filesystem::exists(std::filesystem::path(line), error)
               ? line
               : withoutCarriageReturn(line);
}

} // namespace

void forEachListedPath(const std::string& listFile, const std::string& requester,
                       const std::function<void(std::string_view path)>& take,
                       eTextSource allowed) {
    forEachLine(
        listFile, requester, [&](std::string_view line) { take(pathIn(line)); }, allowed);
}

} // namespace kelmo

#include "batch/text_lines.h"

#include "batch/shown_text.h"
#include "batch/usage_error.h"
#include "run/file_path.h"

#include <fstream>

std::vector<std::string> readLines(const QString& path, const QString& requester) {
    std::ifstream in(pathToBytes(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        lines.push_back(line);
    }
    // A directory opens, but cannot be read.
    if (!in.is_open() || in.bad()) {
        throw cUsageError(requester + ": Could not open file " + shownPath(path));
    }
    return lines;
}

#include "app/table_title.h"

#include "base/text_line.h"
#include "run/file_path.h"

#include <fstream>
#include <string>

namespace kelmo {

QString tableTitle(const QString& path) {
    std::ifstream in;
    std::string line;
    if (!openRegularFile(in, path) || !getTextLine(in, line) || !line.starts_with('#')) {
        return {};
    }
    return QString::fromStdString(line.substr(1)).trimmed();
}

} // namespace kelmo

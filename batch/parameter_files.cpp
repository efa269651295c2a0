#include "batch/parameter_files.h"

#include "batch/shipped_data.h"
#include "batch/shown_text.h"
#include "batch/usage_error.h"
#include "run/file_path.h"

#include <fstream>

namespace kelmo {

namespace {

QString couldNotOpenText(const sSetting& file) {
    return "Could not open file " + shownPath(file.value);
}

/// `invalidPathText` is what follows when the file cannot be opened.
template <typename Table>
Table load(const sSetting& file, QString (*read)(std::istream&, Table&),
           const QString& invalidPathText) {
    std::ifstream in;
    if (!openRegularFile(in, file.path())) {
        throw cUsageError(file.origin + ": " + couldNotOpenText(file) + '\n' + invalidPathText);
    }
    Table table;
    if (const QString fault = read(in, table); !fault.isEmpty()) {
        throw cUsageError(file.origin + ": " + shownPath(file.value) + ": " + fault);
    }
    return table;
}

} // namespace

sSetting tableSetting(const cConfiguration& configuration, const char* key,
                      const char* shippedName) {
    if (const sSetting* setting = configuration.find(key); setting != nullptr) {
        return *setting;
    }
    return {pathToBytes(shippedTable(shippedName)), QLatin1String(key) + " by default"};
}

std::map<std::string, double> loadRadii(const sSetting& file) {
    if (file.value.empty()) {
        throw cUsageError(file.origin + ": Please specify a radii file!");
    }
    return load<std::map<std::string, double>>(file, readRadiiTable, invalidRadiiPathText());
}

std::map<std::string, sAsa> loadStandardAsa(const sSetting& file) {
    return load<std::map<std::string, sAsa>>(file, readStandardAsaTable,
                                             invalidStandardAsaPathText());
}

std::map<std::string, double> loadHydrophobicity(const sSetting& file) {
    return load<std::map<std::string, double>>(file, readHydrophobicityTable,
                                               invalidHydrophobicityPathText());
}

contactMap loadContactRules(const sSetting& file) {
    return load<contactMap>(file, readContactRules, QString());
}

} // namespace kelmo

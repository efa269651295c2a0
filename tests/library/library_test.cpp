// libkelmo as a program of somebody else uses it: public headers, nothing linked but the library.
#include "analysis/attributes.h"
#include "analysis/columns.h"
#include "analysis/parameter_tables.h"
#include "analysis/settings.h"
#include "base/text_sink.h"
#include "base/usage_error.h"
#include "input/structure_reader.h"
#include "reports/report_formats.h"

#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>

namespace kelmo {

namespace {

const std::string sourceDirectory = KELMO_SOURCE_DIR;

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

/// The tables of the structure module by these keys, with their files.
constexpr const char* tableKeys[][2] = {{"radii_filename", "protor.radii"},
                                        {"standard_asa", "ala-x-ala.asa"},
                                        {"hydro_file", "kyte-doolittle.hpb"}};

/// Every attribute calculated and written.
cSettings everything() {
    cSettings settings(eModule::kev);
    for (const sAttribute& attribute : attributes()) {
        settings.setFlag(attribute.switchKey(), true);
        if (!attribute.writeKey.empty()) {
            settings.setFlag(attribute.writeKey, true);
        }
    }
    for (const auto& [key, file] : tableKeys) {
        settings.setText(key, sourceDirectory + "/data/" + file);
    }
    return settings;
}

/// The report of a sample's areas and all else as a table; reports name tables without directories.
std::string tableOf(const std::string& sample) {
    cSettings settings = everything();
    sParameterTables tables;
    if (const std::optional<sTableProblem> problem = readParameterTables(settings, tables)) {
        throw cUsageError(problem->text);
    }
    std::ifstream in(sourceDirectory + "/data/samples/" + sample + ".pdb", std::ios::binary);
    sReadResult result = readStructure(in, tables.radii);
    cPdbPeptide& structure = result.structures.at(0);
    calculateAttributes(structure, eState::bound, {settings, tables}, [] {});
    for (const auto& [key, file] : tableKeys) {
        settings.setText(key, file);
    }
    std::ostringstream text;
    cStreamSink out(text);
    writeAttributeTable(out, {columnsOf(structure, nameOf(eState::bound), settings), settings});
    return text.str();
}

bool isExceptionCaught() {
    try {
        cSettings(eModule::kev).flag("no such key");
    } catch (const std::logic_error&) {
        return true;
    }
    return false;
}

} // namespace

} // namespace kelmo

int main() {
    const std::string expected =
        kelmo::contentOf(kelmo::sourceDirectory + "/tests/golden/kev_1ubq_bound.tbl");
    const std::string found = kelmo::tableOf("1ubq");
    if (found.empty() || found != expected) {
        std::cerr << "libkelmo writes another report:\n" << found;
        return 1;
    }
    if (!kelmo::isExceptionCaught()) {
        std::cerr << "An exception of libkelmo is not known outside it\n";
        return 1;
    }
    return 0;
}

#include "input/structure_formats.h"

#include "base/string_operation.h"
#include "input/mmcif_text.h"
#include "input/pdb_text.h"

#include <algorithm>
#include <utility>

namespace kelmo {

namespace {

std::vector<sStructureFormat>& rows() {
    static std::vector<sStructureFormat> formats{
        {"mmCIF", {".cif", ".mmcif"}, isCifText, readMmcifText},
        {"PDB", {".pdb", ".ent"}, [](std::string_view) { return true; }, readPdbText},
    };
    return formats;
}

bool endsIn(std::string_view text, std::string_view suffix) {
    return text.size() > suffix.size() &&
           equalIgnoringCase(text.substr(text.size() - suffix.size()), suffix);
}

} // namespace

const std::vector<sStructureFormat>& structureFormats() {
    return rows();
}

void addStructureFormat(sStructureFormat format) {
    rows().insert(rows().begin(), std::move(format));
}

std::vector<std::string> structureSuffixes() {
    std::vector<std::string> suffixes;
    for (auto format = rows().rbegin(); format != rows().rend(); ++format) {
        suffixes.insert(suffixes.end(), format->suffixes.begin(), format->suffixes.end());
    }
    return suffixes;
}

bool hasStructureSuffix(std::string_view fileName) {
    if (endsIn(fileName, compressedSuffix)) {
        fileName.remove_suffix(compressedSuffix.size());
    }
    const std::vector<std::string> suffixes = structureSuffixes();
    return std::any_of(suffixes.begin(), suffixes.end(),
                       [&](const std::string& suffix) { return endsIn(fileName, suffix); });
}

} // namespace kelmo

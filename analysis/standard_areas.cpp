#include "analysis/standard_areas.h"

#include "analysis/shipped_tables.h"
#include "base/regular_file.h"
#include "model/addition.h"

#include <fstream>
#include <map>

namespace kelmo {

std::string shippedStandardAreas(eAsaForm form) {
    return form == eAsaForm::complete ? "ala-x-ala-complete.asa" : "ala-x-ala.asa";
}

std::string standardAreaWarning(const cSettings& settings, const sParameterTables& tables) {
    const eAsaForm form = settings.asaForm();
    const bool isComplete = form == eAsaForm::complete;
    const std::string other =
        shippedStandardAreas(isComplete ? eAsaForm::classic : eAsaForm::complete);
    std::ifstream in;
    std::map<std::string, sAsa> areas;
    if (tables.standardAreas.empty() || !openRegularFile(in, findShippedTable(other)) ||
        getStandardAsa(in, areas) != 0 || areas != tables.standardAreas) {
        return {};
    }
    return std::string("The standard areas are those of the ") +
           (isComplete ? "classic" : "complete") + " form of the surface; with asa_form " +
           settings.text("asa_form") + " take " + shippedStandardAreas(form);
}

} // namespace kelmo

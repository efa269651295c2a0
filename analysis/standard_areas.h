// Which of the shipped tables of standard areas belongs to which form of the surface.
#pragma once

#include "analysis/parameter_tables.h"
#include "analysis/settings.h"
#include "base/exported.h"
#include "model/asa_form.h"

#include <string>

namespace KELMO_API kelmo {

/// The file name of the shipped table that was made in the form.
std::string shippedStandardAreas(eAsaForm form);

/// A warning when areas of one form would be related to the shipped standard areas of the other,
/// wherever a copy of these was read from; otherwise empty.
std::string standardAreaWarning(const cSettings& settings, const sParameterTables& tables);

} // namespace kelmo

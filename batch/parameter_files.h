// Loading the parameter tables that a run's settings name.
#pragma once

#include "batch/configuration.h"
#include "run/parameter_tables.h"

namespace kelmo {

// Each loader throws cUsageError, beginning with the place where the table was named, when the
// table cannot be used.

/// The setting of a table's path; when the key is not set, the table of that name that comes with
/// the program.
sSetting tableSetting(const cConfiguration& configuration, const char* key,
                      const char* shippedName);

std::map<std::string, double> loadRadii(const sSetting& file);
std::map<std::string, sAsa> loadStandardAsa(const sSetting& file);
std::map<std::string, double> loadHydrophobicity(const sSetting& file);
contactMap loadContactRules(const sSetting& file);

} // namespace kelmo

// The formats of reports by the names that the command line has for them.
#pragma once

#include "analysis/settings.h"

#include <string>
#include <vector>

namespace kelmo {

/// "xml", "table" and whatever formats there are besides.
std::vector<std::string> reportFormatNames();

/// Sets the flags of the formats: on for those that are named, off for the others.
void chooseReports(const std::vector<std::string>& names, cSettings& settings);

} // namespace kelmo

// kelmo-batch export: rows of a database of results on standard output.
#pragma once

#include "batch/options.h"
#include "batch/summary.h"

namespace kelmo {

/// What stands behind "export". Throws cUsageError.
sExport parseExport(const std::vector<std::string>& arguments);

/// Writes the rows. Throws cUsageError where that cannot be done.
eExitStatus exportRows(const sExport& wanted);

} // namespace kelmo

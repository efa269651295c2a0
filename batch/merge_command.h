// kelmo-batch merge: databases of results put together.
#pragma once

#include "batch/options.h"
#include "batch/summary.h"

namespace kelmo {

/// Makes the first of the files of all others. Throws cUsageError where that cannot be done.
eExitStatus merge(const sOptions& options);

} // namespace kelmo

// The interaction analyser: from its configuration to workers that are ready to run.
#pragma once

#include "batch/configuration.h"
#include "batch/input_paths.h"
#include "batch/prepared_run.h"

namespace kelmo {

/// Checks the settings in the order of the window and reads the tables that they need. Throws
/// cUsageError at the first thing that keeps the run from starting. Unlike in the window, the
/// contacts report may be the only one under the area criterion; it is then empty.
sPreparedRun prepareVor(const sOptions& options, const cConfiguration& configuration,
                        const cInputPaths& inputs);

} // namespace kelmo

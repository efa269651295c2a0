// The results files of a run, opened as the command line asks for them.
#pragma once

#include "batch/options.h"
#include "results/result_writer.h"

#include <memory>
#include <vector>

namespace kelmo {

/// Opens all results files. Throws cUsageError for one that cannot be
/// used.
std::vector<std::unique_ptr<cResultFile>>
openResults(const sOptions& options, const cSettings& settings, const sRunInputs& inputs);

} // namespace kelmo

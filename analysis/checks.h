// What is asked of settings before a run may start.
#pragma once

#include "analysis/parameter_tables.h"
#include "analysis/settings.h"
#include "base/exported.h"

#include <cstddef>
#include <optional>
#include <string>

namespace KELMO_API kelmo {

/// What keeps a run from starting.
struct sProblem {
    std::string key;  ///< of the setting at fault; empty when there is no single one
    std::string text; ///< for the user, a sentence
};

/// The first problem that is seen without opening a table, in the order in which users know them,
/// or nothing.
std::optional<sProblem> findProblem(const cSettings& settings, std::size_t inputFiles,
                                    bool areReportsNeeded = true);

/// A number that the chosen criterion does not take although others do, or nothing.
std::optional<sProblem> findCriterionProblem(const cSettings& settings);

} // namespace kelmo

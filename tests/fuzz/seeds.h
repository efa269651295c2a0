// The good and the odd inputs that fuzzing starts from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// The seeds of a fuzz target by its name, such as "pdb_reader"; the same every time. None for a
/// name that no target has.
std::vector<std::string> seedsOf(std::string_view target);

} // namespace kelmo

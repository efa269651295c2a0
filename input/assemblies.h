// The operations of which the copies of an assembly are made.
#pragma once

#include "input/structure_records.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// What first does and then second.
sPlacement combined(const sPlacement& second, const sPlacement& first);

/// The placements that an expression over the ids of operations stands for, such as "1,2",
/// "(1-60)", "(X0)(1-10,21-25)" or "P"; of two parentheses that on the right is applied first.
/// Nothing if it cannot be understood, names an unknown operation or stands for more than
/// `mostPlacements`.
std::optional<std::vector<sPlacement>>
placementsOf(std::string_view expression, const std::map<std::string, sPlacement>& operations);

/// The ids in a list, separated by commas and blanks.
std::set<std::string> idsIn(std::string_view list);

inline constexpr std::size_t mostPlacements = 100000;

} // namespace kelmo

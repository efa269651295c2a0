// Modern names and those of force fields, as the names by which tables are searched.
#pragma once

#include <string>

namespace kelmo {

/// The name of a standard residue that stands in a file under one of its other names, such as "A"
/// for "DA" or "HIS" for "HSD"; any other name as it is.
std::string understoodResidueName(const std::string& name);

/// The name of an atom of a standard residue that stands in a file under one of its other names,
/// such as "C1*" for "C1'" or "HB1" for "1HB"; any other name as it is.
std::string understoodAtomName(const std::string& residueName, const std::string& atomName);

} // namespace kelmo

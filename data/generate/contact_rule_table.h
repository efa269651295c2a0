// Derives the table of atom-pair contact rules from the chemistry of the 20 amino acids.
#pragma once

#include <iosfwd>

namespace kelmo {

/// Writes the contact rules: a header line, then one row per rule, each pair of atoms in one
/// orientation. Types: 1 hydrophobic up to 4.5 Å, 2 polar up to 3.5 Å, 3 ionic up to 4.0 Å.
void writeContactRules(std::ostream& out);

} // namespace kelmo

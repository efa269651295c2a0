// The row of PDB text in the table of formats.
#pragma once

#include "input/structure_reader.h"

#include <iosfwd>
#include <map>
#include <string>

namespace kelmo {

/// Reads PDB text: with the default options to what cPdbPeptide::loadFromStream() makes of it.
sReadResult readPdbText(std::istream& in, const std::map<std::string, double>& radii,
                        const sReadOptions& options);

} // namespace kelmo

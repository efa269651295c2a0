// The row of PDB text in the table of formats.
#pragma once

#include "input/structure_reader.h"

#include <iosfwd>
#include <map>
#include <string>

namespace kelmo {

/// With the default options what cPdbPeptide::loadFromStream() makes of the text.
sReadResult readPdbText(std::istream& in, const std::map<std::string, double>& radii,
                        const sReadOptions& options);

} // namespace kelmo

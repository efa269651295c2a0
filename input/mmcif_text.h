// The row of mmCIF in the table of formats.
#pragma once

#include "input/structure_reader.h"

#include <iosfwd>
#include <map>
#include <string>
#include <string_view>

namespace kelmo {

/// Whether the first word that is no comment begins a data block.
bool isCifText(std::string_view firstBytes);

/// The first data block with atoms, under the ids and numbers of its authors.
sReadResult readMmcifText(std::istream& in, const std::map<std::string, double>& radii,
                          const sReadOptions& options);

} // namespace kelmo

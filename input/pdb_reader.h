// Reading PDB text into a structure, several runs of its lines side by side.
#pragma once

#include "model/pdb_peptide.h"

#include <iosfwd>
#include <map>
#include <set>
#include <string>

namespace kelmo {

class cPdbOddities;

/// As cPdbPeptide::loadFromStream(). What the structure leaves out of the text goes to `oddities`
/// unless that is null; then the text is read to its end, but nothing behind the first END, not
/// even an error, has any other consequence.
int readPdbStructure(std::istream& in, const std::map<std::string, double>& radii,
                     cPdbPeptide& structure, std::set<std::string>& missingRadii,
                     cPdbOddities* oddities);

} // namespace kelmo

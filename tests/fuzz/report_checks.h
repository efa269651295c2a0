// What the format pages promise of every report, whatever stands in the input.
#pragma once

#include "model/pdb_peptide.h"

#include <string>

namespace kelmo {

// Each returns an empty text, or what about the report is not as promised. The structure is the one
// that the report is about, as it was read.

/// A structure report as XML with everything switched on.
std::string faultOfKevXml(const std::string& report, const cPdbPeptide& peptide);
/// A structure report as table with everything switched on.
std::string faultOfKevTable(const std::string& report, const cPdbPeptide& peptide);

/// Any interaction report as XML. Names that XML would have to escape are written as they are; then
/// nothing is promised.
std::string faultOfVorXml(const std::string& report, const cPdbPeptide& peptide);
/// Interaction tables; `headerLines` is how many lines the criterion's header has.
std::string faultOfContactTable(const std::string& report, std::size_t headerLines);
std::string faultOfBindingTables(const std::string& residues, const std::string& status,
                                 std::size_t headerLines, const cPdbPeptide& peptide);

} // namespace kelmo

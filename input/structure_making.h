// Makes structures of what a file says: the last step of the reader of every format.
#pragma once

#include "input/structure_reader.h"
#include "input/structure_records.h"

#include <map>
#include <string>

namespace kelmo {

/// As readStructure(). Of the models only those that the options ask for need be recorded; all
/// that are recorded become structures or, with eModels::chains, one. ATOM and HETATM records mean
/// what they mean in PDB text.
sReadResult makeStructures(const sStructureRecords& records,
                           const std::map<std::string, double>& radii, const sReadOptions& options);

class cPreparation;

/// What of a file a structure made from these records does not hold, or holds more than once. Of
/// residues in ATOM records only those with hydrogens or alternate locations need be recorded.
sFileSummary summaryOf(const sStructureRecords& records, const cPreparation& preparation,
                       const sReadOptions& options, const cPdbPeptide& structure);

} // namespace kelmo

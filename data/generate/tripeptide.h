// Builds an extended Ala-X-Ala tripeptide from internal coordinates as PDB text.
#pragma once

#include <string>

namespace kelmo {

/// The PDB text (HEADER, ATOM and END records, chain A, residues 1 to 3, heavy atoms and OXT) of
/// the tripeptide Ala-X-Ala with X the standard residue `middle`, one of the 20 names. Peptide
/// bonds are trans and the main chain is that of the antiparallel pleated sheet. The line from the
/// first to the last CA runs along z, and CA of the middle residue is the origin. Coordinates in Å.
std::string tripeptidePdb(const std::string& middle);

} // namespace kelmo

// Computes the standard surface areas of the 20 amino acids from extended tripeptides.
#pragma once

#include "model/asa_form.h"

#include <iosfwd>
#include <map>
#include <string>

namespace kelmo {

/// Writes the standard-area table (name, total, backbone, side chain, non-polar, polar in Å²,
/// comment lines first) of the middle residues of Ala-X-Ala in a form of the surface, with a probe
/// of 1.4 Å and slices of 0.05 Å, in the complete form of 0.005 Å. `radii` maps residue name + "_"
/// + atom name to Å. Returns the first key that `radii` lacks, and then the table is incomplete; an
/// empty text when all went well.
std::string writeStandardAreas(std::ostream& out, const std::map<std::string, double>& radii,
                               eAsaForm form);

} // namespace kelmo

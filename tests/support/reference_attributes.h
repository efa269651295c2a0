// Depth, protrusion and area sums of the slow reference implementation.
#pragma once

#include "tests/support/reference_structure.h"

#include <map>
#include <span>
#include <string>
#include <vector>

namespace kelmo {

namespace reference {

// Sets depthIndex (Å): 0 for an atom with an area, else the distance to the nearest atom with an
// area that is not at the same place, or 0 when every such atom is at the same place. Nothing is
// written to buried atoms when no atom has an area. Reads asa. O(n²).
void setAtomDepths(std::span<sAtom> atoms);

// Sets protrusionIndex: the empty part of a sphere of sphereRadius ångström around the atom divided
// by the occupied part, which is atomVolume Å³ for every other atom centre within the sphere and at
// most the sphere. An atom without neighbours gets infinity. O(n²).
void setAtomProtrusions(std::span<sAtom> atoms, double sphereRadius, double atomVolume);

// The values that the two functions above give, in atom order.
std::vector<double> atomDepths(std::vector<sAtom> atoms);
std::vector<double> atomProtrusions(std::vector<sAtom> atoms, double sphereRadius,
                                    double atomVolume);

// Statistics of one atom value over a residue. The side chain begins after 3 atoms for residue type
// 1 and after 4 otherwise and leaves out atoms named "OXT"; its divisor is corrected for a final
// "OXT" only. Population deviations. Unchanged previous values for a residue without atoms.
sStatistics residueStatistics(std::span<const sAtom> atoms, int residueType, double sAtom::*value,
                              const sStatistics& previous);

// Five-way sums of the atoms' areas, split by atom name.
sAreas areasOf(std::span<const sAtom> atoms);

// Areas of the complex: every atom of every chain covers every other. Residues of type 0 keep their
// sums and enter the chain sums with them, but not the structure's.
void setBoundAreas(sStructure& structure, double probeRadius, double zSlice);

// Areas of one chain alone; every residue type is summed.
void setChainAloneAreas(sStructure& structure, sChain& chain, double probeRadius, double zSlice);

// setChainAloneAreas for every chain; the structure's sums become 0.
void setUnboundAreas(sStructure& structure, double probeRadius, double zSlice);

// Percentages of the standard areas; unchanged when the table lacks the residue. A standard side
// chain of 0 gives 0, any other standard of 0 divides by it.
void setRelativeAreas(sResidue& residue, const std::map<std::string, sAreas>& standards);

// Relative areas, depth statistics and protrusion statistics at the two levels. The structure level
// computes the atom values over all atoms and skips residues of type 0, the chain level computes
// them over the chain's atoms and skips none.
void setRelativeAreas(sStructure& structure, const std::map<std::string, sAreas>& standards);
void setRelativeAreas(sStructure& structure, const sChain& chain,
                      const std::map<std::string, sAreas>& standards);
void setDepths(sStructure& structure);
void setDepths(sStructure& structure, const sChain& chain);
void setProtrusions(sStructure& structure, double sphereRadius, double atomVolume);
void setProtrusions(sStructure& structure, const sChain& chain, double sphereRadius,
                    double atomVolume);

// Hydrophobicity of every residue of type 1 or 2 that the scale lists.
void setHydrophobicity(sStructure& structure, const std::map<std::string, double>& scale);

} // namespace reference

} // namespace kelmo

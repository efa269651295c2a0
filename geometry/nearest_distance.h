// How near the atoms of a structure stand to each other.
#pragma once

namespace kelmo {

class cPdbPeptide;

/// No distance counts as more than this in meanNearestDistance(), Å: farther than any bond.
constexpr double farthestNearestDistance = 2.0;

/// The mean distance (Å) from an atom to the nearest other one that is not at its very place, over
/// 64 atoms spread evenly over the file, or all if there are fewer. An atom with no other within
/// farthestNearestDistance counts with that, and so does a structure without atoms.
///
/// In a molecule it is a bond length: about 1.3 Å without hydrogens, 1.0 Å with them. Coordinates
/// in nanometres that are taken for ångström give a tenth of that. Alternative places of the same
/// atoms lower it, too, but only if almost every atom has them.
///
/// Costs some 15 ns an atom, less in a large structure and no more than some hundred in any crowd.
double meanNearestDistance(const cPdbPeptide& peptide);

} // namespace kelmo

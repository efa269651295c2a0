// Which residues of different chains of a structure touch, by each of the criteria.
#pragma once

#include "base/exported.h"
#include "model/asa_form.h"
#include "model/contact.h"

#include <cstdint>
#include <vector>

namespace KELMO_API kelmo {

class cPdbPeptide;

/// Finds the residue pairs of different chains that touch by a criterion, marks both residues as
/// binding and returns each pair in both directions. Distances in Å. `searchValue` is the threshold
/// of the distance criteria and the search distance of the table-driven one, which alone uses
/// `vdwThreshold` and `rules` (null for none). Other criteria find nothing.
///
/// The contacts are ordered as operator<() orders cResidueContact. Contacts that it takes for
/// equal, those of residues of one number in chains of one id, stand in the order in which they are
/// found: pair by pair, ordered by the residue of the earlier chain in the file, then by the later
/// chain, then by the other residue's place in the atom grid; and of one pair the direction from
/// the earlier chain first.
///
/// Takes time and memory proportional to the residues and the contacts, but for a logarithm: 32
/// bytes a contact while it works, 12 bytes each in the end. Heeds the stop request of this thread.
sContactList findContacts(cPdbPeptide& peptide, eInteractionCriterion criterion, double searchValue,
                          double vdwThreshold, const contactMap* rules);

/// Marks every residue whose area in the complex differs by more than `deltaAsa` Å² from its area
/// in its chain alone. The areas of the complex must have been computed with the same probe radius
/// and slice thickness (Å) and in the same form before.
void markBindingResiduesByAreaChange(cPdbPeptide& peptide, double deltaAsa, double probeRadius,
                                     double zSlice, eAsaForm form = eAsaForm::classic);

/// For every residue of a structure the position of its chain, which a residue does not know.
std::vector<std::uint32_t> chainOfResidues(const cPdbPeptide& peptide);

} // namespace kelmo

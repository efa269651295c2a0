// The order of contacts, the table of rules that type them, and the test of two residues by it.
#pragma once

#include "base/exported.h"
#include "model/contact.h"

#include <iosfwd>
#include <set>
#include <string>
#include <vector>

namespace KELMO_API kelmo {

class cChainResidue;

///@{
/// Identity is chains, residue numbers (as texts) and criterion; names and types take no part.
bool operator==(const cResidueContact& a, const cResidueContact& b);
bool operator!=(const cResidueContact& a, const cResidueContact& b);
///@}
///@{
/// Chains by bytes, then residue numbers by leading integer and text, then criterion: a strict weak
/// ordering whatever the texts are. Numbers too large for an integer count as the largest one.
bool operator<(const cResidueContact& a, const cResidueContact& b);
bool operator>(const cResidueContact& a, const cResidueContact& b);
///@}

/// Negative, 0 or positive as residue number `a` sorts before, with or after `b`: by leading
/// integer, then by text.
int compareResidueNumbers(const std::string& a, const std::string& b);

/// Adds the rules of a fixed-column table, each with its mirror, to `map`. The first line is a
/// header. Text that is no number reads as 0. Throws std::out_of_range("basic_string::substr") at a
/// line that ends before a field begins, and with other texts at a line longer than
/// `longestTextLine` and at the one in which the table grows beyond `largestTable`; the stream has
/// then failed, but is not bad. The rules before the line stay.
void createStringContactMap(std::istream& in, contactMap& map);
/// Adds the rules of a table as createStringContactMap() without a line number does, and keeps
/// count: `*lineNumber` is always the 1-based number of the line last read, the header included,
/// 0 before the first: after an exception it names the line at fault.
void createStringContactMap(std::istream& in, contactMap& map, int* lineNumber);

/// Adds the types of all rules that the two residues fulfil to `types`; true when there is one.
/// Rules name atoms by position, the name only confirms it; a rule whose positions lie outside the
/// residues is passed over, even if it is for all atoms. Atoms at the same place count, at distance
/// 0.
bool doTheyFormContact(const cChainResidue& r1, const cChainResidue& r2, const contactMap& map,
                       std::set<eContactType>& types);
/// Adds the types of those of the given rules that the two residues fulfil to `types`; true when
/// there is one. For callers that have looked up the rules of the two residues' names themselves.
bool doTheyFormContact(const cChainResidue& r1, const cChainResidue& r2,
                       const std::vector<sResidueAtomContact>& rules,
                       std::set<eContactType>& types);

} // namespace kelmo

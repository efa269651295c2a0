// The records of contacts between residues of two chains, and of the rules that type them.
#pragma once

#include "base/exported.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace KELMO_API kelmo {

/// How contacts are looked for; 0 is not set.
enum class eInteractionCriterion : std::int32_t {
    none = 0,
    maximumDistance = 1, ///< some atom pair within a distance
    prism = 2,           ///< some atom pair within its radii plus a distance
    dovreth = 3,         ///< change of the accessible surface area
    vorda = 4            ///< table of atom pairs
};

/// The kind of a contact, as the rules of the table-driven criterion number it.
enum class eContactType : std::int32_t {
    undefined = 0,
    hydrophobic = 1,
    polar = 2,
    ionic = 3,
    vanDerWaals = 4
};

/// A contact between a residue of one chain and a residue of another, as one criterion found it.
class cResidueContact {
  public:
    cResidueContact() = default;
    ///@{
    /// Mind the order: chain, number and name of the one residue, then of the other.
    cResidueContact(std::string firstChain, std::string firstNumber, std::string firstName,
                    std::string secondChain, std::string secondNumber, std::string secondName,
                    eInteractionCriterion foundBy);
    cResidueContact(std::string firstChain, std::string firstNumber, std::string firstName,
                    std::string secondChain, std::string secondNumber, std::string secondName,
                    std::set<eContactType> types, eInteractionCriterion foundBy);
    ///@}

    std::string chain1;                  ///< id of the one residue's chain
    std::string chain2;                  ///< id of the other residue's chain
    std::string residueName1;            ///< of the one residue
    std::string residueName2;            ///< of the other residue
    std::string residueNumber1;          ///< as text, compared by its leading integer first
    std::string residueNumber2;          ///< as text, compared by its leading integer first
    std::set<eContactType> contactTypes; ///< empty for criteria that do not type contacts
    eInteractionCriterion criterion = eInteractionCriterion::none; ///< that found it
};

/// One direction of a contact, without texts, so that millions of them fit into memory.
struct sContact {
    std::uint32_t residue1; ///< position in cPdbPeptide::residues
    std::uint32_t residue2; ///< position in cPdbPeptide::residues
    std::uint32_t typeSet;  ///< position in sContactList::typeSets
};

/// The contacts of one structure by one criterion.
struct sContactList {
    std::vector<sContact> contacts; ///< in the order of the reports
    /// Every set of types that occurs, each once, in ascending order; the empty set comes first,
    /// whether it occurs or not.
    std::vector<std::set<eContactType>> typeSets;
};

/// One rule: two atoms of two residue types, by position and name, and how close they must be.
struct sResidueAtomContact {
    std::string atomName1;                              ///< or "ALL"
    std::string atomName2;                              ///< or "ALL"
    std::string residueName1;                           ///< to which `atomName1` belongs
    std::string residueName2;                           ///< to which `atomName2` belongs
    eContactType contactType = eContactType::undefined; ///< of the contacts that fulfil the rule
    double maxDistance = 0.0;                           ///< Å between the centres, inclusive
    std::uint32_t atomIndex1 = 0; ///< zero-based position in the first residue's atom list
    std::uint32_t atomIndex2 = 0; ///< zero-based position in the second residue's atom list
};

/// Rules by residue name + "_" + residue name, in the order in which they were added.
using contactMap = std::map<std::string, std::vector<sResidueAtomContact>>;

} // namespace kelmo

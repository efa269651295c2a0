// The records of contacts between residues of two chains, and of the rules that type them.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kelmo {

/// How contacts are looked for; 0 is not set.
enum class eInteractionCriterion : std::int32_t {
    none = 0,
    maximumDistance = 1, ///< some atom pair within a distance
    prism = 2,           ///< some atom pair within its radii plus a distance
    dovreth = 3,         ///< change of the accessible surface area
    vorda = 4            ///< table of atom pairs
};

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
    /// Mind the order: chain, number and name of the one residue, then of the other.
    cResidueContact(std::string firstChain, std::string firstNumber, std::string firstName,
                    std::string secondChain, std::string secondNumber, std::string secondName,
                    eInteractionCriterion foundBy);
    cResidueContact(std::string firstChain, std::string firstNumber, std::string firstName,
                    std::string secondChain, std::string secondNumber, std::string secondName,
                    std::set<eContactType> types, eInteractionCriterion foundBy);

    std::string chain1;
    std::string chain2;
    std::string residueName1;
    std::string residueName2;
    std::string residueNumber1; ///< as text, compared by its leading integer first
    std::string residueNumber2;
    std::set<eContactType> contactTypes; ///< empty for criteria that do not type contacts
    eInteractionCriterion criterion = eInteractionCriterion::none;
};

/// One direction of a contact, without texts, so that millions of them fit into memory.
struct sContact {
    std::uint32_t residue1; ///< position in cPdbPeptide::residues
    std::uint32_t residue2;
    std::uint32_t typeSet; ///< position in sContactList::typeSets
};

/// The contacts of one structure by one criterion.
struct sContactList {
    std::vector<sContact> contacts;
    /// Every set of types that occurs, each once, in ascending order; the empty set comes first,
    /// whether it occurs or not.
    std::vector<std::set<eContactType>> typeSets;
};

/// One rule: two atoms of two residue types, by position and name, and how close they must be.
struct sResidueAtomContact {
    std::string atomName1; ///< or "ALL"
    std::string atomName2;
    std::string residueName1;
    std::string residueName2;
    eContactType contactType = eContactType::undefined;
    double maxDistance = 0.0;     ///< Å between the centres, inclusive
    std::uint32_t atomIndex1 = 0; ///< zero-based position in the residue's atom list
    std::uint32_t atomIndex2 = 0;
};

/// Rules by residue name + "_" + residue name, in the order in which they were added.
using contactMap = std::map<std::string, std::vector<sResidueAtomContact>>;

} // namespace kelmo

// One contact between residues of two chains, the rules that type contacts, and their table.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

class cChainResidue;

/// How contacts are looked for; 0 is not set.
enum eInteractionCriterion : std::int32_t {
    noCriterion = 0,
    maximumDistance = 1, ///< some atom pair within a distance
    prism = 2,           ///< some atom pair within its radii plus a distance
    dovreth = 3,         ///< change of the accessible surface area
    vorda = 4            ///< table of atom pairs
};

enum eContactType : std::int32_t {
    undefinedContact = 0,
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
    eInteractionCriterion criterion = noCriterion;
};

/// Identity is chains, residue numbers (as texts) and criterion; names and types take no part.
bool operator==(const cResidueContact& a, const cResidueContact& b);
bool operator!=(const cResidueContact& a, const cResidueContact& b);
/// Chains by bytes, then residue numbers by leading integer and text, then criterion: a strict weak
/// ordering whatever the texts are. Numbers too large for an integer count as the largest one.
bool operator<(const cResidueContact& a, const cResidueContact& b);
bool operator>(const cResidueContact& a, const cResidueContact& b);

/// One rule: two atoms of two residue types, by position and name, and how close they must be.
struct sResidueAtomContact {
    std::string atomName1; ///< or "ALL"
    std::string atomName2;
    std::string residueName1;
    std::string residueName2;
    eContactType contactType = undefinedContact;
    double maxDistance = 0.0;     ///< Å between the centres, inclusive
    std::uint32_t atomIndex1 = 0; ///< zero-based position in the residue's atom list
    std::uint32_t atomIndex2 = 0;
};

/// Rules by residue name + "_" + residue name, in the order in which they were added.
using contactMap = std::map<std::string, std::vector<sResidueAtomContact>>;

/// Adds the rules of a fixed-column table, each with its mirror, to `map`. The first line is a
/// header. Text that is no number reads as 0. Throws std::out_of_range("basic_string::substr") at a
/// line that ends before a field begins; the rules before it stay.
void createStringContactMap(std::istream& in, contactMap& map);
/// The same. `*lineNumber` is always the 1-based number of the line last read, the header included,
/// 0 before the first: after an exception it names the line at fault.
void createStringContactMap(std::istream& in, contactMap& map, int* lineNumber);

/// Adds the types of all rules that the two residues fulfil to `types`; true when there is one.
/// Rules name atoms by position, the name only confirms it; a rule whose positions lie outside the
/// residues is passed over, even if it is for all atoms. Atoms at the same place count, at distance
/// 0.
bool doTheyFormContact(const cChainResidue& r1, const cChainResidue& r2, const contactMap& map,
                       std::set<eContactType>& types);
/// The same with the rules of the two residues' names already looked up.
bool doTheyFormContact(const cChainResidue& r1, const cChainResidue& r2,
                       const std::vector<sResidueAtomContact>& rules,
                       std::set<eContactType>& types);

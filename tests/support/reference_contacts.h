// Residue contacts, binding residues and their report texts of the slow reference implementation.
#pragma once

#include "tests/support/reference_structure.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace kelmo {

namespace reference {

// The four ways of finding contacts or binding residues, with the numbers by which records sort.
enum class eCriterion { none = 0, maximumDistance = 1, prism = 2, dovreth = 3, vorda = 4 };

// One direction of one contact. Types: 1 hydrophobic, 2 polar, 3 ionic, 4 van der Waals; other
// numbers come from the rule table as they are.
struct sContact {
    std::string chain1;
    std::string residueNumber1;
    std::string residueName1;
    std::string chain2;
    std::string residueNumber2;
    std::string residueName2;
    std::set<int> types;
    eCriterion criterion = eCriterion::none;
};

// One row of the contact rule table; "ALL" as both atom names stands for every atom pair.
struct sContactRule {
    std::string atomName1;
    std::string atomName2;
    std::string residueName1;
    std::string residueName2;
    int contactType = 0;
    double maxDistance = 0.0; // ångström
    std::uint32_t atomIndex1 = 0;
    std::uint32_t atomIndex2 = 0;
};

// Rules by "RES1_RES2", in the order of the table; every row stands under its mirror too.
using tContactRules = std::map<std::string, std::vector<sContactRule>>;

// Settings of one interaction analysis. Lengths in ångström.
struct sVorSettings {
    eCriterion criterion = eCriterion::maximumDistance;
    double threshold = 5.0; // distance, or the change of area in Å² for dovreth
    double zSlice = 0.25;   // above 0
    double probeRadius = 1.4;
    bool xmlOutput = true;
    bool tableOutput = true;
    bool writeContacts = true;
    bool writeBindingResidues = true;
    bool writeBindingStatus = true;
    tContactRules rules;
    std::map<std::string, double> radii; // key "RES_ATOM"
    std::string radiiFileName;
};

// Order of contact records: chains as texts, residue numbers as numbers and then as texts, in the
// order chain1, chain2, number1, number2, and last the criterion.
bool isLess(const sContact& a, const sContact& b);

// Adds the rows of a rule table to rules. Throws std::out_of_range at a line that ends before its
// last field begins; the rows before it stay.
void readContactRules(const std::string& tableText, tContactRules& rules);

// Adds the contact types that the rules give to the pair of residues; true when a rule matched.
bool findRuleTypes(const sStructure& structure, const sResidue& a, const sResidue& b,
                   const tContactRules& rules, std::set<int>& types);

// All contacts of criterion 1, 2 or 4 between different chains, sorted, and the binding flags of
// their residues. Records that compare equal stay in the order in which they were found: by the
// residue of the earlier chain, then by the residue of the later one, each as in the file. O(n²)
// in the residues. Other criteria find nothing. vdwThreshold and rules serve criterion 4 only.
std::vector<sContact> resolveContacts(sStructure& structure, eCriterion criterion,
                                      double searchValue, double vdwThreshold,
                                      const tContactRules& rules);

// Flags the residues whose area in the complex differs by more than deltaAsa (Å²) from that in
// their chain alone. The areas of the complex must have been computed.
void resolveAreaChanges(sStructure& structure, double deltaAsa, double probeRadius, double zSlice);

// What a run does with one loaded structure: sets the flags and returns the contact list.
std::vector<sContact> analyseInteractions(sStructure& structure, const sVorSettings& settings);

} // namespace reference

} // namespace kelmo

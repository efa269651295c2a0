// Which residues the four criteria find, against closed cases and against all pairs one by one.
#include "base/stop_request.h"
#include "contacts/contact_resolution.h"
#include "contacts/residue_contact.h"
#include "geometry/atom_grid.h"
#include "model/pdb_peptide.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <random>
#include <sstream>
#include <tuple>

namespace kelmo {

using enum eInteractionCriterion;
using enum eContactType;

namespace {

constexpr double probeRadius = 1.4; // Å
constexpr double zSlice = 0.25;     // Å

using tRadii = std::map<std::string, double>;
using tTypes = std::set<eContactType>;

/// Adds ATOM lines to a text.
class cPdbText {
  public:
    /// What the following atoms belong to.
    cPdbText& residue(char chainId, const std::string& residueNumber, const std::string& name) {
        chain = chainId;
        number = residueNumber;
        residueName = name;
        return *this;
    }
    cPdbText& atom(const std::string& name, double x, double y, double z) {
        lines += atomLine(name, residueName, chain, number, x, y, z, ++serial);
        return *this;
    }
    const std::string& text() const { return lines; }

  private:
    std::string lines;
    std::string residueName;
    std::string number;
    char chain = 'A';
    unsigned serial = 0;
};

cPdbPeptide read(const std::string& text, const tRadii& radii = {}) {
    return structureOf(text, radii);
}

/// The lines of one chain only.
std::string chainText(const std::string& text, char chainId) {
    std::string lines;
    for (const std::string& line : atomLinesOf(text)) {
        if (line[21] == chainId) {
            lines += line + "\n";
        }
    }
    return lines;
}

/// One residue per chain on the x axis: N and CA of A at -1 and 0, CA and N of B at `x` and `x`
/// + 1. The nearest atoms are the two CA, which stand for their residues.
cPdbPeptide twoResidues(double x, const tRadii& radii = {}, const std::string& nameOfA = "ALA",
                        const std::string& nameOfB = "ALA") {
    cPdbText pdb;
    pdb.residue('A', "1", nameOfA).atom("N", -1.0, 0.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
    pdb.residue('B', "2", nameOfB).atom("N", x + 1.0, 0.0, 0.0).atom("CA", x, 0.0, 0.0);
    return read(pdb.text(), radii);
}

sResidueAtomContact ruleForAllAtoms(double maxDistance, eContactType type) {
    sResidueAtomContact rule;
    rule.atomName1 = rule.atomName2 = "ALL";
    rule.maxDistance = maxDistance;
    rule.contactType = type;
    return rule;
}

contactMap rulesForAllAtoms(const std::string& key, double maxDistance, eContactType type) {
    return {{key, {ruleForAllAtoms(maxDistance, type)}}};
}

std::vector<bool> bindingFlags(const cPdbPeptide& peptide) {
    std::vector<bool> flags;
    for (const cChainResidue& residue : peptide.residues) {
        flags.push_back(residue.isBinding);
    }
    return flags;
}

long countBinding(const cPdbPeptide& peptide) {
    return std::count_if(peptide.residues.begin(), peptide.residues.end(),
                         [](const cChainResidue& residue) { return residue.isBinding; });
}

// ---- All pairs, one by one ----

double distanceOf(const cResidueAtom& a, const cResidueAtom& b) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    const double dz = a.z - b.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

template <typename Pair>
bool anyAtomPair(const cChainResidue& a, const cChainResidue& b, Pair isTouching) {
    bool any = false;
    for (unsigned i = 0; i < a.atomCount; ++i) {
        for (unsigned j = 0; j < b.atomCount; ++j) {
            any = any || isTouching(a.atoms[i], b.atoms[j]);
        }
    }
    return any;
}

bool areSpheresWithin(const cChainResidue& a, const cChainResidue& b, double gap) {
    return anyAtomPair(a, b, [gap](const cResidueAtom& one, const cResidueAtom& other) {
        const double enlargement = gap * 0.5;
        const double distance = distanceOf(one, other);
        return distance <= enlargement + (one.radius + enlargement + other.radius) &&
               distance != 0.0;
    });
}

void addRuleTypes(const cChainResidue& a, const cChainResidue& b, const contactMap& map,
                  tTypes& types) {
    const auto rules = map.find(a.residueName + "_" + b.residueName);
    if (rules == map.end()) {
        return;
    }
    for (const sResidueAtomContact& rule : rules->second) {
        if (rule.atomIndex1 >= a.atomCount || rule.atomIndex2 >= b.atomCount) {
            continue;
        }
        const auto fits = [&rule](const cResidueAtom& one, const cResidueAtom& other) {
            return distanceOf(one, other) <= rule.maxDistance;
        };
        const cResidueAtom& one = a.atoms[rule.atomIndex1];
        const cResidueAtom& other = b.atoms[rule.atomIndex2];
        if (rule.atomName1 == "ALL" && rule.atomName2 == "ALL"
                ? anyAtomPair(a, b, fits)
                : one.atomName == rule.atomName1 && other.atomName == rule.atomName2 &&
                      fits(one, other)) {
            types.insert(rule.contactType);
        }
    }
}

struct sSearch {
    eInteractionCriterion criterion;
    double searchValue;  // Å
    double vdwThreshold; // Å
    const contactMap* rules;
};

bool formContact(const cChainResidue& a, const cChainResidue& b, const sSearch& search,
                 tTypes& types) {
    switch (search.criterion) {
    case maximumDistance:
        return anyAtomPair(a, b, [&](const cResidueAtom& one, const cResidueAtom& other) {
            const double distance = distanceOf(one, other);
            return distance <= search.searchValue && distance != 0.0;
        });
    case prism:
        return areSpheresWithin(a, b, search.searchValue);
    case vorda:
        addRuleTypes(a, b, *search.rules, types);
        if (areSpheresWithin(a, b, search.vdwThreshold)) {
            types.insert(vanDerWaals);
        }
        return !types.empty();
    default:
        return false;
    }
}

bool isSearched(const cChainResidue& residue) {
    return residue.atomCount >= 2 && residue.residueType != eResidueType::other;
}

void addRecords(const cProteinChain& chainOfA, cChainResidue& a, const cProteinChain& chainOfB,
                cChainResidue& b, const sSearch& search, std::vector<cResidueContact>& contacts) {
    if (!isSearched(a) || !isSearched(b)) {
        return;
    }
    const double distance = distanceOf(a.atoms[1], b.atoms[1]);
    tTypes types;
    if (distance <= search.searchValue + 15.0 && distance != 0.0 &&
        formContact(a, b, search, types)) {
        contacts.emplace_back(chainOfA.chainId, a.residueNumber, a.residueName, chainOfB.chainId,
                              b.residueNumber, b.residueName, types, search.criterion);
        contacts.emplace_back(chainOfB.chainId, b.residueNumber, b.residueName, chainOfA.chainId,
                              a.residueNumber, a.residueName, types, search.criterion);
        a.isBinding = b.isBinding = true;
    }
}

void resolvePairByPair(cPdbPeptide& peptide, const sSearch& search) {
    for (std::size_t i = 0; i < peptide.chains.size(); ++i) {
        for (std::size_t j = i + 1; j < peptide.chains.size(); ++j) {
            const cProteinChain& first = peptide.chains[i];
            const cProteinChain& second = peptide.chains[j];
            for (unsigned a = 0; a < first.residueCount; ++a) {
                for (unsigned b = 0; b < second.residueCount; ++b) {
                    addRecords(first, first.residues[a], second, second.residues[b], search,
                               peptide.contacts);
                }
            }
        }
    }
}

using tRecord = std::tuple<std::string, std::string, std::string, std::string, std::string,
                           std::string, tTypes, eInteractionCriterion>;

/// Everything that stands in the records, in their order.
std::vector<tRecord> orderedRecordsOf(const cPdbPeptide& peptide) {
    std::vector<tRecord> records;
    for (const cResidueContact& contact : peptide.contacts) {
        records.emplace_back(contact.chain1, contact.residueNumber1, contact.residueName1,
                             contact.chain2, contact.residueNumber2, contact.residueName2,
                             contact.contactTypes, contact.criterion);
    }
    return records;
}

/// Everything that stands in the records, in an order that does not depend on how they were sorted.
std::vector<tRecord> recordsOf(const cPdbPeptide& peptide) {
    std::vector<tRecord> records = orderedRecordsOf(peptide);
    std::sort(records.begin(), records.end());
    return records;
}

/// Pairs as the grids of the later chains return them, sorted so that equal records keep this
/// order.
void resolveGridByGrid(cPdbPeptide& peptide, const sSearch& search) {
    struct sSearched {
        std::vector<cChainResidue*> residues;
        std::vector<cResidueAtom> representatives;
    };
    std::vector<sSearched> chains(peptide.chains.size());
    for (std::size_t i = 0; i < chains.size(); ++i) {
        for (unsigned k = 0; k < peptide.chains[i].residueCount; ++k) {
            cChainResidue& residue = peptide.chains[i].residues[k];
            if (isSearched(residue)) {
                chains[i].residues.push_back(&residue);
                chains[i].representatives.push_back(residue.atoms[1]);
            }
        }
    }
    std::vector<std::unique_ptr<cAtomGrid>> grids;
    for (const sSearched& chain : chains) {
        grids.push_back(std::make_unique<cAtomGrid>(
            chain.representatives.data(), static_cast<unsigned>(peptide.atoms.size()),
            peptide.maxPoint, peptide.minPoint, static_cast<int>(chain.representatives.size())));
    }
    for (std::size_t i = 0; i < chains.size(); ++i) {
        for (cChainResidue* const a : chains[i].residues) {
            for (std::size_t j = i + 1; j < chains.size(); ++j) {
                grids[j]->forEachInRangeByCenter(
                    a->atoms[1], search.searchValue + 15.0, [&](const cAtomGrid::sEntry& entry) {
                        addRecords(peptide.chains[i], *a, peptide.chains[j],
                                   *chains[j].residues[entry.index], search, peptide.contacts);
                    });
            }
        }
    }
    std::stable_sort(peptide.contacts.begin(), peptide.contacts.end());
}

/// The texts of a list of contacts.
std::vector<tRecord> orderedRecordsOf(const cPdbPeptide& peptide, const sContactList& list,
                                      eInteractionCriterion criterion) {
    const std::vector<std::uint32_t> chains = chainOfResidues(peptide);
    std::vector<tRecord> records;
    for (const sContact& contact : list.contacts) {
        const cChainResidue& one = peptide.residues[contact.residue1];
        const cChainResidue& other = peptide.residues[contact.residue2];
        records.emplace_back(peptide.chains[chains[contact.residue1]].chainId, one.residueNumber,
                             one.residueName, peptide.chains[chains[contact.residue2]].chainId,
                             other.residueNumber, other.residueName, list.typeSets[contact.typeSet],
                             criterion);
    }
    return records;
}

/// Compares with the search pair by pair; returns the number of records.
std::size_t expectSameAsPairByPair(const cPdbPeptide& peptide, const sSearch& search) {
    cPdbPeptide searched(peptide);
    searched.resolveContacts(search.criterion, search.searchValue, search.vdwThreshold,
                             search.rules);
    cPdbPeptide expected(peptide);
    resolvePairByPair(expected, search);
    EXPECT_TRUE(std::is_sorted(searched.contacts.begin(), searched.contacts.end()));
    EXPECT_EQ(recordsOf(searched), recordsOf(expected));
    EXPECT_EQ(bindingFlags(searched), bindingFlags(expected));
    return searched.contacts.size();
}

contactMap sampleRules() {
    std::istringstream in("RES  IX  ATM  RES  IX  ATM  DIST.  TYPE\n"
                          "ALA   4  CB   LEU   4  CB    4.50     1\n"
                          "LEU   6  CD1  LEU   6  CD1   4.50     1\n"
                          "LEU   6  CD1  LEU   7  CD2   4.50     1\n"
                          "VAL   5  CG1  PHE   0  CG   99.00     1\n"
                          "SER   5  OG   ASP   6  OD1   3.50     2\n"
                          "TYR   3  O    ARG   0  N     7.50     2\n"
                          "ARG   9  NH1  ASP   7  OD2   4.00     3\n"
                          "LYS   8  NZ   GLU   7  OE1   6.00     3\n"
                          "PRO   0  ALL  TRP   0  ALL   5.00     7\n"
                          "HIS   1  ALL  ASP   0  ALL   6.50    -1\n"
                          "GLY   0  ALL  ALA   4  ALL    inf     1\n"
                          "THR   0  ALL  SER   0  ALL    nan     1\n"
                          "VAL   0  ALL  VAL   0  ALL  -1.00     1\n");
    contactMap map;
    createStringContactMap(in, map);
    return map;
}

tRadii sampleRadii() {
    return {{"ALA_N", 1.64},  {"ALA_CA", 1.88}, {"ALA_CB", 1.88}, {"LEU_CA", 1.88},
            {"LEU_CD1", 1.9}, {"ASP_OD1", 1.4}, {"ARG_NH1", 1.6}, {"TYR_OH", 2.25},
            {"VAL_CB", 3.5},  {"HIS_CA", 0.0},  {"GLY_CA", -1.0}};
}

std::vector<sSearch> searchesOf(const contactMap& rules) {
    return {{maximumDistance, 0.0, 0.0, nullptr},
            {maximumDistance, 4.5, 0.0, nullptr},
            {maximumDistance, 10.0, 0.0, nullptr},
            {maximumDistance, -3.0, 0.0, nullptr},
            {maximumDistance, 1e9, 0.0, nullptr},
            {prism, 0.0, 0.0, nullptr},
            {prism, 0.5, 0.0, nullptr},
            {prism, 5.0, 0.0, nullptr},
            {prism, -1.0, 0.0, nullptr},
            {prism, -20.0, 0.0, nullptr},
            {vorda, 6.0, 1.125, &rules},
            {vorda, 6.0, -9.0, &rules},
            {vorda, -9.0, 1.125, &rules},
            {vorda, 0.0, 3.0, &rules},
            {none, 5.0, 1.0, &rules},
            {dovreth, 5.0, 1.0, &rules}};
}

/// Chains of residues in a cube of 36 Å. Coordinates are multiples of 0.5 Å, so that distances
/// often equal a threshold and atoms often stand at the same place. The last chain has the first
/// one's id.
std::string randomText(unsigned seed) {
    static const std::vector<std::string> names = {"ALA", "ARG", "ASP", "GLY", "HIS", "LEU", "PRO",
                                                   "SER", "THR", "TRP", "VAL", "A",   "HOH", "MSE"};
    static const std::vector<std::string> atomNames = {"N", "CA", "C", "O", "CB", "CD1", "ALL"};
    std::mt19937 generator(seed);
    const auto below = [&generator](unsigned limit) {
        return static_cast<unsigned>(generator()) % limit;
    };
    cPdbText pdb;
    for (const char chainId : {'A', 'B', ' ', 'D', 'A'}) {
        for (int number = 1; number <= 16; ++number) {
            pdb.residue(chainId, std::to_string(number - 3), names[below(14)]);
            const double x = below(72) * 0.5;
            const double y = below(72) * 0.5;
            const double z = below(72) * 0.5;
            const unsigned atomCount = 1 + below(7);
            for (unsigned i = 0; i < atomCount; ++i) {
                const unsigned nameIndex = below(10) != 0 ? i : below(7);
                const double dx = below(12) * 0.5;
                const double dy = below(12) * 0.5;
                const double dz = below(8) * 0.5;
                pdb.atom(atomNames[nameIndex], x + dx, y + dy, z + dz);
            }
        }
    }
    return pdb.text();
}

/// Many short chains of two ids in a cube of 16 Å, whose residues share a few numbers: most records
/// compare equal to others. Names tell them apart.
std::string textOfEqualRecords(unsigned seed) {
    static const std::vector<std::string> names = {"ALA", "ARG", "ASP", "GLY", "HIS",
                                                   "LEU", "PRO", "SER", "THR", "VAL"};
    static const std::vector<std::string> numbers = {"7", "-7", "007", "7A", "12", "A"};
    std::mt19937 generator(seed);
    const auto below = [&generator](unsigned limit) {
        return static_cast<unsigned>(generator()) % limit;
    };
    cPdbText pdb;
    char chainId = 'A';
    for (int chain = 0; chain < 24; ++chain) {
        chainId = chainId == 'A' ? 'B' : below(4) == 0 ? ' ' : 'A';
        const unsigned residues = 1 + below(6);
        for (unsigned k = 0; k < residues; ++k) {
            pdb.residue(chainId, numbers[below(6)], names[below(10)]);
            for (const char* const atomName : {"N", "CA", "C"}) {
                const double x = below(32) * 0.5;
                const double y = below(32) * 0.5;
                const double z = below(32) * 0.5;
                pdb.atom(atomName, x, y, z);
            }
        }
    }
    return pdb.text();
}

} // namespace

// ---- Criterion by criterion ----

TEST(MaximumDistanceContacts, AtomsExactlyAtTheThresholdTouch) {
    cPdbPeptide peptide = twoResidues(4.5);
    peptide.resolveThresholdContacts(4.5);
    EXPECT_EQ(peptide.contacts.size(), 2U);
    EXPECT_EQ(countBinding(peptide), 2);
}

TEST(MaximumDistanceContacts, AtomsBeyondTheThresholdDoNotTouch) {
    cPdbPeptide peptide = twoResidues(4.5);
    peptide.resolveThresholdContacts(std::nextafter(4.5, 0.0));
    EXPECT_TRUE(peptide.contacts.empty());
    EXPECT_EQ(countBinding(peptide), 0);
}

TEST(MaximumDistanceContacts, RadiiTakeNoPart) {
    cPdbPeptide peptide = twoResidues(5.0, {{"ALA_N", 9.0}, {"ALA_CA", 9.0}});
    peptide.resolveThresholdContacts(4.5);
    EXPECT_TRUE(peptide.contacts.empty());
}

TEST(PrismContacts, SpheresThatJustTouchAreAContactAtThresholdZero) {
    const tRadii radii = {{"ALA_CA", 1.5}, {"GLY_CA", 2.25}, {"ALA_N", 0.5}, {"GLY_N", 0.5}};
    cPdbPeptide touching = twoResidues(3.75, radii, "ALA", "GLY");
    touching.resolvePRISMContacts(0.0);
    EXPECT_EQ(touching.contacts.size(), 2U);
    cPdbPeptide apart = twoResidues(3.751, radii, "ALA", "GLY");
    apart.resolvePRISMContacts(0.0);
    EXPECT_TRUE(apart.contacts.empty());
}

TEST(PrismContacts, ThresholdIsTheLargestGapBetweenSpheres) {
    const tRadii radii = {{"ALA_CA", 1.5}, {"ALA_N", 1.5}};
    cPdbPeptide touching = twoResidues(3.5, radii);
    touching.resolvePRISMContacts(0.5);
    EXPECT_EQ(touching.contacts.size(), 2U);
    cPdbPeptide apart = twoResidues(3.501, radii);
    apart.resolvePRISMContacts(0.5);
    EXPECT_TRUE(apart.contacts.empty());
}

TEST(PrismContacts, LargeSphereReachesPastNearerSmallOnes) {
    // The nearest centres are those of the two CA; only N of B is large enough to touch.
    const tRadii radii = {{"ALA_CA", 1.0}, {"ALA_N", 1.0}, {"GLY_CA", 1.0}, {"GLY_N", 6.0}};
    cPdbPeptide peptide = twoResidues(6.0, radii, "ALA", "GLY");
    peptide.resolvePRISMContacts(0.0);
    EXPECT_EQ(peptide.contacts.size(), 2U);
}

TEST(VordaContacts, CloseSpheresWithoutARuleAreVanDerWaals) {
    cPdbPeptide peptide = twoResidues(4.125, {{"ALA_CA", 1.5}, {"ALA_N", 1.5}});
    peptide.resolveHovikKRBContacts(1.125, 6.0, contactMap());
    ASSERT_EQ(peptide.contacts.size(), 2U);
    EXPECT_EQ(peptide.contacts[0].contactTypes, tTypes{vanDerWaals});
    EXPECT_EQ(peptide.contacts[1].contactTypes, tTypes{vanDerWaals});
    cPdbPeptide apart = twoResidues(4.126, {{"ALA_CA", 1.5}, {"ALA_N", 1.5}});
    apart.resolveHovikKRBContacts(1.125, 6.0, contactMap());
    EXPECT_TRUE(apart.contacts.empty());
}

TEST(VordaContacts, TypesOfRulesAndVanDerWaalsAddUp) {
    const contactMap rules = {{"ALA_GLY",
                               {ruleForAllAtoms(3.0, ionic), ruleForAllAtoms(3.0, hydrophobic),
                                ruleForAllAtoms(2.9, polar)}}};
    cPdbPeptide peptide = twoResidues(3.0, {}, "ALA", "GLY");
    peptide.resolveHovikKRBContacts(1.125, 6.0, rules);
    ASSERT_EQ(peptide.contacts.size(), 2U);
    const tTypes expected = {hydrophobic, ionic, vanDerWaals};
    EXPECT_EQ(peptide.contacts[0].contactTypes, expected);
    EXPECT_EQ(peptide.contacts[1].contactTypes, expected);
}

TEST(VordaContacts, RuleAloneMakesAContactFarBeyondVanDerWaals) {
    cPdbPeptide peptide = twoResidues(12.0, {}, "ALA", "GLY");
    peptide.resolveHovikKRBContacts(1.125, 6.0, rulesForAllAtoms("ALA_GLY", 12.0, polar));
    ASSERT_EQ(peptide.contacts.size(), 2U);
    EXPECT_EQ(peptide.contacts[0].contactTypes, tTypes{polar});
    EXPECT_EQ(countBinding(peptide), 2);
}

TEST(VordaContacts, RulesAreLookedUpFromTheResidueOfTheEarlierChain) {
    cPdbPeptide peptide = twoResidues(12.0, {}, "ALA", "GLY");
    peptide.resolveHovikKRBContacts(1.125, 6.0, rulesForAllAtoms("GLY_ALA", 12.0, polar));
    EXPECT_TRUE(peptide.contacts.empty());
}

TEST(VordaContacts, SearchValueIsNoLimitToTheDistanceOfARuleButTheSearchRangeIs) {
    const contactMap rules = rulesForAllAtoms("ALA_GLY", 99.0, polar);
    cPdbPeptide inRange = twoResidues(21.0, {}, "ALA", "GLY");
    inRange.resolveHovikKRBContacts(1.125, 6.0, rules);
    EXPECT_EQ(inRange.contacts.size(), 2U);
    cPdbPeptide outOfRange = twoResidues(21.001, {}, "ALA", "GLY");
    outOfRange.resolveHovikKRBContacts(1.125, 6.0, rules);
    EXPECT_TRUE(outOfRange.contacts.empty());
}

TEST(VordaContacts, TypesOfOneContactDoNotPassToTheNext) {
    cPdbText pdb;
    pdb.residue('A', "1", "ALA").atom("N", -1.0, 0.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
    pdb.residue('B', "1", "GLY").atom("N", 6.0, 1.0, 0.0).atom("CA", 6.0, 0.0, 0.0);
    pdb.residue('B', "2", "SER").atom("N", -3.0, 1.0, 0.0).atom("CA", -3.0, 0.0, 0.0);
    pdb.residue('B', "3", "TRP").atom("N", 0.0, 7.0, 0.0).atom("CA", 0.0, 6.0, 0.0);
    cPdbPeptide peptide = read(pdb.text());
    peptide.resolveHovikKRBContacts(1.125, 6.0, rulesForAllAtoms("ALA_GLY", 6.0, polar));
    ASSERT_EQ(peptide.contacts.size(), 4U);
    EXPECT_EQ(peptide.contacts[0].residueName2, "GLY");
    EXPECT_EQ(peptide.contacts[0].contactTypes, tTypes{polar});
    EXPECT_EQ(peptide.contacts[1].residueName2, "SER");
    EXPECT_EQ(peptide.contacts[1].contactTypes, tTypes{vanDerWaals});
    EXPECT_EQ(bindingFlags(peptide), (std::vector<bool>{true, true, true, false}));
}

TEST(VordaContacts, NamesWithAnUnderscoreAreLookedUpAsWhole) {
    const contactMap rules = rulesForAllAtoms("A_B_C", 9.0, polar);
    for (const auto& [nameOfA, nameOfB] :
         {std::pair<std::string, std::string>{"A_B", "C"}, {"A", "B_C"}}) {
        cPdbPeptide peptide = twoResidues(8.0);
        peptide.residues[0].residueName = nameOfA;
        peptide.residues[1].residueName = nameOfB;
        peptide.resolveHovikKRBContacts(1.125, 6.0, rules);
        EXPECT_EQ(peptide.contacts.size(), 2U) << nameOfA;
    }
}

// ---- What all searches share ----

TEST(ContactResolution, EveryContactIsListedFromBothSidesInOrder) {
    cPdbText pdb;
    pdb.residue('B', "10", "ALA").atom("N", 0.0, 1.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
    pdb.residue('B', "9A", "GLY").atom("N", 1.0, 1.0, 0.0).atom("CA", 1.0, 0.0, 0.0);
    pdb.residue('A', "-3", "SER").atom("N", 0.0, 1.0, 3.0).atom("CA", 0.0, 0.0, 3.0);
    cPdbPeptide peptide = read(pdb.text());
    peptide.resolvePRISMContacts(0.5);
    const std::vector<cResidueContact> expected = {{"A", "-3", "SER", "B", "9A", "GLY", prism},
                                                   {"A", "-3", "SER", "B", "10", "ALA", prism},
                                                   {"B", "9A", "GLY", "A", "-3", "SER", prism},
                                                   {"B", "10", "ALA", "A", "-3", "SER", prism}};
    ASSERT_EQ(peptide.contacts.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(peptide.contacts[i], expected[i]) << i;
        EXPECT_EQ(peptide.contacts[i].residueName1, expected[i].residueName1) << i;
        EXPECT_EQ(peptide.contacts[i].residueName2, expected[i].residueName2) << i;
        EXPECT_TRUE(peptide.contacts[i].contactTypes.empty()) << i;
    }
}

TEST(ContactResolution, ResiduesOfOneChainAreNeverCompared) {
    cPdbText pdb;
    pdb.residue('A', "1", "ALA").atom("N", 0.0, 1.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
    pdb.residue('A', "2", "ALA").atom("N", 1.0, 1.0, 0.0).atom("CA", 1.0, 0.0, 0.0);
    cPdbPeptide peptide = read(pdb.text());
    peptide.resolveThresholdContacts(5.0);
    peptide.resolvePRISMContacts(5.0);
    peptide.resolveHovikKRBContacts(1.125, 6.0, rulesForAllAtoms("ALA_ALA", 99.0, polar));
    EXPECT_TRUE(peptide.contacts.empty());
    EXPECT_EQ(countBinding(peptide), 0);
}

TEST(ContactResolution, ChainsOfTheSameIdAreDifferentChains) {
    cPdbText pdb;
    pdb.residue('A', "1", "ALA").atom("N", 0.0, 1.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
    pdb.residue('B', "1", "ALA").atom("N", 50.0, 1.0, 0.0).atom("CA", 50.0, 0.0, 0.0);
    pdb.residue('A', "7", "ALA").atom("N", 3.0, 1.0, 0.0).atom("CA", 3.0, 0.0, 0.0);
    cPdbPeptide peptide = read(pdb.text());
    peptide.resolveThresholdContacts(5.0);
    ASSERT_EQ(peptide.contacts.size(), 2U);
    EXPECT_EQ(peptide.contacts[0], cResidueContact("A", "1", "", "A", "7", "", maximumDistance));
    EXPECT_EQ(peptide.contacts[1], cResidueContact("A", "7", "", "A", "1", "", maximumDistance));
}

TEST(ContactResolution, RepresentativesBeyondTheMarginHideCloseSideChains) {
    const auto contactsAt = [](double distanceOfSecondAtoms) {
        cPdbText pdb;
        const double x = distanceOfSecondAtoms;
        pdb.residue('A', "1", "ARG").atom("N", 0.0, 1.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
        pdb.atom("NH1", 9.0, 0.0, 0.0);
        pdb.residue('B', "1", "ARG").atom("N", x, 1.0, 0.0).atom("CA", x, 0.0, 0.0);
        pdb.atom("NH1", 10.0, 0.0, 0.0);
        cPdbPeptide peptide = read(pdb.text());
        peptide.resolveThresholdContacts(4.0);
        return peptide.contacts.size();
    };
    EXPECT_EQ(contactsAt(19.0), 2U);
    EXPECT_EQ(contactsAt(19.001), 0U);
}

TEST(ContactResolution, ResiduesOfOtherTypesNeitherGetNorGiveContacts) {
    for (const auto& [nameOfA, nameOfB] :
         {std::pair<std::string, std::string>{"HOH", "ALA"}, {"ALA", "HOH"}, {"HOH", "HOH"}}) {
        cPdbPeptide peptide = twoResidues(3.0, {}, nameOfA, nameOfB);
        peptide.resolveThresholdContacts(5.0);
        peptide.resolvePRISMContacts(5.0);
        peptide.resolveHovikKRBContacts(1.125, 6.0,
                                        rulesForAllAtoms(nameOfA + "_" + nameOfB, 9.0, polar));
        EXPECT_TRUE(peptide.contacts.empty()) << nameOfA << " " << nameOfB;
        EXPECT_EQ(countBinding(peptide), 0);
    }
}

TEST(ContactResolution, NucleotidesTakePart) {
    cPdbPeptide peptide = twoResidues(3.0, {}, "G", "ARG");
    peptide.resolveThresholdContacts(5.0);
    EXPECT_EQ(peptide.contacts.size(), 2U);
}

TEST(ContactResolution, ResiduesOfOneAtomTakeNoPart) {
    for (const char shortChain : {'A', 'B'}) {
        cPdbText pdb;
        for (const char chainId : {'A', 'B'}) {
            const double x = chainId == 'A' ? 0.0 : 3.0;
            pdb.residue(chainId, "1", "ALA").atom("CA", x, 0.0, 0.0);
            if (chainId != shortChain) {
                pdb.atom("C", x, 1.0, 0.0);
            }
        }
        cPdbPeptide peptide = read(pdb.text());
        peptide.resolveThresholdContacts(5.0);
        peptide.resolvePRISMContacts(5.0);
        EXPECT_TRUE(peptide.contacts.empty());
    }
}

TEST(ContactResolution, AtomsAtTheSamePlaceDoNotTouch) {
    cPdbText pdb;
    pdb.residue('A', "1", "ALA").atom("N", 0.0, 0.0, 0.0).atom("CA", 9.0, 0.0, 0.0);
    pdb.residue('B', "1", "ALA").atom("N", 0.0, 0.0, 0.0).atom("CA", 0.0, 9.0, 0.0);
    const cPdbPeptide peptide = read(pdb.text());
    cPdbPeptide byDistance(peptide);
    byDistance.resolveThresholdContacts(8.0);
    EXPECT_TRUE(byDistance.contacts.empty());
    cPdbPeptide byRadius(peptide);
    byRadius.resolvePRISMContacts(4.0);
    EXPECT_TRUE(byRadius.contacts.empty());
    // A rule, on the other hand, is fulfilled at distance 0.
    cPdbPeptide byRule(peptide);
    byRule.resolveHovikKRBContacts(1.125, 6.0, rulesForAllAtoms("ALA_ALA", 0.0, polar));
    ASSERT_EQ(byRule.contacts.size(), 2U);
    EXPECT_EQ(byRule.contacts[0].contactTypes, tTypes{polar});
}

TEST(ContactResolution, RepresentativesAtTheSamePlaceDoNotFindEachOther) {
    cPdbText pdb;
    pdb.residue('A', "1", "ALA").atom("N", -2.0, 0.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
    pdb.residue('B', "1", "ALA").atom("N", 2.0, 0.0, 0.0).atom("CA", 0.0, 0.0, 0.0);
    const cPdbPeptide peptide = read(pdb.text());
    EXPECT_EQ(expectSameAsPairByPair(peptide, {maximumDistance, 8.0, 0.0, nullptr}), 0U);
    EXPECT_EQ(expectSameAsPairByPair(peptide, {prism, 4.0, 0.0, nullptr}), 0U);
}

TEST(ContactResolution, MoreThanAThousandNeighboursAreAllFound) {
    cPdbText pdb;
    pdb.residue('A', "1", "ALA").atom("N", -2.0, 0.0, 0.0).atom("CA", -1.0, 0.0, 0.0);
    constexpr int partners = 1728;
    for (int i = 0; i < partners; ++i) {
        const double x = i % 12 * 0.5;
        const double y = i / 12 % 12 * 0.5;
        const double z = i / 144 * 0.5;
        pdb.residue('B', std::to_string(i + 1), "GLY")
            .atom("N", x + 0.25, y, z)
            .atom("CA", x, y, z);
    }
    cPdbPeptide peptide = read(pdb.text());
    peptide.resolveThresholdContacts(20.0);
    ASSERT_EQ(peptide.contacts.size(), 2U * partners);
    for (std::size_t i = 0; i < partners; ++i) {
        EXPECT_EQ(peptide.contacts[i].residueNumber2, std::to_string(i + 1));
        EXPECT_EQ(peptide.contacts[partners + i].residueNumber1, std::to_string(i + 1));
    }
    EXPECT_EQ(countBinding(peptide), partners + 1);
}

TEST(ContactResolution, SingleChainHasNoContacts) {
    cPdbPeptide peptide = read(chainText(sampleText("1a0q"), 'L'));
    ASSERT_EQ(peptide.chains.size(), 1U);
    peptide.resolveThresholdContacts(10.0);
    EXPECT_TRUE(peptide.contacts.empty());
    EXPECT_EQ(countBinding(peptide), 0);
}

TEST(ContactResolution, EmptyStructureHasNoContacts) {
    cPdbPeptide peptide;
    peptide.resolveThresholdContacts(5.0);
    peptide.resolvePRISMContacts(5.0);
    peptide.resolveHovikKRBContacts(1.125, 6.0, contactMap());
    peptide.resolveDovrethContacts(1.0, probeRadius, zSlice);
    EXPECT_TRUE(peptide.contacts.empty());
}

TEST(ContactResolution, ContactsAreAddedToThoseOfTheListAndSortedWithThem) {
    cPdbPeptide peptide = twoResidues(3.0);
    peptide.contacts.emplace_back("Z", "1", "ALA", "A", "1", "ALA", prism);
    peptide.contacts.emplace_back("A", "0", "ALA", "B", "2", "ALA", prism);
    peptide.resolveThresholdContacts(5.0);
    peptide.resolvePRISMContacts(0.5);
    ASSERT_EQ(peptide.contacts.size(), 6U);
    EXPECT_TRUE(std::is_sorted(peptide.contacts.begin(), peptide.contacts.end()));
    EXPECT_EQ(peptide.contacts.front().residueNumber1, "0");
    EXPECT_EQ(peptide.contacts.back().chain1, "Z");
    EXPECT_EQ(peptide.contacts[1].criterion, maximumDistance);
    EXPECT_EQ(peptide.contacts[2].criterion, prism);
}

TEST(ContactResolution, OtherCriteriaFindNothingButSort) {
    for (const eInteractionCriterion criterion :
         {none, dovreth, static_cast<eInteractionCriterion>(5)}) {
        cPdbPeptide peptide = twoResidues(3.0);
        peptide.contacts.emplace_back("Z", "1", "ALA", "A", "1", "ALA", prism);
        peptide.contacts.emplace_back("A", "1", "ALA", "B", "2", "ALA", prism);
        peptide.resolveContacts(criterion, 5.0, 5.0, nullptr);
        ASSERT_EQ(peptide.contacts.size(), 2U);
        EXPECT_EQ(peptide.contacts[0].chain1, "A");
        EXPECT_EQ(countBinding(peptide), 0);
    }
}

TEST(ContactResolution, BindingFlagsAreNeverReset) {
    cPdbPeptide peptide = twoResidues(9.0);
    peptide.residues[0].isBinding = true;
    peptide.resolveThresholdContacts(5.0);
    EXPECT_EQ(bindingFlags(peptide), (std::vector<bool>{true, false}));
}

TEST(ContactResolution, OnlyRulesGiveTypesWhenNoSpheresAreInReach) {
    const contactMap rules = sampleRules();
    cPdbPeptide peptide = read(sampleText("2hhb"), sampleRadii());
    peptide.resolveHovikKRBContacts(-99.0, 6.0, rules);
    EXPECT_FALSE(peptide.contacts.empty());
    for (const cResidueContact& contact : peptide.contacts) {
        EXPECT_FALSE(contact.contactTypes.contains(vanDerWaals));
        EXPECT_FALSE(contact.contactTypes.empty());
    }
}

TEST(ContactResolution, SearchEqualsTheSearchPairByPairOnProteins) {
    const contactMap rules = sampleRules();
    for (const std::string name : {"1a0q", "2hhb"}) {
        const cPdbPeptide peptide = read(sampleText(name), sampleRadii());
        std::size_t records = 0;
        for (const sSearch& search :
             {sSearch{maximumDistance, 4.5, 0.0, nullptr}, sSearch{prism, 0.5, 0.0, nullptr},
              sSearch{vorda, 6.0, 1.125, &rules}, sSearch{vorda, 6.0, -9.0, &rules}}) {
            SCOPED_TRACE(name + " by criterion " +
                         std::to_string(static_cast<int>(search.criterion)));
            records += expectSameAsPairByPair(peptide, search);
        }
        EXPECT_GT(records, 300U) << name;
    }
}

TEST(ContactResolution, SearchEqualsTheSearchPairByPairOnRandomStructures) {
    const contactMap rules = sampleRules();
    std::size_t records = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        const cPdbPeptide peptide = read(randomText(seed), sampleRadii());
        for (const sSearch& search : searchesOf(rules)) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", criterion " +
                         std::to_string(static_cast<int>(search.criterion)) + ", search value " +
                         std::to_string(search.searchValue));
            records += expectSameAsPairByPair(peptide, search);
        }
    }
    EXPECT_GT(records, 10000U);
}

TEST(ContactResolution, EqualRecordsStandInTheOrderInWhichTheyAreFound) {
    const contactMap rules = sampleRules();
    std::size_t equalNeighbours = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        const std::string text = seed % 2 == 0 ? randomText(seed) : textOfEqualRecords(seed);
        const cPdbPeptide peptide = read(text, sampleRadii());
        for (const sSearch& search : searchesOf(rules)) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", criterion " +
                         std::to_string(static_cast<int>(search.criterion)) + ", search value " +
                         std::to_string(search.searchValue));
            cPdbPeptide searched(peptide);
            searched.resolveContacts(search.criterion, search.searchValue, search.vdwThreshold,
                                     search.rules);
            cPdbPeptide expected(peptide);
            resolveGridByGrid(expected, search);
            EXPECT_EQ(orderedRecordsOf(searched), orderedRecordsOf(expected));
            for (std::size_t i = 1; i < expected.contacts.size(); ++i) {
                equalNeighbours += expected.contacts[i - 1] == expected.contacts[i] ? 1U : 0U;
            }
        }
    }
    EXPECT_GT(equalNeighbours, 10000U);
}

// ---- Lists of contacts without texts ----

TEST(ContactList, HoldsTheRecordsOfTheStructure) {
    const contactMap rules = sampleRules();
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const cPdbPeptide peptide = read(textOfEqualRecords(seed), sampleRadii());
        for (const sSearch& search : searchesOf(rules)) {
            cPdbPeptide searched(peptide);
            searched.resolveContacts(search.criterion, search.searchValue, search.vdwThreshold,
                                     search.rules);
            cPdbPeptide listed(peptide);
            const sContactList list = findContacts(listed, search.criterion, search.searchValue,
                                                   search.vdwThreshold, search.rules);
            EXPECT_EQ(orderedRecordsOf(listed, list, search.criterion), orderedRecordsOf(searched));
            EXPECT_EQ(bindingFlags(listed), bindingFlags(searched));
            EXPECT_TRUE(listed.contacts.empty());
        }
    }
}

TEST(ContactList, TypeSetsStandOnceInAscendingOrderTheEmptyOneFirst) {
    const contactMap rules = sampleRules();
    cPdbPeptide peptide = read(sampleText("2hhb"), sampleRadii());
    const sContactList list = findContacts(peptide, vorda, 6.0, 1.125, &rules);
    ASSERT_GT(list.typeSets.size(), 2U);
    EXPECT_TRUE(list.typeSets.front().empty());
    for (std::size_t i = 1; i < list.typeSets.size(); ++i) {
        EXPECT_LT(list.typeSets[i - 1], list.typeSets[i]);
    }
    std::set<std::uint32_t> used;
    for (const sContact& contact : list.contacts) {
        used.insert(contact.typeSet);
    }
    EXPECT_EQ(used.size(), list.typeSets.size() - 1);
    EXPECT_FALSE(used.contains(0));
}

TEST(ContactList, CriteriaWithoutTypesUseTheEmptySetAlone) {
    for (const eInteractionCriterion criterion : {maximumDistance, prism}) {
        cPdbPeptide peptide = twoResidues(3.0);
        const sContactList list = findContacts(peptide, criterion, 5.0, 0.0, nullptr);
        ASSERT_EQ(list.contacts.size(), 2U);
        EXPECT_EQ(list.typeSets, (std::vector<tTypes>{{}}));
        EXPECT_EQ(list.contacts[0].typeSet, 0U);
        EXPECT_EQ(list.contacts[0].residue1, 0U);
        EXPECT_EQ(list.contacts[0].residue2, 1U);
        EXPECT_EQ(list.contacts[1].residue1, 1U);
        EXPECT_EQ(list.contacts[1].residue2, 0U);
    }
}

TEST(ContactList, ChainsOfResiduesFollowTheChains) {
    const cPdbPeptide peptide = read(textOfEqualRecords(1));
    const std::vector<std::uint32_t> chains = chainOfResidues(peptide);
    ASSERT_EQ(chains.size(), peptide.residues.size());
    for (std::size_t i = 0; i < chains.size(); ++i) {
        const cProteinChain& chain = peptide.chains.at(chains[i]);
        EXPECT_GE(&peptide.residues[i], chain.residues);
        EXPECT_LT(&peptide.residues[i], chain.residues + chain.residueCount);
    }
}

// ---- Change of the accessible surface ----

class DovrethContacts : public testing::Test {
  protected:
    // Two chains of a protein that touch.
    const std::string text = sampleText("1a0q");
    cPdbPeptide peptide = read(text, sampleRadii());

    void SetUp() override { peptide.setAccessibleSurfaceArea(probeRadius, zSlice); }

    /// Areas of the residues of chains that were read and computed on their own, in file order.
    std::vector<double> areasApart(eAsaForm form = eAsaForm::classic) const {
        std::vector<double> areas;
        for (const char chainId : {'L', 'H'}) {
            cPdbPeptide alone = read(chainText(text, chainId), sampleRadii());
            alone.setAccessibleSurfaceArea(probeRadius, zSlice, form);
            for (const cChainResidue& residue : alone.residues) {
                areas.push_back(residue.totalAsa);
            }
        }
        return areas;
    }
};

TEST_F(DovrethContacts, ResiduesWhoseAreaChangesAreBinding) {
    for (const eAsaForm form : {eAsaForm::classic, eAsaForm::complete}) {
        const std::vector<double> apart = areasApart(form);
        ASSERT_EQ(apart.size(), peptide.residues.size());
        peptide.setAccessibleSurfaceArea(probeRadius, zSlice, form);
        for (const double deltaAsa : {0.0, 1.0, 25.0}) {
            cPdbPeptide resolved(peptide);
            resolved.resolveDovrethContacts(deltaAsa, probeRadius, zSlice, form);
            for (std::size_t i = 0; i < apart.size(); ++i) {
                const double change = std::abs(apart[i] - peptide.residues[i].totalAsa);
                EXPECT_EQ(resolved.residues[i].isBinding, change > deltaAsa)
                    << "residue " << i << ", " << deltaAsa;
            }
            EXPECT_GT(countBinding(resolved), 0);
            EXPECT_LT(countBinding(resolved), static_cast<long>(apart.size()));
            EXPECT_TRUE(resolved.contacts.empty());
        }
    }
}

TEST_F(DovrethContacts, ChangeEqualToTheThresholdDoesNotCount) {
    const std::vector<double> apart = areasApart();
    std::size_t changed = 0;
    while (apart[changed] == peptide.residues[changed].totalAsa) {
        ++changed;
    }
    const double change = std::abs(apart[changed] - peptide.residues[changed].totalAsa);
    cPdbPeptide atThreshold(peptide);
    atThreshold.resolveDovrethContacts(change, probeRadius, zSlice);
    EXPECT_FALSE(atThreshold.residues[changed].isBinding);
    cPdbPeptide belowThreshold(peptide);
    belowThreshold.resolveDovrethContacts(std::nextafter(change, 0.0), probeRadius, zSlice);
    EXPECT_TRUE(belowThreshold.residues[changed].isBinding);
}

TEST_F(DovrethContacts, OnlyBindingFlagsOfTheStructureChange) {
    const cPdbPeptide before(peptide);
    peptide.resolveDovrethContacts(1.0, probeRadius, zSlice);
    for (std::size_t i = 0; i < before.atoms.size(); ++i) {
        EXPECT_EQ(peptide.atoms[i].asa, before.atoms[i].asa);
    }
    for (std::size_t i = 0; i < before.residues.size(); ++i) {
        EXPECT_EQ(peptide.residues[i].totalAsa, before.residues[i].totalAsa);
        EXPECT_EQ(peptide.residues[i].polarAsa, before.residues[i].polarAsa);
    }
    for (std::size_t i = 0; i < before.chains.size(); ++i) {
        EXPECT_EQ(peptide.chains[i].totalAsa, before.chains[i].totalAsa);
    }
    EXPECT_EQ(peptide.totalAsa, before.totalAsa);
    EXPECT_TRUE(peptide.contacts.empty());
}

TEST_F(DovrethContacts, SecondRunGivesTheSameFlags) {
    peptide.resolveDovrethContacts(1.0, probeRadius, zSlice);
    const std::vector<bool> flags = bindingFlags(peptide);
    peptide.resolveDovrethContacts(1.0, probeRadius, zSlice);
    EXPECT_EQ(bindingFlags(peptide), flags);
}

TEST_F(DovrethContacts, FlagsAreNeverCleared) {
    for (cChainResidue& residue : peptide.residues) {
        residue.isBinding = true;
    }
    peptide.resolveDovrethContacts(1.0, probeRadius, zSlice);
    EXPECT_EQ(countBinding(peptide), static_cast<long>(peptide.residues.size()));
}

TEST_F(DovrethContacts, SingleChainBindsNothing) {
    cPdbPeptide alone = read(chainText(text, 'H'), sampleRadii());
    alone.setAccessibleSurfaceArea(probeRadius, zSlice);
    alone.resolveDovrethContacts(0.0, probeRadius, zSlice);
    EXPECT_EQ(countBinding(alone), 0);
}

TEST(DovrethFlags, ResiduesOfOtherTypesAreNeverBinding) {
    cPdbPeptide peptide = twoResidues(3.0, {}, "HOH", "ALA");
    peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
    peptide.resolveDovrethContacts(0.0, probeRadius, zSlice);
    EXPECT_EQ(bindingFlags(peptide), (std::vector<bool>{false, true}));
}

TEST(DovrethFlags, AreaThatIsLargerInTheComplexCountsToo) {
    // Alone, the only atom of chain A meets no neighbour and so has no area; in the complex it has
    // a neighbour that is near enough to be seen and too far to cover anything.
    cPdbText pdb;
    pdb.residue('A', "1", "ALA").atom("CA", 0.0, 0.0, 0.0);
    pdb.residue('B', "1", "ALA").atom("N", 7.0, 0.0, 0.0).atom("CA", 8.0, 0.0, 0.0);
    cPdbPeptide peptide = read(pdb.text());
    peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
    ASSERT_GT(peptide.residues[0].totalAsa, 50.0);
    peptide.resolveDovrethContacts(50.0, probeRadius, zSlice);
    EXPECT_EQ(bindingFlags(peptide), (std::vector<bool>{true, false}));
}

// ---- Stops ----

TEST(ContactStop, EveryResidueAndEverySortingIsAStopsOpportunity) {
    const cPdbPeptide peptide = read(sampleText("2hhb"));
    const contactMap rules = sampleRules();
    for (const eInteractionCriterion criterion : {maximumDistance, prism, vorda}) {
        const auto resolve = [&](int lastQuestion) {
            cPdbPeptide searched(peptide);
            std::atomic<int> questions = 0;
            const cStopRequest request([&] { return ++questions == lastQuestion; });
            searched.resolveContacts(criterion, 10.0, 1.125, &rules);
            return questions.load();
        };
        const int questions = resolve(0);
        // Every residue is one, the last chain's too, and so is the sorting.
        const auto residues =
            static_cast<int>(peptide.residues.size() - peptide.chains.back().residueCount);
        EXPECT_GT(questions, residues + static_cast<int>(peptide.chains.size()))
            << static_cast<int>(criterion);
        for (const int question : {1, questions / 2, questions}) {
            EXPECT_THROW(resolve(question), sStopped)
                << static_cast<int>(criterion) << ' ' << question;
        }
    }
}

TEST(ContactStop, IsHeededBetweenTwoHugeResidues) {
    constexpr int atoms = 300;
    cPdbText pdb;
    for (const char chain : {'A', 'B'}) {
        pdb.residue(chain, "1", "ALA");
        for (int i = 0; i < atoms; ++i) {
            pdb.atom("CA", i, chain == 'A' ? 0.0 : 6.0, 0.0);
        }
        // Far from everything, but then the box around A holds all of B.
        if (chain == 'A') {
            pdb.atom("CB", 0.0, 50.0, 0.0);
        }
    }
    const cPdbPeptide peptide = read(pdb.text());
    const contactMap rules = rulesForAllAtoms("ALA_ALA", 5.9, hydrophobic);
    for (const eInteractionCriterion criterion : {maximumDistance, prism, vorda}) {
        cPdbPeptide searched(peptide);
        int questions = 0;
        const cStopRequest request([&] { return ++questions == atoms; });
        const double searchValue = criterion == prism ? 2.5 : 5.9;
        EXPECT_THROW(searched.resolveContacts(criterion, searchValue, -9.0, &rules), sStopped)
            << static_cast<int>(criterion);
    }
}

} // namespace kelmo

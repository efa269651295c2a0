// The tables that programs compute: their geometry, their chemistry, and that the shipped files are
// what the programs write.

#include "contacts/residue_contact.h"
#include "data/generate/contact_rule_table.h"
#include "data/generate/residue_template.h"
#include "data/generate/standard_area_table.h"
#include "data/generate/tripeptide.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <numbers>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace kelmo {

using enum eContactType;

namespace {

cPdbPeptide loadTripeptide(const std::string& middle) {
    sReading reading = readPdb(tripeptidePdb(middle), shippedTables().radii);
    EXPECT_EQ(reading.result, 0);
    EXPECT_EQ(reading.missing, std::set<std::string>{});
    return std::move(reading.peptide);
}

/// The first nitrogen of a chain is N to the chemistry.
std::string chemicalName(const cResidueAtom& atom) {
    return atom.atomName == "NXT" ? "N" : atom.atomName;
}

const cResidueAtom& atomOf(const cChainResidue& residue, const std::string& name) {
    for (unsigned i = 0; i < residue.atomCount; ++i) {
        if (chemicalName(residue.atoms[i]) == name) {
            return residue.atoms[i];
        }
    }
    ADD_FAILURE() << residue.residueName << " has no " << name;
    return *residue.atoms;
}

/// Degrees, positive clockwise looking from b to c.
double torsionAngle(const cResidueAtom& a, const cResidueAtom& b, const cResidueAtom& c,
                    const cResidueAtom& d) {
    const sPoint ab{b.x - a.x, b.y - a.y, b.z - a.z};
    const sPoint bc{c.x - b.x, c.y - b.y, c.z - b.z};
    const sPoint cd{d.x - c.x, d.y - c.y, d.z - c.z};
    const auto cross = [](const sPoint& u, const sPoint& v) {
        return sPoint{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
    };
    const auto dot = [](const sPoint& u, const sPoint& v) {
        return u.x * v.x + u.y * v.y + u.z * v.z;
    };
    const sPoint first = cross(ab, bc);
    const sPoint second = cross(bc, cd);
    const double sine = dot(cross(first, second), bc) / std::sqrt(dot(bc, bc));
    return std::atan2(sine, dot(first, second)) * 180.0 / std::numbers::pi;
}

/// Degrees from one direction to another, 0 to 180.
double turnBetween(double a, double b) {
    return std::abs(std::remainder(a - b, 360.0));
}

/// Bond lengths of one residue in the order of its template's bonds.
std::map<std::pair<std::string, std::string>, double> bondLengths(const cChainResidue& residue) {
    const sResidueTemplate& pattern = residueTemplate(residue.residueName);
    std::map<std::pair<std::string, std::string>, double> lengths;
    for (const std::string& atom : heavyAtomNames(pattern)) {
        for (const std::string& partner : bondedAtoms(pattern, atom)) {
            lengths[{std::min(atom, partner), std::max(atom, partner)}] =
                centreDistance(atomOf(residue, atom), atomOf(residue, partner));
        }
    }
    return lengths;
}

/// Whether a residue of a sample has all its heavy atoms.
bool isComplete(const cChainResidue& residue) {
    return residue.atomCount >= heavyAtomNames(residueTemplate(residue.residueName)).size();
}

/// The bonds of a tripeptide as lists of partners by atom position.
std::vector<std::vector<unsigned>> bondGraph(const cPdbPeptide& peptide) {
    std::vector<std::vector<unsigned>> partners(peptide.atoms.size());
    for (unsigned i = 0; i < peptide.atoms.size(); ++i) {
        for (unsigned j = 0; j < peptide.atoms.size(); ++j) {
            if (i != j && centreDistance(peptide.atoms[i], peptide.atoms[j]) < 1.95) {
                partners[i].push_back(j);
            }
        }
    }
    return partners;
}

/// Bonds between one atom and each other.
std::vector<unsigned> bondsFrom(const std::vector<std::vector<unsigned>>& graph, unsigned start) {
    std::vector<unsigned> bonds(graph.size(), 1000U);
    bonds[start] = 0;
    for (std::deque<unsigned> open{start}; !open.empty(); open.pop_front()) {
        for (const unsigned next : graph[open.front()]) {
            if (bonds[next] == 1000U) {
                bonds[next] = bonds[open.front()] + 1;
                open.push_back(next);
            }
        }
    }
    return bonds;
}

/// Area of one residue, Å², by points spread evenly over each sphere (Shrake & Rupley 1973): a
/// method that shares nothing with slicing.
double areaByPoints(const cPdbPeptide& peptide, const cChainResidue& residue, double probeRadius) {
    constexpr int pointCount = 4000;
    const double goldenAngle = std::numbers::pi * (3.0 - std::sqrt(5.0));
    double area = 0.0;
    for (const cResidueAtom* atom = residue.atoms; atom != residue.atoms + residue.atomCount;
         ++atom) {
        const double reach = atom->radius + probeRadius;
        int freePoints = 0;
        for (int i = 0; i < pointCount; ++i) {
            const double height = 1.0 - (2.0 * i + 1.0) / pointCount;
            const double ring = std::sqrt(1.0 - height * height);
            const cResidueAtom point("", "", atom->x + reach * ring * std::cos(goldenAngle * i),
                                     atom->y + reach * ring * std::sin(goldenAngle * i),
                                     atom->z + reach * height, 0.0);
            const bool isCovered = std::any_of(
                peptide.atoms.begin(), peptide.atoms.end(), [&](const cResidueAtom& other) {
                    return &other != atom &&
                           centreDistance(other, point) < other.radius + probeRadius;
                });
            freePoints += isCovered ? 0 : 1;
        }
        area += 4.0 * std::numbers::pi * reach * reach * freePoints / pointCount;
    }
    return area;
}

/// One row of the contact rules as it stands in the file.
struct sRuleRow {
    std::string residue1, atom1, residue2, atom2;
    std::string distance;
    int type = 0;
};

std::vector<sRuleRow> ruleRows() {
    std::istringstream in(sourceText("data/aa_contacts.txt"));
    std::string line;
    std::getline(in, line);
    std::vector<sRuleRow> rows;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        sRuleRow row;
        unsigned index = 0;
        fields >> row.residue1 >> index >> row.atom1 >> row.residue2 >> index >> row.atom2 >>
            row.distance >> row.type;
        EXPECT_TRUE(fields) << line;
        rows.push_back(row);
    }
    return rows;
}

contactMap ruleMap() {
    std::istringstream in(sourceText("data/aa_contacts.txt"));
    contactMap map;
    createStringContactMap(in, map);
    return map;
}

/// The types of the rules between two atoms, whichever way round they stand.
std::set<int> ruleTypes(const std::string& residue1, const std::string& atom1,
                        const std::string& residue2, const std::string& atom2) {
    std::set<int> types;
    for (const sRuleRow& row : ruleRows()) {
        const auto pair = std::tie(row.residue1, row.atom1, row.residue2, row.atom2);
        if (pair == std::tie(residue1, atom1, residue2, atom2) ||
            pair == std::tie(residue2, atom2, residue1, atom1)) {
            types.insert(row.type);
        }
    }
    return types;
}

const cChainResidue& residueOf(const cPdbPeptide& peptide, const std::string& chain,
                               const std::string& number) {
    for (const cProteinChain& candidate : peptide.chains) {
        for (unsigned i = 0; candidate.chainId == chain && i < candidate.residueCount; ++i) {
            if (candidate.residues[i].residueNumber == number) {
                return candidate.residues[i];
            }
        }
    }
    ADD_FAILURE() << "no residue " << chain << number;
    return peptide.residues.front();
}

class Tripeptide : public testing::TestWithParam<std::string> {};

std::vector<std::string> residueNames() {
    std::vector<std::string> names;
    for (const sResidueTemplate& residue : residueTemplates()) {
        names.push_back(residue.name);
    }
    return names;
}

} // namespace

TEST_P(Tripeptide, IsAlaXAlaInOneChain) {
    const cPdbPeptide peptide = loadTripeptide(GetParam());
    ASSERT_EQ(peptide.residues.size(), 3U);
    EXPECT_EQ(peptide.chains.size(), 1U);
    EXPECT_EQ(peptide.residues[0].residueName, "ALA");
    EXPECT_EQ(peptide.residues[1].residueName, GetParam());
    EXPECT_EQ(peptide.residues[2].residueName, "ALA");
    EXPECT_EQ(peptide.name, "A" + GetParam());
}

TEST_P(Tripeptide, HasTransPeptideBondsAndAnExtendedChain) {
    const cPdbPeptide peptide = loadTripeptide(GetParam());
    const auto& r = peptide.residues;
    for (unsigned i = 0; i < 2; ++i) {
        EXPECT_LT(turnBetween(torsionAngle(atomOf(r[i], "CA"), atomOf(r[i], "C"),
                                           atomOf(r[i + 1], "N"), atomOf(r[i + 1], "CA")),
                              180.0),
                  0.5);
        EXPECT_LT(turnBetween(torsionAngle(atomOf(r[i], "N"), atomOf(r[i], "CA"), atomOf(r[i], "C"),
                                           atomOf(r[i + 1], "N")),
                              135.0),
                  0.5);
        EXPECT_NEAR(centreDistance(atomOf(r[i], "CA"), atomOf(r[i + 1], "CA")), 3.80, 0.05);
    }
    const double phi =
        torsionAngle(atomOf(r[0], "C"), atomOf(r[1], "N"), atomOf(r[1], "CA"), atomOf(r[1], "C"));
    EXPECT_LT(turnBetween(phi, GetParam() == "PRO" ? -70.0 : -139.0), 0.5);
}

// The caps of the top and bottom atoms are lost to slicing: they must not be those of the middle.
TEST_P(Tripeptide, RunsAlongZWithTheMiddleResidueBetweenTheOthers) {
    const cPdbPeptide peptide = loadTripeptide(GetParam());
    const cResidueAtom& first = atomOf(peptide.residues[0], "CA");
    const cResidueAtom& last = atomOf(peptide.residues[2], "CA");
    EXPECT_NEAR(first.x, last.x, 0.0011);
    EXPECT_NEAR(first.y, last.y, 0.0011);
    EXPECT_GT(last.z, first.z + 6.0);
    const auto reach = [](const cChainResidue& residue, double sign) {
        double farthest = -1000.0;
        for (unsigned i = 0; i < residue.atomCount; ++i) {
            farthest = std::max(farthest, sign * residue.atoms[i].z + residue.atoms[i].radius);
        }
        return farthest;
    };
    EXPECT_GT(reach(peptide.residues[0], -1.0), reach(peptide.residues[1], -1.0));
    EXPECT_GT(reach(peptide.residues[2], 1.0), reach(peptide.residues[1], 1.0));
}

TEST_P(Tripeptide, HasBondLengthsOfTheSampleEntries) {
    std::map<std::pair<std::string, std::string>, std::vector<double>> observed;
    for (const char* code : {"1a0q", "1ubq", "2hhb"}) {
        const cPdbPeptide sample = samplePeptide(code);
        for (const cChainResidue& residue : sample.residues) {
            if (residue.residueName == GetParam() && isComplete(residue)) {
                for (const auto& [bond, length] : bondLengths(residue)) {
                    observed[bond].push_back(length);
                }
            }
        }
    }
    const cPdbPeptide peptide = loadTripeptide(GetParam());
    const auto built = bondLengths(peptide.residues[1]);
    ASSERT_EQ(built.size(), observed.size());
    ASSERT_GE(built.size(), 3U) << "the backbone alone has as many";
    for (const auto& [bond, length] : built) {
        std::vector<double>& lengths = observed.at(bond);
        const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
        std::nth_element(lengths.begin(), middle, lengths.end());
        EXPECT_NEAR(length, *middle, 0.08) << bond.first << " - " << bond.second;
    }
}

TEST_P(Tripeptide, IsOfTheHandOfTheSampleEntries) {
    const cPdbPeptide peptide = loadTripeptide(GetParam());
    ASSERT_EQ(peptide.residues.size(), 3U);
    for (const cChainResidue& residue : peptide.residues) {
        if (residue.residueName == "GLY") {
            continue;
        }
        const double improper = torsionAngle(atomOf(residue, "C"), atomOf(residue, "N"),
                                             atomOf(residue, "CA"), atomOf(residue, "CB"));
        EXPECT_LT(turnBetween(improper, -121.5), 5.0) << residue.residueName;
    }
}

TEST_P(Tripeptide, HasNoAtomsThatRunIntoEachOther) {
    const cPdbPeptide peptide = loadTripeptide(GetParam());
    const auto graph = bondGraph(peptide);
    for (unsigned i = 0; i < peptide.atoms.size(); ++i) {
        const std::vector<unsigned> bonds = bondsFrom(graph, i);
        for (unsigned j = 0; j < peptide.atoms.size(); ++j) {
            ASSERT_LT(bonds[j], 1000U) << "not one molecule";
            if (bonds[j] >= 4) {
                EXPECT_GT(centreDistance(peptide.atoms[i], peptide.atoms[j]), 2.5)
                    << peptide.atoms[i].atomName << " " << peptide.atoms[j].atomName;
            }
        }
    }
}

TEST_P(Tripeptide, HasTheAreaThatPointsOnItsSpheresGive) {
    cPdbPeptide peptide = loadTripeptide(GetParam());
    peptide.setAccessibleSurfaceArea(1.4, 0.05);
    const double expected = areaByPoints(peptide, peptide.residues[1], 1.4);
    EXPECT_NEAR(peptide.residues[1].totalAsa, expected, 0.01 * expected);
}

INSTANTIATE_TEST_SUITE_P(Standard, Tripeptide, testing::ValuesIn(residueNames()),
                         [](const auto& instance) { return instance.param; });

TEST(ResidueTemplates, CloseTheirRingsWithStandardBonds) {
    // Engh & Huber 1991; proline's is the length of N - CD.
    const std::vector<std::tuple<std::string, std::string, std::string, double>> closures{
        {"HIS", "CE1", "NE2", 1.345}, {"PHE", "CE2", "CZ", 1.382},  {"PRO", "N", "CD", 1.473},
        {"TRP", "NE1", "CE2", 1.370}, {"TRP", "CZ3", "CH2", 1.400}, {"TYR", "CE2", "CZ", 1.378}};
    for (const auto& [residue, first, second, length] : closures) {
        const cPdbPeptide peptide = loadTripeptide(residue);
        EXPECT_NEAR(
            centreDistance(atomOf(peptide.residues[1], first), atomOf(peptide.residues[1], second)),
            length, 0.02)
            << residue << " " << first;
    }
}

TEST(ResidueTemplates, BranchOnTheSideOfTheSampleEntries) {
    const std::vector<std::tuple<std::string, std::string, std::string, std::string, std::string>>
        branches{{"ILE", "CG1", "CA", "CB", "CG2"},
                 {"LEU", "CD1", "CB", "CG", "CD2"},
                 {"THR", "OG1", "CA", "CB", "CG2"},
                 {"VAL", "CG1", "CA", "CB", "CG2"}};
    const cPdbPeptide ubiquitin = samplePeptide("1ubq");
    for (const auto& [name, first, from, centre, second] : branches) {
        const auto turn = [&](const cChainResidue& residue) {
            return torsionAngle(atomOf(residue, first), atomOf(residue, from),
                                atomOf(residue, centre), atomOf(residue, second));
        };
        const cPdbPeptide peptide = loadTripeptide(name);
        unsigned compared = 0;
        for (const cChainResidue& residue : ubiquitin.residues) {
            if (residue.residueName == name) {
                ++compared;
                EXPECT_LT(turnBetween(turn(peptide.residues[1]), turn(residue)), 15.0)
                    << name << " " << residue.residueNumber;
            }
        }
        EXPECT_GT(compared, 0U) << name;
    }
}

TEST(ResidueTemplates, ListAtomsInTheOrderOfTheSampleEntries) {
    std::set<std::string> seen;
    for (const char* code : {"1a0q", "1ubq", "2hhb"}) {
        const cPdbPeptide sample = samplePeptide(code);
        for (const cChainResidue& residue : sample.residues) {
            if (!isComplete(residue)) {
                continue;
            }
            seen.insert(residue.residueName);
            const auto names = heavyAtomNames(residueTemplate(residue.residueName));
            for (unsigned i = 0; i < names.size(); ++i) {
                EXPECT_EQ(chemicalName(residue.atoms[i]), names[i])
                    << code << " " << residue.residueName << residue.residueNumber;
            }
        }
    }
    EXPECT_EQ(seen.size(), 20U);
}

TEST(StandardAreaTable, IsWhatTheProgramWrites) {
    for (const auto& [form, table] : {std::pair{eAsaForm::classic, "ala-x-ala.asa"},
                                      std::pair{eAsaForm::complete, "ala-x-ala-complete.asa"}}) {
        std::ostringstream written;
        EXPECT_EQ(writeStandardAreas(written, shippedTables().radii, form), "");
        EXPECT_EQ(written.str(), sourceText(std::string("data/") + table));
    }
}

// Slicing leaves out the rim of a sphere that no plane cuts; the complete form leaves out nothing.
TEST(StandardAreaTable, CompleteAreasAreALittleLarger) {
    const auto read = [](const std::string& table) {
        std::istringstream in(sourceText("data/" + table));
        std::map<std::string, sAsa> areas;
        EXPECT_EQ(getStandardAsa(in, areas), 0);
        return areas;
    };
    const std::map<std::string, sAsa> classic = read("ala-x-ala.asa");
    const std::map<std::string, sAsa> complete = read("ala-x-ala-complete.asa");
    ASSERT_EQ(complete.size(), 20U);
    for (const auto& [name, areas] : complete) {
        const double ratio = areas.total / classic.at(name).total;
        EXPECT_GT(ratio, 1.0) << name;
        EXPECT_LT(ratio, 1.006) << name;
    }
}

TEST(StandardAreaTable, IsRefusedWithoutARadius) {
    std::map<std::string, double> radii = shippedTables().radii;
    radii.erase("HIS_CE1");
    std::ostringstream written;
    EXPECT_EQ(writeStandardAreas(written, radii, eAsaForm::classic), "HIS_CE1");
}

TEST(ContactRules, AreWhatTheProgramWrites) {
    std::ostringstream written;
    writeContactRules(written);
    EXPECT_EQ(written.str(), sourceText("data/aa_contacts.txt"));
}

TEST(ContactRules, StandInOneOrientationWithoutDuplicates) {
    std::set<std::tuple<std::string, std::string, std::string, std::string, int>> seen;
    for (const sRuleRow& row : ruleRows()) {
        const bool isNew =
            seen.emplace(row.residue1, row.atom1, row.residue2, row.atom2, row.type).second;
        const bool isSelf = row.residue1 == row.residue2 && row.atom1 == row.atom2;
        const bool isMirrorNew =
            isSelf ||
            seen.emplace(row.residue2, row.atom2, row.residue1, row.atom1, row.type).second;
        EXPECT_TRUE(isNew && isMirrorNew)
            << row.residue1 << row.atom1 << " " << row.residue2 << row.atom2 << " " << row.type;
    }
    EXPECT_EQ(seen.size(), 2U * ruleRows().size() - 57U) << "57 rules join an atom to its like";
}

TEST(ContactRules, FitTheAtomPositionsOfTheSampleEntries) {
    const contactMap map = ruleMap();
    std::map<std::string, std::map<unsigned, std::string>> namedAtoms;
    std::map<std::string, unsigned> ends;
    for (const auto& [key, rules] : map) {
        for (const sResidueAtomContact& rule : rules) {
            EXPECT_EQ(key, rule.residueName1 + "_" + rule.residueName2);
            if (rule.atomName1 == "NXT") {
                EXPECT_EQ(rule.atomIndex1, 0U) << rule.residueName1;
                continue;
            }
            if (rule.atomName1 == "OXT") {
                ends[rule.residueName1] = rule.atomIndex1;
                continue;
            }
            const auto entry =
                namedAtoms[rule.residueName1].emplace(rule.atomIndex1, rule.atomName1).first;
            EXPECT_EQ(entry->second, rule.atomName1) << rule.residueName1;
        }
    }
    ASSERT_EQ(namedAtoms.size(), 20U);
    for (const sResidueTemplate& residue : residueTemplates()) {
        EXPECT_EQ(ends.at(residue.name), heavyAtomNames(residue).size()) << residue.name;
    }
    unsigned compared = 0;
    for (const char* code : {"1a0q", "1ubq", "2hhb"}) {
        const cPdbPeptide sample = samplePeptide(code);
        for (const cChainResidue& residue : sample.residues) {
            if (!isComplete(residue)) {
                continue;
            }
            for (const auto& [index, name] : namedAtoms.at(residue.residueName)) {
                ASSERT_LT(index, residue.atomCount);
                const std::string& found = residue.atoms[index].atomName;
                EXPECT_TRUE(found == name || (found == "NXT" && name == "N"))
                    << code << " " << residue.residueName << residue.residueNumber << " " << index;
                ++compared;
            }
        }
    }
    EXPECT_GT(compared, 3000U);
}

TEST(ContactRules, HaveOneDistanceForEachKind) {
    const std::map<int, std::string> distances{{1, "4.50"}, {2, "3.50"}, {3, "4.00"}};
    std::map<int, unsigned> counts;
    for (const sRuleRow& row : ruleRows()) {
        EXPECT_EQ(row.distance, distances.at(row.type));
        ++counts[row.type];
    }
    // 52 apolar atoms; 31 donors and 31 acceptors, 5 of them both; 6 cations and 4 anions. Besides,
    // each residue has a donor and cation where a chain begins and an acceptor and anion where it
    // ends.
    EXPECT_EQ(counts[1], 52U * 53U / 2U);
    EXPECT_EQ(counts[2], 51U * 51U - 10U);
    EXPECT_EQ(counts[3], 26U * 24U);
}

TEST(ContactRules, JoinCarbonsWithoutHeteroatomsAsHydrophobic) {
    EXPECT_EQ(ruleTypes("ALA", "CB", "LEU", "CD1"), std::set<int>{1});
    EXPECT_EQ(ruleTypes("MET", "SD", "PHE", "CZ"), std::set<int>{1});
    EXPECT_EQ(ruleTypes("LYS", "CD", "TRP", "CH2"), std::set<int>{1});
    EXPECT_EQ(ruleTypes("VAL", "CG1", "VAL", "CG1"), std::set<int>{1});
    EXPECT_EQ(ruleTypes("SER", "CB", "LEU", "CD1"), std::set<int>{});
    EXPECT_EQ(ruleTypes("LYS", "CE", "LEU", "CD1"), std::set<int>{});
    EXPECT_EQ(ruleTypes("TRP", "CE2", "LEU", "CD1"), std::set<int>{});
    EXPECT_EQ(ruleTypes("PRO", "CD", "LEU", "CD1"), std::set<int>{});
    EXPECT_EQ(ruleTypes("CYS", "SG", "CYS", "SG"), std::set<int>{});
    EXPECT_EQ(ruleTypes("ALA", "CA", "ALA", "CA"), std::set<int>{});
}

TEST(ContactRules, JoinDonorsToAcceptorsAsPolar) {
    EXPECT_EQ(ruleTypes("ALA", "N", "GLY", "O"), std::set<int>{2});
    EXPECT_EQ(ruleTypes("GLY", "N", "ALA", "O"), std::set<int>{2});
    EXPECT_EQ(ruleTypes("ASN", "ND2", "ASN", "OD1"), std::set<int>{2});
    EXPECT_EQ(ruleTypes("SER", "OG", "SER", "OG"), std::set<int>{2});
    EXPECT_EQ(ruleTypes("HIS", "ND1", "HIS", "NE2"), std::set<int>{2});
    EXPECT_EQ(ruleTypes("ASP", "OD1", "GLU", "OE1"), std::set<int>{}) << "two acceptors";
    EXPECT_EQ(ruleTypes("LYS", "NZ", "ARG", "NH1"), std::set<int>{}) << "two donors";
    EXPECT_EQ(ruleTypes("PRO", "N", "ALA", "O"), std::set<int>{}) << "no hydrogen";
}

TEST(ContactRules, JoinOppositeChargesAsPolarAndIonic) {
    for (const auto& [residue, atom] :
         std::vector<std::pair<std::string, std::string>>{{"ARG", "NE"},
                                                          {"ARG", "NH1"},
                                                          {"ARG", "NH2"},
                                                          {"LYS", "NZ"},
                                                          {"HIS", "ND1"},
                                                          {"HIS", "NE2"}}) {
        for (const char* oxygen : {"OD1", "OD2"}) {
            EXPECT_EQ(ruleTypes(residue, atom, "ASP", oxygen), (std::set<int>{2, 3})) << residue;
        }
        for (const char* oxygen : {"OE1", "OE2"}) {
            EXPECT_EQ(ruleTypes(residue, atom, "GLU", oxygen), (std::set<int>{2, 3})) << residue;
        }
    }
    EXPECT_EQ(ruleTypes("LYS", "N", "ASP", "OD1"), std::set<int>{2}) << "main chain";
    EXPECT_EQ(ruleTypes("LYS", "NZ", "ASP", "O"), std::set<int>{2}) << "main chain";
}

// Bridges of deoxyhaemoglobin (Perutz, Nature 228:726, 1970; Fermi et al., J Mol Biol 175:159,
// 1984).
TEST(ContactRules, FindTheKnownBridgesOfDeoxyhaemoglobin) {
    const cPdbPeptide haemoglobin = samplePeptide("2hhb");
    const contactMap map = ruleMap();
    const auto typesBetween = [&](const std::string& chain1, const std::string& number1,
                                  const std::string& chain2, const std::string& number2) {
        std::set<eContactType> types;
        doTheyFormContact(residueOf(haemoglobin, chain1, number1),
                          residueOf(haemoglobin, chain2, number2), map, types);
        return types;
    };
    // ARG 141 of one alpha chain and ASP 126 of the other, NH1 - OD2 at 2.7 Å.
    EXPECT_EQ(typesBetween("A", "141", "C", "126"), (std::set<eContactType>{polar, ionic}));
    EXPECT_EQ(typesBetween("C", "126", "A", "141"), (std::set<eContactType>{polar, ionic}));
    // HIS 146 and ASP 94 of a beta chain.
    EXPECT_EQ(typesBetween("B", "146", "B", "94"), (std::set<eContactType>{polar, ionic}));
    // TYR 42 alpha and ASP 99 beta across the sliding contact, OH - OD1 at 2.5 Å; CB of the one
    // also lies against the ring of the other.
    EXPECT_EQ(typesBetween("A", "42", "D", "99"), (std::set<eContactType>{hydrophobic, polar}));
    // TRP 37 beta packs on TYR 140 alpha.
    EXPECT_EQ(typesBetween("D", "37", "A", "140").count(hydrophobic), 1U);
    // LYS 40 alpha and the terminal carboxylate of a beta chain, NZ - OXT at 2.5 Å.
    EXPECT_EQ(typesBetween("A", "40", "D", "146"), (std::set<eContactType>{polar, ionic}));
}

TEST(ContactRules, JoinChargedEndsOfChains) {
    for (const char* residue : {"ALA", "PRO", "GLY", "ASP"}) {
        EXPECT_EQ(ruleTypes(residue, "NXT", "ASP", "OD1"), (std::set<int>{2, 3})) << residue;
        EXPECT_EQ(ruleTypes(residue, "NXT", "TRP", "OXT"), (std::set<int>{2, 3})) << residue;
        EXPECT_EQ(ruleTypes(residue, "OXT", "LYS", "NZ"), (std::set<int>{2, 3})) << residue;
        EXPECT_EQ(ruleTypes(residue, "NXT", "VAL", "O"), std::set<int>{2}) << residue;
        EXPECT_EQ(ruleTypes(residue, "OXT", "VAL", "N"), std::set<int>{2}) << residue;
        EXPECT_EQ(ruleTypes(residue, "OXT", "VAL", "OXT"), std::set<int>{}) << residue;
        EXPECT_EQ(ruleTypes(residue, "NXT", "LYS", "NZ"), std::set<int>{}) << residue;
    }
}

TEST(ContactRules, FindSevenIonicPairsBetweenTheChainsOfDeoxyhaemoglobin) {
    cPdbPeptide haemoglobin = samplePeptide("2hhb");
    haemoglobin.resolveHovikKRBContacts(1.125, 6.0, ruleMap());
    std::set<std::string> pairs;
    for (const cResidueContact& contact : haemoglobin.contacts) {
        if (contact.contactTypes.contains(ionic) && contact.chain1 < contact.chain2) {
            pairs.insert(contact.chain1 + contact.residueNumber1 + ' ' + contact.chain2 +
                         contact.residueNumber2);
        }
    }
    EXPECT_EQ(pairs, (std::set<std::string>{"A40 D146", "A92 D43", "A126 C141", "A127 C141",
                                            "A141 C126", "A141 C127", "B146 C40"}));
}

// The first nitrogen of a chain goes by another name, and by rules of its own: it has a charge.
TEST(ContactRules, KnowTheFirstNitrogenOfAChain) {
    const std::string oxygen =
        "ATOM      1  N   ALA A   1      20.000   0.000   0.000  1.00  0.00\n"
        "ATOM      2  CA  ALA A   1      21.000   0.000   0.000  1.00  0.00\n"
        "ATOM      3  C   ALA A   1      22.000   0.000   0.000  1.00  0.00\n"
        "ATOM      4  O   ALA A   1       2.900   0.000   0.000  1.00  0.00\n";
    const std::string nitrogens =
        "ATOM      5  N   GLY B   1       0.000   0.000   0.000  1.00  0.00\n"
        "ATOM      6  N   GLY B   2       0.000   0.000   0.000  1.00  0.00\n";
    const cPdbPeptide peptide = structureOf(oxygen + nitrogens, shippedTables().radii);
    ASSERT_EQ(peptide.residues.size(), 3U);
    std::set<eContactType> types;
    EXPECT_TRUE(doTheyFormContact(peptide.residues[1], peptide.residues[0], ruleMap(), types));
    EXPECT_EQ(types, std::set<eContactType>{polar});
    types.clear();
    EXPECT_TRUE(doTheyFormContact(peptide.residues[2], peptide.residues[0], ruleMap(), types));
    EXPECT_EQ(types, std::set<eContactType>{polar});
}

} // namespace kelmo

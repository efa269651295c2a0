// The residue statistics of depth and protrusion: one set of tests, run for either quantity.

#include "model/chain_residue.h"
#include "tests/geometry/atom_clouds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

/// Where one quantity and its statistics live.
struct sQuantity {
    const char* name;
    double cResidueAtom::*value;
    void (cChainResidue::*setStatistics)();
    void (cChainResidue::*setDeviations)();
    double cChainResidue::*maximum;
    double cChainResidue::*minimum;
    double cChainResidue::*average;
    double cChainResidue::*deviation;
    double cChainResidue::*sideChainAverage;
    double cChainResidue::*sideChainDeviation;
};

void PrintTo(const sQuantity& quantity, std::ostream* out) {
    *out << quantity.name;
}

/// Six statistics in the order maximum, minimum, average, deviation, side-chain average and
/// deviation.
using tStatistics = std::vector<double>;

class cResidueStatistics : public testing::TestWithParam<sQuantity> {
  protected:
    /// Atoms of one residue by name and value.
    using tNamedValues = std::vector<std::pair<std::string, double>>;

    cChainResidue residueOf(const tNamedValues& namedValues,
                            eResidueType type = eResidueType::aminoAcid) {
        atoms.clear();
        for (const auto& [name, value] : namedValues) {
            atoms.emplace_back(name, "1", 0.0, 0.0, 0.0, 1.5);
            atoms.back().*GetParam().value = value;
        }
        return {"XYZ", "1", atoms.data(), static_cast<unsigned>(atoms.size()), type};
    }

    tStatistics statisticsOf(const cChainResidue& residue) const {
        const sQuantity& quantity = GetParam();
        return {residue.*quantity.maximum,          residue.*quantity.minimum,
                residue.*quantity.average,          residue.*quantity.deviation,
                residue.*quantity.sideChainAverage, residue.*quantity.sideChainDeviation};
    }

    tStatistics computed(const tNamedValues& namedValues,
                         eResidueType type = eResidueType::aminoAcid) {
        cChainResidue residue = residueOf(namedValues, type);
        (residue.*GetParam().setStatistics)();
        return statisticsOf(residue);
    }

    std::vector<cResidueAtom> atoms;
};

TEST_P(cResidueStatistics, FollowThePopulationFormulas) {
    // Mean (1+2+3+4+6+8)/6 = 4; squares 9+4+1+0+4+16 = 34. Side chain 6 and 8.
    EXPECT_EQ(computed({{"N", 1}, {"CA", 2}, {"C", 3}, {"O", 4}, {"CB", 6}, {"CG", 8}}),
              (tStatistics{8.0, 1.0, 4.0, std::sqrt(34.0 / 6.0), 7.0, 1.0}));
    EXPECT_EQ(computed({{"N", -1}, {"CA", -2}, {"C", 0}, {"O", -5}, {"CB", -7}}),
              (tStatistics{0.0, -7.0, -3.0, std::sqrt(34.0 / 5.0), -7.0, 0.0}));
}

TEST_P(cResidueStatistics, BackboneOfANucleotideIsThreeAtoms) {
    const tNamedValues values{{"P", 1}, {"O1P", 1}, {"O2P", 1}, {"O5*", 5}, {"C5*", 7}};
    EXPECT_EQ(computed(values, eResidueType::nucleicAcid),
              (tStatistics{7.0, 1.0, 3.0, std::sqrt(32.0 / 5.0), 6.0, 1.0}));
    EXPECT_EQ(computed(values, eResidueType::aminoAcid),
              (tStatistics{7.0, 1.0, 3.0, std::sqrt(32.0 / 5.0), 7.0, 0.0}));
    EXPECT_EQ(computed(values, eResidueType::other),
              (tStatistics{7.0, 1.0, 3.0, std::sqrt(32.0 / 5.0), 7.0, 0.0}));
}

TEST_P(cResidueStatistics, BackboneIsCountedByPositionNotByName) {
    EXPECT_EQ(
        computed({{"CB", 8}, {"CG", 8}, {"CD", 8}, {"CE", 8}, {"N", 2}, {"CA", 4}}),
        (tStatistics{8.0, 2.0, 38.0 / 6.0,
                     std::sqrt((4 * (8 - 38.0 / 6) * (8 - 38.0 / 6) +
                                (2 - 38.0 / 6) * (2 - 38.0 / 6) + (4 - 38.0 / 6) * (4 - 38.0 / 6)) /
                               6.0),
                     3.0, 1.0}));
}

TEST_P(cResidueStatistics, FinalTerminalOxygenBelongsToNoSideChain) {
    // Whole residue: mean (4*1 + 5 + 7 + 9)/7; side chain 5 and 7 divided by 7 - 4 - 1 = 2.
    const tStatistics found =
        computed({{"N", 1}, {"CA", 1}, {"C", 1}, {"O", 1}, {"CB", 5}, {"CG", 7}, {"OXT", 9}});
    EXPECT_EQ(found[0], 9.0) << "it counts among all atoms";
    EXPECT_EQ(found[2], 25.0 / 7.0);
    EXPECT_EQ(found[4], 6.0);
    EXPECT_EQ(found[5], 1.0);
}

TEST_P(cResidueStatistics, FinalTerminalOxygenAloneIsNoSideChain) {
    const tStatistics found = computed({{"N", 1}, {"CA", 2}, {"C", 3}, {"O", 4}, {"OXT", 10}});
    EXPECT_EQ(found, (tStatistics{10.0, 1.0, 4.0, std::sqrt(50.0 / 5.0), 0.0, 0.0}));
}

// Elsewhere than last it is left out of the sum, but the divisor still counts it.
TEST_P(cResidueStatistics, TerminalOxygenBeforeTheLastAtomStillCountsInTheDivisor) {
    const tStatistics found =
        computed({{"N", 1}, {"CA", 1}, {"C", 1}, {"O", 1}, {"OXT", 9}, {"CB", 6}});
    EXPECT_EQ(found[4], 3.0) << "6 over two atoms";
    EXPECT_EQ(found[5], std::sqrt(9.0 / 2.0)) << "6 - 3 squared over two atoms";
    const tStatistics twoOfThem =
        computed({{"N", 1}, {"CA", 1}, {"C", 1}, {"O", 1}, {"OXT", 9}, {"CB", 6}, {"OXT", 9}});
    EXPECT_EQ(twoOfThem[4], 3.0) << "only the last lessens the divisor";
    EXPECT_EQ(twoOfThem[5], std::sqrt(9.0 / 2.0));
}

TEST_P(cResidueStatistics, TerminalOxygenWithinTheBackboneIsLikeAnyAtom) {
    const tStatistics found = computed({{"OXT", 2}, {"CA", 2}, {"C", 2}, {"O", 2}, {"CB", 6}});
    EXPECT_EQ(found[4], 6.0);
    EXPECT_EQ(found[2], 14.0 / 5.0);
}

TEST_P(cResidueStatistics, BackboneAloneHasNoSideChain) {
    EXPECT_EQ(computed({{"N", 1}, {"CA", 3}, {"C", 1}, {"O", 3}}),
              (tStatistics{3.0, 1.0, 2.0, 1.0, 0.0, 0.0}));
    EXPECT_EQ(computed({{"P", 1}, {"O1P", 3}, {"O2P", 2}}, eResidueType::nucleicAcid),
              (tStatistics{3.0, 1.0, 2.0, std::sqrt(2.0 / 3.0), 0.0, 0.0}));
}

// The number of side-chain atoms is unsigned and wraps around; nothing is summed, so the quotient
// is 0.
TEST_P(cResidueStatistics, ResidueShorterThanItsBackboneHasNoSideChain) {
    EXPECT_EQ(computed({{"CA", 5}}), (tStatistics{5.0, 5.0, 5.0, 0.0, 0.0, 0.0}));
    EXPECT_EQ(computed({{"N", 1}, {"CA", 3}}), (tStatistics{3.0, 1.0, 2.0, 1.0, 0.0, 0.0}));
    EXPECT_EQ(computed({{"N", 1}, {"CA", 3}}, eResidueType::nucleicAcid),
              (tStatistics{3.0, 1.0, 2.0, 1.0, 0.0, 0.0}));
    EXPECT_EQ(computed({{"OXT", 5}}), (tStatistics{5.0, 5.0, 5.0, 0.0, 0.0, 0.0}));
    EXPECT_EQ(computed({{"N", 1}, {"CA", 3}, {"OXT", 2}}),
              (tStatistics{3.0, 1.0, 2.0, std::sqrt(2.0 / 3.0), 0.0, 0.0}));
    EXPECT_EQ(computed({{"N", 1}, {"CA", 3}, {"C", 1}, {"OXT", 3}}),
              (tStatistics{3.0, 1.0, 2.0, 1.0, 0.0, 0.0}))
        << "four atoms less one";
}

TEST_P(cResidueStatistics, ResidueWithoutAtomsKeepsItsValues) {
    cChainResidue residue;
    (residue.*GetParam().setStatistics)();
    EXPECT_EQ(statisticsOf(residue), tStatistics(6, -1.0));
    (residue.*GetParam().setDeviations)();
    EXPECT_EQ(statisticsOf(residue), tStatistics(6, -1.0));
}

TEST_P(cResidueStatistics, AreComputedAfreshEveryTime) {
    cChainResidue residue =
        residueOf({{"N", 1}, {"CA", 2}, {"C", 3}, {"O", 4}, {"CB", 6}, {"CG", 8}});
    (residue.*GetParam().setStatistics)();
    const tStatistics first = statisticsOf(residue);
    (residue.*GetParam().setStatistics)();
    EXPECT_EQ(statisticsOf(residue), first);
}

// Deviations alone are taken from the means that stand in the residue, right or wrong.
TEST_P(cResidueStatistics, DeviationsUseTheStoredMeans) {
    const sQuantity& quantity = GetParam();
    cChainResidue residue =
        residueOf({{"N", 1}, {"CA", 1}, {"C", 1}, {"O", 1}, {"CB", 5}, {"CG", 9}});
    residue.*quantity.average = 1.0;
    residue.*quantity.sideChainAverage = 5.0;
    (residue.*quantity.setDeviations)();
    EXPECT_EQ(residue.*quantity.deviation, std::sqrt(80.0 / 6.0));
    EXPECT_EQ(residue.*quantity.sideChainDeviation, std::sqrt(16.0 / 2.0));
    EXPECT_EQ(residue.*quantity.average, 1.0);
    EXPECT_EQ(residue.*quantity.maximum, -1.0) << "nothing else is written";
}

TEST_P(cResidueStatistics, DeviationsWithoutASideChainLeaveItsDeviation) {
    const sQuantity& quantity = GetParam();
    cChainResidue residue = residueOf({{"N", 1}, {"CA", 1}, {"C", 1}, {"O", 1}});
    residue.*quantity.average = 1.0;
    residue.*quantity.sideChainDeviation = 42.0;
    (residue.*quantity.setDeviations)();
    EXPECT_EQ(residue.*quantity.deviation, 0.0);
    EXPECT_EQ(residue.*quantity.sideChainDeviation, 42.0);
}

TEST_P(cResidueStatistics, AnInfiniteValueMakesMeansInfiniteAndDeviationsUndefined) {
    const double infinity = std::numeric_limits<double>::infinity();
    const tStatistics found =
        computed({{"N", 1}, {"CA", 2}, {"C", 3}, {"O", infinity}, {"CB", 4}, {"CG", 6}});
    EXPECT_EQ(found[0], infinity);
    EXPECT_EQ(found[1], 1.0);
    EXPECT_EQ(found[2], infinity);
    EXPECT_TRUE(std::isnan(found[3]));
    EXPECT_EQ(found[4], 5.0) << "the side chain is finite";
    EXPECT_EQ(found[5], 1.0);
    const tStatistics whole = computed(
        {{"N", infinity}, {"CA", infinity}, {"C", infinity}, {"O", infinity}, {"CB", infinity}});
    EXPECT_EQ(whole[1], infinity);
    EXPECT_EQ(whole[4], infinity);
    EXPECT_TRUE(std::isnan(whole[5]));
}

INSTANTIATE_TEST_SUITE_P(Depth, cResidueStatistics,
                         testing::Values(sQuantity{
                             "depthIndex", &cResidueAtom::depthIndex, &cChainResidue::setDepthIndex,
                             &cChainResidue::setDepthIndexDeviation, &cChainResidue::maxDepthIndex,
                             &cChainResidue::minDepthIndex, &cChainResidue::averageDepthIndex,
                             &cChainResidue::depthIndexDeviation,
                             &cChainResidue::averageSideChainDepthIndex,
                             &cChainResidue::sideChainDepthIndexDeviation}));

INSTANTIATE_TEST_SUITE_P(
    Protrusion, cResidueStatistics,
    testing::Values(sQuantity{
        "protrusionIndex", &cResidueAtom::protrusionIndex, &cChainResidue::setProtrusionIndex,
        &cChainResidue::setProtrusionIndexDeviation, &cChainResidue::maxProtrusionIndex,
        &cChainResidue::minProtrusionIndex, &cChainResidue::averageProtrusionIndex,
        &cChainResidue::protrusionIndexDeviation, &cChainResidue::averageSideChainProtrusionIndex,
        &cChainResidue::sideChainProtrusionIndexDeviation}));

} // namespace

} // namespace kelmo

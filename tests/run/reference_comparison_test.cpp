// Whole runs of both workers against the slow reference implementation, byte for byte.
#include "tests/run/reference_runs.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/random_structure.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

namespace kelmo {

using enum eInteractionCriterion;

namespace {

constexpr unsigned kevSeedCount = 50;
constexpr unsigned vorSeedCount = 30;

/// Settings that differ from seed to seed; every fourth has everything on and the usual parameters.
reference::sKevSettings randomKevSettings(unsigned seed) {
    reference::sKevSettings settings;
    settings.radii = reference::sampleRadii();
    settings.standardAreas = reference::sampleStandardAreas();
    settings.hydrophobicity = reference::sampleHydrophobicity();
    settings.radiiFileName = "a&b.radii";
    settings.standardAreasFileName = "caf\xC3\xA9.asa";
    settings.hydrophobicityFileName = "\xFF.hpb";
    if (seed % 4 == 0) {
        return settings;
    }
    std::mt19937 generator(seed);
    const auto chance = [&] { return generator() % 4 != 0; };
    settings.calculateAsa = chance();
    settings.writeAsa = chance();
    settings.calculateRelativeAsa = chance();
    settings.calculateDepth = chance();
    settings.calculateProtrusion = chance();
    settings.calculateHydrophobicity = chance();
    constexpr double probes[] = {1.4, 1.4, 0.0, 0.5, 1.0, 2.0, 3.5};
    constexpr double slices[] = {0.25, 0.25, 0.1, 0.5, 1.0, 3.0};
    constexpr double spheres[] = {10.0, 10.0, 3.0, 6.5, 1000.0};
    settings.probeRadius = probes[generator() % std::size(probes)];
    settings.zSlice = slices[generator() % std::size(slices)];
    settings.protrusionRadius = spheres[generator() % std::size(spheres)];
    settings.atomVolume = generator() % 2 == 0 ? 20.1 : 300.0;
    settings.boundAnalysis = generator() % 4 != 0;
    return settings;
}

constexpr reference::eCriterion criteria[] = {
    reference::eCriterion::maximumDistance, reference::eCriterion::prism,
    reference::eCriterion::dovreth, reference::eCriterion::vorda};

class KevSampleComparison : public testing::TestWithParam<std::string> {};
class VorSampleComparison : public testing::TestWithParam<std::string> {};
class KevRandomComparison : public testing::TestWithParam<unsigned> {};
class VorRandomComparison : public testing::TestWithParam<unsigned> {};

} // namespace

TEST_P(KevSampleComparison, ReportsAreThoseOfTheReference) {
    const std::string file = samplePath(GetParam());
    const reference::sKevSettings settings = shippedKevSettings();
    const tReports expected = reference::kevReports(sampleText(GetParam()), settings);
    ASSERT_EQ(expected.size(), 4U);
    expectSameReports(engineReports(file, settings), expected);
}

TEST_P(VorSampleComparison, ReportsAreThoseOfTheReference) {
    const std::string file = samplePath(GetParam());
    reference::sVorSettings settings;
    settings.radii = shippedTables().radii;
    settings.radiiFileName = "protor.radii";
    reference::readContactRules(sourceText("data/aa_contacts.txt"), settings.rules);
    for (const reference::eCriterion criterion : criteria) {
        settings.criterion = criterion;
        settings.threshold = criterion == reference::eCriterion::prism ? 0.5 : 5.0;
        const tReports expected = reference::vorReports(sampleText(GetParam()), settings);
        ASSERT_EQ(expected.size(), 6U);
        SCOPED_TRACE(static_cast<int>(criterion));
        expectSameReports(engineReports(file, settings, shippedTables().rules), expected);
    }
}

TEST_P(KevRandomComparison, ReportsAreThoseOfTheReference) {
    const unsigned seed = GetParam();
    const cScratchDirectory input;
    const std::string text =
        reference::randomStructureText(seed, reference::randomStructureOptions(seed));
    writeContent(input.file("random.pdb"), text);
    const reference::sKevSettings settings = randomKevSettings(seed);
    const tReports expected = reference::kevReports(text, settings);
    ASSERT_EQ(expected.size(), settings.boundAnalysis ? 4U : 2U);
    expectSameReports(engineReports(input.file("random.pdb"), settings), expected);
}

TEST_P(VorRandomComparison, ReportsAreThoseOfTheReference) {
    const unsigned seed = GetParam();
    const cScratchDirectory input;
    const std::string text =
        reference::randomStructureText(seed, reference::randomStructureOptions(seed));
    writeContent(input.file("random.pdb"), text);
    const std::string ruleText = reference::randomContactRuleText(seed, 300);
    reference::sVorSettings settings;
    settings.radii = reference::sampleRadii();
    settings.radiiFileName = "any.radii";
    reference::readContactRules(ruleText, settings.rules);
    contactMap rules;
    std::istringstream in(ruleText);
    createStringContactMap(in, rules);
    constexpr double thresholds[] = {0.0, 0.5, 1.0, 3.0, 5.0, 12.0};
    for (const reference::eCriterion criterion : criteria) {
        settings.criterion = criterion;
        for (const double threshold : {thresholds[seed % std::size(thresholds)], 4.0}) {
            settings.threshold = threshold;
            settings.probeRadius = seed % 3 == 0 ? 1.0 : 1.4;
            const tReports expected = reference::vorReports(text, settings);
            ASSERT_EQ(expected.size(), 6U);
            SCOPED_TRACE("criterion " + std::to_string(static_cast<int>(criterion)) +
                         ", threshold " + std::to_string(threshold));
            expectSameReports(engineReports(input.file("random.pdb"), settings, rules), expected);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, KevSampleComparison, testing::ValuesIn(sampleCodes()));
INSTANTIATE_TEST_SUITE_P(Samples, VorSampleComparison, testing::ValuesIn(sampleCodes()));
INSTANTIATE_TEST_SUITE_P(Random, KevRandomComparison, testing::Range(1U, kevSeedCount + 1));
INSTANTIATE_TEST_SUITE_P(Random, VorRandomComparison, testing::Range(1U, vorSeedCount + 1));

} // namespace kelmo

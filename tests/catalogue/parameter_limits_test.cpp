// Parameters at the ends of what the window and kelmo-batch let through, and radii at the ends of
// what a table may hold, against the slow reference.
#include "tests/run/reference_runs.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/random_structure.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

namespace kelmo {

using enum eInteractionCriterion;

namespace {

constexpr double finestSlice = 0.01; // kelmo-batch; the window's is 0.1
constexpr double thickestSlice = 1.0;
constexpr double smallestProbe = 0.0;
constexpr double largestProbe = 2.0;

/// A small random structure, its number deciding over its shape.
class ParameterLimits : public testing::TestWithParam<unsigned> {
  protected:
    ParameterLimits() : text(textOf(GetParam())) { writeContent(file, text); }

    static std::string textOf(unsigned seed) {
        reference::sRandomStructureOptions options = reference::randomStructureOptions(seed);
        options.chainCount = 2;
        options.residuesPerChain = 6;
        return reference::randomStructureText(seed, options);
    }

    void expectReferenceReports(const reference::sKevSettings& settings) const {
        const tReports expected = reference::kevReports(text, settings);
        ASSERT_EQ(expected.size(), 4U);
        expectSameReports(engineReports(file, settings), expected);
    }
    void expectReferenceReports(reference::sVorSettings settings) const {
        const std::string ruleText = reference::randomContactRuleText(GetParam(), 200);
        settings.rules.clear();
        reference::readContactRules(ruleText, settings.rules);
        contactMap rules;
        std::istringstream in(ruleText);
        createStringContactMap(in, rules);
        const tReports expected = reference::vorReports(text, settings);
        ASSERT_EQ(expected.size(), 6U);
        expectSameReports(engineReports(file, settings, rules), expected);
    }

    const cScratchDirectory scratch;
    const std::string file = scratch.file("random.pdb");
    const std::string text;
};

/// The sample radii, all replaced by the given ones in turn.
std::map<std::string, double> radiiOf(const std::vector<double>& values) {
    std::map<std::string, double> radii = reference::sampleRadii();
    std::size_t next = 0;
    for (auto& [name, radius] : radii) {
        radius = values[next++ % values.size()];
    }
    return radii;
}

reference::sKevSettings kevSettings() {
    reference::sKevSettings settings = shippedKevSettings();
    settings.radii = reference::sampleRadii();
    return settings;
}

std::string described(double value) {
    return std::to_string(value) + ' ';
}

} // namespace

TEST_P(ParameterLimits, ProbesAndSlices) {
    reference::sKevSettings settings = kevSettings();
    for (const double probeRadius : {smallestProbe, largestProbe}) {
        for (const double zSlice : {finestSlice, 0.1, thickestSlice}) {
            SCOPED_TRACE(described(probeRadius) + described(zSlice));
            settings.probeRadius = probeRadius;
            settings.zSlice = zSlice;
            expectReferenceReports(settings);
        }
    }
}

TEST_P(ParameterLimits, ProtrusionSpheres) {
    reference::sKevSettings settings = kevSettings();
    for (const double radius : {5.0, 15.0}) {
        for (const double volume : {15.0, 25.0}) {
            SCOPED_TRACE(described(radius) + described(volume));
            settings.protrusionRadius = radius;
            settings.atomVolume = volume;
            expectReferenceReports(settings);
        }
    }
}

TEST_P(ParameterLimits, RadiiOfATable) {
    reference::sKevSettings settings = kevSettings();
    // Nothing at all, points, spheres larger than the search for neighbours assumes, and negative
    // ones, which with the probe come to nothing or to less.
    for (const std::vector<double>& radii :
         {std::vector{0.0}, {10.0}, {0.0, 10.0, 1.7}, {-1.4, 1.7}, {-5.0, -0.5, 1.7}}) {
        for (const auto& [probeRadius, zSlice] :
             {std::tuple{smallestProbe, 0.25}, {1.4, thickestSlice}, {largestProbe, 0.1}}) {
            SCOPED_TRACE(described(radii.front()) + described(probeRadius));
            settings.radii = radiiOf(radii);
            settings.probeRadius = probeRadius;
            settings.zSlice = zSlice;
            expectReferenceReports(settings);
        }
    }
}

TEST_P(ParameterLimits, ThresholdsOfTheCriteria) {
    using reference::eCriterion;
    reference::sVorSettings settings;
    for (const auto& [criterion, threshold] : {std::tuple{eCriterion::maximumDistance, 0.0},
                                               {eCriterion::maximumDistance, 10.0},
                                               {eCriterion::prism, 0.0},
                                               {eCriterion::prism, 5.0},
                                               {eCriterion::dovreth, 0.05},
                                               {eCriterion::dovreth, 100.0},
                                               {eCriterion::vorda, 0.0}}) {
        settings.criterion = criterion;
        settings.threshold = threshold;
        for (const std::vector<double>& radii : {std::vector{1.7}, {0.0}, {10.0}, {-2.0, 1.7}}) {
            for (const double probeRadius : {smallestProbe, largestProbe}) {
                SCOPED_TRACE(std::to_string(static_cast<int>(criterion)) + ' ' +
                             described(threshold) + described(radii.front()) +
                             described(probeRadius));
                settings.radii = radiiOf(radii);
                settings.probeRadius = probeRadius;
                settings.zSlice = probeRadius == smallestProbe ? 0.1 : thickestSlice;
                expectReferenceReports(settings);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Random, ParameterLimits, testing::Range(1U, 6U));

} // namespace kelmo

// The difference of the two states: what every residue, chain and the structure have more when the
// chains are taken alone.
#include "analysis/columns.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace kelmo {

namespace {

/// Both states of a structure and their difference.
struct sStates {
    sStateColumns bound;
    sStateColumns unbound;
    sStateColumns difference;
};

sStates statesOf(cPdbPeptide structure, const cSettings& settings) {
    sParameterTables tables;
    tables.standardAreas = shippedTables().standards;
    tables.hydrophobicity = shippedTables().scale;
    sStates states;
    calculateAttributes(structure, eState::bound, {settings, tables}, [] {});
    states.bound = columnsOf(structure, "bound", settings);
    calculateAttributes(structure, eState::unbound, {settings, tables}, [] {});
    states.unbound = columnsOf(structure, "unbound", settings);
    states.difference = differenceOf(states.unbound, states.bound);
    return states;
}

const sColumnValues& column(const sStateColumns& columns, const std::string& name) {
    for (const sAttributeValues& attribute : columns.attributes) {
        for (const sColumnValues& values : attribute.columns) {
            if (values.column->name == name) {
                return values;
            }
        }
    }
    throw std::out_of_range(name);
}

cSettings completeForm() {
    cSettings settings(eModule::kev);
    settings.setText("asa_form", "complete");
    return settings;
}

} // namespace

TEST(Difference, IsWhatTheChainsAloneHaveMore) {
    const sStates states = statesOf(samplePeptide("2hhb"), cSettings(eModule::kev));
    EXPECT_EQ(states.difference.state, "difference");
    EXPECT_EQ(states.difference.residues.size(), 574U);
    EXPECT_EQ(states.difference.attributes.size(), 4U) << "hydrophobicity is the same in both";
    EXPECT_THROW(column(states.difference, "hydrophobicity"), std::out_of_range);
    for (const char* name : {"asa_total", "asa_polar", "rasa_side_chain", "dpx_average",
                             "dpx_minimum", "cx_maximum"}) {
        const auto& found = column(states.difference, name).ofResidues;
        const auto& alone = column(states.unbound, name).ofResidues;
        const auto& inComplex = column(states.bound, name).ofResidues;
        bool isAnyOther = false;
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_EQ(found[i], alone[i] - inComplex[i]) << name << ' ' << i;
            isAnyOther = isAnyOther || found[i] != 0.0;
        }
        EXPECT_TRUE(isAnyOther) << name;
    }
}

TEST(Difference, AddsUpToChainsAndStructure) {
    const sStates states = statesOf(samplePeptide("2hhb"), completeForm());
    for (const char* name :
         {"asa_total", "asa_backbone", "asa_side_chain", "asa_polar", "asa_non_polar"}) {
        const sColumnValues& difference = column(states.difference, name);
        ASSERT_EQ(difference.ofChains.size(), 4U);
        double aloneInAll = 0.0;
        for (std::size_t chain = 0; chain < 4; ++chain) {
            const double alone = column(states.unbound, name).ofChains[chain];
            EXPECT_NEAR(difference.ofChains[chain],
                        alone - column(states.bound, name).ofChains[chain], 1e-6);
            EXPECT_GT(difference.ofChains[chain], 10.0) << "every chain has interfaces";
            aloneInAll += alone;
        }
        EXPECT_NEAR(difference.ofStructure, aloneInAll - column(states.bound, name).ofStructure,
                    1e-6);
    }
}

TEST(Difference, NoResidueGainsAreaInTheCompleteForm) {
    const sStates states = statesOf(samplePeptide("1a0q"), completeForm());
    for (const double area : column(states.difference, "asa_total").ofResidues) {
        EXPECT_GE(area, 0.0);
    }
}

TEST(Difference, ChainThatTouchesNothingHasNone) {
    const sStates states = statesOf(samplePeptide("1ubq"), cSettings(eModule::kev));
    for (const sAttributeValues& attribute : states.difference.attributes) {
        for (const sColumnValues& values : attribute.columns) {
            for (const double value : values.ofResidues) {
                EXPECT_EQ(value, 0.0) << values.column->name;
            }
        }
    }
}

// The complex leaves residues of no known type out.
TEST(Difference, OfWhatWasNotComputedIsNoNumberAndCountsNothing) {
    std::string text = sampleText("2hhb");
    for (std::size_t at = text.find("LEU A   2"); at != std::string::npos;
         at = text.find("LEU A   2", at)) {
        text.replace(at, 3, "LIG");
    }
    const sReading reading = readPdb(text, shippedTables().radii);
    const sStates states = statesOf(reading.peptide, cSettings(eModule::kev));
    const sColumnValues& areas = column(states.difference, "asa_total");
    EXPECT_EQ(states.difference.residues[1].name, "LIG");
    EXPECT_TRUE(std::isnan(areas.ofResidues[1]));
    EXPECT_FALSE(std::isnan(areas.ofResidues[0]));
    double sum = 0.0;
    for (std::size_t i = 0; i < states.difference.chains[0].residueCount; ++i) {
        sum += i == 1 ? 0.0 : areas.ofResidues[i];
    }
    EXPECT_EQ(areas.ofChains[0], sum);
}

} // namespace kelmo

// The settings that say how a file becomes structures: what they ask of the reader.
#include "analysis/configuration.h"
#include "analysis/input_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelmo {

namespace {

sReadOptions optionsWith(const std::string& key, const std::string& value) {
    cSettings settings(eModule::kev);
    EXPECT_EQ(settings.set(key, value), "");
    return readOptionsOf(settings);
}

} // namespace

TEST(InputSettings, DefaultsTakeFilesAsTheyAre) {
    for (const eModule module : {eModule::kev, eModule::vor}) {
        const cSettings settings(module);
        EXPECT_EQ(readOptionsOf(settings), sReadOptions{});
        EXPECT_TRUE(settings.statedKeys().empty());
    }
}

TEST(InputSettings, EachAsksTheReaderForWhatItSays) {
    sReadOptions expected;
    expected.preparation.alternateLocations = eAlternateLocations::highestOccupancy;
    EXPECT_EQ(optionsWith("alternate_locations", "highest_occupancy"), expected);
    expected = {};
    expected.preparation.hydrogens = eHydrogens::drop;
    EXPECT_EQ(optionsWith("hydrogens", "drop"), expected);
    expected = {};
    expected.preparation.modifiedResidues = eModifiedResidues::asParent;
    EXPECT_EQ(optionsWith("modified_residues", "as_parent"), expected);
    expected = {};
    expected.preparation.names = eNames::understood;
    EXPECT_EQ(optionsWith("names", "understood"), expected);
    expected = {};
    expected.models = eModels::each;
    EXPECT_EQ(optionsWith("models", "each"), expected);
    expected.models = eModels::chains;
    EXPECT_EQ(optionsWith("models", "chains"), expected);
    expected = {};
    expected.assembly = "2";
    EXPECT_EQ(optionsWith("assembly", "2"), expected);
    expected = {};
    EXPECT_EQ(optionsWith("assembly", "none"), expected);
}

TEST(InputSettings, PrepareStandsForItsFourParts) {
    cSettings settings(eModule::vor);
    EXPECT_EQ(settings.set("prepare", "standard"), "");
    EXPECT_EQ(readOptionsOf(settings).preparation, standardPreparation);
    EXPECT_EQ(settings.statedKeys(), (std::vector<std::string>{"alternate_locations", "hydrogens",
                                                               "modified_residues", "names"}));
    EXPECT_EQ(settings.set("hydrogens", "keep"), "");
    sPreparation expected = standardPreparation;
    expected.hydrogens = eHydrogens::keep;
    EXPECT_EQ(readOptionsOf(settings).preparation, expected);
    EXPECT_EQ(settings.set("prepare", "as-is"), "");
    EXPECT_EQ(readOptionsOf(settings).preparation, sPreparation{});
}

TEST(InputSettings, OtherWordsAreRefused) {
    cSettings settings(eModule::kev);
    EXPECT_EQ(settings.set("prepare", "all"), "prepare must be as-is or standard, not \"all\"");
    EXPECT_EQ(settings.set("models", "last"), "models must be first, each or chains, not \"last\"");
    EXPECT_EQ(settings.set("assembly", ""), "assembly must be a word without blanks, not \"\"");
    EXPECT_EQ(settings.set("assembly", "1 2"),
              "assembly must be a word without blanks, not \"1 2\"");
    EXPECT_EQ(readOptionsOf(settings), sReadOptions{});
}

TEST(InputSettings, ConfigurationsHoldThemOnlyWhereTheyChangeAnything) {
    cSettings settings(eModule::kev);
    const std::string plain = configurationText(settings);
    EXPECT_EQ(plain.find("hydrogens"), std::string::npos);
    ASSERT_EQ(settings.set("hydrogens", "drop"), "");
    ASSERT_EQ(settings.set("assembly", "1"), "");
    EXPECT_EQ(configurationText(settings), plain + "hydrogens:\tdrop\nassembly:\t1\n");
}

} // namespace kelmo

// The options of reading as words.
#include "input/read_options.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace kelmo {

namespace {

TEST(ReadOptions, EveryChoiceIsSetAndRead) {
    std::set<std::string> keys;
    for (const sReadChoice& choice : readChoices()) {
        EXPECT_TRUE(keys.insert(choice.key).second) << choice.key;
        EXPECT_EQ(readOptionValue({}, choice.key), choice.choices.front());
        for (const std::string& value : choice.choices) {
            sReadOptions options;
            EXPECT_TRUE(setReadOption(options, choice.key, value));
            EXPECT_EQ(readOptionValue(options, choice.key), value);
            EXPECT_EQ(options == sReadOptions{}, value == choice.choices.front()) << value;
        }
    }
    EXPECT_EQ(keys.size(), 5U);
}

TEST(ReadOptions, SetWhatTheyName) {
    sReadOptions options;
    for (const auto& [key, value] :
         {std::pair{"alternate_locations", "highest_occupancy"}, std::pair{"hydrogens", "drop"},
          std::pair{"modified_residues", "as_parent"}, std::pair{"names", "understood"}}) {
        EXPECT_TRUE(setReadOption(options, key, value));
    }
    EXPECT_EQ(options.preparation, standardPreparation);
    EXPECT_TRUE(setReadOption(options, "models", "chains"));
    EXPECT_EQ(options.models, eModels::chains);
}

TEST(ReadOptions, AssemblyIsAnIdOrNone) {
    sReadOptions options;
    EXPECT_EQ(readOptionValue(options, assemblyKey), "none");
    EXPECT_TRUE(setReadOption(options, assemblyKey, "1"));
    EXPECT_EQ(options.assembly, "1");
    EXPECT_EQ(readOptionValue(options, assemblyKey), "1");
    EXPECT_TRUE(setReadOption(options, assemblyKey, "none"));
    EXPECT_EQ(options, sReadOptions{});
}

TEST(ReadOptions, UnknownOnesAreRefused) {
    sReadOptions options;
    EXPECT_FALSE(setReadOption(options, "hydrogen", "drop"));
    EXPECT_FALSE(setReadOption(options, "hydrogens", "all"));
    EXPECT_FALSE(setReadOption(options, "models", ""));
    EXPECT_EQ(options, sReadOptions{});
    EXPECT_EQ(readOptionValue(options, "hydrogen"), "");
}

TEST(ReadOptions, PreparationIsToldInShort) {
    EXPECT_EQ(preparationText({}), "as-is");
    EXPECT_EQ(preparationText(standardPreparation), "standard");
    EXPECT_EQ(preparationText({.hydrogens = eHydrogens::drop, .names = eNames::understood}),
              "hydrogens=drop, names=understood");
}

} // namespace

} // namespace kelmo

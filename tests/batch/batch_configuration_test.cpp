// Configuration files, line by line: what is read, what is refused and what the user is told.
#include "analysis/configuration.h"
#include "base/usage_error.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

namespace kelmo {

namespace fs = std::filesystem;

namespace {

class BatchConfiguration : public testing::Test {
  protected:
    cSettings read(const std::string& content, eModule module = eModule::kev) {
        cSettings settings(module);
        readConfiguration(directory.write("run.cfg", content).native(), "--config", settings);
        return settings;
    }

    /// The message for the content, the directory of the file left out; empty when it is read.
    std::string faultOf(const std::string& content, eModule module = eModule::kev) {
        try {
            read(content, module);
        } catch (const cUsageError& error) {
            std::string text = error.what();
            const std::string place = directory.path().string() + '/';
            for (auto at = text.find(place); at != std::string::npos; at = text.find(place)) {
                text.erase(at, place.size());
            }
            return text;
        }
        return {};
    }

    cScratchDirectory directory;
};

std::string valueOf(const cSettings& settings, const char* key) {
    return settings.isSet(key) ? settings.valueText(key) : "(not set)";
}

} // namespace

TEST_F(BatchConfiguration, KeyColonTabValueIsRead) {
    const cSettings configuration = read("calc_cx:\t1\nz_slice:\t0.35\n"
                                         "radii_filename:\tmy tables/a: b.radii\n");
    EXPECT_TRUE(configuration.flag("calc_cx"));
    EXPECT_EQ(configuration.number("z_slice"), 0.35);
    EXPECT_EQ(valueOf(configuration, "radii_filename"), "my tables/a: b.radii");
}

TEST_F(BatchConfiguration, AnyBlanksAfterTheColonAreAccepted) {
    const cSettings configuration = read("calc_cx:1\nz_slice: \t  0.35\nradii_filename: r \n");
    EXPECT_TRUE(configuration.flag("calc_cx"));
    EXPECT_EQ(configuration.number("z_slice"), 0.35);
    EXPECT_EQ(valueOf(configuration, "radii_filename"), "r ");
}

TEST_F(BatchConfiguration, CommentsAndEmptyLinesAreSkippedButCounted) {
    EXPECT_EQ(faultOf("# one\n\n \t\n#\ncalc_cx:\tyes\n"),
              "run.cfg:5: calc_cx must be 1 or 0, not \"yes\"");
}

TEST_F(BatchConfiguration, DosLineEndsAreAccepted) {
    const cSettings configuration = read("# comment\r\n\r\ncalc_cx:\t1\r\nhydro_file:\tx\r\n");
    EXPECT_TRUE(configuration.flag("calc_cx"));
    EXPECT_EQ(valueOf(configuration, "hydro_file"), "x");
}

TEST_F(BatchConfiguration, LastLineNeedsNoLineFeed) {
    EXPECT_FALSE(read("calc_cx:\t0").flag("calc_cx"));
}

TEST_F(BatchConfiguration, KeysThatAreNotSetTakeTheDefault) {
    const cSettings configuration = read("");
    EXPECT_FALSE(configuration.isSet("calc_cx"));
    EXPECT_TRUE(configuration.flag("calc_cx"));
    EXPECT_EQ(configuration.number("z_slice"), 0.25);
}

TEST_F(BatchConfiguration, EmptyValueOfAPathIsKept) {
    EXPECT_EQ(valueOf(read("output_dir:\t\n"), "output_dir"), "");
}

TEST_F(BatchConfiguration, UnknownKeyIsRefusedWithItsLine) {
    EXPECT_EQ(faultOf("calc_cx:\t1\ncalc_foo:\t1\n"),
              "run.cfg:2: \"calc_foo\" is no key of a kev configuration");
    EXPECT_EQ(faultOf(" calc_cx:\t1\n"),
              "run.cfg:1: \" calc_cx\" is no key of a kev configuration");
    EXPECT_EQ(faultOf("Calc_cx:\t1\n"), "run.cfg:1: \"Calc_cx\" is no key of a kev configuration");
}

TEST_F(BatchConfiguration, KeysOfTheOtherModuleAreUnknown) {
    EXPECT_EQ(faultOf("contact_criterion:\t1\n"),
              "run.cfg:1: \"contact_criterion\" is no key of a kev configuration");
    EXPECT_EQ(faultOf("analyze_bound:\t1\n", eModule::vor),
              "run.cfg:1: \"analyze_bound\" is no key of a vor configuration");
}

TEST_F(BatchConfiguration, DuplicatedKeyIsRefusedWithBothLines) {
    EXPECT_EQ(faultOf("calc_cx:\t1\n\ncalc_cx:\t1\n"),
              "run.cfg:3: calc_cx was already set at run.cfg:1");
}

TEST_F(BatchConfiguration, LineWithoutColonIsRefused) {
    EXPECT_EQ(faultOf("calc_cx 1\n"), "run.cfg:1: a key, a colon and a value are expected");
}

TEST_F(BatchConfiguration, LineWithNulCharacterIsRefused) {
    EXPECT_EQ(faultOf(std::string("output_dir:\ta\0b\n", 16)),
              "run.cfg:1: this is not a line of text");
}

TEST_F(BatchConfiguration, FlagsAreExactlyOneOrZero) {
    EXPECT_FALSE(read("calc_cx:\t0\n").flag("calc_cx"));
    for (const char* value : {"", "2", "01", "1 ", "-1", "true", "1.0", "+1"}) {
        EXPECT_EQ(faultOf(std::string("calc_cx:\t") + value + '\n'),
                  std::string("run.cfg:1: calc_cx must be 1 or 0, not \"") + value + '"');
    }
}

TEST_F(BatchConfiguration, NumbersMustBeNumbers) {
    for (const char* value : {"", "abc", "nan", "inf", "-inf", "infinity", "0.25x", "0,25", "1e999",
                              "0x1p-2", "+0.25", "0.25 ", ".", "1e"}) {
        EXPECT_EQ(faultOf(std::string("z_slice:\t") + value + '\n'),
                  std::string("run.cfg:1: z_slice must be a number from 0.01 to 1, not \"") +
                      value + '"');
    }
}

TEST_F(BatchConfiguration, ExponentsAreRead) {
    EXPECT_EQ(read("z_slice:\t2.5e-1\n").number("z_slice"), 0.25);
}

TEST_F(BatchConfiguration, RangesIncludeTheirEnds) {
    struct sRange {
        eModule module;
        const char* key;
        double minimum;
        double maximum;
        const char* tooSmall;
        const char* tooLarge;
    };
    const sRange ranges[] = {
        {eModule::kev, "z_slice", 0.01, 1.0, "0.0099", "1.0001"},
        {eModule::kev, "r_solvent", 0.0, 2.0, "-0.001", "2.001"},
        {eModule::kev, "cx_threshold", 5.0, 15.0, "4.999", "15.001"},
        {eModule::kev, "cx_volume", 15.0, 25.0, "14.999", "25.001"},
        {eModule::vor, "threshold", 0.0, 10.0, "-1", "10.001"},
        {eModule::vor, "delta_asa", 0.05, 100.0, "0.049", "100.1"},
        {eModule::vor, "z_slice", 0.01, 1.0, "0", "2"},
        {eModule::vor, "r_solvent", 0.0, 2.0, "-0", "3"},
    };
    for (const sRange& range : ranges) {
        std::ostringstream content;
        content << range.key << ":\t" << range.minimum << '\n';
        EXPECT_EQ(read(content.str(), range.module).number(range.key), range.minimum);
        content.str("");
        content << range.key << ":\t" << range.maximum << '\n';
        EXPECT_EQ(read(content.str(), range.module).number(range.key), range.maximum);
        for (const char* value : {range.tooSmall, range.tooLarge}) {
            std::ostringstream expected;
            expected << "run.cfg:1: " << range.key << " must be a number from " << range.minimum
                     << " to " << range.maximum << ", not \"" << value << '"';
            EXPECT_EQ(faultOf(std::string(range.key) + ":\t" + value + '\n', range.module),
                      expected.str());
        }
    }
}

TEST_F(BatchConfiguration, CriterionIsOneToFour) {
    for (const char* value : {"1", "2", "3", "4"}) {
        EXPECT_EQ(valueOf(read(std::string("contact_criterion:\t") + value + '\n', eModule::vor),
                          "contact_criterion"),
                  value);
    }
    for (const char* value : {"0", "5", "", "11", "-1", "PRISM"}) {
        EXPECT_EQ(faultOf(std::string("contact_criterion:\t") + value + '\n', eModule::vor),
                  std::string("run.cfg:1: contact_criterion must be 1 (maximum distance), 2 "
                              "(PRISM), 3 (Dovreth) or 4 (contact rules), not \"") +
                      value + '"');
    }
}

TEST_F(BatchConfiguration, MissingFileAndDirectoryAreRefused) {
    cSettings configuration(eModule::kev);
    EXPECT_THROW(readConfiguration("no/such.cfg", "--config", configuration), cUsageError);
    EXPECT_THROW(readConfiguration(directory.path().native(), "--config", configuration),
                 cUsageError);
}

TEST_F(BatchConfiguration, AssignmentOverridesTheFile) {
    cSettings configuration = read("z_slice:\t0.35\ncalc_cx:\t1\n");
    assign("z_slice=0.5", configuration);
    assign("radii_filename=a=b", configuration);
    assign("z_slice=0.6", configuration);
    EXPECT_EQ(configuration.number("z_slice"), 0.6);
    EXPECT_EQ(valueOf(configuration, "radii_filename"), "a=b");
    EXPECT_TRUE(configuration.flag("calc_cx"));
}

TEST_F(BatchConfiguration, FaultyAssignmentIsNamed) {
    const auto faultOfAssignment = [](const char* assignment) {
        cSettings configuration(eModule::kev);
        try {
            assign(assignment, configuration);
        } catch (const cUsageError& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(faultOfAssignment("z_slice=0"),
              "--set z_slice=0: z_slice must be a number from 0.01 to 1, not \"0\"");
    EXPECT_EQ(faultOfAssignment("z_slice"), "--set z_slice: KEY=VALUE is expected");
    EXPECT_EQ(faultOfAssignment("=1"), "--set =1: \"\" is no key of a kev configuration");
    EXPECT_EQ(faultOfAssignment("calc_cx= 1"),
              "--set calc_cx= 1: calc_cx must be 1 or 0, not \" 1\"");
}

TEST_F(BatchConfiguration, WhatAStreamWritesIsReadBack) {
    // The window writes numbers in a stream's default form, six significant digits.
    std::mt19937 random(20070314); // NOLINT: the same numbers every time
    std::uniform_int_distribution<int> hundredths(1, 100);
    std::uniform_int_distribution<int> tenths(50, 150);
    std::bernoulli_distribution coin;
    for (int i = 0; i < 200; ++i) {
        const double zSlice = hundredths(random) / 100.0;
        const double probeRadius = hundredths(random) / 50.0;
        const double threshold = tenths(random) / 10.0;
        const bool isCalculated = coin(random);
        std::ostringstream content;
        content << "z_slice:\t" << zSlice << "\nr_solvent:\t" << probeRadius << "\ncx_threshold:\t"
                << threshold << "\ncalc_dpx:\t" << isCalculated << '\n';
        const cSettings configuration = read(content.str());
        EXPECT_EQ(configuration.number("z_slice"), zSlice);
        EXPECT_EQ(configuration.number("r_solvent"), probeRadius);
        EXPECT_EQ(configuration.number("cx_threshold"), threshold);
        EXPECT_EQ(configuration.flag("calc_dpx"), isCalculated);
    }
}

TEST_F(BatchConfiguration, PathsKeepBytesThatAreNoUtf8) {
    const cSettings configuration = read("hydro_file:\tf\xfcr.hpb\n");
    EXPECT_EQ(valueOf(configuration, "hydro_file"), "f\xfcr.hpb");
}

} // namespace kelmo

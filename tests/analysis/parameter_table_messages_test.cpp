// What the user is told about a parameter table that cannot be used.
#include "analysis/parameter_tables.h"

#include "base/text_line.h"

#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>

namespace kelmo {

namespace {

constexpr const char* aminoAcids[] = {"ALA", "ARG", "ASN", "ASP", "CYS", "GLN", "GLU",
                                      "GLY", "HIS", "ILE", "LEU", "LYS", "MET", "PHE",
                                      "PRO", "SER", "THR", "TRP", "TYR", "VAL"};

/// A line for each standard amino acid but those named in `left out`.
std::string completeTable(const std::string& values, const std::string& leftOut = {}) {
    std::string text = "# a table\n";
    for (const std::string name : aminoAcids) {
        if (leftOut.find(name) == std::string::npos) {
            text += name + " " + values + "\n";
        }
    }
    return text;
}

template <typename Table, typename Read>
std::string messageFor(const std::string& text, Read read, Table& table) {
    std::istringstream in(text);
    return read(in, table);
}

std::string radiiMessage(const std::string& text) {
    std::map<std::string, double> radii;
    return messageFor(text, readRadiiTable, radii);
}

std::string standardAsaMessage(const std::string& text) {
    std::map<std::string, sAsa> standards;
    return messageFor(text, readStandardAsaTable, standards);
}

std::string hydrophobicityMessage(const std::string& text) {
    std::map<std::string, double> scale;
    return messageFor(text, readHydrophobicityTable, scale);
}

std::string rulesMessage(const std::string& text) {
    contactMap rules;
    return messageFor(text, readContactRules, rules);
}

} // namespace

TEST(ParameterTableMessages, GoodTablesAreFilledWithoutAMessage) {
    std::map<std::string, double> radii;
    EXPECT_EQ(messageFor("ALA_CA  1.87\nALA_N   1.65\n", readRadiiTable, radii), "");
    EXPECT_EQ(radii, (std::map<std::string, double>{{"ALA_CA", 1.87}, {"ALA_N", 1.65}}));

    std::map<std::string, sAsa> standards;
    EXPECT_EQ(messageFor(completeTable("1 2 3 4 5"), readStandardAsaTable, standards), "");
    EXPECT_EQ(standards.size(), 20U);
    EXPECT_EQ(standards["VAL"].nonPolar, 4.0);

    std::map<std::string, double> scale;
    EXPECT_EQ(messageFor(completeTable("-0.4"), readHydrophobicityTable, scale), "");
    EXPECT_EQ(scale.size(), 20U);
    EXPECT_EQ(scale["GLY"], -0.4);

    contactMap rules;
    EXPECT_EQ(
        messageFor("header\nASP   6  OD1  ARG   9  NH1   4.00     3\n", readContactRules, rules),
        "");
    EXPECT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules["ARG_ASP"].front().atomIndex1, 9U);
}

TEST(ParameterTableMessages, FaultyLineIsNamed) {
    EXPECT_EQ(radiiMessage("# radii\n\nALA_CA  1e0\n"),
              "Radii file not properly formatted!\nError in line: 3");
    EXPECT_EQ(standardAsaMessage("ALA 1 2 3 4\n"),
              "Standard ASA file not properly formatted!\nError in line: 1");
    EXPECT_EQ(hydrophobicityMessage(completeTable("1") + "ALANINE 1\n"),
              "Hydrophobicity file not properly formatted!\nError in line: 22");
}

TEST(ParameterTableMessages, RadiusWhoseSlicesHaveNoEndIsRefused) {
    EXPECT_EQ(radiiMessage("ALA_CA  100\nALA_N   0\nALA_C   -1\n"), "");
    EXPECT_EQ(radiiMessage("ALA_N   1.65\nALA_CA  100.001\n"),
              "The radius of ALA_CA in radii file is larger than 100 \xC3\x85!");
    EXPECT_EQ(radiiMessage("ALA_CA  1" + std::string(400, '0') + "\n"),
              "The radius of ALA_CA in radii file is larger than 100 \xC3\x85!");
}

TEST(ParameterTableMessages, LineOfTheContactRulesThatEndsEarlyIsNamed) {
    const std::string rule = "ASP   6  OD1  ARG   9  NH1   4.00     3\n";
    EXPECT_EQ(rulesMessage("header\n" + rule + rule + "\n"),
              "Contact rules file not properly formatted!\nError in line: 4");
    EXPECT_EQ(rulesMessage("header\nASP\n"),
              "Contact rules file not properly formatted!\nError in line: 2");
    EXPECT_EQ(rulesMessage("header\n"), "");
    EXPECT_EQ(rulesMessage(""), "");
}

TEST(ParameterTableMessages, TableTooLargeIsToldFromAFaultyLine) {
    constexpr std::size_t lineSize = 64;
    constexpr std::size_t lines = largestTable / lineSize;
    const auto tooLarge = [](std::string line) {
        line.resize(lineSize - 1, ' ');
        std::string text;
        for (std::size_t i = 0; i <= lines; ++i) {
            text += line + '\n';
        }
        return text;
    };
    const std::string told = " file is larger than 16 MiB!\nError in line: 262145";
    EXPECT_EQ(radiiMessage(tooLarge("#")), "Radii" + told);
    EXPECT_EQ(standardAsaMessage(tooLarge("#")), "Standard ASA" + told);
    EXPECT_EQ(hydrophobicityMessage(tooLarge("#")), "Hydrophobicity" + told);
    EXPECT_EQ(rulesMessage(tooLarge("ASP   6  OD1  ARG   9  NH1   4.00     3")),
              "Contact rules" + told);

    const std::string longLine(longestTextLine + 1, ' ');
    EXPECT_EQ(radiiMessage(longLine), "Radii file not properly formatted!\nError in line: 1");
    EXPECT_EQ(rulesMessage(longLine),
              "Contact rules file not properly formatted!\nError in line: 1");
}

TEST(ParameterTableMessages, MissingAminoAcidsAreListedEachWithABlank) {
    EXPECT_EQ(standardAsaMessage(completeTable("1 2 3 4 5", "VAL ALA GLY")),
              "Did not find entries for all 20 standard amino acids in standard asa file! Missing: "
              "ALA GLY VAL ");
    // The doubled word is as users know it.
    EXPECT_EQ(hydrophobicityMessage(completeTable("1", "TRP")),
              "Did not find entries for all 20 standard amino acids in hydrophobicity file file! "
              "Missing: TRP ");
}

TEST(ParameterTableMessages, EmptyTables) {
    EXPECT_EQ(radiiMessage(""), "") << "radii are looked up atom by atom, not checked as a whole";
    EXPECT_EQ(standardAsaMessage(""),
              "Did not find entries for all 20 standard amino acids in standard asa file! Missing: "
              "ALA ARG ASN ASP CYS GLN GLU GLY HIS ILE LEU LYS MET PHE PRO SER THR TRP TYR VAL ");
    EXPECT_EQ(hydrophobicityMessage("# nothing\n"),
              "Did not find entries for all 20 standard amino acids in hydrophobicity file file! "
              "Missing: "
              "ALA ARG ASN ASP CYS GLN GLU GLY HIS ILE LEU LYS MET PHE PRO SER THR TRP TYR VAL ");
}

TEST(ParameterTableMessages, FaultyLineComesBeforeMissingAminoAcids) {
    EXPECT_EQ(hydrophobicityMessage("ALA x\n"),
              "Hydrophobicity file not properly formatted!\nError in line: 1");
}

TEST(ParameterTableMessages, PathsThatCannotBeOpened) {
    const auto adviceOn = [](const char* key) {
        cSettings settings(eModule::kev);
        settings.setText("radii_filename", KELMO_SOURCE_DIR "/data/protor.radii");
        settings.setText("standard_asa", KELMO_SOURCE_DIR "/data/ala-x-ala.asa");
        settings.setText("hydro_file", KELMO_SOURCE_DIR "/data/kyte-doolittle.hpb");
        settings.setText(key, "no/such/table");
        sParameterTables tables;
        const auto problem = readParameterTables(settings, tables);
        if (!problem.has_value()) {
            return std::string("no problem");
        }
        EXPECT_EQ(problem->key, key);
        EXPECT_EQ(problem->path, "no/such/table");
        EXPECT_TRUE(problem->isUnopened);
        return problem->text;
    };
    EXPECT_EQ(adviceOn("radii_filename"),
              "Not a valid radii file path!\n"
              "Please make sure that the path of the specified radii file is correct!\n");
    EXPECT_EQ(adviceOn("standard_asa"),
              "Not a valid standard asa file path!\n"
              "Please make sure that the path of the specified standard asa file is correct!\n");
    EXPECT_EQ(adviceOn("hydro_file"),
              "Not a valid hydrophobicity file path!\n"
              "Please make sure that the path of the specified hydrophobicity file is correct!\n");
}

TEST(ParameterTableMessages, TableThatTheMemoryDoesNotSufficeForIsNotTakenForAShorterOne) {
    /// Gives some bytes of a text; then the memory is at an end.
    class cLastMemory : public std::streambuf {
      public:
        cLastMemory(std::string given, std::size_t length) : text(std::move(given)) {
            setg(text.data(), text.data(), text.data() + length);
        }

      private:
        int_type underflow() override { throw std::bad_alloc(); }
        std::string text;
    };
    const auto expectRefused = [](const std::string& text, auto read, auto table) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            cLastMemory memory(text, length);
            std::istream in(&memory);
            const std::string message = read(in, table);
            EXPECT_TRUE(message.ends_with(" file could not be read to its end!")) << message;
            EXPECT_TRUE(table.empty());
        }
    };
    expectRefused("ALA_CA  1.87\nALA_N   1.65\n", readRadiiTable, std::map<std::string, double>());
    expectRefused(completeTable("1 2 3 4 5"), readStandardAsaTable, std::map<std::string, sAsa>());
    expectRefused(completeTable("1.5"), readHydrophobicityTable, std::map<std::string, double>());
    expectRefused("header\nALA   1  CA  GLY   2  C     4.5     1\n", readContactRules,
                  contactMap());
}

} // namespace kelmo

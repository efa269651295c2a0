// The grammars of the three parameter tables and what is kept of their lines.
#include "base/text_line.h"
#include "model/addition.h"
#include "tests/support/processor_time.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <limits>
#include <locale>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

using tNumbers = std::map<std::string, double>;
using tAreas = std::map<std::string, sAsa>;

const std::string oneMegabyte(1U << 20U, '1');

tNumbers readRadii(const std::string& text, int expectedResult = 0) {
    std::istringstream in(text);
    tNumbers radii{{"left over", 1.0}};
    EXPECT_EQ(getVdWrRadii(in, radii), expectedResult) << text.substr(0, 200);
    return radii;
}

tAreas readAreas(const std::string& text, int expectedResult = 0) {
    std::istringstream in(text);
    tAreas standards{{"left over", {}}};
    EXPECT_EQ(getStandardAsa(in, standards), expectedResult) << text.substr(0, 200);
    return standards;
}

tNumbers readScale(const std::string& text, int expectedResult = 0) {
    std::istringstream in(text);
    tNumbers scale{{"left over", 1.0}};
    EXPECT_EQ(getHydrophobicity(in, scale), expectedResult) << text.substr(0, 200);
    return scale;
}

// Radii

TEST(RadiiTable, KeyStandsInTheFirstEightColumns) {
    EXPECT_EQ(readRadii("ALA_CA  1.87\n"), (tNumbers{{"ALA_CA", 1.87}}));
    EXPECT_EQ(readRadii("ALA_CA     1.87\n"), (tNumbers{{"ALA_CA", 1.87}}));
    EXPECT_EQ(readRadii("ALA_O5'* 1.4\n", 1), tNumbers{}) << "no apostrophe in the grammar";
    EXPECT_EQ(readRadii("G_O5*\t\t 1.4\n"), (tNumbers{{"G_O5*", 1.4}})) << "tabs are trimmed";
    EXPECT_EQ(readRadii("ALA_CA  1.87"), (tNumbers{{"ALA_CA", 1.87}})) << "no last newline";
}

TEST(RadiiTable, ShortKeyWithTheNumberTooEarlyIsCutInTwo) {
    // The value is what follows the eighth column, here only a part of the number.
    EXPECT_EQ(readRadii("ALA_CA 12.5\n"), (tNumbers{{"ALA_CA 1", 2.5}}));
    EXPECT_EQ(readRadii("A_N 1.5\n"), (tNumbers{{"A_N 1.5", 0.0}}));
}

TEST(RadiiTable, ResiduePartMayBeEmptyAndAtomMayStandAlone) {
    EXPECT_EQ(readRadii("_CA     1.7\n"), (tNumbers{{"_CA", 1.7}}));
    EXPECT_EQ(readRadii("OXT     1.4\n"), (tNumbers{{"OXT", 1.4}}));
    EXPECT_EQ(readRadii("ABC*12  1.4\n"), (tNumbers{{"ABC*12", 1.4}}));
    EXPECT_EQ(readRadii("*       1.4\n"), (tNumbers{{"*", 1.4}}));
    EXPECT_EQ(readRadii("HEM_NA  1.4\n123_1*4 1.5\n").size(), 2U);
}

TEST(RadiiTable, LinesOutsideTheGrammarAreRefused) {
    for (const char* line : {"ALA_CA",
                             "ALA_CA  ",
                             "ALA_CA1.87",
                             "ALA_CA  1e0",
                             "ALA_CA  1.",
                             "ALA_CA  1.87 ",
                             "ALA_CA  1.87\r",
                             " ALA_CA 1.87",
                             "ala_CA  1.87",
                             "ALA_ca  1.87",
                             "ALAA_CA 1.87",
                             "ALA_    1.87",
                             "ALA_CAXXX 1.87",
                             "ABCDEFG 1.87",
                             "AL*_CA  1.87",
                             "ALA__CA 1.87",
                             "ALA_CA  +-1",
                             "ALA_CA  1.2.3",
                             "ALA_CA  0x1",
                             "ALA_CA  1,87",
                             "ALA_CA  nan",
                             "ALA_CA  1.87 # backbone",
                             " ",
                             "\t",
                             "1.87",
                             "\r",
                             "ALA_C\xC3\x85  1.87"}) {
        EXPECT_EQ(readRadii(std::string(line) + "\n", 1), tNumbers{}) << line;
    }
}

TEST(RadiiTable, NumbersMayBeSignedAndLackTheirIntegerPart) {
    EXPECT_EQ(readRadii("A_A     -1.5\nA_B     +1.5\nA_C     .5\nA_D     -.5\nA_E     12\n"),
              (tNumbers{{"A_A", -1.5}, {"A_B", 1.5}, {"A_C", 0.5}, {"A_D", -0.5}, {"A_E", 12.0}}));
}

TEST(RadiiTable, FirstOfTwoEntriesIsKept) {
    EXPECT_EQ(readRadii("ALA_CA  1.87\nALA_CA  2.00\n"), (tNumbers{{"ALA_CA", 1.87}}));
}

// Lines common to all tables

TEST(ParameterTables, CommentsAndEmptyLinesAreSkippedButCounted) {
    EXPECT_EQ(readRadii("# radii\n\nALA_CA  1.87\n#\n").size(), 1U);
    EXPECT_EQ(readRadii("# radii\n\nALA_CA  1.87\nwrong\nALA_N  9\n", 4), tNumbers{});
    EXPECT_EQ(readAreas("# areas\n\nwrong\n", 3).size(), 0U);
    EXPECT_EQ(readScale("# scale\n\n\nwrong", 4), tNumbers{});
}

TEST(ParameterTables, CommentSignCountsInTheFirstColumnOnly) {
    readRadii(" # radii\n", 1);
    readAreas(" # areas\n", 1);
    readScale(" # scale\n", 1);
}

TEST(ParameterTables, EveryReaderClearsTheMapFirst) {
    EXPECT_EQ(readRadii(""), tNumbers{});
    EXPECT_EQ(readAreas("").size(), 0U);
    EXPECT_EQ(readScale("# nothing\n"), tNumbers{});
}

TEST(ParameterTables, UnreadableStreamIsAnEmptyTable) {
    std::ifstream in("/nonexistent/table");
    tNumbers numbers{{"left over", 1.0}};
    EXPECT_EQ(getVdWrRadii(in, numbers), 0);
    EXPECT_TRUE(numbers.empty());
    numbers = {{"left over", 1.0}};
    EXPECT_EQ(getHydrophobicity(in, numbers), 0);
    EXPECT_TRUE(numbers.empty());
    tAreas areas{{"left over", {}}};
    EXPECT_EQ(getStandardAsa(in, areas), 0);
    EXPECT_TRUE(areas.empty());
}

TEST(ParameterTables, DecimalPointIsAPointInEveryLocale) {
    struct sCommaPoint : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new sCommaPoint));
    EXPECT_EQ(readRadii("ALA_CA  1.87\n"), (tNumbers{{"ALA_CA", 1.87}}));
    EXPECT_EQ(readScale("ALA 1.8\n"), (tNumbers{{"ALA", 1.8}}));
    EXPECT_EQ(readAreas("ALA 1.5 2 3 4 5\n").at("ALA").total, 1.5);
    std::locale::global(before);
}

// Standard areas

TEST(StandardAreas, ColumnsOfTheFileAreInAnotherOrderThanTheFields) {
    const tAreas standards = readAreas("ALA 107.95 38.54 69.41 71.38 36.58\n");
    ASSERT_EQ(standards.size(), 1U);
    const sAsa& alanine = standards.at("ALA");
    EXPECT_EQ(alanine.total, 107.95);
    EXPECT_EQ(alanine.backbone, 38.54);
    EXPECT_EQ(alanine.sideChain, 69.41);
    EXPECT_EQ(alanine.nonPolar, 71.38);
    EXPECT_EQ(alanine.polar, 36.58);
}

TEST(StandardAreas, NameHasOneToThreeLettersAndFiveNumbersFollow) {
    const tAreas standards = readAreas("A   1 2 3 4 5\nDA 1 2 3 4 5\nGLY    .5 -2 +3 0 5.25\n");
    EXPECT_EQ(standards.size(), 3U);
    EXPECT_EQ(standards.at("A").polar, 5.0);
    EXPECT_EQ(standards.at("GLY").total, 0.5);
    EXPECT_EQ(standards.at("GLY").backbone, -2.0);
    EXPECT_EQ(standards.at("GLY").sideChain, 3.0);
    for (const char* line :
         {"ALA 1 2 3 4", "ALA 1 2 3 4 5 6", "ALAX 1 2 3 4 5", " ALA 1 2 3 4 5", "ALA 1 2 3 4 5 ",
          "ala 1 2 3 4 5", "A1 1 2 3 4 5", "ALA 1e1 2 3 4 5", "ALA 1. 2 3 4 5", "ALA1 2 3 4 5",
          "ALA 1 2 3 4 5\r", "ALA", "1 2 3 4 5", "ALA 1 2 3 4 5 #"}) {
        EXPECT_EQ(readAreas(std::string(line) + "\n", 1).size(), 0U) << line;
    }
}

// The grammar allows a tab wherever it allows a blank, but only blanks separate columns.
TEST(StandardAreas, TabsMatchButDoNotSeparate) {
    const tAreas tabbed = readAreas("ALA\t1\t2\t3\t4\t5\n");
    EXPECT_EQ(tabbed.count("ALA"), 0U) << "the whole line is one column";
    const sAsa partly = readAreas("ALA 1 2 3 4\t5\n").at("ALA");
    EXPECT_EQ(partly.total, 1.0);
    EXPECT_EQ(partly.backbone, 2.0);
    EXPECT_EQ(partly.sideChain, 3.0);
    EXPECT_EQ(partly.nonPolar, 4.0) << "a number ends at the tab";
    EXPECT_EQ(partly.polar, 0.0) << "no fifth column";
    EXPECT_EQ(readAreas("ALA\t 1 2 3 4 5\n").count("ALA"), 0U) << "the tab belongs to the name";
}

TEST(StandardAreas, FirstOfTwoEntriesIsKept) {
    EXPECT_EQ(readAreas("ALA 1 2 3 4 5\nALA 6 7 8 9 10\n").at("ALA").total, 1.0);
}

// Hydrophobicity

TEST(HydrophobicityScale, NameStandsInThreeColumnsAndTheValueFromTheFifthOn) {
    EXPECT_EQ(readScale("GLY -0.4\nARG     -4.5\nALA\t1.8\n"),
              (tNumbers{{"GLY", -0.4}, {"ARG", -4.5}, {"ALA", 1.8}}));
}

TEST(HydrophobicityScale, ShorterNameTakesTheBlankWithIt) {
    // The value begins in the fifth column, so the first digit is lost.
    EXPECT_EQ(readScale("CA 1.0\n"), (tNumbers{{"CA ", 0.0}}));
    EXPECT_EQ(readScale("CA   1.5\n"), (tNumbers{{"CA ", 1.5}}));
    EXPECT_EQ(readScale("A 2.5\n"), (tNumbers{{"A 2", 5.0}}));
    EXPECT_EQ(readScale("A 2\n"), (tNumbers{{"A 2", 0.0}}));
}

TEST(HydrophobicityScale, LinesOutsideTheGrammarAreRefused) {
    for (const char* line :
         {"GLY", "GLY ", "GLYX 1", "gly 1", "G1 1", " GLY 1", "GLY 1 ", "GLY 1e0", "GLY 1.", "GLY1",
          "GLY 1 2", "GLY 1\r", "GLY --1", "*** 1"}) {
        EXPECT_EQ(readScale(std::string(line) + "\n", 1), tNumbers{}) << line;
    }
}

TEST(HydrophobicityScale, FirstOfTwoEntriesIsKept) {
    EXPECT_EQ(readScale("GLY -0.4\nGLY 7\n"), (tNumbers{{"GLY", -0.4}}));
}

// Lines of a megabyte

TEST(ParameterTables, NumberOfAMegabyteIsRead) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(readRadii("ALA_CA  " + oneMegabyte + "\n").at("ALA_CA"), infinity);
    EXPECT_EQ(readRadii("ALA_CA  0." + oneMegabyte + "\n").at("ALA_CA"), 1.0 / 9.0);
    EXPECT_EQ(readScale("GLY " + oneMegabyte + "\n").at("GLY"), infinity);
    EXPECT_EQ(readAreas("ALA 1 2 3 4 " + oneMegabyte + "\n").at("ALA").polar, infinity);
    EXPECT_EQ(readAreas("ALA " + oneMegabyte + " 2 3 4 5\n").at("ALA").polar, 5.0);
}

TEST(ParameterTables, BlanksOfAMegabyteAreRead) {
    const std::string blanks(1U << 20U, ' ');
    EXPECT_EQ(readRadii("ALA_CA" + blanks + "1.5\n").at("ALA_CA"), 1.5);
    EXPECT_EQ(readScale("GLY" + blanks + "1.5\n").at("GLY"), 1.5);
    EXPECT_EQ(readAreas("ALA 1 2 3 4" + blanks + "1.5\n").at("ALA").polar, 1.5);
}

TEST(ParameterTables, CommentOfAMegabyteIsSkipped) {
    const std::string comment = "#" + oneMegabyte + "\n";
    EXPECT_EQ(readRadii(comment + "ALA_CA  1.5\n").size(), 1U);
    EXPECT_EQ(readScale(comment + "GLY 1.5\n").size(), 1U);
    EXPECT_EQ(readAreas(comment + "ALA 1 2 3 4 5\n").size(), 1U);
}

TEST(ParameterTables, WrongLineOfAMegabyteIsRefusedAtItsNumber) {
    for (const char* end : {"x", ".", " ", "-"}) {
        EXPECT_EQ(readRadii("\nALA_CA  " + oneMegabyte + end + "\n", 2).size(), 0U);
        EXPECT_EQ(readScale("\nGLY " + oneMegabyte + end + "\n", 2).size(), 0U);
        EXPECT_EQ(readAreas("\nALA 1 2 3 4 " + oneMegabyte + end + "\n", 2).size(), 0U);
    }
    EXPECT_EQ(readRadii(std::string(1U << 20U, 'A') + "\n", 1).size(), 0U);
    EXPECT_EQ(readScale(std::string(1U << 20U, 'A') + "\n", 1).size(), 0U);
    EXPECT_EQ(readAreas(std::string(1U << 20U, 'A') + "\n", 1).size(), 0U);
}

// Cost must grow with the length of a line, not with its square: this line takes milliseconds of
// the processor then and a good part of a minute otherwise.
TEST(ParameterTables, WrongNumberAfterAMegabyteOfDigitsIsRefusedWithoutDelay) {
    const tProcessorTime begin = processorTime();
    EXPECT_EQ(readAreas("ALA " + oneMegabyte + " 2 3 4 x\n", 1).size(), 0U);
    EXPECT_LT(processorTime() - begin, std::chrono::seconds(3));
}

// Tables without end

/// A line that holds an entry, and comments up to a size with the line ends.
std::string tableOfSize(const std::string& entry, std::size_t size) {
    std::string table = entry + '\n';
    const std::string comment = '#' + std::string(1022, '-') + '\n';
    while (size - table.size() > 2 * comment.size()) {
        table += comment;
    }
    return table + '#' + std::string(size - table.size() - 2, '-') + '\n';
}

TEST(ParameterTables, LargestTableIsRead) {
    EXPECT_EQ(readRadii(tableOfSize("ALA_CA  1.5", largestTable)).size(), 1U);
    EXPECT_EQ(readAreas(tableOfSize("ALA 1 2 3 4 5", largestTable)).size(), 1U);
    EXPECT_EQ(readScale(tableOfSize("GLY 1.5", largestTable)).size(), 1U);
}

TEST(ParameterTables, LargerTableIsRefusedInTheLineThatIsTooMuch) {
    const auto lastLine = [](const std::string& table) {
        return static_cast<int>(std::count(table.begin(), table.end(), '\n'));
    };
    const std::string radii = tableOfSize("ALA_CA  1.5", largestTable + 1);
    EXPECT_EQ(readRadii(radii, lastLine(radii)), tNumbers{});
    EXPECT_EQ(readRadii(radii + "wrong\n", lastLine(radii)), tNumbers{});
    const std::string areas = tableOfSize("ALA 1 2 3 4 5", largestTable + 1);
    EXPECT_EQ(readAreas(areas, lastLine(areas)).size(), 0U);
    const std::string scale = tableOfSize("GLY 1.5", largestTable + 1);
    EXPECT_EQ(readScale(scale, lastLine(scale)), tNumbers{});
}

TEST(ParameterTables, StreamTellsATableTooLargeFromAFaultyLine) {
    tNumbers radii;
    std::istringstream tooLarge(tableOfSize("ALA_CA  1.5", largestTable + 1));
    EXPECT_NE(getVdWrRadii(tooLarge, radii), 0);
    EXPECT_TRUE(tooLarge.fail());
    EXPECT_FALSE(tooLarge.bad());
    for (const char* text : {"wrong", "wrong\n", "wrong\nALA_CA  1.5\n"}) {
        std::istringstream faulty(text);
        EXPECT_EQ(getVdWrRadii(faulty, radii), 1);
        EXPECT_FALSE(faulty.fail());
    }
    std::istringstream longLine(std::string(longestTextLine + 1, ' '));
    EXPECT_EQ(getVdWrRadii(longLine, radii), 1);
    EXPECT_FALSE(longLine.fail());
}

// Completeness

TEST(StandardPeptides, CompleteTableLacksNothing) {
    std::set<std::string> names;
    createAminoAcidNamesSet(names);
    tNumbers scale{{"XYZ", 1.0}};
    tAreas standards{{"XYZ", {}}};
    for (const std::string& name : names) {
        scale[name] = 0.0;
        standards[name] = {};
    }
    EXPECT_TRUE(checkForStandardPeptides(scale).empty());
    EXPECT_TRUE(checkForStandardPeptides(standards).empty());
}

TEST(StandardPeptides, MissingNamesAreReturned) {
    std::set<std::string> names;
    createAminoAcidNamesSet(names);
    EXPECT_EQ(checkForStandardPeptides(tNumbers{}), names);
    EXPECT_EQ(checkForStandardPeptides(tAreas{}), names);
    names.erase("GLY");
    EXPECT_EQ(checkForStandardPeptides(tNumbers{{"GLY", 1.0}, {"gly", 1.0}, {"AL", 1.0}}), names);
    EXPECT_EQ(checkForStandardPeptides(tAreas{{"GLY", {}}}), names);
}

} // namespace

} // namespace kelmo

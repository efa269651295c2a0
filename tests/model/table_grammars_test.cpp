// The grammars of the three parameter tables, held against regular expressions that say the same.
#include "model/addition.h"

#include <QRegularExpression>
#include <QString>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

namespace {

// Every repetition is possessive, so that a match never goes back over what it has read: without
// that the library gives up in a line of a megabyte.
#define KELMO_NUMBER R"([-+]?(?:[0-9]++(?:\.[0-9]++)?+|\.[0-9]++))"
#define KELMO_BLANKS R"([ \s\t]++)"

constexpr auto radiusPattern =
    R"((?:[A-Z0-9]{0,3}_[A-Z0-9*]{1,4}|[A-Z0-9*]{1,6}))" KELMO_BLANKS KELMO_NUMBER;
constexpr auto standardAreaPattern = R"([A-Z]{1,3}(?:)" KELMO_BLANKS KELMO_NUMBER "){5}";
constexpr auto hydrophobicityPattern = R"([A-Z]{1,3})" KELMO_BLANKS KELMO_NUMBER;

#undef KELMO_NUMBER
#undef KELMO_BLANKS

/// A reader of one table and the regular expression that its lines are to match.
template <typename Value>
class cGrammar {
  public:
    using tReader = int (*)(std::istream&, std::map<std::string, Value>&);

    cGrammar(tReader reader, const char* regularExpression)
        : read(reader),
          pattern(QRegularExpression::anchoredPattern(QString::fromLatin1(regularExpression))) {}

    bool isRead(const std::string& line) {
        in.clear();
        in.str(line);
        return read(in, table) == 0;
    }
    bool isMatched(const std::string& line) const {
        return pattern.match(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size())))
            .hasMatch();
    }
    /// Whether both agree; counts the lines that both take. The line is neither empty nor a
    /// comment.
    bool agreesOn(const std::string& line) {
        const bool taken = isRead(line);
        takenLines += taken ? 1 : 0;
        return taken == isMatched(line);
    }
    std::size_t takenCount() const { return takenLines; }

  private:
    tReader read;
    QRegularExpression pattern;
    std::istringstream in;
    std::map<std::string, Value> table;
    std::size_t takenLines = 0;
};

/// All three grammars, asked about the same lines.
struct sGrammars {
    cGrammar<double> radii{getVdWrRadii, radiusPattern};
    cGrammar<sAsa> areas{getStandardAsa, standardAreaPattern};
    cGrammar<double> scale{getHydrophobicity, hydrophobicityPattern};

    void expectAgreementOn(const std::string& line) {
        if (line.empty() || line.front() == '#') {
            return;
        }
        EXPECT_TRUE(radii.agreesOn(line)) << "radii: " << readable(line);
        EXPECT_TRUE(areas.agreesOn(line)) << "standard areas: " << readable(line);
        EXPECT_TRUE(scale.agreesOn(line)) << "hydrophobicity: " << readable(line);
    }

    static std::string readable(const std::string& line) {
        return testing::PrintToString(line.substr(0, 200));
    }
};

/// Makes lines that are near the grammars: most of the parts that they are put together from are
/// right, and every second line has bytes changed, left out, doubled or put in.
class cLineMaker {
  public:
    explicit cLineMaker(unsigned seed) : generator(seed) {}

    std::string line() {
        std::string text = name();
        constexpr std::array<std::size_t, 8> columnCounts{1, 1, 1, 5, 5, 5, 0, 6};
        for (std::size_t column = columnCounts[below(8)]; column > 0; --column) {
            text += blanks() + number();
        }
        if (below(16) == 0) {
            text += blanks();
        }
        if (below(2) == 0) {
            for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
                change(text);
            }
        }
        std::erase(text, '\n');
        return text;
    }

  private:
    std::size_t below(std::size_t end) { return generator() % end; }

    char oneOf(std::string_view characters) { return characters[below(characters.size())]; }

    std::string run(std::string_view characters, std::size_t least, std::size_t most) {
        std::string text;
        for (std::size_t length = least + below(most - least + 1); length > 0; --length) {
            text += oneOf(characters);
        }
        return text;
    }

    std::string name() {
        constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
        constexpr std::string_view key = "ABCXYZ0189*";
        switch (below(4)) {
        case 0:
            return run("ABCXYZ0189", 0, 4) + '_' + run(key, 0, 5);
        case 1:
            return run(key, 0, 7);
        default:
            return run(capitals, 1, 3);
        }
    }

    std::string blanks() {
        return below(4) == 0 ? run(" \t\v\f\r", 0, 3) : std::string(1 + below(4), ' ');
    }

    std::string number() {
        std::string text = below(2) == 0 ? run("+-", 0, 1) : "";
        text += run("0123456789", below(8) == 0 ? 0 : 1, 4);
        if (below(2) == 0) {
            text += '.' + run("0123456789", below(8) == 0 ? 0 : 1, 3);
        }
        return text;
    }

    char anyByte() {
        // NUL, blanks of other encodings, and what stands beside the ranges of the grammars.
        static constexpr char odd[] =
            "\0\b\t\v\f\r\x1c\x1f !)*+,-./09:;@AZ[^_`az{\x7f\x80\x85\xa0\xad\xff";
        constexpr std::string_view oddBytes(odd, sizeof odd - 1);
        return below(2) == 0 ? oneOf(oddBytes) : static_cast<char>(below(256));
    }

    void change(std::string& text) {
        const std::size_t place = below(text.size() + 1);
        switch (below(4)) {
        case 0:
            text.insert(place, 1, anyByte());
            break;
        case 1:
            text.erase(place, 1 + below(3));
            break;
        case 2:
            text.insert(place, text.substr(place, 1 + below(3)));
            break;
        default:
            if (place < text.size()) {
                text[place] = anyByte();
            }
            break;
        }
    }

    std::mt19937 generator;
};

TEST(TableGrammars, AreThoseOfTheRegularExpressions) {
    constexpr std::size_t lineCount = 1'000'000;
    cLineMaker maker(1);
    sGrammars grammars;
    for (std::size_t i = 0; i < lineCount && !testing::Test::HasFailure(); ++i) {
        grammars.expectAgreementOn(maker.line());
    }
    // Both sides of every grammar are met often.
    for (const std::size_t taken :
         {grammars.radii.takenCount(), grammars.areas.takenCount(), grammars.scale.takenCount()}) {
        EXPECT_GT(taken, lineCount / 20);
        EXPECT_LT(taken, lineCount / 2);
    }
}

TEST(TableGrammars, EveryByteAtEveryPlaceIsTakenOrRefusedAlike) {
    sGrammars grammars;
    for (const std::string whole : {"ALA_CA  1.87", "A*1  -.5", "GLY 1 2.5 -3 +.4 5", "VAL\t4.2"}) {
        for (std::size_t place = 0; place <= whole.size(); ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                if (byte == '\n') {
                    continue; // ends a line
                }
                std::string replaced = whole;
                std::string inserted = whole;
                if (place < whole.size()) {
                    replaced[place] = static_cast<char>(byte);
                }
                inserted.insert(place, 1, static_cast<char>(byte));
                grammars.expectAgreementOn(replaced);
                grammars.expectAgreementOn(inserted);
            }
        }
    }
    EXPECT_GT(grammars.radii.takenCount(), 300U);
    EXPECT_GT(grammars.areas.takenCount(), 300U);
    EXPECT_GT(grammars.scale.takenCount(), 300U);
}

// Next line (0x85) and the unbreakable blank (0xA0) of Latin-1 are white space in Unicode, and yet
// not here.
TEST(TableGrammars, BlanksAreThoseOfTheCLocale) {
    sGrammars grammars;
    for (const char blank : {' ', '\t', '\v', '\f', '\r'}) {
        const std::string b(1, blank);
        EXPECT_TRUE(grammars.radii.isRead("ALA_CA" + b + b + "1.87"));
        EXPECT_TRUE(grammars.areas.isRead("ALA" + b + "1" + b + "2" + b + "3" + b + "4" + b + "5"));
        EXPECT_TRUE(grammars.scale.isRead("ALA" + b + "1.8"));
    }
    for (const char noBlank : {'\0', '\x1c', '\x85', '\xa0'}) {
        const std::string b(1, noBlank);
        EXPECT_FALSE(grammars.radii.isRead("ALA_CA" + b + " 1.87"));
        EXPECT_FALSE(grammars.areas.isRead("ALA 1 2 3 4 " + b + "5"));
        EXPECT_FALSE(grammars.scale.isRead("ALA" + b + "1.8"));
        EXPECT_FALSE(grammars.scale.isMatched("ALA" + b + "1.8"));
    }
}

TEST(TableGrammars, LinesOfAMegabyteAreTakenOrRefusedAlike) {
    sGrammars grammars;
    for (const char filling : std::string_view("1A \t\0", 5)) {
        const std::string megabyte(std::size_t{1} << 20U, filling);
        for (const char* before : {"ALA_CA", "ALA ", "ALA 1 2 3 4 "}) {
            for (const char* after : {"", " ", ".5", " 2 3 4 5"}) {
                grammars.expectAgreementOn(before + megabyte + after);
            }
        }
    }
    EXPECT_GT(grammars.radii.takenCount(), 0U);
    EXPECT_GT(grammars.areas.takenCount(), 0U);
    EXPECT_GT(grammars.scale.takenCount(), 0U);
}

} // namespace

} // namespace kelmo

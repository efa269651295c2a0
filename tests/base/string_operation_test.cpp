// Trimming, splitting, comparing, and numbers that are the same in every locale.
#include "base/string_operation.h"
#include "tests/support/comma_locale.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QString>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale.h>
#include <locale>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

namespace {

constexpr int randomTextCount = 300000;

std::string randomText(std::mt19937& random, std::string_view alphabet, unsigned longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& c : text) {
        c = alphabet[random() % alphabet.size()];
    }
    return text;
}

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

TEST(TrimString, TakesBlanksAndTabsFromBothEndsOnly) {
    EXPECT_EQ(trimString(" \t a b\tc \t "), "a b\tc");
    EXPECT_EQ(trimString("abc"), "abc");
    EXPECT_EQ(trimString("  abc"), "abc");
    EXPECT_EQ(trimString("abc\t"), "abc");
    EXPECT_EQ(trimString(""), "");
    EXPECT_EQ(trimString(" \t \t"), "");
}

TEST(TrimString, KeepsAllOtherWhiteSpace) {
    for (const char* text : {"\r", "\n", "\v", "\f", "a\r", "\na", "\xA0"}) {
        EXPECT_EQ(trimString(text), text);
    }
}

TEST(TrimString, ViewLiesWithinTheText) {
    const std::string text = "  N  ";
    const std::string_view view = trimmedView(text);
    EXPECT_EQ(view, "N");
    EXPECT_EQ(view.data(), text.data() + 2);
    EXPECT_TRUE(trimmedView("   ").empty());
}

TEST(SplitString, OnlyBlanksSeparate) {
    using tParts = std::vector<std::string>;
    EXPECT_EQ(splitString("a bc  d"), (tParts{"a", "bc", "d"}));
    EXPECT_EQ(splitString("  a  "), (tParts{"a"}));
    EXPECT_EQ(splitString("a\tb c\n"), (tParts{"a\tb", "c\n"}));
    EXPECT_EQ(splitString("\t"), (tParts{"\t"}));
    EXPECT_EQ(splitString(""), tParts{});
    EXPECT_EQ(splitString("   "), tParts{});
    EXPECT_EQ(splitString(std::string(1U << 20U, 'x')).size(), 1U);
}

TEST(CaseInvariantComparison, IgnoresCase) {
    EXPECT_EQ(caseInvarStrCmp("52a", "52A"), 0);
    EXPECT_EQ(caseInvarStrCmp("", ""), 0);
    EXPECT_EQ(caseInvarStrCmp("abc", "ABD"), -1);
    EXPECT_EQ(caseInvarStrCmp("ABD", "abc"), 1);
    EXPECT_EQ(caseInvarStrCmp("Z", "a"), 1) << "as z and a";
    EXPECT_EQ(caseInvarStrCmp("_", "A"), -1) << "lower case letters come after the underscore";
}

TEST(CaseInvariantComparison, ShorterTextSortsFirstOnACommonPrefix) {
    EXPECT_EQ(caseInvarStrCmp("52", "52A"), -1);
    EXPECT_EQ(caseInvarStrCmp("52A", "52"), 1);
    EXPECT_EQ(caseInvarStrCmp("", "a"), -1);
    EXPECT_EQ(caseInvarStrCmp("b", "AAA"), 1) << "length counts after the characters only";
}

TEST(CaseInvariantComparison, AgreesWithEqualityAndIsAntisymmetric) {
    std::mt19937 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::string a = randomText(random, "aAbB1 *[", 3);
        const std::string b = randomText(random, "aAbB1 *[", 3);
        const int order = caseInvarStrCmp(a, b);
        ASSERT_EQ(order == 0, equalIgnoringCase(a, b)) << a << "|" << b;
        ASSERT_EQ(order, -caseInvarStrCmp(b, a)) << a << "|" << b;
    }
}

TEST(PlainDecimal, AcceptsAndRefusesByForm) {
    for (const char* text :
         {"0", "12", "-12", "+3", ".5", "-.5", "+.5", "1.5", "00.10", "99999999", "-999.999"}) {
        EXPECT_TRUE(plainDecimal(text)) << text;
    }
    for (const char* text :
         {"",    "-",  "+",   ".",  "-.", "12.", "+12.", "1.5e3", "1e3", "1.2.3", "1..2", "--1",
          "+-1", "1-", "1 2", " 1", "1 ", "1,5", "0x1A", "nan",   "inf", "1\n",   "\t1",  "..1"}) {
        EXPECT_FALSE(plainDecimal(text)) << text;
    }
    EXPECT_FALSE(plainDecimal(std::string_view("1\0", 2)));
    EXPECT_FALSE(plainDecimal(std::string_view("\0"
                                               "1",
                                               2)));
    EXPECT_TRUE(plainDecimal(std::string(1U << 20U, '7')));
}

TEST(PlainDecimal, IsWhatTheGrammarMatches) {
    const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QStringLiteral(R"([-+]?[0-9]*\.?[0-9]+)")));
    std::mt19937 random(2);
    int matches = 0;
    for (int i = 0; i < randomTextCount; ++i) {
        const std::string text =
            randomText(random, i % 2 == 0 ? "0123456789.-+" : "019.-+eE x,\t\n", 8);
        const bool isMatch =
            pattern.match(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())))
                .hasMatch();
        ASSERT_EQ(plainDecimal(text).has_value(), isMatch) << text;
        matches += isMatch ? 1 : 0;
    }
    EXPECT_GT(matches, randomTextCount / 20);
    EXPECT_LT(matches, randomTextCount / 2);
}

TEST(ToNumber, ReadsWhatStrtodReads) {
    struct sCase {
        const char* text;
        double value;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const sCase& example :
         {sCase{"", 0.0},           sCase{"   ", 0.0},      sCase{"abc", 0.0},
          sCase{"  12.5", 12.5},    sCase{"12.5  ", 12.5},  sCase{"12.", 12.0},
          sCase{"1.5e3", 1500.0},   sCase{"1e", 1.0},       sCase{"0x1A", 26.0},
          sCase{"0x.8p1", 1.0},     sCase{"inf", infinity}, sCase{"-INFINITY", -infinity},
          sCase{"1.2.3", 1.2},      sCase{"1 2", 1.0},      sCase{"4\t5", 4.0},
          sCase{"+.5", 0.5},        sCase{"+-5", 0.0},      sCase{"--5", 0.0},
          sCase{"\n\v\f\r 7", 7.0}, sCase{"1,5", 1.0},      sCase{"1e999", infinity}}) {
        EXPECT_EQ(bitsOf(toNumber(example.text)), bitsOf(example.value)) << example.text;
    }
    EXPECT_TRUE(std::isnan(toNumber("nan")));
    EXPECT_EQ(bitsOf(toNumber("-0")), bitsOf(-0.0));
    EXPECT_EQ(bitsOf(toNumber("-.0")), bitsOf(-0.0));
    EXPECT_EQ(toNumber(std::string_view("1\0"
                                        "2",
                                        3)),
              1.0)
        << "a zero byte ends the text";
}

TEST(ToNumber, ReadsNumbersBeyondTheRangeOfDoubles) {
    const std::string zeros(400, '0');
    EXPECT_EQ(toNumber("1" + zeros), std::numeric_limits<double>::infinity());
    EXPECT_EQ(toNumber("-1" + zeros), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(toNumber("." + zeros + "1"), 0.0);
    EXPECT_EQ(bitsOf(toNumber("-." + zeros + "1")), bitsOf(-0.0));
    const std::string smallest = "." + std::string(323, '0') + "49406564584124654";
    EXPECT_EQ(toNumber(smallest), std::numeric_limits<double>::denorm_min());
}

// Within the C locale the C library itself is the oracle, to the last bit.
TEST(ToNumber, AgreesWithStrtodOnRandomFields) {
    ASSERT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    std::mt19937 random(3);
    int nonZero = 0;
    for (int i = 0; i < randomTextCount; ++i) {
        std::string text;
        switch (i % 4) {
        case 0: // coordinates
            text = randomText(random, "0123456789.-+ ", 8);
            break;
        case 1: // long digit strings, where rounding is hardest
            text =
                randomText(random, "0123456789", 20) + "." + randomText(random, "0123456789", 25);
            break;
        case 2: // exponents and hexadecimal numbers
            text = randomText(random, " \t-+", 1) + randomText(random, "0", 1) +
                   randomText(random, "xX.", 1) + randomText(random, "0123456789abcdefABCDEF.", 9) +
                   randomText(random, "eEpP", 1) + randomText(random, "+-0123", 3);
            break;
        default: // words
            text = randomText(random, " \t\n-+", 2) + randomText(random, "infINFatyATY", 3) +
                   randomText(random, "nanNAN()inity0. ", 8);
            break;
        }
        const double expected = std::strtod(text.c_str(), nullptr);
        ASSERT_EQ(bitsOf(toNumber(text)), bitsOf(expected)) << "'" << text << "'";
        nonZero += expected != 0.0 ? 1 : 0;
    }
    for (const char* word : {"inf", "-inf", "nan", "-nan", "infinity", "nan(123)", " +INF"}) {
        EXPECT_EQ(bitsOf(toNumber(word)), bitsOf(std::strtod(word, nullptr))) << word;
    }
    EXPECT_GT(nonZero, randomTextCount / 3);
}

void expectPointNumbers() {
    EXPECT_EQ(toNumber("1.5"), 1.5);
    EXPECT_EQ(toNumber("  -1.25 "), -1.25);
    EXPECT_EQ(toNumber("1.5e1"), 15.0);
    EXPECT_EQ(toNumber("1.5x"), 1.5);
    EXPECT_EQ(toNumber("1,5"), 1.0);
    EXPECT_EQ(plainDecimal("1.5"), 1.5);
    EXPECT_FALSE(plainDecimal("1,5"));
}

TEST(ToNumber, StreamLocaleDoesNotMatter) {
    struct sCommaPoint : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new sCommaPoint));
    expectPointNumbers();
    std::locale::global(before);
}

TEST(ToNumber, LocaleOfTheProcessDoesNotMatter) {
    provideCommaLocale();
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"C", "C.UTF-8", commaLocale}) {
        ASSERT_NE(std::setlocale(LC_ALL, name), nullptr) << name;
        expectPointNumbers();
    }
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5) << "this locale makes no difference";
    std::setlocale(LC_ALL, before.c_str());
}

TEST(ToNumber, LocaleOfTheThreadDoesNotMatter) {
    provideCommaLocale();
    const std::string earlier = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"C", commaLocale}) {
        // By way of the process: newlocale() loses a little memory when it is told where to search.
        ASSERT_NE(std::setlocale(LC_ALL, name), nullptr) << name;
        const locale_t locale = duplocale(LC_GLOBAL_LOCALE);
        std::setlocale(LC_ALL, earlier.c_str());
        ASSERT_NE(locale, nullptr) << name;
        const locale_t before = uselocale(locale);
        EXPECT_EQ(*std::localeconv()->decimal_point, *name == 'C' ? '.' : ',');
        expectPointNumbers();
        uselocale(before);
        freelocale(locale);
    }
}

} // namespace

} // namespace kelmo

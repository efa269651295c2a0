// Numbers as text, held against the three writers whose output they stand in for.
#include "base/number_text.h"
#include "tests/support/toolkit_stream.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace kelmo {

namespace {

constexpr int numberCount = 2'000'000;
constexpr int streamDigits = 6;
constexpr int tableDigits = 5;
constexpr int mostDigits = 9;
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Finite doubles: any bit pattern, numbers of everyday size, and numbers cut to four decimals like
/// the areas in reports.
class cNumbers {
  public:
    explicit cNumbers(unsigned seed) : generator(seed) {}

    double anyPattern() {
        for (;;) {
            const auto value = std::bit_cast<double>(generator());
            if (std::isfinite(value)) {
                return value;
            }
        }
    }

    double ofEverydaySize() {
        const double mantissa = 1.0 + static_cast<double>(generator() >> 11U) * 0x1p-53;
        const int exponent = static_cast<int>(generator() % 60) - 25;
        return (generator() % 2 == 0 ? mantissa : -mantissa) * std::ldexp(1.0, exponent);
    }

    double next() {
        switch (generator() % 4) {
        case 0:
            return ofEverydaySize();
        case 1:
            return std::round(ofEverydaySize() * 1e4) / 1e4;
        default:
            return anyPattern();
        }
    }

  private:
    std::mt19937_64 generator;
};

const std::vector<double>& specialNumbers() {
    using limits = std::numeric_limits<double>;
    static const std::vector<double> numbers{0.0,
                                             -0.0,
                                             1.0,
                                             -1.0,
                                             10.0,
                                             1e5,
                                             1e6,
                                             999999.0,
                                             999999.4,
                                             999999.5,
                                             1000000.0,
                                             99999.0,
                                             99999.4,
                                             99999.6,
                                             1e-4,
                                             9.99999e-5,
                                             0.00012346,
                                             0.0001,
                                             0.00001,
                                             123456.0,
                                             1234567.0,
                                             0.000123456,
                                             2.0 / 3.0,
                                             1e15,
                                             1e16,
                                             1e17,
                                             1e22,
                                             1e23,
                                             1e100,
                                             1e-100,
                                             1.5e300,
                                             limits::max(),
                                             -limits::max(),
                                             limits::min(),
                                             limits::denorm_min(),
                                             -limits::denorm_min(),
                                             limits::epsilon()};
    return numbers;
}

std::string textOf(double value, int digits) {
    return std::string(cNumberText(value, digits).view());
}

std::string printedText(double value, int digits) {
    std::array<char, 64> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%.*g", digits, value);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

/// What a standard stream in its default state writes.
class cStandardStream {
  public:
    cStandardStream() { stream.imbue(std::locale::classic()); }
    const std::string& textOf(double value) {
        stream.str({});
        stream << value;
        text = stream.str();
        return text;
    }

  private:
    std::ostringstream stream;
    std::string text;
};

} // namespace

TEST(NumberText, RandomNumbersReadAsAStandardStreamWritesThem) {
    cNumbers numbers(1);
    cStandardStream stream;
    for (int i = 0; i < numberCount; ++i) {
        const double value = numbers.next();
        ASSERT_EQ(textOf(value, streamDigits), stream.textOf(value)) << std::hexfloat << value;
    }
}

TEST(NumberText, SpecialNumbersReadAsAStandardStreamWritesThem) {
    cStandardStream stream;
    for (const double value : specialNumbers()) {
        EXPECT_EQ(textOf(value, streamDigits), stream.textOf(value)) << std::hexfloat << value;
    }
}

TEST(NumberText, RandomNumbersReadAsPrintedWithAnyCountOfDigits) {
    cNumbers numbers(2);
    std::mt19937 generator(3);
    for (int i = 0; i < numberCount; ++i) {
        const double value = numbers.next();
        const int digits = 1 + static_cast<int>(generator() % mostDigits);
        ASSERT_EQ(textOf(value, digits), printedText(value, digits))
            << std::hexfloat << value << " with " << digits << " digits";
    }
}

TEST(NumberText, SpecialNumbersReadAsPrintedWithAnyCountOfDigits) {
    for (const double value : specialNumbers()) {
        for (int digits = 1; digits <= mostDigits; ++digits) {
            EXPECT_EQ(textOf(value, digits), printedText(value, digits))
                << std::hexfloat << value << " with " << digits << " digits";
        }
    }
}

// Numbers of 53 random bits: halfway cases, which the toolkit rounds away from zero and printf to
// the even digit, need a short mantissa and do not occur among them.
TEST(NumberText, RandomNumbersReadAsTheToolkitsStreamWritesThem) {
    cNumbers numbers(4);
    cToolkitStream stream;
    for (int i = 0; i < numberCount; ++i) {
        const double value = i % 2 == 0 ? numbers.anyPattern() : numbers.ofEverydaySize();
        ASSERT_EQ(textOf(value, tableDigits), stream.textOf(value)) << std::hexfloat << value;
    }
}

TEST(NumberText, SpecialNumbersReadAsTheToolkitsStreamWritesThem) {
    cToolkitStream stream;
    for (const double value : specialNumbers()) {
        if (value == 0.0 && std::signbit(value)) {
            continue; // the toolkit drops the sign, the tables see to it themselves
        }
        EXPECT_EQ(textOf(value, tableDigits), stream.textOf(value)) << std::hexfloat << value;
    }
}

// Where rounding is decided: at the middle between two texts, and where the count of digits before
// the point or the notation changes; with the doubles next to these places.
TEST(NumberText, NumbersNextToWhereTheTextChangesReadAsPrinted) {
    std::mt19937_64 generator(5);
    for (int digits = 1; digits <= mostDigits; ++digits) {
        const auto limit = static_cast<std::uint64_t>(std::pow(10.0, digits));
        for (int exponent = -25; exponent <= 25; ++exponent) {
            std::vector<double> places{std::pow(10.0, exponent),
                                       std::pow(10.0, exponent) *
                                           (1.0 - 0.5 / std::pow(10.0, digits))};
            for (int i = 0; i < 200; ++i) {
                const auto leading =
                    static_cast<double>(limit / 10 + generator() % (limit - limit / 10));
                places.push_back((leading + 0.5) * std::pow(10.0, exponent));
                places.push_back((leading + 0.5) / std::pow(10.0, -exponent));
            }
            for (const double place : places) {
                for (const double value :
                     {place, std::nextafter(place, 0.0), std::nextafter(place, infinity), -place}) {
                    ASSERT_EQ(textOf(value, digits), printedText(value, digits))
                        << std::hexfloat << value << " with " << std::dec << digits << " digits";
                }
            }
        }
    }
}

TEST(NumberText, ShortBinaryFractionsReadAsPrinted) {
    std::mt19937_64 generator(6);
    for (int i = 0; i < numberCount; ++i) {
        const auto numerator = static_cast<double>(generator() % 20'000'001) - 10'000'000.0;
        const double value = std::ldexp(numerator, -static_cast<int>(generator() % 16));
        ASSERT_EQ(textOf(value, streamDigits), printedText(value, streamDigits))
            << std::hexfloat << value;
    }
}

TEST(NumberText, HalfwayCasesGoToTheEvenDigit) {
    EXPECT_EQ(textOf(123.125, 5), "123.12");
    EXPECT_EQ(textOf(123.375, 5), "123.38");
    EXPECT_EQ(textOf(-10000.5, 5), "-10000");
    EXPECT_EQ(textOf(10001.5, 5), "10002");
}

TEST(NumberText, ShorterNotationWithoutTrailingZeros) {
    EXPECT_EQ(textOf(0.000123456, 6), "0.000123456");
    EXPECT_EQ(textOf(1234567.0, 6), "1.23457e+06");
    EXPECT_EQ(textOf(0.0000123456, 6), "1.23456e-05");
    EXPECT_EQ(textOf(100000.0, 5), "1e+05");
    EXPECT_EQ(textOf(1.50, 6), "1.5");
    EXPECT_EQ(textOf(-0.0, 6), "-0");
}

TEST(NumberText, InfinityAndNotANumberKeepTheirSign) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(textOf(infinity, 6), "inf");
    EXPECT_EQ(textOf(-infinity, 6), "-inf");
    EXPECT_EQ(textOf(std::copysign(notANumber, 1.0), 6), "nan");
    EXPECT_EQ(textOf(std::copysign(notANumber, -1.0), 6), "-nan");
    EXPECT_EQ(textOf(std::copysign(notANumber, -1.0), 6),
              printedText(std::copysign(notANumber, -1.0), 6));
}

TEST(NumberText, LongestTextFits) {
    for (const double value : {-1.23456789e-300, -0.000123456789, -123456789.0, -1.23456789e300}) {
        EXPECT_EQ(textOf(value, mostDigits), printedText(value, mostDigits));
    }
}

TEST(NumberText, ShortestReadsBackAsTheSameNumber) {
    std::mt19937_64 random(20070314); // NOLINT: the same numbers every time
    for (int i = 0; i < 200'000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (std::isnan(value)) {
            continue;
        }
        const std::string text = shortestText(value);
        double back = 0.0;
        std::from_chars(text.data(), text.data() + text.size(), back);
        if (std::isfinite(value)) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value))
                << text;
        }
    }
    EXPECT_EQ(shortestText(0.1), "0.1");
    EXPECT_EQ(shortestText(-1.0), "-1");
    EXPECT_EQ(shortestText(8.4538 + 1e-14), "8.45380000000001");
    EXPECT_EQ(shortestText(infinity), "inf");
}

} // namespace kelmo

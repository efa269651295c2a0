// Numbers of the table reports, held against the toolkit's stream that they stand in for.
#include "reports/table_number.h"
#include "tests/support/toolkit_stream.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace kelmo {

namespace {

constexpr int numberCount = 2'000'000;

std::string tableText(double value, std::size_t width = 0) {
    std::string text;
    appendTableNumber(text, value, width);
    return text;
}

} // namespace

TEST(TableNumber, RandomNumbersReadAsTheToolkitsStreamWritesThem) {
    std::mt19937_64 generator(1);
    cToolkitStream stream;
    for (int i = 0; i < numberCount; ++i) {
        const auto value = std::bit_cast<double>(generator());
        ASSERT_EQ(tableText(value), stream.textOf(value)) << std::hexfloat << value;
    }
}

// Short binary fractions of the size of areas, depths and volumes: many lie exactly half-way
// between two numbers of five digits.
TEST(TableNumber, HalfwayCasesReadAsTheToolkitsStreamWritesThem) {
    std::mt19937_64 generator(2);
    cToolkitStream stream;
    for (int i = 0; i < numberCount; ++i) {
        const auto numerator = static_cast<double>(generator() % 20'000'001) - 10'000'000.0;
        const double value = std::ldexp(numerator, -static_cast<int>(generator() % 16));
        ASSERT_EQ(tableText(value), stream.textOf(value)) << std::hexfloat << value;
    }
}

TEST(TableNumber, NeighboursOfHalfwayCasesReadAsTheToolkitsStreamWritesThem) {
    std::mt19937_64 generator(3);
    cToolkitStream stream;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (int exponent = -30; exponent <= 30; ++exponent) {
        for (int i = 0; i < 2000; ++i) {
            const double digits = static_cast<double>(10000 + generator() % 90000) + 0.5;
            const double tie = digits * std::pow(10.0, exponent);
            for (const double value :
                 {tie, std::nextafter(tie, 0.0), std::nextafter(tie, infinity), -tie}) {
                ASSERT_EQ(tableText(value), stream.textOf(value)) << std::hexfloat << value;
            }
        }
    }
}

TEST(TableNumber, NumbersWithFourDecimalsReadAsTheToolkitsStreamWritesThem) {
    cToolkitStream stream;
    for (int i = -1'000'000; i <= 1'000'000; ++i) {
        const double value = i / 10000.0;
        ASSERT_EQ(tableText(value), stream.textOf(value)) << std::hexfloat << value;
    }
}

TEST(TableNumber, SpecialNumbersReadAsTheToolkitsStreamWritesThem) {
    using limits = std::numeric_limits<double>;
    cToolkitStream stream;
    for (const double value : {0.0,
                               -0.0,
                               1.0,
                               -1.0,
                               99999.0,
                               99999.4,
                               99999.5,
                               99999.6,
                               100000.0,
                               1e-4,
                               9.99995e-5,
                               0.00012345,
                               0.000123455,
                               1e11,
                               1e12,
                               1e15,
                               1e16,
                               1e22,
                               1e100,
                               limits::max(),
                               -limits::max(),
                               limits::min(),
                               limits::denorm_min(),
                               limits::infinity(),
                               -limits::infinity(),
                               limits::quiet_NaN(),
                               -limits::quiet_NaN()}) {
        EXPECT_EQ(tableText(value), stream.textOf(value)) << std::hexfloat << value;
    }
}

TEST(TableNumber, TiesRoundAwayFromZero) {
    EXPECT_EQ(tableText(123.125), "123.13");
    EXPECT_EQ(tableText(-10000.5), "-10001");
    EXPECT_EQ(tableText(10001.5), "10002");
}

TEST(TableNumber, ZeroAndNotANumberHaveNoSign) {
    EXPECT_EQ(tableText(-0.0), "0");
    EXPECT_EQ(tableText(-std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(tableText(-std::numeric_limits<double>::infinity()), "-inf");
}

TEST(TableNumber, IsRightAlignedAndNeverCut) {
    cToolkitStream stream;
    for (const double value :
         {0.0, 1.5, -1234567.0, 123.125, 1e-300, std::numeric_limits<double>::quiet_NaN(),
          std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(tableText(value, 16), stream.textOf(value, 16));
        EXPECT_EQ(tableText(value, 2), stream.textOf(value, 2));
    }
    EXPECT_EQ(tableText(1.5, 16), "             1.5");
    std::string text = "before";
    appendTableNumber(text, 2.0, 3);
    EXPECT_EQ(text, "before  2");
}

} // namespace kelmo

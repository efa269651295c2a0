#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace kelmo {

namespace {

// All exact: powers of ten up to 10^22 have no rounding.
constexpr std::array<double, 16> powersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr std::array<double, 4> tenths{1e-1, 1e-2, 1e-3, 1e-4};

/// The decimal exponent of a size within [1e-4, 1e10).
int exponentOf(double size) {
    if (size < 1.0) {
        const auto place = std::find_if(tenths.begin(), tenths.end(),
                                        [size](double tenth) { return size >= tenth; });
        return -1 - static_cast<int>(place - tenths.begin());
    }
    const auto above = std::upper_bound(powersOfTen.begin(), powersOfTen.end(), size);
    return static_cast<int>(above - powersOfTen.begin()) - 1;
}

} // namespace

cNumberText::cNumberText(double value, int significantDigits) {
    if (writeFixed(value, significantDigits)) {
        return;
    }
    const auto result = std::to_chars(characters.data(), characters.data() + characters.size(),
                                      value, std::chars_format::general, significantDigits);
    length = static_cast<std::size_t>(result.ptr - characters.data());
}

/// The usual case: a number of ordinary size that is not near the middle between two texts. It is
/// scaled to an integer of all its digits; the scaling is off by far less than the distance from
/// the middle that is asked for, so that rounding to the nearest integer rounds the number itself.
bool cNumberText::writeFixed(double value, int significantDigits) {
    const double size = std::abs(value);
    const double limit = powersOfTen[static_cast<std::size_t>(significantDigits)];
    if (!(size >= tenths.back() && size < limit)) {
        return false;
    }
    int decimals = significantDigits - 1 - exponentOf(size);
    const double scaled = size * powersOfTen[static_cast<std::size_t>(decimals)];
    auto digits = static_cast<std::uint64_t>(scaled);
    const double rest = scaled - static_cast<double>(digits);
    constexpr double wellAboveRounding = 1e-5;
    if (std::abs(rest - 0.5) < wellAboveRounding) {
        return false;
    }
    digits += rest > 0.5 ? 1 : 0;
    if (decimals == 0 && static_cast<double>(digits) == limit) {
        return false; // rounded up to a number that is written with an exponent
    }
    while (decimals > 0 && digits % 10 == 0) {
        digits /= 10;
        --decimals;
    }
    std::array<char, 24> reversed;
    std::size_t count = 0;
    for (int i = 0; i < decimals; ++i, digits /= 10) {
        reversed[count++] = static_cast<char>('0' + digits % 10);
    }
    if (decimals > 0) {
        reversed[count++] = '.';
    }
    do {
        reversed[count++] = static_cast<char>('0' + digits % 10);
        digits /= 10;
    } while (digits != 0);
    if (std::signbit(value)) {
        reversed[count++] = '-';
    }
    while (count > 0) {
        characters[length++] = reversed[--count];
    }
    return true;
}

std::string shortestText(double value) {
    std::array<char, 32> characters;
    const auto result =
        std::to_chars(characters.data(), characters.data() + characters.size(), value);
    return {characters.data(), result.ptr};
}

} // namespace kelmo

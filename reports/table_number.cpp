#include "reports/table_number.h"

#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace kelmo {

namespace {

constexpr int digits = 5;

/// Whether the number may lie exactly half-way between two numbers of five digits.
bool isNearTie(double value) {
    double size = std::abs(value);
    if (!(size >= 1e-4 && size < 1e12)) {
        return true;
    }
    while (size < 1e4) {
        size *= 10.0;
    }
    while (size >= 1e5) {
        size /= 10.0;
    }
    constexpr double wellAboveRounding = 1e-6;
    return std::abs(size - std::floor(size) - 0.5) < wellAboveRounding;
}

/// Whether the number, all its digits written out, goes on behind the fifth with a five and nothing
/// else.
bool isTie(double value) {
    constexpr int allDigits = 1100; // no double has more
    std::array<char, allDigits + 16> written;
    const auto end = std::to_chars(written.data(), written.data() + written.size(), std::abs(value),
                                   std::chars_format::scientific, allDigits);
    // One digit, a point, the others, "e" and the exponent.
    std::string_view text(written.data(), static_cast<std::size_t>(end.ptr - written.data()));
    text = text.substr(0, text.find('e')).substr(digits + 1);
    return text.front() == '5' && text.find_first_not_of('0', 1) == std::string_view::npos;
}

void appendRightAligned(std::string& text, std::string_view field, std::size_t width) {
    if (field.size() < width) {
        text.append(width - field.size(), ' ');
    }
    text.append(field);
}

} // namespace

void appendTableNumber(std::string& text, double value, std::size_t width) {
    if (value == 0.0) {
        appendRightAligned(text, "0", width);
    } else if (std::isnan(value)) {
        appendRightAligned(text, "nan", width);
    } else {
        if (std::isfinite(value) && isNearTie(value) && isTie(value)) {
            value = std::nextafter(value, std::copysign(std::numeric_limits<double>::infinity(),
                                                        value)); // ties go away from zero
        }
        appendRightAligned(text, cNumberText(value, digits).view(), width);
    }
}

} // namespace kelmo

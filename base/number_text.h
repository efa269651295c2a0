// Numbers as text: what a stream or printf("%.*g") writes in the C locale, only faster.
#pragma once

#include "base/exported.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// The text of a number with a fixed count of significant digits (1 to 9), in the shorter of fixed
/// and exponent notation without trailing zeros. Infinity and not-a-number read "inf" and "nan"
/// with their sign.
class cNumberText {
  public:
    /// `significantDigits` is from 1 to 9.
    cNumberText(double value, int significantDigits);
    /// Lives as long as this object.
    std::string_view view() const { return {characters.data(), length}; }

  private:
    bool writeFixed(double value, int significantDigits);

    std::array<char, 32> characters;
    std::size_t length = 0;
};

/// The shortest text that reads back as the very same number, in fixed or exponent notation.
/// Infinity and not-a-number read "inf" and "nan" with their sign.
std::string shortestText(double value);

} // namespace kelmo

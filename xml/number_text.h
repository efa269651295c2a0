// Numbers as text: what a stream or printf("%.*g") writes in the C locale, only faster.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>

/// The text of a number with a fixed count of significant digits, in the shorter of fixed and
/// exponent notation without trailing zeros. Infinity and not-a-number read "inf" and "nan" with
/// their sign.
class cNumberText {
  public:
    cNumberText(double value, int significantDigits) {
        const auto result = std::to_chars(characters.data(), characters.data() + characters.size(),
                                          value, std::chars_format::general, significantDigits);
        length = static_cast<std::size_t>(result.ptr - characters.data());
    }
    std::string_view view() const { return {characters.data(), length}; }

  private:
    std::array<char, 32> characters;
    std::size_t length;
};

#include "base/string_operation.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <locale.h>

namespace kelmo {

namespace {

/// Any number of so many characters is an integer below 2^53 over a power of ten.
constexpr std::size_t exactDigits = 16;
constexpr std::array<double, exactDigits> powersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                      1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

} // namespace

std::string_view trimmedView(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string trimString(std::string text) {
    return std::string(trimmedView(text));
}

std::vector<std::string> splitString(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t begin = text.find_first_not_of(' ');
    while (begin != std::string::npos) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(' ', end);
    }
    return parts;
}

int caseInvarStrCmp(const std::string& a, const std::string& b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto left = static_cast<unsigned char>(lowered(a[i]));
        const auto right = static_cast<unsigned char>(lowered(b[i]));
        if (left != right) {
            return left < right ? -1 : 1;
        }
    }
    if (a.size() == b.size()) {
        return 0;
    }
    return a.size() < b.size() ? -1 : 1;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char left, char right) { return lowered(left) == lowered(right); });
}

std::optional<double> plainDecimal(std::string_view text) {
    const std::string_view whole = text;
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || !isDigit(text.back())) {
        return std::nullopt;
    }
    std::uint64_t digits = 0;
    std::size_t point = text.size() - 1; // a number without a point has it behind its last digit
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isDigit(text[i])) {
            digits = digits * 10 + static_cast<std::uint64_t>(text[i] - '0');
        } else if (text[i] == '.' && point == text.size() - 1) {
            point = i;
        } else {
            return std::nullopt;
        }
    }
    // Both the digits and the power of ten are exact, so the quotient is correctly rounded.
    if (text.size() <= exactDigits) {
        const double size = static_cast<double>(digits) / powersOfTen[text.size() - 1 - point];
        return isNegative ? -size : size;
    }
    return strtod_l(std::string(whole).c_str(), nullptr, cLocale());
}

double toNumber(std::string_view text) {
    const std::optional<double> plain = plainDecimal(trimmedView(text));
    return plain ? *plain : strtod_l(std::string(text).c_str(), nullptr, cLocale());
}

} // namespace kelmo

// The first difference of two long texts, in a form short enough for a test's output.
#pragma once

#include <sstream>
#include <string>

namespace kelmo {

/// Empty for equal texts, otherwise the number of the first differing line and the line in both.
inline std::string firstDifference(const std::string& actual, const std::string& expected) {
    if (actual == expected) {
        return {};
    }
    std::istringstream actualLines(actual);
    std::istringstream expectedLines(expected);
    for (int number = 1;; ++number) {
        std::string actualLine;
        std::string expectedLine;
        const bool hasActual = static_cast<bool>(std::getline(actualLines, actualLine));
        const bool hasExpected = static_cast<bool>(std::getline(expectedLines, expectedLine));
        if (!hasActual && !hasExpected) {
            return "a line end at the end of the text";
        }
        if (hasActual != hasExpected || actualLine != expectedLine) {
            return "line " + std::to_string(number) +
                   "\n  is:        " + (hasActual ? actualLine : "(missing)") +
                   "\n  should be: " + (hasExpected ? expectedLine : "(missing)");
        }
    }
}

} // namespace kelmo

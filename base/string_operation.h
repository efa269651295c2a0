// String helpers of the readers: trimming, splitting, comparing and locale-free numbers.
#pragma once

#include "base/exported.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KELMO_API kelmo {

/// The text without leading and trailing blanks and tabs.
std::string trimString(std::string text);
/// The part of `text` without leading and trailing blanks and tabs.
std::string_view trimmedView(std::string_view text);

/// The maximal runs of characters other than the space character; a tab does not separate.
std::vector<std::string> splitString(const std::string& text);

/// -1, 0 or 1 as `a` sorts before, with or after `b` when case is ignored.
int caseInvarStrCmp(const std::string& a, const std::string& b);
/// Whether two texts are equal when case is ignored.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// The value of a plain decimal number, correctly rounded; nothing for any other text. Such a
/// number is an optional sign and digits with at most one point among them, the last character a
/// digit: no exponent, no blanks.
std::optional<double> plainDecimal(std::string_view text);

/// What strtod reads in the C locale, whatever locale the process runs in: the toolkit switches to
/// the user's, where a decimal comma would cut every number short.
double toNumber(std::string_view text);

} // namespace kelmo

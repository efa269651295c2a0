// Numbers of the table reports: what a QTextStream with five significant digits writes.
#pragma once

#include "base/exported.h"

#include <string>

namespace KELMO_API kelmo {

/// Appends the number, right-aligned in `width` characters. Exact ties round away from zero, zero
/// and not-a-number have no sign, unlike in the XML reports: what readers of these tables have
/// always got.
void appendTableNumber(std::string& text, double value, std::size_t width);

} // namespace kelmo

// Text values for XML reports in plain ASCII.
#pragma once

#include "base/exported.h"

#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// The text with markup escaped and everything outside ASCII as character references: code points
/// when the text is valid UTF-8, byte values otherwise. What XML 1.0 does not allow at all (control
/// characters but the tab) becomes "?".
std::string escapedXmlText(std::string_view text);

/// Whether a parser takes the text as it stands between two tags of a document in us-ascii, as one
/// that means nothing but itself.
bool isXmlText(std::string_view text);

} // namespace kelmo

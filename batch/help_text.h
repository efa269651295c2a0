// What kelmo-batch says of itself.
#pragma once

#include <string>
#include <string_view>

namespace kelmo {

/// At most 80 columns wide, ending in a line feed.
std::string_view helpText();

/// Program and version on one line, ending in a line feed.
std::string versionText();

} // namespace kelmo

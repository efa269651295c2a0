// Lines of a text that may turn out to be none.
#pragma once

#include <cstddef>
#include <istream>
#include <string>

namespace kelmo {

/// Far beyond any line of a table or list; more is a device or a file of zeros.
inline constexpr std::size_t longestTextLine = std::size_t{16} << 20;

/// Like std::getline(), but gives up in a line of more than `longestTextLine` bytes, which is the
/// sign of it; what follows of the line stays unread.
std::istream& getTextLine(std::istream& in, std::string& line);

} // namespace kelmo

// Lines of a text that may turn out to be none, and how much of one is read.
#pragma once

#include "base/exported.h"

#include <cstddef>
#include <istream>
#include <string>

namespace KELMO_API kelmo {

/// Far beyond any line of a table or list; more is a device or a file of zeros.
inline constexpr std::size_t longestTextLine = std::size_t{16} << 20;

/// A parameter table of more bytes, line ends included, is refused: the memory of its entries would
/// have no bound. The shipped tables are at most a hundredth of that.
inline constexpr std::size_t largestTable = std::size_t{16} << 20;

/// Like std::getline(), but gives up in a line of more than `longestTextLine` bytes, which is the
/// sign of it; what follows of the line stays unread.
std::istream& getTextLine(std::istream& in, std::string& line);

} // namespace kelmo

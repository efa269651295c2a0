// The text of the progress bar.
#pragma once

#include <cstddef>
#include <string>

/// Files done of all, files per second and the time left, in at most `columns` columns of ASCII. On
/// a narrow terminal the bar goes first, then the end of the text.
std::string progressLine(std::size_t done, std::size_t total, double elapsedSeconds, int columns);

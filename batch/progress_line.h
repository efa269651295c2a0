// The text of the progress bar.
#pragma once

#include <cstddef>
#include <string>

namespace kelmo {

/// How far a run has come, in files.
struct sProgress {
    std::size_t done = 0;      ///< by this run
    std::size_t takenOver = 0; ///< done by an earlier run, in no time
    std::size_t total = 0;
};

/// Files done of all, files per second and the time left, in at most `columns` columns of ASCII. On
/// a narrow terminal the bar goes first, then the end of the text.
std::string progressLine(const sProgress& progress, double elapsedSeconds, int columns);

} // namespace kelmo

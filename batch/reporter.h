// What the user sees of a run on standard error: coloured messages and the progress bar.
#pragma once

#include "run/run_events.h"

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

namespace kelmo {

/// How much is shown, and how.
struct sReporterManner {
    bool isColoured = false;
    bool hasProgressBar = false;
    bool isQuiet = false; ///< messages of progress are left out
};

/// For the standard error of this process: colours and the bar on a terminal only; no colours when
/// NO_COLOR is set to anything, as no-color.org has it.
sReporterManner mannerOfStandardError();

/// May be used from several threads at once. Messages end in a line feed, whatever their text ends
/// in.
class cReporter {
  public:
    explicit cReporter(sReporterManner chosenManner) : manner(chosenManner) {}

    bool isQuiet() const { return manner.isQuiet; }

    void show(const sMessage& message);
    /// Keeps the messages together.
    void show(const std::vector<sMessage>& messages);

    /// The progress bar stands below the messages from here to endProgress().
    void beginProgress(std::size_t files);
    void countFile();
    /// A file on which no time was spent.
    void countFileTakenOver();
    void endProgress();

  private:
    std::string formatted(const sMessage& message) const;
    void write(const std::string& text);
    void countFile(std::size_t& counter);
    void drawBar();
    void clearBar();

    const sReporterManner manner;
    std::mutex mutex; ///< guards the rest, and keeps writers apart
    bool isBarDrawn = false;
    bool hasProgressBegun = false;
    std::size_t filesDone = 0;
    std::size_t filesTakenOver = 0;
    std::size_t filesInAll = 0;
    std::chrono::steady_clock::time_point start;
    std::chrono::steady_clock::time_point lastDrawing;
};

} // namespace kelmo

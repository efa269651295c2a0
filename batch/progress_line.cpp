#include "batch/progress_line.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kelmo {

namespace {

constexpr std::size_t barWidth = 30;

template <typename... Values>
std::string formatted(const char* format, Values... values) {
    char text[64];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

/// Hours only when there are any.
std::string clockTime(double seconds) {
    constexpr double longestShown = 359999.0; // 99:59:59
    const auto whole = static_cast<long>(std::min(std::ceil(seconds), longestShown));
    constexpr long perHour = 3600;
    constexpr long perMinute = 60;
    const long minutes = whole % perHour / perMinute;
    return whole >= perHour
               ? formatted("%ld:%02ld:%02ld", whole / perHour, minutes, whole % perMinute)
               : formatted("%ld:%02ld", minutes, whole % perMinute);
}

std::string bar(std::size_t done, std::size_t total) {
    const std::size_t filled = barWidth * done / std::max<std::size_t>(total, 1);
    return '[' + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] ";
}

} // namespace

std::string progressLine(const sProgress& progress, double elapsedSeconds, int columns) {
    const std::size_t ready = progress.done + progress.takenOver;
    std::string text = std::to_string(ready) + '/' + std::to_string(progress.total) + " files";
    if (progress.done > 0 && elapsedSeconds > 0.0) {
        const double rate = static_cast<double>(progress.done) / elapsedSeconds;
        text += formatted(", %.3g files/s, ", rate);
        text += clockTime(static_cast<double>(progress.total - ready) / rate) + " left";
    }
    const auto room = static_cast<std::size_t>(std::max(columns, 0));
    const std::string withBar = bar(ready, progress.total) + text;
    return withBar.size() <= room ? withBar : text.substr(0, room);
}

} // namespace kelmo

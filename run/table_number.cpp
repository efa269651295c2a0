#include "run/table_number.h"

#include "base/number_text.h"

#include <QByteArray>
#include <QLocale>

#include <cmath>
#include <string_view>

namespace kelmo {

namespace {

constexpr int digits = 5;

/// Whether the number may lie exactly half-way between two numbers of five digits, or is one of
/// those that the toolkit writes differently from the standard library.
bool needsToolkit(double value) {
    double size = std::abs(value);
    if (!(size >= 1e-4 && size < 1e12)) {
        return true;
    }
    while (size < 1e4) {
        size *= 10.0;
    }
    while (size >= 1e5) {
        size /= 10.0;
    }
    constexpr double wellAboveRounding = 1e-6;
    return std::abs(size - std::floor(size) - 0.5) < wellAboveRounding;
}

void appendRightAligned(std::string& text, std::string_view field, std::size_t width) {
    if (field.size() < width) {
        text.append(width - field.size(), ' ');
    }
    text.append(field);
}

} // namespace

void appendTableNumber(std::string& text, double value, std::size_t width) {
    if (value == 0.0) {
        appendRightAligned(text, "0", width);
    } else if (needsToolkit(value)) {
        const QByteArray number = QLocale::c().toString(value, 'g', digits).toLatin1();
        appendRightAligned(text, {number.constData(), static_cast<std::size_t>(number.size())},
                           width);
    } else {
        appendRightAligned(text, cNumberText(value, digits).view(), width);
    }
}

} // namespace kelmo

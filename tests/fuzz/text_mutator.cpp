#include "tests/fuzz/text_mutator.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kelmo {

namespace {

constexpr std::array<std::string_view, 26> oddNumbers{
    "0",         "-0",       "1e5",  "1E400",    "nan",  "-nan",     "inf",
    "1.",        ".5",       "+.5",  "-",        ".",    "1,5",      "0x10",
    "99999999",  "-9999999", "1e-9", "9999.999", "****", "        ", "12345678",
    "123456789", "1.2.3",    "-.0",  "1000000",  "\t2"};

bool isOfNumber(char c) {
    return (c >= '0' && c <= '9') || c == '.' || c == '-';
}

/// The lines, all with a line feed but for the last, which may be empty.
std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char c : text) {
        lines.back() += c;
        if (c == '\n') {
            lines.emplace_back();
        }
    }
    return lines;
}

} // namespace

std::string cTextMutator::mutated(std::string text, const std::string& other) {
    for (std::size_t count = 1 + below(4); count > 0; --count) {
        switch (below(4)) {
        case 0:
            mutateBytes(text);
            break;
        case 1:
            mutateNumber(text);
            break;
        default:
            mutateLines(text, other);
            break;
        }
    }
    return text;
}

void cTextMutator::mutateBytes(std::string& text) {
    if (text.empty()) {
        text = static_cast<char>(below(256));
        return;
    }
    const std::size_t place = below(text.size());
    switch (below(5)) {
    case 0:
        text[place] = static_cast<char>(static_cast<unsigned char>(text[place]) ^ 1U << below(8));
        break;
    case 1:
        text[place] = static_cast<char>(below(256));
        break;
    case 2:
        text[place] = static_cast<char>(' ' + below(95));
        break;
    case 3:
        text.erase(place, 1 + below(9));
        break;
    default:
        text.insert(place, 1 + below(9), static_cast<char>(' ' + below(95)));
        break;
    }
}

/// Replaces a number, with the columns around it where there is room or else pushing the rest.
void cTextMutator::mutateNumber(std::string& text) {
    if (text.empty()) {
        return;
    }
    const auto start = text.begin() + static_cast<std::ptrdiff_t>(below(text.size()));
    const auto first = std::find_if(start, text.end(), isOfNumber);
    const auto last = std::find_if_not(first, text.end(), isOfNumber);
    const auto place = static_cast<std::size_t>(first - text.begin());
    const auto length = static_cast<std::size_t>(last - first);
    const std::string_view number = oddNumbers[below(oddNumbers.size())];
    const bool keepsColumns = below(4) != 0;
    if (keepsColumns && number.size() <= length) {
        text.replace(place, length, std::string(length - number.size(), ' ').append(number));
    } else if (keepsColumns && number.size() <= place + length) {
        text.replace(place + length - number.size(), number.size(), number);
    } else {
        text.replace(place, length, number);
    }
}

void cTextMutator::mutateLines(std::string& text, const std::string& other) {
    std::vector<std::string> lines = linesOf(text);
    const std::size_t place = below(lines.size());
    const auto line = lines.begin() + static_cast<std::ptrdiff_t>(place);
    switch (below(7)) {
    case 0:
        lines.erase(line);
        break;
    case 1:
        lines.insert(line, std::string(*line));
        break;
    case 2:
        std::swap(*line, lines[below(lines.size())]);
        break;
    case 3: {
        const std::vector<std::string> strange = linesOf(other);
        lines.insert(line, strange[below(strange.size())]);
        break;
    }
    case 4: // cut off everything behind
        lines.resize(place + 1);
        line->resize(below(line->size() + 1));
        break;
    default:
        mutateLine(*line);
        break;
    }
    text.clear();
    for (const std::string& each : lines) {
        text += each;
    }
}

/// Shifts or exchanges columns, or cuts the line.
void cTextMutator::mutateLine(std::string& line) {
    const std::size_t place = below(line.size() + 1);
    switch (below(4)) {
    case 0:
        line.insert(place, 1, ' ');
        break;
    case 1:
        line.erase(place, 1);
        break;
    case 2: {
        const bool isEnded = line.ends_with('\n');
        line.resize(place);
        line += isEnded ? "\n" : "";
        break;
    }
    default: // one chain id or name in place of another
        if (place < line.size()) {
            line[place] = static_cast<char>(below(2) == 0 ? 'A' + below(26) : '0' + below(10));
        }
        break;
    }
}

} // namespace kelmo

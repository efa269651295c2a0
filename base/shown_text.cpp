#include "base/shown_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace kelmo {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

unsigned char byteAt(std::string_view text, std::size_t place) {
    return static_cast<unsigned char>(text[place]);
}

/// The lengths that a first byte can announce, 0 for none.
std::size_t announcedLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0) {
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return 3;
    }
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// The number of a character of well-formed UTF-8.
std::uint32_t codePoint(std::string_view character) {
    constexpr std::array<unsigned, 5> leadBits{0, 0x7F, 0x1F, 0x0F, 0x07}; // by length
    std::uint32_t point = byteAt(character, 0) & leadBits[character.size()];
    for (std::size_t i = 1; i < character.size(); ++i) {
        point = point << 6U | (byteAt(character, i) & 0x3FU);
    }
    return point;
}

struct sRange {
    std::uint32_t first;
    std::uint32_t last;
};

/// Unicode's categories of format characters (Cf), line separators (Zl) and paragraph separators
/// (Zp), as of version 15, and the fillers of Hangul, which take no room either.
constexpr std::array<sRange, 22> unseenCharacters{
    {{0x00AD, 0x00AD},   {0x0600, 0x0605},   {0x061C, 0x061C},   {0x06DD, 0x06DD},
     {0x070F, 0x070F},   {0x0890, 0x0891},   {0x08E2, 0x08E2},   {0x115F, 0x1160},
     {0x180E, 0x180E},   {0x200B, 0x200F},   {0x2028, 0x202E},   {0x2060, 0x206F},
     {0x3164, 0x3164},   {0xFFA0, 0xFFA0},   {0xFFF9, 0xFFFB},   {0x110BD, 0x110BD},
     {0x110CD, 0x110CD}, {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A},
     {0xE0001, 0xE0001}, {0xE0020, 0xE007F}}};

bool isUnseen(std::uint32_t point) {
    return std::ranges::any_of(unseenCharacters, [point](const sRange& range) {
        return point >= range.first && point <= range.last;
    });
}

/// Control characters of ASCII and of Latin-1.
bool isControl(std::uint32_t point) {
    return point < 0x20 || (point >= 0x7F && point < 0xA0);
}

bool breaksLog(std::uint32_t point) {
    return point == '\n' || point == '\r' || point >= 0x80;
}

/// "<U+202E>".
std::string numberOf(std::uint32_t point) {
    std::array<char, 16> text;
    const int length =
        std::snprintf(text.data(), text.size(), "<U+%04X>", static_cast<unsigned>(point));
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string shown(std::string_view bytes, bool areControlsShown) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        const std::string_view character = bytes.substr(0, length);
        if (length == 0 || character == byteOrderMark) {
            text += replacementCharacter;
        } else if (const std::uint32_t point = codePoint(character);
                   isControl(point) && (!areControlsShown || breaksLog(point))) {
            text += '?';
        } else if (isUnseen(point)) {
            text += numberOf(point);
        } else {
            text += character;
        }
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text;
}

} // namespace

std::size_t characterLength(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const std::size_t length = announcedLength(byteAt(text, 0));
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, i) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    if (length < 3) {
        return length;
    }
    // Longer forms than needed, surrogates, and what lies beyond Unicode.
    const unsigned pair = byteAt(text, 0) * 0x100U + byteAt(text, 1);
    const bool isOverlong = (length == 3 && pair < 0xE0A0) || (length == 4 && pair < 0xF090);
    const bool isSurrogate = pair >= 0xEDA0 && pair < 0xEE00;
    return isOverlong || isSurrogate || pair >= 0xF490 ? 0 : length;
}

std::string displayedText(std::string_view bytes) {
    return shown(bytes, true);
}

std::string shownText(std::string_view bytes) {
    return shown(bytes, false);
}

std::string inOneLine(std::string_view bytes, std::string_view lineEnds) {
    std::string line(bytes);
    for (char& byte : line) {
        byte = lineEnds.find(byte) == std::string_view::npos ? byte : '?';
    }
    return line;
}

} // namespace kelmo

#include "base/shown_text.h"

#include <array>
#include <cstdint>

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

/// The control characters of ASCII, and those of Latin-1 behind their first byte in UTF-8.
bool isControl(std::string_view character) {
    if (character.size() == 1) {
        return byteAt(character, 0) < 0x20 || byteAt(character, 0) == 0x7F;
    }
    return character.size() == 2 && byteAt(character, 0) == 0xC2 && byteAt(character, 1) < 0xA0;
}

std::string shown(std::string_view bytes, bool areControlsShown) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        const std::string_view character = bytes.substr(0, length);
        if (length == 0 || character == byteOrderMark) {
            text += replacementCharacter;
        } else if (!areControlsShown && isControl(character)) {
            text += '?';
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

} // namespace kelmo

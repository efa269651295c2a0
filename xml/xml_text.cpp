#include "xml/xml_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kelmo {

namespace {

/// Takes one UTF-8 character off the front of the text; nothing when it is not well-formed.
std::optional<std::uint32_t> takeCodePoint(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    std::uint32_t point = lead;
    std::uint32_t smallest = 0;
    if (lead >= 0xF0 && lead < 0xF8) {
        length = 4;
        point = lead & 0x07U;
        smallest = 0x10000;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        length = 3;
        point = lead & 0x0FU;
        smallest = 0x800;
    } else if (lead >= 0xC0 && lead < 0xE0) {
        length = 2;
        point = lead & 0x1FU;
        smallest = 0x80;
    } else if (lead >= 0x80) {
        return std::nullopt;
    }
    if (text.size() < length) {
        return std::nullopt;
    }
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        point = point << 6U | (byte & 0x3FU);
    }
    const bool isSurrogate = point >= 0xD800 && point < 0xE000;
    if (point < smallest || point > 0x10FFFF || isSurrogate) {
        return std::nullopt;
    }
    text.remove_prefix(length);
    return point;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        if (!takeCodePoint(text)) {
            return false;
        }
    }
    return true;
}

void appendEscaped(std::string& out, std::uint32_t point) {
    if (point == '&') {
        out += "&amp;";
    } else if (point == '<') {
        out += "&lt;";
    } else if (point == '>') {
        out += "&gt;";
    } else if ((point < 0x20 && point != '\t') || point == 0xFFFE || point == 0xFFFF) {
        out += '?';
    } else if (point < 0x80) {
        out += static_cast<char>(point);
    } else {
        out += "&#" + std::to_string(point) + ';';
    }
}

bool isPlain(char c) {
    return c >= ' ' && c < '\x7f' && c != '&' && c != '<' && c != '>';
}

/// Control characters, but for the blanks among them, are in no document.
bool isInAsciiDocuments(char character) {
    const auto c = static_cast<unsigned char>(character);
    return (c >= ' ' && c < 0x80) || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

bool isXmlText(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return isInAsciiDocuments(c) && c != '&' && c != '<'; }) &&
           text.find("]]>") == std::string_view::npos;
}

std::string escapedXmlText(std::string_view text) {
    std::string out;
    std::size_t plain = 0;
    while (plain < text.size() && isPlain(text[plain])) {
        ++plain;
    }
    out.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) {
        return out;
    }
    const bool decode = isUtf8(text);
    while (!text.empty()) {
        if (decode) {
            appendEscaped(out, *takeCodePoint(text));
        } else {
            appendEscaped(out, static_cast<unsigned char>(text.front()));
            text.remove_prefix(1);
        }
    }
    return out;
}

} // namespace kelmo

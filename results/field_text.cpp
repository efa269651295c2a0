#include "results/field_text.h"

#include "base/number_text.h"
#include "base/shown_text.h"

#include <cmath>

namespace kelmo {

namespace {

void appendEscape(std::string& text, unsigned code) {
    constexpr std::string_view hexadecimal = "0123456789abcdef";
    text += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += hexadecimal[(code >> static_cast<unsigned>(shift)) & 15U];
    }
}

void appendCharacter(std::string& text, char c) {
    switch (c) {
    case '"':
    case '\\':
        text += '\\';
        text += c;
        break;
    case '\n':
        text += "\\n";
        break;
    case '\t':
        text += "\\t";
        break;
    default:
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') {
            appendEscape(text, static_cast<unsigned char>(c));
        } else {
            text += c;
        }
    }
}

} // namespace

void appendField(std::string& text, std::string_view field) {
    if (field.find_first_of("\t\n\r\"") == std::string_view::npos) {
        text += field;
        return;
    }
    text += '"';
    for (const char c : field) {
        text += c;
        if (c == '"') {
            text += c;
        }
    }
    text += '"';
}

void appendField(std::string& text, const sCell& cell) {
    switch (cell.kind) {
    case sCell::eKind::integer:
        text += std::to_string(cell.integer);
        break;
    case sCell::eKind::real:
        text += std::isnan(cell.real) ? std::string() : shortestText(cell.real);
        break;
    case sCell::eKind::text:
        appendField(text, cell.text);
        break;
    case sCell::eKind::none:
        break;
    }
}

void appendJson(std::string& text, const sCell& cell) {
    switch (cell.kind) {
    case sCell::eKind::integer:
        text += std::to_string(cell.integer);
        break;
    case sCell::eKind::real:
        if (std::isnan(cell.real)) {
            text += "null";
        } else if (std::isinf(cell.real)) {
            text += cell.real < 0.0 ? "-1e999" : "1e999";
        } else {
            text += shortestText(cell.real);
        }
        break;
    case sCell::eKind::text:
        appendJson(text, cell.text);
        break;
    case sCell::eKind::none:
        text += "null";
        break;
    }
}

void appendJson(std::string& text, std::string_view string) {
    text += '"';
    while (!string.empty()) {
        const std::size_t length = characterLength(string);
        if (length == 0) {
            appendEscape(text, 0xDC00U + static_cast<unsigned char>(string.front()));
            string.remove_prefix(1);
        } else if (length == 1) {
            appendCharacter(text, string.front());
            string.remove_prefix(1);
        } else {
            text += string.substr(0, length);
            string.remove_prefix(length);
        }
    }
    text += '"';
}

} // namespace kelmo

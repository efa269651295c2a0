#include "xml/xml_writer.h"

#include <algorithm>
#include <ios>

namespace {

void writeText(std::ofstream& out, std::string_view text) {
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

} // namespace

cXmlWriter::cXmlWriter(const char* fileName) : std::ofstream(fileName) {
    if (is_open()) {
        writeStart(R"(?xml version="1.0" encoding="us-ascii"?)", 0);
    }
}

void cXmlWriter::writeStart(std::string name, int indent) {
    writeIndent(indent);
    writeTag("<", name);
    put('\n');
}

void cXmlWriter::writeEnd(std::string name, int indent, bool newLine) {
    writeIndent(indent);
    writeTag("</", name);
    if (newLine) {
        put('\n');
    }
}

void cXmlWriter::writeIndent(int indent) {
    constexpr std::string_view blanks = "                ";
    while (indent > 0) {
        const auto count = std::min(static_cast<std::size_t>(indent), blanks.size());
        writeText(*this, blanks.substr(0, count));
        indent -= static_cast<int>(count);
    }
}

void cXmlWriter::writeTag(std::string_view opening, std::string_view name) {
    writeText(*this, opening);
    writeText(*this, name);
    put('>');
}

void cXmlWriter::writeNumber(double value) {
    constexpr auto defaultFlags = std::ios_base::skipws | std::ios_base::dec;
    constexpr int defaultPrecision = 6;
    if (flags() == defaultFlags && precision() == defaultPrecision && width() == 0 &&
        getloc() == std::locale::classic()) {
        writeText(*this, cNumberText(value, defaultPrecision).view());
    } else {
        *this << value;
    }
}

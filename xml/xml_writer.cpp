#include "xml/xml_writer.h"

#include "xml/xml_lines.h"

#include <ios>
#include <locale>

namespace kelmo {

cXmlWriter::cXmlWriter(const char* fileName) : std::ofstream(fileName) {
    if (is_open()) {
        writeStart(R"(?xml version="1.0" encoding="us-ascii"?)", 0);
    }
}

void cXmlWriter::writeStart(std::string_view name, int indent) {
    std::string line;
    appendXmlStart(line, name, indent);
    writeText(line);
}

void cXmlWriter::writeEnd(std::string_view name, int indent, bool newLine) {
    std::string line;
    appendXmlEnd(line, name, indent, newLine);
    writeText(line);
}

void cXmlWriter::writeText(std::string_view text) {
    write(text.data(), static_cast<std::streamsize>(text.size()));
}

bool cXmlWriter::hasDefaultFormat() const {
    constexpr auto defaultFlags = std::ios_base::skipws | std::ios_base::dec;
    constexpr int defaultPrecision = 6;
    return flags() == defaultFlags && precision() == defaultPrecision && width() == 0 &&
           getloc() == std::locale::classic();
}

void cXmlWriter::writeNumber(std::string_view name, double value, int indent) {
    std::string line;
    appendXmlElement(line, name, value, indent);
    writeText(line);
}

void cXmlWriter::writeStartTag(std::string_view name, int indent) {
    writeText(std::string(static_cast<std::size_t>(indent > 0 ? indent : 0), ' '));
    writeText("<");
    writeText(name);
    writeText(">");
}

} // namespace kelmo

#include "xml/xml_writer.h"

#include "xml/number_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ios>
#include <locale>

namespace {

constexpr int defaultPrecision = 6;
constexpr std::string_view blanks = "                                ";

/// One line put together before it goes to the stream, which is slow with many small pieces.
class cLine {
  public:
    void append(std::string_view text) {
        std::copy(text.begin(), text.end(), characters.begin() + length);
        length += static_cast<std::ptrdiff_t>(text.size());
    }
    void writeTo(std::ofstream& out) const { out.write(characters.data(), length); }

    static constexpr std::size_t capacity = 256;

  private:
    std::array<char, capacity> characters;
    std::ptrdiff_t length = 0;
};

} // namespace

cXmlWriter::cXmlWriter(const char* fileName) : std::ofstream(fileName) {
    if (is_open()) {
        writeStart(R"(?xml version="1.0" encoding="us-ascii"?)", 0);
    }
}

void cXmlWriter::writeStart(std::string_view name, int indent) {
    writeIndent(indent);
    writeTag("<", name, "\n");
}

void cXmlWriter::writeEnd(std::string_view name, int indent, bool newLine) {
    writeIndent(indent);
    writeTag("</", name, newLine ? "\n" : "");
}

void cXmlWriter::writeIndent(int indent) {
    for (; indent > 0; indent -= static_cast<int>(blanks.size())) {
        const auto count = std::min(static_cast<std::size_t>(indent), blanks.size());
        write(blanks.data(), static_cast<std::streamsize>(count));
    }
}

void cXmlWriter::writeTag(std::string_view opening, std::string_view name,
                          std::string_view lineEnd) {
    write(opening.data(), static_cast<std::streamsize>(opening.size()));
    write(name.data(), static_cast<std::streamsize>(name.size()));
    put('>');
    write(lineEnd.data(), static_cast<std::streamsize>(lineEnd.size()));
}

bool cXmlWriter::hasDefaultFormat() const {
    constexpr auto defaultFlags = std::ios_base::skipws | std::ios_base::dec;
    return flags() == defaultFlags && precision() == defaultPrecision && width() == 0 &&
           getloc() == std::locale::classic();
}

void cXmlWriter::writeNumber(std::string_view name, double value, int indent) {
    const cNumberText number(value, defaultPrecision);
    const auto leading = static_cast<std::size_t>(std::max(indent, 0));
    const std::size_t size = leading + 2 * name.size() + number.view().size() + 6;
    if (leading > blanks.size() || size > cLine::capacity) {
        writeIndent(indent);
        writeTag("<", name, "");
        write(number.view().data(), static_cast<std::streamsize>(number.view().size()));
        writeTag("</", name, "\n");
        return;
    }
    cLine line;
    line.append(blanks.substr(0, leading));
    line.append("<");
    line.append(name);
    line.append(">");
    line.append(number.view());
    line.append("</");
    line.append(name);
    line.append(">\n");
    line.writeTo(*this);
}

#include "xml/xml_lines.h"

#include "base/number_text.h"

#include <algorithm>

namespace kelmo {

namespace {

constexpr int defaultPrecision = 6;

void appendIndent(std::string& text, int indent) {
    text.append(static_cast<std::size_t>(std::max(indent, 0)), ' ');
}

void appendTag(std::string& text, std::string_view opening, std::string_view name,
               std::string_view lineEnd) {
    text.append(opening).append(name).append(">").append(lineEnd);
}

} // namespace

void appendXmlStart(std::string& text, std::string_view name, int indent) {
    appendIndent(text, indent);
    appendTag(text, "<", name, "\n");
}

void appendXmlEnd(std::string& text, std::string_view name, int indent, bool newLine) {
    appendIndent(text, indent);
    appendTag(text, "</", name, newLine ? "\n" : "");
}

void appendXmlElement(std::string& text, std::string_view name, std::string_view value,
                      int indent) {
    appendIndent(text, indent);
    appendTag(text, "<", name, "");
    text.append(value);
    appendTag(text, "</", name, "\n");
}

void appendXmlElement(std::string& text, std::string_view name, double value, int indent) {
    appendXmlElement(text, name, cNumberText(value, defaultPrecision).view(), indent);
}

} // namespace kelmo

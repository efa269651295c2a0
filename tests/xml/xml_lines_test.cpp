// XML elements as lines of text, which are what the writer writes.
#include "tests/support/test_files.h"
#include "xml/xml_lines.h"
#include "xml/xml_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace kelmo {

namespace {

TEST(XmlLines, TagsAreIndentedAndEndTheirLines) {
    std::string text;
    appendXmlStart(text, "a", 2);
    appendXmlEnd(text, "a", 2, true);
    appendXmlStart(text, "b", 0);
    appendXmlEnd(text, "b", -3, false);
    EXPECT_EQ(text, "  <a>\n  </a>\n<b>\n</b>");
}

TEST(XmlLines, ElementsStandOnOneLine) {
    std::string text;
    appendXmlElement(text, "name", "A<B", 4);
    appendXmlElement(text, "v", 0.000123456, -1);
    appendXmlElement(text, "v", 1234567.0, 1);
    EXPECT_EQ(text, "    <name>A<B</name>\n<v>0.000123456</v>\n <v>1.23457e+06</v>\n");
}

TEST(XmlLines, WriterWritesTheSame) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> exponent(-30.0, 30.0);
    const cScratchDirectory scratch;
    const std::string file = scratch.file("lines.xml");
    std::string text;
    {
        cXmlWriter writer(file.c_str());
        text = contentOf(file);
        appendXmlStart(text, R"(?xml version="1.0" encoding="us-ascii"?)", 0);
        for (int i = 0; i < 2000; ++i) {
            const double value = std::pow(10.0, exponent(random)) * (i % 2 == 0 ? 1.0 : -1.0);
            writer.writeStart("s", i % 9);
            writer.writeElement("value", value, i % 40);
            writer.writeEnd("s", i % 9, true);
            appendXmlStart(text, "s", i % 9);
            appendXmlElement(text, "value", value, i % 40);
            appendXmlEnd(text, "s", i % 9, true);
        }
        writer.writeElement("v", std::numeric_limits<double>::infinity(), 2);
        appendXmlElement(text, "v", std::numeric_limits<double>::infinity(), 2);
        writer.writeText("<free/>\n");
        text += "<free/>\n";
    }
    EXPECT_EQ(contentOf(file), text);
}

} // namespace

} // namespace kelmo

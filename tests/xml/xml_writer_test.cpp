// The XML writer byte by byte.
#include "tests/support/test_files.h"
#include "xml/xml_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iomanip>
#include <ios>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <type_traits>

namespace kelmo {

namespace {

const std::string declaration = "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n";

/// What a writer leaves in its file behind the declaration.
std::string written(const std::function<void(cXmlWriter&)>& content) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("report.xml");
    {
        cXmlWriter writer(file.c_str());
        EXPECT_TRUE(writer.isFileOpen());
        content(writer);
        writer.close();
        EXPECT_FALSE(writer.fail());
    }
    const std::string text = contentOf(file);
    EXPECT_EQ(text.substr(0, declaration.size()), declaration);
    return text.substr(std::min(declaration.size(), text.size()));
}

std::string writtenNumber(double value, const std::function<void(cXmlWriter&)>& prepare) {
    return written([&](cXmlWriter& writer) {
        prepare(writer);
        writer.writeElement("v", value, 0);
    });
}

struct sDecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

static_assert(std::is_base_of_v<std::ofstream, cXmlWriter>);

TEST(XmlWriter, FileBeginsWithTheDeclaration) {
    EXPECT_EQ(written([](cXmlWriter&) {}), "");
}

TEST(XmlWriter, StartTagIsIndentedAndEndsItsLine) {
    EXPECT_EQ(written([](cXmlWriter& writer) {
                  writer.writeStart("residues", 2);
                  writer.writeStart("root", 0);
                  writer.writeStart("left", -3);
              }),
              "  <residues>\n<root>\n<left>\n");
}

TEST(XmlWriter, EveryIndentationIsExact) {
    for (int indent = 0; indent <= 70; ++indent) {
        const std::string blanks(static_cast<std::size_t>(indent), ' ');
        EXPECT_EQ(written([&](cXmlWriter& writer) {
                      writer.writeStart("a", indent);
                      writer.writeElement("v", 0.5, indent);
                      writer.writeElement("n", std::string("VAL"), indent);
                      writer.writeEnd("a", indent, true);
                  }),
                  blanks + "<a>\n" + blanks + "<v>0.5</v>\n" + blanks + "<n>VAL</n>\n" + blanks +
                      "</a>\n");
    }
}

TEST(XmlWriter, NamesOfAnyLengthAreWhole) {
    for (const std::size_t length :
         {1U, 50U, 110U, 111U, 112U, 113U, 120U, 128U, 255U, 256U, 5000U}) {
        const std::string name(length, 'n');
        for (const int indent : {0, 12, 32, 33}) {
            const std::string blanks(static_cast<std::size_t>(indent), ' ');
            EXPECT_EQ(written([&](cXmlWriter& writer) {
                          writer.writeElement(name, -1234.5, indent);
                          writer.writeStart(name, indent);
                      }),
                      blanks + "<" + name + ">-1234.5</" + name + ">\n" + blanks + "<" + name +
                          ">\n");
        }
    }
}

TEST(XmlWriter, EndTagEndsItsLineOnlyWhenAsked) {
    EXPECT_EQ(written([](cXmlWriter& writer) {
                  writer.writeEnd("inner", 4, true);
                  writer.writeEnd("outer", 0, false);
                  writer << "next";
              }),
              "    </inner>\n</outer>next");
}

TEST(XmlWriter, ElementStandsOnOneLine) {
    EXPECT_EQ(written([](cXmlWriter& writer) {
                  writer.writeElement("total", 1.5, 4);
                  writer.writeElement("name", std::string("VAL"), 0);
                  writer.writeElement("id", "A", 2);
                  writer.writeElement("count", 7, -1);
                  writer.writeElement("binding_status", true, 6);
                  writer.writeElement("half", 0.5F, 0);
              }),
              "    <total>1.5</total>\n"
              "<name>VAL</name>\n"
              "  <id>A</id>\n"
              "<count>7</count>\n"
              "      <binding_status>1</binding_status>\n"
              "<half>0.5</half>\n");
}

TEST(XmlWriter, NumbersHaveSixSignificantDigits) {
    const auto asIs = [](cXmlWriter&) {};
    EXPECT_EQ(writtenNumber(0.000123456, asIs), "<v>0.000123456</v>\n");
    EXPECT_EQ(writtenNumber(1234567.0, asIs), "<v>1.23457e+06</v>\n");
    EXPECT_EQ(writtenNumber(0.0000123456, asIs), "<v>1.23456e-05</v>\n");
    EXPECT_EQ(writtenNumber(-1.0, asIs), "<v>-1</v>\n");
    EXPECT_EQ(writtenNumber(-0.0, asIs), "<v>-0</v>\n");
    EXPECT_EQ(writtenNumber(2.0 / 3.0, asIs), "<v>0.666667</v>\n");
}

TEST(XmlWriter, InfinitiesAndNotANumberAreWrittenAsTheStreamDoes) {
    const auto asIs = [](cXmlWriter&) {};
    EXPECT_EQ(writtenNumber(std::numeric_limits<double>::infinity(), asIs), "<v>inf</v>\n");
    EXPECT_EQ(writtenNumber(-std::numeric_limits<double>::infinity(), asIs), "<v>-inf</v>\n");
    EXPECT_EQ(writtenNumber(std::numeric_limits<double>::quiet_NaN(), asIs), "<v>nan</v>\n");
}

TEST(XmlWriter, FormattingStateOfTheStreamApplies) {
    using tPrepare = std::function<void(cXmlWriter&)>;
    const double value = 1234.5678;
    EXPECT_EQ(writtenNumber(value, [](auto& w) { w.precision(8); }), "<v>1234.5678</v>\n");
    EXPECT_EQ(writtenNumber(value, [](auto& w) { w.precision(2); }), "<v>1.2e+03</v>\n");
    EXPECT_EQ(writtenNumber(value, [](auto& w) { w << std::fixed; }), "<v>1234.567800</v>\n");
    EXPECT_EQ(writtenNumber(value, tPrepare([](auto& w) { w << std::scientific; })),
              "<v>1.234568e+03</v>\n");
    EXPECT_EQ(writtenNumber(value, [](auto& w) { w << std::showpos; }), "<v>+1234.57</v>\n");
    EXPECT_EQ(writtenNumber(1.0, [](auto& w) { w << std::showpoint; }), "<v>1.00000</v>\n");
    EXPECT_EQ(writtenNumber(1e10, [](auto& w) { w << std::uppercase; }), "<v>1E+10</v>\n");
    EXPECT_EQ(writtenNumber(0.5, [](auto& w) { w << std::hexfloat; }), "<v>0x1p-1</v>\n");
    EXPECT_EQ(writtenNumber(value, [](auto& w) { w.width(10); }), "<v>   1234.57</v>\n");
    EXPECT_EQ(
        writtenNumber(value, [](auto& w) { w << std::left << std::setfill('_') << std::setw(9); }),
        "<v>1234.57__</v>\n");
}

TEST(XmlWriter, LocaleOfTheStreamApplies) {
    EXPECT_EQ(writtenNumber(1234.5,
                            [](cXmlWriter& writer) {
                                writer.imbue(
                                    std::locale(std::locale::classic(), new sDecimalComma));
                            }),
              "<v>1.234,5</v>\n");
}

TEST(XmlWriter, FormattingStateCanBeRestored) {
    EXPECT_EQ(written([](cXmlWriter& writer) {
                  writer.precision(3);
                  writer.writeElement("v", 1.23456789, 0);
                  writer.precision(6);
                  writer.writeElement("v", 1.23456789, 0);
              }),
              "<v>1.23</v>\n<v>1.23457</v>\n");
}

TEST(XmlWriter, NothingIsEscaped) {
    EXPECT_EQ(written([](cXmlWriter& writer) {
                  writer.writeStart("a&b", 0);
                  writer.writeElement("n", std::string("<&>\xE9"), 0);
                  writer.writeEnd("a&b", 0, true);
              }),
              "<a&b>\n<n><&>\xE9</n>\n</a&b>\n");
}

TEST(XmlWriter, OtherOutputGoesToTheSameFileInOrder) {
    EXPECT_EQ(written([](cXmlWriter& writer) {
                  writer.writeStart("a", 0);
                  writer << "between " << 1 << '\n';
                  writer.writeEnd("a", 0, true);
              }),
              "<a>\nbetween 1\n</a>\n");
}

TEST(XmlWriter, OlderContentIsReplaced) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("report.xml");
    writeContent(file, std::string(10000, 'x'));
    cXmlWriter(file.c_str()).close();
    EXPECT_EQ(contentOf(file), declaration);
}

TEST(XmlWriter, DestructorClosesAndAddsNothing) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("report.xml");
    {
        cXmlWriter writer(file.c_str());
        writer.writeStart("left_open", 0);
    }
    EXPECT_EQ(contentOf(file), declaration + "<left_open>\n");
}

TEST(XmlWriter, FileThatCannotBeOpenedLeavesTheStreamFailed) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("missing/report.xml");
    cXmlWriter writer(file.c_str());
    EXPECT_FALSE(writer.isFileOpen());
    EXPECT_TRUE(writer.fail());
    writer.writeStart("a", 0);
    writer.writeElement("v", 1.0, 2);
    writer.writeEnd("a", 0, true);
    EXPECT_FALSE(std::filesystem::exists(scratch.path() / "missing"));

    cXmlWriter onDirectory(scratch.path().c_str());
    EXPECT_FALSE(onDirectory.isFileOpen());
}

TEST(XmlWriter, ClosingFailsWhenTheDeviceIsFull) {
    cXmlWriter writer("/dev/full");
    ASSERT_TRUE(writer.isFileOpen());
    writer.writeStart("a", 0);
    EXPECT_FALSE(writer.fail()) << "nothing was handed on so far";
    writer.close();
    EXPECT_TRUE(writer.fail());
}

TEST(XmlWriter, LongContentShowsTheFullDeviceBeforeClosing) {
    cXmlWriter writer("/dev/full");
    for (int i = 0; i < 100000 && writer; ++i) {
        writer.writeElement("value", 1.0, 8);
    }
    EXPECT_TRUE(writer.fail());
}

TEST(XmlWriter, ManyElementsAreAllThere) {
    constexpr int count = 100000;
    const std::string text = written([](cXmlWriter& writer) {
        for (int i = 0; i < count; ++i) {
            writer.writeElement("v", i * 0.5, 2);
        }
    });
    std::ostringstream expected;
    for (int i = 0; i < count; ++i) {
        expected << "  <v>" << i * 0.5 << "</v>\n";
    }
    EXPECT_EQ(text, expected.str());
}

} // namespace kelmo

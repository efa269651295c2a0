// Escaped texts, checked by hand, against the toolkit's decoder and with an XML parser.
#include "tests/support/test_files.h"
#include "tests/support/text_difference.h"
#include "xml/xml_text.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringDecoder>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

namespace {

/// The code points that a text shows as: its characters when it is UTF-8, its bytes otherwise, with
/// "?" for what XML does not allow.
std::vector<char32_t> shownCharacters(const std::string& text) {
    std::vector<char32_t> characters;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = decoder(QByteArray::fromStdString(text));
    if (QByteArray::fromStdString(text).isValidUtf8()) {
        for (const uint point : decoded.toUcs4()) {
            characters.push_back(point);
        }
    } else {
        for (const char byte : text) {
            characters.push_back(static_cast<unsigned char>(byte));
        }
    }
    for (char32_t& point : characters) {
        if ((point < 0x20 && point != '\t') || point == 0xFFFE || point == 0xFFFF) {
            point = '?';
        }
    }
    return characters;
}

std::string utf8Of(const std::vector<char32_t>& characters) {
    QString text;
    for (const char32_t character : characters) {
        text +=
            QChar::fromUcs4(character); // one by one: as a whole, a leading U+FEFF would be lost
    }
    return text.toStdString();
}

/// Random bytes of several kinds: any byte, ASCII with markup, valid UTF-8, and valid UTF-8 in
/// which single bytes were changed.
class cTexts {
  public:
    explicit cTexts(unsigned seed) : generator(seed) {}

    std::string next() {
        const auto length = static_cast<unsigned>(generator() % 12);
        std::string text;
        switch (generator() % 4) {
        case 0:
            for (unsigned i = 0; i < length; ++i) {
                text += static_cast<char>(generator() % 256);
            }
            return text;
        case 1:
            for (unsigned i = 0; i < length; ++i) {
                text += "&<>]'\";a x\t\n\r\x01\x7f"[generator() % 16];
            }
            return text;
        case 2:
            return validText(length);
        default:
            text = validText(length);
            if (!text.empty()) {
                text[generator() % text.size()] = static_cast<char>(generator() % 256);
            }
            return text;
        }
    }

  private:
    std::string validText(unsigned length) {
        std::vector<char32_t> characters;
        for (unsigned i = 0; i < length; ++i) {
            characters.push_back(anyCharacter());
        }
        return utf8Of(characters);
    }

    char32_t anyCharacter() {
        constexpr char32_t oddOnes[] = {0x7F,   0x80,   0x85,   0xA0,   0x7FF,  0x800,   0xD7FF,
                                        0xE000, 0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF, 0x10000, 0x10FFFF};
        switch (generator() % 5) {
        case 0:
            return oddOnes[generator() % std::size(oddOnes)];
        case 1:
            return static_cast<char32_t>(0x10000 + generator() % 0x100000);
        case 2:
            return static_cast<char32_t>(generator() % 0xD800);
        default:
            return static_cast<char32_t>(generator() % 0x100);
        }
    }

    std::mt19937 generator;
};

/// A text as the parser writes it again in UTF-8.
std::string reparsedText(const std::vector<char32_t>& characters) {
    std::string out;
    for (const char c : utf8Of(characters)) {
        out += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    }
    return out;
}

} // namespace

TEST(XmlText, MarkupIsEscaped) {
    EXPECT_EQ(escapedXmlText("a&b<c>d"), "a&amp;b&lt;c&gt;d");
    EXPECT_EQ(escapedXmlText("&amp;"), "&amp;amp;");
    EXPECT_EQ(escapedXmlText("]]>"), "]]&gt;");
}

TEST(XmlText, PlainTextStaysAsItIs) {
    EXPECT_EQ(escapedXmlText(""), "");
    EXPECT_EQ(escapedXmlText("O5*"), "O5*");
    EXPECT_EQ(escapedXmlText("/data/my radii.txt"), "/data/my radii.txt");
    EXPECT_EQ(escapedXmlText("'\"~\x7f"), "'\"~\x7f");
}

TEST(XmlText, ControlCharactersBecomeQuestionMarksButTheTab) {
    EXPECT_EQ(escapedXmlText("a\tb"), "a\tb");
    EXPECT_EQ(escapedXmlText("a\nb\rc\x1f"), "a?b?c?");
    EXPECT_EQ(escapedXmlText(std::string_view("\0x", 2)), "?x");
}

TEST(XmlText, ValidUtf8BecomesCodePoints) {
    EXPECT_EQ(escapedXmlText("caf\xC3\xA9"), "caf&#233;");
    EXPECT_EQ(escapedXmlText("\xE2\x82\xAC"), "&#8364;");
    EXPECT_EQ(escapedXmlText("\xF0\x9F\x98\x80!"), "&#128512;!");
    EXPECT_EQ(escapedXmlText("\xF4\x8F\xBF\xBF"), "&#1114111;");
    EXPECT_EQ(escapedXmlText("\xC2\x80"), "&#128;");
}

TEST(XmlText, OtherBytesBecomeTheirValues) {
    EXPECT_EQ(escapedXmlText("caf\xE9"), "caf&#233;");
    EXPECT_EQ(escapedXmlText("\xFF<"), "&#255;&lt;");
    // One bad byte makes all of the text bytes.
    EXPECT_EQ(escapedXmlText("\xC3\xA9\xE9"), "&#195;&#169;&#233;");
}

TEST(XmlText, IllFormedUtf8IsTakenAsBytes) {
    EXPECT_EQ(escapedXmlText("\xC3"), "&#195;");                     // cut short
    EXPECT_EQ(escapedXmlText("\xC0\xBC"), "&#192;&#188;");           // overlong "<"
    EXPECT_EQ(escapedXmlText("\xE0\x9F\xBF"), "&#224;&#159;&#191;"); // overlong
    EXPECT_EQ(escapedXmlText("\xF0\x8F\xBF\xBF"), "&#240;&#143;&#191;&#191;");
    EXPECT_EQ(escapedXmlText("\xED\xA0\x80"), "&#237;&#160;&#128;");           // surrogate
    EXPECT_EQ(escapedXmlText("\xF4\x90\x80\x80"), "&#244;&#144;&#128;&#128;"); // too large
    EXPECT_EQ(escapedXmlText("\x80"), "&#128;");                               // continuation alone
    EXPECT_EQ(escapedXmlText("\xE2\x82"
                             "A"),
              "&#226;&#130;A");
}

TEST(XmlText, NonCharactersThatXmlForbidsBecomeQuestionMarks) {
    EXPECT_EQ(escapedXmlText("\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBF\xBD"), "??&#65533;");
}

TEST(XmlText, RandomBytesAreWhatTheParserReadsBack) {
    constexpr int documentCount = 20;
    constexpr int textsPerDocument = 2000;
    const cScratchDirectory scratch;
    cTexts texts(7);
    for (int document = 0; document < documentCount; ++document) {
        std::string written = "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n<texts>\n";
        std::string expected = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<texts>\n";
        for (int i = 0; i < textsPerDocument; ++i) {
            const std::string text = texts.next();
            const std::string escaped = escapedXmlText(text);
            ASSERT_TRUE(std::all_of(escaped.begin(), escaped.end(),
                                    [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
            written += "<text>." + escaped + "</text>\n";
            expected += "<text>." + reparsedText(shownCharacters(text)) + "</text>\n";
        }
        writeContent(scratch.file("written.xml"), written + "</texts>\n");
        const std::string command = std::string(XMLLINT_PROGRAM) + " --encode UTF-8 --output '" +
                                    scratch.file("read.xml") + "' '" + scratch.file("written.xml") +
                                    "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        ASSERT_EQ(firstDifference(contentOf(scratch.file("read.xml")), expected + "</texts>\n"),
                  "");
    }
}

TEST(XmlText, ParsersTakeNoMarkupAndNothingBeyondAscii) {
    EXPECT_TRUE(isXmlText(""));
    EXPECT_TRUE(isXmlText(" A>b]] > ]> \"'\t\r\n\x7F"));
    for (const char* text : {"&", "a<", "]]>", "a\x01", "\x1B[0m", "caf\xC3\xA9", "\xE9"}) {
        EXPECT_FALSE(isXmlText(text)) << text;
    }
}

} // namespace kelmo

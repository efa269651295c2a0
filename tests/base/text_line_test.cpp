// Lines of tables and lists, also of those that are no text.
#include "base/text_line.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <vector>

namespace kelmo {

namespace {

using tLines = std::vector<std::string>;

template <typename Get>
tLines linesOf(const std::string& text, Get get) {
    std::istringstream in(text);
    tLines lines;
    for (std::string line; get(in, line);) {
        lines.push_back(line);
    }
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.bad());
    return lines;
}

TEST(TextLine, IsThatOfTheStandardLibrary) {
    const auto usual = [](std::istream& in, std::string& line) -> std::istream& {
        return std::getline(in, line);
    };
    std::mt19937 generator(6);
    for (int i = 0; i < 10000; ++i) {
        std::string text;
        for (unsigned length = static_cast<unsigned>(generator()) % 12; length > 0; --length) {
            text += "a\n\r\0\xFF"[generator() % 5];
        }
        ASSERT_EQ(linesOf(text, getTextLine), linesOf(text, usual)) << text;
    }
}

TEST(TextLine, EndsWhereNoLineOfATextWould) {
    std::istringstream in(std::string(longestTextLine, 'a') + '\n' +
                          std::string(longestTextLine + 2, 'b') + "\nc");
    std::string line;
    EXPECT_TRUE(getTextLine(in, line));
    EXPECT_EQ(line.size(), longestTextLine) << "a line of the greatest length is one";
    EXPECT_TRUE(getTextLine(in, line));
    EXPECT_EQ(line.size(), longestTextLine + 1);
    EXPECT_TRUE(getTextLine(in, line));
    EXPECT_EQ(line, "b") << "the rest stays unread";
}

TEST(TextLine, ReadErrorLeavesTheStreamBad) {
    class cBroken : public std::streambuf {
        int_type underflow() override { throw std::runtime_error("broken"); }
    };
    cBroken buffer;
    std::istream in(&buffer);
    std::string line;
    EXPECT_FALSE(getTextLine(in, line));
    EXPECT_TRUE(in.bad());
}

} // namespace

} // namespace kelmo

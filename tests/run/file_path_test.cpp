// Names of the file system in strings and back, and which files are opened.
#include "run/file_path.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <sys/types.h>

namespace kelmo {

namespace {

/// Random names without NUL: any bytes, valid UTF-8 pieces, and both mixed.
class cNames {
  public:
    explicit cNames(unsigned seed) : generator(seed) {}

    std::string next() {
        constexpr std::string_view pieces[] = {"a",
                                               "/",
                                               ".pdb",
                                               "\xC3\xA9",
                                               "\xE2\x82\xAC",
                                               "\xF0\x9F\x98\x80",
                                               "\x80",
                                               "\xFF",
                                               "\xED\xB2\x80",
                                               "\xED\xA0\x80",
                                               "\xF0\x9F",
                                               "\xC2",
                                               "\xEF\xBB\xBF",
                                               "\xEF\xBF\xBD",
                                               "\xC0\x80",
                                               "\xF4\x90\x80\x80",
                                               "\xEE\x80\x80",
                                               " "};
        std::string name;
        const auto length = generator() % 10;
        for (unsigned i = 0; i < length; ++i) {
            if (generator() % 3 == 0) {
                name += static_cast<char>(1 + generator() % 255);
            } else {
                name += pieces[generator() % std::size(pieces)];
            }
        }
        return name;
    }

  private:
    std::mt19937 generator;
};

} // namespace

TEST(FilePath, EveryNameComesBackAsItWas) {
    constexpr int nameCount = 300'000;
    cNames names(11);
    for (int i = 0; i < nameCount; ++i) {
        const std::string name = names.next();
        ASSERT_EQ(pathToBytes(pathFromBytes(name)), name);
    }
}

TEST(FilePath, ByteOrderMarkIsPartOfTheName) {
    for (const std::string name :
         {"\xEF\xBB\xBFname", "dir/\xEF\xBB\xBFname\xFF", "\xEF\xBB\xBF"}) {
        EXPECT_EQ(pathToBytes(pathFromBytes(name)), name);
    }
}

TEST(FilePath, ValidUtf8IsPlainText) {
    EXPECT_EQ(pathFromBytes("caf\xC3\xA9.pdb"), QString::fromUtf8("caf\xC3\xA9.pdb"));
    EXPECT_EQ(pathFromBytes(""), QString());
    EXPECT_EQ(pathToBytes(QString::fromUtf8("\xF0\x9F\x98\x80")), "\xF0\x9F\x98\x80");
}

TEST(FilePath, OtherBytesAreLoneLowSurrogates) {
    const QString path = pathFromBytes("a\xFF\xC3\xA9");
    ASSERT_EQ(path.size(), 3);
    EXPECT_EQ(path[1].unicode(), 0xDCFF);
    EXPECT_EQ(path[2].unicode(), 0xE9);
}

TEST(FilePath, DifferentNamesStayDifferent) {
    EXPECT_NE(pathFromBytes("\xFF"), pathFromBytes("\xFE"));
    // What would be the escape of 0x80, were it text, is three bytes that are no text.
    EXPECT_NE(pathFromBytes("\xED\xB2\x80"), pathFromBytes("\x80"));
}

TEST(FilePath, DisplayShowsTheReplacementCharacter) {
    EXPECT_EQ(displayedPath(pathFromBytes("a\xFF.pdb")), QString::fromUtf8("a\xEF\xBF\xBD.pdb"));
    EXPECT_EQ(displayedPath(QStringLiteral("/in/1abc.pdb")), QStringLiteral("/in/1abc.pdb"));
}

TEST(FilePath, DisplayShowsAByteOrderMarkAsTheReplacementCharacter) {
    for (const std::string name : {"\xEF\xBB\xBF.pdb", "\xEF\xBB\xBF\xFF.pdb"}) {
        const QString shown = displayedPath(pathFromBytes(name));
        EXPECT_EQ(shown, QString(shown.size() - 4, QChar::ReplacementCharacter) + ".pdb");
    }
}

TEST(FilePath, RegularFilesAreOpenedWhateverTheirName) {
    const cScratchDirectory scratch;
    for (const std::string name : {"plain.pdb", "caf\xC3\xA9.pdb", "bad\xFF\xC3.pdb", "a\nb.pdb"}) {
        writeContent(scratch.file(name), "content");
        std::ifstream in;
        ASSERT_TRUE(openRegularFile(in, pathFromBytes(scratch.file(name))));
        std::string text;
        EXPECT_TRUE(std::getline(in, text));
        EXPECT_EQ(text, "content");
    }
}

TEST(FilePath, LinksAreFollowed) {
    const cScratchDirectory scratch;
    writeContent(scratch.file("file"), "x");
    std::filesystem::create_symlink(scratch.file("file"), scratch.file("link"));
    std::filesystem::create_symlink(scratch.path(), scratch.file("link-to-directory"));
    std::filesystem::create_symlink(scratch.file("nothing"), scratch.file("dangling"));
    std::ifstream in;
    EXPECT_TRUE(openRegularFile(in, pathFromBytes(scratch.file("link"))));
    std::ifstream other;
    EXPECT_FALSE(openRegularFile(other, pathFromBytes(scratch.file("link-to-directory"))));
    EXPECT_FALSE(openRegularFile(other, pathFromBytes(scratch.file("dangling"))));
}

TEST(FilePath, WhatIsNoRegularFileIsRefused) {
    const cScratchDirectory scratch;
    ASSERT_EQ(::mkfifo(scratch.file("pipe").c_str(), 0600), 0);
    writeContent(scratch.file("file"), "x");
    for (const std::string& path :
         {scratch.path().string(), scratch.file("pipe"), std::string("/dev/zero"),
          std::string("/dev/null"), scratch.file("missing"), scratch.file("file") + "/",
          std::string()}) {
        std::ifstream in;
        EXPECT_FALSE(openRegularFile(in, pathFromBytes(path))) << path;
        EXPECT_FALSE(in.is_open());
    }
    std::ifstream in;
    EXPECT_FALSE(openRegularFile(in, pathFromBytes(scratch.file("file") + '\0' + "tail")));
}

TEST(FilePath, BaseNameEndsAtTheFirstDot) {
    EXPECT_EQ(baseNameOf(QStringLiteral("/in/1abc.pdb")), QStringLiteral("1abc"));
    EXPECT_EQ(baseNameOf(QStringLiteral("1abc.model1.pdb")), QStringLiteral("1abc"));
    EXPECT_EQ(baseNameOf(QStringLiteral("/in.d/x.y/1abc")), QStringLiteral("1abc"));
    EXPECT_EQ(baseNameOf(QStringLiteral("in/.hidden.pdb")), QString());
    EXPECT_EQ(baseNameOf(QStringLiteral("in\\1abc.pdb")), QStringLiteral("in\\1abc"));
    EXPECT_EQ(pathToBytes(baseNameOf(pathFromBytes("/in\xFE/bad\xFF.x.pdb"))), "bad\xFF");
}

TEST(FilePath, SeparatorIsAddedUnlessThereIsOne) {
    EXPECT_EQ(withTrailingSeparator(QStringLiteral("/data/out")), QStringLiteral("/data/out/"));
    EXPECT_EQ(withTrailingSeparator(QStringLiteral("/data/out/")), QStringLiteral("/data/out/"));
    EXPECT_EQ(withTrailingSeparator(QStringLiteral("out\\")), QStringLiteral("out\\"));
    EXPECT_EQ(withTrailingSeparator(QString()), QStringLiteral("/"));
}

} // namespace kelmo

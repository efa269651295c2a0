// What a file was: size, times and SHA-256.
#include "results/file_identity.h"

#include "tests/support/test_files.h"

#include <gtest/gtest.h>

namespace kelmo {

// The examples of FIPS 180-4.

TEST(FileIdentity, Sha256OfTheStandardsExamples) {
    EXPECT_EQ(sha256Of("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(sha256Of(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256Of(std::string(1'000'000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(FileIdentity, OfAFileLargerThanABlockIsThatOfItsBytes) {
    const cScratchDirectory directory;
    const std::string content(1'000'000, 'a');
    directory.write("a", content);
    const auto identity = identityOf(directory.file("a"));
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->size, content.size());
    EXPECT_EQ(identity->sha256, sha256Of(content));
    EXPECT_EQ(identity, identityOf(directory.file("a")));
}

TEST(FileIdentity, ChangesWithTheFile) {
    const cScratchDirectory directory;
    directory.write("a", "one");
    const auto before = identityOf(directory.file("a"));
    directory.write("b", "two");
    std::filesystem::rename(directory.path() / "b", directory.path() / "a");
    const auto behind = identityOf(directory.file("a"));
    ASSERT_TRUE(before && behind);
    EXPECT_NE(before->sha256, behind->sha256);
    EXPECT_NE(before->changed, behind->changed);
    EXPECT_FALSE(before == behind);
}

TEST(FileIdentity, OnlyRegularFilesHaveOne) {
    const cScratchDirectory directory;
    EXPECT_FALSE(identityOf(directory.path().string()));
    EXPECT_FALSE(identityOf(directory.file("missing")));
    EXPECT_FALSE(identityOf("/dev/null"));
    EXPECT_FALSE(identityOf(std::string("/dev/null\0", 10)));
}

} // namespace kelmo

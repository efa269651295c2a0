// How a results file is opened.
#include "results/database.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

TEST(Database, FollowsItsUsersOwnLink) {
    const cScratchDirectory directory;
    directory.write("real.sqlite", "");
    std::filesystem::create_symlink("real.sqlite", directory.file("link.sqlite"));
    cDatabase database(directory.file("link.sqlite"), cDatabase::eMode::create);
    database.execute("CREATE TABLE t (c)");
    EXPECT_GT(std::filesystem::file_size(directory.file("real.sqlite")), 0U);
}

TEST(Database, DoesNotWriteThroughTheLinkOfAnotherUser) {
    const cScratchDirectory directory;
    directory.write("private", "");
    std::string link = directory.file("link.sqlite");
    if (::geteuid() == 0) {
        constexpr uid_t another = 65534;
        std::filesystem::create_symlink("private", link);
        ASSERT_EQ(::lchown(link.c_str(), another, static_cast<gid_t>(-1)), 0);
    } else {
        link = "/bin"; // the superuser's, on every Debian
    }
    ASSERT_TRUE(std::filesystem::is_symlink(link));
    for (const auto mode : {cDatabase::eMode::create, cDatabase::eMode::readWrite}) {
        try {
            cDatabase database(link, mode);
            FAIL() << "opened";
        } catch (const cResultError& error) {
            EXPECT_EQ(std::string(error.what()),
                      "results file " + link + ": it is a link of another user");
        }
    }
    EXPECT_EQ(contentOf(directory.file("private")), "");
}

} // namespace kelmo

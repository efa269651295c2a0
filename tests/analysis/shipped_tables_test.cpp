// Where the shipped tables are looked for; that an installed program does not look at its sources
// is tested with the programs themselves.
#include "analysis/shipped_tables.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace kelmo {

TEST(ShippedDirectories, ProgramWhereItWasBuiltLooksAtTheSourcesFirst) {
    const std::vector<std::filesystem::path> directories = shippedDataDirectories();
    ASSERT_EQ(directories.size(), 3U);
    EXPECT_TRUE(std::filesystem::equivalent(directories[0], KELMO_SOURCE_DIR "/data"));
    EXPECT_TRUE(std::filesystem::exists(directories[0] / "protor.radii"));
}

TEST(ShippedDirectories, ThenBesideTheProgramThenInTheInstallation) {
    const std::vector<std::filesystem::path> directories = shippedDataDirectories();
    ASSERT_EQ(directories.size(), 3U);
    EXPECT_EQ(directories[1], std::filesystem::path(KELMO_BINARY_DIR) / "share" / "kelmo");
    EXPECT_TRUE(directories[2].is_absolute());
    EXPECT_EQ(directories[2].filename(), "kelmo");
}

} // namespace kelmo

// Where the tables are looked for that come with the program.
#pragma once

#include <filesystem>
#include <vector>

namespace kelmo {

/// The directories that are searched, first to last: the source tree's when the program is run
/// where it was built, share/kelmo beside the directory of the program, the directory of the
/// installation.
std::vector<std::filesystem::path> shippedDataDirectories();

} // namespace kelmo

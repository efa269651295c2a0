// The parameter tables that come with the program, and where they are looked for.
#pragma once

#include "base/exported.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace KELMO_API kelmo {

/// The directories that are searched, first to last: the source tree's when the program is run
/// where it was built, share/kelmo beside the directory of the program, the directory of the
/// installation.
std::vector<std::filesystem::path> shippedDataDirectories();

/// The path of a table such as "protor.radii": in the first directory that has it. Empty when none
/// has.
std::filesystem::path findShippedTable(const std::string& fileName);

/// The path of a table that must be there: throws cUsageError, which names the directories that
/// were searched, when none has it.
std::filesystem::path shippedTable(const std::string& fileName);

/// All tables whose names end in the suffix, for example ".radii", by name; each from the first
/// directory that has it.
std::vector<std::filesystem::path> shippedTables(std::string_view suffix);

} // namespace kelmo

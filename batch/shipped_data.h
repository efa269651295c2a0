// Where the tables are that come with the program.
#pragma once

#include <QString>

#include <filesystem>
#include <vector>

/// The directories that are searched, first to last: the source tree's when the program is run
/// where it was built, share/kelmo beside the directory of the program, the directory of the
/// installation.
std::vector<std::filesystem::path> shippedDataDirectories();

/// The path of a table such as "protor.radii". Throws cUsageError when no directory has it.
QString shippedTable(const char* fileName);

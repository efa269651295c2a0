// Where the tables are that come with the program.
#pragma once

#include "run/shipped_directories.h"

#include <QString>

namespace kelmo {

/// The path of a table such as "protor.radii". Throws cUsageError when no directory has it.
QString shippedTable(const char* fileName);

} // namespace kelmo

// The directory that the reports of a run go to.
#pragma once

#include "batch/configuration.h"

namespace kelmo {

/// The directory of the command line, else of the configuration, else the current one; it ends in a
/// slash. Throws cUsageError when there is no such directory.
QString outputDirectory(const sOptions& options, const cConfiguration& configuration);

/// Throws cUsageError when no file can be created in the directory, which would cost a whole run.
void checkWritable(const QString& directory);

} // namespace kelmo

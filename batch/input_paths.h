// The PDB files of a run, gathered from the command line and list files.
#pragma once

#include "batch/options.h"

#include <QStringList>

#include <vector>

/// The paths in the order in which they are named; a list file's stand where the list stands. Empty
/// lines of a list are passed over. Throws cUsageError when a list cannot be read.
QStringList inputPaths(const std::vector<sInputSource>& sources);

/// One warning for each file whose reports will replace those of an earlier one, because the names
/// of both are the same up to the first dot.
QStringList sameBaseNameWarnings(const QStringList& paths);

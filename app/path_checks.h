// Checks of paths that the user gave.
#pragma once

#include <QString>

namespace kelmo {

/// False also when the system does not let us look.
bool isDirectory(const QString& path);

} // namespace kelmo

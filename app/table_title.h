// What a parameter table says of itself.
#pragma once

#include <QString>

namespace kelmo {

/// The first comment line of a table; empty when it has none.
QString tableTitle(const QString& path);

} // namespace kelmo

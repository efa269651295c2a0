// The parameter tables that come with the program.
#pragma once

#include <QString>
#include <QStringList>

namespace kelmo {

inline const QString contactTableName = QStringLiteral("aa_contacts.txt");

/// The first directory of shipped tables that exists; empty when there is none.
QString shippedTablesDirectory();

/// Full paths of the shipped tables whose names end in the suffix, for example ".radii", by name.
QStringList shippedTables(const QString& suffix);

/// What a table says of itself in its first comment line; empty when it has none.
QString tableTitle(const QString& path);

} // namespace kelmo

// File names as the system has them, bytes of any encoding, in the toolkit's strings and back.
#pragma once

#include <QString>

#include <fstream>
#include <string>
#include <string_view>

namespace kelmo {

/// A name of the file system as a string. Bytes that are no UTF-8 become lone low surrogates
/// (U+DC80 to U+DCFF), which occur in no valid text, so that the way back is exact.
QString pathFromBytes(std::string_view bytes);

/// The bytes of a path made by pathFromBytes or by the toolkit.
std::string pathToBytes(const QString& path);

/// The path for people: what is no UTF-8 shows as the replacement character, a byte order mark too.
QString displayedPath(const QString& path);

/// Opens a regular file for reading; anything else (a directory, a pipe, a device) is refused,
/// because reading it might never end.
bool openRegularFile(std::ifstream& in, const QString& path);

/// The file name without its directory and without everything from its first dot on.
QString baseNameOf(const QString& path);

/// The directory with a separator at its end; a trailing backslash counts as one.
QString withTrailingSeparator(const QString& directory);

} // namespace kelmo

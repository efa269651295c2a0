// Opening files of which reading comes to an end.
#pragma once

#include <fstream>
#include <string>

namespace kelmo {

/// Opens a regular file for reading; anything else (a directory, a pipe, a device) is refused,
/// because reading it might never end. The path is bytes of any encoding.
bool openRegularFile(std::ifstream& in, const std::string& path);

/// Whether there is a directory of this name; false also when the system does not let us look.
bool isDirectory(const std::string& path);

} // namespace kelmo

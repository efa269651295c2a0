// Opening files of which reading comes to an end.
#pragma once

#include "base/exported.h"

#include <fstream>
#include <string>

namespace KELMO_API kelmo {

/// Opens a regular file for reading; anything else (a directory, a pipe, a device) is refused,
/// because reading it might never end. What claims to be a regular file, as much under /proc does,
/// but has nothing to say yet makes the stream bad instead of waiting. The path is bytes of any
/// encoding. Throws sStopped as openToRead() does.
bool openRegularFile(std::ifstream& in, const std::string& path);

/// A descriptor for reading, -1 with an errno when there is none. Neither opening nor reading
/// waits: not for the writer of a pipe, not for a device. Only whoever holds a lease on the file, a
/// file server as a rule, has a minute to give it up; sStopped is thrown when a stop is wanted
/// before.
int openToRead(const std::string& path);

/// Why reading failed, in words for people, by its errno.
std::string readFailureText(int error);

/// Whether there is a directory of this name; false also when the system does not let us look.
bool isDirectory(const std::string& path);

} // namespace kelmo

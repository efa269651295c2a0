// Names that come from outside, made fit to be shown to people.
#pragma once

#include "base/exported.h"

#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// Bytes of any encoding as UTF-8, for a log that is no terminal. What is no UTF-8 becomes the
/// replacement character U+FFFD, byte by byte; a byte order mark, which takes no room so that two
/// names would look the same, too. Other characters that one cannot see but that change how the
/// rest is shown (those of directions above all) appear as their numbers, "<U+202E>", and "?"
/// stands for line ends and for the control characters beyond ASCII, so that a name can neither
/// break a message in two nor pass for another one.
std::string displayedText(std::string_view bytes);

/// Besides, "?" for every control character: a name cannot send commands to a terminal either.
std::string shownText(std::string_view bytes);

/// The bytes as they are but with "?" for every one of `lineEnds`: a name in a file of lines cannot
/// begin another line.
std::string inOneLine(std::string_view bytes, std::string_view lineEnds = "\n");

/// How many bytes of the text are its first character, 1 to 4; 0 when it does not begin with
/// well-formed UTF-8.
std::size_t characterLength(std::string_view text);

} // namespace kelmo

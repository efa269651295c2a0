// Names that come from outside, made fit to be shown to people.
#pragma once

#include <string>
#include <string_view>

namespace kelmo {

/// Bytes of any encoding as UTF-8: what is none becomes the replacement character U+FFFD, byte by
/// byte; a byte order mark, which takes no room so that two names would look the same, too.
std::string displayedText(std::string_view bytes);

/// Besides, "?" for every control character, line ends included: a file name can neither break a
/// message in two nor send commands to a terminal.
std::string shownText(std::string_view bytes);

/// How many bytes of the text are its first character, 1 to 4; 0 when it does not begin with
/// well-formed UTF-8.
std::size_t characterLength(std::string_view text);

} // namespace kelmo

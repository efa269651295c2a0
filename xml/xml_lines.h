// XML elements as lines of text, one per line and indented, for putting reports together in memory.
#pragma once

#include "base/exported.h"

#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// @name Lines of elements
/// Nothing is escaped. A negative indentation is none.
///@{

/// Appends `indent` blanks, the name between angle brackets, a line end.
void appendXmlStart(std::string& text, std::string_view name, int indent);
/// Appends `indent` blanks and the end tag; without `newLine` the next text continues on its line.
void appendXmlEnd(std::string& text, std::string_view name, int indent, bool newLine);
/// Appends `indent` blanks and start tag, value and end tag on one line.
void appendXmlElement(std::string& text, std::string_view name, std::string_view value, int indent);
/// Appends an element that holds a number as a stream writes it by default: six significant digits.
void appendXmlElement(std::string& text, std::string_view name, double value, int indent);

///@}

} // namespace kelmo

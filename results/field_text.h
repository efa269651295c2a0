// Values as they stand in text formats: fields of a table with tabs, and JSON.
#pragma once

#include "results/result_tables.h"

#include <string>
#include <string_view>

namespace kelmo {

/// Adds a field of a table whose columns have tabs between them. What would end a field, and what
/// begins with a quotation mark, stands in quotation marks, with those in it doubled, as RFC 4180
/// has it for commas. Nothing is an empty field, and so is what is not a number.
void appendField(std::string& text, const sCell& cell);
/// Adds a text as such a field.
void appendField(std::string& text, std::string_view field);

/// Adds a value as JSON: nothing and what is not a number is null, infinity 1e999.
void appendJson(std::string& text, const sCell& cell);
/// Adds a JSON string, all of it UTF-8. A byte that is no UTF-8 becomes the lone surrogate U+DC80
/// to U+DCFF, from which Python's os.fsencode() and the like make the same byte.
void appendJson(std::string& text, std::string_view string);

} // namespace kelmo

// The values of form fields as lines of 8-bit text, and back.
#pragma once

#include <QString>

#include <string>
#include <variant>

class QAbstractButton;
class QDoubleSpinBox;
class QLineEdit;

namespace kelmo {

/// A widget or a variable whose value is kept in a file; not owned. Buttons and booleans are flags,
/// spin boxes and doubles are numbers, line edits and strings are texts.
using formField =
    std::variant<QAbstractButton*, bool*, QDoubleSpinBox*, double*, QLineEdit*, QString*>;

std::string flagText(bool flag);
/// Six significant digits with a decimal point, whatever the locale.
std::string numberText(double number);

/// The value as it stands in the file, without a line end.
std::string fieldText(const formField& field);

/// Sets the value from a line without its end. A flag is true when the line begins with an integer
/// other than 0; of a number the leading part that is one counts, else it is 0. Blanks before
/// either are skipped. Spin boxes clamp and round. A cleared flag clears its radio button even when
/// that leaves none of its group selected.
void setField(const formField& field, const std::string& line);

} // namespace kelmo

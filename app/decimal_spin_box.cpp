#include "app/decimal_spin_box.h"

#include <algorithm>

namespace kelmo {

QValidator::State cDecimalSpinBox::validate(QString& input, int& position) const {
    for (const QChar separator : {u'.', u','}) {
        input.replace(separator, locale().decimalPoint());
    }
    const QValidator::State state = QDoubleSpinBox::validate(input, position);
    const std::optional<double> number = numberOf(input);
    const bool isBeyond = number.has_value() && (*number < minimum() || *number > maximum());
    return state == QValidator::Invalid && isBeyond ? QValidator::Intermediate : state;
}

void cDecimalSpinBox::fixup(QString& input) const {
    if (const std::optional<double> number = numberOf(input)) {
        input = textFromValue(std::clamp(*number, minimum(), maximum()));
    }
}

std::optional<double> cDecimalSpinBox::numberOf(const QString& input) const {
    bool isNumber = false;
    const double number = locale().toDouble(input, &isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace kelmo

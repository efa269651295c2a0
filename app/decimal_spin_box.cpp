#include "app/decimal_spin_box.h"

QValidator::State cDecimalSpinBox::validate(QString& input, int& position) const {
    for (const QChar separator : {u'.', u','}) {
        input.replace(separator, locale().decimalPoint());
    }
    return QDoubleSpinBox::validate(input, position);
}

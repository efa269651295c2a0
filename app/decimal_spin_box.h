// A field for a number that takes a point or a comma, whichever the user is in the habit of typing.
#pragma once

#include <QDoubleSpinBox>

/// Shows the decimal separator of the user's locale. The other one, which the toolkit takes for a
/// separator of thousands and drops, would turn 1.45 into 14.
class cDecimalSpinBox : public QDoubleSpinBox {
  public:
    using QDoubleSpinBox::QDoubleSpinBox;

    QValidator::State validate(QString& input, int& position) const override;
};

// A field for a number that shows what it makes of what the user types.
#pragma once

#include <QDoubleSpinBox>

#include <optional>

namespace kelmo {

/// Takes a point or a comma for the decimal separator, whichever the user is in the habit of
/// typing, and shows that of the locale; the toolkit takes the other for a separator of thousands
/// and drops it, which turns 1.45 into 14. A number beyond the range can be typed and becomes the
/// end of the range when it is done; the toolkit swallows single digits and makes 0.9 of 9.9.
class cDecimalSpinBox : public QDoubleSpinBox {
  public:
    using QDoubleSpinBox::QDoubleSpinBox;

    QValidator::State validate(QString& input, int& position) const override;
    void fixup(QString& input) const override;

  private:
    /// What the text is as a number; nothing when it is none.
    std::optional<double> numberOf(const QString& input) const;
};

} // namespace kelmo

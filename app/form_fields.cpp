#include "app/form_fields.h"

#include "run/file_path.h"

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QLineEdit>

#include <cmath>
#include <cstdlib>
#include <locale>
#include <sstream>

#include <locale.h>

namespace kelmo {

namespace {

template <typename... Handlers>
struct overloaded : Handlers... {
    using Handlers::operator()...;
};
template <typename... Handlers>
overloaded(Handlers...) -> overloaded<Handlers...>;

bool flagFrom(const std::string& line) {
    constexpr int decimal = 10;
    return std::strtol(line.c_str(), nullptr, decimal) != 0;
}

double numberFrom(const std::string& line) {
    // The files have a decimal point also where the user's locale has a comma.
    static const locale_t pointLocale = ::newlocale(LC_NUMERIC_MASK, "C", locale_t());
    const double number = ::strtod_l(line.c_str(), nullptr, pointLocale);
    return std::isnan(number) ? 0.0 : number;
}

void setChecked(QAbstractButton& button, bool checked) {
    const bool wasExclusive = button.autoExclusive();
    if (!checked) {
        // An exclusive group refuses to lose its only selection.
        button.setAutoExclusive(false);
    }
    button.setChecked(checked);
    button.setAutoExclusive(wasExclusive);
}

} // namespace

std::string flagText(bool flag) {
    return flag ? "1" : "0";
}

std::string numberText(double number) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << number;
    return text.str();
}

std::string fieldText(const formField& field) {
    return std::visit(
        overloaded{
            [](const QAbstractButton* button) { return flagText(button->isChecked()); },
            [](const bool* flag) { return flagText(*flag); },
            [](const QDoubleSpinBox* box) { return numberText(box->value()); },
            [](const double* number) { return numberText(*number); },
            [](const QLineEdit* edit) { return pathToBytes(edit->text()); },
            [](const QString* text) { return pathToBytes(*text); },
        },
        field);
}

void setField(const formField& field, const std::string& line) {
    std::visit(overloaded{
                   [&](QAbstractButton* button) { setChecked(*button, flagFrom(line)); },
                   [&](bool* flag) { *flag = flagFrom(line); },
                   [&](QDoubleSpinBox* box) { box->setValue(numberFrom(line)); },
                   [&](double* number) { *number = numberFrom(line); },
                   [&](QLineEdit* edit) { edit->setText(pathFromBytes(line)); },
                   [&](QString* text) { *text = pathFromBytes(line); },
               },
               field);
}

} // namespace kelmo

// Numbers as the toolkit's text stream writes them, which the tables of the reports follow.
#pragma once

#include <QString>
#include <QTextStream>

#include <string>

namespace kelmo {

/// A text stream as the tables use it: five digits, the default notation.
class cToolkitStream {
  public:
    cToolkitStream() { stream.setRealNumberPrecision(5); }
    std::string textOf(double value, int width = 0) {
        text.clear();
        stream.setFieldWidth(width);
        stream << value;
        stream.flush();
        return text.toStdString();
    }

  private:
    QString text;
    QTextStream stream{&text};
};

} // namespace kelmo

// An output file that writes indented XML elements, one per line.
#pragma once

#include "base/exported.h"

#include <fstream>
#include <string_view>
#include <type_traits>

namespace KELMO_API kelmo {

/// Keeps no stack of open elements and escapes nothing: the order of the tags and well-formed text
/// are the caller's. Everything written with `<<` goes to the same file. Lines end in one line feed
/// and are not flushed one by one. Closing sets the fail state when the file could not be
/// completed.
class cXmlWriter : public std::ofstream {
  public:
    /// Truncates the file and writes the XML declaration; a file that cannot be opened leaves the
    /// stream failed.
    explicit cXmlWriter(const char* fileName);

    /// False when the file could not be opened; nothing has been written then.
    bool isFileOpen() const { return is_open(); }

    /// Writes `indent` blanks, the name between angle brackets, a line end.
    void writeStart(std::string_view name, int indent);
    /// Writes `indent` blanks and the end tag; without `newLine` the next output continues on its
    /// line.
    void writeEnd(std::string_view name, int indent, bool newLine);
    /// Writes `indent` blanks and start tag, value and end tag on one line. The stream's formatting
    /// state applies to the value.
    template <typename T>
    void writeElement(std::string_view name, T value, int indent) {
        if constexpr (std::is_same_v<T, double>) {
            if (hasDefaultFormat()) {
                writeNumber(name, value, indent);
                return;
            }
        }
        writeStartTag(name, indent);
        *this << value;
        writeEnd(name, 0, true);
    }
    /// Writes lines that were put together elsewhere.
    void writeText(std::string_view text);

  private:
    bool hasDefaultFormat() const;
    void writeNumber(std::string_view name, double value, int indent);
    void writeStartTag(std::string_view name, int indent);
};

} // namespace kelmo

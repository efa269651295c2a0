#include "base/text_line.h"

namespace kelmo {

std::istream& getTextLine(std::istream& in, std::string& line) {
    using tTraits = std::istream::traits_type;
    line.clear();
    const std::istream::sentry mayRead(in, true);
    if (!mayRead) {
        return in;
    }
    try {
        while (line.size() <= longestTextLine) {
            const tTraits::int_type next = in.rdbuf()->sbumpc();
            if (tTraits::eq_int_type(next, tTraits::eof())) {
                in.setstate(line.empty() ? std::ios::eofbit | std::ios::failbit : std::ios::eofbit);
                break;
            }
            if (next == '\n') {
                break;
            }
            line += tTraits::to_char_type(next);
        }
    } catch (...) { // as the streams of the library do; not to be told apart from its own
        in.setstate(std::ios::badbit);
    }
    return in;
}

} // namespace kelmo

#include "input/gemmi_library.h"

#include "base/stop_request.h"

#include <gemmi/cif.hpp>
#include <gemmi/resinfo.hpp>

#include <istream>
#include <stdexcept>

namespace kelmo {

namespace {

namespace pegtl = tao::pegtl;
namespace rules = gemmi::cif::rules;

/// No name, value, comment or run of blanks is as long; more is no text.
constexpr std::size_t longestToken = std::size_t{16} << 20;
constexpr std::size_t bytesAtATime = std::size_t{1} << 15;

/// Hands the bytes of a stream to the grammar.
class cSource {
  public:
    explicit cSource(std::istream& in) : stream(in) {}

    std::size_t operator()(char* to, std::size_t length) {
        stopIfWanted();
        stream.read(to, static_cast<std::streamsize>(length));
        return static_cast<std::size_t>(stream.gcount());
    }

  private:
    std::istream& stream;
};

using tInput = pegtl::buffer_input<cSource, pegtl::eol::lf_crlf, std::string, bytesAtATime>;

struct sCifError {
    std::string text;
};

/// What the actions of the grammar act on.
struct sReading {
    cCifVisitor& visitor;
    std::string itemTag = {};
    std::string unquoted = {}; ///< the text of the last value that stood in quotes
    std::size_t loopTags = 0;
    std::size_t loopValues = 0;
    std::size_t line = 0;   ///< of the last value or tag
    bool isInFrame = false; ///< frames hold definitions, which are no part of a structure

    std::string_view value(std::string_view text) {
        if (text == "." || text == "?") {
            return {};
        }
        const char first = text.front(); // no value is empty
        if (first == '\'' || first == '"' || first == ';') {
            unquoted = gemmi::cif::as_string(std::string(text));
            return unquoted.empty() ? " " : std::string_view(unquoted);
        }
        return text;
    }

    std::string atLine(const std::string& what) const {
        return what + " in line " + std::to_string(line);
    }
};

template <typename Input>
std::string_view textIn(const Input& in) {
    return {in.begin(), in.size()};
}

template <typename Rule>
struct sAction : pegtl::nothing<Rule> {};

template <>
struct sAction<rules::datablockname> {
    template <typename Input>
    static void apply(const Input& in, sReading& reading) {
        reading.visitor.beginBlock(textIn(in));
    }
};

template <>
struct sAction<rules::framename> {
    static void apply0(sReading& reading) { reading.isInFrame = true; }
};

template <>
struct sAction<rules::endframe> {
    static void apply0(sReading& reading) { reading.isInFrame = false; }
};

template <>
struct sAction<rules::item_tag> {
    template <typename Input>
    static void apply(const Input& in, sReading& reading) {
        reading.itemTag = textIn(in);
        reading.line = in.iterator().line;
    }
};

template <>
struct sAction<rules::item_value> {
    template <typename Input>
    static void apply(const Input& in, sReading& reading) {
        reading.line = in.iterator().line;
        if (!reading.isInFrame) {
            reading.visitor.item(reading.itemTag, reading.value(textIn(in)));
        }
    }
};

template <>
struct sAction<rules::missing_value> {
    static void apply0(sReading& reading) {
        throw sCifError{reading.atLine(reading.itemTag + " without a value")};
    }
};

template <>
struct sAction<rules::str_loop> {
    static void apply0(sReading& reading) {
        reading.loopTags = 0;
        reading.loopValues = 0;
        if (!reading.isInFrame) {
            reading.visitor.beginLoop();
        }
    }
};

template <>
struct sAction<rules::loop_tag> {
    template <typename Input>
    static void apply(const Input& in, sReading& reading) {
        ++reading.loopTags;
        if (!reading.isInFrame) {
            reading.visitor.loopTag(textIn(in));
        }
    }
};

template <>
struct sAction<rules::loop_value> {
    template <typename Input>
    static void apply(const Input& in, sReading& reading) {
        ++reading.loopValues;
        reading.line = in.iterator().line;
        if (!reading.isInFrame) {
            reading.visitor.loopValue(reading.value(textIn(in)));
        }
    }
};

template <>
struct sAction<rules::loop> {
    static void apply0(sReading& reading) {
        if (reading.loopValues % reading.loopTags != 0) {
            throw sCifError{reading.atLine("a loop whose values do not fill its last row")};
        }
        if (!reading.isInFrame) {
            reading.visitor.endLoop();
        }
    }
};

} // namespace

std::string readCif(std::istream& in, cCifVisitor& visitor) {
    sReading reading{visitor};
    tInput input(std::string(), longestToken, in);
    try {
        pegtl::parse<rules::file, sAction, gemmi::cif::Errors>(input, reading);
        return {};
    } catch (const sCifError& error) {
        return error.text;
    } catch (const pegtl::parse_error& error) {
        reading.line = error.positions().front().line;
        return reading.atLine(std::string(error.message()));
    } catch (const std::overflow_error&) {
        return "more than 16 MiB without a value behind line " + std::to_string(reading.line);
    }
}

std::string tabulatedParent(const std::string& residueName) {
    const gemmi::ResidueInfo residue = gemmi::find_tabulated_residue(residueName);
    const char letter = residue.one_letter_code;
    if (letter < 'a' || letter > 'z') {
        return {};
    }
    const char code = static_cast<char>(letter - 'a' + 'A');
    if (residue.is_nucleic_acid()) {
        return residue.is_dna() ? std::string{'D', code} : std::string(1, code);
    }
    if (!residue.is_amino_acid()) {
        return {};
    }
    const char* const name = gemmi::expand_protein_one_letter(code);
    return name == nullptr ? std::string() : name;
}

} // namespace kelmo

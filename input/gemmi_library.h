// What the readers take from the library gemmi: the grammar of CIF and a table of residues. Its
// headers take half a minute to compile, so that one source alone includes them.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace kelmo {

/// Told what stands in a CIF text, in its order. Tags come as the file writes them, values without
/// their quotes: empty where they are `.` or `?`, a blank where they are quoted and empty.
class cCifVisitor {
  public:
    cCifVisitor() = default;
    cCifVisitor(const cCifVisitor&) = delete;
    cCifVisitor& operator=(const cCifVisitor&) = delete;
    virtual ~cCifVisitor() = default;

    virtual void beginBlock(std::string_view name) = 0;
    virtual void beginLoop() = 0;
    virtual void loopTag(std::string_view tag) = 0;
    /// The values of a loop, row by row.
    virtual void loopValue(std::string_view value) = 0;
    virtual void endLoop() = 0;
    /// A tag with its value, outside of loops.
    virtual void item(std::string_view tag, std::string_view value) = 0;
};

/// Reads CIF text to the end of the stream, a piece at a time. Returns what is wrong with it, and
/// where, or an empty text. Heeds the stop request of this thread.
std::string readCif(std::istream& in, cCifVisitor& visitor);

/// The standard residue that a modified one is made from: "MET" for "MSE", "DC" for "5CM"; empty
/// for one that is not in the table, or is standard itself.
std::string tabulatedParent(const std::string& residueName);

} // namespace kelmo

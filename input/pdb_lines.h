// Parsing a run of PDB lines by itself, so that the parts of a file can be parsed side by side.
#pragma once

#include "model/residue_atom.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// What a run of lines says, before it is known what stands in front of it.
struct sPdbLines {
    /// An ATOM line whose chain or residue number differs, ignoring case, from those of the line
    /// before, or that is the first of its run.
    struct sBreak {
        std::size_t atom; ///< position in `atoms`
        char chainId;
        std::string residueName;
        std::string residueNumber;
    };
    struct sHeader {
        std::size_t atom; ///< the number of atoms before it
        std::string entryCode;
    };
    enum class eEnd { none, endRecord, badLine };

    std::vector<cResidueAtom> atoms; ///< under the names of the file
    std::vector<cResidueAtom> heteroAtoms;
    std::vector<sBreak> breaks;
    std::vector<sHeader> headers;
    std::set<std::string> missingRadii;
    int lineCount = 0; ///< lines read, a bad one included and an END not
    eEnd end = eEnd::none;
};

/// Parses whole lines, each closed by a line feed but for the last, up to an END record or a line
/// in error. `radii` as for cPdbPeptide::loadFromStream().
sPdbLines parsePdbLines(std::string_view text, const std::map<std::string, double>& radii);

} // namespace kelmo

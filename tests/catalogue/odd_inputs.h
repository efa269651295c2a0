// The catalogue of odd files: what is odd about each, its bytes, and what the reader makes of
// it.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace kelmo {

/// One odd file and its outcome. A file with a faulty line or without atoms is refused; every other
/// one is analysed by every attribute and criterion.
struct sOddInput {
    std::string name; ///< what is odd
    std::string bytes;
    int faultyLine = 0;    ///< counted from 1; 0 when the whole file is read
    std::size_t atoms = 0; ///< of a file without faulty line, like the rest
    std::size_t residues = 0;
    /// Their ids in the order of the file, with a tab between them if some are no single letter.
    std::string chains = {};
    std::string unknown = {}; ///< the radius keys that the shipped table lacks, each with a blank
    bool isMarkup = false;    ///< names that XML must escape, which interaction reports do not do
    /// What a file is refused with that breaks the rules of its format or of its compression, "%"
    /// for its path.
    std::string refusal = {};
    /// What is told of the rest of its content, with the colour; empty for nothing.
    std::string told = {};
    bool isDense = false; ///< atoms a thousandth of an ångström apart
};

/// All odd files of up to about a megabyte, in a fixed order with fixed bytes: also seeds for
/// fuzzing.
std::vector<sOddInput> oddInputs();
///@{
/// Those of them that are mmCIF, or would like to be, and those that are compressed.
std::vector<sOddInput> oddMmcifTexts();
std::vector<sOddInput> oddCompressedTexts();
///@}
/// The ids of the chains of a file.
std::vector<std::string> chainIdsOf(const sOddInput& input);

/// A text as UTF-16 with its byte order mark, as some editors save it: every other byte of plain
/// letters is zero.
std::string utf16(const std::string& text);

/// Writes a protein-like cloud in chains A and B: so many residues of ten atoms, about one atom per
/// `atomVolume` Å³. The same arguments give the same bytes.
void writeCloud(std::ostream& out, std::size_t residues, double atomVolume);

} // namespace kelmo

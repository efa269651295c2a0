// Residue name sets and the readers of the parameter tables (radii, standard areas,
// hydrophobicity).
#pragma once

#include "base/exported.h"

#include <iosfwd>
#include <map>
#include <set>
#include <string>

namespace KELMO_API kelmo {

/// Standard surface areas of one residue type: what relative areas are percentages of.
struct sAsa {
    ///@{
    /// Å².
    double total = 0.0;
    double sideChain = 0.0;
    double backbone = 0.0;
    double polar = 0.0;
    double nonPolar = 0.0;
    ///@}

    bool operator==(const sAsa& other) const = default;
};

/// Inserts the names of the 20 standard amino acids.
void createAminoAcidNamesSet(std::set<std::string>& names);
/// Inserts the one-letter names of the nucleotides.
void createNucleicAcidNamesSet(std::set<std::string>& names);

/// @name Readers of the parameter tables
/// They clear the map, fill it and return 0, or return the 1-based number of the first line that
/// cannot be taken and leave the map empty: one that breaks the table's grammar or is longer than
/// `longestTextLine`, or the one in which the table grows beyond `largestTable`; the stream has
/// then failed, but is not bad. Empty lines and lines that begin with "#" are skipped but counted.
/// Of two entries with one key the first is kept. Blanks are those of isspace() in the C locale;
/// numbers are plain decimals such as "-1.5" or ".5".
///@{

/// Van der Waals radii in Å: residue name + "_" + atom name in columns 1-8, then the value.
int getVdWrRadii(std::istream& in, std::map<std::string, double>& radii);
/// Standard areas in Å²: name, total, backbone, side chain, non-polar, polar, separated by spaces.
int getStandardAsa(std::istream& in, std::map<std::string, sAsa>& standards);
/// Hydrophobicity, in whatever unit the scale has: residue name in columns 1-3, the value from
/// column 5 on.
int getHydrophobicity(std::istream& in, std::map<std::string, double>& scale);

///@}

///@{
/// The names of the 20 standard amino acids that a table lacks; empty when it is complete.
std::set<std::string> checkForStandardPeptides(std::map<std::string, double> scale);
std::set<std::string> checkForStandardPeptides(std::map<std::string, sAsa> standards);
///@}

} // namespace kelmo

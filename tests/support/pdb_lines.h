// Lines of PDB text for the tests, written field by field, and the smallest structures made of
// them.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

namespace kelmo {

/// One coordinate line of exactly 54 characters; the texts are placed as they are, so that a test
/// can put anything into a field.
struct sAtomLine {
    std::string record = "ATOM";
    std::string serial = "1";
    std::string name = "CA";
    char alternate = ' ';
    std::string residue = "ALA";
    char chain = 'A';
    std::string number = "1"; ///< with insertion code
    std::string x = "0.000";
    std::string y = "0.000";
    std::string z = "0.000";

    std::string text() const;
    std::string line() const { return text() + '\n'; }
};

/// A coordinate in ångström as a field shows it.
std::string coordinateText(double coordinate);

/// One ATOM line with its line end. The number may have an insertion code, coordinates are in
/// ångström; the serial wraps after 99,999, as it does in files.
std::string atomLine(const std::string& atomName, const std::string& residueName, char chain,
                     const std::string& residueNumber, double x, double y, double z,
                     unsigned serial = 1);

std::string headerLine(const std::string& code);

/// The lines of a text that begin with ATOM, without their line feeds.
std::vector<std::string> atomLinesOf(const std::string& text);

using tPosition = std::array<double, 3>; ///< x, y, z in ångström
tPosition positionIn(const std::string& atomLine);
/// The line with other coordinates.
std::string withPosition(std::string atomLine, const tPosition& position);
/// The ATOM lines of a text with a tenth of their coordinates: what programs leave that take
/// nanometres for ångström.
std::string inNanometres(const std::string& text);

/// N, CA, C and O of one residue around the z axis, at a height given in ångström.
std::string glycine(char chain, const std::string& number, double z);
/// Two chains of one glycine each, 4 Å apart: "A 1" and "B 2", code "1TST".
std::string twoGlycines();
/// A radius of 1.7 Å for each atom of a glycine.
std::map<std::string, double> glycineRadii();
/// The same as a table of radii.
std::string glycineRadiiTable();

} // namespace kelmo

// Pieces of the sample structures, small enough to be analysed in milliseconds.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kelmo {

/// The lines of a sample (such as "1ubq") around an atom: its HEADER line, and the ATOM and
/// HETATM lines within `radius` Å of the atom that is the given one in the file, in file order.
std::string sphereCut(const std::string& sample, std::size_t atom, double radius);

/// The same around the first atom that has an atom of another chain within 4 Å.
std::string interfaceCut(const std::string& sample, double radius);

/// As many pieces of all samples as asked for, of at most `atoms` atoms each; the same every time.
std::vector<std::string> sampleCuts(std::size_t count, std::size_t atoms);

} // namespace kelmo

// The formats that structures are read from, one row a format.
#pragma once

#include "base/exported.h"
#include "input/structure_reader.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace KELMO_API kelmo {

/// One format: how files of it are recognised, and how they are read.
struct sStructureFormat {
    std::string name; ///< for people
    /// Endings of file names, in lower case, with the dot. They choose what a dialog or a directory
    /// offers; how a file is read is decided by its content alone.
    std::vector<std::string> suffixes;
    /// Whether a file is of this format, by its first bytes: `recognisedLength` of them, or all of
    /// a shorter file.
    std::function<bool(std::string_view firstBytes)> isContent;
    /// Reads the stream, which stands at its beginning, to what readStructure() returns.
    std::function<sReadResult(std::istream& in, const std::map<std::string, double>& radii,
                              const sReadOptions& options)>
        read;
};

/// How many bytes of a file are looked at to tell its format.
inline constexpr std::size_t recognisedLength = 16384;

/// The known formats, asked one after the other; the last one, PDB text, takes what no other
/// recognises.
const std::vector<sStructureFormat>& structureFormats();

/// Adds a format in front of the others. Not while a file may be being read.
void addStructureFormat(sStructureFormat format);

/// The suffixes of all formats, in the order in which people are told of them; to each may be added
/// that of a compressed file.
std::vector<std::string> structureSuffixes();

/// The suffix that a compressed file may have behind that of its format.
inline constexpr std::string_view compressedSuffix = ".gz";

/// Whether a file name ends in a suffix of some format, compressed or not, in capitals or not.
bool hasStructureSuffix(std::string_view fileName);

} // namespace kelmo

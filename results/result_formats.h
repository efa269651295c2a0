// The formats of results files: one row each, told by the ends of their names.
#pragma once

#include "results/result_file.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// One format.
struct sResultFormat {
    std::string suffix = {};  ///< ".sqlite"
    bool isResumable = false; ///< whether a run can be continued into a file that exists
    /// Opens a file for a run. Throws cResultError.
    std::unique_ptr<cResultFile> (*open)(const std::string& path, const sRunDescription& run,
                                         const sRunInputs& inputs, bool isResumed) = nullptr;
};

/// All formats.
const std::vector<sResultFormat>& resultFormats();
/// The format that a name ends in; null for none.
const sResultFormat* findResultFormat(std::string_view path);
/// "a, b or c": the suffixes, for messages.
std::string resultSuffixes();

///@{
/// Open a results file of one format. Throw cResultError.
std::unique_ptr<cResultFile> openSqliteResults(const std::string& path, const sRunDescription& run,
                                               const sRunInputs& inputs, bool isResumed);
std::unique_ptr<cResultFile> openTsvResults(const std::string& path, const sRunDescription& run,
                                            const sRunInputs& inputs, bool isResumed);
std::unique_ptr<cResultFile> openJsonLinesResults(const std::string& path,
                                                  const sRunDescription& run,
                                                  const sRunInputs& inputs, bool isResumed);
///@}

} // namespace kelmo

// Puts databases of results together, such as those of the shards of one run.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

/// What was found while databases were put together.
struct sMergeReport {
    std::size_t structures = 0; ///< in the database that was made
    std::size_t pending = 0;    ///< files of them that are still to be analysed
    /// Structures that stood in an earlier database already, under the same name.
    std::size_t leftOut = 0;
    /// Files of one run with the same content as an earlier one of another name, which comes first;
    /// not left out.
    std::vector<std::pair<std::string, std::string>> sameContent = {};
};

/// Makes a new database of all runs of the given ones. Runs by the same settings and tables become
/// one. Ids stay as they are where no two databases use the same one; otherwise those of the later
/// database are counted on. Throws cResultError where the file exists, where one cannot be read,
/// where the later ones have runs by other settings than the first, or where two have different
/// results for one name.
sMergeReport mergeResults(const std::string& merged, const std::vector<std::string>& parts);

} // namespace kelmo

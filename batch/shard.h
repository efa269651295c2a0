// A part of the inputs of a run, for one of several machines that share them.
#pragma once

#include "batch/input_paths.h"
#include "batch/options.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace kelmo {

/// The shard of a file, from 1 to `count`, by a hash of its name up to the first dot: whatever else
/// is in the list, wherever the file lies, and the same for files that write the same reports.
std::size_t shardOf(std::string_view path, std::size_t count);

/// Files of a list.
struct sListPart {
    cInputPaths paths = {};
    std::vector<std::size_t> places = {}; ///< positions of the paths in the whole list
};

/// The files of one shard, in the order of the list.
sListPart filesOfShard(const cInputPaths& list, const sShard& shard);

} // namespace kelmo

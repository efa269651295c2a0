// The PDB files of a run, gathered from the command line and list files.
#pragma once

#include "batch/options.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelmo {

/// Paths in order, packed: a run may have very many.
class cInputPaths {
  public:
    cInputPaths() = default;
    cInputPaths(std::initializer_list<std::string_view> paths);

    void append(std::string_view path);
    std::size_t size() const { return ends.size(); }
    bool empty() const { return ends.empty(); }
    /// The bytes of a path. What is returned is good until the next append().
    std::string_view operator[](std::size_t position) const;

  private:
    std::string text; ///< all paths behind each other
    std::vector<std::size_t> ends;
};

/// The name of a file without its directories, up to the first dot.
std::string_view baseNameIn(std::string_view path);

/// The paths in the order in which they are named; a list file's stand where the list stands. Empty
/// lines of a list are passed over. Throws cUsageError when a list cannot be read.
cInputPaths inputPaths(const std::vector<sInputSource>& sources);

/// Which files write the same reports, because their names are the same up to the first dot.
class cSameBaseNames {
  public:
    using tGroup = std::vector<std::size_t>; ///< positions of paths, ascending

    explicit cSameBaseNames(const cInputPaths& paths);

    /// All files that write the reports of this one, itself included; null when there is no other.
    const tGroup* groupOf(std::size_t file) const;

  private:
    std::vector<tGroup> groups;
    std::unordered_map<std::size_t, std::size_t> groupByFile;
};

/// One warning for each file whose reports will replace those of an earlier one.
std::vector<std::string> sameBaseNameWarnings(const cInputPaths& paths,
                                              const cSameBaseNames& sameNames);

} // namespace kelmo

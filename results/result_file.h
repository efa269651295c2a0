// A results file that is being written, whatever its format.
#pragma once

#include "results/run_description.h"
#include "results/structure_record.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// The input files of a run. What is referred to must outlive the run.
struct sRunInputs {
    std::size_t count = 0;                                  ///< that this run analyses
    std::size_t listed = 0;                                 ///< of which those are a part, or all
    std::function<std::string_view(std::size_t)> path = {}; ///< by position below `count`
    /// Position of a file in the whole list, below `listed`; ascending.
    std::function<std::size_t(std::size_t)> place = {};
};

/// Takes what becomes of the files of one run. Not for several threads at once. Every function may
/// throw cResultError.
class cResultFile {
  public:
    virtual ~cResultFile() = default;

    /// Whether files must come in the order of the inputs.
    virtual bool needsOrder() const = 0;
    /// Whether a former run has analysed this very content of an input by the same settings.
    virtual bool holds(std::size_t position, std::string_view sha256) const = 0;
    /// Takes a file of which holds() is false, by its position among the inputs.
    virtual void write(std::size_t position, const sFileRecord& file) = 0;
    /// Brings what was written to where the end of the process does not reach it.
    virtual void commit() = 0;
    /// The run has ended; `isComplete` unless inputs are still to be analysed.
    virtual void finish(bool isComplete) = 0;

  protected:
    cResultFile() = default;
    cResultFile(const cResultFile&) = default;
    cResultFile& operator=(const cResultFile&) = default;
};

} // namespace kelmo

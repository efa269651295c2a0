// Reading PDB text into records, line after line, for everything but its first model as it stands.
#pragma once

#include "input/structure_reader.h"
#include "input/structure_records.h"

#include <iosfwd>
#include <memory>
#include <string_view>

namespace kelmo {

/// What stands in the text, as far as the options ask for it. An ATOM or HEADER line in error makes
/// the outcome `badLine`, as it does for cPdbPeptide::loadFromStream(); a stream that fails,
/// `unreadable`. Heeds the stop request of this thread.
sStructureRecords readPdbRecords(std::istream& in, const sReadOptions& options,
                                 sReadResult& result);

/// Records of PDB text that is analysed as it stands what its summary needs: everything but the
/// plain atoms, and how many models follow the first.
class cPdbOddities {
  public:
    cPdbOddities();
    ~cPdbOddities();
    cPdbOddities(const cPdbOddities&) = delete;
    cPdbOddities& operator=(const cPdbOddities&) = delete;

    /// Whole lines, in their order, up to the end of the file.
    void take(std::string_view lines);
    sStructureRecords finish();

  private:
    class cState;
    std::unique_ptr<cState> state;
};

} // namespace kelmo

// Reading PDB text into records, line after line, for everything but its first model as it stands.
#pragma once

#include "input/structure_reader.h"
#include "input/structure_records.h"

#include <iosfwd>

namespace kelmo {

/// What stands in the text, as far as the options ask for it. An ATOM or HEADER line in error makes
/// the outcome `badLine`, as it does for cPdbPeptide::loadFromStream(); a stream that fails,
/// `unreadable`. Heeds the stop request of this thread.
sStructureRecords readPdbRecords(std::istream& in, const sReadOptions& options,
                                 sReadResult& result);

} // namespace kelmo

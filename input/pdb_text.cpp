#include "input/pdb_text.h"

#include "base/regular_file.h"
#include "input/pdb_reader.h"
#include "input/pdb_records.h"
#include "input/preparation.h"
#include "input/structure_making.h"

#include <cerrno>
#include <istream>
#include <utility>

namespace kelmo {

sReadResult readPdbText(std::istream& in, const std::map<std::string, double>& radii,
                        const sReadOptions& options) {
    sReadResult result;
    if (options != sReadOptions{}) {
        const sStructureRecords records = readPdbRecords(in, options, result);
        return result.outcome == eReadOutcome::read ? makeStructures(records, radii, options)
                                                    : result;
    }
    cPdbPeptide structure;
    cPdbOddities oddities;
    errno = 0;
    result.badLine = readPdbStructure(in, radii, structure, result.missingRadii, &oddities);
    if (in.bad()) { // neither the end of the file nor a bad line: there was more to read
        result.outcome = eReadOutcome::unreadable;
        result.reason = readFailureText(errno);
    } else if (result.badLine != 0) {
        result.outcome = eReadOutcome::badLine;
    } else if (structure.atoms.empty()) {
        result.outcome = eReadOutcome::noAtoms;
    } else {
        const sStructureRecords records = oddities.finish();
        const cPreparation preparation(records, options.preparation, radii);
        result.summary = summaryOf(records, preparation, options, structure);
        result.structures.push_back(std::move(structure));
    }
    return result;
}

} // namespace kelmo

// What of a file takes no part, worked out from what the file says.
#include "base/stop_request.h"
#include "input/atom_rules.h"
#include "input/preparation.h"
#include "input/structure_making.h"

#include <map>
#include <set>
#include <string>
#include <utility>

namespace kelmo {

namespace {

class cSummaryMaker {
  public:
    cSummaryMaker(const sStructureRecords& fileRecords, const cPreparation& filePreparation,
                  sFileSummary& target)
        : records(fileRecords), preparation(filePreparation), summary(target) {}

    void take(std::size_t index) {
        stopIfDue();
        const sResidueRecord& residue = records.residues[index];
        beginResidue(residue);
        if (preparation.takes(index)) {
            takeAtoms(index);
        } else if (leftOutHere.insert(residue.name).second) {
            takeLeftOut(index);
        }
    }

  private:
    void beginResidue(const sResidueRecord& residue) {
        if (current == nullptr || residue.number != current->number ||
            residue.chainId != current->chainId || residue.model != current->model) {
            current = &residue;
            leftOutHere.clear();
            labels.clear();
        }
    }

    void takeAtoms(std::size_t index) {
        for (std::size_t i = records.residues[index].firstAtom; i < records.atomsEnd(index); ++i) {
            const sAtomRecord& atom = records.atoms[i];
            summary.hydrogens += atom.isHydrogen ? 1U : 0U;
            if (!atom.alternate.empty() && labels.insert(atom.alternate).second &&
                labels.size() == 2) {
                ++summary.residuesWithAlternates;
            }
        }
    }

    void takeLeftOut(std::size_t index) {
        const std::string& name = records.residues[index].name;
        if (preparation.isOfPolymer(index)) {
            ++summary.leftOut[name];
        } else if (isWater(name)) {
            ++summary.waters;
        } else {
            ++summary.ligands[name];
        }
    }

    const sStructureRecords& records;
    const cPreparation& preparation;
    sFileSummary& summary;
    cStopCheck stopIfDue;
    const sResidueRecord* current = nullptr;
    std::set<std::string> leftOutHere; ///< names of this residue
    std::set<std::string> labels;
};

} // namespace

sFileSummary summaryOf(const sStructureRecords& records, const cPreparation& preparation,
                       const sReadOptions& options, const cPdbPeptide& structure) {
    sFileSummary summary;
    cSummaryMaker maker(records, preparation, summary);
    for (std::size_t i = 0; i < records.residues.size(); ++i) {
        if (records.residues[i].model == 0 || options.models == eModels::chains) {
            maker.take(i);
        }
    }
    for (const cChainResidue& residue : structure.residues) {
        if (residue.residueType == eResidueType::other) {
            ++summary.unknown[residue.nameInFile()];
        }
    }
    summary.countsAllAlternates =
        options.preparation.alternateLocations == eAlternateLocations::all;
    summary.countsHydrogens = options.preparation.hydrogens == eHydrogens::keep;
    summary.laterModels = records.laterModels;
    summary.laterBlocks = records.laterBlocks;
    return summary;
}

} // namespace kelmo

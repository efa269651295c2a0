#include "input/structure_making.h"

#include "base/stop_request.h"
#include "input/atom_rules.h"
#include "input/preparation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

using tResidues = std::vector<std::size_t>;

/// No larger number has room in the columns of PDB text, Å.
constexpr double largestCoordinate = 1e8;

bool isSomewhere(const sPoint& point) {
    const auto isCoordinate = [](double value) {
        return std::abs(value) < largestCoordinate; // which not-a-number is not
    };
    return isCoordinate(point.x) && isCoordinate(point.y) && isCoordinate(point.z);
}

/// Ids for the copies of chains: the first appearance of a chain keeps its id, others get "-2",
/// "-3" and so on behind it.
class cChainNames {
  public:
    explicit cChainNames(const sStructureRecords& records) {
        for (const sResidueRecord& residue : records.residues) {
            if (used.empty() || lastSeen != residue.chainId) {
                lastSeen = residue.chainId;
                used.insert(lastSeen);
            }
        }
    }

    void beginCopy() { inCopy.clear(); }

    /// The id of a chain, or of a part of one, in this copy.
    const std::string& idOf(const sResidueRecord& residue) {
        const auto key = std::pair(residue.chainId, residue.part);
        const auto known = inCopy.find(key);
        if (known != inCopy.end()) {
            return known->second;
        }
        return inCopy.emplace(key, idOfCopy(residue.chainId, ++appearances[key])).first->second;
    }

  private:
    std::string idOfCopy(const std::string& chainId, std::size_t appearance) {
        if (appearance == 1) {
            return chainId;
        }
        const auto known = copies.find({chainId, appearance});
        if (known != copies.end()) {
            return known->second;
        }
        const bool isBlank = chainId.empty() || chainId == " ";
        std::string id = (isBlank ? "*" : chainId) + '-' + std::to_string(appearance);
        while (!used.insert(id).second) {
            id += '\''; // the file has a chain of that very name
        }
        return copies.emplace(std::pair(chainId, appearance), id).first->second;
    }

    std::set<std::string> used;
    std::string lastSeen;
    std::map<std::pair<std::string, std::string>, std::size_t> appearances;
    std::map<std::pair<std::string, std::string>, std::string> inCopy;
    std::map<std::pair<std::string, std::size_t>, std::string> copies;
};

/// Makes one structure.
class cStructureMaker {
  public:
    cStructureMaker(const sStructureRecords& fileRecords, cPreparation& filePreparation,
                    std::set<std::string>& missing)
        : records(fileRecords), preparation(filePreparation), missingRadii(missing),
          names(fileRecords), chains(structure, fileRecords.identity) {
        structure.name = records.entryCode;
    }

    void reserve(std::size_t atoms) { structure.atoms.reserve(atoms); }

    /// Adds these residues, those of `ids` alone unless that is null, each atom moved.
    void addCopy(const tResidues& residues, const std::set<std::string>* ids,
                 const sPlacement* placement) {
        names.beginCopy();
        moved = placement;
        for (const std::size_t residue : residues) {
            stopIfDue();
            if (ids == nullptr || ids->contains(copiedAs(records.residues[residue]))) {
                add(residue);
            }
        }
        addPending();
    }

    cPdbPeptide finish() {
        chains.finish();
        return std::move(structure);
    }

    /// The first atom that is taken without numbers for coordinates; empty if there is none.
    const std::string& atomNowhere() const { return badAtom; }

  private:
    static const std::string& copiedAs(const sResidueRecord& residue) {
        return residue.part.empty() ? residue.chainId : residue.part;
    }

    void add(std::size_t residue) {
        if (!preparation.takes(residue)) {
            addMetals(residue);
            return;
        }
        if (!pending.empty() && !isOneResidue(pending.back(), residue)) {
            addPending();
        }
        pending.push_back(residue);
    }

    bool isOneResidue(std::size_t a, std::size_t b) const {
        const sResidueRecord& first = records.residues[a];
        const sResidueRecord& second = records.residues[b];
        return first.number == second.number && first.chainId == second.chainId;
    }

    void addMetals(std::size_t residue) {
        for (std::size_t i = records.residues[residue].firstAtom; i < records.atomsEnd(residue);
             ++i) {
            const sAtomRecord& atom = records.atoms[i];
            if (isMetal(atom.name)) {
                const sPoint centre = placed(atom);
                structure.heteroAtoms.emplace_back(atom.name, atom.serial, centre.x, centre.y,
                                                   centre.z, 0.0);
            }
        }
    }

    void addPending() {
        const std::string alternate = preparation.chosenAlternate(pending);
        for (const std::size_t residue : pending) {
            addAtoms(residue, alternate);
        }
        pending.clear();
    }

    void addAtoms(std::size_t index, const std::string& alternate) {
        const sResidueRecord& residue = records.residues[index];
        bool isFirst = true;
        for (std::size_t i = residue.firstAtom; i < records.atomsEnd(index); ++i) {
            const sAtomRecord& atom = records.atoms[i];
            if (!preparation.takes(atom, alternate)) {
                continue;
            }
            const sPoint centre = placed(atom);
            if (!isSomewhere(centre) && badAtom.empty()) {
                badAtom = atom.serial + " (" + atom.name + " of " + residue.name + ' ' +
                          residue.number + " in chain " + residue.chainId + ')';
            }
            const cPreparation::sAtomLook& look =
                preparation.lookAt(index, atom.name, missingRadii);
            structure.atoms.emplace_back(look.name, atom.serial, centre.x, centre.y, centre.z,
                                         look.radius);
            if (std::exchange(isFirst, false)) {
                chains.place({.chainId = names.idOf(residue),
                              .residueNumber = residue.number,
                              .residueName = preparation.tableName(index),
                              .nameInFile = residue.name},
                             structure.atoms.size() - 1, structure.atoms.back().atomName);
            }
        }
    }

    sPoint placed(const sAtomRecord& atom) const {
        if (moved == nullptr) {
            return {atom.x, atom.y, atom.z};
        }
        const auto& r = moved->rotation;
        const auto& s = moved->shift;
        return {r[0] * atom.x + r[1] * atom.y + r[2] * atom.z + s[0],
                r[3] * atom.x + r[4] * atom.y + r[5] * atom.z + s[1],
                r[6] * atom.x + r[7] * atom.y + r[8] * atom.z + s[2]};
    }

    const sStructureRecords& records;
    cPreparation& preparation;
    std::set<std::string>& missingRadii;
    cPdbPeptide structure;
    cChainNames names;
    cChainBuilder chains;
    cStopCheck stopIfDue;
    tResidues pending; ///< records that describe one residue
    const sPlacement* moved = nullptr;
    std::string badAtom;
};

/// The residues of each model, in the order of the file.
std::vector<tResidues> modelsOf(const sStructureRecords& records) {
    std::vector<tResidues> models;
    for (std::size_t i = 0; i < records.residues.size(); ++i) {
        models.resize(std::max(models.size(), records.residues[i].model + 1));
        models[records.residues[i].model].push_back(i);
    }
    return models;
}

std::string listOf(const std::vector<std::string>& ids) {
    std::string list;
    for (const std::string& id : ids) {
        list += (list.empty() ? "" : ", ") + id;
    }
    return list;
}

/// Why the options cannot be met, or an empty text.
std::string complaint(const sStructureRecords& records, const sReadOptions& options) {
    if (options.assembly.empty()) {
        return {};
    }
    if (options.models == eModels::chains) {
        return "Models cannot be chains where an assembly is asked for";
    }
    if (records.assemblies.empty()) {
        return "The file describes no assemblies; asked for: " + options.assembly;
    }
    if (std::find(records.assemblies.begin(), records.assemblies.end(), options.assembly) ==
        records.assemblies.end()) {
        return "The file describes no assembly " + options.assembly + ", only " +
               listOf(records.assemblies);
    }
    return {};
}

/// Makes the structures of one reading.
class cStructuresMaker {
  public:
    cStructuresMaker(const sStructureRecords& fileRecords,
                     const std::map<std::string, double>& radii, const sReadOptions& readOptions)
        : records(fileRecords), options(readOptions),
          preparation(fileRecords, readOptions.preparation, radii) {}

    sReadResult make() {
        std::vector<tResidues> models = modelsOf(records);
        if (options.models == eModels::chains) {
            cStructureMaker maker(records, preparation, result.missingRadii);
            maker.reserve(records.atoms.size());
            for (const tResidues& model : models) {
                maker.addCopy(model, nullptr, nullptr);
            }
            take(maker);
        } else {
            for (const tResidues& model : models) {
                makeModel(model);
            }
        }
        if (result.outcome == eReadOutcome::read && result.structures.empty()) {
            result.outcome = eReadOutcome::noAtoms;
        } else if (result.outcome == eReadOutcome::read) {
            result.summary = summaryOf(records, preparation, options, result.structures.front());
        }
        return std::move(result);
    }

  private:
    void makeModel(const tResidues& model) {
        cStructureMaker maker(records, preparation, result.missingRadii);
        if (options.assembly.empty()) {
            maker.reserve(atomsOf(model));
            maker.addCopy(model, nullptr, nullptr);
        }
        for (const sChainCopies& copies : records.copies) {
            for (const sPlacement& placement : copies.placements) {
                maker.addCopy(model, &copies.ids, &placement);
            }
        }
        take(maker);
    }

    std::size_t atomsOf(const tResidues& model) const {
        std::size_t atoms = 0;
        for (const std::size_t residue : model) {
            atoms += records.atomsEnd(residue) - records.residues[residue].firstAtom;
        }
        return atoms;
    }

    void take(cStructureMaker& maker) {
        if (!maker.atomNowhere().empty()) {
            result.outcome = eReadOutcome::refused;
            result.reason = "No coordinates of atom " + maker.atomNowhere();
            result.structures.clear();
        }
        cPdbPeptide structure = maker.finish();
        if (result.outcome == eReadOutcome::read && !structure.atoms.empty()) {
            result.structures.push_back(std::move(structure));
        }
    }

    const sStructureRecords& records;
    const sReadOptions& options;
    cPreparation preparation;
    sReadResult result;
};

} // namespace

sReadResult makeStructures(const sStructureRecords& records,
                           const std::map<std::string, double>& radii,
                           const sReadOptions& options) {
    sReadResult refused{.outcome = eReadOutcome::refused, .reason = complaint(records, options)};
    return refused.reason.empty() ? cStructuresMaker(records, radii, options).make() : refused;
}

} // namespace kelmo

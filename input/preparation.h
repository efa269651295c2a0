// Which atoms of a file are taken, and by which names tables are searched for them.
#pragma once

#include "input/structure_reader.h"
#include "input/structure_records.h"

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <tuple>
#include <unordered_map>

namespace kelmo {

class cPreparation {
  public:
    /// Refers to what it is given.
    cPreparation(const sStructureRecords& fileRecords, const sPreparation& preparation,
                 const std::map<std::string, double>& radiiTable);

    /// Whether a residue is one of a polymer although it stands in HETATM records.
    bool isOfPolymer(std::size_t residue) const;
    /// Whether a residue is taken into its chain.
    bool takes(std::size_t residue) const;
    /// The name by which tables are searched for a residue.
    const std::string& tableName(const sResidueRecord& residue);

    struct sAtomLook {
        std::string name; ///< by which tables are searched
        double radius;    ///< van der Waals, Å
    };
    /// Keys of radii that are not found are added to `missing`.
    const sAtomLook& lookAt(const sResidueRecord& residue, const sAtomRecord& atom,
                            std::set<std::string>& missing);

    /// The label of the alternate locations that are taken of one residue, which several records
    /// may describe; empty for all of them.
    std::string chosenAlternate(std::span<const std::size_t> residues) const;
    /// Whether an atom is taken, the residue being so.
    bool takes(const sAtomRecord& atom, const std::string& alternate) const;

  private:
    using tResidueKey = std::tuple<std::string, std::string, std::string>;

    std::string parentOf(const std::string& residueName) const;
    std::string findTableName(const sResidueRecord& residue) const;
    sAtomLook findLook(const sResidueRecord& residue, const std::string& atomName,
                       std::set<std::string>& missing);
    bool hasBackbone(std::size_t residue) const;

    const sStructureRecords& records;
    const sPreparation& wanted;
    const std::map<std::string, double>& radii;
    std::set<tResidueKey> modified; ///< chain id, number, name
    std::map<std::string, std::string> parents;
    std::unordered_map<std::string, std::string> tableNames;
    std::unordered_map<std::string, sAtomLook> looks;
};

} // namespace kelmo

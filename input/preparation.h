// Which atoms of a file are taken, and by which names tables are searched for them.
#pragma once

#include "input/structure_reader.h"
#include "input/structure_records.h"

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
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
    const std::string& tableName(std::size_t residue);

    struct sAtomLook {
        std::string name; ///< by which tables are searched
        double radius;    ///< van der Waals, Å
    };
    /// Keys of radii that are not found are added to `missing`.
    const sAtomLook& lookAt(std::size_t residue, const std::string& atomName,
                            std::set<std::string>& missing);

    /// The label of the alternate locations that are taken of one residue, which several records
    /// may describe; empty for all of them.
    std::string chosenAlternate(std::span<const std::size_t> residues) const;
    /// Whether an atom is taken, the residue being so.
    bool takes(const sAtomRecord& atom, const std::string& alternate) const;

  private:
    using tResidueKey = std::tuple<std::string, std::string, std::string>;
    struct sNames {
        std::string own;
        std::string parent; ///< empty if it has none
    };

    std::string parentOf(const std::string& residueName) const;
    sNames namesOf(const sResidueRecord& residue) const;
    sAtomLook findLook(const std::string& inFile, const std::string& inTables,
                       const std::string& atomName, std::set<std::string>& missing) const;
    bool hasAtom(std::size_t residue, std::string_view name) const;
    bool hasBackbone(std::size_t residue) const;

    const sStructureRecords& records;
    const sPreparation& wanted;
    const std::map<std::string, double>& radii;
    std::set<tResidueKey> modified; ///< chain id, number, name
    std::map<std::string, std::string> parents;
    std::unordered_map<std::string, sNames> names;
    std::unordered_map<std::string, sAtomLook> looks;
};

} // namespace kelmo

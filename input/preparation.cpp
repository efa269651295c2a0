#include "input/preparation.h"

#include "input/atom_rules.h"
#include "input/gemmi_library.h"
#include "input/understood_names.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

constexpr double seleniumRadius = 1.90; // Å; Bondi, J Phys Chem 68:441, 1964

/// Under whichever of its names.
bool isStandard(const std::string& residueName) {
    return residueTypeOf(understoodResidueName(residueName)) != eResidueType::other;
}

/// What a residue's look-ups depend on.
std::string spelling(const sResidueRecord& residue) {
    return residue.name + (residue.isHetero ? "\n+" : "\n-");
}

} // namespace

cPreparation::cPreparation(const sStructureRecords& fileRecords, const sPreparation& preparation,
                           const std::map<std::string, double>& radiiTable)
    : records(fileRecords), wanted(preparation), radii(radiiTable) {
    for (const sModifiedResidue& residue : records.modifiedResidues) {
        modified.emplace(residue.chainId, residue.number, residue.name);
        if (residue.parent != residue.name && isStandard(residue.parent)) {
            parents.emplace(residue.name, residue.parent);
        }
    }
}

bool cPreparation::isOfPolymer(std::size_t index) const {
    const sResidueRecord& residue = records.residues[index];
    if (residue.polymer != ePolymer::unknown) {
        return residue.polymer == ePolymer::yes;
    }
    if (modified.contains({residue.chainId, residue.number, residue.name})) {
        return true;
    }
    if (isStandard(residue.name)) {
        return false; // a ligand: in a polymer it would stand in ATOM records
    }
    if (!records.sequences.empty() || !modified.empty()) {
        return records.sequences.contains({residue.chainId, residue.name});
    }
    return !parentOf(residue.name).empty() && hasBackbone(index);
}

bool cPreparation::takes(std::size_t residue) const {
    return !records.residues[residue].isHetero ||
           (wanted.modifiedResidues == eModifiedResidues::asParent && isOfPolymer(residue));
}

/// A residue is not taken for an amino acid without the atom from which every side chain begins: a
/// chromophore that has been made from three of them would be.
const std::string& cPreparation::tableName(std::size_t index) {
    const sResidueRecord& residue = records.residues[index];
    const std::string key = spelling(residue);
    auto known = names.find(key);
    if (known == names.end()) {
        known = names.emplace(key, namesOf(residue)).first;
    }
    const auto& [own, parent] = known->second;
    const bool corresponds = !parent.empty() && (residueTypeOf(parent) != eResidueType::aminoAcid ||
                                                 hasAtom(index, "CA"));
    return corresponds ? parent : own;
}

const cPreparation::sAtomLook& cPreparation::lookAt(std::size_t index, const std::string& atomName,
                                                    std::set<std::string>& missing) {
    const std::string& inFile = records.residues[index].name;
    const std::string& inTables = tableName(index);
    const std::string key = inFile + '\n' + inTables + '\n' + atomName;
    const auto known = looks.find(key);
    return known != looks.end()
               ? known->second
               : looks.emplace(key, findLook(inFile, inTables, atomName, missing)).first->second;
}

/// Atoms without a label belong to every conformation.
std::string cPreparation::chosenAlternate(std::span<const std::size_t> residues) const {
    if (wanted.alternateLocations == eAlternateLocations::all) {
        return {};
    }
    struct sConformation {
        std::string label;
        double occupancies = 0.0;
        double atoms = 0.0;
    };
    std::vector<sConformation> conformations;
    for (const std::size_t residue : residues) {
        for (std::size_t i = records.residues[residue].firstAtom; i < records.atomsEnd(residue);
             ++i) {
            const sAtomRecord& atom = records.atoms[i];
            if (atom.alternate.empty() ||
                (wanted.hydrogens == eHydrogens::drop && atom.isHydrogen)) {
                continue;
            }
            auto conformation =
                std::find_if(conformations.begin(), conformations.end(),
                             [&](const auto& other) { return other.label == atom.alternate; });
            if (conformation == conformations.end()) {
                conformation = conformations.insert(conformation, {atom.alternate});
            }
            conformation->occupancies += static_cast<double>(atom.occupancy);
            conformation->atoms += 1.0;
        }
    }
    const auto best = std::max_element(
        conformations.begin(), conformations.end(), [](const auto& a, const auto& b) {
            return a.occupancies * b.atoms < b.occupancies * a.atoms; // means, without a division
        });
    return best == conformations.end() ? std::string() : best->label;
}

bool cPreparation::takes(const sAtomRecord& atom, const std::string& alternate) const {
    return (wanted.hydrogens == eHydrogens::keep || !atom.isHydrogen) &&
           (alternate.empty() || atom.alternate.empty() || atom.alternate == alternate);
}

std::string cPreparation::parentOf(const std::string& residueName) const {
    if (const auto parent = parents.find(residueName); parent != parents.end()) {
        return parent->second;
    }
    std::string parent = tabulatedParent(residueName);
    return isStandard(parent) ? parent : std::string();
}

/// Other names are those of force fields, whose residues stand in ATOM records; in HETATM records
/// HSE is homoserine.
cPreparation::sNames cPreparation::namesOf(const sResidueRecord& residue) const {
    const bool isUnderstood = wanted.names == eNames::understood;
    sNames found{residue.name, {}};
    if (isUnderstood && !residue.isHetero) {
        found.own = understoodResidueName(residue.name);
    }
    if (wanted.modifiedResidues == eModifiedResidues::asParent &&
        residueTypeOf(found.own) == eResidueType::other) {
        found.parent = parentOf(residue.name);
        if (isUnderstood) {
            found.parent = understoodResidueName(found.parent);
        }
    }
    return found;
}

/// Names as the file has them come first: a table may know a modified residue by its own.
cPreparation::sAtomLook cPreparation::findLook(const std::string& inFile,
                                               const std::string& inTables,
                                               const std::string& atomName,
                                               std::set<std::string>& missing) const {
    const sRadiusKey ownKey{inFile, atomName};
    if (atomName == "SE" && inTables != inFile && (inTables == "MET" || inTables == "CYS")) {
        std::set<std::string> unknown;
        const double radius = vdwRadius(radii, ownKey, {"MSE", "SE"}, unknown);
        return {inTables == "MET" ? "SD" : "SG", unknown.empty() ? radius : seleniumRadius};
    }
    std::string name =
        wanted.names == eNames::understood ? understoodAtomName(inTables, atomName) : atomName;
    const double radius = vdwRadius(radii, ownKey, {inTables, name}, missing);
    return {std::move(name), radius};
}

bool cPreparation::hasAtom(std::size_t residue, std::string_view name) const {
    for (std::size_t i = records.residues[residue].firstAtom; i < records.atomsEnd(residue); ++i) {
        if (records.atoms[i].name == name) {
            return true;
        }
    }
    return false;
}

/// The atoms that join a residue to its neighbours in the chain.
bool cPreparation::hasBackbone(std::size_t residue) const {
    return (hasAtom(residue, "N") && hasAtom(residue, "CA") && hasAtom(residue, "C")) ||
           (hasAtom(residue, "C3'") && hasAtom(residue, "C5'")) ||
           (hasAtom(residue, "C3*") && hasAtom(residue, "C5*"));
}

} // namespace kelmo

// The parameter tables of a run: reading them, and what the user is told when one cannot be used.
#pragma once

#include "analysis/settings.h"
#include "base/exported.h"
#include "model/addition.h"
#include "model/contact.h"

#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// The tables that a run goes by; those that it does not need are empty.
struct sParameterTables {
    std::map<std::string, double> radii;          ///< Å, by residue name + "_" + atom name
    std::map<std::string, sAsa> standardAreas;    ///< Å², by residue name
    std::map<std::string, double> hydrophobicity; ///< as in the scale, by residue name
    contactMap contactRules;                      ///< of the table-driven criterion
};

/// Why a table cannot be used.
struct sTableProblem {
    std::string key;         ///< of the setting that names the table
    std::string path;        ///< as it was named
    bool isUnopened = false; ///< whether the file could not even be opened
    /// What the user is told: the faulty line, the amino acids that are missing, or advice where
    /// the file could not be opened.
    std::string text;
};

/// Whether a run by these settings reads the table that the setting of this key names; false for a
/// key that the module does not have.
bool isTableNeeded(const cSettings& settings, std::string_view key);

/// Reads the tables that a run by these settings needs, in the order of the settings, radii first.
/// Returns nothing, or what is wrong with the first that cannot be used.
std::optional<sTableProblem> readParameterTables(const cSettings& settings,
                                                 sParameterTables& tables);

/// Reads van der Waals radii in Å, by residue name + "_" + atom name. Returns an empty text, or the
/// message for the user: the faulty line, or a radius above 100 Å.
std::string readRadiiTable(std::istream& in, std::map<std::string, double>& radii);
/// Reads standard areas in Å², by residue name. Returns an empty text, or the message for the user:
/// the faulty line, or the standard amino acids that the table lacks.
std::string readStandardAsaTable(std::istream& in, std::map<std::string, sAsa>& standards);
/// Reads a hydrophobicity scale, by residue name. Returns an empty text, or the message for the
/// user: the faulty line, or the standard amino acids that the table lacks.
std::string readHydrophobicityTable(std::istream& in, std::map<std::string, double>& scale);
/// Reads contact rules. Returns an empty text, or the message for the user: the faulty line.
std::string readContactRules(std::istream& in, contactMap& rules);

} // namespace kelmo

// What is kept of an analysed file for results files: plain values, without the structure.
#pragma once

#include "analysis/columns.h"
#include "model/contact.h"
#include "model/pdb_peptide.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelmo {

/// One type of one contact.
struct sContactTypeRow {
    std::size_t contact = 0; ///< position among the contacts
    eContactType type = eContactType::undefined;
};

/// What the interaction module finds out about a structure.
struct sInteractionRecord {
    std::vector<bool> isBinding = {}; ///< of the residues
    sContactList contacts = {};       ///< each in both directions, in the order of the reports
    std::vector<sContactTypeRow> types = {}; ///< in the order of the contacts
};

/// One analysed structure.
struct sStructureRecord {
    std::string entry = {};                  ///< identification code of the entry, may be empty
    std::size_t atoms = 0;                   ///< that take part in the analysis
    std::vector<sChainRow> chains = {};      ///< in the order of the reports
    std::vector<sResidueRow> residues = {};  ///< of all chains, in the order of the reports
    std::vector<std::uint32_t> chainOf = {}; ///< of the residues: position among the chains
    std::array<std::optional<sStateColumns>, 2> states = {}; ///< by eState; without its own rows
    std::optional<sInteractionRecord> interactions = {};

    /// The values of an attribute in a state; null when they were not computed or not wanted.
    const sAttributeValues* values(eState state, const sAttribute& attribute) const;
};

/// How the work on a file ended.
enum class eFileStatus { analysed, failed };

/// One input file and what came of it.
struct sFileRecord {
    std::string path = {};   ///< bytes of any encoding
    std::string sha256 = {}; ///< of the content, taken before it was read; empty if unreadable
    eFileStatus status = eFileStatus::failed;
    std::string message = {};     ///< errors and warnings, a line each; empty for none
    std::string notAnalysed = {}; ///< what of the file has no part in the numbers; may be empty
    std::vector<sStructureRecord> structures = {}; ///< none if it failed
};

/// Takes what the structure itself tells: entry, atoms, chains and residues.
void takeLayout(const cPdbPeptide& structure, sStructureRecord& record);
/// Takes the columns of a state, whose rows are those of takeLayout().
void takeState(eState state, sStateColumns columns, sStructureRecord& record);
/// Takes what a search has found.
void takeInteractions(const cPdbPeptide& structure, sContactList contacts,
                      sStructureRecord& record);

/// About how many bytes a record takes.
std::size_t sizeOf(const sFileRecord& record);

} // namespace kelmo

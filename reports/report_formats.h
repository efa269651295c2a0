// The formats of reports: one row each, with the functions that write them.
#pragma once

#include "analysis/columns.h"
#include "analysis/criteria.h"
#include "analysis/settings.h"
#include "base/exported.h"
#include "base/text_sink.h"
#include "contacts/interfaces.h"

#include <array>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace KELMO_API kelmo {

/// What a report of the structure module is written from.
struct sAttributeReport {
    const sStateColumns& columns; ///< of the structure, or of a single chain
    const cSettings& settings;    ///< for the header
};

/// A contact as reports show it.
struct sContactView {
    std::string_view chain1;         ///< id of the chain of the first residue
    std::string_view residueNumber1; ///< with insertion code
    std::string_view residueName1;   ///< of its type: "ALA"
    std::string_view chain2;         ///< id of the chain of the second residue
    std::string_view residueNumber2; ///< with insertion code
    std::string_view residueName2;   ///< of its type
    /// By which the contact was found.
    eInteractionCriterion criterion = eInteractionCriterion::none;
    const std::set<eContactType>* types = nullptr; ///< not owned, never null
};

/// What a report of the interaction module is written from.
struct sInteractionReport {
    const cPdbPeptide& structure; ///< with its binding residues marked
    const cSettings& settings;    ///< for the header
    std::size_t contactCount = 0; ///< contacts, each counted once from either side
    /// The contact number `i`, from 0, in the order of reports; may be asked on several threads.
    std::function<sContactView(std::size_t i)> contactAt = {};
    /// What lies between the chains; null when it was not asked for. Not owned.
    const std::vector<sInterface>* interfaces = nullptr;
};

/// With the contacts that a search has found, which must outlive the report like the rest.
sInteractionReport interactionReportOf(const cPdbPeptide& structure, const cSettings& settings,
                                       const sContactList& contacts);
/// With the contacts that the structure itself holds.
sInteractionReport interactionReportOf(const cPdbPeptide& structure, const cSettings& settings);

/// One format.
struct sReportFormat {
    sSetting setting;          ///< the flag that asks for it, of both modules
    std::string suffix = {};   ///< of its files: ".xml"
    std::string prologue = {}; ///< what each file begins with, before what the functions write
    /// Writes the areas and the other attributes of a structure.
    void (*writeAttributes)(cTextSink& out, const sAttributeReport& report) = nullptr;
    /// Writes the contacts between chains.
    void (*writeContacts)(cTextSink& out, const sInteractionReport& report) = nullptr;
    /// Writes the residues that take part in an interaction.
    void (*writeBindingResidues)(cTextSink& out, const sInteractionReport& report) = nullptr;
    /// Writes all residues, and of each whether it takes part in an interaction.
    void (*writeBindingStatus)(cTextSink& out, const sInteractionReport& report) = nullptr;

    /// Writes the pairs of chains that touch, and what lies between them.
    void (*writeInterfaces)(cTextSink& out, const sInteractionReport& report) = nullptr;

    /// Whether the settings ask for it.
    bool isWanted(const cSettings& settings) const { return settings.flag(setting.key); }
};

/// In the order of writing.
const std::vector<sReportFormat>& reportFormats();
/// Adds a format, before the first analysis of the process. Not for several threads at once.
void addReportFormat(sReportFormat format);

/// One report of the interaction module.
struct sInteractionReportKind {
    std::string fileNameEnd = {}; ///< "_contacts"
    std::string switchKey = {};   ///< of the flag that asks for it
    /// The function of a format that writes it.
    void (*sReportFormat::*write)(cTextSink& out, const sInteractionReport& report);
};

/// In the order of writing.
const std::array<sInteractionReportKind, 4>& interactionReportKinds();

/// The report of the structure module as an XML document.
void writeAttributeXml(cTextSink& out, const sAttributeReport& report);
/// The report of a single chain as an XML document.
void writeChainXml(cTextSink& out, const sAttributeReport& report);
/// The element of a single chain within a document.
void writeChainElementXml(cTextSink& out, const sAttributeReport& report);
/// The contacts as an XML document.
void writeContactXml(cTextSink& out, const sInteractionReport& report);
/// The binding residues as an XML document.
void writeBindingResidueXml(cTextSink& out, const sInteractionReport& report);
/// The binding status of every residue as an XML document.
void writeBindingStatusXml(cTextSink& out, const sInteractionReport& report);
/// The interfaces as an XML document.
void writeInterfaceXml(cTextSink& out, const sInteractionReport& report);

/// The report of the structure module as a table of aligned columns.
void writeAttributeTable(cTextSink& out, const sAttributeReport& report);
/// The contacts as a table of aligned columns.
void writeContactTable(cTextSink& out, const sInteractionReport& report);
/// The binding residues as a table of aligned columns.
void writeBindingResidueTable(cTextSink& out, const sInteractionReport& report);
/// The binding status of every residue as a table of aligned columns.
void writeBindingStatusTable(cTextSink& out, const sInteractionReport& report);
/// The interfaces as a table.
void writeInterfaceTable(cTextSink& out, const sInteractionReport& report);

} // namespace kelmo

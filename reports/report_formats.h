// The formats of reports: one row each, with the functions that write them.
#pragma once

#include "analysis/columns.h"
#include "analysis/criteria.h"
#include "analysis/settings.h"
#include "base/text_sink.h"

#include <array>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// What a report of the structure module is written from.
struct sAttributeReport {
    const sStateColumns& columns;
    const cSettings& settings; ///< for the header
};

/// A contact as reports show it.
struct sContactView {
    std::string_view chain1;
    std::string_view residueNumber1;
    std::string_view residueName1;
    std::string_view chain2;
    std::string_view residueNumber2;
    std::string_view residueName2;
    eInteractionCriterion criterion = eInteractionCriterion::none;
    const std::set<eContactType>* types = nullptr; ///< not owned, never null
};

/// What a report of the interaction module is written from.
struct sInteractionReport {
    const cPdbPeptide& structure;
    const cSettings& settings;
    std::size_t contactCount = 0;
    std::function<sContactView(std::size_t i)> contactAt = {}; ///< may be asked on several threads
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
    void (*writeAttributes)(cTextSink& out, const sAttributeReport& report) = nullptr;
    void (*writeContacts)(cTextSink& out, const sInteractionReport& report) = nullptr;
    void (*writeBindingResidues)(cTextSink& out, const sInteractionReport& report) = nullptr;
    void (*writeBindingStatus)(cTextSink& out, const sInteractionReport& report) = nullptr;

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
    void (*sReportFormat::*write)(cTextSink& out, const sInteractionReport& report);
};

/// In the order of writing.
const std::array<sInteractionReportKind, 3>& interactionReportKinds();

// XML

void writeAttributeXml(cTextSink& out, const sAttributeReport& report);
/// A document of a single chain.
void writeChainXml(cTextSink& out, const sAttributeReport& report);
/// The element of a single chain within a document.
void writeChainElementXml(cTextSink& out, const sAttributeReport& report);
void writeContactXml(cTextSink& out, const sInteractionReport& report);
void writeBindingResidueXml(cTextSink& out, const sInteractionReport& report);
void writeBindingStatusXml(cTextSink& out, const sInteractionReport& report);

// Tables of aligned columns

void writeAttributeTable(cTextSink& out, const sAttributeReport& report);
void writeContactTable(cTextSink& out, const sInteractionReport& report);
void writeBindingResidueTable(cTextSink& out, const sInteractionReport& report);
void writeBindingStatusTable(cTextSink& out, const sInteractionReport& report);

} // namespace kelmo

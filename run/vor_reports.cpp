// The reports of the interaction module: cRunVOR's XML documents and tables.
#include "run/run_vor_linux.h"

#include "base/stop_request.h"
#include "run/report_namespaces.h"

#include <iomanip>
#include <ostream>

namespace kelmo {

namespace {

/// One leaf; texts are written as they are, which readers of these reports rely on.
template <typename Value>
void writeLeaf(cXmlWriter& writer, const char* name, const Value& value, int indent) {
    writer.writeElement(name, value, indent);
}

void writeResidueLeaves(cXmlWriter& writer, const std::string& criterion,
                        const cProteinChain& chain, const cChainResidue& residue) {
    writeLeaf(writer, "interaction_criterion", criterion, 6);
    writeLeaf(writer, "chain_id", chain.chainId, 6);
    writeLeaf(writer, "residue_id", residue.residueNumber, 6);
    writeLeaf(writer, "residue_name", residue.residueName, 6);
}

void writeContact(cXmlWriter& writer, const cResidueContact& contact) {
    writer.writeStart("contact", 4);
    writeLeaf(writer, "interaction_criterion",
              cRunVOR::getInteractionCriterionString(contact.criterion), 6);
    writeLeaf(writer, "chain_id_1", contact.chain1, 6);
    writeLeaf(writer, "residue_id_1", contact.residueNumber1, 6);
    writeLeaf(writer, "residue_name_1", contact.residueName1, 6);
    writeLeaf(writer, "chain_id_2", contact.chain2, 6);
    writeLeaf(writer, "residue_id_2", contact.residueNumber2, 6);
    writeLeaf(writer, "residue_name_2", contact.residueName2, 6);
    if (!contact.contactTypes.empty()) {
        writer.writeStart("contact_types", 6);
        for (const eContactType type : contact.contactTypes) {
            writeLeaf(writer, "contact_type", cRunVOR::getContactTypeString(type), 8);
        }
        writer.writeEnd("contact_types", 6, true);
    }
    writer.writeEnd("contact", 4, true);
}

/// Calls `visit(chain, residue)` for every residue of every chain, in order.
template <typename Visit>
void forEachResidue(const cPdbPeptide& peptide, Visit visit) {
    cStopCheck check;
    for (const cProteinChain& chain : peptide.chains) {
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            check();
            visit(chain, chain.residues[i]);
        }
    }
}

} // namespace

std::string cRunVOR::getContactTypeString(eContactType type) {
    switch (type) {
    case eContactType::hydrophobic:
        return "Hydrophobic";
    case eContactType::polar:
        return "Polar";
    case eContactType::ionic:
        return "Ionic";
    case eContactType::vanDerWaals:
        return "vanDerWaals";
    case eContactType::undefined:
        break;
    }
    return "Undefined";
}

std::string cRunVOR::getInteractionCriterionString(eInteractionCriterion criterion) {
    switch (criterion) {
    case eInteractionCriterion::maximumDistance:
        return "MaximumDistance";
    case eInteractionCriterion::prism:
        return "PRISM";
    case eInteractionCriterion::dovreth:
        return "Dovreth";
    case eInteractionCriterion::vorda:
        return "VORDA";
    case eInteractionCriterion::none:
        break;
    }
    return "";
}

void cRunVOR::writeXmlHeader(cXmlWriter& writer, const char* root,
                             const cPdbPeptide& peptide) const {
    writer.writeStart(root + std::string(reportNamespaces), 0);
    writeLeaf(writer, "pdb_id", peptide.name, 2);
    writeLeaf(writer, "radii_filename", radiiFileName, 2);
    if (criterion == eInteractionCriterion::prism) {
        writeLeaf(writer, "PRISM_threshold", threshold, 2);
    } else if (criterion == eInteractionCriterion::dovreth) {
        writeLeaf(writer, "TH_delta_asa", threshold, 2);
        writeLeaf(writer, "TH_z_slice", zSlice, 2);
        writeLeaf(writer, "TH_r_solvent", probeRadius, 2);
    } else if (criterion == eInteractionCriterion::maximumDistance) {
        writeLeaf(writer, "MD_threshold", threshold, 2);
    }
}

void cRunVOR::writeContactsXml(cXmlWriter& writer, cPdbPeptide& peptide) {
    writeXmlHeader(writer, "peptideResidueContacts", peptide);
    writer.writeStart("contacts", 2);
    cStopCheck check;
    for (const cResidueContact& contact : peptide.contacts) {
        check();
        writeContact(writer, contact);
    }
    writer.writeEnd("contacts", 2, true);
    writer.writeEnd("peptideResidueContacts", 0, true);
}

void cRunVOR::writeHotSpotsXml(cXmlWriter& writer, cPdbPeptide& peptide) {
    const std::string criterionName = getInteractionCriterionString(criterion);
    writeXmlHeader(writer, "peptideBindingResidues", peptide);
    writer.writeStart("binding_residues", 2);
    forEachResidue(peptide, [&](const cProteinChain& chain, const cChainResidue& residue) {
        if (residue.isBinding) {
            writer.writeStart("binding_residue", 4);
            writeResidueLeaves(writer, criterionName, chain, residue);
            writer.writeEnd("binding_residue", 4, true);
        }
    });
    writer.writeEnd("binding_residues", 2, true);
    writer.writeEnd("peptideBindingResidues", 0, true);
}

void cRunVOR::writeResidueBindingStatusXml(cXmlWriter& writer, cPdbPeptide& peptide) {
    const std::string criterionName = getInteractionCriterionString(criterion);
    writeXmlHeader(writer, "peptideResidueBindingStatus", peptide);
    writer.writeStart("residues", 2);
    forEachResidue(peptide, [&](const cProteinChain& chain, const cChainResidue& residue) {
        writer.writeStart("residue", 4);
        writeResidueLeaves(writer, criterionName, chain, residue);
        writeLeaf(writer, "binding_status", residue.isBinding, 6);
        writer.writeEnd("residue", 4, true);
    });
    writer.writeEnd("residues", 2, true);
    writer.writeEnd("peptideResidueBindingStatus", 0, true);
}

void cRunVOR::writeTableHeader(std::ostream& out, const cPdbPeptide& peptide) const {
    out << "pdb_id: " << peptide.name << '\n' << "radii_filename: " << radiiFileName << '\n';
    if (criterion == eInteractionCriterion::prism) {
        out << "PRISM_threshold: " << threshold << '\n';
    } else if (criterion == eInteractionCriterion::maximumDistance) {
        out << "MD_threshold: " << threshold << '\n';
    } else if (criterion == eInteractionCriterion::dovreth) {
        out << "TH_delta_asa: " << threshold << '\n'
            << "TH_z_slice: " << zSlice << '\n'
            << "TH_r_solvent: " << probeRadius << '\n';
    }
}

void cRunVOR::writeContactsTable(std::ostream& out, cPdbPeptide& peptide) {
    writeTableHeader(out, peptide);
    cStopCheck check;
    for (const cResidueContact& contact : peptide.contacts) {
        check();
        out << contact.chain1 << std::setw(6) << contact.residueNumber1 << std::setw(5)
            << contact.residueName1 << std::setw(3) << contact.chain2 << std::setw(6)
            << contact.residueNumber2 << std::setw(5) << contact.residueName2 << std::setw(20)
            << getInteractionCriterionString(contact.criterion);
        for (const eContactType type : contact.contactTypes) {
            out << std::setw(18) << getContactTypeString(type);
        }
        out << '\n';
    }
}

void cRunVOR::writeHotSpotsTable(std::ostream& out, cPdbPeptide& peptide) {
    const std::string criterionName = getInteractionCriterionString(criterion);
    writeTableHeader(out, peptide);
    forEachResidue(peptide, [&](const cProteinChain& chain, const cChainResidue& residue) {
        if (residue.isBinding) {
            out << chain.chainId << std::setw(6) << residue.residueNumber << std::setw(5)
                << residue.residueName << std::setw(18) << criterionName << '\n';
        }
    });
}

void cRunVOR::writeResidueBindingStatusTable(std::ostream& out, cPdbPeptide& peptide) {
    const std::string criterionName = getInteractionCriterionString(criterion);
    writeTableHeader(out, peptide);
    forEachResidue(peptide, [&](const cProteinChain& chain, const cChainResidue& residue) {
        out << chain.chainId << std::setw(6) << residue.residueNumber << std::setw(5)
            << residue.residueName << std::setw(3) << residue.isBinding << std::setw(18)
            << criterionName << '\n';
    });
}

} // namespace kelmo

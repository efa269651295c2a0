#include "results/structure_record.h"

#include <algorithm>
#include <utility>

namespace kelmo {

namespace {

std::size_t sizeOf(const sStructureRecord& record) {
    std::size_t size = record.residues.size() * (sizeof(sResidueRow) + sizeof(std::uint32_t)) +
                       record.chains.size() * sizeof(sChainRow);
    for (const auto& state : record.states) {
        if (!state) {
            continue;
        }
        for (const sAttributeValues& attribute : state->attributes) {
            for (const sColumnValues& column : attribute.columns) {
                size += (column.ofResidues.size() + column.ofChains.size()) * sizeof(double);
            }
        }
    }
    if (record.interactions) {
        size += record.interactions->contacts.contacts.size() * sizeof(sContact) +
                record.interactions->types.size() * sizeof(sContactTypeRow);
    }
    return size;
}

} // namespace

const sAttributeValues* sStructureRecord::values(eState state, const sAttribute& attribute) const {
    const auto& columns = states[static_cast<std::size_t>(state)];
    if (!columns) {
        return nullptr;
    }
    const auto found =
        std::ranges::find(columns->attributes, &attribute, &sAttributeValues::attribute);
    return found == columns->attributes.end() ? nullptr : &*found;
}

void takeLayout(const cPdbPeptide& structure, sStructureRecord& record) {
    record.entry = structure.name;
    record.atoms = structure.atoms.size();
    record.chains.clear();
    record.residues.clear();
    record.chainOf.clear();
    for (const cProteinChain& chain : structure.chains) {
        record.chains.push_back({chain.chainId, record.residues.size(), chain.residueCount});
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            const cChainResidue& residue = chain.residues[i];
            record.residues.push_back({residue.residueName, residue.residueNumber});
            record.chainOf.push_back(static_cast<std::uint32_t>(record.chains.size() - 1));
        }
    }
}

void takeState(eState state, sStateColumns columns, sStructureRecord& record) {
    columns.residues = {};
    columns.chains = {};
    record.states[static_cast<std::size_t>(state)] = std::move(columns);
}

void takeInteractions(const cPdbPeptide& structure, sContactList contacts,
                      sStructureRecord& record) {
    sInteractionRecord found;
    for (const cProteinChain& chain : structure.chains) {
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            found.isBinding.push_back(chain.residues[i].isBinding);
        }
    }
    for (std::size_t i = 0; i < contacts.contacts.size(); ++i) {
        for (const eContactType type : contacts.typeSets[contacts.contacts[i].typeSet]) {
            found.types.push_back({i, type});
        }
    }
    found.contacts = std::move(contacts);
    record.interactions = std::move(found);
}

std::size_t sizeOf(const sFileRecord& record) {
    std::size_t size = sizeof(sFileRecord) + record.path.size() + record.message.size();
    for (const sStructureRecord& structure : record.structures) {
        size += sizeOf(structure);
    }
    return size;
}

} // namespace kelmo

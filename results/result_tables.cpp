#include "results/result_tables.h"

#include "analysis/criteria.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace kelmo {

namespace {

sCell integerCell(std::size_t value) {
    return {.kind = sCell::eKind::integer, .integer = static_cast<std::int64_t>(value)};
}

sCell integerCell(std::int64_t value) {
    return {.kind = sCell::eKind::integer, .integer = value};
}

sCell realCell(double value) {
    return {.kind = sCell::eKind::real, .real = value};
}

sCell textCell(std::string_view text) {
    return {.kind = sCell::eKind::text, .text = text};
}

/// Nothing where there is no text.
sCell optionalTextCell(std::string_view text) {
    return text.empty() ? sCell{} : textCell(text);
}

// Rows count from 1, as people do.

sCell placeCell(const sRowSource&, std::size_t row) {
    return integerCell(row + 1);
}

sResultColumn structureColumn() {
    return {"structure", "INTEGER", "", "id of the structure",
            [](const sRowSource& source, std::size_t) { return integerCell(source.id); }};
}

/// A column of structures that those which failed do not have.
template <typename Cell>
sResultColumn countColumn(const char* name, const char* meaning, Cell cell) {
    return {name, "INTEGER", "", meaning, [cell](const sRowSource& source, std::size_t) {
                return source.structure == nullptr ? sCell{} : cell(*source.structure);
            }};
}

template <typename Cell>
sResultColumn interactionColumn(const char* name, const char* meaning, Cell cell) {
    sResultColumn column = countColumn(name, meaning, cell);
    column.module = "vor";
    return column;
}

std::size_t bindingResidues(const sInteractionRecord& interactions) {
    return static_cast<std::size_t>(std::ranges::count(interactions.isBinding, true));
}

std::vector<sResultColumn> fileColumns() {
    const auto column = [](const char* name, const char* type, const char* meaning, auto cell) {
        return sResultColumn{
            name, type, "", meaning,
            [cell](const sRowSource& source, std::size_t) { return cell(source); }};
    };
    return {
        column("id", "INTEGER",
               "place of the file in the run's list, counted on from the runs before; further "
               "models of the file have 4294967296 more each",
               [](const sRowSource& source) { return integerCell(source.id); }),
        column("run", "INTEGER", "id of the run",
               [](const sRowSource& source) { return integerCell(source.run); }),
        column("input", "INTEGER", "place of the file in the run's list, from 1",
               [](const sRowSource& source) { return integerCell(source.input); }),
        column("model", "INTEGER", "place of the structure in its file, from 1",
               [](const sRowSource& source) { return integerCell(source.model); }),
        column("path", "TEXT", "name of the file as it was given",
               [](const sRowSource& source) { return textCell(source.file.path); }),
        column("sha256", "TEXT", "SHA-256 of the file before it was read; null if unreadable",
               [](const sRowSource& source) { return optionalTextCell(source.file.sha256); }),
        column("entry", "TEXT", "identification code of the entry",
               [](const sRowSource& source) {
                   return source.structure == nullptr ? sCell{}
                                                      : optionalTextCell(source.structure->entry);
               }),
        column("status", "TEXT", "analysed, failed, or pending while it is not done",
               [](const sRowSource& source) {
                   return textCell(source.file.status == eFileStatus::analysed ? "analysed"
                                                                               : "failed");
               }),
        column("message", "TEXT", "errors and warnings, a line each; null for none",
               [](const sRowSource& source) { return optionalTextCell(source.file.message); }),
        column("not_analysed", "TEXT", "what of the file has no part in the numbers",
               [](const sRowSource& source) { return optionalTextCell(source.file.notAnalysed); }),
        countColumn(
            "chains", "number of chains",
            [](const sStructureRecord& structure) { return integerCell(structure.chains.size()); }),
        countColumn("residues", "number of residues",
                    [](const sStructureRecord& structure) {
                        return integerCell(structure.residues.size());
                    }),
        countColumn("atoms", "number of atoms",
                    [](const sStructureRecord& structure) { return integerCell(structure.atoms); }),
        interactionColumn("contacts", "number of rows in contacts; null by kev",
                          [](const sStructureRecord& structure) {
                              return structure.interactions
                                         ? integerCell(
                                               structure.interactions->contacts.contacts.size())
                                         : sCell{};
                          }),
        interactionColumn("binding_residues", "number of binding residues; null by kev",
                          [](const sStructureRecord& structure) {
                              return structure.interactions
                                         ? integerCell(bindingResidues(*structure.interactions))
                                         : sCell{};
                          })};
}

constexpr std::array<eState, 2> states{eState::bound, eState::unbound};

std::string meaningOf(const sAttribute& attribute, const char* whose, eState state) {
    const sSetting& setting = attribute.settings.front();
    return setting.title + " of the " + whose +
           (state == eState::bound ? " in the complex. " : " with each chain alone. ") +
           setting.help;
}

/// Adds the columns of all attributes in both states that `isThere` tells of. `seriesOf` gives the
/// values of one.
template <typename IsThere, typename SeriesOf>
void addAttributeColumns(std::vector<sResultColumn>& columns, const char* whose, IsThere isThere,
                         SeriesOf seriesOf) {
    for (const eState state : states) {
        for (const sAttribute& attribute : attributes()) {
            for (std::size_t i = 0; i < attribute.columns.size(); ++i) {
                const sColumn& column = attribute.columns[i];
                if (!isThere(column)) {
                    continue;
                }
                const auto series = [state, &attribute, i, seriesOf](
                                        const sRowSource& source) -> std::span<const double> {
                    const auto* const values = source.structure == nullptr
                                                   ? nullptr
                                                   : source.structure->values(state, attribute);
                    if (values == nullptr) {
                        return {};
                    }
                    return seriesOf(values->columns[i]);
                };
                const auto cell = [series](const sRowSource& source, std::size_t row) {
                    const std::span<const double> values = series(source);
                    return values.empty() ? sCell{} : realCell(values[row]);
                };
                columns.push_back({column.name + '_' + std::string(nameOf(state)), "REAL",
                                   column.unit, meaningOf(attribute, whose, state), cell, series,
                                   "kev"});
            }
        }
    }
}

sResultTable structuresTable() {
    sResultTable table{.name = "structures",
                       .columns = fileColumns(),
                       .rowCount = [](const sRowSource&) { return std::size_t{1}; }};
    addAttributeColumns(
        table.columns, "structure",
        [](const sColumn& column) { return column.ofStructure != nullptr; },
        [](const sColumnValues& values) { return std::span(&values.ofStructure, 1); });
    return table;
}

sResultTable chainsTable() {
    const auto column = [](const char* name, const char* type, const char* meaning, auto cell) {
        return sResultColumn{name, type, "", meaning,
                             [cell](const sRowSource& source, std::size_t row) {
                                 return cell(source.structure->chains[row]);
                             }};
    };
    sResultTable table{
        .name = "chains",
        .keyColumns = 2,
        .columns = {structureColumn(),
                    {"chain", "INTEGER", "", "place of the chain in the structure, from 1",
                     placeCell},
                    column("chain_id", "TEXT", "id of the chain; * for a blank one",
                           [](const sChainRow& chain) { return textCell(chain.id); }),
                    column(
                        "first_residue", "INTEGER", "place of its first residue",
                        [](const sChainRow& chain) { return integerCell(chain.firstResidue + 1); }),
                    column("residues", "INTEGER", "number of residues",
                           [](const sChainRow& chain) { return integerCell(chain.residueCount); })},
        .rowCount = [](const sRowSource& source) { return source.structure->chains.size(); }};
    addAttributeColumns(
        table.columns, "chain", [](const sColumn& one) { return one.ofChain != nullptr; },
        [](const sColumnValues& values) { return std::span(values.ofChains); });
    return table;
}

sResultTable residuesTable() {
    const auto column = [](const char* name, const char* type, const char* meaning, auto cell) {
        return sResultColumn{name, type, "", meaning,
                             [cell](const sRowSource& source, std::size_t row) {
                                 return cell(*source.structure, row);
                             }};
    };
    sResultTable table{
        .name = "residues",
        .keyColumns = 2,
        .columns = {structureColumn(),
                    {"residue", "INTEGER", "", "place of the residue in the structure, from 1",
                     placeCell},
                    column("chain", "INTEGER", "place of its chain",
                           [](const sStructureRecord& structure, std::size_t row) {
                               return integerCell(std::size_t{structure.chainOf[row]} + 1);
                           }),
                    column("chain_id", "TEXT", "id of its chain",
                           [](const sStructureRecord& structure, std::size_t row) {
                               return textCell(structure.chains[structure.chainOf[row]].id);
                           }),
                    column("number", "TEXT", "residue number with insertion code",
                           [](const sStructureRecord& structure, std::size_t row) {
                               return textCell(structure.residues[row].number);
                           }),
                    column("name", "TEXT", "name of the residue",
                           [](const sStructureRecord& structure, std::size_t row) {
                               return textCell(structure.residues[row].name);
                           }),
                    column("is_binding", "INTEGER",
                           "1 if it is a binding residue, else 0; null by kev",
                           [](const sStructureRecord& structure, std::size_t row) {
                               return structure.interactions
                                          ? integerCell(
                                                std::size_t{structure.interactions->isBinding[row]})
                                          : sCell{};
                           })},
        .rowCount = [](const sRowSource& source) { return source.structure->residues.size(); }};
    table.columns.back().module = "vor";
    addAttributeColumns(
        table.columns, "residue", [](const sColumn&) { return true; },
        [](const sColumnValues& values) { return std::span(values.ofResidues); });
    return table;
}

sResultTable contactsTable() {
    const auto column = [](const char* name, const char* meaning, auto cell) {
        return sResultColumn{
            name, "INTEGER", "", meaning, [cell](const sRowSource& source, std::size_t row) {
                return integerCell(
                    std::size_t{cell(source.structure->interactions->contacts.contacts[row])} + 1);
            }};
    };
    return {.name = "contacts",
            .keyColumns = 2,
            .columns = {structureColumn(),
                        {"contact", "INTEGER", "", "place of the contact in its report, from 1",
                         placeCell},
                        column("residue_1", "place of the one residue",
                               [](const sContact& contact) { return contact.residue1; }),
                        column("residue_2",
                               "place of the other residue; the contact stands in the table once "
                               "more from its side",
                               [](const sContact& contact) { return contact.residue2; })},
            .rowCount = [](const sRowSource& source) {
                const auto& interactions = source.structure->interactions;
                return interactions ? interactions->contacts.contacts.size() : 0;
            }};
}

sResultTable contactTypesTable() {
    const auto typeAt = [](const sRowSource& source, std::size_t row) -> const sContactTypeRow& {
        return source.structure->interactions->types[row];
    };
    return {.name = "contact_types",
            .keyColumns = 3,
            .columns = {structureColumn(),
                        {"contact", "INTEGER", "", "place of the contact",
                         [typeAt](const sRowSource& source, std::size_t row) {
                             return integerCell(typeAt(source, row).contact + 1);
                         }},
                        {"type", "TEXT", "", "Hydrophobic, Polar, Ionic or vanDerWaals",
                         [typeAt](const sRowSource& source, std::size_t row) {
                             return textCell(contactTypeText(typeAt(source, row).type));
                         }}},
            .rowCount = [](const sRowSource& source) {
                const auto& interactions = source.structure->interactions;
                return interactions ? interactions->types.size() : 0;
            }};
}

} // namespace

const std::vector<sResultTable>& resultTables() {
    static const std::vector<sResultTable> tables{structuresTable(), chainsTable(), residuesTable(),
                                                  contactsTable(), contactTypesTable()};
    return tables;
}

const sResultTable& resultTable(std::string_view name) {
    const auto found = std::ranges::find(resultTables(), name, &sResultTable::name);
    if (found == resultTables().end()) {
        throw std::logic_error("no results table " + std::string(name));
    }
    return *found;
}

std::string_view contactTypeText(eContactType type) {
    static const std::array<std::string, 5> names = [] {
        std::array<std::string, 5> all;
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i] = contactTypeName(static_cast<eContactType>(i));
        }
        return all;
    }();
    const auto number = static_cast<std::size_t>(type);
    return names[number < names.size() ? number : 0];
}

std::int64_t structureId(std::int64_t firstId, std::int64_t model) {
    return firstId + (model - 1) * modelDistance;
}

} // namespace kelmo

// A new format of reports: a line for every residue. One file and one row.
#pragma once

#include "reports/report_formats.h"

#include <string>

namespace kelmo {

inline void writeAttributeLines(cTextSink& out, const sAttributeReport& report) {
    for (const sChainRow& chain : report.columns.chains) {
        for (std::size_t i = 0; i < chain.residueCount; ++i) {
            const std::size_t residue = chain.firstResidue + i;
            std::string line = chain.id + ' ' + report.columns.residues[residue].number;
            for (const sAttributeValues& attribute : report.columns.attributes) {
                for (const sColumnValues& column : attribute.columns) {
                    line += ' ' + column.column->name + '=' +
                            std::to_string(column.ofResidues[residue]);
                }
            }
            out.write(line + '\n');
        }
    }
}

inline void writeContactLines(cTextSink& out, const sInteractionReport& report) {
    for (std::size_t i = 0; i < report.contactCount; ++i) {
        const sContactView contact = report.contactAt(i);
        out.write(std::string(contact.chain1) + std::string(contact.residueNumber1) + '-' +
                  std::string(contact.chain2) + std::string(contact.residueNumber2) + '\n');
    }
}

inline sReportFormat lineFormat() {
    return {.setting = {.key = "write_lines",
                        .group = eSettingGroup::formats,
                        .byDefault = "0",
                        .title = "Lines",
                        .help = "Write .lines reports: a line for each residue or contact."},
            .suffix = ".lines",
            .writeAttributes = writeAttributeLines,
            .writeContacts = writeContactLines};
}

} // namespace kelmo

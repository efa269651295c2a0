#include "tests/support/shipped_inputs.h"

#include "tests/support/test_files.h"

#include <sstream>
#include <stdexcept>
#include <utility>

namespace kelmo {

namespace {

template <typename Table>
Table readTable(const std::string& file, int (*read)(std::istream&, Table&)) {
    std::ifstream in = openSource("data/" + file);
    Table table;
    const int faultyLine = read(in, table);
    if (faultyLine != 0 || table.empty()) {
        throw std::runtime_error(file + " has a faulty line: " + std::to_string(faultyLine));
    }
    return table;
}

} // namespace

sReading readPdb(const std::string& text, const std::map<std::string, double>& radii) {
    std::istringstream in(text);
    sReading reading;
    reading.result = reading.peptide.loadFromStream(in, radii, reading.missing);
    return reading;
}

cPdbPeptide structureOf(const std::string& text, const std::map<std::string, double>& radii) {
    sReading reading = readPdb(text, radii);
    if (reading.result != 0) {
        throw std::runtime_error("no structure; faulty line: " + std::to_string(reading.result));
    }
    return std::move(reading.peptide);
}

std::map<std::string, double> shippedRadii(const std::string& file) {
    return readTable<std::map<std::string, double>>(file, getVdWrRadii);
}

std::map<std::string, double> shippedScale(const std::string& file) {
    return readTable<std::map<std::string, double>>(file, getHydrophobicity);
}

std::map<std::string, sAsa> shippedStandardAreas() {
    return readTable<std::map<std::string, sAsa>>("ala-x-ala.asa", getStandardAsa);
}

contactMap shippedContactRules() {
    std::ifstream in = openSource("data/aa_contacts.txt");
    contactMap rules;
    createStringContactMap(in, rules);
    if (rules.empty()) {
        throw std::runtime_error("no contact rules");
    }
    return rules;
}

const sShippedTables& shippedTables() {
    static const sShippedTables tables{shippedRadii(), shippedStandardAreas(), shippedScale(),
                                       shippedContactRules()};
    return tables;
}

const std::vector<std::string>& sampleCodes() {
    static const std::vector<std::string> codes{"1ubq", "1a0q", "2hhb"};
    return codes;
}

cPdbPeptide samplePeptide(const std::string& code) {
    sReading reading = readPdb(sampleText(code), shippedTables().radii);
    if (reading.result != 0 || reading.peptide.atoms.empty() || !reading.missing.empty()) {
        throw std::runtime_error("cannot read sample " + code);
    }
    return std::move(reading.peptide);
}

} // namespace kelmo

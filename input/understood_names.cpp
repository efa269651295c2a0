#include "input/understood_names.h"

#include "input/atom_rules.h"

#include <algorithm>
#include <map>

namespace kelmo {

namespace {

using tNames = std::map<std::string, std::string>;

/// Nucleotides: the archive's of DNA, with the ends that force fields mark, and older names.
tNames residueNames() {
    tNames names{{"HID", "HIS"}, {"HIE", "HIS"}, {"HIP", "HIS"}, {"HSD", "HIS"},
                 {"HSE", "HIS"}, {"HSP", "HIS"}, {"CYX", "CYS"}, {"CYM", "CYS"},
                 {"ASH", "ASP"}, {"GLH", "GLU"}, {"LYN", "LYS"}, {"ADE", "A"},
                 {"CYT", "C"},   {"GUA", "G"},   {"THY", "T"},   {"URA", "U"}};
    for (const char base : {'A', 'C', 'G', 'T', 'U'}) {
        const std::string letter(1, base);
        for (const std::string prefix : {"", "D", "R"}) {
            for (const std::string end : {"", "3", "5"}) {
                if (!prefix.empty() || !end.empty()) {
                    names[prefix + letter + end] = letter;
                }
            }
        }
    }
    return names;
}

const tNames aminoAcidAtoms{{"HN", "H"},  {"HT1", "H1"}, {"HT2", "H2"},  {"HT3", "H3"},
                            {"OT1", "O"}, {"OC1", "O"},  {"OT2", "OXT"}, {"OC2", "OXT"}};

const tNames nucleotideAtoms{{"OP1", "O1P"},   {"OP2", "O2P"},   {"OP3", "O3P"},
                             {"H5'", "1H5*"},  {"H5''", "2H5*"}, {"H2''", "2H2*"},
                             {"HO2'", "2HO*"}, {"HO3'", "H3T"},  {"HO5'", "H5T"}};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string understoodAminoAcidAtom(const std::string& residueName, const std::string& atomName) {
    if (residueName == "ILE" && atomName == "CD") {
        return "CD1";
    }
    if (atomName.size() > 1 && isDigit(atomName[0]) && (atomName[1] == 'H' || atomName[1] == 'D')) {
        return atomName.substr(1) + atomName[0];
    }
    const auto other = aminoAcidAtoms.find(atomName);
    return other == aminoAcidAtoms.end() ? atomName : other->second;
}

std::string understoodNucleotideAtom(const std::string& residueName, const std::string& atomName) {
    if (residueName == "T" && atomName == "C7") {
        return "C5M";
    }
    const auto other = nucleotideAtoms.find(atomName);
    if (other != nucleotideAtoms.end()) {
        return other->second;
    }
    std::string name = atomName;
    std::replace(name.begin(), name.end(), '\'', '*');
    return name;
}

} // namespace

std::string understoodResidueName(const std::string& name) {
    static const tNames names = residueNames();
    const auto other = names.find(name);
    return other == names.end() ? name : other->second;
}

std::string understoodAtomName(const std::string& residueName, const std::string& atomName) {
    switch (residueTypeOf(residueName)) {
    case eResidueType::aminoAcid:
        return understoodAminoAcidAtom(residueName, atomName);
    case eResidueType::nucleicAcid:
        return understoodNucleotideAtom(residueName, atomName);
    case eResidueType::other:
        break;
    }
    return atomName;
}

} // namespace kelmo

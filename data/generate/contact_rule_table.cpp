#include "data/generate/contact_rule_table.h"

#include "data/generate/residue_template.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

/// What one heavy atom can take part in.
struct sRuleAtom {
    std::string name;
    unsigned index = 0; ///< position in the residue, from 0
    bool isApolar = false;
    bool isDonor = false;
    bool isAcceptor = false;
    bool isCation = false;
    bool isAnion = false;
};

struct sRuleResidue {
    std::string name;
    std::vector<sRuleAtom> atoms;
};

/// One kind of contact: its number in the table, its largest distance in Å, its atom pairs.
struct sRuleKind {
    int contactType;
    double maxDistance;
    bool (*joins)(const sRuleAtom&, const sRuleAtom&);
};

bool joinsApolar(const sRuleAtom& a, const sRuleAtom& b) {
    return a.isApolar && b.isApolar;
}

bool joinsPolar(const sRuleAtom& a, const sRuleAtom& b) {
    return (a.isDonor && b.isAcceptor) || (a.isAcceptor && b.isDonor);
}

bool joinsIons(const sRuleAtom& a, const sRuleAtom& b) {
    return (a.isCation && b.isAnion) || (a.isAnion && b.isCation);
}

constexpr std::array<sRuleKind, 3> ruleKinds{
    {{1, 4.5, joinsApolar}, {2, 3.5, joinsPolar}, {3, 4.0, joinsIons}}};

bool isElement(const std::string& atom, char symbol) {
    return atom.front() == symbol;
}

/// A carbon bonded to carbon and sulphur alone, hydrogens aside, or a thioether sulphur. CA and C,
/// bonded to nitrogen and oxygen, are never among them.
bool isApolar(const sResidueTemplate& residue, const std::string& atom) {
    const std::vector<std::string> partners = bondedAtoms(residue, atom);
    const bool bondsNoHeteroatom =
        std::none_of(partners.begin(), partners.end(), [](const std::string& name) {
            return isElement(name, 'N') || isElement(name, 'O');
        });
    return bondsNoHeteroatom &&
           (isElement(atom, 'C') || (isElement(atom, 'S') && partners.size() == 2));
}

bool isHydroxyl(const sResidueTemplate& residue, const std::string& atom) {
    static const std::vector<std::pair<std::string, std::string>> hydroxyls{
        {"SER", "OG"}, {"THR", "OG1"}, {"TYR", "OH"}};
    return std::find(hydroxyls.begin(), hydroxyls.end(), std::pair(residue.name, atom)) !=
           hydroxyls.end();
}

/// Every nitrogen carries a hydrogen except that of proline.
bool isDonor(const sResidueTemplate& residue, const std::string& atom) {
    if (isElement(atom, 'N')) {
        return residue.name != "PRO";
    }
    return isHydroxyl(residue, atom);
}

/// Every oxygen, and the ring nitrogens of histidine, either of which may be without hydrogen.
bool isAcceptor(const sResidueTemplate& residue, const std::string& atom) {
    return isElement(atom, 'O') || (residue.name == "HIS" && (atom == "ND1" || atom == "NE2"));
}

bool isCation(const sResidueTemplate& residue, const std::string& atom) {
    const bool isBasic = residue.name == "ARG" || residue.name == "HIS" || residue.name == "LYS";
    return isBasic && isElement(atom, 'N') && atom != "N";
}

bool isAnion(const sResidueTemplate& residue, const std::string& atom) {
    const bool isAcidic = residue.name == "ASP" || residue.name == "GLU";
    return isAcidic && isElement(atom, 'O') && atom != "O";
}

/// The first nitrogen of a chain, under the name that the reader gives it, and the second oxygen at
/// the other end, behind all other heavy atoms. Both are charged. Nothing tells the first oxygen
/// of that carboxylate from those within the chain.
std::vector<sRuleAtom> chainEnds(std::size_t heavyAtoms) {
    return {{.name = "NXT", .index = 0, .isDonor = true, .isCation = true},
            {.name = "OXT",
             .index = static_cast<unsigned>(heavyAtoms),
             .isAcceptor = true,
             .isAnion = true}};
}

std::vector<sRuleResidue> classifiedResidues() {
    std::vector<sRuleResidue> residues;
    for (const sResidueTemplate& residue : residueTemplates()) {
        sRuleResidue classified{residue.name, {}};
        unsigned index = 0;
        for (const std::string& atom : heavyAtomNames(residue)) {
            classified.atoms.push_back({atom, index++, isApolar(residue, atom),
                                        isDonor(residue, atom), isAcceptor(residue, atom),
                                        isCation(residue, atom), isAnion(residue, atom)});
        }
        const std::vector<sRuleAtom> ends = chainEnds(classified.atoms.size());
        classified.atoms.insert(classified.atoms.end(), ends.begin(), ends.end());
        residues.push_back(std::move(classified));
    }
    return residues;
}

/// The reader takes the fields from these columns, whatever stands between them.
std::string tableRow(const std::string& residue1, const sRuleAtom& atom1,
                     const std::string& residue2, const sRuleAtom& atom2, const sRuleKind& kind) {
    char row[64];
    std::snprintf(row, sizeof row, "%-3s  %2u  %-3s  %-3s  %2u  %-3s  %5.2f  %4d\n",
                  residue1.c_str(), atom1.index, atom1.name.c_str(), residue2.c_str(), atom2.index,
                  atom2.name.c_str(), kind.maxDistance, kind.contactType);
    return row;
}

void writePairRules(std::ostream& out, const sRuleResidue& first, const sRuleResidue& second) {
    // Within one residue type the reader's mirrored row is the pair the other way round.
    const bool isSameType = first.name == second.name;
    for (const sRuleKind& kind : ruleKinds) {
        for (std::size_t i = 0; i < first.atoms.size(); ++i) {
            for (std::size_t j = isSameType ? i : 0; j < second.atoms.size(); ++j) {
                if (kind.joins(first.atoms[i], second.atoms[j])) {
                    out << tableRow(first.name, first.atoms[i], second.name, second.atoms[j], kind);
                }
            }
        }
    }
}

} // namespace

void writeContactRules(std::ostream& out) {
    out << "RES  IX  ATM  RES  IX  ATM  DIST.  TYPE  (1 hydrophobic, 2 polar, 3 ionic; distances "
           "in "
           "angstrom; after Sobolev et al. 1999, Baker & Hubbard 1984, Barlow & Thornton 1983; "
           "written by kelmo-make-contact-rules)\n";
    const std::vector<sRuleResidue> residues = classifiedResidues();
    for (std::size_t i = 0; i < residues.size(); ++i) {
        for (std::size_t j = i; j < residues.size(); ++j) {
            writePairRules(out, residues[i], residues[j]);
        }
    }
}

} // namespace kelmo

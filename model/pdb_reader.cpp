// Reading PDB text into a structure; columns are those of the PDB format, counted from 0.
#include "model/addition.h"
#include "model/pdb_peptide.h"
#include "model/string_operation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <istream>
#include <string_view>
#include <unordered_map>

namespace {

struct sField {
    std::size_t offset;
    std::size_t length;
};

constexpr sField serialField{6, 5};
constexpr sField atomNameField{12, 4};
constexpr sField residueNameField{17, 3};
constexpr sField chainIdField{21, 1};
constexpr sField residueNumberField{22, 5};
constexpr std::array<sField, 3> coordinateFields{{{30, 8}, {38, 8}, {46, 8}}};
constexpr sField entryCodeField{62, 4};

constexpr std::size_t shortestRecord = 6;
constexpr std::size_t shortestAtomRecord = 54;
constexpr std::size_t shortestHeader = 66;

constexpr double missingRadius = 1.6;
constexpr double missingOxtRadius = 1.4;

std::string_view fieldText(const std::string& line, sField field) {
    return std::string_view(line).substr(field.offset, field.length);
}

std::string_view trimmedField(const std::string& line, sField field) {
    return trimmedView(fieldText(line, field));
}

bool isMetal(std::string_view atomName) {
    return atomName == "CU" || atomName == "FE" || atomName == "MG" || atomName == "ZN";
}

/// Looks radii up by the raw name columns of a line. Structures name the same few hundred atoms
/// over and over, so the answer for each spelling is worked out once.
class cRadiusLookup {
  public:
    cRadiusLookup(const std::map<std::string, double>& radiiTable, std::set<std::string>& missing)
        : radii(radiiTable), missingRadii(missing) {}

    double radiusOf(const std::string& line) {
        const std::uint64_t spelling = packed(line);
        const auto known = answers.find(spelling);
        if (known != answers.end()) {
            return known->second;
        }
        const double radius =
            lookUp(trimmedField(line, residueNameField), trimmedField(line, atomNameField));
        answers.emplace(spelling, radius);
        return radius;
    }

  private:
    static std::uint64_t packed(const std::string& line) {
        std::uint64_t bytes = 0;
        for (const sField field : {residueNameField, atomNameField}) {
            for (const char c : fieldText(line, field)) {
                bytes = bytes << 8U | static_cast<unsigned char>(c);
            }
        }
        return bytes;
    }

    double lookUp(std::string_view residueName, std::string_view atomName) {
        std::string key(residueName);
        key.append("_").append(atomName);
        const auto entry = radii.find(key);
        if (entry != radii.end()) {
            return entry->second;
        }
        if (atomName == "OXT") {
            return missingOxtRadius;
        }
        missingRadii.insert(std::move(key));
        return missingRadius;
    }

    const std::map<std::string, double>& radii;
    std::set<std::string>& missingRadii;
    std::unordered_map<std::uint64_t, double> answers;
};

/// The state of one pass over a file. Residues and chains are recorded by their counts; the
/// structure links them to its lists when the pass is over and no list grows any more.
class cPdbReader {
  public:
    cPdbReader(cPdbPeptide& target, const std::map<std::string, double>& radiiTable,
               std::set<std::string>& missing)
        : peptide(target), radii(radiiTable, missing) {
        createAminoAcidNamesSet(aminoAcids);
        createNucleicAcidNamesSet(nucleicAcids);
    }

    /// Returns false when the line is in error.
    bool readLine(const std::string& line) {
        if (line.size() < shortestRecord) {
            return true;
        }
        if (line.compare(0, 4, "ATOM") == 0) {
            return readAtom(line);
        }
        if (line.compare(0, 6, "HEADER") == 0) {
            return readHeader(line);
        }
        if (line.compare(0, 6, "HETATM") == 0) {
            return readHeteroAtom(line);
        }
        return true;
    }

    void finish() {
        if (!peptide.atoms.empty()) {
            closeResidue(peptide.atoms.size());
            closeChain(peptide.atoms.size());
        }
    }

  private:
    bool readHeader(const std::string& line) {
        if (line.size() < shortestHeader) {
            return false;
        }
        peptide.name = fieldText(line, entryCodeField);
        return true;
    }

    bool readHeteroAtom(const std::string& line) {
        if (line.size() < shortestAtomRecord) {
            return false;
        }
        const std::string_view atomName = trimmedField(line, atomNameField);
        if (isMetal(atomName)) {
            peptide.heteroAtoms.push_back(atomFrom(line, atomName, 0.0));
        }
        return true;
    }

    bool readAtom(const std::string& line) {
        if (line.size() < shortestAtomRecord) {
            return false;
        }
        // A missing radius is listed even when the line turns out to be in error.
        const double radius = radii.radiusOf(line);
        const bool isPlain =
            std::all_of(coordinateFields.begin(), coordinateFields.end(),
                        [&](sField field) { return isPlainDecimal(trimmedField(line, field)); });
        if (!isPlain) {
            return false;
        }
        const std::string_view chainId = fieldText(line, chainIdField);
        std::string_view atomName = trimmedField(line, atomNameField);
        if (atomName == "N" && !equalIgnoringCase(chainId, currentChainId)) {
            atomName = "NXT";
        }
        if (isFirstAtom) {
            beginResidue(line);
            currentChainId = chainId;
            isFirstAtom = false;
        }
        const bool isNewChain = !equalIgnoringCase(chainId, currentChainId);
        if (isNewChain ||
            !equalIgnoringCase(trimmedField(line, residueNumberField), currentResidueNumber)) {
            closeResidue(peptide.atoms.size());
            beginResidue(line);
        }
        if (isNewChain) {
            closeChain(peptide.atoms.size());
            currentChainId = chainId;
        }
        peptide.atoms.push_back(atomFrom(line, atomName, radius));
        return true;
    }

    static cResidueAtom atomFrom(const std::string& line, std::string_view atomName,
                                 double radius) {
        return {std::string(atomName),
                std::string(trimmedField(line, serialField)),
                toNumber(fieldText(line, coordinateFields[0])),
                toNumber(fieldText(line, coordinateFields[1])),
                toNumber(fieldText(line, coordinateFields[2])),
                radius};
    }

    void beginResidue(const std::string& line) {
        currentResidueName = trimmedField(line, residueNameField);
        currentResidueNumber = trimmedField(line, residueNumberField);
    }

    void closeResidue(std::size_t endAtom) {
        eResidueType type = eResidueType::other;
        if (nucleicAcids.contains(currentResidueName)) {
            type = eResidueType::nucleicAcid;
        } else if (aminoAcids.contains(currentResidueName)) {
            type = eResidueType::aminoAcid;
        }
        peptide.residues.emplace_back(currentResidueName, currentResidueNumber, nullptr,
                                      static_cast<unsigned>(endAtom - residueBegin), type);
        residueBegin = endAtom;
    }

    void closeChain(std::size_t endAtom) {
        cProteinChain chain;
        chain.peptideName = peptide.name;
        chain.chainId = currentChainId == " " ? "*" : currentChainId;
        chain.residueCount = static_cast<unsigned>(peptide.residues.size() - chainFirstResidue);
        chain.atomCount = static_cast<unsigned>(endAtom - chainBegin);
        peptide.chains.push_back(std::move(chain));
        chainFirstResidue = peptide.residues.size();
        chainBegin = endAtom;
    }

    cPdbPeptide& peptide;
    cRadiusLookup radii;
    std::set<std::string> aminoAcids;
    std::set<std::string> nucleicAcids;
    std::string currentResidueName;
    std::string currentResidueNumber;
    std::string currentChainId;
    bool isFirstAtom = true;
    std::size_t residueBegin = 0;
    std::size_t chainBegin = 0;
    std::size_t chainFirstResidue = 0;
};

/// Room for as many atoms as a stream of this length can hold, so that the list never has to be
/// moved to a larger place while both copies stand in memory. Room that is never used costs
/// nothing.
void reserveFor(std::istream& in, cPdbPeptide& peptide) {
    constexpr std::size_t usualAtoms = 100000;
    constexpr std::size_t usualResidues = 25000;
    std::size_t atoms = usualAtoms;
    in.seekg(0, std::ios::end);
    const std::streamoff length = in.tellg();
    if (length > 0) {
        atoms = static_cast<std::size_t>(length) / (shortestAtomRecord + 1) + 1;
    }
    in.clear();
    in.seekg(0);
    peptide.atoms.reserve(std::min(atoms, usualAtoms * 100));
    peptide.residues.reserve(std::min(atoms, usualResidues));
}

} // namespace

int cPdbPeptide::loadFromStream(std::istream& in, std::map<std::string, double> radii,
                                std::set<std::string>& missingRadii) {
    reserveFor(in, *this);
    cPdbReader reader(*this, radii, missingRadii);
    int lineNumber = 0;
    std::string line;
    while (std::getline(in, line) && line.compare(0, 3, "END") != 0) {
        ++lineNumber;
        if (!reader.readLine(line)) {
            rebuildLinks();
            return lineNumber;
        }
    }
    reader.finish();
    rebuildLinks();
    for (cProteinChain& chain : chains) {
        setMinMaxPoints(chain.atoms, chain.atomCount, &chain.maxPoint, &chain.minPoint);
    }
    if (!atoms.empty()) {
        setMinMaxPoints(atoms.data(), static_cast<unsigned>(atoms.size()), &maxPoint, &minPoint);
    }
    totalAsa = sideChainAsa = backboneAsa = polarAsa = nonPolarAsa = 0.0;
    return 0;
}

#include "tests/support/reference_structure.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace kelmo {

namespace reference {

std::span<sAtom> sStructure::atomsOf(const sResidue& residue) {
    return std::span<sAtom>(atoms).subspan(residue.firstAtom, residue.atomCount);
}

std::span<const sAtom> sStructure::atomsOf(const sResidue& residue) const {
    return std::span<const sAtom>(atoms).subspan(residue.firstAtom, residue.atomCount);
}

std::span<sAtom> sStructure::atomsOf(const sChain& chain) {
    return std::span<sAtom>(atoms).subspan(chain.firstAtom, chain.atomCount);
}

std::span<sResidue> sStructure::residuesOf(const sChain& chain) {
    return std::span<sResidue>(residues).subspan(chain.firstResidue, chain.residueCount);
}

std::span<const sResidue> sStructure::residuesOf(const sChain& chain) const {
    return std::span<const sResidue>(residues).subspan(chain.firstResidue, chain.residueCount);
}

sAtom makeAtom(const std::string& name, const std::string& serial, double x, double y, double z,
               double radius) {
    sAtom atom;
    atom.name = name;
    atom.serial = serial;
    atom.x = x;
    atom.y = y;
    atom.z = z;
    atom.radius = radius;
    atom.zMax = z + radius;
    atom.zMin = z - radius;
    return atom;
}

double centreDistance(const sAtom& a, const sAtom& b) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    const double dz = a.z - b.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

bool isInRangeByCentre(const sAtom& a, const sAtom& b, double range) {
    const double distance = centreDistance(a, b);
    return range >= distance && distance != 0.0;
}

bool doSpheresIntersect(const sAtom& a, const sAtom& b, double enlargement) {
    const double distance = centreDistance(a, b);
    return a.radius + enlargement + b.radius + enlargement >= distance && distance != 0.0;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return "";
    }
    const std::size_t last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

bool isEqualIgnoringCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

bool isPlainNumber(const std::string& text) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
        ++i;
    }
    while (i < text.size() && isDigit(text[i])) {
        ++i;
    }
    if (i == text.size()) {
        return !text.empty() && isDigit(text.back());
    }
    if (text[i] != '.') {
        return false;
    }
    ++i;
    if (i == text.size()) {
        return false;
    }
    while (i < text.size() && isDigit(text[i])) {
        ++i;
    }
    return i == text.size();
}

namespace {

const std::set<std::string> metalNames{"CU", "FE", "MG", "ZN"};
const std::set<std::string> nucleicAcidNames{"A", "C", "G", "T", "U"};
const std::set<std::string> aminoAcidNames{"ALA", "ARG", "ASN", "ASP", "CYS", "GLN", "GLU",
                                           "GLY", "HIS", "ILE", "LEU", "LYS", "MET", "PHE",
                                           "PRO", "SER", "THR", "TRP", "TYR", "VAL"};

double fieldNumber(const std::string& line, std::size_t offset) {
    return std::strtod(line.substr(offset, 8).c_str(), nullptr);
}

// Reads one file; every record function returns false when its line stops the reading.
class cReader {
  public:
    cReader(const std::map<std::string, double>& radiusTable, std::set<std::string>& missingKeys)
        : radii(radiusTable), missing(missingKeys) {}

    sStructure read(const std::string& pdbText, int& errorLine);

  private:
    bool readHeader(const std::string& line);
    bool readHeteroAtom(const std::string& line);
    bool readAtom(const std::string& line);
    double lookUpRadius(const std::string& residue, const std::string& atom);
    void appendAtom(const std::string& line, std::string name, double radius);
    void splitBefore(const std::string& line);
    void closeResidue(std::size_t endAtom);
    void closeChain(std::size_t endAtom);

    const std::map<std::string, double>& radii;
    std::set<std::string>& missing;
    sStructure structure;
    std::string residueName;
    std::string residueNumber;
    std::string chainId;
    std::size_t residueBegin = 0;
    std::size_t chainBegin = 0;
    std::size_t chainFirstResidue = 0;
    bool isFirstAtom = true;
};

sStructure cReader::read(const std::string& pdbText, int& errorLine) {
    std::istringstream in(pdbText);
    std::string line;
    int lineNumber = 0;
    errorLine = 0;
    while (std::getline(in, line)) {
        if (line.compare(0, 3, "END") == 0) {
            break;
        }
        ++lineNumber;
        if (line.size() < 6) {
            continue;
        }
        bool isRead = true;
        if (line.compare(0, 4, "ATOM") == 0) {
            isRead = readAtom(line);
        } else if (line.compare(0, 6, "HEADER") == 0) {
            isRead = readHeader(line);
        } else if (line.compare(0, 6, "HETATM") == 0) {
            isRead = readHeteroAtom(line);
        }
        if (!isRead) {
            errorLine = lineNumber;
            return structure;
        }
    }
    if (!structure.atoms.empty()) {
        closeResidue(structure.atoms.size());
        closeChain(structure.atoms.size());
    }
    return structure;
}

bool cReader::readHeader(const std::string& line) {
    if (line.size() < 66) {
        return false;
    }
    structure.name = line.substr(62, 4);
    return true;
}

bool cReader::readHeteroAtom(const std::string& line) {
    if (line.size() < 54) {
        return false;
    }
    const std::string name = trimmed(line.substr(12, 4));
    if (metalNames.count(name) != 0) {
        structure.heteroAtoms.push_back(makeAtom(name, trimmed(line.substr(6, 5)),
                                                 fieldNumber(line, 30), fieldNumber(line, 38),
                                                 fieldNumber(line, 46), 0.0));
    }
    return true;
}

bool cReader::readAtom(const std::string& line) {
    if (line.size() < 54) {
        return false;
    }
    const std::string name = trimmed(line.substr(12, 4));
    const double radius = lookUpRadius(trimmed(line.substr(17, 3)), name);
    for (const std::size_t offset : {std::size_t{30}, std::size_t{38}, std::size_t{46}}) {
        if (!isPlainNumber(trimmed(line.substr(offset, 8)))) {
            return false;
        }
    }
    appendAtom(line, name, radius);
    splitBefore(line);
    return true;
}

double cReader::lookUpRadius(const std::string& residue, const std::string& atom) {
    const std::string key = residue + "_" + atom;
    const auto found = radii.find(key);
    if (found != radii.end()) {
        return found->second;
    }
    if (atom == "OXT") {
        return 1.4;
    }
    missing.insert(key);
    return 1.6;
}

void cReader::appendAtom(const std::string& line, std::string name, double radius) {
    if (!isEqualIgnoringCase(line.substr(21, 1), chainId) && name == "N") {
        name = "NXT";
    }
    structure.atoms.push_back(makeAtom(name, trimmed(line.substr(6, 5)), fieldNumber(line, 30),
                                       fieldNumber(line, 38), fieldNumber(line, 46), radius));
}

void cReader::splitBefore(const std::string& line) {
    const std::string name = trimmed(line.substr(17, 3));
    const std::string number = trimmed(line.substr(22, 5));
    const std::string id = line.substr(21, 1);
    const std::size_t thisAtom = structure.atoms.size() - 1;
    if (isFirstAtom) {
        isFirstAtom = false;
        residueName = name;
        residueNumber = number;
        chainId = id;
    }
    const bool isSameChain = isEqualIgnoringCase(id, chainId);
    if (!isEqualIgnoringCase(number, residueNumber) || !isSameChain) {
        closeResidue(thisAtom);
        residueName = name;
        residueNumber = number;
        residueBegin = thisAtom;
    }
    if (!isSameChain) {
        closeChain(thisAtom);
        chainId = id;
        chainFirstResidue = structure.residues.size();
        chainBegin = thisAtom;
    }
}

void cReader::closeResidue(std::size_t endAtom) {
    sResidue residue;
    if (nucleicAcidNames.count(residueName) != 0) {
        residue.type = 1;
    } else if (aminoAcidNames.count(residueName) != 0) {
        residue.type = 2;
    }
    residue.name = residueName;
    residue.number = residueNumber;
    residue.firstAtom = residueBegin;
    residue.atomCount = endAtom - residueBegin;
    structure.residues.push_back(residue);
}

void cReader::closeChain(std::size_t endAtom) {
    sChain chain;
    chain.chainId = chainId == " " ? "*" : chainId;
    chain.firstResidue = chainFirstResidue;
    chain.residueCount = structure.residues.size() - chainFirstResidue;
    chain.firstAtom = chainBegin;
    chain.atomCount = endAtom - chainBegin;
    structure.chains.push_back(chain);
}

} // namespace

sStructure readStructure(const std::string& pdbText, const std::map<std::string, double>& radii,
                         std::set<std::string>& missing, int& errorLine) {
    cReader reader(radii, missing);
    return reader.read(pdbText, errorLine);
}

} // namespace reference

} // namespace kelmo

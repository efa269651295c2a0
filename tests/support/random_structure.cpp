#include "tests/support/random_structure.h"

#include "tests/support/pdb_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>

namespace kelmo {

namespace reference {
namespace {

struct sTemplate {
    std::string name;
    std::vector<std::string> atoms;
};

std::vector<std::string> joined(std::vector<std::string> first,
                                const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// Heavy atoms in the order of the PDB's standard residues.
std::vector<sTemplate> aminoTemplates() {
    std::vector<sTemplate> templates{
        {"ALA", {"CB"}},
        {"ARG", {"CB", "CG", "CD", "NE", "CZ", "NH1", "NH2"}},
        {"ASN", {"CB", "CG", "OD1", "ND2"}},
        {"ASP", {"CB", "CG", "OD1", "OD2"}},
        {"CYS", {"CB", "SG"}},
        {"GLN", {"CB", "CG", "CD", "OE1", "NE2"}},
        {"GLU", {"CB", "CG", "CD", "OE1", "OE2"}},
        {"GLY", {}},
        {"HIS", {"CB", "CG", "ND1", "CD2", "CE1", "NE2"}},
        {"ILE", {"CB", "CG1", "CG2", "CD1"}},
        {"LEU", {"CB", "CG", "CD1", "CD2"}},
        {"LYS", {"CB", "CG", "CD", "CE", "NZ"}},
        {"MET", {"CB", "CG", "SD", "CE"}},
        {"PHE", {"CB", "CG", "CD1", "CD2", "CE1", "CE2", "CZ"}},
        {"PRO", {"CB", "CG", "CD"}},
        {"SER", {"CB", "OG"}},
        {"THR", {"CB", "OG1", "CG2"}},
        {"TRP", {"CB", "CG", "CD1", "CD2", "NE1", "CE2", "CE3", "CZ2", "CZ3", "CH2"}},
        {"TYR", {"CB", "CG", "CD1", "CD2", "CE1", "CE2", "CZ", "OH"}},
        {"VAL", {"CB", "CG1", "CG2"}},
    };
    for (sTemplate& residue : templates) {
        residue.atoms = joined({"N", "CA", "C", "O"}, residue.atoms);
    }
    return templates;
}

// Nucleotides with the old starred names of the sugar atoms.
std::vector<sTemplate> nucleicTemplates() {
    std::vector<sTemplate> templates{
        {"A", {"N9", "C8", "N7", "C5", "C6", "N6", "N1", "C2", "N3", "C4"}},
        {"C", {"N1", "C2", "O2", "N3", "C4", "N4", "C5", "C6"}},
        {"G", {"N9", "C8", "N7", "C5", "C6", "O6", "N1", "C2", "N2", "N3", "C4"}},
        {"T", {"N1", "C2", "O2", "N3", "C4", "O4", "C5", "C5M", "C6"}},
        {"U", {"N1", "C2", "O2", "N3", "C4", "O4", "C5", "C6"}},
    };
    const std::vector<std::string> backbone{"P",   "O1P", "O2P", "O5*", "C5*", "C4*",
                                            "O4*", "C3*", "O3*", "C2*", "O2*", "C1*"};
    for (sTemplate& residue : templates) {
        residue.atoms = joined(backbone, residue.atoms);
    }
    return templates;
}

// Residues outside both name sets; the first two have no radii in the sample table.
std::vector<sTemplate> unknownTemplates() {
    return {{"MSE", {"N", "CA", "C", "O", "CB", "CG", "SE", "CE"}},
            {"LIG", {"C1", "O1", "N1"}},
            {"UNK", {"N", "CA", "C", "O", "CB"}},
            {"DA", {"P", "O1P", "O2P", "O5*", "C5*", "N9"}}};
}

// Random numbers that are the same everywhere.
class cRandom {
  public:
    explicit cRandom(unsigned seed) : engine(seed) {}

    // 0 <= result < 1, in steps of 2^-32.
    double unit() { return static_cast<double>(next()) / 4294967296.0; }

    double between(double low, double high) { return low + (high - low) * unit(); }

    // 0 <= result < count.
    std::size_t below(std::size_t count) {
        return static_cast<std::size_t>((static_cast<std::uint64_t>(next()) * count) >> 32u);
    }

    bool isOneIn(std::size_t count) { return below(count) == 0; }

    // A direction of length 1, even over the sphere.
    sPoint direction() {
        for (;;) {
            const sPoint point{between(-1.0, 1.0), between(-1.0, 1.0), between(-1.0, 1.0)};
            const double squared = point.x * point.x + point.y * point.y + point.z * point.z;
            if (squared > 0.01 && squared <= 1.0) {
                const double length = std::sqrt(squared);
                return {point.x / length, point.y / length, point.z / length};
            }
        }
    }

    template <typename tItem>
    const tItem& oneOf(const std::vector<tItem>& items) {
        return items[below(items.size())];
    }

  private:
    std::uint32_t next() { return static_cast<std::uint32_t>(engine()); }

    std::mt19937 engine;
};

sPoint moved(const sPoint& from, const sPoint& direction, double length) {
    return {from.x + direction.x * length, from.y + direction.y * length,
            from.z + direction.z * length};
}

double distanceSquared(const sPoint& a, const sPoint& b) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    const double dz = a.z - b.z;
    return dx * dx + dy * dy + dz * dz;
}

// Radius in ångström of a ball that holds the walk of a chain; found in exact steps.
double ballRadiusFor(unsigned residueCount) {
    double radius = 6.0;
    while (radius * radius * radius < 36.0 * static_cast<double>(residueCount)) {
        radius += 0.5;
    }
    return radius;
}

// Places atoms: a self-avoiding walk of residue centres, one confining ball for each chain, with
// the atoms around the centres; then bent into the wanted shape.
class cPlacer {
  public:
    cPlacer(cRandom& randomNumbers, const sRandomStructureOptions& structureOptions)
        : random(randomNumbers), options(structureOptions),
          ballRadius(ballRadiusFor(options.residuesPerChain)) {}

    void startChain(unsigned chainIndex);
    void startResidue();
    sPoint nextAtom(std::size_t atomIndex);

  private:
    sPoint plainAtom(std::size_t atomIndex);
    sPoint shaped(const sPoint& point);

    cRandom& random;
    const sRandomStructureOptions& options;
    double ballRadius;
    sPoint ballCentre;
    sPoint residueCentre;
    sPoint previousAtom;
    std::vector<sPoint> residueCentres;
    std::vector<sPoint> placed;
};

void cPlacer::startChain(unsigned chainIndex) {
    // Balls on a ring of four, one above the other: neighbours overlap a little and so touch.
    const double step = 1.5 * ballRadius;
    const unsigned corner = chainIndex % 4;
    ballCentre = {corner == 1 || corner == 2 ? step : 0.0, corner >= 2 ? step : 0.0,
                  step * static_cast<double>(chainIndex / 4)};
    residueCentre = moved(ballCentre, random.direction(), 0.5 * ballRadius);
}

void cPlacer::startResidue() {
    for (unsigned attempt = 0; attempt < 30; ++attempt) {
        const sPoint next = moved(residueCentre, random.direction(), 3.8);
        const bool isInside = distanceSquared(next, ballCentre) <= ballRadius * ballRadius;
        const bool isFree = std::none_of(
            residueCentres.begin(), residueCentres.end(),
            [&next](const sPoint& other) { return distanceSquared(next, other) < 4.2 * 4.2; });
        if (isInside && (isFree || attempt >= 25)) {
            residueCentre = next;
            break;
        }
    }
    residueCentres.push_back(residueCentre);
    previousAtom = residueCentre;
}

sPoint cPlacer::plainAtom(std::size_t atomIndex) {
    if (atomIndex == 1) {
        previousAtom = residueCentre;
        return residueCentre;
    }
    const bool isBackbone = atomIndex < 4;
    const sPoint from = isBackbone || atomIndex == 4 ? residueCentre : previousAtom;
    previousAtom = moved(from, random.direction(), atomIndex == 3 ? 2.4 : 1.5);
    return previousAtom;
}

sPoint cPlacer::shaped(const sPoint& point) {
    const double along = 1.25 * static_cast<double>(placed.size());
    switch (options.shape) {
    case eRandomShape::chainWalk:
        return point;
    case eRandomShape::lattice:
        return {std::round(1.3 * point.x), std::round(1.3 * point.y), std::round(1.3 * point.z)};
    case eRandomShape::planarX:
        return {0.0, 2.0 * point.y, 2.0 * point.z};
    case eRandomShape::planarZ:
        return {2.0 * point.x, 2.0 * point.y, 0.0};
    case eRandomShape::collinearX:
        return {along, 0.0, 0.0};
    case eRandomShape::collinearZ:
        return {0.0, 0.0, along};
    case eRandomShape::stackedZ:
        return {4.0 * std::round(point.x / 4.0), 4.0 * std::round(point.y / 4.0), point.z};
    case eRandomShape::coincident:
        return !placed.empty() && random.isOneIn(6) ? random.oneOf(placed) : point;
    case eRandomShape::scattered:
        return {3.0 * point.x, 3.0 * point.y, 3.0 * point.z};
    }
    return point;
}

sPoint cPlacer::nextAtom(std::size_t atomIndex) {
    placed.push_back(shaped(plainAtom(atomIndex)));
    return placed.back();
}

// Writes one PDB text, record by record.
class cTextWriter {
  public:
    cTextWriter(unsigned seed, const sRandomStructureOptions& structureOptions)
        : random(seed), options(structureOptions), placer(random, options) {}

    std::string write();

  private:
    void writeModel();
    void writeChain(unsigned chainIndex);
    void writeResidue(unsigned chainIndex, unsigned residueIndex);
    void writeHeteroAtoms(char chainId);
    void writeAtom(const char* record, const std::string& atomName, char alternate,
                   const std::string& residueName, const sPoint& point);
    sTemplate residueOf(unsigned chainIndex, unsigned residueIndex);
    char chainIdOf(unsigned chainIndex) const;
    void setNumber(unsigned residueIndex);

    cRandom random;
    sRandomStructureOptions options;
    cPlacer placer;
    std::string text;
    long serial = 0;
    char currentChainId = ' ';
    long sequenceNumber = 0;
    char insertionCode = ' ';
    std::string numberText;
};

std::string cTextWriter::write() {
    if (options.header) {
        std::string header = "HEADER    RANDOM STRUCTURE";
        header.resize(62, ' ');
        const unsigned long identifier = static_cast<unsigned long>(random.below(1000));
        char code[8];
        std::snprintf(code, sizeof code, "9%03lu", identifier);
        text += header + code + "\n";
        text += "REMARK   1 SEEDED TEST STRUCTURE\n\n";
    }
    if (options.models) {
        text += "MODEL        1\n";
        writeModel();
        text += "ENDMDL\nMODEL        2\n";
        writeModel();
        text += "ENDMDL\n";
    } else {
        writeModel();
    }
    if (options.endRecord) {
        text += "END\n";
    }
    return text;
}

void cTextWriter::writeModel() {
    for (unsigned chain = 0; chain < options.chainCount; ++chain) {
        writeChain(chain);
    }
}

char cTextWriter::chainIdOf(unsigned chainIndex) const {
    const std::string ids = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    if (options.returningChainId && chainIndex > 1 && chainIndex + 1 == options.chainCount) {
        chainIndex = 0;
    }
    if (options.blankChainId && chainIndex == 0) {
        return ' ';
    }
    if (options.caseVariantChainIds && chainIndex == 1) {
        return 'a';
    }
    return ids[chainIndex % ids.size()];
}

void cTextWriter::writeChain(unsigned chainIndex) {
    currentChainId = chainIdOf(chainIndex);
    sequenceNumber = options.negativeNumbers ? -3 : 1 + static_cast<long>(random.below(40));
    insertionCode = ' ';
    placer.startChain(chainIndex);
    for (unsigned residue = 0; residue < options.residuesPerChain; ++residue) {
        setNumber(residue);
        placer.startResidue();
        writeResidue(chainIndex, residue);
    }
    if (options.terRecords) {
        text += "TER\n";
    }
    if (options.heteroAtoms) {
        writeHeteroAtoms(currentChainId);
    }
}

void cTextWriter::setNumber(unsigned residueIndex) {
    const bool isFirst = residueIndex == 0;
    if (options.insertionCodes && !isFirst && insertionCode < 'E' && random.isOneIn(5)) {
        insertionCode = insertionCode == ' ' ? 'A' : static_cast<char>(insertionCode + 1);
    } else {
        sequenceNumber += isFirst ? 0 : 1;
        insertionCode = ' ';
    }
    char number[16];
    std::snprintf(number, sizeof number, "%4ld%c", sequenceNumber, insertionCode);
    numberText = number;
    if (options.starredNumbers && (residueIndex == 2 || residueIndex == 3)) {
        numberText = "**** ";
    }
}

sTemplate cTextWriter::residueOf(unsigned chainIndex, unsigned residueIndex) {
    sTemplate residue;
    const bool isNucleic = options.nucleicChain && chainIndex == 1;
    if (options.unknownResidues && random.isOneIn(6)) {
        residue = random.oneOf(unknownTemplates());
    } else {
        residue = random.oneOf(isNucleic ? nucleicTemplates() : aminoTemplates());
    }
    if (options.incompleteResidues && random.isOneIn(4)) {
        residue.atoms.resize(std::min(residue.atoms.size(), 1 + random.below(4)));
    }
    if (options.unknownAtoms && random.isOneIn(5)) {
        residue.atoms.push_back("XQ1");
    }
    if (options.misplacedOxygens && random.isOneIn(4)) {
        const std::size_t position = random.below(residue.atoms.size() + 1);
        residue.atoms.insert(residue.atoms.begin() + static_cast<std::ptrdiff_t>(position), "OXT");
    }
    if (options.terminalOxygens && !isNucleic && residueIndex + 1 == options.residuesPerChain) {
        residue.atoms.push_back("OXT");
    }
    return residue;
}

void cTextWriter::writeResidue(unsigned chainIndex, unsigned residueIndex) {
    const sTemplate residue = residueOf(chainIndex, residueIndex);
    for (std::size_t i = 0; i < residue.atoms.size(); ++i) {
        const bool isDouble = options.alternateLocations && random.isOneIn(8);
        const sPoint point = placer.nextAtom(i);
        writeAtom("ATOM", residue.atoms[i], isDouble ? 'A' : ' ', residue.name, point);
        if (isDouble) {
            writeAtom("ATOM", residue.atoms[i], 'B', residue.name,
                      moved(point, random.direction(), 0.5));
        }
    }
}

void cTextWriter::writeHeteroAtoms(char chainId) {
    currentChainId = chainId;
    const std::vector<sTemplate> candidates{{"HOH", {"O"}},  {"ZN", {"ZN"}},       {"MG", {"MG"}},
                                            {"FE2", {"FE"}}, {"CU", {"CU"}},       {"CA", {"CA"}},
                                            {"CU1", {"CU"}}, {"GOL", {"C1", "O1"}}};
    for (unsigned i = 0; i < 4; ++i) {
        const sTemplate residue = random.oneOf(candidates);
        char number[16];
        std::snprintf(number, sizeof number, "%4u ", 900 + i);
        numberText = number;
        for (const std::string& atom : residue.atoms) {
            writeAtom(
                "HETATM", atom, ' ', residue.name,
                {random.between(-9.0, 9.0), random.between(-9.0, 9.0), random.between(-9.0, 9.0)});
        }
    }
}

void cTextWriter::writeAtom(const char* record, const std::string& atomName, char alternate,
                            const std::string& residueName, const sPoint& point) {
    ++serial;
    text += sAtomLine{.record = record,
                      .serial = serial <= 99999 ? std::to_string(serial) : "*****",
                      .name = atomName,
                      .alternate = alternate,
                      .residue = residueName,
                      .chain = currentChainId,
                      .number = numberText,
                      .x = coordinateText(point.x),
                      .y = coordinateText(point.y),
                      .z = coordinateText(point.z)}
                .text() +
            "  1.00 20.00\n";
}

} // namespace

std::string randomStructureText(unsigned seed, const sRandomStructureOptions& options) {
    return cTextWriter(seed, options).write();
}

sRandomStructureOptions randomStructureOptions(unsigned seed) {
    cRandom random(seed ^ 0x9e3779b9u);
    sRandomStructureOptions options;
    // Half of all seeds give the plain shape, the others every degenerate one in turn.
    if (seed % 2 == 1) {
        options.shape = static_cast<eRandomShape>(1 + (seed / 2) % 8);
    }
    options.chainCount = 1 + static_cast<unsigned>(random.below(4));
    options.residuesPerChain = 2 + static_cast<unsigned>(random.below(10));
    options.header = !random.isOneIn(8);
    options.nucleicChain = random.isOneIn(3);
    options.unknownResidues = random.isOneIn(3);
    options.incompleteResidues = random.isOneIn(3);
    options.terminalOxygens = !random.isOneIn(3);
    options.misplacedOxygens = random.isOneIn(4);
    options.blankChainId = random.isOneIn(4);
    options.insertionCodes = random.isOneIn(3);
    options.starredNumbers = random.isOneIn(4);
    options.negativeNumbers = random.isOneIn(4);
    options.alternateLocations = random.isOneIn(4);
    options.unknownAtoms = random.isOneIn(4);
    options.heteroAtoms = random.isOneIn(2);
    options.models = random.isOneIn(5);
    options.terRecords = !random.isOneIn(3);
    options.endRecord = !random.isOneIn(3);
    return options;
}

namespace {

double sampleRadius(const std::string& atom) {
    switch (atom[0]) {
    case 'C':
        return atom == "C" ? 1.76 : 1.87;
    case 'N':
        return 1.65;
    case 'O':
        return 1.4;
    case 'S':
        return 1.85;
    default:
        return 1.9;
    }
}

std::vector<sTemplate> knownTemplates() {
    std::vector<sTemplate> templates = aminoTemplates();
    for (const sTemplate& residue : nucleicTemplates()) {
        templates.push_back(residue);
    }
    return templates;
}

} // namespace

std::map<std::string, double> sampleRadii() {
    std::vector<sTemplate> templates = knownTemplates();
    const std::vector<sTemplate> unknown = unknownTemplates();
    templates.insert(templates.end(), unknown.begin() + 2, unknown.end());
    std::map<std::string, double> radii;
    for (const sTemplate& residue : templates) {
        for (const std::string& atom : residue.atoms) {
            radii[residue.name + "_" + atom] = sampleRadius(atom);
        }
    }
    return radii;
}

std::map<std::string, sAreas> sampleStandardAreas() {
    std::map<std::string, sAreas> standards;
    for (const sTemplate& residue : aminoTemplates()) {
        const double sideChain = 27.5 * static_cast<double>(residue.atoms.size() - 4);
        sAreas areas;
        areas.sideChain = sideChain;
        areas.backbone = 41.3;
        areas.total = areas.sideChain + areas.backbone;
        areas.polar = 28.7 + 0.25 * sideChain;
        areas.nonPolar = areas.total - areas.polar;
        standards[residue.name] = areas;
    }
    return standards;
}

std::map<std::string, double> sampleHydrophobicity() {
    return {{"ALA", 1.8},  {"ARG", -4.5}, {"ASN", -3.5}, {"ASP", -3.5}, {"CYS", 2.5},
            {"GLN", -3.5}, {"GLU", -3.5}, {"GLY", -0.4}, {"HIS", -3.2}, {"ILE", 4.5},
            {"LEU", 3.8},  {"LYS", -3.9}, {"MET", 1.9},  {"PHE", 2.8},  {"PRO", -1.6},
            {"SER", -0.8}, {"THR", -0.7}, {"TRP", -0.9}, {"TYR", -1.3}, {"VAL", 4.2}};
}

std::string randomContactRuleText(unsigned seed, unsigned rowCount) {
    cRandom random(seed);
    std::vector<sTemplate> templates = knownTemplates();
    std::string text = "R1   I1  A1   R2   I2  A2   DIST   TYPE\n";
    for (unsigned row = 0; row < rowCount; ++row) {
        const sTemplate& first = random.oneOf(templates);
        const sTemplate& second = random.isOneIn(6) ? first : random.oneOf(templates);
        std::size_t index1 = random.below(first.atoms.size());
        std::size_t index2 = random.below(second.atoms.size());
        std::string atom1 = first.atoms[index1];
        std::string atom2 = second.atoms[index2];
        if (random.isOneIn(4)) {
            atom1 = "ALL";
            atom2 = random.isOneIn(6) ? atom2 : "ALL";
        } else if (random.isOneIn(8)) {
            index1 += 1 + random.below(20);
        }
        const int type = random.isOneIn(10) ? static_cast<int>(random.below(8))
                                            : 1 + static_cast<int>(random.below(4));
        // Whole distances meet those of lattice structures exactly.
        const double distance = random.isOneIn(3) ? 3.0 + static_cast<double>(random.below(5))
                                                  : random.between(2.5, 8.0);
        char line[96];
        std::snprintf(line, sizeof line, "%-3s  %2zu  %-3s  %-3s  %2zu  %-3s  %5.2f  %-4d\n",
                      first.name.c_str(), index1, atom1.c_str(), second.name.c_str(), index2,
                      atom2.c_str(), distance, type);
        text += line;
    }
    return text;
}

std::vector<sAtom> randomAtoms(unsigned seed, std::size_t count, double edge) {
    cRandom random(seed);
    const auto coordinate = [&] { return std::floor(random.between(0.0, edge) * 1000.0) / 1000.0; };
    std::vector<sAtom> atoms;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = coordinate();
        const double y = coordinate();
        const double z = coordinate();
        const double radius = 1.4 + 0.1 * static_cast<double>(random.below(6));
        atoms.push_back(makeAtom("CA", std::to_string(i + 1), x, y, z, radius));
    }
    return atoms;
}

} // namespace reference

} // namespace kelmo

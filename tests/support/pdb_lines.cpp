#include "tests/support/pdb_lines.h"

#include "tests/support/test_files.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace kelmo {

namespace {

constexpr std::size_t coordinateColumn = 30; // of x, counted from 0; y and z follow
constexpr std::size_t coordinateWidth = 8;

std::string atTheRight(const std::string& field, std::size_t width) {
    return std::string(width - field.size(), ' ') + field;
}

std::string atTheLeft(const std::string& field, std::size_t width) {
    return field + std::string(width - field.size(), ' ');
}

} // namespace

std::string sAtomLine::text() const {
    const bool hasInsertionCode = !number.empty() && (number.back() < '0' || number.back() > '9');
    return atTheLeft(record, 6) + atTheRight(serial, 5) + ' ' +
           (name.size() < 4 ? ' ' + atTheLeft(name, 3) : name) + alternate +
           atTheRight(residue, 3) + ' ' + chain +
           (hasInsertionCode ? atTheRight(number, 5) : atTheRight(number, 4) + ' ') + "   " +
           atTheRight(x, coordinateWidth) + atTheRight(y, coordinateWidth) +
           atTheRight(z, coordinateWidth);
}

std::string coordinateText(double coordinate) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f", coordinate);
    return text.data();
}

std::string atomLine(const std::string& atomName, const std::string& residueName, char chain,
                     const std::string& residueNumber, double x, double y, double z,
                     unsigned serial) {
    return sAtomLine{.serial = std::to_string(serial % 100'000),
                     .name = atomName,
                     .residue = residueName,
                     .chain = chain,
                     .number = residueNumber,
                     .x = coordinateText(x),
                     .y = coordinateText(y),
                     .z = coordinateText(z)}
        .line();
}

std::string headerLine(const std::string& code) {
    return "HEADER" + std::string(56, ' ') + code + '\n';
}

std::vector<std::string> atomLinesOf(const std::string& text) {
    std::vector<std::string> atoms;
    for (const std::string& line : linesOf(text)) {
        if (line.starts_with("ATOM")) {
            atoms.push_back(line);
        }
    }
    return atoms;
}

tPosition positionIn(const std::string& atomLine) {
    tPosition position{};
    for (std::size_t axis = 0; axis < position.size(); ++axis) {
        const std::size_t column = coordinateColumn + axis * coordinateWidth;
        position[axis] = std::strtod(atomLine.substr(column, coordinateWidth).c_str(), nullptr);
    }
    return position;
}

std::string withPosition(std::string atomLine, const tPosition& position) {
    std::string fields;
    for (const double coordinate : position) {
        fields += atTheRight(coordinateText(coordinate), coordinateWidth);
    }
    return atomLine.replace(coordinateColumn, fields.size(), fields);
}

std::string inNanometres(const std::string& text) {
    constexpr double nanometres = 0.1; // in one ångström
    std::string lines;
    for (const std::string& line : atomLinesOf(text)) {
        tPosition position = positionIn(line);
        for (double& coordinate : position) {
            coordinate *= nanometres;
        }
        lines += withPosition(line, position) + '\n';
    }
    return lines;
}

std::string glycine(char chain, const std::string& number, double z) {
    return atomLine("N", "GLY", chain, number, 0, 0, z) +
           atomLine("CA", "GLY", chain, number, 1.5, 0, z) +
           atomLine("C", "GLY", chain, number, 2, 1.5, z) +
           atomLine("O", "GLY", chain, number, 1, 2.5, z);
}

std::string twoGlycines() {
    return headerLine("1TST") + glycine('A', "1", 0) + glycine('B', "2", 4) + "END\n";
}

std::map<std::string, double> glycineRadii() {
    return {{"GLY_N", 1.7}, {"GLY_CA", 1.7}, {"GLY_C", 1.7}, {"GLY_O", 1.7}};
}

std::string glycineRadiiTable() {
    std::string table;
    for (const auto& [key, radius] : glycineRadii()) {
        table += atTheLeft(key, 8) + coordinateText(radius) + '\n';
    }
    return table;
}

} // namespace kelmo

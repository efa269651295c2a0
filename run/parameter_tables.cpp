#include "run/parameter_tables.h"

#include <istream>
#include <set>
#include <stdexcept>

namespace kelmo {

namespace {

QString badLineText(const char* table, int line) {
    return QStringLiteral("%1 file not properly formatted!\nError in line: %2")
        .arg(QString::fromLatin1(table))
        .arg(line);
}

/// The faulty line of a table, unless the file itself is at fault.
QString faultText(const std::istream& in, const char* table, int line) {
    return in.bad() ? QStringLiteral("%1 file could not be read to its end!")
                          .arg(QString::fromLatin1(table))
                    : badLineText(table, line);
}

QString incompleteText(const char* table, const std::set<std::string>& missing) {
    if (missing.empty()) {
        return {};
    }
    QString text =
        QStringLiteral("Did not find entries for all 20 standard amino acids in %1 file! "
                       "Missing: ")
            .arg(QString::fromLatin1(table));
    for (const std::string& name : missing) {
        text += QString::fromStdString(name) + ' ';
    }
    return text;
}

QString invalidPathText(const char* table) {
    return QStringLiteral(
               "Not a valid %1 file path!\nPlease make sure that the path of the specified "
               "%1 file is correct!\n")
        .arg(QString::fromLatin1(table));
}

/// An atom is cut into slices from pole to pole, so that the work grows with its radius without
/// end. Beads of the coarsest models are smaller.
constexpr double largestRadius = 100.0; // Å

QString tooLargeText(const std::map<std::string, double>& radii) {
    for (const auto& [name, radius] : radii) {
        if (radius > largestRadius) {
            return QStringLiteral("The radius of %1 in radii file is larger than %2 Å!")
                .arg(QString::fromStdString(name).simplified())
                .arg(largestRadius);
        }
    }
    return {};
}

} // namespace

QString readRadiiTable(std::istream& in, std::map<std::string, double>& radii) {
    const int badLine = getVdWrRadii(in, radii);
    return badLine != 0 ? faultText(in, "Radii", badLine) : tooLargeText(radii);
}

QString readStandardAsaTable(std::istream& in, std::map<std::string, sAsa>& standards) {
    const int badLine = getStandardAsa(in, standards);
    return badLine != 0 ? faultText(in, "Standard ASA", badLine)
                        : incompleteText("standard asa", checkForStandardPeptides(standards));
}

QString readHydrophobicityTable(std::istream& in, std::map<std::string, double>& scale) {
    const int badLine = getHydrophobicity(in, scale);
    // The doubled word is what users and their scripts know this message by.
    return badLine != 0 ? faultText(in, "Hydrophobicity", badLine)
                        : incompleteText("hydrophobicity file", checkForStandardPeptides(scale));
}

QString readContactRules(std::istream& in, contactMap& rules) {
    int line = 0;
    try {
        createStringContactMap(in, rules, &line);
    } catch (const std::out_of_range&) {
        return badLineText("Contact rules", line);
    }
    if (in.bad()) {
        rules.clear();
        return faultText(in, "Contact rules", line);
    }
    return {};
}

QString invalidRadiiPathText() {
    return invalidPathText("radii");
}

QString invalidStandardAsaPathText() {
    return invalidPathText("standard asa");
}

QString invalidHydrophobicityPathText() {
    return invalidPathText("hydrophobicity");
}

} // namespace kelmo

#include "analysis/parameter_tables.h"

#include "analysis/criteria.h"
#include "base/number_text.h"
#include "base/regular_file.h"
#include "base/shown_text.h"
#include "base/text_line.h"
#include "contacts/residue_contact.h"

#include <array>
#include <istream>
#include <set>
#include <stdexcept>
#include <string_view>

namespace kelmo {

namespace {

std::string badLineText(const std::string& table, int line) {
    return table + " file not properly formatted!\nError in line: " + std::to_string(line);
}

std::string tooLargeTableText(const std::string& table, int line) {
    return table + " file is larger than " + std::to_string(largestTable >> 20U) +
           " MiB!\nError in line: " + std::to_string(line);
}

/// The faulty line of a table, unless the file itself is at fault. A stream has failed, without
/// being bad, where a reader has given the table up for its size.
std::string faultText(const std::istream& in, const std::string& table, int line) {
    if (in.bad()) {
        return table + " file could not be read to its end!";
    }
    return in.fail() ? tooLargeTableText(table, line) : badLineText(table, line);
}

std::string incompleteText(const std::string& table, const std::set<std::string>& missing) {
    if (missing.empty()) {
        return {};
    }
    std::string text =
        "Did not find entries for all 20 standard amino acids in " + table + " file! Missing: ";
    for (const std::string& name : missing) {
        text += name + ' ';
    }
    return text;
}

std::string invalidPathText(const std::string& table) {
    return "Not a valid " + table +
           " file path!\nPlease make sure that the path of the specified " + table +
           " file is correct!\n";
}

/// An atom is cut into slices from pole to pole, so that the work grows with its radius without
/// end. Beads of the coarsest models are smaller.
constexpr double largestRadius = 100.0; // Å

/// The name with its blanks brought down to single ones between words.
std::string simplified(std::string_view name) {
    std::string words;
    for (const char c : name) {
        const bool isBlank = c == ' ' || (c >= '\t' && c <= '\r');
        if (!isBlank) {
            words += c;
        } else if (!words.empty() && words.back() != ' ') {
            words += ' ';
        }
    }
    if (words.ends_with(' ')) {
        words.pop_back();
    }
    return displayedText(words);
}

std::string tooLargeText(const std::map<std::string, double>& radii) {
    for (const auto& [name, radius] : radii) {
        if (radius > largestRadius) {
            return "The radius of " + simplified(name) + " in radii file is larger than " +
                   std::string(cNumberText(largestRadius, 6).view()) + " Å!";
        }
    }
    return {};
}

/// How a setting's table is read.
struct sTableReader {
    std::string_view key;
    std::string (*read)(std::istream& in, sParameterTables& tables);
    /// What the user is told when the file cannot be opened, besides that.
    std::string advice;
};

const std::array<sTableReader, 4>& tableReaders() {
    using tTables = sParameterTables;
    static const std::array<sTableReader, 4> readers{
        {{"radii_filename",
          [](std::istream& in, tTables& tables) { return readRadiiTable(in, tables.radii); },
          invalidPathText("radii")},
         {"standard_asa",
          [](std::istream& in, tTables& tables) {
              return readStandardAsaTable(in, tables.standardAreas);
          },
          invalidPathText("standard asa")},
         {"hydro_file",
          [](std::istream& in, tTables& tables) {
              return readHydrophobicityTable(in, tables.hydrophobicity);
          },
          invalidPathText("hydrophobicity")},
         {"contact_rules",
          [](std::istream& in, tTables& tables) {
              return readContactRules(in, tables.contactRules);
          },
          {}}}};
    return readers;
}

} // namespace

bool isTableNeeded(const cSettings& settings, std::string_view key) {
    const sSetting* const table = findSetting(settings.module(), key);
    if (table == nullptr) {
        return false;
    }
    if (key == "contact_rules") {
        const sCriterion* const criterion = findCriterion(settings.criterion());
        return criterion != nullptr && criterion->usesRules;
    }
    return table->dependsOn.empty() || settings.flag(table->dependsOn);
}

std::optional<sTableProblem> readParameterTables(const cSettings& settings,
                                                 sParameterTables& tables) {
    for (const sTableReader& reader : tableReaders()) {
        if (!isTableNeeded(settings, reader.key)) {
            continue;
        }
        const std::string& path = settings.text(reader.key);
        std::ifstream in;
        if (!openRegularFile(in, path)) {
            return sTableProblem{std::string(reader.key), path, true, reader.advice};
        }
        if (std::string fault = reader.read(in, tables); !fault.empty()) {
            return sTableProblem{std::string(reader.key), path, false, std::move(fault)};
        }
    }
    return std::nullopt;
}

std::string readRadiiTable(std::istream& in, std::map<std::string, double>& radii) {
    const int badLine = getVdWrRadii(in, radii);
    return badLine != 0 ? faultText(in, "Radii", badLine) : tooLargeText(radii);
}

std::string readStandardAsaTable(std::istream& in, std::map<std::string, sAsa>& standards) {
    const int badLine = getStandardAsa(in, standards);
    return badLine != 0 ? faultText(in, "Standard ASA", badLine)
                        : incompleteText("standard asa", checkForStandardPeptides(standards));
}

std::string readHydrophobicityTable(std::istream& in, std::map<std::string, double>& scale) {
    const int badLine = getHydrophobicity(in, scale);
    // The doubled word is what users and their scripts know this message by.
    return badLine != 0 ? faultText(in, "Hydrophobicity", badLine)
                        : incompleteText("hydrophobicity file", checkForStandardPeptides(scale));
}

std::string readContactRules(std::istream& in, contactMap& rules) {
    int line = 0;
    try {
        createStringContactMap(in, rules, &line);
    } catch (const std::out_of_range&) {
        return faultText(in, "Contact rules", line);
    }
    if (in.bad()) {
        rules.clear();
        return faultText(in, "Contact rules", line);
    }
    return {};
}

} // namespace kelmo

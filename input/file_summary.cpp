#include "input/file_summary.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

constexpr std::size_t mostNames = 8;

std::size_t sumOf(const tResidueCounts& counts) {
    std::size_t sum = 0;
    for (const auto& [name, count] : counts) {
        sum += count;
    }
    return sum;
}

std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
    std::string all;
    for (const std::string& text : texts) {
        all.append(all.empty() ? "" : separator).append(text);
    }
    return all;
}

/// Writes names, those of the most residues first, as long as some may be written.
class cNames {
  public:
    /// "NAD, GOL and 2 more"; empty if no more names may be written.
    std::string of(const tResidueCounts& counts) {
        std::vector<std::pair<std::string, std::size_t>> sorted(counts.begin(), counts.end());
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const auto& a, const auto& b) { return a.second > b.second; });
        std::vector<std::string> names;
        for (; names.size() < sorted.size() && left > 0; --left) {
            names.push_back(sorted[names.size()].first);
        }
        const std::size_t more = sorted.size() - names.size();
        return joined(names, ", ") +
               (more > 0 && !names.empty() ? " and " + std::to_string(more) + " more" : "");
    }

  private:
    std::size_t left = mostNames;
};

std::string inParentheses(const std::string& names) {
    return names.empty() ? names : " (" + names + ')';
}

/// Residues and atoms that take no part.
std::string leftOutList(const sFileSummary& summary) {
    std::vector<std::string> parts;
    cNames names;
    if (!summary.leftOut.empty()) {
        const std::string list = names.of(summary.leftOut);
        parts.push_back(counted(sumOf(summary.leftOut), "residue") +
                        (summary.leftOut.size() == 1 ? ' ' + list : inParentheses(list)));
    }
    if (!summary.unknown.empty()) {
        parts.push_back(counted(sumOf(summary.unknown), "residue") + " of no known type" +
                        inParentheses(names.of(summary.unknown)));
    }
    if (summary.waters > 0) {
        parts.push_back(counted(summary.waters, "water"));
    }
    if (!summary.ligands.empty()) {
        parts.push_back(counted(sumOf(summary.ligands), "ligand") +
                        inParentheses(names.of(summary.ligands)));
    }
    if (summary.hydrogens > 0 && !summary.countsHydrogens) {
        parts.push_back(counted(summary.hydrogens, "hydrogen"));
    }
    return joined(parts, ", ");
}

} // namespace

bool isWarning(const sFileSummary& summary) {
    return !summary.leftOut.empty() || !summary.unknown.empty() ||
           (summary.residuesWithAlternates > 0 && summary.countsAllAlternates);
}

std::string summaryLine(const sFileSummary& summary, const std::string& fileName) {
    std::vector<std::string> notRead;
    if (summary.laterModels > 0) {
        notRead.push_back(counted(summary.laterModels, "later model"));
    }
    if (summary.laterBlocks > 0) {
        notRead.push_back(counted(summary.laterBlocks, "later data block"));
    }
    std::vector<std::string> parts;
    if (const std::string list = leftOutList(summary); !list.empty()) {
        parts.push_back(list);
    } else {
        parts = std::exchange(notRead, {});
    }
    const bool isLeftOut = !parts.empty();
    if (summary.residuesWithAlternates > 0) {
        parts.push_back(counted(summary.residuesWithAlternates, "residue") +
                        " with alternate locations, " +
                        (summary.countsAllAlternates ? "all counted" : "one of each counted"));
    }
    parts.insert(parts.end(), notRead.begin(), notRead.end());
    if (summary.hydrogens > 0 && summary.countsHydrogens) {
        parts.push_back("hydrogens counted");
    }
    if (parts.empty()) {
        return {};
    }
    return (isLeftOut ? "Not analysed in " : "In ") + fileName + ": " + joined(parts, "; ") +
           ". See preparation.";
}

} // namespace kelmo

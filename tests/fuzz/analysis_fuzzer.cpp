// Fuzzes whole analyses: a structure, and behind lines "#radii", "#areas", "#scale" and "#rules"
// tables in place of the shipped ones, through every attribute and criterion into reports. The
// reports hold what their formats promise, and those of small structures are the slow reference's
// byte for byte.
#include "analysis/parameter_tables.h"
#include "input/inflating_buffer.h"
#include "input/mmcif_text.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/report_checks.h"
#include "tests/run/reference_runs.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/reference_contacts.h"
#include "tests/support/reference_reports.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"
#include "tests/support/text_difference.h"

#include <tbb/global_control.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <memory>
#include <set>
#include <sstream>
#include <utility>

namespace kelmo {

using enum eInteractionCriterion;

namespace {

/// As many atoms (lines, tables included) as can be analysed in milliseconds, and as the reference
/// can.
constexpr std::size_t mostAtoms = 150;
constexpr std::size_t mostReferenceAtoms = 40;
/// The time of an analysis grows with the radii.
constexpr double largestRadius = 20.0;

constexpr std::array<eInteractionCriterion, 4> criteria{maximumDistance, prism, dovreth, vorda};

/// Workers and the reference with everything switched on and the same tables.
struct sAnalyses {
    cRunKEV kev;
    std::array<cRunVOR, criteria.size()> vor;
    reference::sKevSettings kevReference;
    reference::sVorSettings vorReference;

    sAnalyses(const sShippedTables& tables, const std::string& rules) {
        switchEverythingOn(kev);
        kev.setRadii(tables.radii);
        kev.setRASAAttributes(true, tables.standards);
        kev.setHydrophobicityAttributes(true, tables.scale);
        for (std::size_t i = 0; i < criteria.size(); ++i) {
            switchEverythingOn(vor[i], criteria[i]);
            vor[i].radii = tables.radii;
            vor[i].contactRules = tables.rules;
        }
        kevReference.radii = vorReference.radii = tables.radii;
        kevReference.standardAreas = referenceAreas(tables.standards);
        kevReference.hydrophobicity = tables.scale;
        kevReference.radiiFileName = vorReference.radiiFileName = "protor.radii";
        kevReference.standardAreasFileName = "ala-x-ala.asa";
        kevReference.hydrophobicityFileName = "kyte-doolittle.hpb";
        reference::readContactRules(rules, vorReference.rules);
    }
};

/// Replaces the table by that of the text, unless that is empty or cannot be used.
template <typename Table>
bool readSection(const std::string& text, Table& table,
                 std::string (*read)(std::istream&, Table&)) {
    std::istringstream in(text);
    Table own;
    if (text.empty() || !read(in, own).empty()) {
        return false;
    }
    table = std::move(own);
    return true;
}

using tSections = std::map<std::string, std::string>;

/// The parts of an input by the lines that head them; the structure has none.
tSections sectionsOf(const std::string& input) {
    tSections sections;
    std::string* section = &sections[""];
    std::size_t lines = 0;
    std::istringstream in(input);
    for (std::string line; lines < mostAtoms && std::getline(in, line); ++lines) {
        if (line == "#radii" || line == "#areas" || line == "#scale" || line == "#rules") {
            section = &sections[line];
        } else {
            *section += line + '\n';
        }
    }
    return sections;
}

/// The shipped tables, or those of the sections where they can be used.
std::unique_ptr<sAnalyses> analysesWith(tSections& sections) {
    sShippedTables tables = shippedTables();
    std::string rules = sourceText("data/aa_contacts.txt");
    readSection(sections["#radii"], tables.radii, readRadiiTable);
    readSection(sections["#areas"], tables.standards, readStandardAsaTable);
    readSection(sections["#scale"], tables.scale, readHydrophobicityTable);
    if (readSection(sections["#rules"], tables.rules, readContactRules)) {
        rules = sections["#rules"];
    }
    std::erase_if(tables.radii,
                  [](const auto& entry) { return std::abs(entry.second) > largestRadius; });
    return std::make_unique<sAnalyses>(tables, rules);
}

/// The same with the shipped tables alone, prepared once: that takes longer than a small analysis.
sAnalyses& shippedAnalyses() {
    static tSections none;
    static const std::unique_ptr<sAnalyses> shipped = analysesWith(none);
    return *shipped;
}

/// One analysis of the input file; the reports by the ends of their names.
class cAnalysis {
  public:
    explicit cAnalysis(const std::string& structure) {
        std::filesystem::create_directory(output());
        writeContent(input(), structure);
    }

    tReports reportsOf(cAnalysisRun& run) {
        const eFileOutcome outcome = run.analyseFile(QString::fromStdString(input()), fixedStamp);
        require(run.unwrittenReports().isEmpty(), "no report left unwritten");
        tReports reports;
        for (const auto& [name, content] : filesIn(output())) {
            require(!name.starts_with('.'), "nothing half-written left behind");
            reports[name.substr(name.find('_', name.find('_') + 1))] = content;
            std::filesystem::remove(output() + '/' + name);
        }
        require((outcome == eFileOutcome::analysed) == !reports.empty(),
                "reports of every file that could be analysed");
        return reports;
    }

    static std::string output() { return place().file("reports"); }

  private:
    static std::string input() { return place().file("input.pdb"); }
    static const cScratchDirectory& place() {
        static const cScratchDirectory directory;
        return directory;
    }
};

void requireNoFault(const std::string& fault) {
    require(fault.empty(), fault);
}

void requireSame(const tReports& reports, const tReports& expected) {
    require(reports.size() == expected.size(), "the reports of the reference");
    for (const auto& [name, content] : expected) {
        const auto found = reports.find(name);
        require(found != reports.end(), "a report of every kind");
        const std::string difference = firstDifference(found->second, content);
        require(difference.empty(), name + " of the reference: " + difference);
    }
}

void analyseStructure(cAnalysis& analysis, sAnalyses& analyses, const std::string& structure,
                      const cPdbPeptide* peptide) {
    analyses.kev.setOutputDirectoryName(QString::fromStdString(cAnalysis::output()));
    const tReports reports = analysis.reportsOf(analyses.kev);
    require(reports.empty() == (peptide == nullptr), "reports of every structure");
    if (peptide == nullptr) {
        return;
    }
    for (const char* type : {"_bound", "_unbound"}) {
        requireNoFault(faultOfKevXml(reports.at(type + std::string(".xml")), *peptide));
        requireNoFault(faultOfKevTable(reports.at(type + std::string(".tbl")), *peptide));
    }
    if (peptide->atoms.size() <= mostReferenceAtoms) {
        requireSame(reports, reference::kevReports(structure, analyses.kevReference));
    }
}

void requireVorPromises(const tReports& reports, eInteractionCriterion criterion,
                        const cPdbPeptide& peptide) {
    const std::size_t headerLines = criterion == dovreth ? 5 : criterion == vorda ? 2 : 3;
    for (const char* report : {"_contacts", "_binding_residues", "_binding_status"}) {
        requireNoFault(faultOfVorXml(reports.at(report + std::string(".xml")), peptide));
    }
    requireNoFault(faultOfContactTable(reports.at("_contacts.tbl"), headerLines));
    requireNoFault(faultOfBindingTables(reports.at("_binding_residues.tbl"),
                                        reports.at("_binding_status.tbl"), headerLines, peptide));
}

void analyseInteractions(cAnalysis& analysis, sAnalyses& analyses, const std::string& structure,
                         const cPdbPeptide* peptide) {
    for (cRunVOR& run : analyses.vor) {
        run.outputDirectory = QString::fromStdString(cAnalysis::output());
        const tReports reports = analysis.reportsOf(run);
        require(reports.empty() == (peptide == nullptr), "reports of every structure");
        if (peptide == nullptr) {
            continue;
        }
        requireVorPromises(reports, run.criterion, *peptide);
        if (peptide->atoms.size() <= mostReferenceAtoms) {
            analyses.vorReference.criterion = static_cast<reference::eCriterion>(run.criterion);
            analyses.vorReference.threshold = run.threshold;
            requireSame(reports, reference::vorReports(structure, analyses.vorReference));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    // One thread: what a fuzzer sees must depend on the input alone.
    static const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
    tSections sections = sectionsOf(textOf(bytes, size));
    const std::string& structure = sections[""];
    if (isCifText(structure) || isGzip(structure)) {
        return 0; // the reference reads PDB text alone
    }
    const std::unique_ptr<sAnalyses> own = sections.size() > 1 ? analysesWith(sections) : nullptr;
    sAnalyses& analyses = own != nullptr ? *own : shippedAnalyses();
    std::istringstream in(structure);
    cPdbPeptide peptide;
    std::set<std::string> missing;
    const bool isRead = peptide.loadFromStream(in, analyses.kevReference.radii, missing) == 0 &&
                        !peptide.atoms.empty();
    cAnalysis analysis(structure);
    analyseStructure(analysis, analyses, structure, isRead ? &peptide : nullptr);
    analyseInteractions(analysis, analyses, structure, isRead ? &peptide : nullptr);
    return 0;
}

} // namespace kelmo

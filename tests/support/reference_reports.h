// Structure analysis and the report texts of both analyses in the slow reference implementation.
#pragma once

#include "tests/support/reference_contacts.h"
#include "tests/support/reference_structure.h"

#include <map>
#include <string>

namespace kelmo {

namespace reference {

// Settings of one structure analysis. Lengths in ångström, the file names as the reports show them.
struct sKevSettings {
    bool boundAnalysis = true;
    bool chainAnalysis = true;
    bool xmlOutput = true;
    bool tableOutput = true;

    bool calculateAsa = true;
    bool writeAsa = true;
    bool calculateRelativeAsa = true;
    bool calculateDepth = true;
    bool calculateProtrusion = true;
    bool calculateHydrophobicity = true;

    double probeRadius = 1.4;
    double zSlice = 0.25;           // above 0
    double protrusionRadius = 10.0; // radius of the sphere
    double atomVolume = 20.1;       // Å³

    std::map<std::string, double> radii; // key "RES_ATOM"
    std::map<std::string, sAreas> standardAreas;
    std::map<std::string, double> hydrophobicity;

    std::string radiiFileName;
    std::string standardAreasFileName;
    std::string hydrophobicityFileName;
};

// Escapes markup, bytes outside ASCII and characters that XML 1.0 does not allow, so that the text
// may stand in a us-ascii document.
std::string escapedForXml(const std::string& text);

// A number as the XML reports and the interaction tables show it: six significant digits.
std::string streamNumber(double value);

// A number as the structure tables show it: five significant digits, of two equally near ones the
// one farther from zero; nan and 0 without a sign.
std::string tableNumber(double value);

// The attributes of a loaded structure for one analysis, in the order of a run; the chain analysis
// builds on whatever an earlier bound analysis left in the structure.
void analyseBound(sStructure& structure, const sKevSettings& settings);
void analyseChains(sStructure& structure, const sKevSettings& settings);

// One report of an analysed structure; analysisType is "bound" or "unbound".
std::string kevXml(const sStructure& structure, const sKevSettings& settings,
                   const std::string& analysisType);
std::string kevTable(const sStructure& structure, const sKevSettings& settings,
                     const std::string& analysisType);

// All reports that a run writes for one file, keyed by the end of the file name ("_bound.xml",
// "_bound.tbl", "_unbound.xml", "_unbound.tbl"); empty when the file cannot be read.
std::map<std::string, std::string> kevReports(const std::string& pdbText,
                                              const sKevSettings& settings);

// All reports that an interaction run writes for one file, keyed by the end of the file name
// ("_contacts", "_binding_residues" and "_binding_status" with ".xml" and ".tbl"); empty when the
// file cannot be read.
std::map<std::string, std::string> vorReports(const std::string& pdbText,
                                              const sVorSettings& settings);

} // namespace reference

} // namespace kelmo

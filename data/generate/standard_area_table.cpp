#include "data/generate/standard_area_table.h"

#include "data/generate/residue_template.h"
#include "data/generate/tripeptide.h"
#include "model/pdb_peptide.h"

#include <cassert>
#include <cstdio>
#include <ostream>
#include <set>
#include <sstream>

namespace kelmo {

namespace {

constexpr double probeRadius = 1.4; // Å, water

/// How the areas of a form are computed. Thinner slices bring the complete form alone nearer to the
/// true area.
struct sSlicing {
    double slice; ///< Å
    const char* heading;
};

sSlicing slicingOf(eAsaForm form) {
    if (form == eAsaForm::complete) {
        return {0.005, "# Radii: protor.radii. Probe 1.4, complete form, slices of 0.005.\n"};
    }
    return {0.05, "# Radii: protor.radii. Probe 1.4, slices of 0.05 along the chain.\n"};
}

constexpr const char* heading =
    "# Standard surface areas of the amino acids, in square angstrom.\n"
    "# Middle residue of an extended tripeptide Ala-X-Ala; written by kelmo-make-standard-areas.\n";
constexpr const char* sources =
    "# Bond lengths and angles: Engh & Huber, Acta Cryst A47:392-400 (1991). Main chain -139, "
    "+135\n"
    "# (proline -70, +135), trans. Rotamers: Lovell et al., Proteins 40:389-408 (2000).\n"
    "# name   total backbone side-chain non-polar   polar\n";

std::string tableLine(const cChainResidue& residue) {
    char line[80];
    std::snprintf(line, sizeof line, "%-3s    %7.2f  %7.2f    %7.2f   %7.2f %7.2f\n",
                  residue.residueName.c_str(), residue.totalAsa, residue.backboneAsa,
                  residue.sideChainAsa, residue.nonPolarAsa, residue.polarAsa);
    return line;
}

} // namespace

std::string writeStandardAreas(std::ostream& out, const std::map<std::string, double>& radii,
                               eAsaForm form) {
    const sSlicing slicing = slicingOf(form);
    out << heading << slicing.heading << sources;
    for (const sResidueTemplate& residue : residueTemplates()) {
        std::istringstream text(tripeptidePdb(residue.name));
        std::set<std::string> missingRadii;
        cPdbPeptide tripeptide;
        [[maybe_unused]] const int badLine = tripeptide.loadFromStream(text, radii, missingRadii);
        assert(badLine == 0 && tripeptide.residues.size() == 3);
        if (!missingRadii.empty()) {
            return *missingRadii.begin();
        }
        tripeptide.setAccessibleSurfaceArea(probeRadius, slicing.slice, form);
        out << tableLine(tripeptide.residues[1]);
    }
    return {};
}

} // namespace kelmo

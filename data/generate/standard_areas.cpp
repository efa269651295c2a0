// kelmo-make-standard-areas: writes the tables of standard surface areas, data/ala-x-ala.asa and,
// with --complete, data/ala-x-ala-complete.asa.

#include "data/generate/standard_area_table.h"
#include "model/addition.h"

#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <string_view>

namespace kelmo {

namespace {

/// Exit status 0 when the table was written, 1 otherwise.
int writeTable(std::ostream& out, const std::map<std::string, double>& radii, eAsaForm form) {
    const std::string missing = writeStandardAreas(out, radii, form);
    if (!missing.empty()) {
        std::cerr << "No radius for " << missing << "\n";
        return 1;
    }
    out.flush();
    if (!out) {
        std::cerr << "The table could not be written\n";
        return 1;
    }
    return 0;
}

} // namespace

} // namespace kelmo

using namespace kelmo;

int main(int argc, char** argv) {
    const bool isComplete = argc > 1 && argv[1] == std::string_view("--complete");
    const eAsaForm form = isComplete ? eAsaForm::complete : eAsaForm::classic;
    argc -= isComplete ? 1 : 0;
    argv += isComplete ? 1 : 0;
    if (argc != 2 && argc != 3) {
        std::cerr << "Usage: kelmo-make-standard-areas [--complete] RADII [OUTPUT]\n"
                     "Writes the standard areas for a radii file to OUTPUT or standard output, in "
                     "the classic or the complete form of the surface.\n";
        return 2;
    }
    std::ifstream radiiFile(argv[1]);
    std::map<std::string, double> radii;
    const int badLine = getVdWrRadii(radiiFile, radii);
    if (badLine != 0 || radii.empty()) {
        std::cerr << "Cannot read the radii of " << argv[1];
        if (badLine != 0) {
            std::cerr << " at line " << badLine;
        }
        std::cerr << "\n";
        return 1;
    }
    if (argc == 2) {
        return writeTable(std::cout, radii, form);
    }
    std::ofstream file(argv[2]);
    return writeTable(file, radii, form);
}

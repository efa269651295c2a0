// kelmo-make-contact-rules: writes the table of contact rules, data/aa_contacts.txt.

#include "data/generate/contact_rule_table.h"

#include <fstream>
#include <iostream>

namespace kelmo {

namespace {

/// Exit status 0 when the table was written, 1 otherwise.
int writeTable(std::ostream& out) {
    writeContactRules(out);
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
    if (argc > 2) {
        std::cerr << "Usage: kelmo-make-contact-rules [OUTPUT]\n"
                     "Writes the contact rules to OUTPUT or standard output.\n";
        return 2;
    }
    if (argc == 1) {
        return writeTable(std::cout);
    }
    std::ofstream file(argv[1]);
    return writeTable(file);
}

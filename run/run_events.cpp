#include "run/run_events.h"

namespace kelmo {

sFindings& sFindings::operator+=(const sFindings& other) {
    if (other.contacts.has_value()) {
        contacts = contacts.value_or(0) + *other.contacts;
    }
    bindingResidues += other.bindingResidues;
    return *this;
}

std::string findingsText(const sFindings& findings) {
    const auto counted = [](std::size_t count, const char* what) {
        return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
    };
    const std::string residues = counted(findings.bindingResidues, "binding residue");
    return findings.contacts.has_value() ? counted(*findings.contacts, "contact") + ", " + residues
                                         : residues;
}

} // namespace kelmo

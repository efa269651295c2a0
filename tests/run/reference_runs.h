// The same file through a worker and through the slow reference implementation.
#pragma once

#include "contacts/residue_contact.h"
#include "model/addition.h"
#include "tests/support/reference_contacts.h"
#include "tests/support/reference_reports.h"

#include <map>
#include <string>

namespace kelmo {

/// Reports by the ends of their names, such as "_bound.xml".
using tReports = std::map<std::string, std::string>;

/// A table of standard areas in the reference's own type.
std::map<std::string, reference::sAreas> referenceAreas(const std::map<std::string, sAsa>& table);

/// What a worker writes for a file.
tReports engineReports(const std::string& file, const reference::sKevSettings& settings);
tReports engineReports(const std::string& file, const reference::sVorSettings& settings,
                       const contactMap& rules);

/// Byte for byte.
void expectSameReports(const tReports& actual, const tReports& expected);

/// Everything on, the usual parameters and the tables that come with the program.
reference::sKevSettings shippedKevSettings();

} // namespace kelmo

// The parameter tables of a run: reading them, and what the user is told when one cannot be used.
#pragma once

#include "contacts/residue_contact.h"
#include "model/addition.h"

#include <QString>

#include <iosfwd>
#include <map>
#include <string>

namespace kelmo {

// Each reader fills its table from an open stream and returns an empty text, or the message for the
// user: the faulty line, or the standard amino acids that the table lacks.

QString readRadiiTable(std::istream& in, std::map<std::string, double>& radii);
QString readStandardAsaTable(std::istream& in, std::map<std::string, sAsa>& standards);
QString readHydrophobicityTable(std::istream& in, std::map<std::string, double>& scale);
QString readContactRules(std::istream& in, contactMap& rules);

// What the user is told when a table's file cannot be opened.

QString invalidRadiiPathText();
QString invalidStandardAsaPathText();
QString invalidHydrophobicityPathText();

} // namespace kelmo

// The tables and sample entries that come with the program, and short texts, as structures.
#pragma once

#include "contacts/residue_contact.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace kelmo {

/// What one reading gave.
struct sReading {
    cPdbPeptide peptide;
    std::set<std::string> missing;
    int result = 0;
};
sReading readPdb(const std::string& text, const std::map<std::string, double>& radii = {});
/// The structure of a text in which nothing may be wrong: a faulty line throws.
cPdbPeptide structureOf(const std::string& text, const std::map<std::string, double>& radii = {});

/// A table of data/ by its file name. Throws when it cannot be read.
std::map<std::string, double> shippedRadii(const std::string& file = "protor.radii");
std::map<std::string, double> shippedScale(const std::string& file = "kyte-doolittle.hpb");
std::map<std::string, sAsa> shippedStandardAreas();
contactMap shippedContactRules();

/// The tables that are the defaults, read once.
struct sShippedTables {
    std::map<std::string, double> radii;
    std::map<std::string, sAsa> standards;
    std::map<std::string, double> scale;
    contactMap rules;
};
const sShippedTables& shippedTables();

/// From the smallest to the largest.
const std::vector<std::string>& sampleCodes();
/// A sample entry with the shipped radii for files without hydrogens. Throws when it or one of its
/// radii is missing.
cPdbPeptide samplePeptide(const std::string& code);

} // namespace kelmo

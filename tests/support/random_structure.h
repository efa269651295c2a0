// Seeded generator of PDB texts and of matching parameter tables for the tests.
#pragma once

#include "tests/support/reference_contacts.h"
#include "tests/support/reference_structure.h"

#include <map>
#include <string>
#include <vector>

namespace kelmo {

namespace reference {

// Where the atoms of a random structure lie. All but chainWalk are degenerate on purpose; the
// second places of alternate locations and the hetero atoms do not follow the shape.
enum class eRandomShape {
    chainWalk,  // touching chains of roughly the density of a protein
    lattice,    // integer coordinates: distances that equal round thresholds, and shared places
    planarX,    // all atoms at x = 0
    planarZ,    // all atoms at z = 0, every slice plane through all of them
    collinearX, // one line along x, 1.25 ångström between neighbours
    collinearZ, // one line along z, 1.25 ångström between neighbours
    stackedZ,   // a few columns along z with equal x and y
    coincident, // a chain walk in which one atom in six stands exactly on an earlier one
    scattered   // a chain walk stretched threefold: atoms with few or no neighbours
};

struct sRandomStructureOptions {
    eRandomShape shape = eRandomShape::chainWalk;
    unsigned chainCount = 3;        // at most 36
    unsigned residuesPerChain = 30; // at most 9000; in all about 500 in a collinear structure
    bool header = true;
    bool nucleicChain = false;       // the second chain is a nucleic acid
    bool unknownResidues = false;    // residue names outside both name sets
    bool incompleteResidues = false; // residues cut to 1 to 4 atoms
    bool terminalOxygens = true;     // "OXT" at the end of a chain
    bool misplacedOxygens = false;   // "OXT" within a residue and in the middle of a chain
    bool blankChainId = false;       // the first chain has no id
    bool returningChainId = false;   // the last chain has the id of the first; residue numbers then
                                     // repeat, and the order of equal contact records is open
    bool caseVariantChainIds = false; // the second chain has the first's id in lower case, which
                                      // joins them; the same remark on contact records holds
    bool insertionCodes = false;
    bool starredNumbers = false;     // "****" as residue number, for two residues in sequence
    bool negativeNumbers = false;    // residue numbers that begin below 0
    bool alternateLocations = false; // atoms given twice, the second time slightly elsewhere
    bool unknownAtoms = false;       // atom names that the sample radii lack
    bool heteroAtoms = false;        // metals, waters and ligands, also between chains
    bool models = false;             // MODEL and ENDMDL around two models, the second different
    bool terRecords = true;
    bool endRecord = true;
};

// A valid PDB text. The same seed and options give the same bytes with every standard library:
// numbers come from std::mt19937 by exact arithmetic, without its distributions and without
// trigonometric functions.
std::string randomStructureText(unsigned seed, const sRandomStructureOptions& options = {});

// Options that differ from seed to seed, so that a sweep over seeds meets every shape and oddity;
// returningChainId and caseVariantChainIds stay off. Structures have a few hundred atoms.
sRandomStructureOptions randomStructureOptions(unsigned seed);

// Radii in ångström for every atom of the generator but the unknown ones; values of plausible size.
std::map<std::string, double> sampleRadii();

// Standard areas in Å² for the 20 amino acids: invented, complete, with side chain 0 for glycine.
std::map<std::string, sAreas> sampleStandardAreas();

// Hydropathy of the 20 amino acids after Kyte and Doolittle, J. Mol. Biol. 157 (1982), 105-132.
std::map<std::string, double> sampleHydrophobicity();

// A contact rule table with a header line and rowCount rows: rows of named atoms, rows for all
// atoms, rows whose positions do not fit their residues, and types outside 1 to 4.
std::string randomContactRuleText(unsigned seed, unsigned rowCount);

// Atoms of radius 1.4 to 1.9 ångström without residues, at random places in a cube of the given
// edge, cut to three decimals.
std::vector<sAtom> randomAtoms(unsigned seed, std::size_t count, double edge);

} // namespace reference

} // namespace kelmo

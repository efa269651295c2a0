// Splits the atoms of a structure, as they come, into residues and chains.
#pragma once

#include "model/pdb_peptide.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kelmo {

/// How chain ids and residue numbers are told apart.
enum class eIdentity { ignoringCase, exact };

/// Fills the lists of residues and chains of a structure by counts and links everything when no
/// list grows any more. The atoms themselves are appended by the caller.
class cChainBuilder {
  public:
    struct sPlace {
        std::string_view chainId; ///< blank or empty for a chain without one
        std::string_view residueNumber;
        std::string_view residueName; ///< that tables are searched by
        std::string_view nameInFile;  ///< `residueName` where it does not differ
    };

    cChainBuilder(cPdbPeptide& target, eIdentity identity);

    /// Where an atom stands that may begin a residue; others need not be told of. `position` is its
    /// own in the list of atoms. The name of a nitrogen that opens a chain becomes "NXT".
    void place(const sPlace& atPlace, std::size_t position, std::string& atomName);

    /// Closes the last residue and chain behind the last atom, links all and sets the boxes.
    void finish();

  private:
    bool isSame(std::string_view a, std::string_view b) const;
    void beginResidue(const sPlace& atPlace);
    void closeResidue(std::size_t end);
    void closeChain(std::size_t end);

    cPdbPeptide& peptide;
    const bool ignoresCase;
    bool isBegun = false;
    std::string residueName;
    std::string otherName;
    std::string residueNumber;
    std::string chainId;
    std::size_t residueBegin = 0;
    std::size_t chainBegin = 0;
    std::size_t chainFirstResidue = 0;
};

} // namespace kelmo

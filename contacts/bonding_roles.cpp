#include "contacts/bonding_roles.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelmo {

namespace {

constexpr sBondingRole donor{.isDonor = true};
constexpr sBondingRole acceptor{.isAcceptor = true};
constexpr sBondingRole either{.isDonor = true, .isAcceptor = true};
constexpr sBondingRole cation{.isDonor = true, .isCation = true};
constexpr sBondingRole anion{.isAcceptor = true, .isAnion = true};
constexpr sBondingRole ring{.isDonor = true, .isAcceptor = true, .isCation = true};
constexpr sBondingRole sulphur{.isSulphur = true};

struct sNamedRole {
    std::string_view residue;
    std::string_view atom;
    sBondingRole role;
};

constexpr std::array<sNamedRole, 19> sideChainRoles{{{"ARG", "NE", cation},
                                                     {"ARG", "NH1", cation},
                                                     {"ARG", "NH2", cation},
                                                     {"ASN", "OD1", acceptor},
                                                     {"ASN", "ND2", donor},
                                                     {"ASP", "OD1", anion},
                                                     {"ASP", "OD2", anion},
                                                     {"CYS", "SG", sulphur},
                                                     {"GLN", "OE1", acceptor},
                                                     {"GLN", "NE2", donor},
                                                     {"GLU", "OE1", anion},
                                                     {"GLU", "OE2", anion},
                                                     {"HIS", "ND1", ring},
                                                     {"HIS", "NE2", ring},
                                                     {"LYS", "NZ", cation},
                                                     {"SER", "OG", either},
                                                     {"THR", "OG1", either},
                                                     {"TRP", "NE1", donor},
                                                     {"TYR", "OH", either}}};

/// The standard name of what simulation programs call otherwise.
std::string_view standardName(std::string_view residue) {
    if (residue == "HID" || residue == "HIE" || residue == "HIP" || residue == "HSD") {
        return "HIS";
    }
    return residue == "CYX" ? "CYS" : residue;
}

} // namespace

sBondingRole bondingRoleOf(const cChainResidue& residue, const cResidueAtom& atom) {
    const std::string_view name = standardName(residue.residueName);
    if (residue.residueType != eResidueType::aminoAcid && name == residue.residueName) {
        return {};
    }
    if (atom.atomName == "N") {
        return name == "PRO" ? sBondingRole{} : donor;
    }
    if (atom.atomName == "O") {
        return acceptor;
    }
    if (atom.atomName == "NXT") {
        return cation;
    }
    if (atom.atomName == "OXT") {
        return anion;
    }
    const auto* const found = std::ranges::find_if(sideChainRoles, [&](const sNamedRole& one) {
        return one.residue == name && one.atom == atom.atomName;
    });
    return found == sideChainRoles.end() ? sBondingRole{} : found->role;
}

} // namespace kelmo

// Rows of atoms in mmCIF for the tests.
#pragma once

#include <string>

namespace kelmo {

/// One row of the loop that mmcifText() opens; every value as it is to stand in the file.
struct sMmcifRow {
    std::string group = "ATOM";
    std::string id = "1";
    std::string element = "C";
    std::string name = "CA";
    std::string alternate = ".";
    std::string residue = "ALA";
    std::string part = "A";
    std::string entity = "1";
    std::string sequenceNumber = "1";
    std::string insertionCode = "?";
    std::string x = "0.000";
    std::string y = "0.000";
    std::string z = "0.000";
    std::string occupancy = "1.00";
    std::string number = "1";
    std::string chain = "A";
    std::string model = "1";

    std::string line() const {
        return group + ' ' + id + ' ' + element + ' ' + name + ' ' + alternate + ' ' + residue +
               ' ' + part + ' ' + entity + ' ' + sequenceNumber + ' ' + insertionCode + ' ' + x +
               ' ' + y + ' ' + z + ' ' + occupancy + ' ' + number + ' ' + chain + ' ' + model +
               '\n';
    }
};

inline const char* const mmcifLoop = "loop_\n"
                                     "_atom_site.group_PDB\n"
                                     "_atom_site.id\n"
                                     "_atom_site.type_symbol\n"
                                     "_atom_site.label_atom_id\n"
                                     "_atom_site.label_alt_id\n"
                                     "_atom_site.label_comp_id\n"
                                     "_atom_site.label_asym_id\n"
                                     "_atom_site.label_entity_id\n"
                                     "_atom_site.label_seq_id\n"
                                     "_atom_site.pdbx_PDB_ins_code\n"
                                     "_atom_site.Cartn_x\n"
                                     "_atom_site.Cartn_y\n"
                                     "_atom_site.Cartn_z\n"
                                     "_atom_site.occupancy\n"
                                     "_atom_site.auth_seq_id\n"
                                     "_atom_site.auth_asym_id\n"
                                     "_atom_site.pdbx_PDB_model_num\n";

inline std::string mmcifText(const std::string& rows, const std::string& before = {}) {
    return "data_1ABC\n_entry.id 1ABC\n" + before + mmcifLoop + rows;
}

} // namespace kelmo

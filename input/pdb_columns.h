// Where the fields of the records of PDB text stand; columns are counted from 0.
#pragma once

#include "base/string_operation.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace kelmo {

struct sField {
    std::size_t offset;
    std::size_t length;
};

constexpr sField serialField{6, 5};
constexpr sField atomNameField{12, 4};
constexpr sField alternateField{16, 1};
constexpr sField residueNameField{17, 3};
constexpr sField chainIdField{21, 1};
constexpr sField residueNumberField{22, 5};
constexpr std::array<sField, 3> coordinateFields{{{30, 8}, {38, 8}, {46, 8}}};
constexpr sField occupancyField{54, 6};
constexpr sField elementField{76, 2};
constexpr sField entryCodeField{62, 4};

constexpr std::size_t shortestRecord = 6;
constexpr std::size_t shortestAtomRecord = 54;
constexpr std::size_t shortestHeader = 66;

/// The text of a field; shorter, or empty, where the line ends before it does.
inline std::string_view fieldText(std::string_view line, sField field) {
    return field.offset < line.size() ? line.substr(field.offset, field.length)
                                      : std::string_view();
}

inline std::string_view trimmedField(std::string_view line, sField field) {
    return trimmedView(fieldText(line, field));
}

} // namespace kelmo

// The options of reading as words: what settings, command lines and the headers of reports say.
#pragma once

#include "base/exported.h"
#include "input/structure_reader.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace KELMO_API kelmo {

/// One option that has a few values.
struct sReadChoice {
    std::string key;                  ///< in configurations and on command lines
    std::string title;                ///< a few words for the label of a field
    std::string help;                 ///< what it means, in a sentence or two
    std::vector<std::string> choices; ///< the first is the default
    /// Position of the value among the choices.
    std::function<std::size_t(const sReadOptions&)> get;
    /// Takes the choice at a position.
    std::function<void(sReadOptions&, std::size_t)> set;
};

/// The parts of the preparation and the models, in the order in which people are asked.
const std::vector<sReadChoice>& readChoices();

/// Key of the assembly, which is named by its id in the file.
inline constexpr std::string_view assemblyKey = "assembly";
/// Value of that key for the chains as they stand in the file.
inline constexpr std::string_view noAssembly = "none";

/// Sets an option by its key: one of the choices, or the assembly. Returns false for an unknown
/// key or value.
bool setReadOption(sReadOptions& options, std::string_view key, std::string_view value);
/// The value of an option by its key; empty for an unknown one.
std::string readOptionValue(const sReadOptions& options, std::string_view key);

/// The preparation in short, for headers and logs: "as-is", "standard", or the parts that are not
/// as is, such as "hydrogens=drop, names=understood".
std::string preparationText(const sPreparation& preparation);

} // namespace kelmo

// Configuration files: the settings of a module as keys and values.
#pragma once

#include "analysis/settings.h"
#include "base/exported.h"
#include "base/text_file.h"

#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// Sets what a file says, and throws cUsageError, which names file and line, at the first thing in
/// it that cannot be used. The path is bytes of any encoding; `requester` begins the message when
/// the file cannot be read.
void readConfiguration(const std::string& path, const std::string& requester, cSettings& settings,
                       eTextSource allowed = eTextSource::anyText);

/// Sets one key, "KEY=VALUE", whether it was set before or not. Throws cUsageError.
void assign(std::string_view assignment, cSettings& settings);

/// The text of a configuration file: one line a setting, in order. Of the interaction module, only
/// the parameters of the chosen criterion.
std::string configurationText(const cSettings& settings);

} // namespace kelmo

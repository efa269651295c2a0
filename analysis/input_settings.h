// The settings that say how a file becomes structures, of both modules.
#pragma once

#include "analysis/settings.h"
#include "base/exported.h"
#include "input/structure_reader.h"

#include <vector>

namespace KELMO_API kelmo {

/// Their rows: preparation, models, assembly.
std::vector<sSetting> inputSettings();

/// Words that stand for several of them at once: prepare=as-is and prepare=standard.
std::vector<sShortForm> inputShortForms();

/// What the settings ask of the reader.
sReadOptions readOptionsOf(const cSettings& settings);

} // namespace kelmo

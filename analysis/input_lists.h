// Lists of input files: a path a line.
#pragma once

#include "base/exported.h"
#include "base/text_file.h"

#include <functional>
#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// Calls `take` for each path of a list file in order, bytes of any encoding; an empty line is an
/// empty path. A carriage return at the end of a line belongs to a DOS line end, unless there is a
/// file of that very name. Throws cUsageError, whose text begins with `requester`, when the list
/// cannot be read.
void forEachListedPath(const std::string& listFile, const std::string& requester,
                       const std::function<void(std::string_view path)>& take,
                       eTextSource allowed = eTextSource::anyText);

} // namespace kelmo

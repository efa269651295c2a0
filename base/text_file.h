// The lines of a small text file.
#pragma once

#include "base/exported.h"

#include <functional>
#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// Whether a text may come through a pipe or from a terminal, for which its reader waits.
enum class eTextSource { regularFile, anyText };

/// Calls `take` for each line in order: its bytes without the line feed. Throws cUsageError, whose
/// text begins with `requester`, when the file cannot be read. The path is bytes of any encoding.
void forEachLine(const std::string& path, const std::string& requester,
                 const std::function<void(std::string_view)>& take,
                 eTextSource allowed = eTextSource::anyText);

/// The line without the carriage return of a DOS line end.
std::string_view withoutCarriageReturn(std::string_view line);

} // namespace kelmo

// The lines of a small text file.
#pragma once

#include <QString>

#include <functional>
#include <string_view>

namespace kelmo {

/// Calls `take` for each line in order: its bytes without their end; a carriage return before the
/// line feed belongs to a DOS line end and is dropped. Pipes are read too. Throws cUsageError,
/// whose text begins with `requester`, when the file cannot be read.
void forEachLine(const QString& path, const QString& requester,
                 const std::function<void(std::string_view)>& take);

} // namespace kelmo

// Whether the reports of a file were written by a run that was interrupted.
#pragma once

#include <QStringList>

#include <string>

namespace kelmo {

/// Whether all reports are there and the input file is not newer than any of them. A report under
/// its final name is whole, so nothing is read. False without the input file: that is for the
/// analysis to tell.
bool areUpToDate(const QStringList& reports, const std::string& inputFile);

} // namespace kelmo

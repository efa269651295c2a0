// Runs of whole lines of a stream, each as long as is handy.
#pragma once

#include "base/stop_request.h"

#include <istream>
#include <string>

namespace kelmo {

/// Hands a stream out in runs of whole lines. Of a line that is longer than a run only the columns
/// that mean something are kept, so that a file without line ends needs no memory.
class cLineRuns {
  public:
    /// Heeds the request unless it is null.
    cLineRuns(std::istream& source, const cStopRequest* stopRequest)
        : in(source), request(stopRequest) {}

    /// The next run; empty at the end of the stream.
    std::string next();

  private:
    std::istream& in;
    const cStopRequest* request;
    std::string begun; ///< the line that the last run broke off in
};

} // namespace kelmo

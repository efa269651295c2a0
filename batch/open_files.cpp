#include "batch/open_files.h"

#include <algorithm>

#include <sys/resource.h>

namespace kelmo {

std::size_t structuresAtOnce() {
    // A structure needs its own file, a document and a table with two descriptors each, and those
    // of the tables that wait for their documents. The rest is for the standard streams and
    // libraries.
    constexpr rlim_t filesPerStructure = 8;
    constexpr rlim_t filesBeside = 24;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 1;
    }
    // The usual limit is for programs that watch their files by select(), which this one does not.
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t forStructures = limit.rlim_cur > filesBeside ? limit.rlim_cur - filesBeside : 0;
    return static_cast<std::size_t>(std::max<rlim_t>(forStructures / filesPerStructure, 1));
}

} // namespace kelmo

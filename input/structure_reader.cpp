#include "input/structure_reader.h"

#include "base/regular_file.h"
#include "base/stop_request.h"
#include "input/inflating_buffer.h"
#include "input/replayed_buffer.h"
#include "input/structure_formats.h"

#include <cerrno>
#include <istream>
#include <utility>

namespace kelmo {

namespace {

std::string firstBytesOf(std::istream& in) {
    std::string bytes(recognisedLength, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

/// `in` stands at its beginning, of which these are the first bytes.
sReadResult readUncompressed(std::istream& in, const std::string& firstBytes,
                             const std::map<std::string, double>& radii,
                             const sReadOptions& options) {
    const std::vector<sStructureFormat>& formats = structureFormats();
    auto format = formats.begin();
    while (!format->isContent(firstBytes)) {
        ++format;
    }
    return format->read(in, radii, options);
}

/// The check sum stands at the end, where the reader of a format may never come.
void readToTheEnd(std::istream& in) {
    std::string ignored(recognisedLength, '\0');
    while (in) {
        stopIfWanted();
        in.read(ignored.data(), static_cast<std::streamsize>(ignored.size()));
    }
}

sReadResult readCompressed(std::istream& in, const std::map<std::string, double>& radii,
                           const sReadOptions& options) {
    cInflatingBuffer inflating(in);
    std::istream inflated(&inflating);
    const std::string firstBytes = firstBytesOf(inflated);
    cReplayedBuffer replayed(firstBytes, inflated);
    std::istream whole(&replayed);
    sReadResult result = readUncompressed(whole, firstBytes, radii, options);
    if (result.outcome == eReadOutcome::read) {
        readToTheEnd(whole);
    }
    if (!inflating.failure().empty()) {
        result = {};
        result.outcome = eReadOutcome::unreadable;
        result.reason = inflating.failure();
    }
    return result;
}

} // namespace

sReadResult readStructure(std::istream& in, const std::map<std::string, double>& radii,
                          const sReadOptions& options) {
    errno = 0; // a stream tells that it failed but not why
    const std::string firstBytes = firstBytesOf(in);
    if (in.bad() && firstBytes.empty()) {
        sReadResult result;
        result.outcome = eReadOutcome::unreadable;
        result.reason = readFailureText(errno);
        return result;
    }
    in.clear();
    if (in.seekg(0)) {
        return isGzip(firstBytes) ? readCompressed(in, radii, options)
                                  : readUncompressed(in, firstBytes, radii, options);
    }
    in.clear();
    cReplayedBuffer replayed(firstBytes, in); // of a pipe
    std::istream whole(&replayed);
    return isGzip(firstBytes) ? readCompressed(whole, radii, options)
                              : readUncompressed(whole, firstBytes, radii, options);
}

} // namespace kelmo

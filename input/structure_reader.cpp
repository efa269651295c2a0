#include "input/structure_reader.h"

#include "input/structure_formats.h"

#include <istream>

namespace kelmo {

namespace {

std::string firstBytesOf(std::istream& in) {
    std::string bytes(recognisedLength, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    in.clear();
    in.seekg(0);
    return bytes;
}

} // namespace

sReadResult readStructure(std::istream& in, const std::map<std::string, double>& radii,
                          const sReadOptions& options) {
    const std::string firstBytes = firstBytesOf(in);
    const std::vector<sStructureFormat>& formats = structureFormats();
    auto format = formats.begin();
    while (!format->isContent(firstBytes)) {
        ++format;
    }
    return format->read(in, radii, options);
}

} // namespace kelmo

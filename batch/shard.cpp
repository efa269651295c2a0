#include "batch/shard.h"

#include "results/file_identity.h"

#include <charconv>
#include <cstdint>

namespace kelmo {

std::size_t shardOf(std::string_view path, std::size_t count) {
    constexpr std::size_t usedDigits = 16;
    constexpr int hexadecimal = 16;
    const std::string digits = sha256Of(baseNameIn(path));
    std::uint64_t number = 0;
    std::from_chars(digits.data(), digits.data() + usedDigits, number, hexadecimal);
    return static_cast<std::size_t>(number % count) + 1;
}

sListPart filesOfShard(const cInputPaths& list, const sShard& shard) {
    sListPart part;
    for (std::size_t place = 0; place < list.size(); ++place) {
        if (shardOf(list[place], shard.count) == shard.number) {
            part.paths.append(list[place]);
            part.places.push_back(place);
        }
    }
    return part;
}

} // namespace kelmo

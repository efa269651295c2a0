// Fuzzes compressed files. The first byte of an input chooses:
//   r  the rest is the file: it is read as what the library inflates it to in one go, or not at all
//      where the library finds fault with it
//   d  the rest, behind two bytes, is compressed and a byte of that is changed, by which no other
//      structure can come about
// and anything else: the rest, behind two bytes, is compressed as two members and read as it
// stands.
#include "input/inflating_buffer.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/structure_checks.h"
#include "tests/input/gzip_text.h"
#include "tests/support/shipped_inputs.h"

#include <algorithm>
#include <sstream>

namespace kelmo {

namespace {

/// What is longer once it is inflated is left out: its parts are no other than those of shorter
/// ones.
constexpr std::size_t longestText = std::size_t{1} << 20;

sReadResult readBytes(const std::string& bytes) {
    std::istringstream in(bytes);
    sReadResult result = readStructure(in, shippedTables().radii, {});
    requireSound(result);
    return result;
}

void requireSame(const sReadResult& compressed, const sReadResult& plain) {
    require(compressed.outcome == plain.outcome && compressed.reason == plain.reason &&
                compressed.badLine == plain.badLine,
            "the outcome of the plain text");
    require(compressed.summary == plain.summary && compressed.missingRadii == plain.missingRadii,
            "what is told of the plain text");
    requireSameStructures(compressed, plain);
}

struct sInflated {
    std::string text;
    bool isWhole = false; ///< to its end and without fault
    bool isTooLong = false;
};

/// All members at once, with zero bytes behind the last.
sInflated inflatedAtOnce(const std::string& bytes) {
    sInflated result;
    std::string room(longestText, '\0');
    std::size_t begin = 0;
    while (true) {
        z_stream state{};
        inflateInit2(&state, 16 + MAX_WBITS);
        state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data() + begin));
        state.avail_in = static_cast<uInt>(bytes.size() - begin);
        state.next_out = reinterpret_cast<Bytef*>(room.data());
        state.avail_out = static_cast<uInt>(room.size());
        const int outcome = inflate(&state, Z_FINISH);
        result.text.append(room, 0, room.size() - state.avail_out);
        result.isTooLong = state.avail_out == 0 || result.text.size() > longestText;
        begin = bytes.size() - state.avail_in;
        inflateEnd(&state);
        if (outcome != Z_STREAM_END || result.isTooLong) {
            return result;
        }
        begin = std::min(bytes.find_first_not_of('\0', begin), bytes.size());
        if (begin == bytes.size()) {
            result.isWhole = true;
            return result;
        }
    }
}

void readAsItStands(const std::string& bytes) {
    const sReadResult result = readBytes(bytes);
    if (!isGzip(bytes)) {
        return;
    }
    const sInflated inflated = inflatedAtOnce(bytes);
    if (inflated.isTooLong || isGzip(inflated.text)) {
        return; // what is compressed twice is inflated once
    }
    if (inflated.isWhole) {
        requireSame(result, readBytes(inflated.text));
    } else {
        require(result.outcome != eReadOutcome::read, "nothing read of what is not whole");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const sChoice choice(textOf(bytes, size));
    if (choice.reader == 'r' || choice.text.size() < 2) {
        readAsItStands(choice.text);
        return 0;
    }
    const auto first = static_cast<unsigned char>(choice.text[0]);
    const auto second = static_cast<unsigned char>(choice.text[1]);
    const std::size_t number = first * std::size_t{256} + second;
    const std::string text = choice.text.substr(2);
    if (isGzip(text)) {
        return 0;
    }
    const sReadResult plain = readBytes(text);
    if (choice.reader == 'd') {
        std::string damaged = gzipped(text);
        char& byte = damaged[number % damaged.size()];
        byte = static_cast<char>(byte ^ (1 << (first % 8)));
        const sReadResult result = readBytes(damaged);
        if (result.outcome == eReadOutcome::read && isGzip(damaged)) {
            requireSame(result, plain);
        }
        return 0;
    }
    const std::size_t cut = number % (text.size() + 1);
    requireSame(readBytes(gzipped(text.substr(0, cut)) + gzipped(text.substr(cut))), plain);
    return 0;
}

} // namespace kelmo

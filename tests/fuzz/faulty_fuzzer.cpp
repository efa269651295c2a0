// No target of its own: what the test of the replay driver finds a fault in.
#include "tests/fuzz/fuzz_target.h"

namespace kelmo {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    require(textOf(bytes, size).find("fault") == std::string::npos, "no fault");
    return 0;
}

} // namespace kelmo

// What every fuzz target has: its entry point, and how it says that a promise is broken.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace kelmo {

/// Takes one input. Returns 0; whatever is wrong ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

/// Ends the process, which is a finding, unless the condition holds.
inline void require(bool holds, std::string_view promise) {
    if (!holds) {
        std::fprintf(stderr, "Broken promise: %.*s\n", static_cast<int>(promise.size()),
                     promise.data());
        std::abort();
    }
}

inline std::string textOf(const std::uint8_t* bytes, std::size_t size) {
    return size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(bytes), size);
}

/// For targets with several readers: the first byte chooses one, the rest is for it.
struct sChoice {
    char reader;
    std::string text;

    explicit sChoice(const std::string& input)
        : reader(input.empty() ? '\0' : input.front()), text(input.substr(input.empty() ? 0 : 1)) {}
};

} // namespace kelmo
